#include "frame/Texts.h"

#include "FrameTestTools.h"

namespace {

class TextsTest : public FrameTest {};

QString Filled(QString text, const QStringList& arguments)
{
    FillPlaceholders(text, arguments);
    return text;
}

} // namespace

TEST_F(TextsTest, AreLookedUpByKindAndFourDigits)
{
    WriteProgramIni("[Messages]\r\nmsg.0007=bericht\r\nmsg.12345=lang\r\n[Fouten]\r\n"
                    "fout.0007=fout\r\n[Questions]\r\nqst.0007=vraag\r\n"
                    "[StatusBarTeksten]\r\nsbt.0007=status\r\n");
    EXPECT_EQ(MessageText(7), "bericht");
    EXPECT_EQ(ShowMessageText(7), "bericht");
    EXPECT_EQ(MessageText(12345), "lang");
    EXPECT_EQ(FoutText(7), "fout");
    EXPECT_EQ(QuestionText(7), "vraag");
    EXPECT_EQ(StatusBarTekst(7), "status");
}

// Meant: ShowMessage, alone of the two, speaks of a "fout".
TEST_F(TextsTest, FallBackToATextWithTheNumber)
{
    EXPECT_EQ(MessageText(12), "Onbekende message (12)");
    EXPECT_EQ(ShowMessageText(12), "Onbekende fout (12)");
    EXPECT_EQ(FoutText(12), "Onbekende fout (12)");
    EXPECT_EQ(QuestionText(12), "Onbekende question (12)");
    EXPECT_EQ(StatusBarTekst(12), "sbt.0012");
}

TEST_F(TextsTest, FollowTaalExceptForTheStatusBarThatFollowsTheLanguage)
{
    WriteProgramIni("[Algemeen]\r\nTaal=UK\r\n[Messages]\r\nmsg.0001=nl\r\n[MessagesUK]\r\n"
                    "msg.0001=uk\r\n[FoutenUK]\r\nfout.0001=fuk\r\n[QuestionsUK]\r\n"
                    "qst.0001=quk\r\n[StatusBarTeksten]\r\nsbt.0001=snl\r\n"
                    "[StatusBarTekstenUK]\r\nsbt.0001=suk\r\n");
    EXPECT_EQ(MessageText(1), "uk");
    EXPECT_EQ(FoutText(1), "fuk");
    EXPECT_EQ(QuestionText(1), "quk");
    EXPECT_EQ(StatusBarTekst(1), "snl");
    SetLanguage("UK");
    EXPECT_EQ(StatusBarTekst(1), "suk");
}

TEST_F(TextsTest, AreSeenAtOnceWhenTheFileChanges)
{
    WriteProgramIni("[Messages]\r\nmsg.0001=een\r\n");
    EXPECT_EQ(MessageText(1), "een");
    WriteProgramIni("[Messages]\r\nmsg.0001=twee\r\n");
    EXPECT_EQ(MessageText(1), "twee");
}

TEST_F(TextsTest, HaveLinesAndArguments)
{
    WriteProgramIni("[Messages]\r\nmsg.0001=Bestand %1|in %2\r\n"
                    "[StatusBarTeksten]\r\nsbt.0001=a|%1\r\n");
    EXPECT_EQ(MessageText(1, {"x", "y"}), "Bestand x\r\nin y");
    EXPECT_EQ(NumberedText(TextKind::Message, 1, {"x", "y"}, "message"), "Bestand x|in y");
    EXPECT_EQ(StatusBarTekst(1, {"x"}), "a|x") << "not decoded";
}

TEST_F(TextsTest, ButtonsHaveTheirDefaults)
{
    EXPECT_EQ(ButtonText("OK"), "OK");
    EXPECT_EQ(ButtonText("YES"), "Ja");
    EXPECT_EQ(ButtonText("NO"), "Nee");
    WriteProgramIni("[MESSAGEBUTTONS]\r\nOK=Akkoord\r\nYES=&Ja\r\n");
    EXPECT_EQ(ButtonText("OK"), "Akkoord");
    EXPECT_EQ(ButtonText("YES"), "&Ja");
}

TEST_F(TextsTest, TheBoxTitleHasNoUnderscores)
{
    SetApplicationTitle("Zand_voet_2");
    EXPECT_EQ(BoxTitle(), "Zand-voet-2");
    SetApplicationTitle("Zandvoet");
}

TEST(FillPlaceholders, FillsTheFirstOccurrenceOnly)
{
    EXPECT_EQ(Filled("%1 en %1", {"a"}), "a en %1");
    EXPECT_EQ(Filled("%2 %1", {"a", "b"}), "b a");
}

TEST(FillPlaceholders, LeavesPlaceholdersWithoutAnArgumentAndSkipsArgumentsWithoutOne)
{
    EXPECT_EQ(Filled("%1 %2", {"a"}), "a %2");
    EXPECT_EQ(Filled("%2", {"a", "b"}), "b");
    EXPECT_EQ(Filled("%1", {}), "%1");
}

TEST(FillPlaceholders, TakesTwoCharactersOnly)
{
    EXPECT_EQ(Filled("%10", {"a"}), "a0");
    const QStringList eleven{"1", "2", "3", "4", "5", "6", "7", "8", "9", "T", "E"};
    EXPECT_EQ(Filled("%2 %10", eleven), "2 10");
    // The tenth finds "%10" when no %1 has eaten it, and leaves its 0.
    EXPECT_EQ(Filled("%1 %10", eleven), "1 T0");
}

// Meant: what an argument brings in is searched by the next.
TEST(FillPlaceholders, AnArgumentMayBringAPlaceholderForTheNext)
{
    EXPECT_EQ(Filled("<%1> %2", {"100%2", "b"}), "<100b> %2");
}

TEST(Bars2Lines, DecodesBars)
{
    EXPECT_EQ(Bars2Lines("a|b"), "a\r\nb");
    EXPECT_EQ(Bars2Lines("a||b"), "a|b");
    EXPECT_EQ(Bars2Lines("a|||b"), "a|\r\nb");
    EXPECT_EQ(Bars2Lines("a|"), "a");
    EXPECT_EQ(Bars2Lines("a||"), "a|");
    EXPECT_EQ(Bars2Lines("a| |"), "a\r\n ");
    EXPECT_EQ(Bars2Lines("|a"), "\r\na");
    EXPECT_EQ(Bars2Lines("a\r\n"), "a");
    EXPECT_EQ(Bars2Lines(""), "");
}

TEST(Lines2Bars, IsTheReverse)
{
    EXPECT_EQ(Lines2Bars("a\r\nb"), "a|b");
    EXPECT_EQ(Lines2Bars("a|b"), "a||b");
    EXPECT_EQ(Lines2Bars("a\r\nb\r\n"), "a|b");
    EXPECT_EQ(Lines2Bars("a\nb"), "a\nb");
    for (const QString text : {"a\r\nb|c\r\n d", "|", "a|", "een"})
        EXPECT_EQ(Bars2Lines(Lines2Bars(text)), text);
}

TEST_F(TextsTest, DutchIsTheEmptyLanguageAndNl)
{
    EXPECT_TRUE(IsDutch());
    SetLanguage(" NL ");
    EXPECT_TRUE(IsDutch());
    SetLanguage("UK");
    EXPECT_FALSE(IsDutch());
}

TEST_F(TextsTest, RaiseFoutThrowsNumberAndTextUndecoded)
{
    WriteProgramIni("[Fouten]\r\nfout.0701=Start mislukt.|%1\r\n");
    try {
        RaiseFout(701, {"programma -x"});
        FAIL();
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Number(), -2147221504 + 701);
        EXPECT_EQ(fout.Description(), "Start mislukt.|programma -x");
        EXPECT_EQ(Description(fout), fout.Description());
        EXPECT_STREQ(fout.what(), "Start mislukt.|programma -x");
    }
}

TEST_F(TextsTest, RaiseFoutHasAFallbackText)
{
    EXPECT_EQ(RaisedNumber([] { RaiseFout(77); }), FoutCode(77));
    try {
        RaiseFout(77);
    } catch (const std::exception& error) {
        EXPECT_EQ(Description(error), "Onbekende fout (77)");
    }
}

TEST_F(TextsTest, DescriptionWorksForForeignExceptions)
{
    EXPECT_EQ(Description(std::runtime_error("caf\xC3\xA9")), QString::fromUtf16(u"caf\u00E9"));
}
