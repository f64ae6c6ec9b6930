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
    StartEditing(Editing::Change, std::move(*row));
}

void StatementRecordset::AddNew()
{
    RequireUpdatable();
    const Row defaults = m_session->Tables().NewRow(LiveTable());
    Row row(m_fields.size());
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        const int column = ColumnOf(static_cast<int>(i));
        if (column >= 0)
            row[i] = defaults[static_cast<std::size_t>(column)];
    }
    StartEditing(Editing::New, std::move(row));
}

int StatementRecordset::ColumnOf(int field) const
{
    return m_query->Columns()[static_cast<std::size_t>(field)].sourceColumn;
}

std::string StatementRecordset::TableOf(int field) const
{
    return m_query->Columns()[static_cast<std::size_t>(field)].sourceTable;
}

void StatementRecordset::InsertRow()
{
    Table& table = LiveTable();
    Row row = m_session->Tables().NewRow(table);
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        if (m_changed[i])
            row[static_cast<std::size_t>(ColumnOf(static_cast<int>(i)))] = m_buffer[i];
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

void StatementRecordset::ChangeRow(const std::vector<Table::Change>& changes)
{
    const RowId id = m_ids[static_cast<std::size_t>(m_position)];
    Table& table = LiveTable();
    const sql::RowChangeScope own(*sql::Engine::Of(*m_session), {&table});
    table.Update(id, changes);
    m_lastModified = id;
    m_calculatedKnown = false;
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
