// Deleting the selected locations, and linking a profile to many.
#include "TreeChangesFixture.h"
#include "database/Transactie.h"

namespace {

using testing::ElementsAre;

using LocatiesVerwijderenTest = TreeChangesTest;

TEST_F(LocatiesVerwijderenTest, LocationsGoFromDatabaseFolderAndTree)
{
    changes.DeleteLocaties({"Plas-01", "plas-02"}); // names have no case
    for (const char* naam : {"Plas-01", "Plas-02"}) {
        EXPECT_EQ(db.GetLocatie_ID(naam), kNietBekend);
        EXPECT_FALSE(MapBestaat(InWerkmap(naam)));
        EXPECT_FALSE(Heeft(QString("ROOTLOCATIES\\") + naam));
        EXPECT_FALSE(Heeft(QString("ROOTLOCATIES\\") + naam + "\\profielen\\Gras 1op3"));
    }
    EXPECT_EQ(AantalRijen("Locatie"), 22U);
    EXPECT_EQ(AantalRijen("Geometrie"), 22U * 16);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Locatie_Profiel WHERE Locatie_ID IN (1,2)")[0][0], "0");
    EXPECT_TRUE(Resten().isEmpty());
    EXPECT_TRUE(Heeft("ROOTLOCATIES\\Plas-03"));
    ExpectTreeIsTheTruth();
}

TEST_F(LocatiesVerwijderenTest, CalculationsThatNoLocationHasAnyMoreLeaveTheRoot)
{
    changes.DeleteLocaties({"Plas-01"});
    EXPECT_TRUE(Heeft("ROOTBEREKENINGEN\\som")) << "Plas-02 has it still";
    EXPECT_FALSE(Heeft("ROOTBEREKENINGEN\\rest"));
    EXPECT_THAT(Namen(), ElementsAre("rest", "som", "som"))
        << "rows of results stay behind, with their calculation";
}

TEST_F(LocatiesVerwijderenTest, ARingLosesTheLocationAndGoesWithItsLast)
{
    QStringList ring;
    for (const auto& rij : Lees("SELECT Locatie FROM Dijkring WHERE Naam='Ring Oost'"))
        ring << QString::fromStdString(rij[0]);
    ASSERT_GT(ring.size(), 1);
    changes.DeleteLocaties({ring.takeFirst()});
    EXPECT_TRUE(Heeft("ROOTDIJKRINGEN\\Ring Oost"));
    EXPECT_EQ(static_cast<qsizetype>(Alle(db.GetDijkring("Ring Oost"), {"Locatie"}).size()),
              ring.size());
    changes.DeleteLocaties(ring);
    EXPECT_FALSE(Heeft("ROOTDIJKRINGEN\\Ring Oost"));
    EXPECT_FALSE(db.DijkringExists("Ring Oost"));
    EXPECT_TRUE(MapBestaat(InWerkmap("Dijkringen/Ring Oost/berekeningen/Overloop")))
        << "calculations of a ring are not deleted along";
    EXPECT_TRUE(Heeft("ROOTDIJKRINGEN\\Ring Vaart"));
    ExpectTreeIsTheTruth();
}

TEST_F(LocatiesVerwijderenTest, ANameThatTheDatabaseDoesNotKnowOnlyLeavesTheTree)
{
    db.DeleteLocatie("Plas-01");
    MaakMapVanBerekening("Plas-01", "van iemand");
    changes.DeleteLocaties({"Plas-01", "onbekend"});
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-01"));
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01/berekeningen/van iemand")));
    EXPECT_EQ(AantalRijen("Locatie"), 23U);
    ExpectTreeIsTheTruth();
}

TEST_F(LocatiesVerwijderenTest, ANameWithAnApostropheGoesToo)
{
    db.AddLocatie(120000, 480000, "'t Zwet");
    const QString stored = "''t Zwet"; // as new locations are stored
    MaakMapVanBerekening(stored, "som");
    Bouw();
    ASSERT_TRUE(Heeft("ROOTLOCATIES\\" + stored));
    changes.DeleteLocaties({stored});
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\" + stored));
    EXPECT_EQ(AantalRijen("Locatie"), 24U);
    EXPECT_FALSE(MapBestaat(InWerkmap(stored)));
}

TEST_F(LocatiesVerwijderenTest, ReadOnlyOutputAndAFolderOfAnotherCaseGoToo)
{
    QDir().rename(InWerkmap("Plas-01"), InWerkmap("PLAS-01"));
    const QString uitvoer = InWerkmap("PLAS-01/berekeningen/rest_Gras 1op3/uitvoer.log");
    ASSERT_TRUE(QFile::setPermissions(uitvoer, QFile::ReadOwner));
    changes.DeleteLocaties({"Plas-01"});
    EXPECT_FALSE(MapBestaat(InWerkmap("PLAS-01")));
    EXPECT_TRUE(Resten().isEmpty());
}

TEST_F(LocatiesVerwijderenTest, ADatabaseThatFailsAtTheThirdStatementKeepsAll)
{
    db.CloseDB();
    Voeruit(db.fileName(), {"DROP TABLE Scheefstand"}); // its rows go fourth
    const QStringList before = Toestand();
    EXPECT_EQ(FoutVan([&] { changes.DeleteLocaties({"Plas-01", "Plas-02"}); }), 1520);
    EXPECT_EQ(Toestand(), before);
}

TEST_F(LocatiesVerwijderenTest, AllLocationsCanGo)
{
    QStringList namen;
    for (const auto& rij : Lees("SELECT omschrijving FROM Locatie"))
        namen << QString::fromStdString(rij[0]);
    changes.DeleteLocaties(namen);
    EXPECT_EQ(Node("ROOTLOCATIES")->childCount(), 0);
    EXPECT_EQ(Node("ROOTDIJKRINGEN")->childCount(), 0);
    EXPECT_EQ(Node("ROOTBEREKENINGEN")->childCount(), 0);
    EXPECT_GT(Node("ROOTPROFIELEN")->childCount(), 0);
    db.CloseDB();
    ExpectSound(db.fileName());
}

// Several calculations under one name at the root: all or none

TEST_F(LocatiesVerwijderenTest, ARenameThatFailsForTheSecondCalculationUndoesTheFirst)
{
    MaakBerekening("som_" + QString(20, 'y'), "Plas-03", "");
    Bouw();
    const QStringList before = Toestand();
    int length = 1;
    // The longest name that the database holds is not known here: find one that "som" can
    // have and its longer namesake cannot.
    for (; length < 300; ++length) {
        try {
            const auto transactie = db.BeginTransactie();
            db.RenameBerekening("som", QString(length, 'x'));
        } catch (const std::exception&) {
            break;
        }
    }
    EXPECT_THROW(changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), QString(length - 1, 'x')),
                 std::exception);
    EXPECT_EQ(Toestand(), before);
}

// A profile for many locations

class ProfielToewijzenTest : public TreeChangesTest {
protected:
    std::string Kenmerk(const QString& locatie)
    {
        return std::to_string(db.GetKwaliteitskenmerk(locatie));
    }
    void Ontkoppel(const QString& locatie)
    {
        for (const auto& rij : Alle(db.GetProfielNamenVanLocatie(locatie)))
            db.DeleteProfielFromLocation(db.GetLocatie_ID(locatie),
                                         db.GetProfiel_ID(QString::fromStdString(rij[0])));
    }
};

TEST_F(ProfielToewijzenTest, EveryLocationHasItsMarkAfterwards)
{
    for (const char* naam : {"Plas-01", "Plas-02", "Plas-03"}) {
        Ontkoppel(naam);
        ASSERT_EQ(Kenmerk(naam), "1");
    }
    Bouw();
    changes.AssignProfiel("Strekdam", {"Plas-01", "Plas-02"});
    EXPECT_EQ(Kenmerk("Plas-01"), "2");
    EXPECT_EQ(Kenmerk("Plas-02"), "2");
    EXPECT_EQ(Kenmerk("Plas-03"), "1");
    ExpectTreeIsTheTruth();
}

TEST_F(ProfielToewijzenTest, ThoseBeforeARefusalHaveLinkNodeAndMark)
{
    Ontkoppel("Plas-01");
    Ontkoppel("Plas-05");
    Bouw();
    EXPECT_THROW(changes.AssignProfiel("Strekdam", {"Plas-01", "Plas-04", "Plas-05"}),
                 std::exception);
    EXPECT_TRUE(Heeft("ROOTLOCATIES\\Plas-01\\profielen\\Strekdam"));
    EXPECT_EQ(Kenmerk("Plas-01"), "2");
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-05\\profielen"));
    EXPECT_EQ(Kenmerk("Plas-05"), "1");
    db.CloseDB(); // it was committed
    EXPECT_EQ(Kenmerk("Plas-01"), "2");
    ExpectTreeIsTheTruth();
}

TEST_F(ProfielToewijzenTest, MarksThatCannotBeComputedLeaveNoLink)
{
    db.CloseDB();
    Voeruit(db.fileName(), {"DROP TABLE Scheefstand"});
    const QStringList before = Toestand();
    EXPECT_EQ(FoutVan([&] { changes.AssignProfiel("Strekdam", {"Plas-01"}); }), 1506);
    EXPECT_EQ(FoutVan([&] { changes.DeleteProfiel("Strekdam"); }), 1506);
    EXPECT_EQ(FoutVan([&] {
                  changes.UnlinkProfiel(Node("ROOTLOCATIES\\Plas-02\\profielen\\Voorland 1op4"));
              }),
              1506);
    EXPECT_EQ(Toestand(), before);
}

} // namespace
