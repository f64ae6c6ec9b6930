#include "jet/sql/Engine.h"

#include "jet/base/Numbers.h"
#include "jet/base/Text.h"
#include "jet/sql/Functions.h"
#include "jet/sql/StatementError.h"

#include <cmath>
#include <limits>
#include <mutex>

namespace jet::sql {

namespace {

constexpr std::size_t kMaxPrepared = 64;
constexpr std::size_t kMaxKeptLength = 4000;

/// The engines of the open files. Each goes when its file closes.
struct Registry {
    std::mutex lock;
    std::map<const Session*, std::shared_ptr<Engine>> engines;
};

Registry& Engines()
{
    static Registry registry;
    return registry;
}

Value WholeValue(std::int64_t number, ColumnType type)
{
    const auto fits = [&](std::int64_t lowest, std::int64_t highest) {
        if (number < lowest || number > highest)
            throw Error(ErrorKind::Overflow,
                        "De uitkomst " + std::to_string(number) + " is te groot");
    };
    switch (type) {
    case ColumnType::Byte:
        fits(0, 255);
        return static_cast<std::uint8_t>(number);
    case ColumnType::Integer:
        fits(-32768, 32767);
        return static_cast<std::int16_t>(number);
    default:
        fits(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
        return static_cast<std::int32_t>(number);
    }
}

double FiniteNumber(double number)
{
    if (!std::isfinite(number))
        throw Error(ErrorKind::Overflow, "De uitkomst is te groot");
    return number;
}

std::string TextOf(sqlite3_stmt* statement, int column)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return {text ? text : "", static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

Value UntypedValue(sqlite3_stmt* statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return WholeValue(sqlite3_column_int64(statement, column), ColumnType::Long);
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    default:
        return TextOf(statement, column);
    }
}

Value ReadValue(sqlite3_stmt* statement, int column, const ResultColumn& kind)
{
    const int stored = sqlite3_column_type(statement, column);
    if (stored == SQLITE_NULL)
        return {};
    if (!kind.type)
        return UntypedValue(statement, column);
    switch (*kind.type) {
    case ColumnType::Boolean:
        return sqlite3_column_double(statement, column) != 0;
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long: {
        if (stored == SQLITE_INTEGER)
            return WholeValue(sqlite3_column_int64(statement, column), *kind.type);
        const double number =
            RoundHalfToEven(FiniteNumber(sqlite3_column_double(statement, column)));
        if (std::abs(number) > 1e15)
            throw Error(ErrorKind::Overflow, "De uitkomst is te groot");
        return WholeValue(static_cast<std::int64_t>(number), *kind.type);
    }
    case ColumnType::Single: {
        const auto number = static_cast<float>(sqlite3_column_double(statement, column));
        FiniteNumber(static_cast<double>(number));
        return number;
    }
    case ColumnType::Double:
        return FiniteNumber(sqlite3_column_double(statement, column));
    case ColumnType::DateTime:
        return DateTime{FiniteNumber(sqlite3_column_double(statement, column))};
    case ColumnType::Currency:
        if (kind.exact)
            return Currency{sqlite3_column_int64(statement, column)};
        return Value(sqlite3_column_double(statement, column)).ConvertedTo(ColumnType::Currency);
    case ColumnType::Decimal:
        if (kind.exact)
            return Value(TextOf(statement, column)).ConvertedTo(ColumnType::Decimal);
        return Value(sqlite3_column_double(statement, column)).ConvertedTo(ColumnType::Decimal);
    case ColumnType::Binary:
    case ColumnType::Ole: {
        const auto* bytes = static_cast<const std::byte*>(sqlite3_column_blob(statement, column));
        return Bytes(bytes, bytes + sqlite3_column_bytes(statement, column));
    }
    case ColumnType::Guid:
        return Value(TextOf(statement, column)).ConvertedTo(ColumnType::Guid);
    default:
        return TextOf(statement, column);
    }
}

} // namespace

std::shared_ptr<Engine> Engine::Of(Session& session)
{
    session.File(); // throws Closed
    Registry& registry = Engines();
    const std::lock_guard guard(registry.lock);
    std::shared_ptr<Engine>& engine = registry.engines[&session];
    if (!engine)
        engine = std::make_shared<Engine>(session);
    return engine;
}

Engine::Engine(Session& session) : m_session(&session)
{
    sqlite3* handle = nullptr;
    const int opened =
        sqlite3_open_v2(":memory:", &handle,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    m_handle.reset(handle);
    if (opened != SQLITE_OK)
        throw Error(ErrorKind::Query, "De SQL-verwerking kan niet worden gestart.");
    // A text in double quotes is never a name, and never taken for one silently.
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_exec(handle, "PRAGMA temp_store=MEMORY", nullptr, nullptr, nullptr);
    RegisterFunctions(handle, m_errors);
    session.Enter(*this);
}

Engine::~Engine()
{
    ForgetTables();
}

Session& Engine::File() const
{
    if (m_session == nullptr)
        throw Error(ErrorKind::Closed, "De database is gesloten.");
    return *m_session;
}

void Engine::FileCloses() noexcept
{
    const std::shared_ptr<Engine> self = shared_from_this();
    for (Rows* rows : m_running) {
        rows->m_prepared.reset();
        rows->m_tables.clear();
    }
    m_running.clear();
    ForgetTables();
    m_handle.reset();
    Registry& registry = Engines();
    const std::lock_guard guard(registry.lock);
    registry.engines.erase(m_session);
    m_session = nullptr;
}

void Engine::ForgetTables()
{
    ++m_generation;
    m_prepared.clear();
    m_lookups.Clear();
    m_tables.clear();
}

Schema& Engine::CurrentSchema()
{
    const std::uint64_t version = Tables().SchemaVersion();
    if (version != m_schemaVersion)
        ForgetTables();
    m_schemaVersion = version;
    return *this;
}

std::shared_ptr<const TableShape> Engine::FindTable(std::string_view name)
{
    const std::string key = FoldName(name);
    const auto known = m_tables.find(key);
    if (known != m_tables.end())
        return known->second->Shape();
    if (!Tables().HasTable(name))
        return nullptr;
    auto table = std::make_shared<VirtualTable>(m_handle.get(), "jet" + std::to_string(++m_modules),
                                                Tables().Open(name), m_lookups, m_errors);
    m_tables.emplace(key, table);
    return table->Shape();
}

std::shared_ptr<Table> Engine::TableOf(const TableShape& shape) const
{
    const auto known = m_tables.find(FoldName(shape.name));
    return known != m_tables.end() ? known->second->Rows() : Tables().Open(shape.name);
}

SqliteStatement Engine::Prepare(const std::string& sql, std::string_view text)
{
    const auto kept = m_prepared.find(sql);
    if (kept != m_prepared.end()) {
        SqliteStatement statement = std::move(kept->second);
        m_prepared.erase(kept);
        return statement;
    }
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v2(m_handle.get(), sql.c_str(),
                                        static_cast<int>(sql.size()) + 1, &statement, nullptr);
    SqliteStatement prepared(statement);
    if (code != SQLITE_OK)
        Fail(code, text);
    return prepared;
}

void Engine::GiveBack(const std::string& sql, SqliteStatement statement)
{
    sqlite3_reset(statement.get());
    sqlite3_clear_bindings(statement.get());
    if (sql.size() > kMaxKeptLength || m_session == nullptr)
        return;
    if (m_prepared.size() >= kMaxPrepared)
        m_prepared.erase(m_prepared.begin());
    m_prepared.insert_or_assign(sql, std::move(statement));
}

void Engine::Fail(int code, std::string_view text)
{
    if (const std::exception_ptr error = m_errors.Take()) {
        try {
            std::rethrow_exception(error);
        } catch (const Error&) {
            RethrowFor(text);
        }
    }
    const std::string message = sqlite3_errmsg(m_handle.get());
    if (code == SQLITE_NOMEM)
        throw StatementError(ErrorKind::Query, "Er is te weinig geheugen voor de opdracht", text);
    if (message.find("too large") != message.npos ||
        message.find("stack overflow") != message.npos ||
        message.find("too many") != message.npos || message.find("too big") != message.npos)
        throw StatementError(ErrorKind::Query, "De opdracht is te ingewikkeld", text);
    throw StatementError(ErrorKind::Query, "De opdracht kan niet worden uitgevoerd: " + message,
                         text);
}

void Engine::RethrowFor(std::string_view text)
{
    try {
        throw;
    } catch (const StatementError&) {
        throw;
    } catch (const Error& error) {
        if (error.Kind() == ErrorKind::Closed || error.Kind() == ErrorKind::Damaged ||
            error.Kind() == ErrorKind::Io || error.Kind() == ErrorKind::ReadOnly)
            throw;
        throw StatementError(error.Kind(), error.what(), text);
    }
}

int Engine::FindInModule(const sqlite3_module* module, void* data, const std::string& name,
                         Rewritten statement, std::string_view text)
{
    sqlite3_create_module_v2(m_handle.get(), name.c_str(), module, data, nullptr);
    struct Removal {
        sqlite3* handle;
        const std::string& name;
        ~Removal() { sqlite3_create_module_v2(handle, name.c_str(), nullptr, nullptr, nullptr); }
    } const removal{m_handle.get(), name};
    Rows rows(shared_from_this(), std::move(statement), text);
    rows.m_generation = m_generation - 1; // not kept: the module goes
    return rows.Next() ? static_cast<int>(sqlite3_column_int64(rows.m_prepared.get(), 0)) : -1;
}

std::unique_ptr<Rows> Engine::Run(Rewritten statement, std::string_view text)
{
    File();
    return std::unique_ptr<Rows>(new Rows(shared_from_this(), std::move(statement), text));
}

Rows::Rows(std::shared_ptr<Engine> engine, Rewritten statement, std::string_view text)
    : m_engine(std::move(engine)),
      m_statement(std::move(statement)),
      m_text(text),
      m_generation(m_engine->m_generation)
{
    for (const std::shared_ptr<const TableShape>& shape : m_statement.tables)
        m_tables.push_back(m_engine->m_tables.at(FoldName(shape->name)));
    m_prepared = m_engine->Prepare(m_statement.sql, m_text);
    Bind();
    m_engine->m_running.insert(this);
}

Rows::~Rows()
{
    if (m_engine->m_running.erase(this) > 0 && m_generation == m_engine->m_generation)
        m_engine->GiveBack(m_statement.sql, std::move(m_prepared));
    m_prepared.reset();
}

void Rows::Bind()
{
    for (std::size_t i = 0; i < m_statement.parameters.size(); ++i) {
        const int at = static_cast<int>(i) + 1;
        const Parameter& parameter = m_statement.parameters[i];
        if (const auto* whole = std::get_if<std::int64_t>(&parameter))
            sqlite3_bind_int64(m_prepared.get(), at, *whole);
        else if (const auto* number = std::get_if<double>(&parameter))
            sqlite3_bind_double(m_prepared.get(), at, *number);
        else
            sqlite3_bind_text64(m_prepared.get(), at, std::get<std::string>(parameter).data(),
                                std::get<std::string>(parameter).size(), SQLITE_STATIC,
                                SQLITE_UTF8);
    }
}

bool Rows::Next()
{
    m_engine->File();
    const int code = sqlite3_step(m_prepared.get());
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        m_engine->Fail(code, m_text);
    return false;
}

Value Rows::Get(int column) const
{
    m_engine->File();
    try {
        return ReadValue(m_prepared.get(), column,
                         m_statement.columns[static_cast<std::size_t>(column)]);
    } catch (const Error&) {
        Engine::RethrowFor(m_text);
    }
}

RowId Rows::RowIdOf(int i) const
{
    return UnpackRowId(
        sqlite3_column_int64(m_prepared.get(), static_cast<int>(m_statement.columns.size()) + i));
}

} // namespace jet::sql
