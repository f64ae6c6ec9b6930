#pragma once

#include "jet/table/Table.h"

namespace jet {

// The pages that a table and its indexes take: made, found and given back.

/// Makes an empty tree for index `physical` of a table whose definition stands,
/// or will stand, at `owner`; with a map of its pages unless it has one already.
void MakeEmptyTree(Pager& pager, PageAllocator& pages, PageNumber owner, PhysicalIndex& physical);
/// Gives the tree's pages and map back.
void FreeTree(Pager& pager, PageAllocator& pages, PageNumber owner, const PhysicalIndex& physical);
/// Enters all rows of `table` into the empty tree of `physical`, called `name`.
/// Returns the number of distinct keys. Throws Duplicate, NullNotAllowed,
/// TextNotIndexable, TooLong, naming the index.
std::uint32_t FillTree(Table& table, PageAllocator& pages, const PhysicalIndex& physical,
                       std::string_view name);

/// Gives the long values of a column back, and its maps.
void FreeLongValues(Pager& pager, PageAllocator& pages, const Column& column);
/// Everything of a table: rows, long values, trees, definition.
void FreeTable(Pager& pager, PageAllocator& pages, const TableDefinition& definition);

/// The first byte behind the fixed columns, those that were dropped included:
/// where the next fixed column goes.
std::size_t EndOfFixedArea(Pager& pager, const TableDefinition& definition);

} // namespace jet
