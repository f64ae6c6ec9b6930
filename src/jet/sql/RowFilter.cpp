#include "jet/sql/RowFilter.h"

#include "jet/sql/StatementError.h"

namespace jet::sql {

namespace {

// A second kind of virtual table: the rows of a recordset, counted by rowid.
struct Connection : sqlite3_vtab {
    const FilterRows* rows = nullptr;
    PendingError* errors = nullptr;
    int from = 0;
};

struct Cursor : sqlite3_vtab_cursor {
    int at = 0;
    std::optional<Row> row;
};

struct Module {
    const FilterRows& rows;
    PendingError& errors;
    int from;
};

Connection& Of(sqlite3_vtab_cursor* cursor)
{
    return *static_cast<Connection*>(cursor->pVtab);
}

int Connect(sqlite3* handle, void* data, int, const char* const*, sqlite3_vtab** vtab,
            char**) noexcept
{
    const auto* module = static_cast<const Module*>(data);
    auto* connection = new (std::nothrow) Connection;
    if (connection == nullptr)
        return SQLITE_NOMEM;
    connection->rows = &module->rows;
    connection->errors = &module->errors;
    connection->from = module->from;
    *vtab = connection;
    std::string columns = "CREATE TABLE t(";
    for (std::size_t i = 0; i < module->rows.fields.size(); ++i)
        columns += (i > 0 ? ",c" : "c") + std::to_string(i);
    return sqlite3_declare_vtab(handle, (columns + ")").c_str());
}

int Disconnect(sqlite3_vtab* vtab) noexcept
{
    delete static_cast<Connection*>(vtab);
    return SQLITE_OK;
}

int BestIndex(sqlite3_vtab*, sqlite3_index_info*) noexcept
{
    return SQLITE_OK;
}

int Open(sqlite3_vtab*, sqlite3_vtab_cursor** cursor) noexcept
{
    *cursor = new (std::nothrow) Cursor;
    return *cursor == nullptr ? SQLITE_NOMEM : SQLITE_OK;
}

int Close(sqlite3_vtab_cursor* cursor) noexcept
{
    delete static_cast<Cursor*>(cursor);
    return SQLITE_OK;
}

// Stands on the first row from `at` on that is still there.
int Settle(Cursor& cursor) noexcept
{
    const Connection& connection = Of(&cursor);
    try {
        for (; cursor.at < connection.rows->count; ++cursor.at) {
            cursor.row = connection.rows->row(cursor.at);
            if (cursor.row)
                break;
        }
        return SQLITE_OK;
    } catch (...) {
        connection.errors->Keep(std::current_exception());
        return SQLITE_ERROR;
    }
}

int Filter(sqlite3_vtab_cursor* base, int, const char*, int, sqlite3_value**) noexcept
{
    auto& cursor = *static_cast<Cursor*>(base);
    cursor.at = Of(base).from;
    return Settle(cursor);
}

int Next(sqlite3_vtab_cursor* base) noexcept
{
    auto& cursor = *static_cast<Cursor*>(base);
    ++cursor.at;
    return Settle(cursor);
}

int AtEnd(sqlite3_vtab_cursor* base) noexcept
{
    return static_cast<Cursor*>(base)->at >= Of(base).rows->count ? 1 : 0;
}

int Column(sqlite3_vtab_cursor* base, sqlite3_context* context, int column) noexcept
{
    ReturnValue(context, (*static_cast<Cursor*>(base)->row)[static_cast<std::size_t>(column)],
                false);
    return SQLITE_OK;
}

int GetRowId(sqlite3_vtab_cursor* base, sqlite3_int64* row) noexcept
{
    *row = static_cast<Cursor*>(base)->at;
    return SQLITE_OK;
}

const sqlite3_module kModule = [] {
    sqlite3_module module{};
    module.iVersion = 1;
    module.xConnect = Connect;
    module.xBestIndex = BestIndex;
    module.xDisconnect = Disconnect;
    module.xDestroy = Disconnect;
    module.xOpen = Open;
    module.xClose = Close;
    module.xFilter = Filter;
    module.xNext = Next;
    module.xEof = AtEnd;
    module.xColumn = Column;
    module.xRowid = GetRowId;
    return module;
}();

} // namespace

int FindRow(Engine& engine, const FilterRows& rows, std::string_view criterion, int from)
{
    try {
        const ExprPtr expr = ParseCriterion(criterion);
        auto shape = std::make_shared<TableShape>();
        shape->name = rows.name;
        shape->module = "jetrows";
        shape->fields = rows.fields;
        Binder binder(engine.CurrentSchema(), criterion);
        binder.BindCriterion(*expr, shape);
        Module module{rows, engine.Errors(), from};
        return engine.FindInModule(&kModule, &module, shape->module,
                                   Rewriter(binder).RewriteCriterion(*expr, shape->module),
                                   criterion);
    } catch (const Error&) {
        Engine::RethrowFor(criterion);
    }
}

} // namespace jet::sql
