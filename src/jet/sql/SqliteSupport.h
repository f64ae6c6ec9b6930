#pragma once

#include "jet/base/Error.h"
#include "jet/base/Value.h"

#include <sqlite3.h>

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace jet::sql {

struct CloseSqlite {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
};
using SqliteHandle = std::unique_ptr<sqlite3, CloseSqlite>;

struct FinalizeSqlite {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, FinalizeSqlite>;

/// What one of our functions or tables threw while SQLite was running. SQLite
/// only hears that something failed; whoever called it throws this again.
class PendingError {
public:
    void Keep(std::exception_ptr error)
    {
        if (!m_error)
            m_error = std::move(error);
    }
    std::exception_ptr Take() { return std::exchange(m_error, nullptr); }

private:
    std::exception_ptr m_error;
};

/// The arguments of one call of a function; its result is set on Context().
class Arguments {
public:
    Arguments(sqlite3_context* context, int count, sqlite3_value** values)
        : m_context(context), m_count(count), m_values(values)
    {}

    int Count() const { return m_count; }
    bool IsNull(int i) const { return sqlite3_value_type(m_values[i]) == SQLITE_NULL; }
    bool IsText(int i) const { return sqlite3_value_type(m_values[i]) == SQLITE_TEXT; }
    bool IsInteger(int i) const { return sqlite3_value_type(m_values[i]) == SQLITE_INTEGER; }
    std::int64_t Integer(int i) const { return sqlite3_value_int64(m_values[i]); }
    double Number(int i) const { return sqlite3_value_double(m_values[i]); }
    std::string_view Text(int i) const
    {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(m_values[i]));
        return {text ? text : "", static_cast<std::size_t>(sqlite3_value_bytes(m_values[i]))};
    }
    sqlite3_value* Raw(int i) const { return m_values[i]; }

    void Null() const { sqlite3_result_null(m_context); }
    void Result(std::int64_t value) const { sqlite3_result_int64(m_context, value); }
    void Result(double value) const { sqlite3_result_double(m_context, value); }
    void Result(std::string_view text) const
    {
        sqlite3_result_text64(m_context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    void Same(int i) const { sqlite3_result_value(m_context, m_values[i]); }

private:
    sqlite3_context* m_context;
    int m_count;
    sqlite3_value** m_values;
};

using FunctionBody = void (*)(const Arguments&);

namespace detail {

template <FunctionBody body, bool seesNull>
void Invoke(sqlite3_context* context, int count, sqlite3_value** values) noexcept
{
    const Arguments arguments(context, count, values);
    for (int i = 0; !seesNull && i < count; ++i) {
        if (arguments.IsNull(i)) {
            arguments.Null();
            return;
        }
    }
    try {
        body(arguments);
    } catch (...) {
        static_cast<PendingError*>(sqlite3_user_data(context))->Keep(std::current_exception());
        sqlite3_result_error(context, "", 0);
    }
}

} // namespace detail

/// Makes `body` known as an SQL function. A null argument gives null unless the
/// function sees nulls itself.
template <FunctionBody body, bool seesNull = false>
void AddFunction(sqlite3* handle, PendingError& errors, const char* name, int arguments,
                 int flags = SQLITE_DETERMINISTIC)
{
    sqlite3_create_function_v2(handle, name, arguments, SQLITE_UTF8 | flags, &errors,
                               &detail::Invoke<body, seesNull>, nullptr, nullptr, nullptr);
}

} // namespace jet::sql
