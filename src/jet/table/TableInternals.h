#pragma once

#include "jet/index/IndexTree.h"
#include "jet/table/RowBuilder.h"
#include "jet/table/RowStore.h"
#include "jet/table/RowView.h"
#include "jet/table/Table.h"

#include <vector>

namespace jet {

/// What a table is made of. Public for those who build, check and take apart
/// tables (catalog, check, compact); rows are changed through Table alone.
struct TableParts {
    TableParts(Pager& pager, PageAllocator& pages, std::string name, TableDefinition definition);
    ~TableParts();

    Pager& pager;
    PageAllocator& pages;
    std::string name;
    TableDefinition definition;
    std::unique_ptr<RowStore> rows;
    std::vector<std::unique_ptr<RowStore>> longValues; ///< by column; null = no long value
    std::vector<IndexTree> trees;                      ///< by physical index

    /// Puts another definition in place, after columns or indexes were added or
    /// dropped or properties changed. Readers and scans of the table must not be
    /// used across it.
    void SetDefinition(TableDefinition changed);

    bool IsUnique(int physicalIndex) const;
    bool RefusesNulls(int physicalIndex) const;

    /// The field of a row; `page` is where the row stands, for messages.
    Value Decode(const RowView& row, PageNumber page, int column) const;

    /// Veld "F" van tabel "T"
    std::string FieldText(int column) const;

    /// Counters are read again when a roll-back may have changed them.
    void Refresh();

    std::unique_ptr<class TableChange> change;
    std::uint64_t rollbacks = 0;
    std::optional<std::uint32_t> rowCount; ///< counted by a walk, then kept true
};

} // namespace jet
