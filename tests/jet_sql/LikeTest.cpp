#include "jet/sql/Like.h"
#include "jet/sql/LetterCase.h"

#include <gtest/gtest.h>

namespace jet::sql {
namespace {

bool Like(std::u16string_view text, std::u16string_view pattern)
{
    return LikePattern(pattern, false).Matches(text);
}

TEST(LikeTest, StarsTakeAnyCharactersAlsoNone)
{
    EXPECT_TRUE(Like(u"dijk", u"*"));
    EXPECT_TRUE(Like(u"", u"***"));
    EXPECT_TRUE(Like(u"dijkring", u"d*k*g"));
    EXPECT_FALSE(Like(u"dijkring", u"d*x*g"));
    EXPECT_TRUE(Like(u"aab", u"*ab"));
    EXPECT_TRUE(Like(u"mississippi", u"*issip*"));
}

TEST(LikeTest, ManyStarsOnALongTextEndInTime)
{
    std::u16string pattern;
    for (int i = 0; i < 50; ++i)
        pattern += u"*a";
    EXPECT_FALSE(Like(std::u16string(20000, u'a'), pattern + u"b"));
}

TEST(LikeTest, ClassesOfCharacters)
{
    EXPECT_TRUE(Like(u"B", u"[a-c]"));
    EXPECT_TRUE(Like(u"5", u"[!a-c]"));
    EXPECT_FALSE(Like(u"b", u"[!a-c]"));
    EXPECT_TRUE(Like(u"x", u"[a-cx-z]"));
    EXPECT_TRUE(Like(u"]", u"[]]"));
    EXPECT_TRUE(Like(u"-", u"[a-]"));
    EXPECT_TRUE(Like(u"!", u"[a!]"));
    EXPECT_TRUE(Like(u"[a", u"[a")) << "a bracket that is never closed stands for itself";
    EXPECT_TRUE(Like(u"7", u"#"));
    EXPECT_FALSE(Like(u"a", u"#"));
}

TEST(LikeTest, CaseDoesNotMatterAccentsDo)
{
    EXPECT_TRUE(Like(u"ÉÉN dijk", u"één*"));
    EXPECT_FALSE(Like(u"een dijk", u"één*"));
}

TEST(LetterCaseTest, EveryLetterFindsItsWayBack)
{
    for (char16_t c = 1; c < 0x460; ++c) {
        if (LowerCase(c) != c) {
            EXPECT_EQ(UpperCase(LowerCase(c)), c) << static_cast<int>(c);
        }
        if (UpperCase(c) != c && c != 0x3C2) {
            EXPECT_EQ(LowerCase(UpperCase(c)), c) << static_cast<int>(c);
        }
    }
    EXPECT_EQ(UpperCase(u"één Øre ÿ straße"), u"ÉÉN ØRE Ÿ STRAßE");
}

} // namespace
} // namespace jet::sql
