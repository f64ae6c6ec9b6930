#include "frame/StrToken.h"

#include "FrameTestTools.h"

TEST(StrToken, SkipsEmptyFields)
{
    EXPECT_EQ(StrToken(1, ";;een;;twee;", ";"), "een");
    EXPECT_EQ(StrToken(1, "", ";"), "twee");
    EXPECT_EQ(StrToken(1, "", ";"), "");
    EXPECT_EQ(StrToken(1, "", ";"), "");
}

TEST(StrToken, TakesEveryCharacterOfTheDelimiters)
{
    EXPECT_EQ(StrToken(2, "a b,c", ", "), "a");
    EXPECT_EQ(StrToken(2, "", ", "), "b");
    EXPECT_EQ(StrToken(2, "", ", "), "c");
    EXPECT_EQ(StrToken(2, "", ", "), "");
}

TEST(StrToken, SlotsDoNotDisturbEachOther)
{
    EXPECT_EQ(StrToken(1, "a b", " "), "a");
    EXPECT_EQ(StrToken(10, "c d", " "), "c");
    EXPECT_EQ(StrToken(1, "", " "), "b");
    EXPECT_EQ(StrToken(10, "", " "), "d");
    EXPECT_EQ(StrToken(1, "x y", " "), "x") << "a new text replaces what was left";
}

TEST(StrToken, LeavesTheDelimiterForTheNextCall)
{
    EXPECT_EQ(StrToken(3, "a;b,c", ";"), "a");
    EXPECT_EQ(StrToken(3, "", ","), ";b");
    EXPECT_EQ(StrToken(3, "", ","), "c");
}

TEST(StrTokenNext, GivesEmptyFieldsAndANulAtTheEnd)
{
    EXPECT_EQ(StrTokenNext(1, "een;;twee;", ";"), "een");
    EXPECT_EQ(StrTokenNext(1, "", ";"), "");
    EXPECT_EQ(StrTokenNext(1, "", ";"), "twee");
    EXPECT_EQ(StrTokenNext(1, "", ";"), "");
    EXPECT_EQ(StrTokenNext(1, "", ";"), EndOfFields());
    EXPECT_EQ(StrTokenNext(1, "", ";"), EndOfFields());
    EXPECT_EQ(EndOfFields().size(), 1);
    EXPECT_TRUE(EndOfFields()[0].isNull());
}

TEST(StrTokenNext, SharesItsSlotsWithStrToken)
{
    EXPECT_EQ(StrToken(4, "a;b;c", ";"), "a");
    EXPECT_EQ(StrTokenNext(4, "", ";"), "") << "StrToken left the delimiter";
    EXPECT_EQ(StrTokenNext(4, "", ";"), "b");
    EXPECT_EQ(StrToken(4, "", ";"), "c");
}

TEST(StrToken, KnowsTenSlots)
{
    for (const int slot : {0, 11, -1}) {
        EXPECT_EQ(RaisedNumber([=] { StrToken(slot, "a", ";"); }), RuntimeFout::OutOfRange);
        EXPECT_EQ(RaisedNumber([=] { StrTokenNext(slot, "a", ";"); }), RuntimeFout::OutOfRange);
    }
}
