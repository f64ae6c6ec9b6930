#include "jet/dao/EditableRecordset.h"

#include "jet/base/Text.h"

namespace jet {

EditableRecordset::EditableRecordset(std::shared_ptr<Session> session, std::string_view name,
                                     RecordsetOptions options)
    : m_session(std::move(session)), m_name(name), m_options(options)
{}

const std::string& EditableRecordset::Name() const
{
    RequireOpen();
    return m_name;
}

void EditableRecordset::Close()
{
    m_session->Leave(*this);
    FileCloses();
}

const std::vector<FieldDef>& EditableRecordset::Fields() const
{
    RequireOpen();
    return m_fields;
}

bool EditableRecordset::NoMatch() const
{
    RequireOpen();
    return m_noMatch;
}

void EditableRecordset::RequireField(int field) const
{
    if (field < 0 || field >= static_cast<int>(m_fields.size()))
        throw Error(ErrorKind::UnknownField,
                    "De recordset heeft geen veld nummer " + std::to_string(field) + ": " + m_name);
}

void EditableRecordset::StartEditing(Editing editing, Row row)
{
    m_buffer = std::move(row);
    m_changed.assign(m_fields.size(), false);
    m_editing = editing;
}

Value EditableRecordset::Converted(int field, const Value& value) const
{
    const FieldDef& def = m_fields[static_cast<std::size_t>(field)];
    try {
        return value.ConvertedTo(def.type);
    } catch (const Error& error) {
        throw Error(error.Kind(), "De waarde past niet in het veld \"" + def.name +
                                      "\" van de tabel \"" + TableOf(field) +
                                      "\": " + error.what());
    }
}

void EditableRecordset::Set(int field, const Value& value)
{
    RequireOpen();
    RequireField(field);
    const auto at = static_cast<std::size_t>(field);
    if (m_editing == Editing::No)
        throw Error(ErrorKind::NoEdit,
                    "Het veld \"" + m_fields[at].name +
                        "\" kan alleen na Edit of AddNew een waarde krijgen: " + m_name);
    if (ColumnOf(field) < 0)
        throw Error(ErrorKind::ReadOnly, "Het veld \"" + m_fields[at].name +
                                             "\" is berekend en kan niet worden veranderd.");
    m_buffer[at] = Converted(field, value);
    m_changed[at] = true;
}

void EditableRecordset::Update()
{
    RequireOpen();
    if (m_editing == Editing::No)
        throw Error(ErrorKind::NoEdit, "Update kan alleen na Edit of AddNew: " + m_name);
    if (m_editing == Editing::New) {
        InsertRow();
    } else {
        std::vector<Table::Change> changes;
        for (std::size_t i = 0; i < m_fields.size(); ++i) {
            if (m_changed[i])
                changes.push_back({ColumnOf(static_cast<int>(i)), m_buffer[i]});
        }
        ChangeRow(changes);
    }
    m_editing = Editing::No;
}

void EditableRecordset::CancelUpdate()
{
    RequireOpen();
    m_editing = Editing::No;
}

} // namespace jet
