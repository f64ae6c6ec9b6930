#pragma once

#include "jet/table/Table.h"

#include <sqlite3.h>

#include <cstdint>
#include <optional>

namespace jet::sql {

/// What a value that SQLite compares a column with means for a look-up.
struct KeyValue {
    enum class Kind {
        Value,   ///< look it up
        Nothing, ///< no row can be equal, or lie on that side
        Unknown, ///< only reading all rows will tell
    };
    Kind kind = Kind::Unknown;
    Value value = {};
};

/// Columns whose indexes and hashes are used: all but long binary and decimal.
bool HasUsableKey(const Column& column);

/// For `column = value`.
KeyValue EqualKey(const Column& column, sqlite3_value* value);
/// For `column > value` or `>=`: a bound that leaves out no row. It may let
/// some in, since SQLite compares again.
KeyValue LowerKey(const Column& column, sqlite3_value* value);
KeyValue UpperKey(const Column& column, sqlite3_value* value);

/// A hash that is the same for a stored value and for any value that SQLite
/// would find equal to it; nothing for null, which equals nothing.
std::optional<std::uint64_t> HashOf(const Column& column, const Value& stored);
/// The same of what a column is compared with. Sets `kind` to Nothing when no
/// stored value can be equal.
std::uint64_t HashOf(const Column& column, sqlite3_value* value, KeyValue::Kind& kind);

std::uint64_t MixHashes(std::uint64_t a, std::uint64_t b);

} // namespace jet::sql
