#pragma once

#include "jet/base/Value.h"

namespace jet {

namespace detail {
template <typename T, std::size_t I = 0>
constexpr std::size_t AlternativeIndex()
{
    if constexpr (std::is_same_v<std::variant_alternative_t<I, Value::Store>, T>)
        return I;
    else
        return AlternativeIndex<T, I + 1>();
}
} // namespace detail

/// Position in Value::Store of what a column of `type` holds when it is not null.
constexpr std::size_t AlternativeOf(ColumnType type)
{
    using detail::AlternativeIndex;
    switch (type) {
    case ColumnType::Boolean:
        return AlternativeIndex<bool>();
    case ColumnType::Byte:
        return AlternativeIndex<std::uint8_t>();
    case ColumnType::Integer:
        return AlternativeIndex<std::int16_t>();
    case ColumnType::Long:
        return AlternativeIndex<std::int32_t>();
    case ColumnType::Currency:
        return AlternativeIndex<Currency>();
    case ColumnType::Single:
        return AlternativeIndex<float>();
    case ColumnType::Double:
        return AlternativeIndex<double>();
    case ColumnType::DateTime:
        return AlternativeIndex<DateTime>();
    case ColumnType::Text:
    case ColumnType::Memo:
        return AlternativeIndex<std::string>();
    case ColumnType::Binary:
    case ColumnType::Ole:
        return AlternativeIndex<Bytes>();
    case ColumnType::Guid:
        return AlternativeIndex<Guid>();
    case ColumnType::Decimal:
        return AlternativeIndex<Decimal>();
    }
    return 0;
}

/// Whether a value that is not null needs no conversion for a column of `type`.
inline bool IsOfKind(const Value& value, ColumnType type)
{
    return value.Raw().index() == AlternativeOf(type);
}

} // namespace jet
