#include "jet/catalog/DefaultValue.h"

#include "jet/catalog/Clock.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using jet::DefaultValue;
using jet::Value;

Value ValueOf(const char* expression)
{
    const auto parsed = DefaultValue::Parse(expression);
    EXPECT_TRUE(parsed.has_value()) << expression;
    return parsed ? parsed->Evaluate() : Value("?");
}

TEST(DefaultValue, ReadsNumbers)
{
    EXPECT_EQ(ValueOf("-999"), Value(-999));
    EXPECT_EQ(ValueOf("0"), Value(0));
    EXPECT_EQ(ValueOf(" =42 "), Value(42));
    EXPECT_EQ(ValueOf("(7)"), Value(7));
    EXPECT_EQ(ValueOf("- 5"), Value(-5));
    EXPECT_DOUBLE_EQ(ValueOf("1.25").AsDouble(), 1.25);
    EXPECT_DOUBLE_EQ(ValueOf("1e-3").AsDouble(), 0.001);
    EXPECT_DOUBLE_EQ(ValueOf("3000000000").AsDouble(), 3e9);
}

TEST(DefaultValue, ReadsTextsInEitherQuote)
{
    EXPECT_EQ(ValueOf("\"abc\""), Value("abc"));
    EXPECT_EQ(ValueOf("'abc'"), Value("abc"));
    EXPECT_EQ(ValueOf("\"\""), Value(""));
    EXPECT_EQ(ValueOf("\"zeg \"\"nee\"\"\""), Value("zeg \"nee\""));
    EXPECT_EQ(ValueOf("'s ''avonds'"), Value("s 'avonds"));
    EXPECT_EQ(ValueOf("=\"x\""), Value("x"));
}

TEST(DefaultValue, ReadsTruthAndNull)
{
    EXPECT_EQ(ValueOf("True"), Value(true));
    EXPECT_EQ(ValueOf("yes"), Value(true));
    EXPECT_EQ(ValueOf("FALSE"), Value(false));
    EXPECT_EQ(ValueOf("No"), Value(false));
    EXPECT_TRUE(ValueOf("Null").IsNull());
    EXPECT_TRUE(ValueOf("").IsNull());
}

TEST(DefaultValue, ReadsDates)
{
    EXPECT_EQ(ValueOf("#2004-02-29#").AsDateTime(), jet::DateTime::FromCivil(2004, 2, 29));
}

TEST(DefaultValue, AsksTheClockForEveryRow)
{
    const double before = jet::LocalNow().days;
    const double now = ValueOf("Now()").AsDateTime().days;
    const double after = jet::LocalNow().days;
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);

    const double today = ValueOf("=date( )").AsDateTime().days;
    EXPECT_EQ(today, std::floor(today));
    EXPECT_LE(today, after);
    EXPECT_GT(today + 1, before);

    const double time = ValueOf("Time()").AsDateTime().days;
    EXPECT_GE(time, 0);
    EXPECT_LT(time, 1);
}

TEST(DefaultValue, KnowsWhatItCannotEvaluate)
{
    for (const char* expression :
         {"DMax(\"x\",\"y\")", "1+1", "\"half", "\"a\"b\"", "[Veld]", "#31#"})
        EXPECT_FALSE(DefaultValue::Parse(expression)) << expression;
}

} // namespace
