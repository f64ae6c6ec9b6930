#include "jet/dao/StatementRecordset.h"

#include <algorithm>

// Changing the rows of a dynaset over one table.
namespace jet {

bool StatementRecordset::Updatable() const
{
    Statement();
    return m_live && !m_options.readOnly && !m_session->File().IsReadOnly();
}

void StatementRecordset::RequireUpdatable() const
{
    Statement();
    if (!m_live)
        throw Error(ErrorKind::NotSupported,
                    "De rijen van de recordset kunnen niet worden veranderd: " + m_name);
    if (!Updatable())
        throw Error(ErrorKind::ReadOnly, "De recordset is alleen om te lezen: " + m_name);
}

void StatementRecordset::Edit()
{
    RequireUpdatable();
    RequireRow();
    std::optional<Row> row = RowAt(m_position);
    if (!row)
        throw Error(ErrorKind::NoCurrentRow, "De rij is intussen verwijderd: " + m_name);
    m_buffer = std::move(*row);
    m_changed.assign(m_fields.size(), false);
    m_editing = Editing::Change;
}

void StatementRecordset::AddNew()
{
    RequireUpdatable();
    const Row defaults = m_session->Tables().NewRow(LiveTable());
    m_buffer.assign(m_fields.size(), Value());
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        const int column = m_query->Columns()[i].sourceColumn;
        if (column >= 0)
            m_buffer[i] = defaults[static_cast<std::size_t>(column)];
    }
    m_changed.assign(m_fields.size(), false);
    m_editing = Editing::New;
}

void StatementRecordset::Set(int field, const Value& value)
{
    Statement();
    RequireField(field);
    const auto at = static_cast<std::size_t>(field);
    if (m_editing == Editing::No)
        throw Error(ErrorKind::NoEdit, "Het veld \"" + m_fields[at].name +
                                           "\" krijgt een waarde zonder Edit of AddNew: " + m_name);
    if (m_query->Columns()[at].sourceColumn < 0)
        throw Error(ErrorKind::ReadOnly, "Het veld \"" + m_fields[at].name +
                                             "\" is berekend en kan niet worden veranderd.");
    try {
        m_buffer[at] = value.ConvertedTo(m_fields[at].type);
    } catch (const Error& error) {
        throw Error(error.Kind(), "Veld \"" + m_fields[at].name + "\": " + error.what());
    }
    m_changed[at] = true;
}

void StatementRecordset::Insert()
{
    Table& table = LiveTable();
    Row row = m_session->Tables().NewRow(table);
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        if (m_changed[i])
            row[static_cast<std::size_t>(m_query->Columns()[i].sourceColumn)] = m_buffer[i];
    }
    {
        const sql::RowChangeScope own(*sql::Engine::Of(*m_session), {&table});
        m_lastModified = table.Insert(row);
    }
    m_ids.push_back(*m_lastModified);
    ++m_visited;
    if (m_ids.size() == 1) // nothing was current: still nothing is
        m_position = -1;
    else if (m_position == static_cast<int>(m_ids.size()) - 1 && !m_deleted)
        ++m_position; // stays behind the last row
}

void StatementRecordset::Update()
{
    Statement();
    if (m_editing == Editing::No)
        throw Error(ErrorKind::NoEdit, "Update zonder Edit of AddNew: " + m_name);
    if (m_editing == Editing::New) {
        Insert();
    } else {
        const RowId id = m_ids[static_cast<std::size_t>(m_position)];
        std::vector<Table::Change> changes;
        for (std::size_t i = 0; i < m_fields.size(); ++i) {
            if (m_changed[i])
                changes.push_back({m_query->Columns()[i].sourceColumn, m_buffer[i]});
        }
        Table& table = LiveTable();
        const sql::RowChangeScope own(*sql::Engine::Of(*m_session), {&table});
        table.Update(id, changes);
        m_lastModified = id;
        m_calculatedKnown = false;
    }
    m_editing = Editing::No;
}

void StatementRecordset::CancelUpdate()
{
    Statement();
    m_editing = Editing::No;
}

void StatementRecordset::Delete()
{
    RequireUpdatable();
    RequireRow();
    const auto at = m_ids.begin() + m_position;
    {
        Table& table = LiveTable();
        const sql::RowChangeScope own(*sql::Engine::Of(*m_session), {&table});
        table.Delete(*at);
    }
    m_ids.erase(at);
    m_editing = Editing::No;
    m_reader.reset();
    m_deleted = true;
    m_visited = std::max(0, m_visited - 1);
}

void StatementRecordset::MoveToLastModified()
{
    RequireUpdatable();
    const auto at =
        m_lastModified ? std::find(m_ids.begin(), m_ids.end(), *m_lastModified) : m_ids.end();
    if (at == m_ids.end())
        throw Error(ErrorKind::NoCurrentRow, "Er is nog geen rij veranderd: " + m_name);
    StandOn(static_cast<int>(at - m_ids.begin()));
}

} // namespace jet
