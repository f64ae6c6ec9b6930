#include "frame/Numbers.h"

#include "FrameTestTools.h"

#include <cmath>
#include <limits>

TEST(ParseNumber, TakesSignDigitsOneDecimalSignAndExponent)
{
    EXPECT_EQ(ParseNumber("12"), 12);
    EXPECT_EQ(ParseNumber("-12.5"), -12.5);
    EXPECT_EQ(ParseNumber("+12,5"), 12.5);
    EXPECT_EQ(ParseNumber("1e+3"), 1000);
    EXPECT_EQ(ParseNumber("1,5E-1"), 0.15);
    EXPECT_EQ(ParseNumber("  7  "), 7);
    EXPECT_EQ(ParseNumber(".5"), 0.5);
    EXPECT_EQ(ParseNumber("5."), 5);
    EXPECT_EQ(ParseNumber("-0"), 0);
}

TEST(ParseNumber, TakesNothingElse)
{
    for (const char* text : {"",     " ",    "abc", "1 2", "1.2.3", "1.000,5", "1,2,3",       "--1",
                             "+-1",  "1e",   "1e+", "e3",  ".",     ",",       "+",           "-",
                             "&H10", "0x10", "1d3", "inf", "nan",   "1-",      "\xE2\x82\xAC"})
        EXPECT_FALSE(IsNumeric(QString::fromUtf8(text))) << text;
    EXPECT_FALSE(IsNumeric(QString(QChar(0x0661)))) << "an Arabic digit";
}

TEST(ParseNumber, GivesInfinityForWhatIsTooLarge)
{
    EXPECT_TRUE(std::isinf(*ParseNumber("1e999")));
    EXPECT_EQ(ParseNumber("-1e999"), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isinf(*ParseNumber("1" + QString(400, '0'))));
    EXPECT_TRUE(std::isinf(*ParseNumber("1e99999999999")));
    EXPECT_EQ(ParseNumber("1e-999"), 0);
    EXPECT_EQ(ParseNumber("1e-99999999999"), 0);
    EXPECT_EQ(ParseNumber("0." + QString(400, '0') + "1"), 0);
    EXPECT_EQ(ParseNumber("0." + QString(400, '0') + "1e401"), 1);
    EXPECT_EQ(ParseNumber("0e999"), 0);
}

TEST(NumberText, GivesFifteenSignificantDigitsWithAPoint)
{
    EXPECT_EQ(NumberText(1.5), "1.5");
    EXPECT_EQ(NumberText(0.1 + 0.2), "0.3");
    EXPECT_EQ(NumberText(-999), "-999");
    EXPECT_EQ(NumberText(100000000000000.0), "100000000000000");
    EXPECT_EQ(NumberText(1e20), "1E+20");
    EXPECT_EQ(NumberText(-0.0), "0");
}

TEST(ScreenText, HasTheSystemsSign)
{
    const FakeInternational comma(",");
    SetInternational(&comma);
    EXPECT_EQ(ScreenText(-1.25), "-1,25");
    EXPECT_EQ(ScreenText(1e20), "1E+20");
    SetInternational(nullptr);
}

TEST(FixedText, RoundsHalfAwayFromZeroOnFifteenDigits)
{
    EXPECT_EQ(FixedText(2.675, 2), "2.68"); // the double lies below
    EXPECT_EQ(FixedText(-2.675, 2), "-2.68");
    EXPECT_EQ(FixedText(1.005, 2), "1.01");
    EXPECT_EQ(FixedText(0.5, 0), "1");
    EXPECT_EQ(FixedText(1.5, 0), "2");
    EXPECT_EQ(FixedText(2.5, 0), "3");
    EXPECT_EQ(FixedText(0.4999999999999, 0), "0");
    EXPECT_EQ(FixedText(0.05, 1), "0.1");
    EXPECT_EQ(FixedText(0.04, 1), "0.0");
    EXPECT_EQ(FixedText(0.004, 1), "0.0");
    EXPECT_EQ(FixedText(9.995, 2), "10.00");
    EXPECT_EQ(FixedText(99.95, 1), "100.0");
    EXPECT_EQ(FixedText(0.95, 1), "1.0");
}

TEST(FixedText, PadsAndNeverShowsANegativeZero)
{
    EXPECT_EQ(FixedText(3, 2), "3.00");
    EXPECT_EQ(FixedText(0, 3), "0.000");
    EXPECT_EQ(FixedText(-0.001, 2), "0.00");
    EXPECT_EQ(FixedText(-0.0, 2), "0.00");
    EXPECT_EQ(FixedText(-0.005, 2), "-0.01");
    EXPECT_EQ(FixedText(123456, 0), "123456");
    EXPECT_EQ(FixedText(1e20, 1), "100000000000000000000.0");
    EXPECT_EQ(FixedText(1.25, -1), "1");
    EXPECT_EQ(FixedText(0.000123, 5), "0.00012");
}

TEST(ExponentText, HasOneDigitInFrontOfThePoint)
{
    EXPECT_EQ(ExponentText(12345.678, 2), "1.23E+04");
    EXPECT_EQ(ExponentText(0.00125, 1), "1.3E-03");
    EXPECT_EQ(ExponentText(9.996, 2), "1.00E+01");
    EXPECT_EQ(ExponentText(-5, 0), "-5E+00");
    EXPECT_EQ(ExponentText(0, 2), "0.00E+00");
    EXPECT_EQ(ExponentText(1e100, 1), "1.0E+100");
}

TEST(RoundToEven, SendsHalvesToTheEvenNumber)
{
    EXPECT_EQ(RoundToEven(0.5), 0);
    EXPECT_EQ(RoundToEven(1.5), 2);
    EXPECT_EQ(RoundToEven(2.5), 2);
    EXPECT_EQ(RoundToEven(-2.5), -2);
    EXPECT_EQ(RoundToEven(2.51), 3);
}

TEST(SystemInternational, KnowsSignAndLanguage)
{
    const International system;
    EXPECT_EQ(system.Value("sDecimal").size(), 1);
    EXPECT_FALSE(system.Value("sLanguage").isEmpty());
    EXPECT_EQ(system.Value("bestaat niet"), "");
}
