#include "jet/catalog/DefaultValue.h"

#include "jet/base/Numbers.h"
#include "jet/base/Text.h"
#include "jet/catalog/Clock.h"

#include <cmath>
#include <limits>

namespace jet {

namespace {

std::string_view Trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The text of a literal such as "a ""b""" with its quotes; nothing when the
/// quotes do not span the whole.
std::optional<std::string> Unquoted(std::string_view literal)
{
    const char quote = literal.front();
    if (literal.size() < 2 || literal.back() != quote)
        return std::nullopt;
    const std::string_view inside = literal.substr(1, literal.size() - 2);
    std::string text;
    for (std::size_t i = 0; i < inside.size(); ++i) {
        if (inside[i] == quote && (++i == inside.size() || inside[i] != quote))
            return std::nullopt;
        text += inside[i];
    }
    return text;
}

std::string_view WithoutParentheses(std::string_view name)
{
    if (!name.ends_with(')'))
        return name;
    const auto open = name.find('(');
    if (open == std::string_view::npos ||
        !Trimmed(name.substr(open + 1, name.size() - open - 2)).empty())
        return name;
    return Trimmed(name.substr(0, open));
}

} // namespace

std::optional<DefaultValue> DefaultValue::Parse(std::string_view expression)
{
    std::string_view text = Trimmed(expression);
    if (text.starts_with('='))
        text = Trimmed(text.substr(1));
    while (text.size() >= 2 && text.front() == '(' && text.back() == ')')
        text = Trimmed(text.substr(1, text.size() - 2));
    const auto constant = [](Value value) {
        return DefaultValue(Kind::Constant, std::move(value));
    };
    if (text.empty())
        return constant({});

    if (text.front() == '"' || text.front() == '\'') {
        if (auto unquoted = Unquoted(text))
            return constant(std::move(*unquoted));
        return std::nullopt;
    }
    if (text.front() == '#' && text.size() > 2 && text.back() == '#') {
        if (const auto date = DateTimeFromText(text.substr(1, text.size() - 2)))
            return constant(*date);
        return std::nullopt;
    }
    std::string number(text);
    if (number.size() > 1 && (number[0] == '-' || number[0] == '+') && number[1] == ' ')
        number.erase(1, number.find_first_not_of(' ', 1) - 1);
    if (const auto value = DoubleFromText(number)) {
        if (*value == std::trunc(*value) &&
            std::abs(*value) <= std::numeric_limits<std::int32_t>::max())
            return constant(static_cast<std::int32_t>(*value));
        // Left as text, so that a currency or decimal field gets every digit.
        return constant(std::move(number));
    }

    const std::string_view name = WithoutParentheses(text);
    const auto is = [&](std::string_view word) { return NamesEqual(name, word); };
    if (is("True") || is("Yes") || is("On"))
        return constant(true);
    if (is("False") || is("No") || is("Off"))
        return constant(false);
    if (is("Null"))
        return constant({});
    if (is("Date"))
        return DefaultValue(Kind::Date, {});
    if (is("Time"))
        return DefaultValue(Kind::Time, {});
    if (is("Now"))
        return DefaultValue(Kind::Now, {});
    return std::nullopt;
}

Value DefaultValue::Evaluate() const
{
    const auto now = [] { return LocalNow().days; };
    switch (m_kind) {
    case Kind::Constant:
        break;
    case Kind::Date:
        return DateTime{std::floor(now())};
    case Kind::Time: {
        const double moment = now();
        return DateTime{moment - std::floor(moment)};
    }
    case Kind::Now:
        return DateTime{now()};
    }
    return m_constant;
}

} // namespace jet
