#include "frame/Paths.h"

#include "FrameTestTools.h"

#include <QDir>

namespace {

class PathsTest : public FrameTest {
protected:
    void MakeFile(const QString& name)
    {
        QDir().mkpath(QFileInfo(Path(name)).path());
        WriteBytes(Path(name), "x");
    }
    static QString Own(QString path) { return QDir::toNativeSeparators(path); }
};

/// Another current folder for the life of the object.
class CurrentFolder {
public:
    explicit CurrentFolder(const QString& folder) : m_before(QDir::currentPath())
    {
        QDir::setCurrent(folder);
    }
    ~CurrentFolder() { QDir::setCurrent(m_before); }

private:
    QString m_before;
};

} // namespace

TEST_F(PathsTest, AbsolutePathOfNothingIsNothing)
{
    EXPECT_EQ(AbsolutePath(""), "");
    EXPECT_EQ(AbsolutePath("   "), "");
}

TEST_F(PathsTest, AbsolutePathTakesADotAgainstTheProgramsFolder)
{
    const CurrentFolder elsewhere(QDir::tempPath());
    EXPECT_EQ(AbsolutePath(".\\data\\Main.ini"), Own(Path("data/Main.ini")));
    EXPECT_EQ(AbsolutePath("./data/Main.ini"), Own(Path("data/Main.ini")));
    EXPECT_EQ(AbsolutePath("."), Own(Folder()));
    EXPECT_EQ(AbsolutePath(".\\a\\..\\b"), Own(Path("b")));
    EXPECT_EQ(AbsolutePath("..\\b"), Own(QDir::cleanPath(Folder() + "/../b")));
}

TEST_F(PathsTest, AbsolutePathWithoutADotGoesByTheCurrentFolder)
{
    QDir().mkdir(Path("nu"));
    const CurrentFolder current(Path("nu"));
    EXPECT_EQ(AbsolutePath("data\\x.ini"), Own(QDir::currentPath() + "/data/x.ini"));
    EXPECT_EQ(AbsolutePath(Path("y.ini")), Own(Path("y.ini")));
}

TEST_F(PathsTest, AbsolutePathTakesTheCaseOfWhatExists)
{
    MakeFile("Data/Instellingen.ini");
    EXPECT_EQ(AbsolutePath(".\\data\\instellingen.ini"), Own(Path("Data/Instellingen.ini")));
    EXPECT_EQ(AbsolutePath(".\\data\\nieuw.ini"), Own(Path("Data/nieuw.ini")));
}

TEST_F(PathsTest, RelativePathGivesADotAndBackslashesBelowTheProgramsFolder)
{
    EXPECT_EQ(RelativePath(Path("data/databases/a.mdb")), ".\\data\\databases\\a.mdb");
    EXPECT_EQ(RelativePath(Folder()), ".\\");
    EXPECT_EQ(RelativePath(""), "");
    EXPECT_EQ(RelativePath("  "), "");
}

TEST_F(PathsTest, RelativePathDisregardsCase)
{
    SetProgramFolder(Folder().toUpper());
    EXPECT_EQ(RelativePath(Path("Data/x.ini")), ".\\Data\\x.ini");
}

TEST_F(PathsTest, RelativePathNeverGoesUp)
{
    const QString beside = QDir::cleanPath(Folder() + "/../elders/x.mdb");
    EXPECT_EQ(RelativePath(beside), Own(beside));
    const QString above = QDir::cleanPath(Folder() + "/../x.mdb");
    EXPECT_EQ(RelativePath(above), Own(above));
}

// Meant: the bare text of the folder is compared.
TEST_F(PathsTest, RelativePathTakesAFolderWithALongerNameForAChild)
{
    EXPECT_EQ(RelativePath(Folder() + "-oud/x.mdb"), ".\\oud\\x.mdb");
}

TEST_F(PathsTest, RelativeToFolderDoesTheSameForAnyFolder)
{
    EXPECT_EQ(RelativeToFolder(Path("kaarten/a.shp"), Path("kaarten")), ".\\a.shp");
    EXPECT_EQ(RelativeToFolder(Path("kaarten/a.shp"), Path("kaarten/")), ".\\a.shp");
    EXPECT_EQ(RelativeToFolder(Path("a.shp"), Path("kaarten")), Own(Path("a.shp")));
    EXPECT_EQ(RelativeToFolder(Path("a.shp"), ""), Own(Path("a.shp")));
}

#ifndef Q_OS_WIN
TEST_F(PathsTest, BelowTheRootLiesEverything)
{
    EXPECT_EQ(RelativeToFolder("/kaarten/a.shp", "/"), ".\\kaarten\\a.shp");
}
#endif

TEST_F(PathsTest, WhatIsWrittenToAnIniIsReadBackAsItWas)
{
    MakeFile("data/databases/Mijn boezem.mdb");
    const QString path = Own(Path("data/databases/Mijn boezem.mdb"));
    EXPECT_EQ(AbsolutePath(RelativePath(path)), path);
    EXPECT_EQ(AbsolutePath(RelativePath("/elders/a b.mdb")), Own("/elders/a b.mdb"));
}

TEST_F(PathsTest, ResolvePathFindsWhatIsThereWhateverTheCase)
{
    MakeFile("Berekeningen/Locatie 1/Uitvoer.log");
    const QString expected = Own(Path("Berekeningen/Locatie 1/Uitvoer.log"));
    EXPECT_EQ(ResolvePath(Folder() + "\\berekeningen\\LOCATIE 1\\uitvoer.LOG"), expected);
    EXPECT_EQ(ResolvePath(expected), expected);
    EXPECT_EQ(ResolvePath(Folder() + "\\berekeningen\\"), Own(Path("Berekeningen/")));
}

TEST_F(PathsTest, ResolvePathKeepsNewNamesAsGiven)
{
    MakeFile("Map/a.txt");
    EXPECT_EQ(ResolvePath(Path("map/Nieuw/B.TXT")), Own(Path("Map/Nieuw/B.TXT")));
    EXPECT_EQ(ResolvePath(""), "");
}

TEST_F(PathsTest, ResolvePathPrefersTheExactName)
{
    MakeFile("a.txt");
    WriteBytes(Path("A.txt"), "y");
    if (QDir(Folder()).entryList(QDir::Files).size() == 1)
        GTEST_SKIP() << "this file system has one name for both";
    EXPECT_EQ(ResolvePath(Path("a.txt")), Path("a.txt"));
    EXPECT_EQ(ResolvePath(Path("A.txt")), Path("A.txt"));
    EXPECT_EQ(ResolvePath(Path("A.TXT")), Path("A.txt")) << "the first of several, each time";
}

TEST_F(PathsTest, ResolvePathWorksFromTheCurrentFolder)
{
    MakeFile("Map/a.txt");
    const CurrentFolder current(Folder());
    EXPECT_EQ(ResolvePath("map\\A.txt"), Own("Map/a.txt"));
}

TEST_F(PathsTest, LongNamesBlanksAndAccentsSurvive)
{
    const QString name = QString::fromUtf16(u"Map met 'blanks' \u00E9n accent/") +
                         QString(200, 'x') + "/" + QString(200, 'y') + ".ini";
    MakeFile(name);
    EXPECT_TRUE(FileExists(Path(name).toUpper().replace(Folder().toUpper(), Folder())));
    EXPECT_EQ(AbsolutePath(RelativePath(Path(name))), Own(Path(name)));
}

TEST_F(PathsTest, TellsFilesFromFolders)
{
    MakeFile("Map/a.txt");
    EXPECT_TRUE(FileExists(Path("map/A.TXT")));
    EXPECT_FALSE(FileExists(Path("map")));
    EXPECT_TRUE(FolderExists(Path("MAP")));
    EXPECT_FALSE(FolderExists(Path("map/a.txt")));
    EXPECT_FALSE(FolderExists(""));
    EXPECT_FALSE(FileExists(""));
}

TEST_F(PathsTest, AddBackslashAddsOneSeparator)
{
    EXPECT_EQ(AddBackslash(""), "");
    EXPECT_EQ(AddBackslash("map"), QString("map") + QDir::separator());
    EXPECT_EQ(AddBackslash("map\\"), "map\\");
    EXPECT_EQ(AddBackslash(Own("map/")), Own("map/"));
}

#ifndef Q_OS_WIN
TEST_F(PathsTest, OutsideWindowsUncToDriveLeavesAPathAsItStands)
{
    EXPECT_EQ(UncToDrive("\\\\server\\share\\a"), "\\\\server\\share\\a");
    EXPECT_EQ(UncToDrive("/a/b"), "/a/b");
}

TEST_F(PathsTest, ProgramsAndLibrariesAreFoundUnderThisPlatformsNames)
{
    MakeFile("Rekenprogramma.exe");
    const QString ini = Path("Rekenprogramma.exe");
    EXPECT_EQ(ProgramFile(ini), ini) << "there is no other";
    MakeFile("rekenprogramma");
    EXPECT_EQ(ProgramFile(ini), Path("rekenprogramma"));
    EXPECT_EQ(ProgramFile(Path("bestaat niet.exe")), Path("bestaat niet.exe"));

    EXPECT_EQ(LibraryFile(Path("QLMGis.dll")), Path("QLMGis.dll"));
    MakeFile("libQLMGis.so");
    EXPECT_EQ(LibraryFile(Path("QLMGis.dll")), Path("libQLMGis.so"));
    MakeFile("QLMGis.so");
    EXPECT_EQ(LibraryFile(Path("QLMGis.dll")), Path("QLMGis.so"));
}
#endif

TEST_F(PathsTest, ReadOnlyIsAMarkOfTheFile)
{
    MakeFile("a.txt");
    EXPECT_FALSE(IsReadOnly(Path("a.txt")));
    EXPECT_TRUE(SetReadOnly(Path("A.txt"), true));
    EXPECT_TRUE(IsReadOnly(Path("a.txt")));
    EXPECT_TRUE(SetReadOnly(Path("a.txt"), false));
    EXPECT_FALSE(IsReadOnly(Path("a.txt")));
    EXPECT_FALSE(IsReadOnly(Path("bestaat niet")));
}

TEST_F(PathsTest, TheTemporaryFolderEndsInASeparator)
{
    EXPECT_TRUE(GetTempFolder().endsWith(QDir::separator()));
    EXPECT_TRUE(QDir(GetTempFolder()).exists());
}

TEST_F(PathsTest, KnowsTheUser)
{
    EXPECT_FALSE(GetUserName().isEmpty());
#ifndef Q_OS_WIN
    const QByteArray before = qgetenv("USER");
    qputenv("USER", "jansen");
    EXPECT_EQ(GetUserName(), "jansen");
    before.isNull() ? qunsetenv("USER") : qputenv("USER", before);
#endif
}

TEST_F(PathsTest, IsValidNameRefusesWhatAFolderNameMayNotHold)
{
    EXPECT_TRUE(IsValidName("Dijkvak 12.a (noord)"));
    EXPECT_FALSE(IsValidName(""));
    EXPECT_FALSE(IsValidName(".verborgen"));
    for (const QChar character : QString("_\\/:*?<>|\""))
        EXPECT_FALSE(IsValidName(QString("a") + character + "b")) << character.toLatin1();
    for (const QChar character : QString("!.[]`'"))
        EXPECT_TRUE(IsValidName(QString("a") + character + "b")) << character.toLatin1();
}

TEST_F(PathsTest, IsValidDbNameRefusesWhatTheDatabaseMayNotHold)
{
    EXPECT_TRUE(IsValidDbName("ring_1 noord"));
    EXPECT_FALSE(IsValidDbName(""));
    EXPECT_FALSE(IsValidDbName(".ring"));
    for (const QChar character : QString("!.[]`'\\/:*?<>|\""))
        EXPECT_FALSE(IsValidDbName(QString("a") + character + "b")) << character.toLatin1();
}
