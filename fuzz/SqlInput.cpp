#include "SqlInput.h"

#include "jet/base/Text.h"
#include "jet/sql/Functions.h"
#include "jet/sql/Parser.h"
#include "jet/sql/Rewriter.h"
#include "jet/sql/StatementError.h"

#include <cstdio>
#include <cstdlib>

using namespace jet::sql;

namespace {

/// A few tables, with SQLite's own ones behind them.
class Tables : public Schema {
public:
    Tables()
    {
        Add("Locatie", "jet1",
            {{"Locatie_ID", jet::ColumnType::Long},
             {"omschrijving", jet::ColumnType::Text},
             {"x", jet::ColumnType::Double},
             {"Gras", jet::ColumnType::Boolean}});
        Add("Resultaat", "jet2",
            {{"Locatie_ID", jet::ColumnType::Long},
             {"DOMINANTE WINDRICHTING", jet::ColumnType::Double},
             {"datum", jet::ColumnType::DateTime},
             {"geld", jet::ColumnType::Currency},
             {"sleutel", jet::ColumnType::Guid},
             {"foto", jet::ColumnType::Ole}});
    }

    std::shared_ptr<const TableShape> FindTable(std::string_view name) override
    {
        for (const auto& table : m_tables)
            if (jet::NamesEqual(table->name, name))
                return table;
        return nullptr;
    }

    const std::vector<std::shared_ptr<TableShape>>& All() const { return m_tables; }

private:
    void Add(const char* name, const char* module,
             const std::vector<std::pair<const char*, jet::ColumnType>>& fields)
    {
        auto table = std::make_shared<TableShape>();
        table->name = name;
        table->module = module;
        for (const auto& [field, type] : fields) {
            FieldShape shape;
            shape.name = field;
            shape.type = type;
            table->fields.push_back(shape);
        }
        m_tables.push_back(table);
    }

    std::vector<std::shared_ptr<TableShape>> m_tables;
};

/// SQLite with those tables, a few rows in each.
class Runner {
public:
    Runner()
    {
        sqlite3* handle = nullptr;
        sqlite3_open(":memory:", &handle);
        m_handle.reset(handle);
        RegisterFunctions(handle, m_errors);
        for (const auto& table : m_tables.All()) {
            std::string columns, values;
            for (std::size_t i = 0; i < table->fields.size(); ++i) {
                const jet::ColumnType type = table->fields[i].type;
                const bool text = type == jet::ColumnType::Text || type == jet::ColumnType::Guid;
                columns +=
                    (i > 0 ? ",c" : "c") + std::to_string(i) + (text ? " TEXT COLLATE JET" : "");
                values += std::string(i > 0 ? "," : "") + (text ? "'dijk'" : "7");
            }
            for (std::size_t i = 0; i < table->fields.size(); ++i)
                columns += ",x" + std::to_string(i);
            columns += ",r";
            Do("CREATE TABLE " + table->module + "(" + columns + ")");
            std::string names;
            for (std::size_t i = 0; i < table->fields.size(); ++i)
                names += (i > 0 ? ",c" : "c") + std::to_string(i);
            Do("INSERT INTO " + table->module + "(" + names + ") VALUES (" + values + ")");
            Do("INSERT INTO " + table->module + " DEFAULT VALUES");
        }
        // What takes too long is no fault of the rewriter.
        sqlite3_progress_handler(
            handle, 200000, [](void*) { return 1; }, nullptr);
        sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, 1 << 24);
    }

    Tables& Schema() { return m_tables; }

    void Run(const Rewritten& statement)
    {
        sqlite3_stmt* handle = nullptr;
        const int code =
            sqlite3_prepare_v2(m_handle.get(), statement.sql.c_str(), -1, &handle, nullptr);
        const SqliteStatement prepared(handle);
        if (code != SQLITE_OK) {
            Judge(statement);
            return;
        }
        for (std::size_t i = 0; i < statement.parameters.size(); ++i) {
            const int at = static_cast<int>(i) + 1;
            const Parameter& value = statement.parameters[i];
            if (const auto* whole = std::get_if<std::int64_t>(&value))
                sqlite3_bind_int64(handle, at, *whole);
            else if (const auto* number = std::get_if<double>(&value))
                sqlite3_bind_double(handle, at, *number);
            else
                sqlite3_bind_text64(handle, at, std::get<std::string>(value).data(),
                                    std::get<std::string>(value).size(), SQLITE_STATIC,
                                    SQLITE_UTF8);
        }
        for (int rows = 0; rows < 100 && sqlite3_step(handle) == SQLITE_ROW; ++rows) {
        }
        m_errors.Take();
    }

private:
    void Do(const std::string& sql)
    {
        sqlite3_exec(m_handle.get(), sql.c_str(), nullptr, nullptr, nullptr);
    }

    // What the rewriter wrote must be SQL; only its size may be beyond SQLite.
    void Judge(const Rewritten& statement)
    {
        const std::string message = sqlite3_errmsg(m_handle.get());
        m_errors.Take();
        for (const char* excuse :
             {"too large", "too many", "stack overflow", "too big", "interrupted"})
            if (message.find(excuse) != std::string::npos)
                return;
        std::fprintf(stderr, "%s\n%s\n", message.c_str(), statement.sql.c_str());
        std::abort();
    }

    Tables m_tables;
    PendingError m_errors;
    SqliteHandle m_handle;
};

void Take(Runner& runner, std::string_view text)
{
    Statement statement = ParseStatement(text);
    Binder binder(runner.Schema(), text);
    if (auto* select = std::get_if<std::unique_ptr<Select>>(&statement)) {
        binder.Bind(**select);
        runner.Run(Rewriter(binder).Rewrite(**select));
    } else if (auto* update = std::get_if<Update>(&statement)) {
        binder.Bind(*update);
        std::vector<const Expr*> values;
        for (const Assignment& assignment : update->assignments)
            values.push_back(assignment.value.get());
        runner.Run(Rewriter(binder).RewriteRows(update->from, update->where.get(), values,
                                                {update->assignments.front().field->source}));
    } else if (auto* removal = std::get_if<Delete>(&statement)) {
        binder.Bind(*removal);
        runner.Run(Rewriter(binder).RewriteRows(removal->from, removal->where.get(), {},
                                                {binder.DeleteSource()}));
    } else if (auto* insert = std::get_if<Insert>(&statement)) {
        if (insert->select) {
            binder.Bind(*insert->select);
            runner.Run(Rewriter(binder).Rewrite(*insert->select));
        } else {
            binder.BindValues(insert->values);
            runner.Run(Rewriter(binder).RewriteValues(insert->values));
        }
    }
}

} // namespace

void TakeSqlInput(std::string_view text)
{
    static Runner runner;
    try {
        Take(runner, text);
    } catch (const jet::Error&) {
        // refused, as it should be
    }
}
