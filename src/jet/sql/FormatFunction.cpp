#include "jet/base/Numbers.h"
#include "jet/base/Text.h"
#include "jet/sql/Functions.h"
#include "jet/sql/LetterCase.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

// Format(value, pattern). The pattern itself tells what it is for: places of a text
// (@ & < >), places of a number (0 #), or else parts of a date. Numbers come out
// with a point, days and months in Dutch, whatever the machine's settings.
namespace jet::sql {

namespace {

/// A sign of a pattern: itself, or a text between quotes or behind a backslash.
struct Sign {
    char place = 0; ///< 0 = the text is taken as it stands
    std::string text;
};
using Pattern = std::vector<Sign>;

bool IsOneOf(char c, std::string_view signs)
{
    return c != 0 && signs.find(c) != std::string_view::npos;
}

/// The sections between semicolons: positive (or all), negative, zero.
std::vector<Pattern> Sections(std::string_view text)
{
    std::vector<Pattern> sections(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            const std::size_t end = std::min(text.find('"', i + 1), text.size());
            sections.back().push_back({0, std::string(text.substr(i + 1, end - i - 1))});
            i = end;
        } else if (c == '\\' && i + 1 < text.size()) {
            sections.back().push_back({0, std::string(1, text[++i])});
        } else if (c == ';') {
            sections.emplace_back();
        } else {
            sections.back().push_back({c, std::string(1, c)});
        }
    }
    return sections;
}

bool Has(const Pattern& pattern, std::string_view signs)
{
    return std::ranges::any_of(pattern, [&](const Sign& s) { return IsOneOf(s.place, signs); });
}

struct Name {
    std::string_view name, pattern;
};
constexpr std::array kNames = {
    Name{"Fixed", "0.00"},
    Name{"Standard", "#,##0.00"},
    Name{"Percent", "0.00%"},
    Name{"Scientific", "0.00E+00"},
    Name{"Yes/No", "\"Ja\";\"Ja\";\"Nee\""},
    Name{"True/False", "\"Waar\";\"Waar\";\"Onwaar\""},
    Name{"On/Off", "\"Aan\";\"Aan\";\"Uit\""},
    Name{"General Date", "yyyy-mm-dd hh:nn:ss"},
    Name{"Short Date", "yyyy-mm-dd"},
    Name{"Medium Date", "dd-mmm-yy"},
    Name{"Long Date", "dddd d mmmm yyyy"},
    Name{"Short Time", "hh:nn"},
    Name{"Medium Time", "hh:nn"},
    Name{"Long Time", "hh:nn:ss"},
};

// --- numbers ------------------------------------------------------------------

/// 0.d1d2d3.. x 10^exponent, fifteen digits at most, as many as a double holds for
/// sure. Rounding goes by these digits, halves away from zero: 1.005 becomes 1.01.
class Digits {
public:
    explicit Digits(double magnitude)
    {
        char text[40];
        std::snprintf(text, sizeof text, "%.14e", magnitude);
        m_digits = std::string(1, text[0]) + std::string(text + 2, 14);
        m_exponent = std::atoi(std::find(text, text + sizeof text, 'e') + 1) + 1;
        if (magnitude == 0)
            m_exponent = 1;
    }

    int Exponent() const { return m_exponent; }
    void Shift(int places) { m_exponent += places; }
    bool IsZero() const { return m_digits.find_first_not_of('0') == std::string::npos; }

    void Round(int decimals)
    {
        const int kept = m_exponent + decimals;
        if (kept >= static_cast<int>(m_digits.size()))
            return;
        const bool up = kept >= 0 && m_digits[static_cast<std::size_t>(kept)] >= '5';
        m_digits.resize(static_cast<std::size_t>(std::max(kept, 0)));
        if (!up)
            return;
        std::size_t i = m_digits.size();
        while (i > 0 && m_digits[i - 1] == '9')
            m_digits[--i] = '0';
        if (i > 0) {
            ++m_digits[i - 1];
        } else {
            m_digits.insert(0, 1, '1');
            ++m_exponent;
        }
    }

    /// The digit that stands for 10^power.
    char At(int power) const
    {
        const int i = m_exponent - 1 - power;
        return i < 0 || i >= static_cast<int>(m_digits.size())
                   ? '0'
                   : m_digits[static_cast<std::size_t>(i)];
    }

private:
    std::string m_digits;
    int m_exponent = 0;
};

/// What a section asks for.
struct NumberShape {
    int places = 0, leastPlaces = 0; ///< before the point
    int decimals = 0, leastDecimals = 0;
    int shift = 0; ///< of the decimal point: % and commas behind the digits
    bool groups = false, scientific = false;

    explicit NumberShape(const Pattern& pattern)
    {
        bool behind = false;
        int commas = 0;
        for (const Sign& sign : pattern) {
            if (IsOneOf(sign.place, "0#") && !scientific) {
                groups = groups || (commas > 0 && !behind);
                commas = 0;
                const bool zero = sign.place == '0';
                if (behind) {
                    ++decimals;
                    leastDecimals = zero ? decimals : leastDecimals;
                } else {
                    ++places;
                    // From the first 0 on every place is filled.
                    leastPlaces += zero || leastPlaces > 0 ? 1 : 0;
                }
            } else if (sign.place == '.') {
                behind = true;
                shift -= 3 * commas;
                commas = 0;
            } else if (sign.place == ',') {
                commas += places > 0 && !behind ? 1 : 0;
            } else if (sign.place == '%') {
                shift += 2;
            } else if (IsOneOf(sign.place, "eE")) {
                scientific = true;
            }
        }
        shift -= 3 * commas;
    }
};

std::string FormatMagnitude(double magnitude, const Pattern& pattern, bool& isZero)
{
    const NumberShape shape(pattern);
    Digits digits(magnitude);
    digits.Shift(digits.IsZero() ? 0 : shape.shift);
    int exponent = 0;
    if (shape.scientific && !digits.IsZero()) {
        const int places = std::max(shape.places, 1);
        exponent = digits.Exponent() - places;
        digits.Shift(-exponent);
        digits.Round(shape.decimals);
        if (digits.Exponent() > places) { // 9.99 became 10.0
            digits.Shift(-1);
            ++exponent;
        }
    } else {
        digits.Round(shape.decimals);
    }
    isZero = digits.IsZero();

    const int length = isZero ? shape.leastPlaces : std::max(digits.Exponent(), shape.leastPlaces);
    int decimals = shape.decimals;
    while (decimals > shape.leastDecimals && digits.At(-decimals) == '0')
        --decimals;
    std::string text;
    int place = shape.places; // places still to come before the point
    int decimal = 0;
    bool behind = false, inExponent = false;
    const auto put = [&](int power) {
        text += digits.At(power);
        if (shape.groups && power > 0 && power % 3 == 0)
            text += ',';
    };
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const Sign& sign = pattern[i];
        if (inExponent && sign.place == '0')
            continue;
        if (IsOneOf(sign.place, "0#") && !behind) {
            if (place == shape.places) // the first takes all that there is too much
                for (int power = length - 1; power >= place; --power)
                    put(power);
            --place;
            if (place < length)
                put(place);
        } else if (IsOneOf(sign.place, "0#")) {
            if (++decimal <= decimals)
                text += digits.At(-decimal);
        } else if (sign.place == '.') {
            behind = true;
            text += '.';
        } else if (IsOneOf(sign.place, "eE")) {
            int least = 0;
            const char want = i + 1 < pattern.size() ? pattern[i + 1].place : '\0';
            if (IsOneOf(want, "+-"))
                ++i;
            for (std::size_t j = i + 1; j < pattern.size() && pattern[j].place == '0'; ++j)
                ++least;
            const std::string number = std::to_string(std::abs(exponent));
            text += sign.text;
            text += exponent < 0 ? "-" : want == '+' ? "+" : "";
            text.append(
                static_cast<std::size_t>(std::max(0, least - static_cast<int>(number.size()))),
                '0');
            text += number;
            inExponent = true;
        } else if (sign.place != ',') {
            text += sign.text;
        }
    }
    return text;
}

std::string FormatNumber(double number, const std::vector<Pattern>& sections)
{
    if (!std::isfinite(number))
        throw Error(ErrorKind::Overflow, "Een getal buiten het bereik heeft geen opmaak.");
    const bool ownNegative = sections.size() > 1 && !sections[1].empty();
    bool isZero = false;
    if (number < 0 && ownNegative)
        return FormatMagnitude(-number, sections[1], isZero);
    if (number == 0 && sections.size() > 2 && !sections[2].empty())
        return FormatMagnitude(0, sections[2], isZero);
    const std::string text = FormatMagnitude(std::abs(number), sections[0], isZero);
    return number < 0 && !isZero ? '-' + text : text;
}

// --- dates --------------------------------------------------------------------

constexpr std::array<std::string_view, 7> kDays = {"zondag",    "maandag", "dinsdag", "woensdag",
                                                   "donderdag", "vrijdag", "zaterdag"};
constexpr std::array<std::string_view, 12> kMonths = {
    "januari", "februari", "maart",     "april",   "mei",      "juni",
    "juli",    "augustus", "september", "oktober", "november", "december"};

std::string Filled(int number, std::size_t width)
{
    std::string text = std::to_string(number);
    return std::string(width - std::min(width, text.size()), '0') + text;
}

std::string DatePartText(const DateTime::Civil& moment, double days, char part, std::size_t count,
                         bool ofTime)
{
    const std::size_t two = std::min<std::size_t>(count, 2);
    switch (part) {
    case 'd': {
        // 1899-12-30, day 0, was a Saturday.
        const auto day = static_cast<std::int64_t>(std::trunc(days));
        const std::string_view name = kDays[static_cast<std::size_t>(((day + 6) % 7 + 7) % 7)];
        if (count == 3)
            return std::string(name.substr(0, 2));
        return count > 3 ? std::string(name) : Filled(moment.day, two);
    }
    case 'm': {
        if (ofTime)
            return Filled(moment.minute, two);
        const std::string_view name = kMonths[static_cast<std::size_t>(moment.month - 1)];
        if (count == 3)
            return std::string(moment.month == 3 ? "mrt" : name.substr(0, 3));
        return count > 3 ? std::string(name) : Filled(moment.month, two);
    }
    case 'y':
        return count > 2 ? Filled(moment.year, 4) : Filled(moment.year % 100, 2);
    case 'q':
        return std::to_string((moment.month - 1) / 3 + 1);
    case 'h':
        return Filled(moment.hour, two);
    case 'n':
        return Filled(moment.minute, two);
    default:
        return Filled(moment.second, two);
    }
}

std::string FormatDate(double days, const Pattern& pattern)
{
    const DateTime::Civil moment = DateTime{days}.ToCivil();
    std::string text;
    bool afterHour = false; // then m stands for minutes
    for (std::size_t i = 0; i < pattern.size();) {
        const char part = static_cast<char>(pattern[i].place | 0x20);
        if (pattern[i].place == 0 || !IsOneOf(part, "dmyqhns")) {
            text += pattern[i++].text;
            continue;
        }
        std::size_t end = i;
        while (end < pattern.size() && pattern[end].place != 0 &&
               static_cast<char>(pattern[end].place | 0x20) == part)
            ++end;
        text += DatePartText(moment, days, part, end - i, afterHour);
        afterHour = part == 'h';
        i = end;
    }
    return text;
}

// --- texts --------------------------------------------------------------------

std::string FormatText(std::string_view value, const Pattern& pattern)
{
    std::u16string letters = Utf16FromUtf8(value);
    if (Has(pattern, "<"))
        letters = LowerCase(letters);
    else if (Has(pattern, ">"))
        letters = UpperCase(letters);
    const auto isPlace = [](const Sign& sign) { return IsOneOf(sign.place, "@&"); };
    const auto places = static_cast<std::size_t>(std::ranges::count_if(pattern, isPlace));
    const bool fromLeft = Has(pattern, "!");
    // Places are filled from the right; what is too much goes to the first of them.
    const std::size_t missing = places - std::min(places, letters.size());
    const std::size_t tooMuch = letters.size() - std::min(places, letters.size());
    std::size_t place = 0, next = 0;
    std::u16string text;
    for (const Sign& sign : pattern) {
        if (!isPlace(sign)) {
            if (!IsOneOf(sign.place, "<>!"))
                text += Utf16FromUtf8(sign.text);
            continue;
        }
        const bool empty = fromLeft ? place >= places - missing : place < missing;
        const bool takesRest = place == (fromLeft ? places - 1 : 0);
        ++place;
        if (empty) {
            text += sign.place == '@' ? u" " : u"";
            continue;
        }
        const std::size_t count = 1 + (takesRest ? tooMuch : 0);
        text += letters.substr(next, count);
        next += count;
    }
    if (places == 0)
        text += letters;
    return Utf8FromUtf16(text);
}

void Format(const Arguments& a)
{
    std::string_view pattern = a.Text(1);
    for (const Name& name : kNames)
        if (NamesEqual(name.name, pattern))
            pattern = name.pattern;
    const std::vector<Pattern> sections = Sections(pattern);
    if (pattern.empty() || NamesEqual(pattern, "General Number")) {
        a.Result(a.IsText(0) ? std::string(a.Text(0)) : Value(a.Number(0)).AsText());
    } else if (Has(sections[0], "@&<>")) {
        a.Result(FormatText(a.IsText(0) ? std::string(a.Text(0)) : Value(a.Number(0)).AsText(),
                            sections[0]));
    } else if (Has(sections[0], "0#") || sections.size() > 1) {
        const auto number = a.IsText(0) ? DoubleFromText(a.Text(0)) : a.Number(0);
        a.Result(number ? FormatNumber(*number, sections) : std::string(a.Text(0)));
    } else {
        a.Result(FormatDate(DaysIn(a, 0), sections[0]));
    }
}

} // namespace

void RegisterFormatFunction(sqlite3* db, PendingError& errors)
{
    AddFunction<Format>(db, errors, "jet_format", 2);
}

} // namespace jet::sql
