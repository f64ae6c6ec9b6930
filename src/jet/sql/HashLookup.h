#pragma once

#include "jet/table/Table.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace jet::sql {

/// The rows of a table by a hash of some of its columns: what joins and
/// repeated searches on unindexed columns go through. A snapshot of row ids:
/// rows that went since are found missing when they are read, and a collision
/// is sorted out by whoever compares the columns.
class HashLookup {
public:
    HashLookup(const Table& table, const std::vector<int>& columns);

    class Matches {
    public:
        bool Next();
        RowId Id() const;

    private:
        friend class HashLookup;
        const HashLookup* m_lookup = nullptr;
        std::uint64_t m_hash = 0;
        std::uint32_t m_at = 0, m_next = 0;
    };
    /// In the order of the table's pages. The look-up must outlive the matches.
    Matches Find(std::uint64_t hash) const;

    std::size_t Bytes() const { return m_entries.size() * sizeof(Entry) + m_heads.size() * 4; }

private:
    struct Entry {
        std::uint64_t hash;
        RowId row;
        std::uint32_t next; ///< position + 1 of the next in the same bucket, 0 = none
    };
    std::vector<Entry> m_entries;
    std::vector<std::uint32_t> m_heads;
};

/// The look-ups made lately, kept for as long as the file does not change. The
/// first search of its kind reads all rows; only the second one makes a
/// look-up, so that a single statement does not pay for what it uses once.
class LookupCache {
public:
    /// nullptr = search by reading all rows this time.
    std::shared_ptr<const HashLookup> Find(const Table& table, const std::vector<int>& columns);
    void Clear() { m_slots.clear(); }
    /// The file's change count rose from `before` to `after` by changes to the rows
    /// of these tables alone: what is kept of all others stays good.
    void KeepOthers(const std::vector<const Table*>& changed, std::uint64_t before,
                    std::uint64_t after);

private:
    struct Slot {
        std::uint64_t changes = 0;
        std::uint64_t lastUse = 0;
        std::shared_ptr<const HashLookup> lookup;
    };
    void MakeRoom();

    std::map<std::pair<const Table*, std::vector<int>>, Slot> m_slots;
    std::uint64_t m_uses = 0;
};

} // namespace jet::sql
