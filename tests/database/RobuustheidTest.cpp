#include "DatabaseFixture.h"

#include "Unprivileged.h"
#include "frame/Globals.h"
#include "frame/QLMIniFile.h"
#include "profiles/HRProfiel.h"

#include <QDir>
#include <QFile>

#include <filesystem>

// What users bring along: names and paths with odd characters, files and folders
// that cannot be written.

class RobuustheidTest : public DatabaseTest {
protected:
    /// Only those who own the file or folder may change it.
    static void SluitAf(const QString& pad)
    {
        namespace fs = std::filesystem;
        fs::permissions(pad.toStdString(), fs::perms::group_write | fs::perms::others_write,
                        fs::perm_options::remove);
    }
    QByteArray Inhoud(const QString& bestand) const
    {
        QFile file(bestand);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
};

// --- names ---

TEST_F(RobuustheidTest, ANameIsStoredFoundAndDeletedAsItIs)
{
    OpenVoorbeeld();
    for (const char* tekst : {"100% [x]", "a_b", "a]b", "[a", "# & ~ {}", "Été “ß”", "Ĳsselmeer",
                              "met  twee blanco's", "-- ; DROP TABLE Locatie"}) {
        const QString naam = QString::fromUtf8(tekst);
        SCOPED_TRACE(tekst);
        const QString opgeslagen = QString(naam).replace("'", "''");
        ASSERT_TRUE(db.AddLocatie(1, 2, naam));
        const int id = db.GetLocatie_ID(opgeslagen);
        EXPECT_GT(id, 24);
        db.UpdateStreefpeil(opgeslagen, -1.5);
        EXPECT_EQ(Lees("SELECT omschrijving FROM Locatie WHERE streefpeil=-1.5"),
                  (Rijen{{opgeslagen.toStdString()}}));
        EXPECT_EQ(db.GetNormFrequentie(opgeslagen), 100);
        EXPECT_TRUE(db.DeleteLocatie(opgeslagen));
        EXPECT_EQ(db.GetLocatie_ID(opgeslagen), kNietBekend);
        EXPECT_EQ(Alle(db.GetLocatieTabel()).size(), 24U);
    }
}

TEST_F(RobuustheidTest, NoCharacterOfANameStandsForAnother)
{
    OpenVoorbeeld();
    for (const char* naam : {"abc", "a_c", "a%c", "a#c", "a[b]c"})
        ASSERT_TRUE(db.AddLocatie(1, 2, naam)) << naam;
    EXPECT_TRUE(db.DeleteLocatie("a_c"));
    EXPECT_TRUE(db.DeleteLocatie("a%c"));
    EXPECT_TRUE(db.DeleteLocatie("a[b]c"));
    EXPECT_NE(db.GetLocatie_ID("abc"), kNietBekend);
    EXPECT_NE(db.GetLocatie_ID("a#c"), kNietBekend);
}

TEST_F(RobuustheidTest, ANameThatIsTooLongIsToldAndNothingIsAdded)
{
    OpenVoorbeeld();
    EXPECT_THROW(db.AddLocatie(1, 2, QString(300, 'x')), jet::Error);
    QString omschrijving;
    EXPECT_EQ(
        FoutVan([&] { db.AddBerekening(QString(300, 'x'), 0, "OVERLOOP", -999); }, &omschrijving),
        1509);
    EXPECT_TRUE(omschrijving.contains("te lang")) << omschrijving.toStdString();
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Berekening"), (Rijen{{"0"}}));
    EXPECT_EQ(Alle(db.GetLocatieTabel()).size(), 24U);
}

TEST_F(RobuustheidTest, AProfileNameCanHoldWhatALocationsNameCan)
{
    OpenVoorbeeld();
    for (const char* tekst : {"Dirk's dijk", "100% [x]", "a]b", "Été “ß”"}) {
        SCOPED_TRACE(tekst);
        HRProfiel profiel;
        profiel.setNaam(QString::fromUtf8(tekst));
        profiel.AddXYR(0, 1, 1, false);
        const int id = db.UpdateProfiel(profiel);
        EXPECT_EQ(db.GetProfiel_ID(profiel.Naam()), id);
        db.AddProfiel2Location(4, id);
        EXPECT_TRUE(db.ProfielUsed(profiel.Naam()));
        db.DeleteProfiel(profiel.Naam());
        EXPECT_EQ(Alle(db.GetProfielNamen()).size(), 8U);
    }
}

TEST_F(RobuustheidTest, NoCalculationsChosenGiveNoRows)
{
    OpenVoorbeeld();
    db.AddNewResultaatRecord(db.AddBerekening("een", 1, "OVERLOOP", -999), "Plas-01", 10);
    EXPECT_TRUE(Alle(db.GetHBNVanHerhalingstijd({}, 10)).empty());
    EXPECT_TRUE(Alle(db.GetHerhalingstijdenBerekening({})).empty());
    EXPECT_TRUE(Alle(db.GetVerschilHBN({}, {1}, kNietBekend)).empty());
    EXPECT_TRUE(db.ControleerUniekeLocatiesBijBerekening({}));
    double min = 3, max = 4;
    db.GetMinMaxVerschil({1}, {}, min, max);
    db.GetMinMaxAandelen({}, min, max);
    EXPECT_EQ(min, 3);
    EXPECT_EQ(max, 4);
}

// --- paths ---

TEST_F(RobuustheidTest, AFileInAnyFolderIsUpgradedAndWorkedIn)
{
    VoorbeeldDatabase("Statistieken.mdb");
    gIniFile().SaveString("ALGEMEEN", "Statistieken.mdb", ".\\Statistieken.mdb");
    for (const char* naam :
         {"Été & ‘map’ 漢字", "map [1]", "haak ] map", "Dirk's map", "a.b c", "100% & #1"}) {
        SCOPED_TRACE(naam);
        MaakMap(Pad(naam));
        const QString bestand = OudeDatabase(std::string(naam) + "/boezem 1.mdb");
        ASSERT_EQ(db.OpenDB(bestand, false, true), OpenResult::Accepted)
            << db.OpenErrDescription().toStdString();
        EXPECT_EQ(db.WerkMap(), Pad(std::string(naam) + "/boezem 1"));
        EXPECT_TRUE(QDir(db.WerkMap()).exists());
        EXPECT_EQ(Lees("SELECT [Momentane kans] FROM [Kanswindrichting zomer] WHERE Richting_ID=1"),
                  (Rijen{{"0.07"}}));
        ASSERT_TRUE(db.AddLocatie(1, 2, "Nieuw"));
        db.CloseDB();
        ExpectSound(bestand);
    }
}

// --- rights ---

TEST_F(RobuustheidTest, AFileThatCannotBeWrittenIsOnlyRead)
{
    if (!Unprivileged::Works())
        GTEST_SKIP() << "needs an administrator who can act as somebody else";
    const QString bestand = VoorbeeldDatabase();
    const QByteArray voor = Inhoud(bestand);
    SluitAf(bestand);
    const Unprivileged niemand;
    EXPECT_EQ(db.OpenDB(bestand, false, false), OpenResult::CouldNotOpen);
    EXPECT_TRUE(db.OpenErrDescription().contains("boezem.mdb"))
        << db.OpenErrDescription().toStdString();
    ASSERT_EQ(db.OpenDB(bestand, true, false), OpenResult::Accepted)
        << db.OpenErrDescription().toStdString();
    EXPECT_EQ(db.GetLocatie_ID("Plas-04"), 4);
    EXPECT_EQ(FoutVan([&] { db.UpdateStreefpeil("Plas-04", 1); }), 1505);
    EXPECT_EQ(db.GetLocatie_ID("Plas-04"), 4) << "reading goes on";
    EXPECT_EQ(Inhoud(bestand), voor);
}

TEST_F(RobuustheidTest, InAFolderThatCannotBeWrittenAChangeIsToldAndReadingGoesOn)
{
    if (!Unprivileged::Works())
        GTEST_SKIP() << "needs an administrator who can act as somebody else";
    namespace fs = std::filesystem;
    MaakMap(Pad("dicht"));
    const QString bestand = VoorbeeldDatabase("dicht/boezem.mdb");
    fs::permissions(bestand.toStdString(), fs::perms::all);
    SluitAf(Pad("dicht"));
    const QByteArray voor = Inhoud(bestand);
    const Unprivileged niemand;
    EXPECT_EQ(db.OpenDB(bestand, false, true), OpenResult::CouldNotOpen) << "no work folder";
    EXPECT_TRUE(db.OpenErrDescription().contains("map kan niet worden gemaakt"))
        << db.OpenErrDescription().toStdString();

    ASSERT_EQ(db.OpenDB(bestand, false, false), OpenResult::Accepted);
    QString omschrijving;
    EXPECT_EQ(FoutVan([&] { db.UpdateStreefpeil("Plas-04", 1); }, &omschrijving), 1505);
    EXPECT_TRUE(omschrijving.contains("herstelbestand")) << omschrijving.toStdString();
    EXPECT_EQ(db.GetLocatie_ID("Plas-04"), 4);
    EXPECT_ANY_THROW(db.AddLocatie(1, 2, "Nieuw"));
    EXPECT_EQ(Alle(db.GetLocatieTabel()).size(), 24U);
    db.CloseDB();
    EXPECT_EQ(Inhoud(bestand), voor);
}

TEST_F(RobuustheidTest, AFileInThePlaceOfTheWorkFolderIsToldAndKept)
{
    const QString bestand = VoorbeeldDatabase();
    QFile inDeWeg(Pad("boezem"));
    ASSERT_TRUE(inDeWeg.open(QIODevice::WriteOnly));
    inDeWeg.close();
    EXPECT_EQ(db.OpenDB(bestand, false, true), OpenResult::CouldNotOpen);
    EXPECT_TRUE(db.OpenErrDescription().contains(Pad("boezem")))
        << db.OpenErrDescription().toStdString();
    EXPECT_FALSE(db.IsOpen());
    EXPECT_TRUE(QFileInfo(Pad("boezem")).isFile());
}

TEST_F(RobuustheidTest, ACopyThatCannotBeKeptIsToldAndTheOpenGoesOn)
{
    // The name of the copy is longer than a file's name can be.
    const std::string naam(240, 'b');
    const QString bestand = VoorbeeldDatabase(naam + ".mdb");
    Voeruit(bestand, {"DROP TABLE Resultaat"});
    status.text = "Gereed";
    EXPECT_EQ(db.OpenDB(bestand, false, true), OpenResult::Accepted)
        << db.OpenErrDescription().toStdString();
    EXPECT_TRUE(status.text.startsWith("Er kon geen kopie van de database worden bewaard: "))
        << status.text.toStdString();
    EXPECT_FALSE(status.text.contains('|')) << "a status bar has one line";
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"0"}}));
}
