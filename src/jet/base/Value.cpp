#include "jet/base/Value.h"

#include "jet/base/Error.h"
#include "jet/base/Numbers.h"
#include "jet/base/Text.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace jet {
namespace {

template <typename... Fs>
struct Overloaded : Fs... {
    using Fs::operator()...;
};
template <class... Fs>
Overloaded(Fs...) -> Overloaded<Fs...>; // clang 14 does not deduce it by itself

std::string Shown(const Value& value)
{
    if (value.IsNull())
        return "Null";
    if (std::holds_alternative<Bytes>(value.Raw()))
        return "(binair)";
    std::string text = value.AsText();
    if (text.size() > 60)
        text = text.substr(0, 57) + "...";
    return "\"" + text + "\"";
}

[[noreturn]] void ThrowBadValue(const Value& value, const char* kind)
{
    throw Error(ErrorKind::BadValue, "De waarde " + Shown(value) + " is geen " + kind + ".");
}

[[noreturn]] void ThrowOverflow(const Value& value, const char* kind)
{
    throw Error(ErrorKind::Overflow,
                "De waarde " + Shown(value) + " past niet in een " + kind + ".");
}

/// The number in a value, when it is one or a text that reads as one.
std::optional<double> NumberIn(const Value& value)
{
    return std::visit(
        Overloaded{
            [](bool v) -> std::optional<double> { return v ? -1 : 0; },
            [](std::uint8_t v) -> std::optional<double> { return v; },
            [](std::int16_t v) -> std::optional<double> { return v; },
            [](std::int32_t v) -> std::optional<double> { return v; },
            [](Currency v) -> std::optional<double> {
                return static_cast<double>(v.scaled) / 10000.0;
            },
            [](float v) -> std::optional<double> { return static_cast<double>(v); },
            [](double v) -> std::optional<double> { return v; },
            [](DateTime v) -> std::optional<double> { return v.days; },
            [](const std::string& v) -> std::optional<double> { return DoubleFromText(v); },
            [](const Decimal& v) -> std::optional<double> { return DoubleFromDecimal(v); },
            [](const auto&) -> std::optional<double> { return std::nullopt; },
        },
        value.Raw());
}

double RequireNumber(const Value& value, const char* kind)
{
    const auto number = NumberIn(value);
    if (!number || !std::isfinite(*number))
        ThrowBadValue(value, kind);
    return *number;
}

/// Whole numbers keep their exactness; everything else goes through a double.
template <typename T>
T ToInteger(const Value& value, const char* kind)
{
    const double rounded = RoundHalfToEven(RequireNumber(value, "getal"));
    if (rounded < static_cast<double>(std::numeric_limits<T>::min()) ||
        rounded > static_cast<double>(std::numeric_limits<T>::max()))
        ThrowOverflow(value, kind);
    return static_cast<T>(rounded);
}

Currency ToCurrency(const Value& value)
{
    if (const auto* currency = std::get_if<Currency>(&value.Raw()))
        return *currency;
    if (const auto* decimal = std::get_if<Decimal>(&value.Raw()))
        return *CurrencyFromText(TextFromDecimal(*decimal));
    if (const auto* text = std::get_if<std::string>(&value.Raw())) {
        const auto currency = CurrencyFromText(*text);
        if (!currency)
            ThrowBadValue(value, "bedrag");
        return *currency;
    }
    const double scaled = RoundHalfToEven(RequireNumber(value, "bedrag") * 10000.0);
    if (std::abs(scaled) >= 9.2233720368547758e18)
        ThrowOverflow(value, "valutaveld");
    return {static_cast<std::int64_t>(scaled)};
}

Decimal ToDecimal(const Value& value)
{
    if (const auto* decimal = std::get_if<Decimal>(&value.Raw()))
        return *decimal;
    if (const auto* currency = std::get_if<Currency>(&value.Raw()))
        return DecimalFromInteger(currency->scaled, 4);
    const double number = RequireNumber(value, "decimaal getal");
    const auto decimal = DecimalFromText(value.IsText() ? std::get<std::string>(value.Raw())
                                                        : TextFromDouble(number));
    if (!decimal)
        ThrowOverflow(value, "decimaal veld");
    return *decimal;
}

float ToSingle(const Value& value)
{
    if (const auto* single = std::get_if<float>(&value.Raw()))
        return *single;
    const double number = RequireNumber(value, "getal");
    if (std::abs(number) > static_cast<double>(std::numeric_limits<float>::max()))
        ThrowOverflow(value, "veld met enkele precisie");
    return static_cast<float>(number);
}

Bytes ToBytes(const Value& value)
{
    if (const auto* bytes = std::get_if<Bytes>(&value.Raw()))
        return *bytes;
    if (const auto* guid = std::get_if<Guid>(&value.Raw()))
        return {guid->bytes.begin(), guid->bytes.end()};
    ThrowBadValue(value, "binaire waarde");
}

Guid ToGuid(const Value& value)
{
    if (const auto* guid = std::get_if<Guid>(&value.Raw()))
        return *guid;
    if (const auto* bytes = std::get_if<Bytes>(&value.Raw()); bytes && bytes->size() == 16) {
        Guid guid;
        std::copy(bytes->begin(), bytes->end(), guid.bytes.begin());
        return guid;
    }
    if (value.IsText()) {
        if (const auto guid = GuidFromText(std::get<std::string>(value.Raw())))
            return *guid;
    }
    ThrowBadValue(value, "GUID");
}

[[noreturn]] void ThrowNull()
{
    throw Error(ErrorKind::BadValue, "Het veld is leeg (Null) en heeft geen waarde.");
}

} // namespace

bool Value::IsNumber() const
{
    return std::visit(
        [](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            return std::is_arithmetic_v<T> || std::is_same_v<T, Currency> ||
                   std::is_same_v<T, Decimal>;
        },
        m_store);
}

bool Value::AsBool() const
{
    if (IsNull())
        ThrowNull();
    if (const auto* text = std::get_if<std::string>(&m_store)) {
        const std::string folded = FoldName(*text);
        if (folded == "true" || folded == "waar" || folded == "yes" || folded == "ja")
            return true;
        if (folded == "false" || folded == "onwaar" || folded == "no" || folded == "nee")
            return false;
    }
    return RequireNumber(*this, "ja/nee-waarde") != 0;
}

std::int32_t Value::AsInt() const
{
    if (const auto* v = std::get_if<std::int32_t>(&m_store))
        return *v;
    if (IsNull())
        ThrowNull();
    return ToInteger<std::int32_t>(*this, "geheel getal van 32 bits");
}

double Value::AsDouble() const
{
    if (IsNull())
        ThrowNull();
    return RequireNumber(*this, "getal");
}

std::string Value::AsText() const
{
    return std::visit(Overloaded{
                          [](std::monostate) -> std::string { ThrowNull(); },
                          [](bool v) -> std::string { return v ? "-1" : "0"; },
                          [](std::uint8_t v) { return std::to_string(v); },
                          [](std::int16_t v) { return std::to_string(v); },
                          [](std::int32_t v) { return std::to_string(v); },
                          [](Currency v) { return TextFromCurrency(v); },
                          [](float v) { return TextFromDouble(static_cast<double>(v), 7); },
                          [](double v) { return TextFromDouble(v); },
                          [](DateTime v) { return TextFromDateTime(v); },
                          [](const std::string& v) { return v; },
                          [this](const Bytes&) -> std::string { ThrowBadValue(*this, "tekst"); },
                          [](const Guid& v) { return TextFromGuid(v); },
                          [](const Decimal& v) { return TextFromDecimal(v); },
                      },
                      m_store);
}

DateTime Value::AsDateTime() const
{
    if (const auto* date = std::get_if<DateTime>(&m_store))
        return *date;
    if (IsNull())
        ThrowNull();
    if (IsText()) {
        if (const auto date = DateTimeFromText(std::get<std::string>(m_store)))
            return *date;
    }
    const double days = RequireNumber(*this, "datum");
    if (days < -657434 || days >= 2958466) // the years 100 to 9999
        ThrowOverflow(*this, "datumveld");
    return {days};
}

const Bytes& Value::AsBytes() const
{
    if (IsNull())
        ThrowNull();
    const auto* bytes = std::get_if<Bytes>(&m_store);
    if (!bytes)
        ThrowBadValue(*this, "binaire waarde");
    return *bytes;
}

Value Value::ConvertedTo(ColumnType type) const
{
    if (IsNull())
        return {};
    switch (type) {
    case ColumnType::Boolean:
        return AsBool();
    case ColumnType::Byte:
        return ToInteger<std::uint8_t>(*this, "bytegetal (0 t/m 255)");
    case ColumnType::Integer:
        return ToInteger<std::int16_t>(*this, "geheel getal van 16 bits");
    case ColumnType::Long:
        return AsInt();
    case ColumnType::Currency:
        return ToCurrency(*this);
    case ColumnType::Single:
        return ToSingle(*this);
    case ColumnType::Double:
        return AsDouble();
    case ColumnType::DateTime:
        return AsDateTime();
    case ColumnType::Binary:
    case ColumnType::Ole:
        return ToBytes(*this);
    case ColumnType::Text:
    case ColumnType::Memo:
        return AsText();
    case ColumnType::Guid:
        return ToGuid(*this);
    case ColumnType::Decimal:
        return ToDecimal(*this);
    }
    throw Error(ErrorKind::BadValue, "Het veldtype " + std::to_string(static_cast<int>(type)) +
                                         " wordt niet ondersteund.");
}

} // namespace jet
