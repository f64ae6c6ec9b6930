#include "frame/ui/NumberPattern.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace {

/// What a pattern makes of a value, with "." as decimal sign and "'" between groups.
QString Made(const QString& pattern, double value)
{
    QString text = NumberPattern(pattern).Text(value);
    const QLocale locale = QLocale::system();
    text.replace(locale.groupSeparator(), "'");
    text.replace(locale.decimalPoint(), ".");
    return text;
}

TEST(NumberPatternTest, ANoughtAlwaysShows)
{
    EXPECT_EQ(Made("0", 0), "0");
    EXPECT_EQ(Made("0.00", 1.5), "1.50");
    EXPECT_EQ(Made("0", 1234.4), "1234");
}

TEST(NumberPatternTest, AHashShowsWhenItSaysSomething)
{
    EXPECT_EQ(Made("0.###", 1), "1");
    EXPECT_EQ(Made("0.###", 1.25), "1.25");
    EXPECT_EQ(Made("0.###", 1.23456), "1.235");
    EXPECT_EQ(Made("#", 12), "12");
    EXPECT_EQ(Made("#", 0), "");
    EXPECT_EQ(Made("#.00", 0.5), ".50");
}

TEST(NumberPatternTest, ACommaGroupsThousands)
{
    EXPECT_EQ(Made("#,##0.###", 10000), "10'000");
    EXPECT_EQ(Made("#,##0.###", 1234567.5), "1'234'567.5");
    EXPECT_EQ(Made("#,##0.###", 999), "999");
}

TEST(NumberPatternTest, HalvesRoundAwayFromZero)
{
    EXPECT_EQ(Made("0", 2.5), "3");
    EXPECT_EQ(Made("0", -2.5), "-3");
    EXPECT_EQ(Made("0.00", 2.675), "2.68");
    EXPECT_EQ(Made("0.00", 0.145), "0.15");
}

TEST(NumberPatternTest, ThereIsNoMinusNought)
{
    EXPECT_EQ(Made("0.00", -0.001), "0.00");
    EXPECT_EQ(Made("0", -0.0), "0");
}

TEST(NumberPatternTest, WhatIsNoNumberHasNoText)
{
    EXPECT_EQ(Made("0", std::numeric_limits<double>::quiet_NaN()), "");
    EXPECT_EQ(Made("0", std::numeric_limits<double>::infinity()), "");
}

} // namespace
