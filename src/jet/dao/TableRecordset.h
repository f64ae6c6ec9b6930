#pragma once

#include "jet/dao/EditableRecordset.h"

namespace jet {

/// The recordset of kind Table: all rows of one table, in the order of an index
/// or, without one, of the table's pages.
class TableRecordset : public EditableRecordset {
public:
    TableRecordset(std::shared_ptr<Session> session, std::string_view table,
                   RecordsetOptions options);
    ~TableRecordset() override;

    RecordsetType Type() const override { return RecordsetType::Table; }
    bool IsOpen() const override { return m_table != nullptr; }
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
    void GetRow(std::vector<Value>& row) const override;

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
    enum class Place { Before, OnRow, After, Empty, Nowhere };

    /// The way on from the current row, kept so that the next step need not
    /// search. In index order: the rest of the keys equal to the current one, then
    /// the keys behind it.
    struct Walk {
        bool backwards = false;
        std::vector<IndexScan> stages; ///< the first is walked, then the next
        std::optional<RowId> behind;   ///< the first stage gives only rows behind this one
    };

    void FileCloses() noexcept override;
    bool Uses(std::string_view table) const override;
    void RequireOpen() const override { Rows(); }
    int ColumnOf(int field) const override { return field; }
    std::string TableOf(int) const override { return m_name; }
    void InsertRow() override;
    void ChangeRow(const std::vector<Table::Change>& changes) override;

    Table& Rows() const; ///< throws Closed
    void Revalidate() const;
    void LetGo() const noexcept;
    void RequireRow() const;
    void RequireUpdatable() const;
    void Leave(Place place);
    void StandOn(RowId row);
    void StartFromEnd(bool backwards);
    void StartFromRow(bool backwards);
    std::optional<RowId> NextOfIndex(bool backwards);
    std::optional<RowId> NextOfPages(bool backwards);
    bool Step(bool backwards); ///< false = moved off the rows
    int Physical() const;
    Row CurrentKey() const;
    Row SeekKey(const std::vector<Value>& key) const;

    mutable std::shared_ptr<Table> m_table; // mutable: what Rows() renews after a roll-back
    int m_index = -1;                       ///< position in logicalIndexes, -1 = page order

    Place m_place = Place::Before;
    RowId m_row;
    std::uint64_t m_stepChanges = 0; ///< changes of the file when we came to m_row
    bool m_deleted = false;          ///< the current row, by this recordset
    Row m_deletedKey;                ///< its key in the current index

    mutable std::unique_ptr<Walk> m_walk;        ///< in index order
    mutable std::unique_ptr<TableScan> m_pages;  ///< in page order; stands on the current row
    mutable std::unique_ptr<RowReader> m_reader; ///< reads the current row in index order
    mutable std::uint64_t m_schema = 0;
    mutable std::uint64_t m_checkedChanges = 0; ///< of the file when that was last looked at
};

} // namespace jet
