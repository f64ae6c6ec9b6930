#include "DatabaseFixture.h"

#include <QDir>
#include <QFile>

using LocatiesTest = DatabaseTest;

namespace {

const Rijen kGeenRijen;

std::string Id(int id)
{
    return std::to_string(id);
}

} // namespace

TEST_F(LocatiesTest, FindsALocationByNameWithoutRegardToCase)
{
    OpenVoorbeeld();
    EXPECT_EQ(db.GetLocatie_ID("Plas-04"), 4);
    EXPECT_EQ(db.GetLocatie_ID("PLAS-04"), 4);
    EXPECT_EQ(db.GetLocatie_ID("Plas-99"), kNietBekend);
}

TEST_F(LocatiesTest, LooksUpNamesWithRegardToAccents)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Locatie SET omschrijving='Plás-04' WHERE Locatie_ID=4"});
    db.OpenDB(bestand, false);
    EXPECT_EQ(db.GetLocatie_ID("Plas-04"), kNietBekend);
    EXPECT_EQ(db.GetLocatie_ID(QStringLiteral("plás-04")), 4);
}

TEST_F(LocatiesTest, GivesMinus999ForAnIdWhenTheStatementFails)
{
    OpenVoorbeeld();
    EXPECT_EQ(db.GetLocatie_ID("een\"quote"), kNietBekend);
}

TEST_F(LocatiesTest, GivesTheQualityMarkOfALocation)
{
    OpenVoorbeeld();
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-04"), 2);
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-99"), kNietBekend);
}

TEST_F(LocatiesTest, GetXYCutsCoordinatesOffToWholeMetres)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Locatie SET x=1234.9, y=-1234.9 WHERE Locatie_ID=4"});
    db.OpenDB(bestand, false);
    int x = 0, y = 0, kenmerk = 0;
    db.GetXY("Plas-04", x, y, kenmerk);
    EXPECT_EQ(x, 1234);
    EXPECT_EQ(y, -1234);
    EXPECT_EQ(kenmerk, 2);
}

TEST_F(LocatiesTest, GetXYRaises4ForAnUnknownName)
{
    OpenVoorbeeld();
    int x = 0, y = 0, kenmerk = 0;
    QString omschrijving;
    EXPECT_EQ(FoutVan([&] { db.GetXY("Plas-99", x, y, kenmerk); }, &omschrijving), 4);
    EXPECT_TRUE(omschrijving.contains("Plas-99"));
    EXPECT_TRUE(omschrijving.contains("boezem.mdb"));
}

TEST_F(LocatiesTest, GetXYOfANameWithAnApostropheFailsInTheEngine)
{
    // The name goes in unescaped: kept.
    OpenVoorbeeld();
    int x = 0, y = 0, kenmerk = 0;
    EXPECT_THROW(db.GetXY("Dirk's dijk", x, y, kenmerk), jet::Error);
}

TEST_F(LocatiesTest, GetXYDoesNothingWithoutADatabase)
{
    int x = 7, y = 8, kenmerk = 9;
    db.GetXY("Plas-04", x, y, kenmerk);
    EXPECT_EQ(x, 7);
    EXPECT_EQ(db.GetLocatieTabel(), nullptr);
}

TEST_F(LocatiesTest, GivesTheNormReturnPeriodOfTheSafetyClass)
{
    OpenVoorbeeld();
    EXPECT_EQ(db.GetNormFrequentie("Plas-04"), 1000); // class 5
    EXPECT_EQ(db.GetNormFrequentie("Eiland-1"), 10);  // class 1
    EXPECT_EQ(db.GetNormFrequentie("Plas-99"), 0);
    EXPECT_EQ(db.GetNormFrequentie("Dirk's dijk"), 0) << "apostrophes are doubled here";
}

TEST_F(LocatiesTest, FindsTheNormOfANameWithAnApostrophe)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Locatie SET omschrijving='Dirk''s dijk' WHERE Locatie_ID=4"});
    db.OpenDB(bestand, false);
    EXPECT_EQ(db.GetNormFrequentie("Dirk's dijk"), 1000);
}

TEST_F(LocatiesTest, ListsLevelsInOrderOfReturnPeriod)
{
    OpenVoorbeeld();
    const Rijen verwacht{
        {"10", "-0.2"}, {"30", "-0.12"}, {"100", "-0.04"}, {"300", "0.04"}, {"1000", "0.12"}};
    EXPECT_EQ(Alle(db.GetBoezempeilenVanLocatie("Plas-01")), verwacht);
    EXPECT_EQ(Alle(db.GetHerhalingstijdenBoezempeilstatistiek()),
              (Rijen{{"10"}, {"30"}, {"100"}, {"300"}, {"1000"}}));
}

TEST_F(LocatiesTest, KnowsTheWindSectors)
{
    OpenVoorbeeld();
    EXPECT_EQ(Alle(db.GetWindsectoren()).size(), 16U);
    EXPECT_EQ(db.GetRichting_ID(0), 1);
    EXPECT_EQ(db.GetRichting_ID(22.5), 2);
    EXPECT_EQ(db.GetRichting_ID(337.5), 16);
    EXPECT_EQ(db.GetRichting_ID(11), kNietBekend);
}

TEST_F(LocatiesTest, GivesLocationAndClassProperties)
{
    OpenVoorbeeld();
    const auto locatie = db.GetLocatieProperties("plas-03");
    ASSERT_TRUE(HRdb::heeftRecords(locatie));
    EXPECT_EQ(locatie->Get("LOCATIE_ID").AsInt(), 3);
    EXPECT_EQ(locatie->Get("veiligheidsklasse").AsInt(), 5);
    EXPECT_EQ(Alle(db.GetVeiligheidsklasseHerhalingstijdProperties(2)), (Rijen{{"2", "30"}}));
    EXPECT_EQ(Alle(db.GetLocatieTabel()).size(), 24U);
}

TEST_F(LocatiesTest, ReadsFetchesAsInUseOrAsDelivered)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Geometrie SET FE=1, B=2 WHERE Locatie_ID=1 AND Richting_ID=3"});
    db.OpenDB(bestand, false);
    QList<double> richtingen, bodem, strijklengten;
    db.GetFeHbodem(false, "Plas-01", richtingen, bodem, strijklengten);
    ASSERT_EQ(richtingen.size(), 16);
    EXPECT_EQ(richtingen[2], 45);
    EXPECT_EQ(strijklengten[2], 1);
    EXPECT_EQ(bodem[2], 2);
    db.GetFeHbodem(true, "Plas-01", richtingen, bodem, strijklengten);
    EXPECT_EQ(strijklengten[2], 96);
    EXPECT_EQ(bodem[2], -1.85);
}

TEST_F(LocatiesTest, FetchesComeInOrderOfBearing)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Windsectoren SET Graden=360 WHERE Richting_ID=1"});
    db.OpenDB(bestand, false);
    QList<double> richtingen, bodem, strijklengten;
    db.GetFeHbodem(false, "Plas-01", richtingen, bodem, strijklengten);
    ASSERT_EQ(richtingen.size(), 16);
    EXPECT_EQ(richtingen.first(), 22.5);
    EXPECT_EQ(richtingen.last(), 360);
    EXPECT_EQ(strijklengten.last(), 15) << "the first sector's";
}

TEST_F(LocatiesTest, AnEmptyFetchOrBedLevelIsNotKnown)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Geometrie SET FE=NULL WHERE Locatie_ID=1 AND Richting_ID=2",
                      "UPDATE Geometrie SET B=NULL WHERE Locatie_ID=1 AND Richting_ID=3"});
    db.OpenDB(bestand, false);
    QList<double> richtingen, bodem, strijklengten;
    db.GetFeHbodem(false, "Plas-01", richtingen, bodem, strijklengten);
    ASSERT_EQ(strijklengten.size(), 16);
    EXPECT_EQ(strijklengten[1], kNietBekend);
    EXPECT_EQ(bodem[2], kNietBekend);
}

TEST_F(LocatiesTest, AnUnknownLocationHasSixteenSectorsOfZero)
{
    OpenVoorbeeld();
    QList<double> richtingen, bodem, strijklengten;
    db.GetFeHbodem(false, "Plas-99", richtingen, bodem, strijklengten);
    ASSERT_EQ(richtingen.size(), 16);
    EXPECT_EQ(richtingen[0], 0);
    EXPECT_EQ(richtingen[15], 337.5);
    EXPECT_EQ(strijklengten, QList<double>(16, 0));
    EXPECT_EQ(bodem, QList<double>(16, 0));
}

TEST_F(LocatiesTest, LocatieHeeftStrijklengtesSaysTheOppositeOfItsName)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Geometrie SET FE=-999 WHERE Locatie_ID=2 AND Richting_ID=3"});
    db.OpenDB(bestand, false);
    EXPECT_FALSE(db.LocatieHeeftStrijklengtes(1)) << "all fetches are known";
    EXPECT_TRUE(db.LocatieHeeftStrijklengtes(2)) << "one is not";
}

// --- adding ---

TEST_F(LocatiesTest, ANewLocationIsCompleteAtOnce)
{
    OpenVoorbeeld();
    ASSERT_TRUE(db.AddLocatie(176000.5, 552000.25, "Nieuw"));
    const int id = db.GetLocatie_ID("nieuw");
    EXPECT_EQ(id, 25);
    EXPECT_EQ(Lees("SELECT x,y,omschrijving,kwaliteitskenmerk,kruinhoogte,streefpeil,dijknormaal,"
                   "ruwheidslengte,veiligheidsklasse FROM Locatie WHERE Locatie_ID=" +
                   Id(id)),
              (Rijen{{"176000.5", "552000.25", "Nieuw", "1", "1", "0.1", "0", "0.03", "3"}}));
    EXPECT_EQ(
        Lees("SELECT Herhalingstijd,Boezempeil FROM Boezempeilstatistiek WHERE Locatie_ID=" +
             Id(id) + " ORDER BY Herhalingstijd"),
        (Rijen{{"10", "0.5"}, {"30", "0.6"}, {"100", "0.7"}, {"300", "0.8"}, {"1000", "0.9"}}));
    Rijen scheefstand, geometrie;
    for (int sector = 1; sector <= 16; ++sector) {
        for (const char* snelheid : {"0", "10", "20", "30", "40"})
            scheefstand.push_back({std::to_string(sector), snelheid, "0"});
        geometrie.push_back({std::to_string(sector), "0", "0", "0", "0"});
    }
    EXPECT_EQ(
        Lees("SELECT Richting_ID,Windsnelheid,Scheefstand FROM Scheefstand WHERE Locatie_ID=" +
             Id(id) + " ORDER BY Richting_ID, Windsnelheid"),
        scheefstand);
    EXPECT_EQ(Lees("SELECT Richting_ID,B,FE,B_org,FE_org FROM Geometrie WHERE Locatie_ID=" +
                   Id(id) + " ORDER BY Richting_ID"),
              geometrie);
}

TEST_F(LocatiesTest, AddingANameThatExistsChangesNothing)
{
    OpenVoorbeeld();
    EXPECT_FALSE(db.AddLocatie(1, 2, "PLAS-01"));
    EXPECT_EQ(Alle(db.GetLocatieTabel()).size(), 24U);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Scheefstand"), (Rijen{{"1920"}}));
}

TEST_F(LocatiesTest, AnApostropheOfANewNameIsStoredTwice)
{
    // Inside double quotes the doubled apostrophe is two: so it has always been stored.
    OpenVoorbeeld();
    ASSERT_TRUE(db.AddLocatie(1, 2, "Dirk's dijk"));
    EXPECT_EQ(db.GetLocatie_ID("Dirk's dijk"), kNietBekend);
    EXPECT_EQ(db.GetLocatie_ID("Dirk''s dijk"), 25);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Geometrie WHERE Locatie_ID=25"), (Rijen{{"16"}}));
    EXPECT_TRUE(db.AddLocatie(1, 2, "Dirk's dijk"))
        << "the test before the insert looks for the undoubled name";
}

TEST_F(LocatiesTest, ANewLocationSurvivesOnDisk)
{
    OpenVoorbeeld();
    db.AddLocatie(1, 2, "Nieuw");
    db.CloseDB();
    EXPECT_EQ(Lees(db.fileName(), "SELECT COUNT(*) FROM Scheefstand WHERE Locatie_ID=25"),
              (Rijen{{"80"}}));
    ExpectSound(db.fileName());
}

// --- deleting ---

TEST_F(LocatiesTest, DeletingRemovesAllThatHangsFromALocation)
{
    OpenVoorbeeld();
    MaakMap(Pad("boezem/Plas-04/Berekeningen/een"));
    QFile bestand(Pad("boezem/Plas-04/Berekeningen/een/invoer.txt"));
    ASSERT_TRUE(bestand.open(QIODevice::WriteOnly));
    bestand.close();
    bestand.setPermissions(QFile::ReadOwner);

    EXPECT_TRUE(db.DeleteLocatie("Plas-04"));

    for (const char* tabel :
         {"Locatie", "Boezempeilstatistiek", "Geometrie", "Locatie_Profiel", "Scheefstand"})
        EXPECT_EQ(Lees(std::string("SELECT COUNT(*) FROM ") + tabel + " WHERE Locatie_ID=4"),
                  (Rijen{{"0"}}))
            << tabel;
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Dijkring WHERE Locatie='Plas-04'"), (Rijen{{"0"}}));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Dijkring"), (Rijen{{"6"}}));
    EXPECT_FALSE(QDir(Pad("boezem/Plas-04")).exists());
}

TEST_F(LocatiesTest, DeletingAnUnknownLocationIsFalse)
{
    OpenVoorbeeld();
    EXPECT_FALSE(db.DeleteLocatie("Plas-99"));
    EXPECT_EQ(Alle(db.GetLocatieTabel()).size(), 24U);
}

TEST_F(LocatiesTest, DeletingLeavesResultsUnlessACalculationBearsTheLocationsName)
{
    OpenVoorbeeld();
    const int ontwerp = db.AddBerekening("ontwerp", 1, "OVERLOOP", -999);
    const int plas = db.AddBerekening("Plas-04", 1, "OVERLOOP", -999);
    db.AddNewResultaatRecord(ontwerp, "Plas-04", 10);
    db.AddNewResultaatRecord(plas, "Plas-04", 10);
    db.DeleteLocatie("Plas-04");
    EXPECT_EQ(Lees("SELECT Berekening_ID FROM Resultaat"), (Rijen{{Id(ontwerp)}}))
        << "left behind, out of sight of the queries that join locations";
    EXPECT_EQ(Alle(db.GetBerekeningen()), kGeenRijen);
    EXPECT_FALSE(db.BerekeningExists("Plas-04"));
}

TEST_F(LocatiesTest, DeletingRemovesTheResultsOfEveryCalculationWithTheLocationsName)
{
    OpenVoorbeeld();
    for (const int profiel : {1, 2, 3})
        db.AddNewResultaatRecord(db.AddBerekening("Plas-04", profiel, "OVERLOOP", -999), "Plas-04",
                                 10);
    EXPECT_TRUE(db.DeleteLocatie("Plas-04"));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"0"}}));
    EXPECT_FALSE(db.BerekeningExists("Plas-04"));
}

TEST_F(LocatiesTest, DeletesALocationWithAnApostropheFromItsRings)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Locatie SET omschrijving='Dirk''s dijk' WHERE Locatie_ID=4",
                      "UPDATE Dijkring SET Locatie='Dirk''s dijk' WHERE Locatie='Plas-04'"});
    db.OpenDB(bestand, false);
    MaakMap(Pad("boezem/Dirk's dijk/Berekeningen"));
    EXPECT_TRUE(db.LocatieInDijkring("Dirk's dijk"));
    EXPECT_TRUE(db.DeleteLocatie("Dirk's dijk"));
    EXPECT_FALSE(db.LocatieInDijkring("Dirk's dijk"));
    EXPECT_FALSE(QDir(Pad("boezem/Dirk's dijk")).exists());
    EXPECT_EQ(Alle(db.GetLocatieTabel()).size(), 23U);
}

TEST_F(LocatiesTest, DeletingALocationWithoutANameLeavesTheWorkFolder)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Locatie SET omschrijving='' WHERE Locatie_ID=4",
                      "UPDATE Locatie SET omschrijving='..' WHERE Locatie_ID=5"});
    db.OpenDB(bestand, false);
    MaakMap(Pad("boezem/Plas-01/Berekeningen"));
    EXPECT_TRUE(db.DeleteLocatie(""));
    EXPECT_TRUE(db.DeleteLocatie(".."));
    EXPECT_TRUE(QDir(Pad("boezem/Plas-01/Berekeningen")).exists());
    EXPECT_TRUE(QFile::exists(bestand));
}

TEST_F(LocatiesTest, AFailedDeleteRaises1520AndLeavesEverything)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"DROP TABLE Dijkring"}); // the fifth statement fails
    db.OpenDB(bestand, false);
    MaakMap(Pad("boezem/Plas-04"));
    EXPECT_EQ(FoutVan([&] { db.DeleteLocatie("Plas-04"); }), 1520);
    EXPECT_EQ(db.GetLocatie_ID("Plas-04"), 4);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Scheefstand WHERE Locatie_ID=4"), (Rijen{{"80"}}));
    EXPECT_TRUE(QDir(Pad("boezem/Plas-04")).exists());
}

// --- changing ---

TEST_F(LocatiesTest, ChangesNormalAndTargetLevel)
{
    OpenVoorbeeld();
    db.UpdateDijknormaal("Plas-04", 12.25);
    db.UpdateStreefpeil("Plas-04", -0.75);
    EXPECT_EQ(Lees("SELECT dijknormaal, streefpeil FROM Locatie WHERE Locatie_ID=4"),
              (Rijen{{"12.25", "-0.75"}}));
}

TEST_F(LocatiesTest, ReplacesTheLevelsOfALocation)
{
    OpenVoorbeeld();
    db.UpdateBoezempeilstatistiek("Plas-01", {50, 10}, {0.5, 0.25});
    EXPECT_EQ(Alle(db.GetBoezempeilenVanLocatie("Plas-01")),
              (Rijen{{"10", "0.25"}, {"50", "0.5"}}));
    EXPECT_EQ(db.GetKwaliteitskenmerk("Plas-01"), 0);
    EXPECT_EQ(Alle(db.GetBoezempeilenVanLocatie("Plas-02")).size(), 5U);
}

TEST_F(LocatiesTest, ChangesFetchesAndBedLevelsBySector)
{
    OpenVoorbeeld();
    db.UpdateFe("Plas-01", {0, 22.5}, {111, 222});
    db.UpdateFeHbodem("Plas-01", {45}, {-3.5}, {333});
    EXPECT_EQ(
        Lees("SELECT B, FE, B_org, FE_org FROM Geometrie WHERE Locatie_ID=1 AND Richting_ID<4 "
             "ORDER BY Richting_ID"),
        (Rijen{{"-1.81", "111", "-1.81", "15"},
               {"-1.81", "222", "-1.81", "19"},
               {"-3.5", "333", "-1.85", "96"}}));
}

TEST_F(LocatiesTest, ABearingThatIsNoSectorsChangesNothing)
{
    OpenVoorbeeld();
    const auto voor = Lees("SELECT * FROM Geometrie");
    db.UpdateFe("Plas-01", {11}, {1});
    db.UpdateFeHbodem("Plas-01", {11}, {1}, {1});
    EXPECT_EQ(Lees("SELECT * FROM Geometrie"), voor);
}

TEST_F(LocatiesTest, ACoordinateBeyondAWholeNumberIsToldAsTooLarge)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"UPDATE Locatie SET x=1E12 WHERE Locatie_ID=4"});
    db.OpenDB(bestand, false);
    int x = 0, y = 0, kenmerk = 0;
    EXPECT_THROW(db.GetXY("Plas-04", x, y, kenmerk), Fout);
}

TEST_F(LocatiesTest, UpdateFeOfAnUnknownNameChangesNothing)
{
    OpenVoorbeeld();
    const auto voor = Lees("SELECT * FROM Geometrie");
    db.UpdateFe("Plas-99", {0}, {1});
    EXPECT_EQ(Lees("SELECT * FROM Geometrie"), voor);
}
