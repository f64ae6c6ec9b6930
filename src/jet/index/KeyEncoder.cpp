#include "jet/index/KeyEncoder.h"

#include "jet/index/TextKey.h"
#include "jet/table/ValueKind.h"

#include <algorithm>
#include <bit>

namespace jet {

namespace {

/// Big-endian, complemented throughout when `complement`.
template <typename Unsigned>
void AppendNumber(Unsigned bits, bool complement, Bytes& key)
{
    if (complement)
        bits = static_cast<Unsigned>(~bits);
    for (int shift = static_cast<int>(sizeof bits) * 8 - 8; shift >= 0; shift -= 8)
        key.push_back(static_cast<std::byte>(bits >> shift));
}

template <typename Unsigned>
void AppendSigned(Unsigned bits, bool ascending, Bytes& key)
{
    constexpr auto top = static_cast<Unsigned>(Unsigned{1} << (sizeof bits * 8 - 1));
    AppendNumber(static_cast<Unsigned>(bits ^ top), !ascending, key);
}

template <typename Unsigned>
void AppendFloat(Unsigned bits, bool ascending, Bytes& key)
{
    constexpr auto top = static_cast<Unsigned>(Unsigned{1} << (sizeof bits * 8 - 1));
    const bool negative = (bits & top) != 0;
    const Unsigned ordered = negative ? static_cast<Unsigned>(~bits) : bits | top;
    AppendNumber(ordered, !ascending, key);
}

/// Segments of eight data bytes, each followed by a byte that tells whether more
/// follows (9) or how many of the eight count.
void AppendBinary(std::span<const std::byte> data, bool ascending, Bytes& key)
{
    const std::byte mask = ascending ? std::byte{0} : std::byte{0xFF};
    while (!data.empty()) {
        const std::size_t count = std::min<std::size_t>(8, data.size());
        for (std::size_t i = 0; i < 8; ++i)
            key.push_back((i < count ? data[i] : std::byte{0}) ^ mask);
        data = data.subspan(count);
        // The "more follows" mark is the one byte that is not complemented.
        key.push_back(data.empty() ? static_cast<std::byte>(count) ^ mask : std::byte{9});
    }
}

/// 17 bytes: sign, then the magnitude. In a descending index the sign byte stays
/// as it is, so that negative numbers stand before positive ones there as well:
/// an oddity of these files that has to be kept.
void AppendDecimal(const Decimal& decimal, bool ascending, Bytes& key)
{
    key.push_back(decimal.negative ? std::byte{0} : std::byte{0xFF});
    for (const std::uint32_t group : decimal.magnitude)
        AppendNumber(group, decimal.negative == ascending, key);
}

bool AppendNotNull(const Value& value, ColumnType type, bool ascending, FileVersion version,
                   Bytes& key)
{
    const Value::Store& raw = value.Raw();
    switch (type) {
    case ColumnType::Boolean:
        key.push_back(std::get<bool>(raw) == ascending ? std::byte{0} : std::byte{0xFF});
        return true;
    case ColumnType::Byte:
        AppendNumber(std::get<std::uint8_t>(raw), !ascending, key);
        return true;
    case ColumnType::Integer:
        AppendSigned(static_cast<std::uint16_t>(std::get<std::int16_t>(raw)), ascending, key);
        return true;
    case ColumnType::Long:
        AppendSigned(static_cast<std::uint32_t>(std::get<std::int32_t>(raw)), ascending, key);
        return true;
    case ColumnType::Currency:
        AppendSigned(static_cast<std::uint64_t>(std::get<Currency>(raw).scaled), ascending, key);
        return true;
    case ColumnType::Single:
        AppendFloat(std::bit_cast<std::uint32_t>(std::get<float>(raw)), ascending, key);
        return true;
    case ColumnType::Double:
        AppendFloat(std::bit_cast<std::uint64_t>(std::get<double>(raw)), ascending, key);
        return true;
    case ColumnType::DateTime:
        AppendFloat(std::bit_cast<std::uint64_t>(std::get<DateTime>(raw).days), ascending, key);
        return true;
    case ColumnType::Text:
    case ColumnType::Memo:
        return version == FileVersion::Jet3
                   ? AppendTextKey97(std::get<std::string>(raw), ascending, key)
                   : AppendTextKey(std::get<std::string>(raw), ascending, key);
    case ColumnType::Binary:
    case ColumnType::Ole:
        AppendBinary(std::get<Bytes>(raw), ascending, key);
        return true;
    case ColumnType::Guid:
        AppendBinary(std::get<Guid>(raw).bytes, ascending, key);
        return true;
    case ColumnType::Decimal:
        AppendDecimal(std::get<Decimal>(raw), ascending, key);
        return true;
    }
    return false;
}

} // namespace

bool AppendKey(const Value& value, ColumnType type, bool ascending, FileVersion version, Bytes& key)
{
    if (value.IsNull() && type != ColumnType::Boolean) {
        key.push_back(ascending ? std::byte{0} : std::byte{0xFF});
        return true;
    }
    key.push_back(ascending ? std::byte{0x7F} : std::byte{0x80});
    if (value.IsNull()) // a boolean knows no null
        return AppendNotNull(Value(false), type, ascending, version, key);
    if (!IsOfKind(value, type))
        return AppendNotNull(value.ConvertedTo(type), type, ascending, version, key);
    return AppendNotNull(value, type, ascending, version, key);
}

std::optional<Bytes> EncodeKey(std::span<const Value> values, std::span<const ColumnType> types,
                               std::span<const bool> ascending)
{
    Bytes key;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!AppendKey(values[i], types[i], ascending[i], FileVersion::Jet4, key))
            return std::nullopt;
    }
    return key;
}

} // namespace jet
