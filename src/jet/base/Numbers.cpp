#include "jet/base/Numbers.h"

#include "jet/base/Error.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace jet {
namespace {

std::string_view Trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

std::optional<double> DoubleFromText(std::string_view text)
{
    text = Trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-')
            return std::nullopt;
    }
    // from_chars would also take "inf" and "nan".
    if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos)
        return std::nullopt;
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range && end == text.data() + text.size())
        return std::abs(value) > 1 ? value : 0.0;
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::string TextFromDouble(double value, int digits)
{
    if (value == 0)
        return "0"; // no minus sign for -0
    std::array<char, 64> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                            std::chars_format::general, digits);
    if (error != std::errc())
        return {};
    std::string text(buffer.data(), end);
    for (char& c : text) {
        if (c == 'e')
            c = 'E';
    }
    return text;
}

std::string TextFromCurrency(Currency value)
{
    return TextFromDecimal(DecimalFromInteger(value.scaled, 4));
}

std::optional<Currency> CurrencyFromText(std::string_view text)
{
    std::optional<Decimal> decimal = DecimalFromText(text);
    if (!decimal) {
        // More digits than a decimal holds: the double nearest to it is near enough
        // to tell whether it fits at all.
        const auto number = DoubleFromText(text);
        if (!number)
            return std::nullopt;
        if (std::abs(*number) < 922337203685477.0)
            return Currency{std::llrint(RoundHalfToEven(*number * 10000))};
    } else if (const auto rescaled = RescaleDecimal(*decimal, 4)) {
        if (const auto scaled = IntegerFromDecimal(*rescaled))
            return Currency{*scaled};
    }
    throw Error(ErrorKind::Overflow,
                "De waarde " + std::string(text) + " past niet in een valutaveld.");
}

double RoundHalfToEven(double value)
{
    const double down = std::floor(value);
    const double fraction = value - down;
    if (fraction != 0.5)
        return fraction < 0.5 ? down : down + 1;
    return std::fmod(down, 2) == 0 ? down : down + 1;
}

std::string TextFromGuid(const Guid& value)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text = "{";
    for (std::size_t i = 0; i < value.bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        const auto b = std::to_integer<unsigned>(value.bytes[i]);
        text += kDigits[b >> 4];
        text += kDigits[b & 15];
    }
    return text + "}";
}

std::optional<Guid> GuidFromText(std::string_view text)
{
    text = Trimmed(text);
    if (text.size() == 38 && text.front() == '{' && text.back() == '}')
        text = text.substr(1, 36);
    if (text.size() != 36)
        return std::nullopt;
    Guid result;
    std::size_t at = 0;
    for (std::size_t i = 0; i < result.bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            if (text[at++] != '-')
                return std::nullopt;
        }
        const int high = HexDigit(text[at]);
        const int low = HexDigit(text[at + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        result.bytes[i] = static_cast<std::byte>(high << 4 | low);
        at += 2;
    }
    return result;
}

} // namespace jet
