#include "MemoryFileSystem.h"

#include "jet/base/Error.h"

#include <algorithm>
#include <cstring>
#include <set>

namespace jet_testing {
namespace {

using jet::Error;
using jet::ErrorKind;
using jet::Sharing;
using Node = MemoryFileSystem::Node;

constexpr std::size_t kSector = 512;

void WriteInto(Bytes& content, std::uint64_t offset, std::span<const std::byte> bytes)
{
    if (content.size() < offset + bytes.size())
        content.resize(offset + bytes.size());
    std::copy(bytes.begin(), bytes.end(), content.begin() + static_cast<std::ptrdiff_t>(offset));
}

class MemoryFile : public jet::File {
public:
    MemoryFile(std::shared_ptr<Node> node, Sharing sharing, bool writable)
        : m_node(std::move(node)), m_sharing(sharing), m_writable(writable)
    {
        if (m_sharing == Sharing::Exclusive)
            m_node->exclusive = true;
        else
            ++m_node->readers;
    }
    ~MemoryFile() override
    {
        if (m_sharing == Sharing::Exclusive)
            m_node->exclusive = false;
        else
            --m_node->readers;
    }

    std::uint64_t Size() override { return m_node->content.size(); }

    void ReadAt(std::uint64_t offset, std::span<std::byte> into) override
    {
        if (offset + into.size() > m_node->content.size())
            throw Error(ErrorKind::Io, "Lezen voorbij het einde.");
        if (!into.empty()) // an empty file has no address to copy from
            std::memcpy(into.data(), m_node->content.data() + offset, into.size());
    }

    void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override
    {
        RequireWritable();
        WriteInto(m_node->content, offset, bytes);
        m_node->pending.push_back({offset, Bytes(bytes.begin(), bytes.end()), false});
    }

    void Resize(std::uint64_t size) override
    {
        RequireWritable();
        m_node->content.resize(size);
        m_node->pending.push_back({size, {}, true});
    }

    void Sync() override
    {
        m_node->durable = m_node->content;
        m_node->pending.clear();
    }

    bool TryLock(Sharing sharing) override
    {
        if (sharing == m_sharing)
            return true;
        if (sharing == Sharing::Exclusive) {
            if (m_node->readers > 1)
                return false;
            m_node->readers = 0;
            m_node->exclusive = true;
        } else {
            m_node->exclusive = false;
            m_node->readers = 1;
        }
        m_sharing = sharing;
        return true;
    }

private:
    void RequireWritable() const
    {
        if (!m_writable)
            throw Error(ErrorKind::AccessDenied, "Het bestand is alleen geopend om te lezen.");
    }

    std::shared_ptr<Node> m_node;
    Sharing m_sharing;
    bool m_writable;
};

/// What is on the disk of one file after the plug was pulled.
Bytes AfterPowerLoss(const Node& node, std::mt19937& random)
{
    Bytes content = node.durable;
    const auto lucky = [&random] { return random() % 2 == 0; };
    for (const auto& write : node.pending) {
        if (write.resize) {
            if (lucky())
                content.resize(write.offset);
            continue;
        }
        const std::span<const std::byte> bytes(write.bytes);
        for (std::size_t at = 0; at < bytes.size();) {
            const std::uint64_t place = write.offset + at;
            const std::size_t length =
                std::min(bytes.size() - at, kSector - static_cast<std::size_t>(place % kSector));
            if (lucky())
                WriteInto(content, place, bytes.subspan(at, length));
            at += length;
        }
    }
    return content;
}

} // namespace

std::unique_ptr<jet::File> MemoryFileSystem::Open(const std::filesystem::path& path, Mode mode,
                                                  Sharing sharing)
{
    auto& node = m_files[path.string()];
    if (mode == Mode::CreateNew) {
        if (node)
            throw Error(ErrorKind::AlreadyExists, "Het bestand bestaat al.");
        node = std::make_shared<Node>();
    } else if (!node) {
        m_files.erase(path.string());
        throw Error(ErrorKind::FileNotFound, "Het bestand " + path.string() + " bestaat niet.");
    }
    if (node->exclusive || (sharing == Sharing::Exclusive && node->readers > 0))
        throw Error(ErrorKind::Locked, "Het bestand is al geopend.");
    return std::make_unique<MemoryFile>(node, sharing, mode != Mode::ReadOnly);
}

bool MemoryFileSystem::Exists(const std::filesystem::path& path)
{
    return m_files.contains(path.string());
}

bool MemoryFileSystem::IsInUse(const std::filesystem::path& path)
{
    const auto found = m_files.find(path.string());
    return found != m_files.end() && (found->second->exclusive || found->second->readers > 0);
}

void MemoryFileSystem::Remove(const std::filesystem::path& path)
{
    m_files.erase(path.string());
}

void MemoryFileSystem::Replace(const std::filesystem::path& from, const std::filesystem::path& to)
{
    const auto found = m_files.find(from.string());
    if (found == m_files.end())
        throw Error(ErrorKind::FileNotFound, "Het bestand bestaat niet.");
    m_files[to.string()] = found->second;
    m_files.erase(from.string());
}

void MemoryFileSystem::SyncFolder(const std::filesystem::path&)
{
    m_durableFiles = m_files;
}

void MemoryFileSystem::Put(const std::filesystem::path& path, const Bytes& content)
{
    const auto node = std::make_shared<Node>();
    node->content = content;
    node->durable = content;
    m_files[path.string()] = node;
    m_durableFiles[path.string()] = node;
}

Bytes MemoryFileSystem::Get(const std::filesystem::path& path) const
{
    return m_files.at(path.string())->content;
}

std::vector<std::string> MemoryFileSystem::Names() const
{
    std::vector<std::string> names;
    for (const auto& [name, node] : m_files)
        names.push_back(name);
    return names;
}

void MemoryFileSystem::PowerLoss(std::mt19937& random)
{
    std::set<std::string> names;
    for (const auto& [name, node] : m_files)
        names.insert(name);
    for (const auto& [name, node] : m_durableFiles)
        names.insert(name);
    std::map<std::string, std::shared_ptr<Node>> after;
    for (const std::string& name : names) {
        const auto now = m_files.find(name);
        const auto before = m_durableFiles.find(name);
        const bool newEntry = random() % 2 == 0;
        const auto& chosen = newEntry ? now : before;
        if (chosen == (newEntry ? m_files.end() : m_durableFiles.end()))
            continue;
        const auto node = std::make_shared<Node>();
        node->content = AfterPowerLoss(*chosen->second, random);
        node->durable = node->content;
        after[name] = node;
    }
    m_files = after;
    m_durableFiles = after;
}

} // namespace jet_testing
