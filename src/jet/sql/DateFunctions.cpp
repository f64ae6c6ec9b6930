#include "jet/base/Numbers.h"
#include "jet/base/Text.h"
#include "jet/sql/Functions.h"
#include "jet/sql/Tokeniser.h"

#include <cmath>

namespace jet::sql {

namespace {

constexpr double kFirstDay = -657434, kLastDay = 2958465; // the years 100 to 9999

double InRange(double days)
{
    if (!(days >= kFirstDay && days < kLastDay + 1))
        throw Error(ErrorKind::Overflow, "De datum valt buiten de jaren 100 tot 9999.");
    return days;
}

bool TextToDays(std::string_view text, double& days)
{
    if (const auto date = DateTimeFromText(text)) {
        days = date->days;
        return true;
    }
    return ParseDateText(text, days);
}

DateTime::Civil Civil(const Arguments& a, int i)
{
    return DateTime{DaysIn(a, i)}.ToCivil();
}

// Days are counted on a line here: the time of day of a date before 1899-12-30
// counts away from zero in the file.
double OnTheLine(double days)
{
    const double day = std::trunc(days);
    return day + std::abs(days - day);
}

double FromTheLine(double line)
{
    const double day = std::floor(line);
    const double time = line - day;
    return day < 0 ? day - time : day + time;
}

std::int64_t DayNumber(double days)
{
    return static_cast<std::int64_t>(std::trunc(days));
}

/// 1899-12-30 was a Saturday; Sunday is 1.
int Weekday(std::int64_t day, int firstDay = 1)
{
    const auto sunday = ((day + 6) % 7 + 7) % 7;
    return static_cast<int>((sunday - (firstDay - 1) + 7) % 7) + 1;
}

int DaysInMonth(int year, int month)
{
    const auto first = [](int y, int m) { return DateTime::FromCivil(y, m, 1).days; };
    return month == 12 ? 31 : static_cast<int>(first(year, month + 1) - first(year, month));
}

template <int DateTime::Civil::*part>
void Part(const Arguments& a)
{
    a.Result(std::int64_t{Civil(a, 0).*part});
}

void WeekdayOf(const Arguments& a)
{
    const int first = a.Count() > 1 ? WholeNumber(a.Number(1)) : 1;
    if (first < 0 || first > 7)
        throw Error(ErrorKind::BadValue, "De eerste dag van de week is een getal van 1 tot 7.");
    a.Result(std::int64_t{Weekday(DayNumber(DaysIn(a, 0)), first == 0 ? 1 : first)});
}

void CDate(const Arguments& a)
{
    a.Result(DaysIn(a, 0));
}

void DateValue(const Arguments& a)
{
    a.Result(std::trunc(DaysIn(a, 0)));
}

void TimeValue(const Arguments& a)
{
    const double days = DaysIn(a, 0);
    a.Result(std::abs(days - std::trunc(days)));
}

void IsDate(const Arguments& a)
{
    double days = 0;
    a.Result(std::int64_t{a.IsText(0) && TextToDays(a.Text(0), days) ? -1 : 0});
}

double Serial(std::int64_t year, std::int64_t month, std::int64_t day)
{
    if (year >= 0 && year < 100)
        year += year < 30 ? 2000 : 1900;
    const std::int64_t months = year * 12 + month - 1;
    year = months >= 0 ? months / 12 : -((11 - months) / 12);
    if (year < 100 || year > 9999)
        InRange(kLastDay + 1);
    const int inYear = static_cast<int>(months - year * 12) + 1;
    return InRange(DateTime::FromCivil(static_cast<int>(year), inYear, 1).days +
                   static_cast<double>(day - 1));
}

void DateSerial(const Arguments& a)
{
    a.Result(Serial(WholeNumber(a.Number(0)), WholeNumber(a.Number(1)), WholeNumber(a.Number(2))));
}

void TimeSerial(const Arguments& a)
{
    const std::int64_t seconds = std::int64_t{WholeNumber(a.Number(0))} * 3600 +
                                 std::int64_t{WholeNumber(a.Number(1))} * 60 +
                                 WholeNumber(a.Number(2));
    a.Result(InRange(FromTheLine(static_cast<double>(seconds) / 86400)));
}

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval IntervalOf(std::string_view name)
{
    static constexpr std::string_view kNames[] = {"yyyy", "q",  "m", "y", "d",
                                                  "w",    "ww", "h", "n", "s"};
    for (int i = 0; i < 10; ++i) {
        if (NamesEqual(kNames[i], name))
            return static_cast<Interval>(i);
    }
    throw Error(ErrorKind::BadValue, "\"" + std::string(name.substr(0, 20)) +
                                         "\" is geen soort tijdvak (yyyy, q, m, d, ww, h, n, s).");
}

double AddMonths(double days, std::int64_t months)
{
    const DateTime::Civil civil = DateTime{days}.ToCivil();
    const std::int64_t total = civil.year * std::int64_t{12} + civil.month - 1 + months;
    if (total < 1200 || total >= 120000)
        InRange(kLastDay + 1);
    const int year = static_cast<int>(total / 12), month = static_cast<int>(total % 12) + 1;
    const int day = std::min(civil.day, DaysInMonth(year, month));
    return DateTime::FromCivil(year, month, day, civil.hour, civil.minute, civil.second).days;
}

void DateAdd(const Arguments& a)
{
    const Interval interval = IntervalOf(a.Text(0));
    const std::int64_t number = WholeNumber(a.Number(1));
    const double days = DaysIn(a, 2);
    double unit = 1;
    switch (interval) {
    case Interval::Year:
        a.Result(AddMonths(days, number * 12));
        return;
    case Interval::Quarter:
        a.Result(AddMonths(days, number * 3));
        return;
    case Interval::Month:
        a.Result(AddMonths(days, number));
        return;
    case Interval::Week:
        unit = 7;
        break;
    case Interval::Hour:
        unit = 1.0 / 24;
        break;
    case Interval::Minute:
        unit = 1.0 / 1440;
        break;
    case Interval::Second:
        unit = 1.0 / 86400;
        break;
    default:
        break;
    }
    // Whole seconds, so that an hour added 24 times is a day.
    const double line = OnTheLine(days) + static_cast<double>(number) * unit;
    a.Result(InRange(FromTheLine(unit < 1 ? std::round(line * 86400) / 86400 : line)));
}

std::int64_t Seconds(double days)
{
    return static_cast<std::int64_t>(std::llround(OnTheLine(days) * 86400));
}

std::int64_t FloorDivide(std::int64_t a, std::int64_t b)
{
    return a >= 0 ? a / b : -((b - 1 - a) / b);
}

// Counts the boundaries passed: from 31 December to 1 January is one year.
void DateDiff(const Arguments& a)
{
    const double first = DaysIn(a, 1), second = DaysIn(a, 2);
    const DateTime::Civil from = DateTime{first}.ToCivil(), to = DateTime{second}.ToCivil();
    const int firstDay = a.Count() > 3 ? std::max(1, WholeNumber(a.Number(3))) : 1;
    const std::int64_t days = DayNumber(second) - DayNumber(first);
    switch (IntervalOf(a.Text(0))) {
    case Interval::Year:
        a.Result(std::int64_t{to.year - from.year});
        break;
    case Interval::Quarter:
        a.Result(
            std::int64_t{(to.year - from.year) * 4 + (to.month - 1) / 3 - (from.month - 1) / 3});
        break;
    case Interval::Month:
        a.Result(std::int64_t{(to.year - from.year) * 12 + to.month - from.month});
        break;
    case Interval::Weekday:
        a.Result(days / 7);
        break;
    case Interval::Week: {
        const auto weekStart = [&](double d) {
            return DayNumber(d) - (Weekday(DayNumber(d), firstDay) - 1);
        };
        a.Result((weekStart(second) - weekStart(first)) / 7);
        break;
    }
    case Interval::Hour:
        a.Result(FloorDivide(Seconds(second), 3600) - FloorDivide(Seconds(first), 3600));
        break;
    case Interval::Minute:
        a.Result(FloorDivide(Seconds(second), 60) - FloorDivide(Seconds(first), 60));
        break;
    case Interval::Second:
        a.Result(Seconds(second) - Seconds(first));
        break;
    default:
        a.Result(days);
        break;
    }
}

void DatePart(const Arguments& a)
{
    const double days = DaysIn(a, 1);
    const DateTime::Civil civil = DateTime{days}.ToCivil();
    const int firstDay = a.Count() > 2 ? std::max(1, WholeNumber(a.Number(2))) : 1;
    const std::int64_t newYear = DayNumber(DateTime::FromCivil(civil.year, 1, 1).days);
    std::int64_t part = 0;
    switch (IntervalOf(a.Text(0))) {
    case Interval::Year:
        part = civil.year;
        break;
    case Interval::Quarter:
        part = (civil.month - 1) / 3 + 1;
        break;
    case Interval::Month:
        part = civil.month;
        break;
    case Interval::DayOfYear:
        part = DayNumber(days) - newYear + 1;
        break;
    case Interval::Day:
        part = civil.day;
        break;
    case Interval::Weekday:
        part = Weekday(DayNumber(days), firstDay);
        break;
    case Interval::Week: // the week with 1 January is the first
        part = (DayNumber(days) - newYear + Weekday(newYear, firstDay) - 1) / 7 + 1;
        break;
    case Interval::Hour:
        part = civil.hour;
        break;
    case Interval::Minute:
        part = civil.minute;
        break;
    case Interval::Second:
        part = civil.second;
        break;
    }
    a.Result(part);
}

} // namespace

double DaysIn(const Arguments& a, int i)
{
    double days = a.Number(i);
    if (a.IsText(i) && !TextToDays(a.Text(i), days))
        throw Error(ErrorKind::TypeMismatch,
                    "De tekst \"" + std::string(a.Text(i).substr(0, 60)) + "\" is geen datum");
    return InRange(days);
}

void RegisterDateFunctions(sqlite3* db, PendingError& errors)
{
    AddFunction<Part<&DateTime::Civil::year>>(db, errors, "jet_year", 1);
    AddFunction<Part<&DateTime::Civil::month>>(db, errors, "jet_month", 1);
    AddFunction<Part<&DateTime::Civil::day>>(db, errors, "jet_day", 1);
    AddFunction<Part<&DateTime::Civil::hour>>(db, errors, "jet_hour", 1);
    AddFunction<Part<&DateTime::Civil::minute>>(db, errors, "jet_minute", 1);
    AddFunction<Part<&DateTime::Civil::second>>(db, errors, "jet_second", 1);
    AddFunction<WeekdayOf>(db, errors, "jet_weekday", 1);
    AddFunction<WeekdayOf>(db, errors, "jet_weekday", 2);
    AddFunction<CDate>(db, errors, "jet_cdate", 1);
    AddFunction<DateValue>(db, errors, "jet_datevalue", 1);
    AddFunction<TimeValue>(db, errors, "jet_timevalue", 1);
    AddFunction<IsDate, true>(db, errors, "jet_isdate", 1);
    AddFunction<DateSerial>(db, errors, "jet_dateserial", 3);
    AddFunction<TimeSerial>(db, errors, "jet_timeserial", 3);
    AddFunction<DateAdd>(db, errors, "jet_dateadd", 3);
    AddFunction<DateDiff>(db, errors, "jet_datediff", 3);
    AddFunction<DateDiff>(db, errors, "jet_datediff", 4);
    AddFunction<DatePart>(db, errors, "jet_datepart", 2);
    AddFunction<DatePart>(db, errors, "jet_datepart", 3);
}

} // namespace jet::sql
