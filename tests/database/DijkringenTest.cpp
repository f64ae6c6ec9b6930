#include "DatabaseFixture.h"

using DijkringenTest = DatabaseTest;

TEST_F(DijkringenTest, ListingMakesTheTableWhenItIsMissingAndGivesNothing)
{
    const QString bestand = OudeDatabase();
    db.OpenDB(bestand, false);
    EXPECT_EQ(db.GetDijkringNamen(), nullptr);
    db.CloseDB();
    jet::Workspace workspace;
    const auto tabel = workspace.OpenDatabase(bestand.toStdString())->GetTableDef("Dijkring");
    ASSERT_EQ(tabel.fields.size(), 5U);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(tabel.fields[std::size_t(i)].type, jet::ColumnType::Memo);
    EXPECT_EQ(tabel.fields[0].name, "Naam");
    EXPECT_EQ(tabel.fields[1].name, "Locatie");
    EXPECT_EQ(tabel.fields[2].name, "Profiel");
    EXPECT_EQ(tabel.fields[3].name, "ProfielNaam");
    EXPECT_EQ(tabel.fields[4].name, "QOverslag");
    EXPECT_EQ(tabel.fields[4].type, jet::ColumnType::Single);
    EXPECT_TRUE(tabel.indexes.empty());
}

TEST_F(DijkringenTest, ListsEachRingOnce)
{
    OpenVoorbeeld();
    const auto namen = Alle(db.GetDijkringNamen());
    EXPECT_THAT(namen, testing::UnorderedElementsAre(std::vector<std::string>{"Ring Oost"},
                                                     std::vector<std::string>{"Ring Vaart"}));
}

TEST_F(DijkringenTest, DistinctNamesAreComparedWholeAndWithoutCase)
{
    const QString bestand = VoorbeeldDatabase();
    const std::string lang(300, 'x');
    Voeruit(bestand,
            {"DELETE * FROM Dijkring", "INSERT INTO Dijkring (Naam) VALUES ('" + lang + "a')",
             "INSERT INTO Dijkring (Naam) VALUES ('" + lang + "b')",
             "INSERT INTO Dijkring (Naam) VALUES ('ring')",
             "INSERT INTO Dijkring (Naam) VALUES ('RING')"});
    db.OpenDB(bestand, false);
    EXPECT_EQ(Alle(db.GetDijkringNamen()).size(), 3U);
}

TEST_F(DijkringenTest, GivesTheMembersOfARing)
{
    OpenVoorbeeld();
    const auto ring = db.GetDijkring("ring vaart");
    EXPECT_EQ(
        Alle(ring, {"Locatie", "ProfielNaam"}),
        (Rijen{{"Vaart-2", "Gras 1op3"}, {"Vaart-3", "Palenrij"}, {"Kleine-5", "Rietoever"}}));
    EXPECT_EQ(db.GetDijkring("onbekend"), nullptr);
    EXPECT_TRUE(HRdb::heeftRecords(db.GetDijkringProperties("Ring Oost")));
    EXPECT_FALSE(HRdb::heeftRecords(db.GetDijkringProperties("onbekend")));
}

TEST_F(DijkringenTest, KnowsWhatIsInARing)
{
    OpenVoorbeeld();
    EXPECT_TRUE(db.DijkringExists("RING OOST"));
    EXPECT_FALSE(db.DijkringExists("Ring West"));
    EXPECT_TRUE(db.LocatieInDijkring("Plas-02"));
    EXPECT_FALSE(db.LocatieInDijkring("Plas-01"));
    EXPECT_TRUE(db.ProfielInDijkring("Rietoever"));
    EXPECT_FALSE(db.ProfielInDijkring("Strekdam"));
}

TEST_F(DijkringenTest, WithoutTheTableTheEngineReports)
{
    db.OpenDB(OudeDatabase(), false);
    EXPECT_THROW(db.LocatieInDijkring("Plas-02"), jet::Error);
    db.RenameDijkring("a", "b");
    db.DeleteDijkring("a");
}

TEST_F(DijkringenTest, CopiesARing)
{
    OpenVoorbeeld();
    db.CopyDijkring("Ring Vaart", "Kopie");
    EXPECT_EQ(
        Alle(db.GetDijkring("Kopie"), {"Naam", "Locatie", "Profiel", "ProfielNaam", "QOverslag"})
            .at(0),
        (std::vector<std::string>{"Kopie", "Vaart-2", "ROOTLOCATIES\\Vaart-2\\profielen\\Gras 1op3",
                                  "Gras 1op3", "0.1"}));
    EXPECT_EQ(Alle(db.GetDijkring("Ring Vaart")).size(), 3U);
}

TEST_F(DijkringenTest, CopyingOntoAnExistingNameAddsToThatRing)
{
    OpenVoorbeeld();
    db.CopyDijkring("Ring Vaart", "Ring Oost");
    EXPECT_EQ(Alle(db.GetDijkring("Ring Oost")).size(), 7U);
}

TEST_F(DijkringenTest, CopyingAnUnknownRingDoesNothing)
{
    OpenVoorbeeld();
    db.CopyDijkring("onbekend", "Kopie");
    EXPECT_FALSE(db.DijkringExists("Kopie"));
}

TEST_F(DijkringenTest, RenamesWithoutRegardToCaseAndUntrimmed)
{
    OpenVoorbeeld();
    db.RenameDijkring("ring vaart", " Vaart ");
    EXPECT_FALSE(db.DijkringExists("Ring Vaart"));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Dijkring WHERE Naam=' Vaart '"), (Rijen{{"3"}}));
}

TEST_F(DijkringenTest, RenamingToBlanksDoesNothing)
{
    OpenVoorbeeld();
    db.RenameDijkring("Ring Vaart", "   ");
    EXPECT_EQ(Alle(db.GetDijkring("Ring Vaart")).size(), 3U);
}

TEST_F(DijkringenTest, DeletesAllRowsOfARing)
{
    OpenVoorbeeld();
    db.DeleteDijkring("RING OOST");
    EXPECT_FALSE(db.DijkringExists("Ring Oost"));
    EXPECT_EQ(Alle(db.GetDijkring("Ring Vaart")).size(), 3U);
    db.CloseDB();
    ExpectSound(db.fileName());
}

TEST_F(DijkringenTest, TheTableTakesNewRows)
{
    OpenVoorbeeld();
    const auto tabel = db.GetDijkringTabel();
    tabel->AddNew();
    tabel->Set("Naam", jet::Value("Ring West"));
    tabel->Set("Locatie", jet::Value("Plas-09"));
    tabel->Set("QOverslag", jet::Value(0.5F));
    tabel->Update();
    EXPECT_TRUE(db.DijkringExists("Ring West"));
}
