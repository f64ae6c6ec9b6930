#pragma once

#include "jet/base/Value.h"
#include "jet/storage/FileSystem.h"

namespace jet {

/// Page images that nested transactions may have to go back to. They are kept in
/// memory up to a bound, beyond it in a file that is removed when it is no
/// longer needed. A crash has no use for them.
class SavepointStore {
public:
    SavepointStore(FileSystem& files, std::filesystem::path path, std::size_t pageSize,
                   std::size_t memoryBytes);
    ~SavepointStore();

    std::uint32_t Put(std::span<const std::byte> page);
    void Get(std::uint32_t slot, std::span<std::byte> into);
    void Release(std::uint32_t slot) { m_free.push_back(slot); }
    /// Releases everything.
    void Clear();

private:
    std::uint64_t FileOffset(std::uint32_t slot) const;

    FileSystem& m_files;
    std::filesystem::path m_path;
    std::size_t m_pageSize;
    std::size_t m_memorySlots;
    std::vector<std::unique_ptr<std::byte[]>> m_memory;
    std::unique_ptr<File> m_file;
    std::uint32_t m_slots = 0;
    std::vector<std::uint32_t> m_free;
};

} // namespace jet
