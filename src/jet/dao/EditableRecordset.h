#pragma once

#include "jet/catalog/Session.h"
#include "jet/dao/Recordset.h"

#include <optional>

namespace jet {

/// What the kinds of recordset have alike: the file they stand on, their fields,
/// and the row that Edit or AddNew begins and Update stores.
class EditableRecordset : public Recordset, protected SessionUser {
public:
    const std::string& Name() const override;
    void Close() override;
    const std::vector<FieldDef>& Fields() const override;
    using Recordset::Set;
    void Set(int field, const Value& value) override;
    void Update() override;
    void CancelUpdate() override;
    bool NoMatch() const override;

protected:
    enum class Editing { No, Change, New };

    EditableRecordset(std::shared_ptr<Session> session, std::string_view name,
                      RecordsetOptions options);

    /// Throws Closed.
    virtual void RequireOpen() const = 0;
    /// Position of the field's column in the table that is changed, -1 = calculated.
    virtual int ColumnOf(int field) const = 0;
    virtual std::string TableOf(int field) const = 0;
    virtual void InsertRow() = 0; ///< stores what AddNew began
    virtual void ChangeRow(const std::vector<Table::Change>& changes) = 0;

    void RequireField(int field) const;
    void StartEditing(Editing editing, Row row);
    /// Throws when the field cannot hold the value.
    Value Converted(int field, const Value& value) const;

    std::shared_ptr<Session> m_session;
    std::string m_name; ///< the table, or the statement
    RecordsetOptions m_options;
    std::vector<FieldDef> m_fields;
    bool m_noMatch = false;
    std::optional<RowId> m_lastModified;

    Editing m_editing = Editing::No;
    Row m_buffer;
    std::vector<bool> m_changed; ///< by Set, since Edit or AddNew
};

} // namespace jet
