#pragma once

#include "jet/storage/PageTable.h"
#include "jet/storage/Pager.h"

#include <memory>
#include <span>
#include <vector>

namespace jet {

/// One page in memory. Its bytes are undetermined until they are filled: nearly
/// always they are read from the file at once, and clearing them first is dear.
class PageCacheEntry {
public:
    PageCacheEntry(PageNumber number, std::size_t size)
        : m_number(number), m_size(size), m_bytes(std::make_unique_for_overwrite<std::byte[]>(size))
    {}

    PageNumber Number() const { return m_number; }
    std::span<std::byte> Data() { return {m_bytes.get(), m_size}; }

    int pins = 0;            ///< views and edits alive; such a page keeps its place in memory
    bool referenced = true;  ///< since the clock hand last passed
    bool dirty = false;      ///< differs from the file
    std::uint64_t level = 0; ///< the transaction level that has kept its old content

private:
    friend class PageCache;
    PageNumber m_number;
    std::size_t m_size;
    std::unique_ptr<std::byte[]> m_bytes;
};

/// Pages in memory, at most as many as fit in a number of bytes (more only
/// while more are pinned or dirty). Which clean page gives way is chosen by a
/// clock: one that was not asked for since the hand passed it last.
class PageCache {
public:
    PageCache(std::size_t pageSize, std::size_t bytes);

    PageCacheEntry* Find(PageNumber page) const { return m_table.Get(page); }
    /// A new entry, whose bytes the caller has to fill. There must be none yet.
    PageCacheEntry* Insert(PageNumber page);
    /// Forgets a page. Who still has it pinned keeps the bytes.
    void Drop(PageCacheEntry* entry);

    bool IsFull() const { return m_entries.size() >= m_limit; }
    std::size_t Limit() const { return m_limit; }
    /// Makes clean, unpinned pages give way until there is room for one more.
    /// Returns false when too many are pinned or dirty for that.
    bool MakeRoom();

    template <typename Visit>
    void ForEach(Visit visit)
    {
        for (std::size_t i = m_entries.size(); i-- > 0;) // from the end: `visit` may drop
            visit(m_entries[i].get());
    }

    std::size_t Bytes() const { return (m_entries.size() + m_dropped.size()) * m_pageSize; }

private:
    void Remove(std::size_t index);

    std::size_t m_pageSize;
    std::size_t m_limit;
    std::size_t m_hand = 0;
    PageTable<PageCacheEntry*> m_table;
    std::vector<std::unique_ptr<PageCacheEntry>> m_entries;
    PageTable<std::uint32_t> m_places;                      // page -> index in m_entries
    std::vector<std::unique_ptr<PageCacheEntry>> m_dropped; // forgotten, but still pinned
};

} // namespace jet
