#pragma once

#include "jet/dao/EditableRecordset.h"
#include "jet/sql/RowFilter.h"
#include "jet/sql/Statements.h"

namespace jet {

/// The recordset kinds that stand on a statement.
///
/// A dynaset over one table keeps the ids of its rows and reads every row as it
/// is now; it can be edited. Any other dynaset, and every snapshot, keeps the
/// rows themselves. Forward only, nothing is kept but the current row.
class StatementRecordset : public EditableRecordset {
public:
    /// `type` is Dynaset or Snapshot.
    StatementRecordset(std::shared_ptr<Session> session, std::string_view source,
                       RecordsetType type, RecordsetOptions options, std::string_view sort = {});
    ~StatementRecordset() override;

    RecordsetType Type() const override { return m_type; }
    bool IsOpen() const override { return m_query != nullptr; }
    bool Updatable() const override;

    bool BOF() const override;
    bool EndOfFile() const override;
    void MoveFirst() override;
    void MoveLast() override;
    void MoveNext() override;
    void MovePrevious() override;
    void Move(int rows) override;
    int RecordCount() const override;
    int AbsolutePosition() const override;
    void SetAbsolutePosition(int position) override;

    int FieldIndex(std::string_view name) const override;
    using Recordset::Get;
    Value Get(int field) const override;

    void Edit() override;
    void AddNew() override;
    void Delete() override;
    void MoveToLastModified() override;

    void SetIndex(std::string_view index) override;
    void Seek(std::string_view comparison, const std::vector<Value>& key) override;
    void FindFirst(std::string_view criterion) override;
    void FindNext(std::string_view criterion) override;

    void SetSort(std::string_view fields) override;
    std::unique_ptr<Recordset> Reopen() override;
    void Requery() override;

private:
    void FileCloses() noexcept override;
    bool Uses(std::string_view table) const override;
    void RequireOpen() const override { Statement(); }
    int ColumnOf(int field) const override;
    std::string TableOf(int field) const override;
    void InsertRow() override;
    void ChangeRow(const std::vector<Table::Change>& changes) override;

    sql::Query& Statement() const; ///< throws Closed
    Table& LiveTable() const;
    void Fill();
    void DescribeFields();
    int Count() const;
    void StandOn(int position);
    void RequireRows() const;
    void RequireRow() const;
    void RequireUpdatable() const;
    void RequireKept(const char* operation) const;
    std::optional<Row> RowAt(int position) const;
    const Row& CurrentCalculated() const;
    void Find(std::string_view criterion, int from);

    std::unique_ptr<sql::Query> m_query;
    RecordsetType m_type;
    std::string m_nextSort;

    bool m_live = false; ///< m_ids stand for the rows, else m_rows are they
    std::vector<RowId> m_ids;
    std::vector<Row> m_rows;
    std::shared_ptr<Table> m_table; ///< of a live one
    mutable std::unique_ptr<RowReader> m_reader;
    mutable std::uint64_t m_schema = 0;
    mutable Row m_calculated; ///< calculated fields of the current row
    mutable bool m_calculatedKnown = false;

    std::unique_ptr<sql::Rows> m_stream; ///< forward only
    bool m_streamEnded = false;

    int m_position = 0; ///< -1 before the first row, Count() behind the last
    int m_visited = 0;
    bool m_deleted = false; ///< the current row was deleted; the next one stands at m_position
};

} // namespace jet
