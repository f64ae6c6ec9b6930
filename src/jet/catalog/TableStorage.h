#pragma once

#include "jet/table/Table.h"

namespace jet {

// The pages that a table and its indexes take: made, filled and given back.

/// Gives index `physical` of the table at `owner` a map and an empty tree.
void MakeTree(Pager& pager, PageAllocator& pages, PageNumber owner, PhysicalIndex& physical);
/// Gives the tree's pages and map back.
void ReleaseTree(Pager& pager, PageAllocator& pages, PageNumber owner,
                 const PhysicalIndex& physical);

/// The entries that an index asks of the rows of a table, in order.
class SortedEntries {
public:
    /// Throws Duplicate, NullNotAllowed, TextNotIndexable, TooLong, naming the
    /// index; changes nothing.
    SortedEntries(Table& table, const PhysicalIndex& physical, std::string_view name);

    /// Puts them into the empty tree of `physical`.
    void FillTree(PageAllocator& pages, const PhysicalIndex& physical) const;
    std::uint32_t DistinctKeys() const { return m_distinct; }

private:
    Table& m_table;
    Bytes m_bytes; ///< all entries; a million are sorted in memory
    std::vector<std::span<const std::byte>> m_entries;
    std::uint32_t m_distinct = 0;
};

/// Gives a memo or OLE column its two maps.
void MakeLongValueMaps(PageAllocator& pages, Column& column);
/// Gives the long values of a column back, and its maps.
void ReleaseLongValues(Pager& pager, PageAllocator& pages, const Column& column);
/// Everything of a table: rows, long values, trees, definition.
void ReleaseTable(Pager& pager, PageAllocator& pages, const TableDefinition& definition);

} // namespace jet
