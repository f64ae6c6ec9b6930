#include "frame/QLMFile.h"
#include "frame/FileSystemObject.h"
#include "frame/Ports.h"

#include "FrameTestTools.h"

#include <QDir>

namespace {

class FakeBoxes : public Boxes {
public:
    explicit FakeBoxes(int answer) : m_answer(answer) {}
    void ShowMessage(int, const QStringList&) override {}
    void ShowFout(int, const QStringList&) override {}
    int AskQuestion(int number, const QStringList& arguments) override
    {
        m_asked = QString::number(number) + " " + arguments.join(",");
        return m_answer;
    }
    int AskQuestionButtons(int, const QString&, const QString&, const QString&,
                           const QStringList&) override
    {
        return m_answer;
    }
    void ReportError(const std::exception&) override {}
    QString m_asked;

private:
    int m_answer;
};

class QLMFileTest : public FrameTest {
protected:
    QLMFile m_file;
};

QDateTime Some()
{
    return QDateTime(QDate(2020, 5, 17), QTime(12, 30));
}

} // namespace

TEST_F(QLMFileTest, SplitsNames)
{
    EXPECT_EQ(m_file.GetFile("c:\\map\\a.txt"), "a.txt");
    EXPECT_EQ(m_file.GetFile("a.txt"), "a.txt");
    EXPECT_EQ(m_file.GetBaseFile("a.b.c"), "a.b");
    EXPECT_EQ(m_file.GetBaseFile("naam"), "");
    EXPECT_EQ(m_file.GetPath("c:\\map\\a.txt"), "c:\\map\\");
    EXPECT_EQ(m_file.GetPath("a.txt"), ".\\");
    EXPECT_EQ(m_file.GetFile(Path("a.txt")), "a.txt");
    EXPECT_EQ(m_file.GetPath(Path("a.txt")), Path(""));
}

TEST_F(QLMFileTest, WritesAndReadsTextByNumber)
{
    const int number = m_file.FOpen(Path("a.txt"), QLMFile::Output);
    ASSERT_EQ(number, 1);
    m_file.PrintLine(number, QString::fromUtf16(u"\u00E9\u00E9n"));
    m_file.Print(number, "twee");
    m_file.FClose(number);
    EXPECT_EQ(ReadBytes(Path("a.txt")), "\xE9\xE9n\r\ntwee");

    const int again = m_file.FOpen(Path("a.txt"), QLMFile::Input);
    ASSERT_EQ(again, 1) << "the number is free again";
    EXPECT_EQ(m_file.LineInput(again), QString::fromUtf16(u"\u00E9\u00E9n"));
    EXPECT_FALSE(m_file.Eof(again));
    EXPECT_EQ(m_file.LineInput(again), "twee");
    EXPECT_TRUE(m_file.Eof(again));
}

#ifndef Q_OS_WIN
TEST_F(QLMFileTest, AFullDiscIsToldWhileTheFileIsWritten)
{
    const int number = m_file.FOpen(Path("a.txt"), QLMFile::Output);
    int raised = 0;
    {
        const FullDisc disc(100);
        m_file.Print(number, QString(90, 'x'));
        raised = RaisedNumber([&] { m_file.PrintLine(number, QString(90, 'y')); });
    }
    EXPECT_EQ(raised, RuntimeFout::FileAccess);
}
#endif

TEST_F(QLMFileTest, NumbersAreTheLowestFree)
{
    EXPECT_EQ(m_file.FOpen(Path("a"), QLMFile::Output), 1);
    EXPECT_EQ(m_file.FOpen(Path("b"), QLMFile::Output), 2);
    m_file.FClose(1);
    EXPECT_EQ(m_file.FOpen(Path("c"), QLMFile::Output), 1);
    EXPECT_EQ(RaisedNumber([&] { static_cast<void>(m_file.Stream(3)); }), RuntimeFout::OutOfRange);
}

TEST_F(QLMFileTest, AppendsAndReplaces)
{
    WriteBytes(Path("a.txt"), "een");
    m_file.FClose(m_file.FOpen(Path("a.txt"), QLMFile::Append));
    const int number = m_file.FOpen(Path("a.txt"), QLMFile::Append);
    m_file.Print(number, " twee");
    m_file.FClose(number);
    EXPECT_EQ(ReadBytes(Path("a.txt")), "een twee");
    m_file.FClose(m_file.FOpen(Path("a.txt"), QLMFile::Output));
    EXPECT_EQ(ReadBytes(Path("a.txt")), "");
}

TEST_F(QLMFileTest, RandomAndBinaryKeepWhatIsThere)
{
    WriteBytes(Path("a.bin"), "0123456789");
    const int number = m_file.FOpen(Path("a.bin"), QLMFile::Random, 4);
    ASSERT_GT(number, 0);
    EXPECT_EQ(m_file.RecordLength(number), 4);
    m_file.Stream(number).seek(4);
    EXPECT_EQ(m_file.Stream(number).read(4), "4567");
    m_file.FClose(number);
    const int binary = m_file.FOpen(Path("A.BIN"), QLMFile::Binary);
    m_file.Stream(binary).seek(9);
    m_file.Stream(binary).write("x");
    m_file.FClose(binary);
    EXPECT_EQ(ReadBytes(Path("a.bin")), "012345678x");
}

TEST_F(QLMFileTest, RefusesNamesWithADotInFront)
{
    EXPECT_EQ(m_file.FOpen(Path(".a"), QLMFile::Output), -1);
}

// Meant: the whole name counts, folder included.
TEST_F(QLMFileTest, RefusesForbiddenCharactersAnywhereInEveryMode)
{
    QDir().mkdir(Path("map [1]"));
    for (int mode = QLMFile::Output; mode <= QLMFile::Binary; ++mode) {
        for (const QChar character : QString(";<=>?[]*"))
            EXPECT_EQ(m_file.FOpen(Path(QString("a") + character), mode), -1);
        EXPECT_EQ(m_file.FOpen(Path("map [1]/a.txt"), mode), -1);
    }
}

TEST_F(QLMFileTest, ReadOnlyFilesAreOpenedForReadingOnly)
{
    WriteBytes(Path("a.txt"), "x");
    SetReadOnly(Path("a.txt"), true);
    EXPECT_GT(m_file.FOpen(Path("a.txt"), QLMFile::Input), 0);
    for (const int mode : {QLMFile::Output, QLMFile::Append, QLMFile::Random, QLMFile::Binary})
        EXPECT_EQ(m_file.FOpen(Path("a.txt"), mode), -3);
    EXPECT_EQ(ReadBytes(Path("a.txt")), "x");
}

TEST_F(QLMFileTest, WhatCannotBeOpenedGivesMinusTen)
{
    EXPECT_EQ(m_file.FOpen(Path("bestaat niet.txt"), QLMFile::Input), -10);
    EXPECT_EQ(m_file.FOpen(Path("geen map/a.txt"), QLMFile::Output), -10);
    EXPECT_EQ(m_file.FOpen(Folder(), QLMFile::Output), -10);
    EXPECT_EQ(m_file.FOpen("", QLMFile::Input), -10);
    EXPECT_EQ(m_file.FOpen(Path("a.txt"), 6), -10);
}

TEST_F(QLMFileTest, AsksBeforeReplacing)
{
    WriteBytes(Path("a.txt"), "x");
    FakeBoxes no(Answer::No);
    gBoxes.Refer(no);
    EXPECT_EQ(m_file.FOpen(Path("a.txt"), QLMFile::Output, 0, true), -2);
    EXPECT_EQ(no.m_asked, "5000 " + Path("a.txt"));
    EXPECT_EQ(ReadBytes(Path("a.txt")), "x");

    FakeBoxes yes(Answer::Yes);
    gBoxes.Refer(yes);
    EXPECT_GT(m_file.FOpen(Path("a.txt"), QLMFile::Output, 0, true), 0);

    FakeBoxes unasked(Answer::No);
    gBoxes.Refer(unasked);
    EXPECT_GT(m_file.FOpen(Path("nieuw.txt"), QLMFile::Output, 0, true), 0);
    EXPECT_GT(m_file.FOpen(Path("a.txt"), QLMFile::Append, 0, true), 0);
    EXPECT_GT(m_file.FOpen(Path("a.txt"), QLMFile::Output, 0, false), 0);
    EXPECT_EQ(unasked.m_asked, "");
}

TEST_F(QLMFileTest, WithNobodyToAskAnExistingFileStays)
{
    WriteBytes(Path("a.txt"), "x");
    EXPECT_EQ(m_file.FOpen(Path("a.txt"), QLMFile::Output, 0, true), -2);
}

TEST_F(QLMFileTest, KillFileTellsWhetherTheFileIsGone)
{
    WriteBytes(Path("a.txt"), "x");
    EXPECT_TRUE(m_file.Exists(Path("A.TXT")));
    EXPECT_TRUE(m_file.KillFile(Path("A.TXT")));
    EXPECT_FALSE(m_file.Exists(Path("a.txt")));
    EXPECT_TRUE(m_file.KillFile(Path("a.txt")));
    EXPECT_FALSE(m_file.Exists(Folder())) << "a folder is no file";

    WriteBytes(Path("vast.txt"), "x");
    SetReadOnly(Path("vast.txt"), true);
    EXPECT_FALSE(m_file.KillFile(Path("vast.txt")));
    EXPECT_TRUE(m_file.Exists(Path("vast.txt")));
}

TEST_F(QLMFileTest, LastWriteTime)
{
    QFile file(Path("a.txt"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.setFileTime(Some(), QFileDevice::FileModificationTime));
    file.close();
    QDateTime time;
    EXPECT_TRUE(m_file.GetLastWriteTime(Path("a.txt"), time));
    EXPECT_EQ(time, Some());
    EXPECT_FALSE(m_file.GetLastWriteTime(Path("b.txt"), time));
    EXPECT_EQ(time.date(), QDate(1900, 1, 1));
}

TEST_F(QLMFileTest, SearchesFilesByPattern)
{
    for (const char* name : {"b.txt", "A.TXT", "c.log", "zonder"})
        WriteBytes(Path(name), "x");
    ASSERT_TRUE(m_file.FirstFile(1, Folder() + "\\*.txt"));
    EXPECT_EQ(m_file.FoundFileName(1), "A.TXT");
    ASSERT_TRUE(m_file.NextFile(1));
    EXPECT_EQ(m_file.FoundFileName(1), "b.txt");
    EXPECT_FALSE(m_file.NextFile(1));
    EXPECT_FALSE(m_file.FirstFile(1, Folder() + "\\*.bmp"));
    EXPECT_EQ(m_file.FoundFileName(1), "");
    EXPECT_TRUE(m_file.FirstFile(1, Folder() + "\\?.log"));
    EXPECT_EQ(m_file.FoundFileName(1), "c.log");
    EXPECT_TRUE(m_file.FileWithPatternExists(Folder() + "\\ZONDER"));
    EXPECT_TRUE(m_file.FileWithPatternExists(Folder() + "\\z*.*r") == false);
    EXPECT_FALSE(m_file.FileWithPatternExists(Path("geen map") + "\\*.*"));
}

TEST_F(QLMFileTest, FilesIncludeFoldersAndTheTwoDots)
{
    QDir().mkdir(Path("map"));
    WriteBytes(Path("a"), "x");
    QStringList names;
    for (bool found = m_file.FirstFile(3, Folder() + "\\*.*"); found; found = m_file.NextFile(3))
        names += m_file.FoundFileName(3);
    names.sort();
    EXPECT_EQ(names, (QStringList{".", "..", "a", "map"}));
}

TEST_F(QLMFileTest, FoldersAreFoundWithoutTheTwoDotsWhileAnotherWalkGoesOn)
{
    QDir().mkpath(Path("een/x"));
    QDir().mkpath(Path("twee/y"));
    WriteBytes(Path("bestand"), "x");
    QStringList names;
    for (bool found = m_file.FirstDir(1, Folder() + "\\*"); found; found = m_file.NextDir(1)) {
        names += m_file.FoundFileName(1);
        const QString inner = Path(m_file.FoundFileName(1)) + "\\*";
        for (bool more = m_file.FirstDir(2, inner); more; more = m_file.NextDir(2))
            names += m_file.FoundFileName(2);
    }
    EXPECT_EQ(names, (QStringList{"een", "x", "twee", "y"}));
}

TEST_F(QLMFileTest, NextDirPassesOverFilesHoweverTheSearchBegan)
{
    QDir().mkdir(Path("b"));
    QDir().mkdir(Path("d"));
    WriteBytes(Path("a"), "x");
    WriteBytes(Path("c"), "x");
    ASSERT_TRUE(m_file.FirstFile(1, Folder() + "\\?")); // the folder itself comes first
    EXPECT_TRUE(m_file.NextDir(1));
    EXPECT_EQ(m_file.FoundFileName(1), "b");
    EXPECT_TRUE(m_file.NextFile(1));
    EXPECT_EQ(m_file.FoundFileName(1), "c");
    EXPECT_TRUE(m_file.NextDir(1));
    EXPECT_EQ(m_file.FoundFileName(1), "d");
    EXPECT_FALSE(m_file.NextDir(1));
    EXPECT_EQ(m_file.FoundFileName(1), "d") << "the entry found last stays";
}

TEST_F(QLMFileTest, ThereAreTenSlots)
{
    EXPECT_TRUE(m_file.FirstFile(10, Folder() + "\\*"));
    EXPECT_EQ(RaisedNumber([&] { m_file.FirstFile(0, "*"); }), RuntimeFout::OutOfRange);
    EXPECT_EQ(RaisedNumber([&] { m_file.NextDir(11); }), RuntimeFout::OutOfRange);
    EXPECT_EQ(RaisedNumber([&] { static_cast<void>(m_file.FoundFileName(11)); }),
              RuntimeFout::OutOfRange);
}

TEST(CFileName, SplitsASpecification)
{
    const CFileName name("c:\\map.x\\kust.oud.shp");
    EXPECT_EQ(name.GetBaseName(), "kust.oud");
    EXPECT_EQ(name.GetExtension(), "shp");
    EXPECT_EQ(CFileName("kust.shp").GetBaseName(), "kust");
    EXPECT_EQ(CFileName("kust").GetExtension(), "kust");
}

TEST(CFileName, ABaseNameNeedsADot)
{
    EXPECT_EQ(RaisedNumber([] { static_cast<void>(CFileName("kust").GetBaseName()); }),
              RuntimeFout::InvalidArgument);
    EXPECT_EQ(RaisedNumber([] { static_cast<void>(CFileName("a.b\\kust").GetBaseName()); }),
              RuntimeFout::InvalidArgument);
}

TEST(CFileName, ReplacesItsParts)
{
    CFileName name("c:\\map\\kust.shp");
    name.SetBaseName("oever");
    EXPECT_EQ(name.GetFileSpec(), "c:\\map\\oever.shp");
    name.SetExtension("dbf");
    EXPECT_EQ(name.GetFileSpec(), "c:\\map\\oever.dbf");
    name.SetFileSpec("map\\zonder");
    name.SetBaseName("met");
    EXPECT_EQ(name.GetFileSpec(), "map\\met") << "without a dot nothing is appended";
}

// Meant.
TEST(CFileName, WithoutADotTheExtensionReplacesEverything)
{
    CFileName name("c:\\map\\kust");
    name.SetExtension("shp");
    EXPECT_EQ(name.GetFileSpec(), "shp");
}

TEST(CFileName, RefusesForbiddenCharactersAndNamesTheSource)
{
    const auto raised = [](auto statement) {
        try {
            statement();
        } catch (const Fout& fout) {
            EXPECT_EQ(fout.Number(), -2147220989);
            EXPECT_EQ(fout.Description(), "The FileSpec is invalid");
            return fout.Source();
        }
        return QString("niets");
    };
    for (const QChar character : QString("?\"|/\\:<>")) {
        CFileName name("a.b");
        EXPECT_EQ(raised([&] { name.SetBaseName(character); }), "C_FileName::SetBaseName");
        EXPECT_EQ(raised([&] { name.SetExtension(character); }), "C_FileName::SetExtension");
    }
    CFileName star("a.b");
    EXPECT_EQ(raised([&] { star.SetBaseName("*"); }), "niets");
    // Meant: an empty specification names SetBaseName in both.
    CFileName empty;
    EXPECT_EQ(raised([&] { empty.SetExtension("x"); }), "C_FileName::SetBaseName");
}

TEST_F(QLMFileTest, FolderOperationsDisregardCase)
{
    const FileSystemObject fso;
    fso.CreateFolder(Path("Werk/Locatie 1"));
    fso.CreateFolder(Path("werk\\locatie 2"));
    EXPECT_EQ(fso.SubFolders(Path("WERK")), (QStringList{"Locatie 1", "locatie 2"}));
    WriteBytes(Path("Werk/a.txt"), "x");
    fso.CopyFile(Path("werk\\A.txt"), Path("werk\\b.txt"));
    EXPECT_EQ(fso.Files(Path("werk")), (QStringList{"a.txt", "b.txt"}));
    fso.Move(Path("werk/a.txt"), Path("werk/A.txt"));
    EXPECT_EQ(fso.Files(Path("werk")), (QStringList{"A.txt", "b.txt"}));
    EXPECT_TRUE(fso.FileExists(fso.BuildPath(Path("werk"), "a.TXT")));
    EXPECT_EQ(RaisedNumber([&] { fso.Move(Path("werk/A.txt"), Path("werk/b.txt")); }),
              RuntimeFout::FileAccess);
    EXPECT_EQ(fso.Files(Path("geen map")), QStringList());
    EXPECT_EQ(RaisedNumber([&] { fso.Move(Path("werk/Locatie 1"), Path("werk/locatie 2")); }),
              RuntimeFout::FileAccess)
        << "an empty folder is a target, too";
    EXPECT_EQ(fso.SubFolders(Path("werk")), (QStringList{"Locatie 1", "locatie 2"}));
}

TEST_F(QLMFileTest, ACopyReplacesNeitherItselfNorAReadOnlyFile)
{
    const FileSystemObject fso;
    WriteBytes(Path("a.txt"), "een");
    WriteBytes(Path("b.txt"), "twee");
    EXPECT_EQ(RaisedNumber([&] { fso.CopyFile(Path("a.txt"), Path("A.TXT")); }),
              RuntimeFout::FileAccess);
    EXPECT_EQ(ReadBytes(Path("a.txt")), "een");
    SetReadOnly(Path("b.txt"), true);
    EXPECT_EQ(RaisedNumber([&] { fso.CopyFile(Path("a.txt"), Path("b.txt")); }),
              RuntimeFout::FileAccess);
    EXPECT_EQ(ReadBytes(Path("b.txt")), "twee");
    SetReadOnly(Path("b.txt"), false);
    fso.CopyFile(Path("a.txt"), Path("b.txt"));
    EXPECT_EQ(ReadBytes(Path("b.txt")), "een");
}

TEST_F(QLMFileTest, ReadOnlyFilesAreDeletedByForceOnly)
{
    const FileSystemObject fso;
    fso.CreateFolder(Path("werk/diep"));
    WriteBytes(Path("werk/diep/a.txt"), "x");
    SetReadOnly(Path("werk/diep/a.txt"), true);
    EXPECT_EQ(RaisedNumber([&] { fso.DeleteFile(Path("werk/diep/a.txt")); }),
              RuntimeFout::FileAccess);
    EXPECT_EQ(RaisedNumber([&] { fso.DeleteFolder(Path("werk")); }), RuntimeFout::FileAccess);
    EXPECT_TRUE(fso.FileExists(Path("werk/diep/a.txt")));
    fso.DeleteFolder(Path("WERK"), true);
    EXPECT_FALSE(fso.FolderExists(Path("werk")));
    EXPECT_EQ(RaisedNumber([&] { fso.DeleteFolder(Path("werk"), true); }), RuntimeFout::FileAccess);
}
