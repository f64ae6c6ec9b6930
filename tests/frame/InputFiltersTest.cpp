#include "frame/InputFilters.h"

#include "FrameTestTools.h"

namespace {

class InputFiltersTest : public FrameTest {
protected:
    static FilteredText Change(const QString& text, int dataType, double minimum = 0,
                               double maximum = 0, const QString& previous = "oud")
    {
        return FilterNumberChange(text, previous, int(text.size()), dataType, minimum, maximum);
    }
};

} // namespace

TEST_F(InputFiltersTest, NamesLoseForbiddenCharacters)
{
    const FilteredText result = FilterNameKey("a_b[c]", "", 2);
    EXPECT_EQ(result.text, "abc");
    EXPECT_EQ(result.caret, 3) << "at the end";
    EXPECT_TRUE(result.refused);
    for (const QChar character : QString("_[];=%{}`^'*?\\/<>:|\""))
        EXPECT_EQ(FilterNameKey(QString("a") + character, "", 2).text, "a") << character.toLatin1();
}

TEST_F(InputFiltersTest, GoodNamesStayWithTheirCaret)
{
    const FilteredText result = FilterNameKey("Dijkvak 1.2", "", 4);
    EXPECT_EQ(result.text, "Dijkvak 1.2");
    EXPECT_EQ(result.caret, 4);
    EXPECT_FALSE(result.refused);
}

TEST_F(InputFiltersTest, AnUnderscoreMayBeAllowed)
{
    EXPECT_EQ(FilterNameKey("a_b", "", 3, NameRule::WithUnderscore).text, "a_b");
    EXPECT_EQ(FilterNameKey("a;b", "", 3, NameRule::WithUnderscore).text, "ab");
}

TEST_F(InputFiltersTest, ANameWithADotInFrontGoesBackToWhatItWas)
{
    const FilteredText result = FilterNameKey(".naam", "naam", 1);
    EXPECT_EQ(result.text, "naam");
    EXPECT_EQ(result.caret, 0);
    EXPECT_TRUE(result.refused);
}

TEST_F(InputFiltersTest, ACharacterThatTheFilesCannotHoldIsRefused)
{
    const QString text = QString::fromUtf16(u"Caf\u00E9 \u03A9");
    EXPECT_EQ(FilterNameKey(text, "", 6).text, QString::fromUtf16(u"Caf\u00E9 "));
    EXPECT_TRUE(FilterNameKey(text, "", 6).refused);
}

TEST_F(InputFiltersTest, FileNamesAreFilteredInModeOneOnly)
{
    const FilteredText result = FilterFileNameInput("a:b?c", 2, 1);
    EXPECT_EQ(result.text, "abc");
    EXPECT_EQ(result.caret, 1);
    EXPECT_TRUE(result.refused);
    EXPECT_EQ(FilterFileNameInput("a:b", 2, 0).text, "a:b");
    EXPECT_EQ(FilterFileNameInput(".:b", 2, 1).text, ".:b");
    EXPECT_FALSE(FilterFileNameInput("a_b.txt", 2, 1).refused);
}

TEST_F(InputFiltersTest, WholeNumbersTakeDigitsAndASignInFront)
{
    EXPECT_EQ(Change("12a3", DataTypes::Integer).text, "123");
    EXPECT_TRUE(Change("12a3", DataTypes::Integer).refused);
    EXPECT_EQ(Change("1.5", DataTypes::Integer).text, "15");
    EXPECT_EQ(Change("-5", DataTypes::Integer, -10, 10).text, "-5");
    EXPECT_EQ(Change("5-", DataTypes::Integer, -10, 10).text, "5-");
    EXPECT_EQ(Change("5-", DataTypes::Integer, 0, 10).text, "5");
    EXPECT_EQ(Change("+5", DataTypes::Long, 0, 10).text, "+5");
    EXPECT_FALSE(Change("12", DataTypes::Long).refused);
}

TEST_F(InputFiltersTest, FloatingPointNumbersShowTheSystemsSign)
{
    EXPECT_EQ(Change("1.5", DataTypes::Double).text, "1,5");
    EXPECT_FALSE(Change("1.5", DataTypes::Double).refused) << "understood, not refused";
    EXPECT_EQ(Change("1,5", DataTypes::Double).text, "1,5");
    EXPECT_EQ(Change("1e5", DataTypes::Single).text, "1e5");
    EXPECT_EQ(Change("1x5", DataTypes::Double).text, "15");
    EXPECT_EQ(Change("1e-5", DataTypes::Double, -1, 1).text, "1e-5");
    EXPECT_EQ(Change("1e-5", DataTypes::Double, 0, 10).text, "1e-5") << "not 1e5";
    EXPECT_EQ(Change("1-5", DataTypes::Double, 0, 10).text, "15");
    const FakeInternational point(".");
    UseSystem(point);
    EXPECT_EQ(Change("1,5", DataTypes::Double).text, "1.5");
}

TEST_F(InputFiltersTest, ANumberTooLargeRestoresTheTextBefore)
{
    EXPECT_EQ(Change("40000", DataTypes::Integer, 0, 0, "4000").text, "4000");
    EXPECT_TRUE(Change("40000", DataTypes::Integer, 0, 0, "4000").refused);
    EXPECT_EQ(Change("40000", DataTypes::Long).text, "40000");
    EXPECT_EQ(Change("3000000000", DataTypes::Long, 0, 0, "300000000").text, "300000000");
    EXPECT_EQ(Change("1e39", DataTypes::Single, 0, 0, "1e3").text, "1e3");
    EXPECT_EQ(Change("1e39", DataTypes::Double, 0, 0, "1e3").text, "1e39");
    EXPECT_EQ(Change("1e309", DataTypes::Double, 0, 0, "1e30").text, "1e30");
}

TEST_F(InputFiltersTest, ASecondDecimalSignRestoresTheTextBefore)
{
    for (const char* text : {"1,2,3", "1.234,5", "1,234.5", "1e5,5,"}) {
        EXPECT_EQ(Change(text, DataTypes::Double, -10, 10).text, "oud") << text;
        EXPECT_TRUE(Change(text, DataTypes::Double, -10, 10).refused) << text;
    }
    const FilteredText second = FilterNumberChange("1,2,", "1,2", 4, DataTypes::Double, 0, 0);
    EXPECT_EQ(second.text, "1,2");
    EXPECT_EQ(second.caret, 3);
}

TEST_F(InputFiltersTest, ANumberThatIsNotCompleteYetStays)
{
    for (const char* text : {"", "-", "+", ",", "-,", "1,", ",5", "1e", "1e-", "-1,5E+"})
        EXPECT_EQ(Change(text, DataTypes::Double, -10, 10).text, text);
}

TEST_F(InputFiltersTest, TheCaretStaysBetweenTheSameCharacters)
{
    EXPECT_EQ(FilterNumberChange("1a2b3", "", 3, DataTypes::Integer, 0, 0).caret, 2);
    EXPECT_EQ(FilterNumberChange("123", "", 1, DataTypes::Integer, 0, 0).caret, 1);
}

TEST_F(InputFiltersTest, PlainTextIsNotFiltered)
{
    EXPECT_EQ(Change("abc", 0).text, "abc");
    EXPECT_TRUE(FilterNumberKey('x', 0, 0, 0, 0));
}

TEST_F(InputFiltersTest, KeysOfWholeNumbers)
{
    EXPECT_TRUE(FilterNumberKey('5', 3, DataTypes::Integer, 0, 10));
    EXPECT_TRUE(FilterNumberKey('+', 3, DataTypes::Integer, 0, 10));
    EXPECT_TRUE(FilterNumberKey('-', 0, DataTypes::Integer, 0, 10)) << "a sign in front";
    EXPECT_FALSE(FilterNumberKey('-', 3, DataTypes::Integer, 0, 10));
    EXPECT_TRUE(FilterNumberKey('-', 3, DataTypes::Integer, -10, 10));
    EXPECT_FALSE(FilterNumberKey(',', 3, DataTypes::Long, 0, 10));
    EXPECT_FALSE(FilterNumberKey('a', 3, DataTypes::Long, 0, 10));
    EXPECT_TRUE(FilterNumberKey('\b', 3, DataTypes::Long, 0, 10));
}

TEST_F(InputFiltersTest, KeysOfFloatingPointNumbers)
{
    for (const char key : {'5', '+', '-', ',', '.'})
        EXPECT_TRUE(FilterNumberKey(key, 3, DataTypes::Double, 0, 10)) << key;
    EXPECT_FALSE(FilterNumberKey('e', 3, DataTypes::Double, 0, 10));
    EXPECT_FALSE(FilterNumberKey(' ', 3, DataTypes::Double, 0, 10));
}

TEST_F(InputFiltersTest, AnEmptyTextFailsUnlessItMayBeEmpty)
{
    EXPECT_TRUE(ValidateRange("  ", DataTypes::Double, 1, 10, false, "x").failed);
    EXPECT_TRUE(ValidateRange("", 0, 0, 0, false, "").failed);
    EXPECT_FALSE(ValidateRange("", DataTypes::Double, 1, 10, true, "x").failed);
    EXPECT_EQ(ValidateRange("", DataTypes::Double, 1, 10, false, "x").message, "");
}

TEST_F(InputFiltersTest, AValueOutOfRangeShowsTheBounds)
{
    const RangeVerdict verdict = ValidateRange("11", DataTypes::Double, 0.5, 10, false, "aantal");
    EXPECT_TRUE(verdict.failed);
    EXPECT_TRUE(verdict.selectAll);
    EXPECT_EQ(verdict.message, "0,5<=aantal<=10");
    EXPECT_TRUE(ValidateRange("0,4", DataTypes::Double, 0.5, 10, false, "aantal").failed);
    EXPECT_EQ(ValidateRange("11", DataTypes::Double, 1, 10, false, "  ").message, "");
    EXPECT_TRUE(ValidateRange("11", DataTypes::Double, 1, 10, false, "  ").failed);
    EXPECT_TRUE(ValidateRange("1e999", DataTypes::Double, 1, 10, false, "").failed);
}

TEST_F(InputFiltersTest, WhatIsNoNumberIsOutOfEveryRange)
{
    for (const char* text : {"-", "+", ",", "1e", "1-2", "1,2,3", "abc"}) {
        const RangeVerdict verdict = ValidateRange(text, DataTypes::Double, -20, 20, false, "peil");
        EXPECT_TRUE(verdict.failed) << text;
        EXPECT_TRUE(verdict.selectAll) << text;
        EXPECT_EQ(verdict.message, "-20<=peil<=20") << text;
        EXPECT_TRUE(ValidateRange(text, DataTypes::Double, 0, 0, false, "peil").failed) << text;
        EXPECT_EQ(ValidateRange(text, DataTypes::Double, 0, 0, false, "peil").message, "");
        EXPECT_FALSE(ValidateRange(text, 0, -20, 20, false, "peil").failed) << "plain text";
    }
}

TEST_F(InputFiltersTest, BoundsBelongToTheRange)
{
    EXPECT_FALSE(ValidateRange("1", DataTypes::Integer, 1, 10, false, "x").failed);
    EXPECT_FALSE(ValidateRange("10", DataTypes::Integer, 1, 10, false, "x").failed);
}

TEST_F(InputFiltersTest, TwoZeroBoundsMeanNoRange)
{
    EXPECT_FALSE(ValidateRange("-1000", DataTypes::Double, 0, 0, false, "x").failed);
    EXPECT_TRUE(ValidateRange("1", DataTypes::Double, -5, 0, false, "x").failed);
    EXPECT_FALSE(ValidateRange("1000", 0, 1, 10, false, "x").failed) << "plain text";
}

TEST_F(InputFiltersTest, FindsAnItemByItsText)
{
    const QStringList items{"Overloop", "Golfoverslag", "OVERLOOP"};
    EXPECT_EQ(FindIndexByText("overloop", items), 0);
    EXPECT_EQ(FindIndexByText("Golfoverslag", items), 1);
    EXPECT_EQ(FindIndexByText("golf", items), -1);
    EXPECT_EQ(FindIndexByText("", {"", "a"}), -1);
    EXPECT_EQ(FindIndexByText("a", {}), -1);
}
