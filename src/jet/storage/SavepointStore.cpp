#include "jet/storage/SavepointStore.h"

#include "jet/base/Error.h"

#include <algorithm>
#include <cstring>

namespace jet {

SavepointStore::SavepointStore(FileSystem& files, std::filesystem::path path, std::size_t pageSize,
                               std::size_t memoryBytes)
    : m_files(files),
      m_path(std::move(path)),
      m_pageSize(pageSize),
      m_memorySlots(std::max<std::size_t>(memoryBytes / pageSize, 4))
{}

SavepointStore::~SavepointStore()
{
    Clear();
}

std::uint64_t SavepointStore::FileOffset(std::uint32_t slot) const
{
    return (slot - m_memorySlots) * std::uint64_t{m_pageSize};
}

std::uint32_t SavepointStore::Put(std::span<const std::byte> page)
{
    std::uint32_t slot = m_slots;
    if (!m_free.empty())
        slot = m_free.back();
    if (slot < m_memorySlots) {
        if (slot >= m_memory.size())
            m_memory.resize(slot + 1);
        if (!m_memory[slot])
            m_memory[slot] = std::make_unique<std::byte[]>(m_pageSize);
        std::memcpy(m_memory[slot].get(), page.data(), m_pageSize);
    } else {
        if (!m_file) {
            m_files.Remove(m_path);
            m_file = m_files.Open(m_path, FileSystem::Mode::CreateNew, Sharing::Exclusive);
        }
        m_file->WriteAt(FileOffset(slot), page);
    }
    if (!m_free.empty())
        m_free.pop_back();
    else
        ++m_slots;
    return slot;
}

void SavepointStore::Get(std::uint32_t slot, std::span<std::byte> into)
{
    if (slot < m_memorySlots)
        std::memcpy(into.data(), m_memory[slot].get(), m_pageSize);
    else
        m_file->ReadAt(FileOffset(slot), into);
}

void SavepointStore::Clear()
{
    m_slots = 0;
    m_free.clear();
    constexpr std::size_t kKept = 64; // so that small transactions allocate nothing anew
    if (m_memory.size() > kKept)
        m_memory.resize(kKept);
    if (m_file) {
        m_file.reset();
        try {
            m_files.Remove(m_path);
        } catch (const Error&) { // useless to everybody; the next one replaces it
        }
    }
}

} // namespace jet
