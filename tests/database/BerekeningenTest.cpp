#include "DatabaseFixture.h"

using BerekeningenTest = DatabaseTest;

TEST_F(BerekeningenTest, RegistersACalculationAndFindsItBack)
{
    OpenVoorbeeld();
    const int id = db.AddBerekening("ontwerp", 4, "GOLFOVERSLAG(Bretschneider)", 0.5);
    EXPECT_EQ(Lees("SELECT * FROM Berekening"),
              (Rijen{{std::to_string(id), "ontwerp", "4", "GOLFOVERSLAG(Bretschneider)", "0.5"}}));
    EXPECT_TRUE(db.BerekeningExists("ONTWERP"));
    EXPECT_EQ(db.GetBerekening_ID("Ontwerp"), id);
    EXPECT_FALSE(db.BerekeningExists("anders"));
    EXPECT_EQ(db.GetBerekening_ID("anders"), kNietBekend);
}

TEST_F(BerekeningenTest, StoresApostrophesOfNamesOnce)
{
    OpenVoorbeeld();
    const int id = db.AddBerekening("Dirk's ontwerp", 4, "OVER'LOOP", -999);
    EXPECT_EQ(Lees("SELECT Naam, Faalmechanisme FROM Berekening"),
              (Rijen{{"Dirk's ontwerp", "OVER'LOOP"}}));
    EXPECT_EQ(db.GetBerekening_ID("Dirk's ontwerp"), id);
}

TEST_F(BerekeningenTest, ASecondRowWithTheSameFourFieldsRaises1509)
{
    OpenVoorbeeld();
    db.AddBerekening("ontwerp", 4, "OVERLOOP", -999);
    EXPECT_EQ(FoutVan([&] { db.AddBerekening("ONTWERP", 4, "overloop", -999); }), 1509)
        << "case does not tell them apart";
    db.AddBerekening("ontwerp", 5, "OVERLOOP", -999);
    EXPECT_EQ(Alle(db.GetBerekening_IDs("ontwerp")).size(), 2U) << "the name alone is not unique";
}

TEST_F(BerekeningenTest, ARowThatCannotBeFoundAgainRaises1510)
{
    // 1E-20 is stored, but 15 digits of it do not always lead back; a null never does.
    const QString bestand = VoorbeeldDatabase();
    {
        jet::Workspace workspace;
        const auto database = workspace.OpenDatabase(bestand.toStdString());
        database->DropTable("Berekening");
        // A file whose discharge is a single: 0.1 as a double is not found.
        database->CreateTable(
            {.name = "Berekening",
             .fields = {{.name = "Id", .type = jet::ColumnType::Long, .autoNumber = true},
                        {.name = "Naam", .type = jet::ColumnType::Text, .size = 255},
                        {.name = "ProfielId", .type = jet::ColumnType::Long},
                        {.name = "Faalmechanisme", .type = jet::ColumnType::Text, .size = 50},
                        {.name = "QOverslag", .type = jet::ColumnType::Single}}});
    }
    db.OpenDB(bestand, false);
    EXPECT_EQ(FoutVan([&] { db.AddBerekening("ontwerp", 4, "OVERLOOP", 0.1); }), 1510);
}

TEST_F(BerekeningenTest, ANewResultRowHoldsTheMissingValueThroughout)
{
    OpenVoorbeeld();
    const int id = db.AddBerekening("ontwerp", 4, "OVERLOOP", -999);
    db.AddNewResultaatRecord(id, "Plas-04", 1000);
    EXPECT_EQ(Lees("SELECT * FROM Resultaat"),
              (Rijen{{std::to_string(id), "4", "1000", "-999", "-999", "-999", "-999", "-999",
                      "-999", "-999", "-999", "-999", "-999"}}));
}

TEST_F(BerekeningenTest, ADoubleResultRowRaises1509)
{
    OpenVoorbeeld();
    db.AddNewResultaatRecord(1, "Plas-04", 1000);
    QString omschrijving;
    EXPECT_EQ(FoutVan([&] { db.AddNewResultaatRecord(1, "plas-04", 1000); }, &omschrijving), 1509);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"1"}}));
}

TEST_F(BerekeningenTest, FindsACalculationByItsProfile)
{
    OpenVoorbeeld();
    const int met = db.AddBerekening("ontwerp", 6, "GOLFOVERSLAG", 1);
    const int zonder = db.AddBerekening("ontwerp", 0, "OVERLOOP", -999);
    EXPECT_EQ(db.GetBerekening_ID_Profiel("ontwerp", "Rietoever"), met);
    EXPECT_EQ(db.GetBerekening_ID_Profiel("ontwerp", "  "), zonder);
    EXPECT_EQ(db.GetBerekening_ID_Profiel("ontwerp", "Palenrij"), kNietBekend);
}

TEST_F(BerekeningenTest, RenamesEveryRowOfAName)
{
    OpenVoorbeeld();
    db.AddBerekening("ontwerp", 6, "GOLFOVERSLAG", 1);
    db.AddBerekening("ontwerp", 0, "OVERLOOP", -999);
    db.RenameBerekening("ONTWERP", "toets");
    EXPECT_EQ(Alle(db.GetBerekening_IDs("toets")).size(), 2U);
    EXPECT_FALSE(db.BerekeningExists("ontwerp"));
    db.RenameBerekening("toets", "   ");
    EXPECT_TRUE(db.BerekeningExists("toets"));
}

TEST_F(BerekeningenTest, DeletesACalculationWithAllItsResults)
{
    OpenVoorbeeld();
    const int een = db.AddBerekening("ontwerp", 6, "GOLFOVERSLAG", 1);
    const int twee = db.AddBerekening("ontwerp", 0, "OVERLOOP", -999);
    const int ander = db.AddBerekening("toets", 0, "OVERLOOP", -999);
    for (const int id : {een, twee, ander})
        db.AddNewResultaatRecord(id, "Plas-04", 10);
    db.DeleteBerekening("ontwerp");
    EXPECT_EQ(Lees("SELECT Id FROM Berekening"), (Rijen{{std::to_string(ander)}}));
    EXPECT_EQ(Lees("SELECT Berekening_ID FROM Resultaat"), (Rijen{{std::to_string(ander)}}));
    db.DeleteBerekening("bestaat niet");
}

TEST_F(BerekeningenTest, AFailedDeleteRaises1503AndRollsBack)
{
    const QString bestand = VoorbeeldDatabase();
    db.OpenDB(bestand, false);
    const int id = db.AddBerekening("ontwerp", 6, "GOLFOVERSLAG", 1);
    db.CloseDB();
    Voeruit(bestand, {"DROP TABLE Resultaat"});
    EXPECT_EQ(FoutVan([&] { db.DeleteBerekening("ontwerp"); }), 1503);
    EXPECT_EQ(FoutVan([&] { db.DeleteBerekeningResultaten(id, 4); }), 1503);
    EXPECT_EQ(db.GetBerekening_ID("ontwerp"), id);
}

TEST_F(BerekeningenTest, DeletingTheResultsOfTheLastLocationRemovesTheCalculation)
{
    OpenVoorbeeld();
    const int id = db.AddBerekening("ontwerp", 6, "GOLFOVERSLAG", 1);
    for (const double herhalingstijd : {10.0, 100.0}) {
        db.AddNewResultaatRecord(id, "Plas-04", herhalingstijd);
        db.AddNewResultaatRecord(id, "Plas-05", herhalingstijd);
    }
    db.DeleteBerekeningResultaten(id, 4);
    EXPECT_EQ(Lees("SELECT Locatie_ID, Herhalingstijd FROM Resultaat ORDER BY Herhalingstijd"),
              (Rijen{{"5", "10"}, {"5", "100"}}));
    EXPECT_TRUE(db.BerekeningExists("ontwerp"));
    db.DeleteBerekeningResultaten(id, 5);
    EXPECT_FALSE(db.BerekeningExists("ontwerp"));
}

TEST_F(BerekeningenTest, TellsWhatACalculationIs)
{
    OpenVoorbeeld();
    const int id = db.AddBerekening("ontwerp", 6, "GOLFOVERSLAG", 0.5);
    const int weg = db.AddBerekening("oud", 77, "OVERLOOP", -999);
    EXPECT_EQ(
        Alle(db.GetBerekeningInfo(id), {"naam", "profielnaam", "faalmechanisme", "overslagdebiet"}),
        (Rijen{{"ontwerp", "Rietoever", "GOLFOVERSLAG", "0.5"}}));
    EXPECT_EQ(Alle(db.GetBerekeningInfo(weg), {"naam", "profielnaam"}), (Rijen{{"oud", "null"}}))
        << "a profile that no longer exists is an empty name";
}

TEST_F(BerekeningenTest, ListsARowPerResultRow)
{
    OpenVoorbeeld();
    const int met = db.AddBerekening("ontwerp", 6, "GOLFOVERSLAG", 0.5);
    const int zonder = db.AddBerekening("laag", 0, "OVERLOOP", -999);
    db.AddBerekening("leeg", 0, "OVERLOOP", -999);
    db.AddNewResultaatRecord(met, "Plas-04", 10);
    db.AddNewResultaatRecord(met, "Plas-04", 100);
    db.AddNewResultaatRecord(zonder, "Plas-05", 10);
    const std::string m = std::to_string(met);
    const std::string z = std::to_string(zonder);
    EXPECT_THAT(Alle(db.GetBerekeningen(), {"locatieomschrijving", "berekeningnaam", "profielnaam",
                                            "berekeningid", "locatieid"}),
                testing::UnorderedElementsAre(
                    std::vector<std::string>{"Plas-04", "ontwerp", "Rietoever", m, "4"},
                    std::vector<std::string>{"Plas-04", "ontwerp", "Rietoever", m, "4"},
                    std::vector<std::string>{"Plas-05", "laag", "null", z, "5"}));
    EXPECT_THAT(Alle(db.GetBerekeningNamenFromResultaat(),
                     {"berekeningID", "naam", "faalmechanisme", "overslagdebiet", "profielnaam"}),
                testing::UnorderedElementsAre(
                    std::vector<std::string>{m, "ontwerp", "GOLFOVERSLAG", "0.5", "Rietoever"},
                    std::vector<std::string>{z, "laag", "OVERLOOP", "-999", "null"}));
    EXPECT_EQ(Alle(db.GetBerekeningNamenFromResultaatNoProfiel()).size(), 2U);
}

TEST_F(BerekeningenTest, WithoutProfilesTheSameNameIsListedOnce)
{
    OpenVoorbeeld();
    db.AddNewResultaatRecord(db.AddBerekening("ontwerp", 1, "GOLFOVERSLAG", 0.5), "Plas-01", 10);
    db.AddNewResultaatRecord(db.AddBerekening("ontwerp", 2, "GOLFOVERSLAG", 0.5), "Plas-02", 10);
    EXPECT_EQ(Alle(db.GetBerekeningNamenFromResultaatNoProfiel()),
              (Rijen{{"ontwerp", "GOLFOVERSLAG", "0.5"}}));
    EXPECT_EQ(Alle(db.GetBerekeningNamenFromResultaat()).size(), 2U);
}

TEST_F(BerekeningenTest, TellsWhetherCalculationsShareALocationAndPeriod)
{
    OpenVoorbeeld();
    const int een = db.AddBerekening("een", 1, "OVERLOOP", -999);
    const int twee = db.AddBerekening("twee", 1, "OVERLOOP", -999);
    db.AddNewResultaatRecord(een, "Plas-01", 10);
    db.AddNewResultaatRecord(een, "Plas-02", 10);
    db.AddNewResultaatRecord(twee, "Plas-02", 100);
    EXPECT_TRUE(db.ControleerUniekeLocatiesBijBerekening({een, twee}));
    db.AddNewResultaatRecord(twee, "Plas-01", 10);
    EXPECT_FALSE(db.ControleerUniekeLocatiesBijBerekening({een, twee}));
    EXPECT_TRUE(db.ControleerUniekeLocatiesBijBerekening({twee}));
}

TEST_F(BerekeningenTest, IdsAbove32767Work)
{
    const QString bestand = VoorbeeldDatabase();
    Voeruit(bestand, {"INSERT INTO Berekening (Id,Naam,ProfielId,Faalmechanisme,QOverslag) VALUES "
                      "(70000,'hoog',0,'OVERLOOP',-999)"});
    db.OpenDB(bestand, false);
    EXPECT_EQ(db.GetBerekening_ID("hoog"), 70000);
    const int id = db.AddBerekening("hoger", 0, "OVERLOOP", -999);
    EXPECT_EQ(id, 70001);
    db.AddNewResultaatRecord(id, "Plas-01", 10);
    EXPECT_EQ(Lees("SELECT Berekening_ID FROM Resultaat"), (Rijen{{"70001"}}));
}
