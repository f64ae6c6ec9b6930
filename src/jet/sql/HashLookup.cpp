#include "jet/sql/HashLookup.h"

#include "jet/sql/KeyBounds.h"

#include <algorithm>
#include <bit>

namespace jet::sql {

namespace {
constexpr std::size_t kMaxBytes = 128u << 20;
constexpr std::size_t kMaxSlots = 64;
} // namespace

HashLookup::HashLookup(const Table& table, const std::vector<int>& columns)
{
    const std::vector<Column>& definitions = table.Definition().columns;
    m_entries.reserve(table.Definition().rowCount);
    TableScan scan(table);
    while (scan.Next()) {
        std::optional<std::uint64_t> hash = 0;
        for (const int column : columns) {
            const auto part =
                HashOf(definitions[static_cast<std::size_t>(column)], scan.Get(column));
            hash = part ? std::optional(MixHashes(*hash, *part)) : std::nullopt;
            if (!hash)
                break;
        }
        if (hash)
            m_entries.push_back({*hash, scan.Id(), 0});
    }
    m_heads.resize(std::bit_ceil(std::max<std::size_t>(m_entries.size(), 1)));
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        std::uint32_t& head = m_heads[m_entries[i].hash & (m_heads.size() - 1)];
        m_entries[i].next = head;
        head = static_cast<std::uint32_t>(i + 1);
    }
}

HashLookup::Matches HashLookup::Find(std::uint64_t hash) const
{
    Matches matches;
    matches.m_lookup = this;
    matches.m_hash = hash;
    matches.m_next = m_heads[hash & (m_heads.size() - 1)];
    return matches;
}

bool HashLookup::Matches::Next()
{
    while (m_next != 0) {
        m_at = m_next - 1;
        const Entry& entry = m_lookup->m_entries[m_at];
        m_next = entry.next;
        if (entry.hash == m_hash)
            return true;
    }
    return false;
}

RowId HashLookup::Matches::Id() const
{
    return m_lookup->m_entries[m_at].row;
}

std::shared_ptr<const HashLookup> LookupCache::Find(const Table& table,
                                                    const std::vector<int>& columns)
{
    const auto [place, first] = m_slots.try_emplace({&table, columns});
    Slot& slot = place->second;
    const std::uint64_t changes = table.File().ChangeCount();
    slot.lastUse = ++m_uses;
    if (first || slot.changes != changes) {
        slot.changes = changes;
        slot.lookup = nullptr;
        MakeRoom();
        return nullptr;
    }
    if (!slot.lookup) {
        slot.lookup = std::make_shared<HashLookup>(table, columns);
        const auto lookup = slot.lookup;
        MakeRoom();
        return lookup;
    }
    return slot.lookup;
}

void LookupCache::KeepOthers(const std::vector<const Table*>& changed, std::uint64_t before,
                             std::uint64_t after)
{
    for (auto& [key, slot] : m_slots) {
        const bool touched = std::find(changed.begin(), changed.end(), key.first) != changed.end();
        if (slot.changes == before && !touched)
            slot.changes = after;
    }
}

void LookupCache::MakeRoom()
{
    for (;;) {
        std::size_t bytes = 0;
        auto oldest = m_slots.begin();
        for (auto slot = m_slots.begin(); slot != m_slots.end(); ++slot) {
            bytes += slot->second.lookup ? slot->second.lookup->Bytes() : 0;
            if (slot->second.lastUse < oldest->second.lastUse)
                oldest = slot;
        }
        if (m_slots.size() <= 1 || (bytes <= kMaxBytes && m_slots.size() <= kMaxSlots))
            return;
        m_slots.erase(oldest);
    }
}

} // namespace jet::sql
