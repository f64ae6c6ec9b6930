#include "jet/sql/Statements.h"

#include "jet/base/Text.h"
#include "jet/sql/Definitions.h"
#include "jet/sql/StatementError.h"

#include <algorithm>
#include <set>

namespace jet::sql {

namespace {

/// The statements that change rows. Every one first finds out, by a SELECT,
/// what it will do, and then does it on the tables.
class RowChanges {
public:
    RowChanges(Engine& engine, std::string_view text)
        : m_engine(engine), m_text(text), m_binder(engine.CurrentSchema(), text)
    {}

    int Run(Insert& insert);
    int Run(Update& update);
    int Run(Delete& statement);
    int RunInto(Select& select);

private:
    std::vector<int> TargetColumns(const Insert& insert, const Table& table) const;
    Pager& File() const { return m_engine.File().File(); }

    Engine& m_engine;
    std::string_view m_text;
    Binder m_binder;
};

/// The file that a statement names in front of a table: this one, one that is
/// open, or one that is opened for the statement.
class NamedFile {
public:
    NamedFile(Engine& engine, const std::string& name)
    {
        if (name.empty()) {
            m_session = &engine.File();
            return;
        }
        namespace fs = std::filesystem;
        const auto* bytes = reinterpret_cast<const char8_t*>(name.data());
        fs::path path{std::u8string_view(bytes, name.size())};
        std::error_code ignored;
        if (!fs::exists(path, ignored) && !path.has_extension())
            path += ".mdb";
        SessionGroup& group = engine.File().Group();
        m_opened = group.Find(path);
        if (!m_opened) {
            m_opened = group.Open(path, {});
            m_own = true;
        }
        m_session = m_opened.get();
    }

    Session& Get() const { return *m_session; }

    /// A file opened for the statement is not part of a transaction around it.
    void Done() const
    {
        while (m_own && m_session->File().Depth() > 0)
            m_session->File().Commit(Flush::No);
    }

private:
    std::shared_ptr<Session> m_opened;
    Session* m_session = nullptr;
    bool m_own = false;
};

std::vector<int> RowChanges::TargetColumns(const Insert& insert, const Table& table) const
{
    const TableDefinition& definition = table.Definition();
    std::vector<int> columns;
    if (insert.fields.empty()) {
        for (std::size_t i = 0; i < definition.columns.size(); ++i)
            columns.push_back(static_cast<int>(i));
        return columns;
    }
    for (const auto& [name, position] : insert.fields) {
        const int column = definition.FindColumn(name);
        if (column < 0)
            m_binder.Fail(ErrorKind::UnknownField, position, "Onbekend veld '" + name + "'");
        if (std::find(columns.begin(), columns.end(), column) != columns.end())
            m_binder.Fail(ErrorKind::Query, position,
                          "Het veld '" + name + "' staat er meer dan eens");
        columns.push_back(column);
    }
    return columns;
}

int RowChanges::Run(Insert& insert)
{
    const NamedFile file(m_engine, insert.target.file);
    Catalog& catalog = file.Get().Tables();
    if (!catalog.HasTable(insert.target.name))
        m_binder.Fail(ErrorKind::UnknownTable, insert.target.position,
                      "Onbekende tabel '" + insert.target.name + "'");
    const std::shared_ptr<Table> table = catalog.Open(insert.target.name);
    const std::vector<int> columns = TargetColumns(insert, *table);

    Rewritten rewritten;
    if (insert.select) {
        if (insert.select->into)
            m_binder.Fail(ErrorKind::Syntax, insert.select->into->position,
                          "INTO kan hier niet staan");
        m_binder.Bind(*insert.select);
        rewritten = Rewriter(m_binder).Rewrite(*insert.select);
    } else {
        m_binder.BindValues(insert.values);
        rewritten = Rewriter(m_binder).RewriteValues(insert.values);
    }
    if (rewritten.columns.size() != columns.size())
        m_binder.Fail(ErrorKind::Query, insert.target.position,
                      "Het aantal waarden is niet gelijk aan het aantal velden");

    std::vector<Row> found;
    for (const auto rows = m_engine.Run(std::move(rewritten), m_text); rows->Next();) {
        Row values;
        for (std::size_t i = 0; i < columns.size(); ++i)
            values.push_back(rows->Get(static_cast<int>(i)));
        found.push_back(std::move(values));
    }
    std::optional<RowChangeScope> own;
    if (&file.Get() == &m_engine.File())
        own.emplace(m_engine, std::vector<const Table*>{table.get()});
    std::optional<AllOrNothing> scope;
    if (found.size() > 1)
        scope.emplace(file.Get().File());
    for (Row& values : found) {
        Row row = catalog.NewRow(*table);
        for (std::size_t i = 0; i < columns.size(); ++i)
            row[static_cast<std::size_t>(columns[i])] = std::move(values[i]);
        table->Insert(row);
    }
    if (scope)
        scope->Done();
    file.Done();
    return static_cast<int>(found.size());
}

int RowChanges::Run(Update& update)
{
    m_binder.Bind(update);
    // The tables that change, in the order of their first assignment.
    std::vector<int> sources;
    std::vector<const Expr*> values;
    for (const Assignment& assignment : update.assignments) {
        values.push_back(assignment.value.get());
        if (std::find(sources.begin(), sources.end(), assignment.field->source) == sources.end())
            sources.push_back(assignment.field->source);
    }
    struct Found {
        std::vector<RowId> rows;
        Row values;
    };
    std::vector<Found> found;
    std::vector<std::shared_ptr<Table>> tables;
    for (const int source : sources)
        tables.push_back(
            m_engine.TableOf(*m_binder.Sources()[static_cast<std::size_t>(source)].table));

    Rewritten rewritten =
        Rewriter(m_binder).RewriteRows(update.from, update.where.get(), values, sources);
    for (const auto rows = m_engine.Run(std::move(rewritten), m_text); rows->Next();) {
        Found one;
        for (std::size_t i = 0; i < sources.size(); ++i)
            one.rows.push_back(rows->RowIdOf(static_cast<int>(i)));
        for (std::size_t i = 0; i < values.size(); ++i)
            one.values.push_back(rows->Get(static_cast<int>(i)));
        found.push_back(std::move(one));
    }

    std::vector<const Table*> changed;
    for (const std::shared_ptr<Table>& table : tables)
        changed.push_back(table.get());
    const RowChangeScope own(m_engine, std::move(changed));
    std::optional<AllOrNothing> scope;
    if (found.size() > 1 || sources.size() > 1)
        scope.emplace(File());
    std::set<std::pair<std::size_t, RowId>> touched;
    for (const Found& one : found) {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            if (one.rows[i].page == 0) // an outer join found no row
                continue;
            std::vector<Table::Change> changes;
            for (std::size_t k = 0; k < values.size(); ++k) {
                const Expr& field = *update.assignments[k].field;
                if (field.source == sources[i])
                    changes.push_back({field.column, one.values[k]});
            }
            tables[i]->Update(one.rows[i], changes);
            if (i == 0)
                touched.insert({i, one.rows[i]});
        }
    }
    if (scope)
        scope->Done();
    return static_cast<int>(touched.size());
}

int RowChanges::Run(Delete& statement)
{
    m_binder.Bind(statement);
    const int source = m_binder.DeleteSource();
    const std::shared_ptr<Table> table =
        m_engine.TableOf(*m_binder.Sources()[static_cast<std::size_t>(source)].table);
    Rewritten rewritten =
        Rewriter(m_binder).RewriteRows(statement.from, statement.where.get(), {}, {source});
    std::vector<RowId> found;
    for (const auto rows = m_engine.Run(std::move(rewritten), m_text); rows->Next();) {
        if (rows->RowIdOf(0).page != 0)
            found.push_back(rows->RowIdOf(0));
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());

    const RowChangeScope own(m_engine, {table.get()});
    std::optional<AllOrNothing> scope;
    if (found.size() > 1)
        scope.emplace(File());
    for (const RowId row : found)
        table->Delete(row);
    if (scope)
        scope->Done();
    return static_cast<int>(found.size());
}

FieldDef FieldOf(const ResultColumn& column, bool keepAutoNumber)
{
    FieldDef field;
    field.name = column.name;
    field.type = column.type.value_or(ColumnType::Text);
    if (field.type == ColumnType::Text || field.type == ColumnType::Binary)
        field.size = column.size;
    field.precision = column.precision;
    field.scale = column.scale;
    field.autoNumber = keepAutoNumber && column.autoNumber;
    return field;
}

// The new table has the fields' names, types and sizes, and nothing of their
// other properties; its indexes are made later, if at all.
int RowChanges::RunInto(Select& select)
{
    m_binder.Bind(select);
    const bool oneTable = m_binder.Sources().size() == 1 && select.unions.empty();
    Rewritten rewritten = Rewriter(m_binder).Rewrite(select);
    const NamedFile file(m_engine, select.into->file);
    TableDef spec;
    spec.name = select.into->name;
    bool autoNumber = false;
    for (const ResultColumn& column : rewritten.columns) {
        spec.fields.push_back(FieldOf(column, oneTable && !autoNumber));
        autoNumber = autoNumber || spec.fields.back().autoNumber;
    }
    if (file.Get().Tables().HasTable(spec.name))
        m_binder.Fail(ErrorKind::NameInUse, select.into->position,
                      "De tabel '" + spec.name + "' bestaat al");

    std::vector<Row> found;
    for (const auto rows = m_engine.Run(std::move(rewritten), m_text); rows->Next();) {
        Row values;
        for (std::size_t i = 0; i < spec.fields.size(); ++i)
            values.push_back(rows->Get(static_cast<int>(i)));
        found.push_back(std::move(values));
    }
    AllOrNothing scope(file.Get().File());
    file.Get().Tables().Create(spec);
    const std::shared_ptr<Table> table = file.Get().Tables().Open(spec.name);
    for (Row& row : found)
        table->Insert(row);
    scope.Done();
    file.Done();
    return static_cast<int>(found.size());
}

struct Runner {
    Engine& engine;
    std::string_view text;

    int operator()(std::unique_ptr<Select>& select) const
    {
        if (!select->into)
            throw StatementError(ErrorKind::Query,
                                 "Een SELECT zonder INTO wordt geopend, niet uitgevoerd", text, 0);
        return RowChanges(engine, text).RunInto(*select);
    }
    int operator()(Insert& statement) const { return RowChanges(engine, text).Run(statement); }
    int operator()(Update& statement) const { return RowChanges(engine, text).Run(statement); }
    int operator()(Delete& statement) const { return RowChanges(engine, text).Run(statement); }
    template <typename Definition>
    int operator()(Definition& statement) const
    {
        ExecuteDefinition(engine, statement);
        return 0;
    }
};

} // namespace

int Execute(Engine& engine, std::string_view text)
{
    engine.File();
    try {
        Statement statement = ParseStatement(text);
        return std::visit(Runner{engine, text}, statement);
    } catch (const Error&) {
        Engine::RethrowFor(text);
    }
}

} // namespace jet::sql
