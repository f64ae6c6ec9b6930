#include "jet/dao/TableRecordset.h"

#include "jet/base/Text.h"
#include "jet/catalog/TableSpecs.h"

#include <algorithm>

namespace jet {

namespace {

std::string Quote(std::string_view name)
{
    return '"' + std::string(name) + '"';
}

/// Whether the fields are there in their places; others may have come behind them.
bool StillHas(const TableDefinition& definition, const std::vector<FieldDef>& fields)
{
    if (definition.columns.size() < fields.size())
        return false;
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (definition.columns[i].name != fields[i].name ||
            definition.columns[i].type != fields[i].type)
            return false;
    return true;
}

} // namespace

TableRecordset::TableRecordset(std::shared_ptr<Session> session, std::string_view table,
                               RecordsetOptions options)
    : EditableRecordset(std::move(session), table, options),
      m_table(m_session->Tables().Open(table))
{
    m_name = m_table->Name(); // as the catalog spells it
    m_fields = FieldsFrom(m_table->Definition());
    Requery();
    m_session->Enter(*this);
}

TableRecordset::~TableRecordset()
{
    Close();
}

void TableRecordset::FileCloses() noexcept
{
    LetGo();
    m_table.reset();
}

void TableRecordset::LetGo() const noexcept
{
    m_walk.reset();
    m_pages.reset();
    m_reader.reset();
}

bool TableRecordset::Uses(std::string_view table) const
{
    return NamesEqual(m_name, table);
}

Table& TableRecordset::Rows() const
{
    if (!m_table)
        throw Error(ErrorKind::Closed,
                    "De recordset op de tabel " + Quote(m_name) + " of zijn database is gesloten.");
    if (m_table->File().ChangeCount() != m_checkedChanges)
        Revalidate();
    return *m_table;
}

void TableRecordset::Revalidate() const
{
    Catalog& tables = m_session->Tables();
    if (m_schema != tables.SchemaVersion()) {
        // Fields may have come, or a roll-back have taken the table away or put
        // another in its place.
        LetGo();
        m_schema = tables.SchemaVersion();
        const bool same = tables.HasTable(m_name) && tables.Open(m_name) == m_table &&
                          StillHas(m_table->Definition(), m_fields);
        if (!same) {
            m_table.reset();
            Rows(); // says that it is closed
        }
    }
    m_checkedChanges = m_table->File().ChangeCount();
}

void TableRecordset::RequireRow() const
{
    Rows();
    if (m_place != Place::OnRow || m_deleted)
        throw Error(ErrorKind::NoCurrentRow,
                    "Er is geen huidige rij in de tabel " + Quote(m_name) + '.');
}

bool TableRecordset::Updatable() const
{
    // The catalog alone writes the engine's own tables.
    return !m_options.readOnly && !Rows().File().IsReadOnly() && !m_table->Definition().system;
}

void TableRecordset::RequireUpdatable() const
{
    if (!Updatable())
        throw Error(ErrorKind::ReadOnly,
                    "De recordset op de tabel " + Quote(m_name) + " is alleen om te lezen.");
}

bool TableRecordset::BOF() const
{
    Rows();
    return m_place == Place::Before || m_place == Place::Empty;
}

bool TableRecordset::EndOfFile() const
{
    Rows();
    return m_place == Place::After || m_place == Place::Empty;
}

void TableRecordset::Leave(Place place)
{
    m_walk.reset();
    m_pages.reset();
    m_place = place;
    m_deleted = false;
    m_editing = Editing::No;
}

void TableRecordset::StandOn(RowId row)
{
    m_row = row;
    m_stepChanges = m_table->File().ChangeCount();
    m_place = Place::OnRow;
    m_deleted = false;
    m_editing = Editing::No;
}

int TableRecordset::Physical() const
{
    return m_table->Definition().logicalIndexes[m_index].physical;
}

Row TableRecordset::CurrentKey() const
{
    Row key;
    for (const IndexColumn& part : m_table->Definition().physicalIndexes[Physical()].columns)
        key.push_back(m_table->Get(m_row, part.column));
    return key;
}

void TableRecordset::StartFromEnd(bool backwards)
{
    m_walk = std::make_unique<Walk>();
    m_walk->backwards = backwards;
    m_walk->stages.emplace_back(*m_table, Physical(), IndexRange{}, backwards);
}

void TableRecordset::StartFromRow(bool backwards)
{
    Walk walk;
    walk.backwards = backwards;
    const Row key = m_deleted ? m_deletedKey : CurrentKey();
    IndexRange beyond;
    (backwards ? beyond.upper : beyond.lower) = key;
    (backwards ? beyond.upperInclusive : beyond.lowerInclusive) = false;
    walk.stages.emplace_back(*m_table, Physical(), IndexRange::Equal(key), backwards);
    walk.stages.emplace_back(*m_table, Physical(), beyond, backwards);
    walk.behind = m_row;
    m_walk = std::make_unique<Walk>(std::move(walk));
}

std::optional<RowId> TableRecordset::NextOfIndex(bool backwards)
{
    if (!m_walk || m_walk->backwards != backwards) {
        if (m_place == Place::OnRow)
            StartFromRow(backwards);
        else
            StartFromEnd(backwards);
    }
    Walk& walk = *m_walk;
    while (!walk.stages.empty()) {
        if (walk.stages.front().Next()) {
            const RowId row = walk.stages.front().Id();
            const bool passed =
                walk.behind && (backwards ? row >= *walk.behind : row <= *walk.behind);
            if (!passed)
                return row;
        } else {
            walk.stages.erase(walk.stages.begin());
            walk.behind.reset();
        }
    }
    return std::nullopt;
}

std::optional<RowId> TableRecordset::NextOfPages(bool backwards)
{
    if (!m_pages) {
        m_pages = std::make_unique<TableScan>(*m_table, m_place == Place::After
                                                            ? TableScan::Start::BehindLast
                                                            : TableScan::Start::BeforeFirst);
        if (m_place == Place::OnRow)
            m_pages->StandOn(m_row);
    }
    const bool found = backwards ? m_pages->Previous() : m_pages->Next();
    return found ? std::optional(m_pages->Id()) : std::nullopt;
}

bool TableRecordset::Step(bool backwards)
{
    if (const auto row = m_index >= 0 ? NextOfIndex(backwards) : NextOfPages(backwards)) {
        StandOn(*row);
        return true;
    }
    Leave(backwards ? Place::Before : Place::After);
    return false;
}

void TableRecordset::MoveFirst()
{
    Rows();
    Leave(Place::Before);
    if (!Step(false)) {
        m_place = Place::Empty;
        RequireRow();
    }
}

void TableRecordset::MoveLast()
{
    Rows();
    Leave(Place::After);
    if (!Step(true)) {
        m_place = Place::Empty;
        RequireRow();
    }
}

void TableRecordset::MoveNext()
{
    Rows();
    if (m_place != Place::OnRow && m_place != Place::Before)
        RequireRow();
    Step(false);
}

void TableRecordset::MovePrevious()
{
    Rows();
    if (m_place != Place::OnRow && m_place != Place::After)
        RequireRow();
    Step(true);
}

void TableRecordset::Move(int rows)
{
    for (; rows > 0 && !EndOfFile(); --rows)
        MoveNext();
    for (; rows < 0 && !BOF(); ++rows)
        MovePrevious();
}

int TableRecordset::RecordCount() const
{
    return static_cast<int>(Rows().RowCount());
}

int TableRecordset::AbsolutePosition() const
{
    throw Error(ErrorKind::NotSupported,
                "Een recordset van het type tabel kent geen rijnummer (AbsolutePosition).");
}

void TableRecordset::SetAbsolutePosition(int)
{
    AbsolutePosition();
}

int TableRecordset::FieldIndex(std::string_view name) const
{
    Rows();
    for (std::size_t i = 0; i < m_fields.size(); ++i)
        if (NamesEqual(m_fields[i].name, name))
            return static_cast<int>(i);
    throw Error(ErrorKind::UnknownField,
                "De tabel " + Quote(m_name) + " heeft geen veld " + Quote(name) + '.');
}

Value TableRecordset::Get(int field) const
{
    // The way of a walk over many rows: nothing has changed since the last step.
    if (m_pages && m_place == Place::OnRow && m_editing == Editing::No && !m_deleted &&
        static_cast<std::size_t>(field) < m_fields.size() &&
        m_table->File().ChangeCount() == m_stepChanges)
        return m_pages->Get(field);
    Rows();
    RequireField(field);
    if (m_editing != Editing::No)
        return m_buffer[static_cast<std::size_t>(field)];
    RequireRow();
    if (m_pages)
        return m_pages->Get(field);
    if (!m_reader)
        m_reader = std::make_unique<RowReader>(*m_table);
    if (m_reader->Id() != m_row && !m_reader->MoveTo(m_row))
        return m_table->Get(m_row, field); // says what is the matter
    return m_reader->Get(field);
}

void TableRecordset::GetRow(std::vector<Value>& row) const
{
    Rows();
    if (m_editing == Editing::No && m_pages) {
        RequireRow();
        m_pages->GetRow(m_fields.size(), row);
        return;
    }
    Recordset::GetRow(row);
}

void TableRecordset::Edit()
{
    RequireUpdatable();
    RequireRow();
    StartEditing(Editing::Change, m_table->GetRow(m_row));
}

void TableRecordset::AddNew()
{
    RequireUpdatable();
    StartEditing(Editing::New, m_session->Tables().NewRow(*m_table));
    // The number can be read at once, as users of this face expect.
    for (std::size_t i = 0; i < m_fields.size(); ++i)
        if (m_fields[i].autoNumber && m_fields[i].type == ColumnType::Long)
            m_buffer[i] = static_cast<std::int32_t>(m_table->Definition().lastAutoNumber + 1);
}

void TableRecordset::InsertRow()
{
    Row row = m_buffer;
    // A number read beforehand may have been handed out to another row since.
    for (std::size_t i = 0; i < m_fields.size(); ++i)
        if (m_fields[i].autoNumber && !m_changed[i])
            row[i] = {};
    m_lastModified = Rows().Insert(row);
}

void TableRecordset::ChangeRow(const std::vector<Table::Change>& changes)
{
    RequireRow();
    m_table->Update(m_row, changes);
    m_lastModified = m_row;
}

void TableRecordset::Delete()
{
    RequireUpdatable();
    RequireRow();
    m_editing = Editing::No;
    if (m_index >= 0)
        m_deletedKey = CurrentKey();
    m_table->Delete(m_row);
    m_deleted = true;
}

void TableRecordset::MoveToLastModified()
{
    Rows();
    if (!m_lastModified || !m_table->Exists(*m_lastModified)) {
        Leave(Place::Nowhere);
        RequireRow();
    }
    Leave(Place::Nowhere);
    StandOn(*m_lastModified);
}

void TableRecordset::SetIndex(std::string_view index)
{
    Table& table = Rows();
    int chosen = -1;
    if (!index.empty()) {
        chosen = table.Definition().FindIndex(index);
        if (chosen < 0)
            throw Error(ErrorKind::UnknownIndex,
                        "De tabel " + Quote(m_name) + " heeft geen index " + Quote(index) + '.');
    }
    m_index = chosen;
    Leave(Place::Before);
    if (!Step(false))
        m_place = Place::Empty;
}

Row TableRecordset::SeekKey(const std::vector<Value>& key) const
{
    const auto& parts = m_table->Definition().physicalIndexes[Physical()].columns;
    if (key.empty() || key.size() > parts.size())
        throw Error(ErrorKind::BadValue,
                    "De index " + Quote(m_table->Definition().logicalIndexes[m_index].name) +
                        " van de tabel " + Quote(m_name) + " vraagt 1 tot en met " +
                        std::to_string(parts.size()) + " waarden.");
    Row row;
    for (std::size_t i = 0; i < key.size(); ++i)
        row.push_back(Converted(parts[i].column, key[i]));
    return row;
}

void TableRecordset::Seek(std::string_view comparison, const std::vector<Value>& key)
{
    Table& table = Rows();
    if (m_index < 0)
        throw Error(ErrorKind::NotSupported, "Zoeken met Seek in de tabel " + Quote(m_name) +
                                                 " kan pas als er een index is gekozen.");
    const Row bound = SeekKey(key);
    IndexRange range;
    bool backwards = false;
    if (comparison == "=") {
        range = IndexRange::Equal(bound);
    } else if (comparison == ">=" || comparison == ">") {
        range.lower = bound;
        range.lowerInclusive = comparison == ">=";
    } else if (comparison == "<=" || comparison == "<") {
        range.upper = bound;
        range.upperInclusive = comparison == "<=";
        backwards = true;
    } else {
        throw Error(ErrorKind::BadValue,
                    "Seek kent de vergelijking " + Quote(comparison) + " niet.");
    }

    Leave(Place::Nowhere);
    IndexScan scan(table, Physical(), range, backwards);
    m_noMatch = !scan.Next();
    if (m_noMatch)
        return;
    StandOn(scan.Id());
    if (comparison != "=") { // an open end: the walk can go on from here
        m_walk = std::make_unique<Walk>();
        m_walk->backwards = backwards;
        m_walk->stages.push_back(std::move(scan));
    }
}

void TableRecordset::FindFirst(std::string_view)
{
    throw Error(ErrorKind::NotSupported,
                "FindFirst kan niet in een recordset van het type tabel: gebruik Seek.");
}

void TableRecordset::FindNext(std::string_view)
{
    throw Error(ErrorKind::NotSupported,
                "FindNext kan niet in een recordset van het type tabel: gebruik Seek.");
}

void TableRecordset::SetSort(std::string_view)
{
    throw Error(ErrorKind::NotSupported,
                "Sort kan niet in een recordset van het type tabel: kies een index.");
}

std::unique_ptr<Recordset> TableRecordset::Reopen()
{
    Rows();
    auto again = std::make_unique<TableRecordset>(m_session, m_name, m_options);
    if (m_index >= 0)
        again->SetIndex(m_table->Definition().logicalIndexes[m_index].name);
    return again;
}

void TableRecordset::Requery()
{
    Rows();
    Leave(Place::Before);
    if (!Step(false))
        m_place = Place::Empty;
}

} // namespace jet
