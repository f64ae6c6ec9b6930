#include "rekenhart/files/Numbers.h"

#include "rekenhart/Constants.h"

#include <array>
#include <charconv>
#include <cmath>

namespace rekenhart {

namespace {

template <typename Number>
std::optional<Number> Parse(std::string_view text)
{
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

template <typename... Format>
std::string Print(double value, Format... format)
{
    std::array<char, 400> buffer; // the largest double in plain decimals has 309 digits
    const auto [end, error] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format...);
    return error == std::errc() ? std::string(buffer.data(), end) : std::string("-");
}

} // namespace

std::optional<double> ParseNumber(std::string_view text)
{
    const auto value = Parse<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<int> ParseInteger(std::string_view text)
{
    return Parse<int>(text);
}

std::string Fixed(double value, int decimals)
{
    if (!IsBekend(value))
        return "-";
    std::string text = Print(value, std::chars_format::fixed, decimals);
    if (text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos)
        text.erase(0, 1);
    return text;
}

std::string General(double value, int digits)
{
    return IsBekend(value) ? Print(value, std::chars_format::general, digits) : "-";
}

std::string Period(double years)
{
    // "general" would write 20000 as it is but 1e6 with an exponent.
    return years >= 1e6 ? Fixed(years, 0) : General(years);
}

} // namespace rekenhart
