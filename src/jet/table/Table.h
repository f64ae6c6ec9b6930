#pragma once

#include "jet/index/KeyEncoder.h"
#include "jet/index/TextKey.h"
#include "jet/table/TableDefinition.h"

#include <memory>
#include <optional>
#include <span>

namespace jet {

class Table;
struct TableParts;

/// Reads the fields of one row at a time; nothing is decoded before it is asked
/// for. When the file changes beside it the row is looked up again.
class RowReader {
public:
    /// `table` must outlive the reader.
    explicit RowReader(const Table& table);
    ~RowReader();
    RowReader(RowReader&&) noexcept;
    RowReader& operator=(RowReader&&) noexcept;

    /// False when there is no such row (any more).
    bool MoveTo(RowId row);
    RowId Id() const;
    /// Column `column` (position in the definition) of the row that MoveTo found.
    /// Throws NoCurrentRow when it has been deleted since.
    Value Get(int column) const;
    bool IsNull(int column) const;
    Row GetRow() const;
    /// The first `count` columns into `row`, whose memory is used again.
    void GetRow(std::size_t count, Row& row) const;

private:
    friend class TableScan;
    struct State;
    std::unique_ptr<State> m_state;
};

/// Walks the rows of a table in the order of its pages, forwards or backwards. It bears changes
/// made beside it: a row that was deleted is passed over, nothing is read from a page that is no
/// longer the table's. Rows inserted during the walk may or may not be met.
class TableScan {
public:
    /// Stands before the first row, or behind the last.
    enum class Start { BeforeFirst, BehindLast };
    /// `table` must outlive the scan.
    explicit TableScan(const Table& table, Start start = Start::BeforeFirst);
    ~TableScan();
    TableScan(TableScan&&) noexcept;
    TableScan& operator=(TableScan&&) noexcept;

    /// Goes to the next row; false at the end.
    bool Next();
    /// Goes to the row before; false at the beginning.
    bool Previous();
    /// Where the walk goes on from, whether or not that row (still) exists.
    void StandOn(RowId row);
    RowId Id() const { return m_reader.Id(); }
    /// Decodes column `column` (position in the definition) of the current row.
    Value Get(int column) const { return m_reader.Get(column); }
    bool IsNull(int column) const { return m_reader.IsNull(column); }
    Row GetRow() const { return m_reader.GetRow(); }
    void GetRow(std::size_t count, Row& row) const { m_reader.GetRow(count, row); }

private:
    bool OpenPage(PageNumber number);
    bool PageIsOpen();
    bool TakeSlot();
    void LeaveRow();

    TableParts* m_parts;
    RowReader m_reader;
    struct State;
    std::unique_ptr<State> m_state;
};

/// Bounds of an index scan: values for the first columns of the index (fewer
/// than all = a prefix), in the order of its keys: in a descending column the
/// lower bound is the larger value. An unset bound is open. Values are converted to their columns'
/// types, so a bound must not lose anything by that (3.5 for a Long finds 4).
struct IndexRange {
    std::optional<Row> lower, upper;
    bool lowerInclusive = true, upperInclusive = true;

    static IndexRange Equal(Row key) { return {key, key, true, true}; }
};

/// Walks the row ids of an index range in key order, forwards or backwards.
/// A change of the index during the walk is borne: the walk goes on behind the
/// last key it gave.
/// Throws TextNotIndexable when a bound holds a character whose key is unknown:
/// such a condition has to be answered by a table scan.
class IndexScan {
public:
    IndexScan(const Table& table, int physicalIndex, const IndexRange& range,
              bool backwards = false);
    ~IndexScan();
    IndexScan(IndexScan&&) noexcept;
    IndexScan& operator=(IndexScan&&) noexcept;

    bool Next();
    RowId Id() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
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

    /// Rows now in the table. Counted once by a walk over the table's pages, because
    /// other programs leave the counter in the definition wrong; then kept.
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

    /// Position in physicalIndexes of an index that begins with these columns in this order
    /// (each ascending or descending), the best fit first; -1 when there is none. Indexes whose
    /// order we do not know are passed over. Mind ignoreNulls: such an index has no entry for a
    /// row whose key columns are all null.
    int FindPhysicalIndex(std::span<const int> columns) const;

    // for check, compact and the catalog: see TableInternals.h
    using Parts = TableParts;
    Parts& Internals() { return *m_parts; }
    const Parts& Internals() const { return *m_parts; }

private:
    friend class RowReader;
    friend class TableScan;
    friend class IndexScan;
    std::unique_ptr<Parts> m_parts;
};

} // namespace jet
