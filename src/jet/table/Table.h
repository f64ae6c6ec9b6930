#pragma once

#include "jet/table/TableDefinition.h"

#include <memory>
#include <optional>
#include <span>

namespace jet {

class Table;

/// Walks the rows of a table in the order of its pages. It bears changes made
/// beside it: a row that was deleted is passed over, nothing is read from a page
/// that is no longer the table's. Rows inserted during the walk may or may not
/// be met.
class TableScan {
public:
    explicit TableScan(Table& table);
    /// Goes to the next row; false at the end.
    bool Next();
    RowId Id() const { return m_id; }
    /// Decodes column `column` (position in the definition) of the current row.
    Value Get(int column) const;
    Row GetRow() const;

private:
    Table& m_table;
    RowId m_id;
    struct State;
    std::shared_ptr<State> m_state;
};

/// Bounds of an index scan: values for the first columns of the index (fewer
/// than all = a prefix). An unset bound is open.
struct IndexRange {
    std::optional<Row> lower, upper;
    bool lowerInclusive = true, upperInclusive = true;

    static IndexRange Equal(Row key) { return {key, key, true, true}; }
};

/// Walks the row ids of an index range in key order, forwards or backwards.
/// A change of the index during the walk is borne: the walk goes on behind the
/// last key it gave.
class IndexScan {
public:
    IndexScan(Table& table, int physicalIndex, const IndexRange& range, bool backwards = false);
    bool Next();
    RowId Id() const { return m_id; }

private:
    RowId m_id;
    struct State;
    std::shared_ptr<State> m_state;
};

/// One table of an open file: rows in and out, its indexes kept with them.
///
/// Every change is all or nothing: constraints are checked before the first
/// page is touched (errors NullNotAllowed, EmptyNotAllowed, TooLong, BadValue,
/// Duplicate, TextNotIndexable, RowTooLarge, naming table, field or index).
/// Values are converted to their column's type.
class Table {
public:
    Table(Pager& pager, PageAllocator& pages, std::string name, TableDefinition definition);
    ~Table();

    const std::string& Name() const;
    const TableDefinition& Definition() const;
    Pager& File() const;

    /// Rows now in the table.
    std::uint32_t RowCount() const;

    bool Exists(RowId row) const;
    /// Throws NoCurrentRow when the row is gone.
    Value Get(RowId row, int column) const;
    Row GetRow(RowId row) const;

    /// `row` has one value per column. A null autonumber field gets the next
    /// number (a given one is kept, and the counter rises to it). Default values are the caller's
    /// business (see Catalog::NewRow). On return `row` holds what was stored.
    RowId Insert(Row& row);
    /// Changes the given columns.
    struct Change {
        int column;
        Value value;
    };
    void Update(RowId row, std::span<const Change> changes);
    void Delete(RowId row);

    /// Position in physicalIndexes of an index that begins with these columns
    /// (ascending or descending), the best fit first; -1 when there is none.
    int FindPhysicalIndex(std::span<const int> columns) const;

    // for check, compact and the catalog: see TableInternals.h
    struct Parts;
    Parts& Internals() { return *m_parts; }

private:
    friend class TableScan;
    friend class IndexScan;
    std::unique_ptr<Parts> m_parts;
};

/// Key bytes of `values` as an index on columns of these types stores them;
/// nullopt when a text holds a character whose key is unknown. Comparing bytes
/// gives Jet's order.
std::optional<Bytes> EncodeKey(std::span<const Value> values, std::span<const ColumnType> types,
                               std::span<const bool> ascending);

/// Compares two UTF-8 texts in the engine's order (General legacy): no regard to case, regard to
/// accents. Total: characters outside the key tables compare by code point behind all known ones.
int CompareText(std::string_view a, std::string_view b);
/// Bytes that are equal exactly when CompareText says 0, in the same order.
std::string TextSortKey(std::string_view text);

} // namespace jet
