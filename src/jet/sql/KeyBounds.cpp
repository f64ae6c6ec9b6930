#include "jet/sql/KeyBounds.h"

#include "jet/base/Numbers.h"

#include <bit>
#include <cmath>
#include <functional>
#include <limits>

namespace jet::sql {

namespace {

using T = ColumnType;
using Kind = KeyValue::Kind;

constexpr KeyValue kNothing{Kind::Nothing, {}};
constexpr KeyValue kUnknown{Kind::Unknown, {}};

struct WholeRange {
    double lowest, highest;
};

WholeRange RangeOf(T type)
{
    switch (type) {
    case T::Byte:
        return {0, 255};
    case T::Integer:
        return {-32768, 32767};
    default:
        return {-2147483648.0, 2147483647.0};
    }
}

Value Whole(T type, double number)
{
    const auto value = static_cast<std::int32_t>(number);
    switch (type) {
    case T::Byte:
        return static_cast<std::uint8_t>(value);
    case T::Integer:
        return static_cast<std::int16_t>(value);
    default:
        return value;
    }
}

bool IsNumber(sqlite3_value* value)
{
    const int type = sqlite3_value_type(value);
    return type == SQLITE_INTEGER || type == SQLITE_FLOAT;
}

std::string_view TextOf(sqlite3_value* value)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

KeyValue TextKeyOf(const Column& column, sqlite3_value* value)
{
    if (sqlite3_value_type(value) != SQLITE_TEXT)
        return kUnknown;
    if (column.type != T::Guid)
        return {Kind::Value, Value(TextOf(value))};
    if (const auto guid = GuidFromText(TextOf(value)))
        return {Kind::Value, Value(*guid)};
    return kNothing;
}

// A bound on the lower (`up` false) or the upper side.
KeyValue Bound(const Column& column, sqlite3_value* value, bool up)
{
    if (sqlite3_value_type(value) == SQLITE_NULL)
        return kNothing;
    switch (column.type) {
    case T::Text:
    case T::Memo:
        return TextKeyOf(column, value);
    case T::Byte:
    case T::Integer:
    case T::Long: {
        if (!IsNumber(value))
            return kUnknown;
        const auto [lowest, highest] = RangeOf(column.type);
        const double number = sqlite3_value_double(value);
        const double bound = up ? std::ceil(number) : std::floor(number);
        if (up ? bound < lowest : bound > highest)
            return kNothing;
        return {Kind::Value, Whole(column.type, std::clamp(bound, lowest, highest))};
    }
    case T::Single: {
        if (!IsNumber(value))
            return kUnknown;
        const double number = sqlite3_value_double(value);
        constexpr float kMost = std::numeric_limits<float>::max();
        if (!(std::abs(number) < static_cast<double>(kMost)))
            return kUnknown;
        auto single = static_cast<float>(number);
        if (up ? static_cast<double>(single) < number : static_cast<double>(single) > number)
            single = std::nextafter(single, up ? kMost : -kMost);
        return {Kind::Value, Value(single)};
    }
    case T::Double:
        return IsNumber(value) ? KeyValue{Kind::Value, Value(sqlite3_value_double(value))}
                               : kUnknown;
    case T::DateTime:
        return IsNumber(value) ? KeyValue{Kind::Value, Value(DateTime{sqlite3_value_double(value)})}
                               : kUnknown;
    default:
        return kUnknown;
    }
}

std::uint64_t Mixed(std::uint64_t bits)
{
    bits ^= bits >> 33;
    bits *= 0xff51afd7ed558ccdULL;
    bits ^= bits >> 33;
    bits *= 0xc4ceb9fe1a85ec53ULL;
    return bits ^ bits >> 33;
}

std::uint64_t HashOfNumber(double number)
{
    return Mixed(std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number));
}

std::uint64_t HashOfText(std::string_view text)
{
    return Mixed(std::hash<std::string>{}(TextSortKey(text)));
}

std::uint64_t HashOfBytes(const void* bytes, std::size_t size)
{
    return Mixed(std::hash<std::string_view>{}({static_cast<const char*>(bytes), size}));
}

} // namespace

bool HasUsableKey(const Column& column)
{
    switch (column.type) {
    case T::Decimal:
    case T::Currency:
    case T::Binary:
    case T::Ole:
        return false;
    default:
        return column.HasKnownOrder();
    }
}

KeyValue EqualKey(const Column& column, sqlite3_value* value)
{
    if (sqlite3_value_type(value) == SQLITE_NULL)
        return kNothing;
    const double number = IsNumber(value) ? sqlite3_value_double(value) : 0;
    switch (column.type) {
    case T::Text:
    case T::Memo:
    case T::Guid:
        return TextKeyOf(column, value);
    case T::Boolean:
        if (!IsNumber(value))
            return kUnknown;
        return number == 0 || number == -1 ? KeyValue{Kind::Value, Value(number != 0)} : kNothing;
    case T::Byte:
    case T::Integer:
    case T::Long: {
        if (!IsNumber(value))
            return kUnknown;
        const auto [lowest, highest] = RangeOf(column.type);
        if (number < lowest || number > highest || number != std::floor(number))
            return kNothing;
        return {Kind::Value, Whole(column.type, number)};
    }
    case T::Single:
        if (!IsNumber(value))
            return kUnknown;
        if (static_cast<double>(static_cast<float>(number)) != number)
            return kNothing;
        return {Kind::Value, Value(static_cast<float>(number))};
    default:
        return Bound(column, value, false);
    }
}

KeyValue LowerKey(const Column& column, sqlite3_value* value)
{
    return Bound(column, value, false);
}

KeyValue UpperKey(const Column& column, sqlite3_value* value)
{
    return Bound(column, value, true);
}

std::optional<std::uint64_t> HashOf(const Column& column, const Value& stored)
{
    if (stored.IsNull())
        return std::nullopt;
    switch (column.type) {
    case T::Text:
    case T::Memo:
        return HashOfText(std::get<std::string>(stored.Raw()));
    case T::Guid: {
        const Guid& guid = std::get<Guid>(stored.Raw());
        return HashOfBytes(guid.bytes.data(), guid.bytes.size());
    }
    case T::Binary:
    case T::Ole: {
        const Bytes& bytes = stored.AsBytes();
        return HashOfBytes(bytes.data(), bytes.size());
    }
    default:
        return HashOfNumber(stored.AsDouble());
    }
}

std::uint64_t HashOf(const Column& column, sqlite3_value* value, Kind& kind)
{
    kind = Kind::Nothing;
    const int type = sqlite3_value_type(value);
    if (type == SQLITE_NULL)
        return 0;
    kind = Kind::Value;
    switch (column.type) {
    case T::Text:
    case T::Memo:
        if (type == SQLITE_TEXT)
            return HashOfText(TextOf(value));
        break;
    case T::Guid:
        if (const auto guid = type == SQLITE_TEXT ? GuidFromText(TextOf(value)) : std::nullopt)
            return HashOfBytes(guid->bytes.data(), guid->bytes.size());
        break;
    case T::Binary:
    case T::Ole:
        if (type == SQLITE_BLOB)
            return HashOfBytes(sqlite3_value_blob(value),
                               static_cast<std::size_t>(sqlite3_value_bytes(value)));
        break;
    default:
        if (IsNumber(value))
            return HashOfNumber(sqlite3_value_double(value));
        break;
    }
    kind = Kind::Unknown;
    return 0;
}

std::uint64_t MixHashes(std::uint64_t a, std::uint64_t b)
{
    return Mixed(a * 31 + b);
}

} // namespace jet::sql
