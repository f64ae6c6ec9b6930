#include "jet/storage/PageCache.h"

#include <algorithm>

namespace jet {

PageCache::PageCache(std::size_t pageSize, std::size_t bytes)
    : m_pageSize(pageSize), m_limit(std::max<std::size_t>(bytes / pageSize, 16))
{}

PageCacheEntry* PageCache::Insert(PageNumber page)
{
    m_entries.push_back(std::make_unique<PageCacheEntry>(page, m_pageSize));
    PageCacheEntry* entry = m_entries.back().get();
    m_table.Set(page, entry);
    m_places.Set(page, static_cast<std::uint32_t>(m_entries.size() - 1));
    return entry;
}

void PageCache::Drop(PageCacheEntry* entry)
{
    std::erase_if(m_dropped, [](const auto& dropped) { return dropped->pins == 0; });
    const std::size_t index = m_places.Get(entry->Number());
    if (entry->pins > 0) {
        entry->dirty = false;
        m_dropped.push_back(std::move(m_entries[index]));
        m_table.Set(entry->Number(), nullptr);
        // The empty place is filled as in Remove, which needs an entry to look at.
        if (index + 1 != m_entries.size()) {
            m_entries[index] = std::move(m_entries.back());
            m_places.Set(m_entries[index]->Number(), static_cast<std::uint32_t>(index));
        }
        m_entries.pop_back();
        return;
    }
    Remove(index);
}

void PageCache::Remove(std::size_t index)
{
    m_table.Set(m_entries[index]->Number(), nullptr);
    if (index + 1 != m_entries.size()) {
        std::swap(m_entries[index], m_entries.back());
        m_places.Set(m_entries[index]->Number(), static_cast<std::uint32_t>(index));
    }
    m_entries.pop_back();
}

bool PageCache::MakeRoom()
{
    // Two rounds: the first takes the marks away, the second finds a page without.
    std::size_t steps = 2 * m_entries.size();
    while (IsFull() && steps-- > 0) {
        if (m_hand >= m_entries.size())
            m_hand = 0;
        PageCacheEntry& entry = *m_entries[m_hand];
        if (entry.pins > 0 || entry.dirty) {
            ++m_hand;
        } else if (entry.referenced) {
            entry.referenced = false;
            ++m_hand;
        } else {
            Remove(m_hand);
        }
    }
    return !IsFull();
}

} // namespace jet
