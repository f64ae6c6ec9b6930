#include "FaultyFileSystem.h"

#include "jet/base/Error.h"

namespace jet_testing {

using jet::Error;
using jet::ErrorKind;

class FaultyFile : public jet::File {
public:
    FaultyFile(std::unique_ptr<jet::File> inner, FaultyFileSystem& faults)
        : m_inner(std::move(inner)), m_faults(faults)
    {}

    std::uint64_t Size() override { return m_inner->Size(); }
    void ReadAt(std::uint64_t offset, std::span<std::byte> into) override
    {
        m_faults.Pass(FaultyFileSystem::kRead, false);
        m_inner->ReadAt(offset, into);
    }
    void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override
    {
        m_faults.Pass(FaultyFileSystem::kWrite, offset + bytes.size() > m_inner->Size(),
                      [&] { m_inner->WriteAt(offset, bytes.first(bytes.size() / 2)); });
        m_inner->WriteAt(offset, bytes);
    }
    void Resize(std::uint64_t size) override
    {
        m_faults.Pass(FaultyFileSystem::kWrite, size > m_inner->Size());
        m_inner->Resize(size);
    }
    void Sync() override
    {
        m_faults.Pass(FaultyFileSystem::kSync, false);
        m_inner->Sync();
    }
    bool TryLock(jet::Sharing sharing) override { return m_inner->TryLock(sharing); }

private:
    std::unique_ptr<jet::File> m_inner;
    FaultyFileSystem& m_faults;
};

void FaultyFileSystem::Arm(const Fault& fault)
{
    Disarm();
    m_fault = fault;
    m_armed = true;
}

void FaultyFileSystem::Disarm()
{
    m_armed = false;
    m_struck = false;
    m_dead = false;
    m_counts.clear();
}

long FaultyFileSystem::Count(unsigned operations) const
{
    long count = 0;
    for (const auto& [operation, n] : m_counts)
        count += (operation & operations) != 0 ? n : 0;
    return count;
}

void FaultyFileSystem::Die()
{
    if (m_onDeath)
        m_onDeath();
    m_dead = true;
    throw Error(ErrorKind::Io, "Het proces is beeindigd.");
}

void FaultyFileSystem::Pass(Operation operation, bool grows, const std::function<void()>& tear)
{
    if (m_dead)
        throw Error(ErrorKind::Io, "Het proces is beeindigd.");
    ++m_counts[operation];
    if (!m_armed)
        return;
    const bool chosen = (operation & m_fault.operations) != 0;
    const bool now = chosen && !m_struck && Count(m_fault.operations) == m_fault.at;
    m_struck = m_struck || now;
    switch (m_fault.effect) {
    case Effect::Fail:
        if (now)
            throw Error(ErrorKind::Io, "De schijf weigert.");
        break;
    case Effect::FailForGood:
        if (chosen && m_struck)
            throw Error(ErrorKind::Io, "De schijf weigert.");
        break;
    case Effect::DiskFull:
        if (m_struck && grows)
            throw Error(ErrorKind::DiskFull, "De schijf is vol.");
        break;
    case Effect::DieTorn:
        if (now && tear)
            tear();
        [[fallthrough]];
    case Effect::Die:
        if (now)
            Die();
        break;
    }
}

std::unique_ptr<jet::File> FaultyFileSystem::Open(const std::filesystem::path& path, Mode mode,
                                                  jet::Sharing sharing)
{
    if (mode == Mode::CreateNew)
        Pass(kName, true);
    return std::make_unique<FaultyFile>(m_inner.Open(path, mode, sharing), *this);
}

void FaultyFileSystem::Remove(const std::filesystem::path& path)
{
    Pass(kName, false);
    m_inner.Remove(path);
}

void FaultyFileSystem::Replace(const std::filesystem::path& from, const std::filesystem::path& to)
{
    Pass(kName, false);
    m_inner.Replace(from, to);
}

void FaultyFileSystem::SyncFolder(const std::filesystem::path& folder)
{
    Pass(kSync, false);
    m_inner.SyncFolder(folder);
}

} // namespace jet_testing
