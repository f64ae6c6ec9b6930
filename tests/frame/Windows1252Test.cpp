#include "frame/Windows1252.h"

#include "FrameTestTools.h"

TEST(Windows1252, EveryByteSurvivesTheWayInAndOut)
{
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    EXPECT_EQ(ToWindows1252(FromWindows1252(all)), all);
}

TEST(Windows1252, KnowsTheCharactersThatLatin1Lacks)
{
    EXPECT_EQ(FromWindows1252("\x80\x8C\x92\x99\x9F"),
              QString::fromUtf16(u"\u20AC\u0152\u2019\u2122\u0178"));
    EXPECT_EQ(ToWindows1252(QString::fromUtf16(u"\u201Eeen\u201D \u2013 \u00EB")),
              QByteArray("\x84"
                         "een\x94 \x96 \xEB"));
}

TEST(Windows1252, WritesAQuestionMarkForWhatTheCodePageLacks)
{
    EXPECT_EQ(ToWindows1252(QString::fromUtf16(u"a\u03A9b")), "a?b");
    // One for a character outside the basic plane, not two.
    EXPECT_EQ(ToWindows1252(QString::fromUtf16(u"a\U0001F30Ab")), "a?b");
    // 0x80 as a character is a control character, no euro sign.
    EXPECT_EQ(ToWindows1252(QString(QChar(0x80))), "?");
}

TEST(Windows1252, TellsWhatFits)
{
    EXPECT_TRUE(FitsWindows1252(QString::fromUtf16(u"Caf\u00E9 \u20AC")));
    EXPECT_FALSE(FitsWindows1252(QString::fromUtf16(u"\u0141\u00F3d\u017A")));
    EXPECT_TRUE(FitsWindows1252(QString()));
}

TEST(Windows1252, LowersLettersWithinTheCodePage)
{
    EXPECT_EQ(LowerWindows1252('A'), 'a');
    EXPECT_EQ(LowerWindows1252(0xC9), 0xE9); // E acute
    EXPECT_EQ(LowerWindows1252(0x8A), 0x9A); // S caron
    EXPECT_EQ(LowerWindows1252(0x9F), 0xFF); // Y diaeresis
    EXPECT_EQ(LowerWindows1252('['), '[');
    EXPECT_EQ(LowerWindows1252(0xD7), 0xD7); // multiplication sign
    EXPECT_EQ(LowerWindows1252(0xDF), 0xDF); // sharp s
}
