#include "TreeChangesFixture.h"

namespace {

using testing::ElementsAre;

// A folder tells its calculation

TEST_F(TreeChangesTest, AFoldersNameIsDividedAtItsLastUnderscore)
{
    const auto gevonden = changes.BerekeningVanMap("SOM_gras 1OP3");
    EXPECT_EQ(gevonden.berekening, "SOM");
    EXPECT_EQ(gevonden.profiel, "gras 1OP3");
    EXPECT_EQ(gevonden.id, db.GetBerekening_ID_Profiel("som", "Gras 1op3"));
    EXPECT_EQ(changes.BerekeningVanMap("som").id, db.GetBerekening_ID_Profiel("som", ""));
    EXPECT_EQ(changes.BerekeningVanMap("onbekend_x").id, kNietBekend);
}

TEST_F(TreeChangesTest, AnUnderscoreInTheNameItselfIsFoundOutFromTheDatabase)
{
    const int zonder = db.AddBerekening("a_b", 0, "OVERLOOP", 0);
    const int met = db.AddBerekening("a_b", db.GetProfiel_ID("Strekdam"), "GOLFOVERSLAG", 0.1);
    EXPECT_EQ(changes.BerekeningVanMap("a_b").id, zonder);
    EXPECT_EQ(changes.BerekeningVanMap("a_b_Strekdam").id, met);
}

// Renaming a calculation everywhere

TEST_F(TreeChangesTest, RenamingAtTheRootRunsOverAllLocations)
{
    const QString key = changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), "Nieuw");
    EXPECT_EQ(key, "ROOTBEREKENINGEN\\Nieuw");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/Nieuw_Gras 1op3")));
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-02/berekeningen/Nieuw_Gras 1op3")));
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-02/berekeningen/Nieuw")));
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-01/berekeningen/som_Gras 1op3")));
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/rest_Gras 1op3")));
    EXPECT_EQ(Node("ROOTLOCATIES\\Plas-02\\berekeningen\\Nieuw")->text(0), "Nieuw");
    EXPECT_TRUE(Heeft("ROOTLOCATIES\\Plas-01\\berekeningen\\Nieuw_Gras 1op3"));
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3"));
    EXPECT_FALSE(Heeft("ROOTBEREKENINGEN\\som"));
    EXPECT_THAT(Namen(), ElementsAre("Nieuw", "Nieuw", "rest"));
    const QStringList after = Toestand();
    Bouw();
    EXPECT_EQ(after.size(), Toestand().size()) << "a rebuilt tree shows the same";
}

TEST_F(TreeChangesTest, ANameThatBeginsAnotherIsNotTaken)
{
    MaakBerekening("sommen", "Plas-03", "");
    Bouw();
    changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), "x");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-03/berekeningen/sommen")));
    EXPECT_THAT(Namen(), ElementsAre("rest", "sommen", "x", "x"));
}

TEST_F(TreeChangesTest, NamesWithAnUnderscoreFollowTheirFirstPart)
{
    MaakBerekening("som_twee", "Plas-03", "Strekdam");
    Bouw();
    changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), "x");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-03/berekeningen/x_twee_Strekdam")));
    EXPECT_THAT(Namen(), ElementsAre("rest", "x", "x", "x_twee"));
}

TEST_F(TreeChangesTest, AnUnchangedNameAtTheRootExists)
{
    EXPECT_EQ(FoutVan([&] { changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), "som"); }),
              102);
    EXPECT_EQ(FoutVan([&] { changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), "REST"); }),
              102);
}

TEST_F(TreeChangesTest, NamesThatAreNotAllowedAreError101)
{
    const QStringList before = Toestand();
    for (const char* naam : {"a.b", "a/b", "a\\b", "it's", "[x]", "a:b", "\xD0\x9A"})
        EXPECT_EQ(FoutVan([&] { changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), naam); }),
                  101)
            << naam;
    EXPECT_EQ(Toestand(), before);
}

TEST_F(TreeChangesTest, ATargetFolderInTheWayUndoesTheWholeRename)
{
    MaakMapVanBerekening("Plas-02", "x_Gras 1op3"); // of nobody
    const QStringList before = Toestand();
    EXPECT_THROW(changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), "x"), Fout);
    EXPECT_EQ(Toestand(), before);
}

TEST_F(TreeChangesTest, AFolderNameTooLongForTheDiskUndoesTheWholeRename)
{
    const QStringList before = Toestand();
    const QString lang(250, 'x'); // fits alone, not with the profile behind it
    EXPECT_THROW(changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), lang), std::exception);
    EXPECT_EQ(Toestand(), before);
}

TEST_F(TreeChangesTest, AFolderThatIsGoneDoesNotStopARename)
{
    QDir(InWerkmap("Plas-01/berekeningen/som_Gras 1op3")).removeRecursively();
    changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), "x");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-02/berekeningen/x_Gras 1op3")));
    EXPECT_THAT(Namen(), ElementsAre("rest", "x", "x"));
}

// Renaming one calculation of a location

TEST_F(TreeChangesTest, RenamingAtALocationChangesFolderAndKeyAlone)
{
    const QString key =
        changes.RenameBerekening(Node("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3"), "x_y");
    EXPECT_EQ(key, "ROOTLOCATIES\\Plas-01\\berekeningen\\x_y");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/x_y")));
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-02/berekeningen/som_Gras 1op3")));
    EXPECT_TRUE(Heeft("ROOTBEREKENINGEN\\x"));
    EXPECT_TRUE(Heeft("ROOTBEREKENINGEN\\som"));
    EXPECT_THAT(Namen(), ElementsAre("rest", "som", "som"));
}

TEST_F(TreeChangesTest, ANeighboursNameIsInUse)
{
    auto* node = Node("ROOTLOCATIES\\Plas-02\\berekeningen\\som_Gras 1op3");
    const QStringList before = Toestand();
    EXPECT_EQ(FoutVan([&] { changes.RenameBerekening(node, "som"); }), 102) << "in the database";
    MaakMapVanBerekening("Plas-02", "los");
    Bouw();
    node = Node("ROOTLOCATIES\\Plas-02\\berekeningen\\som_Gras 1op3");
    EXPECT_EQ(FoutVan([&] { changes.RenameBerekening(node, "LOS"); }), 102) << "in the folder";
    EXPECT_EQ(Node("ROOTLOCATIES\\Plas-02\\berekeningen\\som_Gras 1op3"), node);
}

TEST_F(TreeChangesTest, OnlyTheCaseOfANameMayChange)
{
    auto* node = Node("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3");
    changes.RenameBerekening(node, "SOM_Gras 1op3");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/SOM_Gras 1op3")));
    EXPECT_EQ(node->text(0), "SOM_Gras 1op3");
    changes.RenameBerekening(node, "SOM_Gras 1op3");
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/SOM_Gras 1op3")));
}

TEST_F(TreeChangesTest, ACalculationOfARingIsRenamedInItsFolder)
{
    changes.RenameBerekening(Node("ROOTDIJKRINGEN\\Ring Oost\\berekeningen\\Overloop"), "anders");
    EXPECT_TRUE(MapBestaat(InWerkmap("Dijkringen/Ring Oost/berekeningen/anders")));
    EXPECT_TRUE(Heeft("ROOTDIJKRINGEN\\Ring Oost\\berekeningen\\anders"));
}

// Renaming a ring

TEST_F(TreeChangesTest, ARingIsRenamedInFolderDatabaseAndTree)
{
    const QString key = changes.RenameDijkring(Node("ROOTDIJKRINGEN\\Ring Oost"), "Ring Zuid");
    EXPECT_EQ(key, "ROOTDIJKRINGEN\\ring zuid") << "its last part is in lower case";
    EXPECT_EQ(Node(key)->text(0), "Ring Zuid");
    EXPECT_TRUE(Heeft("ROOTDIJKRINGEN\\Ring Zuid\\berekeningen\\Overloop"));
    EXPECT_TRUE(MapBestaat(InWerkmap("Dijkringen/Ring Zuid/berekeningen/Overloop")));
    EXPECT_TRUE(db.DijkringExists("Ring Zuid"));
    EXPECT_FALSE(db.DijkringExists("Ring Oost"));
}

TEST_F(TreeChangesTest, ARingWithoutAFolderIsRenamedToo)
{
    changes.RenameDijkring(Node("ROOTDIJKRINGEN\\Ring Vaart"), "Kade");
    EXPECT_TRUE(db.DijkringExists("Kade"));
    EXPECT_FALSE(MapBestaat(InWerkmap("Dijkringen/Kade")));
}

TEST_F(TreeChangesTest, ARingsNameIsChecked)
{
    const QStringList before = Toestand();
    auto* ring = Node("ROOTDIJKRINGEN\\Ring Oost");
    QString description;
    EXPECT_EQ(FoutVan([&] { changes.RenameDijkring(ring, QString(51, 'x')); }, &description), 21);
    EXPECT_TRUE(description.contains("50"));
    EXPECT_EQ(FoutVan([&] { changes.RenameDijkring(ring, "a.b"); }), 22);
    EXPECT_EQ(FoutVan([&] { changes.RenameDijkring(ring, "ring vaart"); }), 23);
    EXPECT_EQ(Toestand(), before);
    changes.RenameDijkring(ring, QString(50, 'x'));
    EXPECT_TRUE(db.DijkringExists(QString(50, 'x')));
}

TEST_F(TreeChangesTest, AFolderInTheWayKeepsTheRingsName)
{
    QDir().mkpath(InWerkmap("Dijkringen/Kade"));
    const QStringList before = Toestand();
    EXPECT_THROW(changes.RenameDijkring(Node("ROOTDIJKRINGEN\\Ring Oost"), "Kade"), Fout);
    EXPECT_EQ(Toestand(), before);
}

// Deleting

TEST_F(TreeChangesTest, ACalculationOfALocationGoesWithItsResults)
{
    const int id = db.GetBerekening_ID_Profiel("som", "Gras 1op3");
    changes.DeleteBerekening(Node("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3"));
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-01/berekeningen/som_Gras 1op3")));
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3"));
    EXPECT_TRUE(Heeft("ROOTBEREKENINGEN\\som")) << "another location has it still";
    EXPECT_THAT(Lees("SELECT Locatie_ID FROM Resultaat WHERE Berekening_ID=" + std::to_string(id)),
                ElementsAre(ElementsAre(std::to_string(db.GetLocatie_ID("Plas-02")))));
    EXPECT_TRUE(Resten().isEmpty());

    changes.DeleteBerekening(Node("ROOTLOCATIES\\Plas-02\\berekeningen\\som_Gras 1op3"));
    EXPECT_EQ(db.GetBerekening_ID_Profiel("som", "Gras 1op3"), kNietBekend);
    changes.DeleteBerekening(Node("ROOTLOCATIES\\Plas-02\\berekeningen\\som"));
    EXPECT_FALSE(Heeft("ROOTBEREKENINGEN\\som"));
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-02\\berekeningen"));
    EXPECT_THAT(Namen(), ElementsAre("rest"));
}

TEST_F(TreeChangesTest, DeletingAtTheRootRunsOverAllLocations)
{
    MaakBerekening("som_twee", "Plas-03", "Strekdam");
    Bouw();
    changes.DeleteBerekening(Node("ROOTBEREKENINGEN\\som"));
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-01/berekeningen/som_Gras 1op3")));
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-02/berekeningen/som")));
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/rest_Gras 1op3")));
    EXPECT_FALSE(Heeft("ROOTBEREKENINGEN\\som"));
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-03\\berekeningen"));
    EXPECT_TRUE(Heeft("ROOTLOCATIES\\Plas-01\\berekeningen\\rest_Gras 1op3"));
    EXPECT_THAT(Namen(), ElementsAre("rest"));
    EXPECT_EQ(AantalRijen("Resultaat"), 1U);
}

TEST_F(TreeChangesTest, ACalculationOfARingGoesFromFolderAndTree)
{
    const auto rows = AantalRijen("Resultaat");
    changes.DeleteBerekening(Node("ROOTDIJKRINGEN\\Ring Oost\\berekeningen\\Overloop"));
    EXPECT_FALSE(MapBestaat(InWerkmap("Dijkringen/Ring Oost/berekeningen/Overloop")));
    EXPECT_FALSE(Heeft("ROOTDIJKRINGEN\\Ring Oost\\berekeningen"));
    EXPECT_EQ(AantalRijen("Resultaat"), rows);
}

TEST_F(TreeChangesTest, AFolderThatIsGoneDoesNotStopADelete)
{
    QDir(InWerkmap("Plas-01/berekeningen/rest_Gras 1op3")).removeRecursively();
    changes.DeleteBerekening(Node("ROOTLOCATIES\\Plas-01\\berekeningen\\rest_Gras 1op3"));
    EXPECT_FALSE(Heeft("ROOTBEREKENINGEN\\rest"));
    EXPECT_THAT(Namen(), ElementsAre("som", "som"));
}

TEST_F(TreeChangesTest, ARingGoesWithItsCalculations)
{
    changes.DeleteDijkring(Node("ROOTDIJKRINGEN\\Ring Oost"));
    EXPECT_FALSE(MapBestaat(InWerkmap("Dijkringen/Ring Oost")));
    EXPECT_FALSE(db.DijkringExists("Ring Oost"));
    EXPECT_FALSE(Heeft("ROOTDIJKRINGEN\\Ring Oost"));
    EXPECT_TRUE(db.DijkringExists("Ring Vaart"));
}

// Copies of rings

TEST_F(TreeChangesTest, ACopyTakesTheFirstFreeName)
{
    EXPECT_EQ(changes.PasteDijkring("Ring Oost")->text(0), "Ring Oost_1");
    EXPECT_EQ(NavTree::Key(changes.PasteDijkring("Ring Oost")), "ROOTDIJKRINGEN\\Ring Oost_2");
    EXPECT_EQ(Alle(db.GetDijkring("Ring Oost_2"), {"Locatie", "ProfielNaam"}),
              Alle(db.GetDijkring("Ring Oost"), {"Locatie", "ProfielNaam"}));
    EXPECT_EQ(changes.PasteDijkring("Ring Oost_1")->text(0), "Ring Oost_1_1");
}

// Profiles

TEST_F(TreeChangesTest, AnUnlinkedProfileStays)
{
    changes.UnlinkProfiel(Node("ROOTLOCATIES\\Plas-02\\profielen\\Voorland 1op4"));
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-02\\profielen\\Voorland 1op4"));
    EXPECT_TRUE(Heeft("ROOTLOCATIES\\Plas-06\\profielen\\Voorland 1op4"));
    EXPECT_TRUE(Heeft("ROOTPROFIELEN\\Voorland 1op4"));
    EXPECT_EQ(Alle(db.GetProfielNamenVanLocatie("Plas-02")), (Rijen{{"Gras 1op3"}}));
    EXPECT_NE(db.GetProfiel_ID("Voorland 1op4"), kNietBekend);
}

TEST_F(TreeChangesTest, ADeletedProfileGoesEverywhere)
{
    changes.DeleteProfiel("Voorland 1op4");
    EXPECT_FALSE(Heeft("ROOTPROFIELEN\\Voorland 1op4"));
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-02\\profielen\\Voorland 1op4"));
    EXPECT_EQ(db.GetProfiel_ID("Voorland 1op4"), kNietBekend);
}

TEST_F(TreeChangesTest, AssignedProfilesAppearBelowTheirLocations)
{
    changes.AssignProfiel("Strekdam", {"Plas-01", "Niet in de database", "Vaart-1"});
    EXPECT_TRUE(Heeft("ROOTLOCATIES\\Plas-01\\profielen\\Strekdam"));
    EXPECT_TRUE(Heeft("ROOTLOCATIES\\Vaart-1\\profielen\\Strekdam"));
    EXPECT_EQ(Alle(db.GetProfielNamenVanLocatie("Vaart-1")).size(), 2U);
}

TEST_F(TreeChangesTest, ALocationThatHasTheProfileStopsTheWalk)
{
    EXPECT_THROW(changes.AssignProfiel("Strekdam", {"Plas-01", "Plas-04", "Plas-05"}),
                 std::exception);
    EXPECT_TRUE(Heeft("ROOTLOCATIES\\Plas-01\\profielen\\Strekdam"));
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-05\\profielen\\Strekdam"));
    EXPECT_EQ(Alle(db.GetProfielNamenVanLocatie("Plas-04")).size(), 2U);
    EXPECT_EQ(Alle(db.GetProfielNamenVanLocatie("Plas-05")).size(), 1U);
}

TEST_F(TreeChangesTest, AnUnknownProfileIsAssignedToNobody)
{
    const auto rows = AantalRijen("Locatie_Profiel");
    changes.AssignProfiel("Onbekend", {"Plas-01"});
    EXPECT_EQ(AantalRijen("Locatie_Profiel"), rows);
}

} // namespace
