#pragma once

#include "jet/base/Value.h"
#include "jet/catalog/TableDef.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

/// Table: one table through an index or in page order; Dynaset: rows of a
/// statement, read as they are now, editable when they come from one table;
/// Snapshot: rows as they were, not editable.
enum class RecordsetType { Table = 1, Dynaset = 2, Snapshot = 4 };

struct RecordsetOptions {
    bool readOnly = false;
    bool forwardOnly = false; ///< MoveNext only; rows are not kept
};

/// A walkable, editable set of rows. It stands on one row, before the first
/// (BOF) or behind the last (EOF); when just opened on the first, or on both
/// when empty.
///
/// Rows deleted beside it are found out when they are read: NoCurrentRow is
/// thrown, never foreign bytes returned.
class Recordset {
public:
    virtual ~Recordset() = default;

    virtual const std::string& Name() const = 0; ///< the table, or the statement
    virtual RecordsetType Type() const = 0;
    virtual bool IsOpen() const = 0;
    virtual void Close() = 0;
    virtual bool Updatable() const = 0;

    virtual bool BOF() const = 0;
    virtual bool EndOfFile() const = 0; ///< DAO's EOF, a macro's name in C
    virtual void MoveFirst() = 0;       ///< throws NoCurrentRow when empty, as the other moves
    virtual void MoveLast() = 0;
    virtual void MoveNext() = 0;
    virtual void MovePrevious() = 0;
    virtual void Move(int rows) = 0;
    /// Table: rows of the table. Others: rows visited so far (all after MoveLast).
    virtual int RecordCount() const = 0;
    /// Position of the current row from 0, -1 when there is none. Not for Table.
    virtual int AbsolutePosition() const = 0;
    virtual void SetAbsolutePosition(int position) = 0;

    virtual const std::vector<FieldDef>& Fields() const = 0;
    /// Position of a field without regard to case; throws UnknownField.
    virtual int FieldIndex(std::string_view name) const = 0;
    /// The field of the current row, or, between Edit/AddNew and Update, of the
    /// row being made. Throws NoCurrentRow.
    virtual Value Get(int field) const = 0;
    Value Get(std::string_view field) const { return Get(FieldIndex(field)); }
    /// All fields at once, into `row`: the quick way through many rows.
    virtual void GetRow(std::vector<Value>& row) const
    {
        row.resize(Fields().size());
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = Get(static_cast<int>(i));
    }

    virtual void Edit() = 0;
    virtual void AddNew() = 0; ///< starts from the default values
    virtual void Set(int field, const Value& value) = 0;
    void Set(std::string_view field, const Value& value) { Set(FieldIndex(field), value); }
    /// Stores what Edit or AddNew began. After AddNew the current row is what it
    /// was before; LastModified() goes to the new one.
    virtual void Update() = 0;
    virtual void CancelUpdate() = 0;
    virtual void Delete() = 0; ///< the current row; move on before reading again
    virtual void MoveToLastModified() = 0;

    /// Table type: chooses the index that Seek and the moves follow (empty = page order).
    virtual void SetIndex(std::string_view index) = 0;
    /// Table type: `comparison` is "=", ">=", ">", "<=" or "<". Sets NoMatch.
    virtual void Seek(std::string_view comparison, const std::vector<Value>& key) = 0;
    /// Other types: goes to the first (next) row for which the criterion (the
    /// text of a WHERE, e.g. Locatie="naam") holds. Sets NoMatch; the current
    /// row stays when there is none.
    virtual void FindFirst(std::string_view criterion) = 0;
    virtual void FindNext(std::string_view criterion) = 0;
    virtual bool NoMatch() const = 0;

    /// The order for the next Reopen, as in ORDER BY.
    virtual void SetSort(std::string_view fields) = 0;
    /// A new recordset over the same rows, with the order set by SetSort.
    virtual std::unique_ptr<Recordset> Reopen() = 0;
    /// Runs the statement again.
    virtual void Requery() = 0;
};

} // namespace jet
