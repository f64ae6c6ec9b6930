#include "jet/base/Numbers.h"

#include <gtest/gtest.h>

using namespace jet;

namespace {

void ExpectCivil(double days, int year, int month, int day, int hour = 0, int minute = 0,
                 int second = 0)
{
    const auto civil = DateTime{days}.ToCivil();
    EXPECT_EQ(civil.year, year) << days;
    EXPECT_EQ(civil.month, month) << days;
    EXPECT_EQ(civil.day, day) << days;
    EXPECT_EQ(civil.hour, hour) << days;
    EXPECT_EQ(civil.minute, minute) << days;
    EXPECT_EQ(civil.second, second) << days;
}

} // namespace

TEST(DateTime, DayZeroIs30December1899)
{
    ExpectCivil(0, 1899, 12, 30);
    ExpectCivil(1, 1899, 12, 31);
    ExpectCivil(2, 1900, 1, 1);
    ExpectCivil(36526, 2000, 1, 1);
    ExpectCivil(36585, 2000, 2, 29);
    ExpectCivil(45292.75, 2024, 1, 1, 18);
}

TEST(DateTime, BeforeDayZeroTheTimeOfDayCountsAwayFromIt)
{
    ExpectCivil(-1.25, 1899, 12, 29, 6);
    ExpectCivil(-0.25, 1899, 12, 30, 6);
    EXPECT_EQ(DateTime::FromCivil(1899, 12, 29, 6).days, -1.25);
    EXPECT_EQ(DateTime::FromCivil(1899, 12, 30, 6).days, 0.25);
}

TEST(DateTime, SecondsAreRoundedAndTheLastHalfSecondIsTheNextDay)
{
    ExpectCivil(36526 + 86399.4 / 86400, 2000, 1, 1, 23, 59, 59);
    ExpectCivil(36526 + 86399.6 / 86400, 2000, 1, 2);
    ExpectCivil(-1 - 86399.6 / 86400, 1899, 12, 30);
}

TEST(DateTime, EverySecondOfADaySurvives)
{
    for (int second = 0; second < 86400; ++second) {
        const auto moment =
            DateTime::FromCivil(2024, 2, 29, second / 3600, second / 60 % 60, second % 60);
        const auto civil = moment.ToCivil();
        ASSERT_EQ(civil.hour * 3600 + civil.minute * 60 + civil.second, second);
        ASSERT_EQ(civil.day, 29);
    }
}

TEST(DateTime, AsTextHasATimeOnlyWhenThereIsOne)
{
    EXPECT_EQ(TextFromDateTime(DateTime::FromCivil(2024, 3, 9)), "2024-03-09");
    EXPECT_EQ(TextFromDateTime(DateTime::FromCivil(2024, 3, 9, 7, 5, 1)), "2024-03-09 07:05:01");
}

TEST(DateTime, IsReadFromText)
{
    const auto noon = DateTime::FromCivil(2024, 3, 9, 12);
    EXPECT_EQ(DateTimeFromText("2024-03-09 12:00:00"), noon);
    EXPECT_EQ(DateTimeFromText("2024-03-09T12:00"), noon);
    EXPECT_EQ(DateTimeFromText(" 9-3-2024 12:00 "), noon) << "day first, as in Dutch";
    EXPECT_EQ(DateTimeFromText("3/9/2024 12:00"), noon) << "month first, as in statements";
    EXPECT_EQ(DateTimeFromText("12:00"), DateTime{0.5});
    EXPECT_EQ(DateTimeFromText("2024-02-29"), DateTime::FromCivil(2024, 2, 29));
}

TEST(DateTime, IsNotGuessedFromOtherText)
{
    for (const char* text : {"", " ", "gisteren", "2024", "2024-13-01", "2023-02-29",
                             "2024-03-09 25:00", "2024-03-09 12:60", "2024-03-09 12", "2024-03-09x",
                             "9-3-24", "2024-03/09", "12:00 2024-03-09", "2024-03-09 12:00:00.5"})
        EXPECT_FALSE(DateTimeFromText(text)) << text;
}
