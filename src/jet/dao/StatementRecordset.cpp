#include "jet/dao/StatementRecordset.h"

#include "jet/base/Text.h"
#include "jet/catalog/TableSpecs.h"

#include <algorithm>

namespace jet {

StatementRecordset::StatementRecordset(std::shared_ptr<Session> session, std::string_view source,
                                       RecordsetType type, RecordsetOptions options,
                                       std::string_view sort)
    : EditableRecordset(std::move(session), source, options),
      m_query(std::make_unique<sql::Query>(sql::Engine::Of(*m_session), source)),
      m_type(type),
      m_nextSort(sort)
{
    m_query->SetSort(sort);
    Fill();
    m_session->Enter(*this);
}

StatementRecordset::~StatementRecordset()
{
    Close();
}

void StatementRecordset::FileCloses() noexcept
{
    m_stream.reset();
    m_reader.reset();
    m_table.reset();
    m_query.reset();
}

bool StatementRecordset::Uses(std::string_view table) const
{
    return m_table != nullptr && NamesEqual(m_table->Name(), table);
}

sql::Query& StatementRecordset::Statement() const
{
    if (!m_query)
        throw Error(ErrorKind::Closed, "De recordset of zijn database is gesloten: " + m_name);
    return *m_query;
}

// --- the rows -------------------------------------------------------------------

void StatementRecordset::Fill()
{
    m_ids.clear();
    m_rows.clear();
    m_reader.reset();
    m_table.reset();
    m_stream.reset();
    m_calculatedKnown = false;
    m_deleted = false;
    m_editing = Editing::No;
    m_lastModified.reset();
    m_visited = 0;

    std::unique_ptr<sql::Rows> rows = Statement().Run();
    m_live = m_type == RecordsetType::Dynaset && !m_options.forwardOnly && m_query->IsUpdatable();
    DescribeFields();
    if (m_live) {
        m_table = m_query->UpdatableTable();
        m_schema = m_session->Tables().SchemaVersion();
    }
    if (m_options.forwardOnly) {
        m_stream = std::move(rows);
        m_position = 0;
        m_streamEnded = !m_stream->Next();
        m_visited = m_streamEnded ? 0 : 1;
        return;
    }
    while (rows->Next()) {
        if (m_live) {
            m_ids.push_back(rows->RowIdOf(0));
            continue;
        }
        Row row;
        row.reserve(m_fields.size());
        for (std::size_t i = 0; i < m_fields.size(); ++i)
            row.push_back(rows->Get(static_cast<int>(i)));
        m_rows.push_back(std::move(row));
    }
    StandOn(0);
}

void StatementRecordset::DescribeFields()
{
    m_fields.clear();
    Catalog& tables = m_session->Tables();
    for (const sql::ResultColumn& column : m_query->Columns()) {
        FieldDef field;
        if (!column.sourceTable.empty()) {
            const std::shared_ptr<Table> table = tables.Open(column.sourceTable);
            field = FieldFrom(
                table->Definition().columns[static_cast<std::size_t>(column.sourceColumn)]);
        }
        field.name = column.name;
        field.type = column.type.value_or(ColumnType::Text);
        m_fields.push_back(std::move(field));
    }
}

int StatementRecordset::Count() const
{
    return static_cast<int>(m_live ? m_ids.size() : m_rows.size());
}

Table& StatementRecordset::LiveTable() const
{
    Statement();
    // A roll-back may have taken the table away, or put another in its place.
    Catalog& tables = m_session->Tables();
    if (m_schema != tables.SchemaVersion()) {
        if (!tables.HasTable(m_table->Name()) || tables.Open(m_table->Name()) != m_table)
            throw Error(ErrorKind::Closed,
                        "De tabel \"" + m_table->Name() + "\" van de recordset is er niet meer.");
        m_schema = tables.SchemaVersion();
        m_reader.reset();
    }
    return *m_table;
}

std::optional<Row> StatementRecordset::RowAt(int position) const
{
    if (!m_live)
        return m_rows[static_cast<std::size_t>(position)];
    const RowId id = m_ids[static_cast<std::size_t>(position)];
    RowReader reader(LiveTable());
    if (!reader.MoveTo(id))
        return std::nullopt;
    Row row = m_query->Calculated(id);
    const std::vector<sql::ResultColumn>& columns = m_query->Columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].sourceColumn >= 0)
            row[i] = reader.Get(columns[i].sourceColumn);
    }
    return row;
}

const Row& StatementRecordset::CurrentCalculated() const
{
    if (!m_calculatedKnown)
        m_calculated = m_query->Calculated(m_ids[static_cast<std::size_t>(m_position)]);
    m_calculatedKnown = true;
    return m_calculated;
}

// --- where it stands --------------------------------------------------------------

void StatementRecordset::StandOn(int position)
{
    m_position = std::clamp(position, -1, Count());
    m_deleted = false;
    m_editing = Editing::No;
    m_calculatedKnown = false;
    if (m_position < Count())
        m_visited = std::max(m_visited, m_position + 1);
}

void StatementRecordset::RequireRows() const
{
    if (Count() == 0)
        throw Error(ErrorKind::NoCurrentRow, "De recordset is leeg: " + m_name);
}

void StatementRecordset::RequireRow() const
{
    Statement();
    const bool there =
        m_stream ? !m_streamEnded : m_position >= 0 && m_position < Count() && !m_deleted;
    if (!there)
        throw Error(ErrorKind::NoCurrentRow, "Er is geen huidige rij in de recordset: " + m_name);
}

void StatementRecordset::RequireKept(const char* operation) const
{
    Statement();
    if (m_stream)
        throw Error(ErrorKind::NotSupported,
                    std::string(operation) + " kan niet in een recordset die alleen vooruit gaat.");
}

bool StatementRecordset::BOF() const
{
    Statement();
    if (m_stream)
        return m_visited == 0;
    return Count() == 0 ? !m_deleted : m_position < 0;
}

bool StatementRecordset::EndOfFile() const
{
    Statement();
    if (m_stream)
        return m_streamEnded;
    return m_position >= Count() && !m_deleted;
}

void StatementRecordset::MoveFirst()
{
    Statement();
    if (m_stream) {
        if (m_visited > 1 || m_streamEnded)
            RequireKept("Teruggaan");
        return;
    }
    RequireRows();
    StandOn(0);
}

void StatementRecordset::MoveLast()
{
    RequireKept("Naar het einde gaan");
    RequireRows();
    StandOn(Count() - 1);
}

void StatementRecordset::MoveNext()
{
    if (EndOfFile())
        throw Error(ErrorKind::NoCurrentRow,
                    "De recordset staat al voorbij de laatste rij: " + m_name);
    if (m_stream) {
        m_streamEnded = !m_stream->Next();
        m_visited += m_streamEnded ? 0 : 1;
        ++m_position;
        return;
    }
    StandOn(m_deleted ? m_position : m_position + 1);
}

void StatementRecordset::MovePrevious()
{
    RequireKept("Teruggaan");
    if (BOF())
        throw Error(ErrorKind::NoCurrentRow, "De recordset staat al voor de eerste rij: " + m_name);
    StandOn(m_position - 1);
}

void StatementRecordset::Move(int rows)
{
    Statement();
    if (m_stream) {
        if (rows < 0)
            RequireKept("Teruggaan");
        for (int i = 0; i < rows; ++i)
            MoveNext();
        return;
    }
    if ((rows < 0 && BOF()) || (rows > 0 && EndOfFile()))
        throw Error(ErrorKind::NoCurrentRow, "De recordset heeft daar geen rij: " + m_name);
    const std::int64_t from = m_deleted && rows > 0 ? m_position - 1 : m_position;
    StandOn(static_cast<int>(std::clamp<std::int64_t>(from + rows, -1, Count())));
}

int StatementRecordset::RecordCount() const
{
    Statement();
    return m_visited;
}

int StatementRecordset::AbsolutePosition() const
{
    Statement();
    if (m_stream)
        return m_streamEnded ? -1 : m_position;
    return m_position < Count() ? m_position : -1;
}

void StatementRecordset::SetAbsolutePosition(int position)
{
    RequireKept("Een plaats kiezen");
    if (position < 0 || position >= Count())
        throw Error(ErrorKind::NoCurrentRow, "De recordset heeft geen rij op plaats " +
                                                 std::to_string(position) + ": " + m_name);
    StandOn(position);
}

// --- fields -------------------------------------------------------------------------

// A field that bears its table's name in front, since another has the same
// name, is found by its own name too when that is not ambiguous.
int StatementRecordset::FieldIndex(std::string_view name) const
{
    Statement();
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        if (NamesEqual(m_fields[i].name, name))
            return static_cast<int>(i);
    }
    const std::vector<sql::ResultColumn>& columns = m_query->Columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!columns[i].sourceName.empty() &&
            NamesEqual(columns[i].sourceName + "." + columns[i].name, name))
            return static_cast<int>(i);
    }
    throw Error(ErrorKind::UnknownField,
                "De recordset heeft geen veld \"" + std::string(name) + "\": " + m_name);
}

Value StatementRecordset::Get(int field) const
{
    Statement();
    RequireField(field);
    const auto at = static_cast<std::size_t>(field);
    if (m_editing != Editing::No)
        return m_buffer[at];
    RequireRow();
    if (m_stream)
        return m_stream->Get(field);
    if (!m_live)
        return m_rows[static_cast<std::size_t>(m_position)][at];
    Table& table = LiveTable();
    if (!m_reader)
        m_reader = std::make_unique<RowReader>(table);
    const RowId id = m_ids[static_cast<std::size_t>(m_position)];
    if (!(m_reader->Id() == id) && !m_reader->MoveTo(id))
        throw Error(ErrorKind::NoCurrentRow, "De rij is intussen verwijderd: " + m_name);
    const int column = m_query->Columns()[at].sourceColumn;
    return column >= 0 ? m_reader->Get(column) : CurrentCalculated()[at];
}

// --- finding ------------------------------------------------------------------------

void StatementRecordset::Find(std::string_view criterion, int from)
{
    RequireKept("Zoeken");
    sql::FilterRows rows;
    const std::vector<sql::ResultColumn>& columns = m_query->Columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        sql::FieldShape field;
        field.name = columns[i].name;
        field.type = m_fields[i].type;
        rows.fields.push_back(std::move(field));
    }
    const bool oneTable =
        !columns.empty() && std::all_of(columns.begin(), columns.end(), [&](const auto& column) {
            return column.sourceName == columns.front().sourceName;
        });
    rows.name = oneTable ? columns.front().sourceName : "";
    rows.count = Count();
    rows.row = [this](int i) { return RowAt(i); };
    const auto engine = sql::Engine::Of(*m_session);
    const int found = sql::FindRow(*engine, rows, criterion, from);
    m_noMatch = found < 0;
    if (!m_noMatch)
        StandOn(found);
}

void StatementRecordset::FindFirst(std::string_view criterion)
{
    Find(criterion, 0);
}

void StatementRecordset::FindNext(std::string_view criterion)
{
    Find(criterion, m_deleted ? m_position : m_position + 1);
}

void StatementRecordset::SetIndex(std::string_view)
{
    Statement();
    throw Error(ErrorKind::NotSupported, "Alleen een recordset op een tabel volgt een index.");
}

void StatementRecordset::Seek(std::string_view, const std::vector<Value>&)
{
    Statement();
    throw Error(ErrorKind::NotSupported, "Alleen een recordset op een tabel zoekt met Seek.");
}

// --- the statement again ----------------------------------------------------------

void StatementRecordset::SetSort(std::string_view fields)
{
    Statement();
    m_nextSort = fields;
}

std::unique_ptr<Recordset> StatementRecordset::Reopen()
{
    Statement();
    return std::make_unique<StatementRecordset>(m_session, m_name, m_type, m_options, m_nextSort);
}

void StatementRecordset::Requery()
{
    Statement();
    Fill();
}

} // namespace jet
