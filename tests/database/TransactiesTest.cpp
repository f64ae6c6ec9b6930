#include "DatabaseFixture.h"

#include "FullDisk.h"
#include "Unprivileged.h"
#include "profiles/HRProfiel.h"

#include <cmath>
#include <filesystem>
#include <functional>

// What a failed operation leaves behind: everything of it or nothing, and a
// database with which the user can go on.

using TransactiesTest = DatabaseTest;

TEST_F(TransactiesTest, AFailedChangeRaisesItsNumberAndLeavesTheTransactionOpen)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DROP TABLE Geometrie", "DROP TABLE Boezempeilstatistiek"});
    db.OpenDB(bestand, false);
    EXPECT_EQ(FoutVan([&] { db.UpdateFe("Plas-01", {0}, {1}); }), 1504);
    EXPECT_EQ(FoutVan([&] { db.UpdateFeHbodem("Plas-01", {0}, {1}, {1}); }), 1504);
    EXPECT_EQ(FoutVan([&] { db.UpdateBoezempeilstatistiek("Plas-01", {10}, {1}); }), 1506);
    db.CloseDB();
    EXPECT_EQ(db.GetLocatie_ID("Plas-01"), 1) << "the connection opens again";
}

TEST_F(TransactiesTest, AFailedTargetLevelRaises1505)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand,
            {"ALTER TABLE Locatie ADD COLUMN peil2 DOUBLE", "DROP TABLE Locatie_Profiel",
             "SELECT Locatie_ID, omschrijving INTO Locatie2 FROM Locatie", "DROP TABLE Locatie",
             "SELECT Locatie_ID, omschrijving INTO Locatie FROM Locatie2"});
    db.OpenDB(bestand, false);
    EXPECT_EQ(FoutVan([&] { db.UpdateStreefpeil("Plas-01", 1); }), 1505) << "no such field";
}

class LeftOpenTest : public DatabaseTest {
protected:
    /// The second of two equal return periods breaks a key of this file, so that
    /// the change stops half-way and its transaction stays open.
    void FailHalfWay()
    {
        const QString bestand = VoorbeeldDatabase();
        Voeruit(bestand, {"CREATE UNIQUE INDEX sleutel ON Boezempeilstatistiek (Locatie_ID, "
                          "Herhalingstijd)"});
        db.OpenDB(bestand, false);
        EXPECT_EQ(FoutVan([&] {
                      db.UpdateBoezempeilstatistiek("Plas-01", {50, 50}, {0.25, 0.5});
                  }),
                  1506);
    }
    Rijen PeilenVanPlas01()
    {
        return Lees(db.fileName(),
                    "SELECT Herhalingstijd FROM Boezempeilstatistiek WHERE Locatie_ID=1");
    }
};

TEST_F(LeftOpenTest, TheNextCommitTakesItAlong)
{
    FailHalfWay();
    db.UpdateStreefpeil("Plas-02", -0.7);
    db.CloseDB();
    EXPECT_EQ(PeilenVanPlas01(), (Rijen{{"50"}}));
    EXPECT_EQ(Lees(db.fileName(), "SELECT streefpeil FROM Locatie WHERE Locatie_ID=2"),
              (Rijen{{"-0.7"}}));
}

TEST_F(LeftOpenTest, TheEndOfTheConnectionUndoesIt)
{
    FailHalfWay();
    db.CloseDB();
    EXPECT_EQ(PeilenVanPlas01().size(), 5U);
    EXPECT_EQ(db.GetLocatie_ID("Plas-01"), 1) << "the connection opens again";
}

TEST_F(LeftOpenTest, AFailedAddIsLeftOpenToo)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DROP TABLE Geometrie"}); // the last statements fail
    db.OpenDB(bestand, false);
    EXPECT_THROW(db.AddLocatie(1, 2, "Nieuw"), jet::Error) << "the engine's own error";
    EXPECT_NE(db.GetLocatie_ID("Nieuw"), kNietBekend);
    db.CloseDB();
    EXPECT_EQ(db.GetLocatie_ID("Nieuw"), kNietBekend);
}

TEST_F(LeftOpenTest, ARollBackOfALaterChangeLeavesItToTheNextCommit)
{
    FailHalfWay();
    HRProfiel profiel;
    profiel.setNaam("Gras 1op3");
    profiel.setMemo("een \"quote\"");
    EXPECT_EQ(FoutVan([&] { db.UpdateProfiel(profiel); }), 1502);
    db.UpdateStreefpeil("Plas-02", -0.7);
    db.CloseDB();
    EXPECT_EQ(PeilenVanPlas01(), (Rijen{{"50"}}));
    EXPECT_EQ(Lees(db.fileName(), "SELECT COUNT(*) FROM Profielen"), (Rijen{{"8"}}));
}

TEST_F(LeftOpenTest, WhenTheNextCommitFailsBothAreUndoneAndTheUserGoesOn)
{
    if (!FullDisk::Works())
        GTEST_SKIP() << "a full disk cannot be staged here";
    FailHalfWay();
    {
        const FullDisk vol(512);
        EXPECT_EQ(FoutVan([&] { db.UpdateStreefpeil("Plas-02", -0.7); }), 1505);
        EXPECT_EQ(Alle(db.GetProfielNamen()).size(), 8U) << "reading goes on";
    }
    db.UpdateStreefpeil("Plas-03", -0.8);
    db.CloseDB();
    EXPECT_EQ(PeilenVanPlas01().size(), 5U);
    EXPECT_EQ(Lees(db.fileName(), "SELECT Locatie_ID FROM Locatie WHERE streefpeil IN (-0.7,-0.8)"),
              (Rijen{{"3"}}));
    ExpectSound(db.fileName());
}

// --- all or nothing ---

TEST_F(TransactiesTest, TooFewValuesChangeNothing)
{
    OpenVoorbeeld();
    const auto geometrie = Lees("SELECT * FROM Geometrie");
    QString omschrijving;
    EXPECT_EQ(FoutVan([&] { db.UpdateFe("Plas-01", {0, 22.5}, {1}); }, &omschrijving), 1504);
    EXPECT_TRUE(omschrijving.contains("2 waarden nodig, maar 1 gegeven"))
        << omschrijving.toStdString();
    EXPECT_EQ(FoutVan([&] { db.UpdateFeHbodem("Plas-01", {0}, {}, {1}); }), 1504);
    EXPECT_EQ(FoutVan([&] { db.UpdateFeHbodem("Plas-01", {0}, {1}, {}); }), 1504);
    EXPECT_EQ(FoutVan([&] { db.UpdateBoezempeilstatistiek("Plas-01", {10, 30}, {1}); }), 1506);
    EXPECT_EQ(Lees("SELECT * FROM Geometrie"), geometrie);
    EXPECT_EQ(Alle(db.GetBoezempeilenVanLocatie("Plas-01")).size(), 5U);
}

TEST_F(TransactiesTest, AValueThatIsNoNumberIsToldInWords)
{
    OpenVoorbeeld();
    QString omschrijving;
    EXPECT_EQ(FoutVan([&] { db.UpdateStreefpeil("Plas-01", std::nan("")); }, &omschrijving), 1505);
    EXPECT_TRUE(omschrijving.contains("geen getal")) << omschrijving.toStdString();
}

TEST_F(TransactiesTest, ARenameThatBreaksAKeyHalfWayRenamesNothing)
{
    OpenVoorbeeld();
    db.AddBerekening("ontwerp", 1, "OVERLOOP", -999);
    db.AddBerekening("ontwerp", 2, "OVERLOOP", -999);
    db.AddBerekening("toets", 2, "OVERLOOP", -999);
    EXPECT_THROW(db.RenameBerekening("ontwerp", "toets"), jet::Error);
    EXPECT_EQ(Alle(db.GetBerekening_IDs("ontwerp")).size(), 2U);
    EXPECT_EQ(Alle(db.GetBerekening_IDs("toets")).size(), 1U);
}

TEST_F(TransactiesTest, ACopyOfARingThatBreaksAKeyHalfWayCopiesNothing)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"ALTER TABLE Dijkring ADD COLUMN nummer LONG",
                      "UPDATE Dijkring SET nummer=1 WHERE Locatie='Kleine-5'",
                      "CREATE UNIQUE INDEX nummer ON Dijkring (nummer)"});
    db.OpenDB(bestand, false);
    EXPECT_THROW(db.CopyDijkring("Ring Vaart", "Kopie"), jet::Error) << "its last member";
    EXPECT_FALSE(db.DijkringExists("Kopie"));
    EXPECT_EQ(Alle(db.GetDijkring("Ring Vaart")).size(), 3U);
}

TEST_F(TransactiesTest, AStoreWhoseDeleteFailsTellsBoth)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DROP TABLE Profielsegmenten"});
    db.OpenDB(bestand, false);
    HRProfiel profiel;
    profiel.setNaam("Gras 1op3");
    QString omschrijving;
    EXPECT_EQ(FoutVan([&] { db.UpdateProfiel(profiel); }, &omschrijving), 1502);
    EXPECT_TRUE(omschrijving.contains("Verwijderen uit de database is mislukt"))
        << omschrijving.toStdString();
    EXPECT_EQ(db.GetProfiel_ID("Gras 1op3"), 1);
}

TEST_F(TransactiesTest, AFolderThatCannotBeRemovedKeepsTheLocation)
{
    if (!Unprivileged::Works())
        GTEST_SKIP() << "needs an administrator who can act as somebody else";
    OpenVoorbeeld();
    MaakMap(Pad("boezem/Plas-04/Berekeningen/een"));
    db.UpdateStreefpeil("Plas-01", -0.6); // the journal is there
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::all);
    std::filesystem::permissions((folder / "boezem").string(),
                                 std::filesystem::perms::owner_all |
                                     std::filesystem::perms::others_read |
                                     std::filesystem::perms::others_exec);
    {
        const Unprivileged niemand;
        EXPECT_EQ(FoutVan([&] { db.DeleteLocatie("Plas-04"); }), 1520);
    }
    EXPECT_EQ(db.GetLocatie_ID("Plas-04"), 4);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Scheefstand WHERE Locatie_ID=4"), (Rijen{{"80"}}));
}

// --- a disk that is full ---

class VolleSchijfTest : public DatabaseTest {
protected:
    Rijen Inhoud()
    {
        Rijen alles;
        for (const char* tabel : {"Locatie", "Boezempeilstatistiek", "Scheefstand", "Geometrie",
                                  "Profielen", "ProfielSegmenten", "Locatie_Profiel", "Berekening"})
            for (auto& rij : Lees(std::string("SELECT * FROM ") + tabel))
                alles.push_back(std::move(rij));
        return alles;
    }

    enum class Lezen { GaatDoor, NaSluiten };

    /// Every change fails when no file can be written beyond `bytes`, and leaves the
    /// database as it was.
    void ExpectNothingLost(long bytes, Lezen lezen)
    {
        HRProfiel profiel;
        profiel.setNaam("Gras 1op3");
        profiel.setMemo(QString(20000, 'm'));
        const std::vector<std::pair<int, std::function<void()>>> wijzigingen{
            {1505, [&] { db.UpdateStreefpeil("Plas-01", 7); }},
            {1506,
             [&] {
                 db.UpdateBoezempeilstatistiek("Plas-01", {1, 2, 3}, {1, 2, 3});
             }},
            {1504,
             [&] {
                 db.UpdateFe("Plas-01", {0, 45}, {1, 2});
             }},
            {1504,
             [&] {
                 db.UpdateFeHbodem("Plas-01", {0, 45}, {1, 2}, {3, 4});
             }},
            {1502, [&] { db.UpdateProfiel(profiel); }},
            {1503, [&] { db.DeleteProfiel("Gras 1op3"); }},
            {1509, [&] { db.AddBerekening("ontwerp", 1, "OVERLOOP", -999); }},
            {1520, [&] { db.DeleteLocatie("Plas-01"); }},
        };
        OpenVoorbeeld();
        const Rijen voor = Inhoud();
        for (const auto& [nummer, wijziging] : wijzigingen) {
            {
                const FullDisk vol(bytes);
                EXPECT_EQ(FoutVan(wijziging), nummer);
                if (lezen == Lezen::GaatDoor) {
                    EXPECT_EQ(Alle(db.GetProfielNamen()).size(), 8U) << "behind " << nummer;
                }
            }
            db.CloseDB();
            ExpectSound(db.fileName());
            EXPECT_TRUE(Inhoud() == voor) << "behind " << nummer;
        }
    }
};

TEST_F(VolleSchijfTest, WithoutRoomForTheJournalNothingIsLost)
{
    if (!FullDisk::Works())
        GTEST_SKIP() << "a full disk cannot be staged here";
    ExpectNothingLost(512, Lezen::GaatDoor);
}

TEST_F(VolleSchijfTest, WithoutRoomToWriteTheChangeNothingIsLost)
{
    if (!FullDisk::Works())
        GTEST_SKIP() << "a full disk cannot be staged here";
    // The pages before the change cannot be put back either: the next opener does that.
    ExpectNothingLost(40L * 1024, Lezen::NaSluiten);
}

TEST_F(VolleSchijfTest, TheNextChangeWorksWithoutClosing)
{
    if (!FullDisk::Works())
        GTEST_SKIP() << "a full disk cannot be staged here";
    OpenVoorbeeld();
    {
        const FullDisk vol(512);
        EXPECT_EQ(FoutVan([&] { db.UpdateFe("Plas-01", {0}, {1}); }), 1504);
        EXPECT_EQ(FoutVan([&] { db.UpdateStreefpeil("Plas-01", 7); }), 1505);
    }
    db.UpdateStreefpeil("Plas-02", -0.75);
    db.CloseDB();
    EXPECT_EQ(Lees(db.fileName(), "SELECT streefpeil FROM Locatie WHERE Locatie_ID=2"),
              (Rijen{{"-0.75"}}));
    ExpectSound(db.fileName());
}
