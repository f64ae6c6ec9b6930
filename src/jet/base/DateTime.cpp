#include "jet/base/Numbers.h"
#include "jet/base/Value.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace jet {
namespace {

constexpr std::chrono::sys_days kDayZero{std::chrono::year{1899} / 12 / 30};
constexpr double kSecondsPerDay = 86400.0;

/// Reads up to `most` digits; nothing when there is none.
std::optional<int> TakeNumber(std::string_view& text, std::size_t most)
{
    std::size_t n = 0;
    int value = 0;
    while (n < text.size() && n < most && text[n] >= '0' && text[n] <= '9')
        value = value * 10 + (text[n++] - '0');
    if (n == 0)
        return std::nullopt;
    text.remove_prefix(n);
    return value;
}

bool TakeCharacter(std::string_view& text, char c)
{
    if (text.empty() || text.front() != c)
        return false;
    text.remove_prefix(1);
    return true;
}

void SkipBlanks(std::string_view& text)
{
    while (TakeCharacter(text, ' ')) {
    }
}

/// "hh:mm" or "hh:mm:ss".
bool TakeTime(std::string_view& text, DateTime::Civil& civil)
{
    const auto hour = TakeNumber(text, 2);
    if (!hour || !TakeCharacter(text, ':'))
        return false;
    const auto minute = TakeNumber(text, 2);
    if (!minute)
        return false;
    int second = 0;
    if (TakeCharacter(text, ':')) {
        const auto s = TakeNumber(text, 2);
        if (!s)
            return false;
        second = *s;
    }
    if (*hour > 23 || *minute > 59 || second > 59)
        return false;
    civil.hour = *hour;
    civil.minute = *minute;
    civil.second = second;
    return true;
}

bool TakeDate(std::string_view& text, DateTime::Civil& civil)
{
    const std::size_t before = text.size();
    const auto first = TakeNumber(text, 4);
    if (!first)
        return false;
    const bool yearFirst = before - text.size() == 4;
    const char separator = text.empty() ? '\0' : text.front();
    if ((separator != '-' && separator != '/') || !TakeCharacter(text, separator))
        return false;
    const auto second = TakeNumber(text, 2);
    if (!second || !TakeCharacter(text, separator))
        return false;
    const auto third = TakeNumber(text, 4);
    if (!third)
        return false;
    if (yearFirst) {
        civil.year = *first;
        civil.month = *second;
        civil.day = *third;
    } else {
        // A slash is how dates stand in statements: month first.
        civil.month = separator == '/' ? *first : *second;
        civil.day = separator == '/' ? *second : *first;
        civil.year = *third;
    }
    using namespace std::chrono;
    return civil.year >= 100 && civil.year <= 9999 &&
           year_month_day(year(civil.year), month(static_cast<unsigned>(civil.month)),
                          day(static_cast<unsigned>(civil.day)))
               .ok();
}

} // namespace

DateTime DateTime::FromCivil(int year, int month, int day, int hour, int minute, int second)
{
    using namespace std::chrono;
    const sys_days date = std::chrono::year(year) /
                          std::chrono::month(static_cast<unsigned>(month)) /
                          std::chrono::day(static_cast<unsigned>(day));
    const double days = static_cast<double>((date - kDayZero).count());
    const double time = (hour * 3600 + minute * 60 + second) / kSecondsPerDay;
    return {days < 0 ? days - time : days + time};
}

DateTime::Civil DateTime::ToCivil() const
{
    using namespace std::chrono;
    double whole = std::trunc(days);
    auto seconds = static_cast<int>(std::llround(std::abs(days - whole) * kSecondsPerDay));
    if (seconds == 86400) { // the last half second of a day belongs to the next day
        seconds = 0;
        whole += 1;
    }
    const year_month_day date{kDayZero + std::chrono::days(static_cast<int>(whole))};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            seconds / 3600,
            seconds / 60 % 60,
            seconds % 60};
}

std::string TextFromDateTime(DateTime value)
{
    const DateTime::Civil c = value.ToCivil();
    std::array<char, 40> text{};
    if (c.hour == 0 && c.minute == 0 && c.second == 0)
        std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", c.year, c.month, c.day);
    else
        std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", c.year, c.month,
                      c.day, c.hour, c.minute, c.second);
    return text.data();
}

std::optional<DateTime> DateTimeFromText(std::string_view text)
{
    SkipBlanks(text);
    DateTime::Civil civil{1899, 12, 30, 0, 0, 0};
    std::string_view rest = text;
    const bool hasDate = TakeDate(rest, civil);
    if (!hasDate) {
        rest = text;
        civil = {1899, 12, 30, 0, 0, 0};
        if (!TakeTime(rest, civil))
            return std::nullopt;
    } else if (!rest.empty() && (rest.front() == ' ' || rest.front() == 'T')) {
        rest.remove_prefix(1);
        SkipBlanks(rest);
        if (!rest.empty() && !TakeTime(rest, civil))
            return std::nullopt;
    }
    SkipBlanks(rest);
    if (!rest.empty())
        return std::nullopt;
    return DateTime::FromCivil(civil.year, civil.month, civil.day, civil.hour, civil.minute,
                               civil.second);
}

} // namespace jet
