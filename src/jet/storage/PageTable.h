#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace jet {

/// A small value per page number, T() where none was set. Takes memory only
/// for the regions of the file that are in use, so that it stays small beside
/// the page cache even for a file of 2 GB.
template <typename T>
class PageTable {
public:
    T Get(std::uint32_t page) const
    {
        const std::size_t chunk = page / kChunk;
        return chunk < m_chunks.size() && m_chunks[chunk] ? (*m_chunks[chunk])[page % kChunk] : T();
    }

    void Set(std::uint32_t page, T value)
    {
        const std::size_t chunk = page / kChunk;
        if (chunk >= m_chunks.size())
            m_chunks.resize(chunk + 1);
        if (!m_chunks[chunk])
            m_chunks[chunk] = std::make_unique<std::array<T, kChunk>>();
        (*m_chunks[chunk])[page % kChunk] = value;
    }

    void Clear() { m_chunks.clear(); }

private:
    static constexpr std::size_t kChunk = 1024;
    std::vector<std::unique_ptr<std::array<T, kChunk>>> m_chunks;
};

} // namespace jet
