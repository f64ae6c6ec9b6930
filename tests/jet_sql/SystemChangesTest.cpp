#include "jet_sql/Waterstaat.h"

// The statements of the system that change rows and tables, as they stand.
namespace jet {
namespace {

using testing::Waterstaat;
using Texts = std::vector<std::string>;

TEST(SystemChangesTest, AddingAndChangingALocation)
{
    Waterstaat data;
    data.Run({"INSERT INTO Locatie ([x],[y],[omschrijving],[kwaliteitskenmerk],[kruinhoogte],"
              "[streefpeil],[dijknormaal],[ruwheidslengte],[veiligheidsklasse]) VALUES (12.5,34.25,"
              "\"Nieuw''e plek\",1,1,0.1,0,0.03,3);"});
    EXPECT_EQ(data.Rows("SELECT * FROM Locatie WHERE omschrijving=\"Nieuw''e plek\""),
              Texts{"11|12.5|34.25|Nieuw''e plek|1|1|0.1|0|0.03|3"});
    EXPECT_EQ(data.db->Execute("INSERT INTO Boezempeilstatistiek ([Locatie_ID],[Herhalingstijd],"
                               "[Boezempeil]) VALUES (11,10,0.5);"),
              1);
    EXPECT_EQ(data.db->Execute("INSERT INTO Boezempeilstatistiek ([Locatie_ID],[Herhalingstijd],"
                               "[Boezempeil] ) VALUES (11,30,0.6);"),
              1);
    EXPECT_EQ(data.db->Execute("INSERT INTO Scheefstand ([Locatie_ID],[Richting_ID],[Windsnelheid],"
                               "[Scheefstand]) VALUES (11,1,0,0);"),
              1);
    EXPECT_EQ(data.db->Execute("INSERT INTO Geometrie ([Locatie_ID],[Richting_ID],[B],[FE],[B_org],"
                               "[FE_org]) VALUES (11,1,0,0,0,0);"),
              1);
    EXPECT_EQ(data.db->Execute("UPDATE Locatie SET dijknormaal=45.5 WHERE Locatie_ID=11"), 1);
    EXPECT_EQ(data.db->Execute("UPDATE Locatie SET Streefpeil=-0.4 WHERE Locatie_ID=11;"), 1);
    EXPECT_EQ(data.db->Execute("UPDATE Geometrie SET FE=250 WHERE Locatie_ID=2 AND Richting_ID=3;"),
              1);
    EXPECT_EQ(data.db->Execute(
                  "UPDATE Geometrie SET B=-3.5,FE=251 WHERE Locatie_ID=2 AND Richting_ID=4;"),
              1);
    EXPECT_EQ(
        data.db->Execute("UPDATE Geometrie SET FE=250 WHERE Locatie_ID=-999 AND Richting_ID=3;"),
        0);
    EXPECT_EQ(data.Rows("SELECT dijknormaal, streefpeil FROM Locatie WHERE Locatie_ID=11"),
              Texts{"45.5|-0.4"});
    EXPECT_EQ(
        data.Rows(
            "SELECT FE, B FROM Geometrie WHERE Locatie_ID=2 AND Richting_ID IN (3,4) ORDER BY "
            "Richting_ID"),
        (Texts{"250|-2.3", "251|-3.5"}));
}

TEST(SystemChangesTest, DeletingALocation)
{
    Waterstaat data;
    EXPECT_EQ(data.db->Execute("DELETE * FROM Boezempeilstatistiek WHERE [Locatie_ID]=3;"), 6);
    EXPECT_EQ(data.db->Execute("DELETE * FROM Geometrie WHERE [Locatie_ID]=3;"), 16);
    EXPECT_EQ(data.db->Execute("DELETE * FROM Locatie_Profiel WHERE [Locatie_ID]=3;"), 2);
    EXPECT_EQ(data.db->Execute("DELETE * FROM Scheefstand WHERE [Locatie_ID]=3;"), 80);
    EXPECT_EQ(data.db->Execute("DELETE * FROM Dijkring WHERE [Locatie]='NoordKade';"), 1);
    EXPECT_EQ(data.db->Execute("DELETE * FROM Locatie WHERE [Locatie_ID]=3;"), 1);
    EXPECT_EQ(data.db->Execute("DELETE * FROM Locatie WHERE [Locatie_ID]=3;"), 0);
    EXPECT_TRUE(data.Rows("SELECT * FROM Scheefstand WHERE Locatie_ID=3").empty());
    EXPECT_EQ(data.Rows("SELECT * FROM Scheefstand").size(), 720U);
    EXPECT_TRUE(data.db->Check().IsSound());
}

TEST(SystemChangesTest, StoringAProfile)
{
    Waterstaat data;
    data.Run(
        {"INSERT INTO Profielen ([Naam],[Damtype],[DamHoogte],[Damwandmodule],[Voorland],"
         "[Kruinbreedte],[Taludhelling],[Constructietype],[Palenrij],[Paaldiameter],"
         "[HartafstandPalen],[Rietkraag],[Vegetatiebreedte],[AantalLevendeStengels],"
         "[SeizoensinvloedFactor],[Memo]) VALUES "
         "(\"Nieuw\",0,1.5,0,1,2.5,3,0,1,0.2,1,0,0,0,0.5,\"\");",
         "INSERT INTO ProfielSegmenten ([Profiel_ID],[X],[Y],[R],[Gras]) VALUES (5,1.5,2,1,True);",
         "INSERT INTO ProfielSegmenten ([Profiel_ID],[X],[Y],[R],[Gras]) VALUES (5,2.5,3,1,False);",
         "INSERT INTO Locatie_Profiel (Locatie_ID, Profiel_ID) VALUES (1,5)"});
    EXPECT_EQ(data.Rows("SELECT [Profiel_ID] From Profielen WHERE Naam=\"nieuw\";"), Texts{"5"});
    EXPECT_EQ(
        data.Rows("SELECT X, Y, R, Gras FROM ProfielSegmenten WHERE Profiel_ID=5 ORDER BY X;"),
        (Texts{"1.5|2|1|-1", "2.5|3|1|0"}));
    EXPECT_EQ(
        data.db->Execute("DELETE * FROM Locatie_Profiel WHERE [Locatie_ID]=1 AND [Profiel_ID]=5;"),
        1);
    EXPECT_EQ(data.db->Execute("DELETE * FROM ProfielSegmenten WHERE [Profiel_ID]=5;"), 2);
    EXPECT_EQ(data.db->Execute("DELETE * FROM Profielen WHERE [Profiel_ID]=5;"), 1);
}

TEST(SystemChangesTest, AddingACalculationWithItsEmptyResults)
{
    Waterstaat data;
    data.Run({"INSERT INTO Berekening ([Naam],[ProfielId],[Faalmechanisme],[QOverslag]) VALUES "
              "('Zwaar''e',3,'GOLFOVERSLAG',0.1);",
              "INSERT INTO Resultaat ([Berekening_ID],[Locatie_ID],[Herhalingstijd]) VALUES "
              "(5,1,100);"});
    EXPECT_EQ(data.Rows("SELECT Id FROM Berekening WHERE [Naam]='Zwaar''e' AND [ProfielId]=3 AND "
                        "[Faalmechanisme]='GOLFOVERSLAG' AND [QOverslag]=0.1;"),
              Texts{"5"});
    EXPECT_EQ(data.Rows("SELECT * FROM Resultaat WHERE [Berekening_ID]=5;"),
              Texts{"5|1|100|-999|-999|-999|-999|-999|-999|-999|-999|-999|-999"});
    data.Refusal("INSERT INTO Berekening ([Naam],[ProfielId],[Faalmechanisme],[QOverslag]) VALUES "
                 "('ZWAAR''E',3,'golfoverslag',0.1);",
                 ErrorKind::Duplicate);
    EXPECT_EQ(
        data.db->Execute("DELETE * FROM Resultaat WHERE [Berekening_ID]=5 AND [Locatie_ID]=1;"), 1);
    EXPECT_EQ(data.db->Execute("DELETE * FROM Berekening WHERE [Id]=5;"), 1);
    EXPECT_EQ(data.db->Execute("DELETE * FROM Resultaat WHERE [Berekening_ID]=1;"), 40);
}

TEST(SystemChangesTest, ClassesWithoutAFieldList)
{
    Waterstaat data;
    data.Run({"DELETE * FROM VeiligheidsklasseHerhalingstijd",
              "INSERT INTO VeiligheidsklasseHerhalingstijd VALUES (1,10);",
              "INSERT INTO VeiligheidsklasseHerhalingstijd VALUES (5,1000);"});
    EXPECT_EQ(data.Rows("VeiligheidsklasseHerhalingstijd"), (Texts{"1|10", "5|1000"}));
}

TEST(SystemChangesTest, TablesAreCopiedIntoAnotherFile)
{
    Waterstaat data;
    const std::string target = (data.folder / "boezem.mdb").string();
    data.workspace.CreateDatabase(target);
    EXPECT_EQ(data.db->Execute("SELECT * into [" + target +
                               "].[Kanswindrichting winter] FROM "
                               "[Kanswindrichting winter];"),
              16);
    EXPECT_EQ(data.db->Execute("SELECT * into [" + target +
                               "].[Windstatistiek winter] FROM "
                               "[Windstatistiek winter];"),
              16);
    // The file is free again, and holds the same fields and rows.
    const auto copy = data.workspace.OpenDatabase(target);
    for (const std::string table : {"[Kanswindrichting winter]", "[Windstatistiek winter]"}) {
        const auto there = copy->OpenRecordset("SELECT * FROM " + table, RecordsetType::Snapshot);
        Texts rows;
        for (; !there->EndOfFile(); there->MoveNext())
            rows.push_back(testing::RowText(*there));
        EXPECT_EQ(rows, data.Rows("SELECT * FROM " + table));
    }
    EXPECT_EQ(copy->GetTableDef("Windstatistiek winter").FindField("Snelheid")->type,
              ColumnType::Single);
    EXPECT_TRUE(copy->Check().IsSound());
}

TEST(SystemChangesTest, ATableIsCopiedIntoAnOpenFile)
{
    Waterstaat data;
    const auto other = data.workspace.CreateDatabase(data.folder / "ander.mdb");
    data.workspace.BeginTrans();
    data.Run({"SELECT Naam, Graden INTO [" + (data.folder / "ander.mdb").string() +
              "].[Sectoren] FROM Windsectoren WHERE Graden<90"});
    data.workspace.Rollback();
    EXPECT_FALSE(other->HasTable("Sectoren"));
    data.Run({"SELECT Naam, Graden INTO [" + (data.folder / "ander.mdb").string() +
              "].[Sectoren] FROM Windsectoren WHERE Graden<90"});
    EXPECT_EQ(other->GetTableDef("Sectoren").recordCount, 4);
}

TEST(SystemChangesTest, OldTablesAreDroppedAndMadeAgain)
{
    Waterstaat data;
    data.Run({"SELECT * INTO [bewaard] FROM [Kanswindrichting winter]",
              "DROP TABLE [Kanswindrichting winter];"});
    EXPECT_FALSE(data.db->HasTable("Kanswindrichting winter"));
    data.Refusal("SELECT * FROM [Kanswindrichting winter]", ErrorKind::UnknownTable);
    data.Run({"SELECT * into [Kanswindrichting winter] FROM [bewaard];"});
    EXPECT_EQ(data.Rows("SELECT * FROM [Kanswindrichting winter]").size(), 16U);
}

TEST(SystemChangesTest, TenColumnsComeAtOnceOnATableWithRows)
{
    testing::ScratchDatabase data;
    data.Run({"CREATE TABLE Profielen (Profiel_ID LONG, Naam TEXT(20))",
              "INSERT INTO Profielen VALUES (1,\"een\")",
              "INSERT INTO Profielen VALUES (2,\"twee\")"});
    const std::string alter =
        "ALTER TABLE Profielen ADD COLUMN [Kruinbreedte] SINGLE NOT NULL,[Taludhelling] SINGLE NOT "
        "NULL,[Constructietype] INTEGER NOT NULL,[Palenrij] INTEGER NOT NULL,[Paaldiameter] SINGLE "
        "NOT "
        "NULL,[HartafstandPalen] SINGLE NOT NULL,[Rietkraag] INTEGER NOT NULL,[Vegetatiebreedte] "
        "SINGLE "
        "NOT NULL,[AantalLevendeStengels] SINGLE NOT NULL,[SeizoensinvloedFactor] SINGLE NOT NULL;";
    data.Run({alter});
    EXPECT_EQ(data.Rows("SELECT * FROM Profielen;"),
              (Texts{"1|een|0|0|0|0|0|0|0|0|0|0", "2|twee|0|0|0|0|0|0|0|0|0|0"}));
    EXPECT_TRUE(data.db->GetTableDef("Profielen").FindField("palenrij")->required);
    EXPECT_THROW(data.db->Execute(alter), Error);
    EXPECT_EQ(data.db->GetTableDef("Profielen").fields.size(), 12U);
    data.Refusal("UPDATE Profielen SET Palenrij=Null WHERE Profiel_ID=1",
                 ErrorKind::NullNotAllowed);
}

TEST(SystemChangesTest, AColumnGetsAnotherTypeAndKeepsItsValues)
{
    testing::ScratchDatabase data;
    data.Run({"CREATE TABLE T (a LONG, b TEXT(20) DEFAULT \"x\", c LONG)",
              "INSERT INTO T VALUES (1,\"12\",3)", "INSERT INTO T VALUES (2,\"34\",4)",
              "ALTER TABLE T ALTER COLUMN b SHORT NOT NULL"});
    EXPECT_EQ(data.Rows("SELECT * FROM T WHERE b > 12"), (Texts{"2|34|4"}));
    const auto table = data.db->GetTableDef("T");
    EXPECT_EQ(table.fields[1].type, ColumnType::Integer);
    EXPECT_TRUE(table.fields[1].required);
    EXPECT_EQ(table.fields[1].defaultValue, "") << "the statement names none";
    data.Refusal("ALTER TABLE T ALTER COLUMN b BYTE PRIMARY KEY", ErrorKind::NotSupported);
    data.Run({"UPDATE T SET c=300 WHERE a=1"});
    data.Refusal("ALTER TABLE T ALTER COLUMN c BYTE", ErrorKind::Overflow);
    EXPECT_EQ(data.db->GetTableDef("T").fields[2].type, ColumnType::Long);
    EXPECT_EQ(data.Rows("SELECT * FROM T"), (Texts{"1|12|300", "2|34|4"}));
}

} // namespace
} // namespace jet
