#include "jet/sql/Tokeniser.h"
#include "jet/base/Value.h"
#include "jet/sql/StatementError.h"

#include <gtest/gtest.h>

namespace jet::sql {
namespace {

std::string Cut(std::string_view statement)
{
    std::string text;
    for (const Token& token : Tokenise(statement)) {
        static constexpr const char* kMarks[] = {"end", "w:", "n:", "t:", "i:", "r:", "d:", "s:"};
        text += text.empty() ? "" : " ";
        text += kMarks[static_cast<int>(token.kind)];
        if (token.kind == TokenKind::Integer)
            text += std::to_string(token.integer);
        else if (token.kind == TokenKind::Real || token.kind == TokenKind::Date)
            text += Value(token.number).AsText();
        else
            text += token.text;
    }
    return text;
}

std::size_t PlaceOfRefusal(std::string_view statement)
{
    try {
        Tokenise(statement);
    } catch (const StatementError& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::Syntax);
        return error.Position();
    }
    ADD_FAILURE() << "not refused: " << statement;
    return 0;
}

TEST(TokeniserTest, CutsWordsNamesTextsNumbersAndSymbols)
{
    EXPECT_EQ(Cut("SELECT [a b].c, 'x'\t\"y\"<>1.5;"),
              "w:SELECT n:a b s:. w:c s:, t:x t:y s:<> r:1.5 s:; end");
    EXPECT_EQ(Cut(""), "end");
    EXPECT_EQ(Cut("  \r\n "), "end");
}

TEST(TokeniserTest, NumbersAndWordsEndWhereTheyCannotGoOn)
{
    EXPECT_EQ(Cut("-999AND"), "s:- i:999 w:AND end");
    EXPECT_EQ(Cut("1.5AND"), "r:1.5 w:AND end");
    EXPECT_EQ(Cut("min(x)as"), "w:min s:( w:x s:) w:as end");
    EXPECT_EQ(Cut("1E"), "i:1 w:E end");
    EXPECT_EQ(Cut("1E5E"), "r:100000 w:E end");
    EXPECT_EQ(Cut("'x'AND"), "t:x w:AND end");
    EXPECT_EQ(Cut("a.b"), "w:a s:. w:b end");
    EXPECT_EQ(Cut("1<=2>=3"), "i:1 s:<= i:2 s:>= i:3 end");
}

TEST(TokeniserTest, QuotesAreUndoneInsideTheirOwnKindOnly)
{
    EXPECT_EQ(Cut("'a''b'"), "t:a'b end");
    EXPECT_EQ(Cut("\"a\"\"b\""), "t:a\"b end");
    EXPECT_EQ(Cut("\"a''b\""), "t:a''b end");
    EXPECT_EQ(Cut("''"), "t: end");
    EXPECT_EQ(Cut("''''"), "t:' end");
}

TEST(TokeniserTest, LettersBeyondAsciiBelongToWords)
{
    EXPECT_EQ(Cut("één_1 ë"), "w:één_1 w:ë end");
}

TEST(TokeniserTest, WhatHasNoEndIsRefusedWhereItBegins)
{
    EXPECT_EQ(PlaceOfRefusal("SELECT 'abc"), 7U);
    EXPECT_EQ(PlaceOfRefusal("SELECT \"abc"), 7U);
    EXPECT_EQ(PlaceOfRefusal("SELECT [abc"), 7U);
    EXPECT_EQ(PlaceOfRefusal("SELECT #1/1/2000"), 7U);
    EXPECT_EQ(PlaceOfRefusal("SELECT []"), 7U);
    EXPECT_EQ(PlaceOfRefusal("a ? b"), 2U);
    EXPECT_EQ(PlaceOfRefusal(std::string_view("a\0b", 3)), 1U);
}

TEST(TokeniserTest, AScriptIsCutAtSemicolonsOutsideTextsAndNames)
{
    EXPECT_EQ(EndOfFirstStatement("SELECT ';', \";\", [;] ; SELECT 2"), 21U);
    EXPECT_EQ(EndOfFirstStatement("SELECT 1"), 8U);
    EXPECT_EQ(EndOfFirstStatement("SELECT 'open;"), 13U);
}

} // namespace
} // namespace jet::sql
