#include "jet/base/Numbers.h"

#include <algorithm>
#include <limits>

namespace jet {
namespace {

constexpr int kMostDigits = 28;

/// Multiplies the magnitude by 10 and adds `digit`; false when it overflows.
bool TimesTenPlus(std::array<std::uint32_t, 4>& groups, std::uint32_t digit)
{
    std::uint64_t carry = digit;
    for (std::size_t i = groups.size(); i-- > 0;) {
        const std::uint64_t product = std::uint64_t{groups[i]} * 10 + carry;
        groups[i] = static_cast<std::uint32_t>(product);
        carry = product >> 32;
    }
    return carry == 0;
}

/// The decimal digits of the magnitude, most significant first; "0" for zero.
std::string Digits(std::array<std::uint32_t, 4> groups)
{
    std::string digits;
    while (std::any_of(groups.begin(), groups.end(), [](std::uint32_t g) { return g != 0; })) {
        std::uint64_t rest = 0;
        for (std::uint32_t& group : groups) {
            const std::uint64_t value = rest << 32 | group;
            group = static_cast<std::uint32_t>(value / 10);
            rest = value % 10;
        }
        digits += static_cast<char>('0' + rest);
    }
    if (digits.empty())
        digits = "0";
    std::reverse(digits.begin(), digits.end());
    return digits;
}

std::optional<std::array<std::uint32_t, 4>> GroupsFromDigits(std::string_view digits)
{
    std::array<std::uint32_t, 4> groups{};
    for (const char digit : digits) {
        if (!TimesTenPlus(groups, static_cast<std::uint32_t>(digit - '0')))
            return std::nullopt;
    }
    return groups;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Drops the last `count` digits, halves to even.
std::string DropDigits(std::string digits, std::size_t count)
{
    if (count > digits.size())
        return "0";
    const std::string dropped = digits.substr(digits.size() - count);
    digits.resize(digits.size() - count);
    if (digits.empty())
        digits = "0";
    if (dropped.empty())
        return digits;
    const bool half = dropped[0] == '5' && dropped.find_first_not_of('0', 1) == std::string::npos;
    const bool odd = (digits.back() - '0') % 2 == 1;
    if (half ? !odd : dropped[0] < '5')
        return digits;
    std::size_t i = digits.size();
    while (i > 0 && digits[i - 1] == '9')
        digits[--i] = '0';
    if (i == 0)
        digits.insert(digits.begin(), '1');
    else
        ++digits[i - 1];
    return digits;
}

std::string_view WithoutLeadingZeros(std::string_view digits)
{
    const std::size_t first = digits.find_first_not_of('0');
    return first == std::string_view::npos ? std::string_view() : digits.substr(first);
}

} // namespace

std::optional<Decimal> DecimalFromText(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return std::nullopt;
    text = text.substr(first, text.find_last_not_of(' ') - first + 1);

    Decimal result;
    if (text.front() == '-' || text.front() == '+') {
        result.negative = text.front() == '-';
        text.remove_prefix(1);
    }
    std::string digits;
    int decimals = 0;
    bool point = false;
    bool any = false;
    std::size_t i = 0;
    for (; i < text.size() && (IsDigit(text[i]) || (text[i] == '.' && !point)); ++i) {
        if (text[i] == '.') {
            point = true;
            continue;
        }
        any = true;
        digits += text[i];
        decimals += point ? 1 : 0;
    }
    if (!any)
        return std::nullopt;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        const bool down = i < text.size() && text[i] == '-';
        if (i < text.size() && (text[i] == '-' || text[i] == '+'))
            ++i;
        int exponent = 0;
        const std::size_t start = i;
        for (; i < text.size() && IsDigit(text[i]); ++i)
            exponent = std::min(exponent * 10 + (text[i] - '0'), 1000);
        if (i == start)
            return std::nullopt;
        decimals += down ? exponent : -exponent;
    }
    if (i != text.size())
        return std::nullopt;

    if (WithoutLeadingZeros(digits).empty())
        return Decimal{};
    while (decimals > 0 && digits.back() == '0') {
        digits.pop_back();
        --decimals;
    }
    if (decimals > kMostDigits || decimals < -kMostDigits)
        return std::nullopt;
    if (decimals < 0) {
        digits.append(static_cast<std::size_t>(-decimals), '0');
        decimals = 0;
    }
    const std::string_view significant = WithoutLeadingZeros(digits);
    if (significant.size() > kMostDigits)
        return std::nullopt;
    result.scale = static_cast<std::uint8_t>(decimals);
    result.magnitude = *GroupsFromDigits(significant);
    return result;
}

std::string TextFromDecimal(const Decimal& value)
{
    std::string digits = Digits(value.magnitude);
    const bool zero = digits == "0";
    if (value.scale > 0) {
        if (digits.size() <= value.scale)
            digits.insert(0, value.scale + 1u - digits.size(), '0');
        digits.insert(digits.size() - value.scale, 1, '.');
        digits.erase(digits.find_last_not_of('0') + 1);
        if (digits.back() == '.')
            digits.pop_back();
    }
    return value.negative && !zero ? "-" + digits : digits;
}

double DoubleFromDecimal(const Decimal& value)
{
    // By way of text: correctly rounded, which adding up the groups is not.
    return *DoubleFromText(TextFromDecimal(value));
}

Decimal DecimalFromInteger(std::int64_t value, std::uint8_t scale)
{
    Decimal result;
    result.negative = value < 0;
    result.scale = scale;
    const std::uint64_t magnitude =
        value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    result.magnitude[2] = static_cast<std::uint32_t>(magnitude >> 32);
    result.magnitude[3] = static_cast<std::uint32_t>(magnitude);
    return result;
}

std::optional<Decimal> RescaleDecimal(const Decimal& value, std::uint8_t scale,
                                      std::uint8_t precision)
{
    std::string digits = Digits(value.magnitude);
    if (scale >= value.scale)
        digits.append(std::size_t{scale} - value.scale, '0');
    else
        digits = DropDigits(digits, std::size_t{value.scale} - scale);
    const std::string_view significant = WithoutLeadingZeros(digits);
    if (significant.size() > precision)
        return std::nullopt;
    const auto groups = GroupsFromDigits(significant);
    if (!groups)
        return std::nullopt;
    Decimal result{value.negative && !significant.empty(), scale, *groups};
    return result;
}

std::optional<std::int64_t> IntegerFromDecimal(const Decimal& value)
{
    const auto& groups = value.magnitude;
    const std::uint64_t magnitude = std::uint64_t{groups[2]} << 32 | groups[3];
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    if (groups[0] != 0 || groups[1] != 0 || magnitude > kMost + (value.negative ? 1 : 0))
        return std::nullopt;
    return static_cast<std::int64_t>(value.negative ? 0 - magnitude : magnitude);
}

} // namespace jet
