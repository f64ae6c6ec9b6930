#include "frame/QLMIniFile.h"

#include "Unprivileged.h"
#include "FrameTestTools.h"

#include <QDir>
#include <QStringEncoder>

#ifndef Q_OS_WIN
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

class QLMIniFileTest : public FrameTest {
protected:
    QString File() const { return Path("test.ini"); }
    void Given(const QByteArray& content) { WriteBytes(File(), content); }
    QByteArray Written() const { return ReadBytes(File()); }
};

} // namespace

TEST_F(QLMIniFileTest, StandsOnTheProgramsOwnIniWhenNew)
{
    const QLMIniFile ini;
    EXPECT_EQ(ini.file(), Folder() + "/Zandvoet.ini");
    EXPECT_EQ(ini.CompareMethod(), QLMIniFile::Comparison::IgnoreCase);
}

TEST_F(QLMIniFileTest, StandsThereAlsoInAnInstanceUnderAnotherTitle)
{
    SetApplicationTitle("unwanted instance");
    EXPECT_EQ(QLMIniFile().file(), Folder() + "/Zandvoet.ini");
    SetApplicationTitle("Zandvoet");
}

TEST_F(QLMIniFileTest, GivesTheDefaultForAMissingFileAndDoesNotMakeIt)
{
    {
        QLMIniFile ini(File());
        EXPECT_EQ(ini.GetString("a", "b", "standaard"), "standaard");
        EXPECT_TRUE(ini.Save());
    }
    EXPECT_FALSE(QFile::exists(File()));
}

TEST_F(QLMIniFileTest, DropsBlanksBehindAValueAndKeepsThoseInFront)
{
    Given("[s]\r\nachter=waarde   \r\nvoor=   waarde\r\ntab=waarde\t\r\nleeg=\r\nblank=  ");
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("s", "achter"), "waarde");
    EXPECT_EQ(ini.GetString("s", "voor"), "   waarde");
    EXPECT_EQ(ini.GetString("s", "tab"), "waarde\t");
    EXPECT_EQ(ini.GetString("s", "leeg", "standaard"), "");
    EXPECT_EQ(ini.GetString("s", "blank", "standaard"), "");
}

TEST_F(QLMIniFileTest, WantsTheEqualSignDirectlyBehindTheKeyAndTheKeyInTheFirstColumn)
{
    Given("[s]\r\nsleutel =1\r\n ander=2\r\nlang=a=b=c\r\n");
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("s", "sleutel", "-"), "-");
    EXPECT_EQ(ini.GetString("s", "sleutel ", "-"), "1");
    EXPECT_EQ(ini.GetString("s", "ander", "-"), "-");
    EXPECT_EQ(ini.GetString("s", "lang", "-"), "a=b=c");
}

TEST_F(QLMIniFileTest, ComparesNamesWithoutCaseUnlessToldOtherwise)
{
    Given("[Sectie]\r\nSleutel=1\r\n\xC9"
          "en=2\r\n");
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("SECTIE", "sleutel", "-"), "1");
    EXPECT_EQ(ini.GetString("sectie", QString::fromUtf16(u"\u00E9en"), "-"), "2");
    ini.setCompareMethod(QLMIniFile::Comparison::Exact);
    EXPECT_EQ(ini.GetString("sectie", "Sleutel", "-"), "-");
    EXPECT_EQ(ini.GetString("Sectie", "sleutel", "-"), "-");
    EXPECT_EQ(ini.GetString("Sectie", "Sleutel", "-"), "1");
}

TEST_F(QLMIniFileTest, FindsAKeyInItsOwnSectionOnly)
{
    Given("[een]\r\na=1\r\n[twee]\r\nb=2\r\n[drie]\r\na=3");
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("een", "b", "-"), "-");
    EXPECT_EQ(ini.GetString("twee", "a", "-"), "-");
    EXPECT_EQ(ini.GetString("twee", "b", "-"), "2");
    EXPECT_EQ(ini.GetString("drie", "a", "-"), "3");
}

TEST_F(QLMIniFileTest, NeverSeesASecondSectionOrKeyOfOneName)
{
    Given("[s]\r\na=1\r\na=2\r\n[t]\r\n[s]\r\nb=3\r\n");
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("s", "a"), "1");
    EXPECT_EQ(ini.GetString("s", "b", "-"), "-");
}

TEST_F(QLMIniFileTest, IgnoresWhatFollowsTheBracketOfASection)
{
    Given("[s] ; uitleg=nee\r\na=1");
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("s", "a"), "1");
}

TEST_F(QLMIniFileTest, TakesABareLineFeedForAnOrdinaryCharacter)
{
    Given("[s]\na=1\nb=2\n");
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("s", "a", "-"), "-");
    ini.SaveString("s", "c", "3");
    ini.Save();
    // The header is one long line for this reader; the new key goes under it.
    EXPECT_EQ(Written(), "[s]\na=1\nb=2\r\nc=3\n");
}

TEST_F(QLMIniFileTest, ANewFileGetsTwoLinesWithoutALineEnd)
{
    QLMIniFile ini(File());
    ini.SaveString("Sectie", "sleutel", "waarde");
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ(Written(), "[Sectie]\r\nsleutel=waarde");
}

TEST_F(QLMIniFileTest, ANewSectionIsSetApartByAnEmptyLine)
{
    Given("[a]\r\nx=1");
    QLMIniFile ini(File());
    ini.SaveString("b", "y", "2");
    ini.Save();
    EXPECT_EQ(Written(), "[a]\r\nx=1\r\n\r\n[b]\r\ny=2");
}

// Meant: the text has a line end of its own and the one put behind it.
TEST_F(QLMIniFileTest, ANewSectionBehindAFinalLineEndGetsTwoEmptyLinesInFront)
{
    Given("[a]\r\nx=1\r\n");
    QLMIniFile ini(File());
    ini.SaveString("b", "y", "2");
    ini.Save();
    EXPECT_EQ(Written(), "[a]\r\nx=1\r\n\r\n\r\n[b]\r\ny=2");
}

// Meant: the search of SaveString leaves the "=" out.
TEST_F(QLMIniFileTest, SaveStringOverwritesALongerKeyThatStandsInFront)
{
    Given("[s]\r\nLeft.0=1\r\nLeft=2");
    QLMIniFile ini(File());
    ini.SaveString("s", "Left", "9");
    EXPECT_EQ(ini.GetString("s", "Left"), "9");
    ini.Save();
    EXPECT_EQ(Written(), "[s]\r\nLeft=9\r\nLeft=2");
}

TEST_F(QLMIniFileTest, SaveStringLeavesALongerKeyThatStandsBehind)
{
    Given("[s]\r\nFREQ.1=10\r\nFREQ.10=1000");
    QLMIniFile ini(File());
    ini.SaveString("s", "FREQ.1", "20");
    ini.Save();
    EXPECT_EQ(Written(), "[s]\r\nFREQ.1=20\r\nFREQ.10=1000");
}

TEST_F(QLMIniFileTest, KeepsBlankLinesBehindAKeyThatIsAdded)
{
    Given("[s]\r\na=1\r\n\r\n\r\n[t]\r\nb=2");
    QLMIniFile ini(File());
    ini.SaveString("s", "c", "3");
    ini.Save();
    EXPECT_EQ(Written(), "[s]\r\na=1\r\nc=3\r\n\r\n\r\n[t]\r\nb=2");
}

TEST_F(QLMIniFileTest, KeepsLinesThatItDoesNotUnderstand)
{
    Given("vooraf\r\n; uitleg\r\n[s]\r\n;a=0\r\na=1\r\nzomaar iets\r\n[t]\r\n");
    QLMIniFile ini(File());
    ini.SaveString("s", "a", "2");
    ini.SaveString("s", "b", "3");
    ini.Save();
    EXPECT_EQ(Written(),
              "vooraf\r\n; uitleg\r\n[s]\r\n;a=0\r\na=2\r\nzomaar iets\r\nb=3\r\n[t]\r\n");
}

TEST_F(QLMIniFileTest, SearchesForTheKeyAsGivenAndWritesItTrimmed)
{
    QLMIniFile ini(File());
    ini.SaveString("s", "  a  ", "  1  ");
    ini.SaveString("s", "  a  ", "2"); // not found under "  a  ": added
    ini.Save();
    EXPECT_EQ(Written(), "[s]\r\na=  1  \r\na=2");
}

TEST_F(QLMIniFileTest, RemovesAKeyWithItsLine)
{
    Given("[s]\r\na.0=0\r\na=1\r\nb=2");
    QLMIniFile ini(File());
    ini.RemoveKey("s", "a");
    ini.Save();
    EXPECT_EQ(Written(), "[s]\r\na.0=0\r\nb=2");
    ini.RemoveKey("s", "b");
    ini.Save();
    EXPECT_EQ(Written(), "[s]\r\na.0=0");
}

TEST_F(QLMIniFileTest, RemovesASectionUpToTheNext)
{
    Given("[a]\r\nx=1\r\n\r\n[b]\r\ny=2\r\n\r\n[c]\r\nz=3");
    QLMIniFile ini(File());
    ini.RemoveSection("b");
    ini.Save();
    EXPECT_EQ(Written(), "[a]\r\nx=1\r\n\r\n[c]\r\nz=3");
}

TEST_F(QLMIniFileTest, RemovesTheLastSectionBehindAnEmptyLineCorrectly)
{
    Given("[a]\r\nx=1\r\n\r\n[b]\r\ny=2");
    QLMIniFile ini(File());
    ini.RemoveSection("b");
    ini.Save();
    EXPECT_EQ(Written(), "[a]\r\nx=1");
}

// Meant: without an empty line in front, two characters of the line before go.
TEST_F(QLMIniFileTest, RemovingTheLastSectionWithoutAnEmptyLineCutsTwoCharacters)
{
    Given("[a]\r\nx=1234\r\n[b]\r\ny=2");
    QLMIniFile ini(File());
    ini.RemoveSection("b");
    EXPECT_EQ(ini.GetString("a", "x"), "1234") << "a line that no CR LF ends runs to the end";
    ini.Save();
    EXPECT_EQ(Written(), "[a]\r\nx=12");
}

// Meant: there is nothing to cut the two line ends from.
TEST_F(QLMIniFileTest, SavingAfterARemovalOnAnAbsentFileLeavesAnEmptyFileAndFails)
{
    QLMIniFile ini(File());
    ini.RemoveKey("s", "a");
    EXPECT_FALSE(ini.Save());
    EXPECT_EQ(Written(), "");

    QLMIniFile again(Path("ander.ini"));
    again.RemoveSection("s");
    EXPECT_FALSE(again.Sluit());
    EXPECT_EQ(ReadBytes(Path("ander.ini")), "");
}

TEST_F(QLMIniFileTest, AFileOtherwiseUnchangedIsRewrittenAfterARemovalThatFoundNothing)
{
    Given("[a]\r\nx=1");
    QLMIniFile ini(File());
    ini.RemoveKey("a", "bestaat niet");
    QFile::remove(File());
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ(Written(), "[a]\r\nx=1");
}

TEST_F(QLMIniFileTest, SaveTwiceWritesTwice)
{
    QLMIniFile ini(File());
    ini.SaveString("s", "a", "1");
    EXPECT_TRUE(ini.Save());
    Given("door een ander");
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ(Written(), "[s]\r\na=1");
}

TEST_F(QLMIniFileTest, SluitWritesOnceAndReadsAgain)
{
    QLMIniFile ini(File());
    ini.SaveString("s", "a", "1");
    EXPECT_TRUE(ini.Sluit());
    Given("[s]\r\na=2");
    EXPECT_EQ(ini.GetString("s", "a"), "2");
    EXPECT_TRUE(ini.Sluit());
    EXPECT_EQ(Written(), "[s]\r\na=2");
}

TEST_F(QLMIniFileTest, BehindSluitNothingCountsAsChangedAnyMore)
{
    QLMIniFile ini(File());
    ini.SaveString("s", "a", "1");
    EXPECT_TRUE(ini.Sluit());
    EXPECT_EQ(ini.GetString("s", "a"), "1"); // read again
    Given("door een ander");
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ(Written(), "door een ander");
}

TEST_F(QLMIniFileTest, AChangedFileNameKeepsTheText)
{
    Given("[s]\r\na=1");
    QLMIniFile ini(File());
    ini.SaveString("s", "b", "2");
    ini.setFile(Path("nieuw.ini"));
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ(Written(), "[s]\r\na=1");
    EXPECT_EQ(ReadBytes(Path("nieuw.ini")), "[s]\r\na=1\r\nb=2");
}

TEST_F(QLMIniFileTest, TheDestructorWritesChanges)
{
    {
        QLMIniFile ini(File());
        ini.SaveString("s", "a", "1");
    }
    EXPECT_EQ(Written(), "[s]\r\na=1");
}

TEST_F(QLMIniFileTest, AnInstanceThatOnlyReadsNeverWrites)
{
    Given("[s]\r\na=1");
    {
        QLMIniFile ini(File());
        EXPECT_EQ(ini.GetString("s", "a"), "1");
        Given("door een ander");
    }
    EXPECT_EQ(Written(), "door een ander");
}

TEST_F(QLMIniFileTest, KeepsBytesThatTheCodePageLeavesUndefined)
{
    Given("[s]\r\na=\x81\x8D\x8F\x90\x9D\r\nb=1");
    QLMIniFile ini(File());
    const QString value = ini.GetString("s", "a");
    ini.SaveString("s", "b", value);
    ini.Save();
    EXPECT_EQ(Written(), "[s]\r\na=\x81\x8D\x8F\x90\x9D\r\nb=\x81\x8D\x8F\x90\x9D");
}

TEST_F(QLMIniFileTest, KeepsNulBytes)
{
    const QByteArray content("[s]\r\na=1\0"
                             "2\r\nb=3",
                             15);
    Given(content);
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("s", "a"), QString::fromLatin1(QByteArray("1\0"
                                                                      "2",
                                                                      3)));
    ini.SaveString("s", "b", "3");
    ini.Save();
    EXPECT_EQ(Written(), content);
}

TEST_F(QLMIniFileTest, AFileThatAnEditorSavedAsUnicodeIsTakenForWhatItSays)
{
    const QByteArray ours = "[s]\r\na=\xE9\xE9n \x80\r\n";
    const QString text = QString::fromUtf16(u"[s]\r\na=\u00E9\u00E9n \u20AC\r\n");
    for (const auto encoding : {QStringConverter::Utf8, QStringConverter::Utf16LE}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        Given(encoder.encode(text));
        QLMIniFile ini(File());
        EXPECT_EQ(ini.GetString("s", "a", "-"), text.mid(7, 5));
        ini.SaveString("s", "b", "1");
        EXPECT_TRUE(ini.Save());
        EXPECT_EQ(Written(), ours.chopped(2) + "\r\nb=1\r\n");
    }
}

TEST_F(QLMIniFileTest, WithoutSuchAMarkEveryByteIsACharacter)
{
    Given("[s]\r\na=caf\xC3\xA9");
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("s", "a"), QString::fromUtf16(u"caf\u00C3\u00A9"));
}

TEST_F(QLMIniFileTest, FindsItsFileWhateverTheCaseOfTheName)
{
    Given("[s]\r\na=1");
    QLMIniFile ini(Folder() + "\\TEST.INI");
    EXPECT_EQ(ini.GetString("s", "a", "-"), "1");
    ini.SaveString("s", "a", "2");
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ(Written(), "[s]\r\na=2");
    EXPECT_EQ(QDir(Folder()).entryList(QDir::Files), QStringList{"test.ini"});
}

TEST_F(QLMIniFileTest, DoesNotWriteAReadOnlyFile)
{
    Given("[s]\r\na=1");
    SetReadOnly(File(), true);
    QLMIniFile ini(File());
    ini.SaveString("s", "a", "2");
    EXPECT_FALSE(ini.Save());
    EXPECT_EQ(Written(), "[s]\r\na=1");
}

#ifdef __linux__
TEST_F(QLMIniFileTest, WritesAFileInAFolderThatTakesNoNewFiles)
{
    if (!Unprivileged::Works())
        GTEST_SKIP() << "needs a user to step down to";
    Given("[s]\r\na=1");
    QFile::setPermissions(File(), QFile::Permissions(0x6666)); // anybody may write to it
    QFile::setPermissions(Folder(), QFile::Permissions(0x5555));
    QLMIniFile ini(File());
    ini.SaveString("s", "a", "2");
    {
        const Unprivileged user;
        EXPECT_TRUE(ini.Save());
    }
    QFile::setPermissions(Folder(), QFile::Permissions(0x7700));
    EXPECT_EQ(Written(), "[s]\r\na=2");
}
#endif

TEST_F(QLMIniFileTest, FailsQuietlyWhenTheFolderHasVanished)
{
    const QString folder = Path("weg");
    QDir().mkdir(folder);
    QLMIniFile ini(folder + "/a.ini");
    ini.SaveString("s", "a", "1");
    QDir().rmdir(folder);
    EXPECT_FALSE(ini.Save());
    EXPECT_FALSE(QFile::exists(folder));
}

#ifndef Q_OS_WIN
TEST_F(QLMIniFileTest, RaisesWhenAFileThatExistsCannotBeReadAndReadsItLater)
{
    Given("[s]\r\na=1");
    QLMIniFile ini(File());
    int raised = 0;
    {
        const NoFreeFiles noRoom;
        raised = RaisedNumber([&] { static_cast<void>(ini.GetString("s", "a")); });
    }
    EXPECT_EQ(raised, RuntimeFout::FileAccess);
    EXPECT_EQ(ini.GetString("s", "a"), "1");
}

TEST_F(QLMIniFileTest, AFullDiscLeavesTheOldFile)
{
    const QByteArray old = "[s]\r\na=1";
    Given(old);
    QLMIniFile ini(File());
    ini.SaveString("s", "b", QString(100'000, 'x'));
    {
        const FullDisc disc(1000);
        EXPECT_FALSE(ini.Save());
    }
    EXPECT_EQ(Written(), old);
    EXPECT_EQ(QDir(Folder()).entryList(QDir::Files | QDir::Hidden), QStringList{"test.ini"});
    EXPECT_TRUE(ini.Save()) << "with room again";
}

TEST_F(QLMIniFileTest, AKilledProcessLeavesTheFileAsItWasBeforeOrAfterAWrite)
{
    const QByteArray filler = "\r\nvulling=" + QByteArray(200'000, 'x');
    const auto content = [&filler](char version) {
        return QByteArray("[s]\r\nversie=") + version + filler + "\r\neind=" + version;
    };
    Given(content('0'));
    for (int round = 0; round < 10; ++round) {
        const pid_t writer = fork();
        ASSERT_GE(writer, 0);
        if (writer == 0) {
            for (int n = 0;; ++n) {
                const QString version = QString::number(n % 10);
                QLMIniFile ini(File());
                ini.SaveString("s", "versie", version);
                ini.SaveString("s", "eind", version);
                ini.Save();
            }
        }
        usleep(useconds_t(3000 + 1700 * round));
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        const QByteArray found = Written();
        ASSERT_GT(found.size(), 20);
        EXPECT_TRUE(found == content(found.back())) << "half a file after round " << round;
    }
}
#endif

TEST_F(QLMIniFileTest, ReadsAFileOfFiftyMegabytes)
{
    QByteArray content = "[vooraan]\r\na=1\r\n";
    const QByteArray line = "sleutel die niemand zoekt=" + QByteArray(974, 'x') + "\r\n";
    content.reserve(51'000'000);
    while (content.size() < 50'000'000)
        content += line;
    content += "[achteraan]\r\na=2";
    Given(content);
    QLMIniFile ini(File());
    EXPECT_EQ(ini.GetString("achteraan", "a"), "2");
    ini.SaveString("vooraan", "a", "3");
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ(QFile(File()).size(), content.size());
}
