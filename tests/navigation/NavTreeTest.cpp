#include "navigation/NavTree.h"

#include "MaakDatabase.h"
#include "database/WerkmapFixture.h"

#include <QTreeWidget>

namespace {

class NavTreeTest : public WerkmapTest {
protected:
    NavTreeTest()
    {
        view.setProperty("pathSeparator", "\\");
        tree.setTreeViewObject(&view);
        locaties = tree.AddRoot("ROOTLOCATIES", "Locaties", false);
        dijkringen = tree.AddRoot("ROOTDIJKRINGEN", "Dijkringen", false);
        profielen = tree.AddRoot("ROOTPROFIELEN", "Profielen", false);
        berekeningen = tree.AddRoot("ROOTBEREKENINGEN", "Berekeningen", true);
    }
    void VulLocaties() { tree.addLocatiesFromDb2Root(locaties, Locaties()); }

    static QStringList Kinderen(const QTreeWidgetItem* node)
    {
        QStringList texts;
        for (int i = 0; node && i < node->childCount(); ++i)
            texts << node->child(i)->text(0);
        return texts;
    }
    /// Each node as "key|text|tag", parents before children.
    static void Beschrijf(const QTreeWidgetItem* node, QStringList& lines)
    {
        lines << NavTree::Key(node) + "|" + node->text(0) + "|" + NavTree::Tag(node);
        for (int i = 0; i < node->childCount(); ++i)
            Beschrijf(node->child(i), lines);
    }
    /// Every node is found under its key, and nothing else is known.
    void ExpectIndexed()
    {
        QStringList lines;
        for (int i = 0; i < view.topLevelItemCount(); ++i)
            Beschrijf(view.topLevelItem(i), lines);
        for (const QString& line : lines) {
            const auto* node = tree.GetNodeByKey(line.section('|', 0, 0));
            ASSERT_NE(node, nullptr) << line.toStdString();
            EXPECT_EQ(NavTree::Key(node), line.section('|', 0, 0));
        }
    }

    QTreeWidget view;
    NavTree tree{db};
    QTreeWidgetItem *locaties, *dijkringen, *profielen, *berekeningen;
};

TEST_F(NavTreeTest, TakesTheSeparatorOfTheControl)
{
    EXPECT_EQ(tree.pathSeparator(), "\\");
    QTreeWidget other;
    other.setProperty("pathSeparator", "/");
    NavTree second(db);
    second.setTreeViewObject(&other);
    EXPECT_EQ(second.pathSeparator(), "/");
    EXPECT_EQ(NavTree::Key(second.AddRoot("ROOTLOCATIES", "L", false)), "ROOTLOCATIES");
}

TEST_F(NavTreeTest, LocationsStandInTheOrderOfTheRecords)
{
    const auto records =
        db.GetRecordSet("SELECT omschrijving AS OMSCHR FROM Locatie ORDER BY Locatie_ID DESC");
    tree.addLocatiesFromDb2Root(locaties, records);
    ASSERT_EQ(locaties->childCount(), 24);
    EXPECT_EQ(locaties->child(0)->text(0), "Vaart-4");
    EXPECT_EQ(locaties->child(23)->text(0), "Plas-01");
    EXPECT_EQ(NavTree::Key(locaties->child(23)), "ROOTLOCATIES\\Plas-01");
    EXPECT_EQ(NavTree::Tag(locaties->child(23)), "LOCATIE");
    EXPECT_TRUE(records->EndOfFile());
}

TEST_F(NavTreeTest, WithoutRootOrRecordsNothingIsAdded)
{
    tree.addLocatiesFromDb2Root(nullptr, Locaties());
    tree.addLocatiesFromDb2Root(locaties, nullptr);
    tree.addProfielenFromDb2Root(profielen, nullptr);
    tree.addDijkringenFromDb2Root(dijkringen,
                                  db.GetRecordSet("SELECT Naam FROM Dijkring WHERE 1=0"));
    for (const auto* root : {locaties, profielen, dijkringen, berekeningen})
        EXPECT_EQ(root->childCount(), 0);
    EXPECT_EQ(tree.AddProfiel2Locatie("ROOTLOCATIES\\Onbekend", "P"), nullptr);
    EXPECT_EQ(tree.AddBerekening2Locatie(nullptr, "b"), nullptr);
    EXPECT_EQ(tree.AddBerekening2Dijkring(nullptr, "b"), nullptr);
}

TEST_F(NavTreeTest, AddingTwiceGivesOneNode)
{
    auto* ring = tree.AddDijkring2Root("Ring A");
    EXPECT_EQ(tree.AddDijkring2Root("Ring A"), ring);
    EXPECT_EQ(tree.AddDijkring2Root("RING a"), ring) << "keys have no case";
    EXPECT_EQ(dijkringen->childCount(), 1);
    EXPECT_EQ(ring->text(0), "Ring A");
}

TEST_F(NavTreeTest, EveryKindHasItsKeyTextTagAndPlace)
{
    VulLocaties();
    tree.AddProfiel2Locatie("ROOTLOCATIES\\Plas-01", "Gras 1op3");
    tree.AddBerekening2Locatie(tree.GetNodeByKey("ROOTLOCATIES\\Plas-01"), "b1_Gras 1op3");
    tree.AddProfiel2Root("Gras 1op3");
    tree.AddBerekening2Dijkring(tree.AddDijkring2Root("Ring"), "Overloop");
    tree.AddBerekening2Root("b1_Gras 1op3");

    QStringList lines;
    Beschrijf(locaties->child(0), lines);
    Beschrijf(dijkringen, lines);
    Beschrijf(profielen, lines);
    Beschrijf(berekeningen, lines);
    EXPECT_EQ(lines,
              (QStringList{
                  "ROOTLOCATIES\\Plas-01|Plas-01|LOCATIE",
                  "ROOTLOCATIES\\Plas-01\\profielen|Profielen|PRDIR",
                  "ROOTLOCATIES\\Plas-01\\profielen\\Gras 1op3|Gras 1op3|PROFIEL",
                  "ROOTLOCATIES\\Plas-01\\berekeningen|berekeningen|BRDIR",
                  "ROOTLOCATIES\\Plas-01\\berekeningen\\b1_Gras 1op3|b1_Gras 1op3|BEREKENING",
                  "ROOTDIJKRINGEN|Dijkringen|",
                  "ROOTDIJKRINGEN\\Ring|Ring|DIJKRING",
                  "ROOTDIJKRINGEN\\Ring\\berekeningen|berekeningen|DRDIR",
                  "ROOTDIJKRINGEN\\Ring\\berekeningen\\Overloop|Overloop|DRBEREKENING",
                  "ROOTPROFIELEN|Profielen|",
                  "ROOTPROFIELEN\\Gras 1op3|Gras 1op3|PROFIEL",
                  "ROOTBEREKENINGEN|Berekeningen|",
                  "ROOTBEREKENINGEN\\b1|b1|BEREKENING",
              }));
}

TEST_F(NavTreeTest, EveryNodeHasAPictureAndAnAccessibleName)
{
    auto* ring = tree.AddDijkring2Root("Ring A");
    auto* berekening = tree.AddBerekening2Dijkring(ring, "Overloop");
    for (const auto* node : {locaties, ring, berekening->parent(), berekening}) {
        EXPECT_FALSE(node->icon(0).pixmap(16).isNull());
        EXPECT_EQ(node->data(0, Qt::AccessibleTextRole).toString(), node->text(0));
    }
    const auto picture = [](const QTreeWidgetItem* node, QIcon::Mode mode) {
        return node->icon(0).pixmap(16, mode).toImage();
    };
    EXPECT_NE(picture(ring, QIcon::Normal), picture(ring, QIcon::Selected))
        << "a folder opens when it is selected";
    EXPECT_NE(picture(berekening, QIcon::Normal), picture(ring, QIcon::Normal));
}

TEST_F(NavTreeTest, ACalculationIsCutAtItsFirstUnderscoreBelowTheRootAlone)
{
    VulLocaties();
    auto* locatie = tree.GetNodeByKey("ROOTLOCATIES\\Plas-01");
    EXPECT_EQ(tree.AddBerekening2Locatie(locatie, "som_een_Gras")->text(0), "som_een_Gras");
    tree.addBerekeningen2Root(berekeningen, locaties);
    EXPECT_EQ(Kinderen(berekeningen), QStringList{"som"});
    tree.AddBerekening2Root("som_twee");
    EXPECT_EQ(berekeningen->childCount(), 1);
    tree.AddBerekening2Root("_voor_na");
    EXPECT_NE(tree.GetNodeByKey("ROOTBEREKENINGEN\\voor"), nullptr);
    EXPECT_EQ(tree.AddBerekening2Root("__"), nullptr) << "no part has anything in it";
}

TEST_F(NavTreeTest, ChildrenOfFoldersAreSorted)
{
    VulLocaties();
    auto* locatie = tree.GetNodeByKey("ROOTLOCATIES\\Plas-01");
    for (const char* naam : {"middel", "Zuid", "aan", "Éen", "10", "2"}) {
        tree.AddBerekening2Locatie(locatie, naam);
        tree.AddProfiel2Locatie(NavTree::Key(locatie), naam);
        tree.AddBerekening2Root(naam);
        tree.AddBerekening2Dijkring(tree.AddDijkring2Root("Ring"), naam);
    }
    const QStringList sorted{"10", "2", "aan", "Éen", "middel", "Zuid"};
    EXPECT_EQ(Kinderen(tree.GetNodeByKey("ROOTLOCATIES\\Plas-01\\berekeningen")), sorted);
    EXPECT_EQ(Kinderen(tree.GetNodeByKey("ROOTLOCATIES\\Plas-01\\profielen")), sorted);
    EXPECT_EQ(Kinderen(tree.GetNodeByKey("ROOTDIJKRINGEN\\Ring\\berekeningen")), sorted);
    EXPECT_EQ(Kinderen(berekeningen), sorted);

    for (const char* naam : {"Zuid", "aan", "middel"})
        tree.AddDijkring2Root(naam);
    EXPECT_EQ(Kinderen(dijkringen), (QStringList{"Ring", "Zuid", "aan", "middel"}));
}

TEST_F(NavTreeTest, TheLastProfileTakesItsFolderAlongAndTheNextMakesItAgain)
{
    VulLocaties();
    const QString locatie = "ROOTLOCATIES\\Plas-01";
    tree.AddProfiel2Locatie(locatie, "A");
    tree.AddProfiel2Locatie(locatie, "B");
    tree.removeProfielFromLocationNode(tree.GetNodeByKey(locatie), "A");
    EXPECT_NE(tree.GetNodeByKey(locatie + "\\profielen"), nullptr);
    tree.removeProfielFromLocationNode(tree.GetNodeByKey(locatie), "B");
    EXPECT_EQ(tree.GetNodeByKey(locatie + "\\profielen"), nullptr);
    EXPECT_EQ(tree.GetNodeByKey(locatie)->childCount(), 0);
    EXPECT_NE(tree.AddProfiel2Locatie(locatie, "C"), nullptr);
    EXPECT_EQ(Kinderen(tree.GetNodeByKey(locatie + "\\profielen")), QStringList{"C"});
    ExpectIndexed();
}

TEST_F(NavTreeTest, RemovingFromTheTreeViewRemovesEverywhere)
{
    VulLocaties();
    for (const char* naam : {"Plas-01", "Plas-02"}) {
        const QString key = QString("ROOTLOCATIES\\") + naam;
        tree.AddProfiel2Locatie(key, "P");
        tree.AddBerekening2Locatie(tree.GetNodeByKey(key), "b");
    }
    tree.AddProfiel2Root("P");
    tree.AddBerekening2Root("b");
    tree.AddDijkring2Root("R");

    tree.removeProfielFromTreeview("P");
    tree.removeBerekeningFromTreeview("b");
    tree.removeDijkringFromTreeview("R");
    tree.removeProfielFromTreeview("onbekend");
    tree.removeBerekeningFromTreeview("onbekend");
    tree.removeDijkringFromTreeview("onbekend");

    EXPECT_EQ(profielen->childCount() + berekeningen->childCount() + dijkringen->childCount(), 0);
    EXPECT_EQ(tree.GetNodeByKey("ROOTLOCATIES\\Plas-01")->childCount(), 0);
    EXPECT_EQ(tree.GetNodeByKey("ROOTLOCATIES\\Plas-02\\berekeningen\\b"), nullptr);
    EXPECT_EQ(tree.GetNodeByKey("ROOTPROFIELEN\\P"), nullptr);
    ExpectIndexed();
}

TEST_F(NavTreeTest, CalculationsComeFromTheFoldersOfLocationsInTheTree)
{
    VulLocaties();
    MaakMapVanBerekening("Plas-01", "b1_Gras 1op3");
    MaakMapVanBerekening("Plas-01", "a1");
    QDir().mkpath(InWerkmap("Plas-02/berekeningen"));    // empty
    MaakMapVanBerekening("Niet in de database", "x");    // foreign
    QDir().mkpath(InWerkmap("PLAS-03/Berekeningen/B3")); // another case
    QDir().mkpath(InWerkmap("Plas-04/berekeningen"));
    Schrijf(InWerkmap("Plas-04/berekeningen/bestand.txt"), "x"); // no folder
    Schrijf(InWerkmap("los bestand.txt"), "x");

    tree.addBerekeningenFromWerkmap2Locaties(locaties, db.WerkMap());

    EXPECT_EQ(Kinderen(tree.GetNodeByKey("ROOTLOCATIES\\Plas-01\\berekeningen")),
              (QStringList{"a1", "b1_Gras 1op3"}));
    EXPECT_EQ(tree.GetNodeByKey("ROOTLOCATIES\\Plas-02")->childCount(), 0);
    EXPECT_EQ(Kinderen(tree.GetNodeByKey("ROOTLOCATIES\\Plas-03\\berekeningen")),
              QStringList{"B3"});
    EXPECT_EQ(tree.GetNodeByKey("ROOTLOCATIES\\Plas-04")->childCount(), 0);
    EXPECT_EQ(locaties->childCount(), 24);
}

TEST_F(NavTreeTest, RingCalculationsComeFromTheirFolders)
{
    tree.addDijkringenFromDb2Root(dijkringen, db.GetDijkringNamen());
    MaakMapVanRing("Ring Oost", "2% Golfoploop");
    MaakMapVanRing("Ring Oost", "Overloop");
    MaakMapVanRing("Ring West", "Overloop");
    tree.addBerekeningenFromWerkmap2Dijkringen(dijkringen, db.WerkMap());
    EXPECT_EQ(Kinderen(tree.GetNodeByKey("ROOTDIJKRINGEN\\Ring Oost\\berekeningen")),
              (QStringList{"2% Golfoploop", "Overloop"}));
    EXPECT_EQ(tree.GetNodeByKey("ROOTDIJKRINGEN\\Ring Vaart")->childCount(), 0);
    EXPECT_EQ(tree.GetNodeByKey("ROOTDIJKRINGEN\\Ring West"), nullptr);
}

TEST_F(NavTreeTest, WithoutAWorkFolderTheTreeHasNoCalculations)
{
    VulLocaties();
    tree.addDijkringenFromDb2Root(dijkringen, db.GetDijkringNamen());
    EXPECT_FALSE(MapBestaat(db.WerkMap()));
    tree.addBerekeningenFromWerkmap2Locaties(locaties, db.WerkMap());
    tree.addBerekeningenFromWerkmap2Dijkringen(dijkringen, db.WerkMap());
    tree.addBerekeningen2Root(berekeningen, locaties);
    EXPECT_EQ(berekeningen->childCount(), 0);
    EXPECT_EQ(locaties->child(0)->childCount(), 0);
}

TEST_F(NavTreeTest, ProfilesOfLocationsComeFromTheDatabase)
{
    VulLocaties();
    tree.addProfielenFromDb2Locaties(locaties);
    EXPECT_EQ(Kinderen(tree.GetNodeByKey("ROOTLOCATIES\\Plas-02\\profielen")),
              (QStringList{"Gras 1op3", "Voorland 1op4"}));
    EXPECT_EQ(Kinderen(tree.GetNodeByKey("ROOTLOCATIES\\Vaart-1\\profielen")),
              QStringList{"Damwand kaal"});
    tree.addProfielenFromDb2Root(profielen, db.GetProfielNamen());
    EXPECT_TRUE(Kinderen(profielen).contains("Strekdam"));
}

TEST_F(NavTreeTest, ARenamedNodeIsFoundUnderItsNewKeyWithAllBelowIt)
{
    auto* ring = tree.AddDijkring2Root("Oud");
    tree.AddBerekening2Dijkring(ring, "Overloop");
    tree.AddDijkring2Root("Ander");
    tree.Rename(ring, "nieuw", "Nieuw");
    EXPECT_EQ(tree.GetNodeByKey("ROOTDIJKRINGEN\\Oud"), nullptr);
    EXPECT_EQ(tree.GetNodeByKey("ROOTDIJKRINGEN\\nieuw"), ring);
    EXPECT_NE(tree.GetNodeByKey("ROOTDIJKRINGEN\\nieuw\\berekeningen\\Overloop"), nullptr);
    EXPECT_EQ(Kinderen(dijkringen), (QStringList{"Nieuw", "Ander"}));
    ExpectIndexed();
}

TEST_F(NavTreeTest, ARemovedRootIsForgottenWithAllBelowIt)
{
    VulLocaties();
    tree.AddProfiel2Locatie("ROOTLOCATIES\\Plas-01", "P");
    tree.RemoveRoot("ROOTLOCATIES");
    tree.RemoveRoot("ROOTLOCATIES");
    EXPECT_EQ(view.topLevelItemCount(), 3);
    for (const char* key :
         {"ROOTLOCATIES", "ROOTLOCATIES\\Plas-01", "ROOTLOCATIES\\Plas-01\\profielen\\P"})
        EXPECT_EQ(tree.GetNodeByKey(key), nullptr) << key;
    tree.RemoveChildren(nullptr);
}

TEST_F(NavTreeTest, AThousandLocationsWithProfilesAndCalculations)
{
    QStringList namen;
    for (int i = 1; i <= 1000; ++i)
        namen << QString("Locatie-%1").arg(i, 4, 10, QChar('0'));
    db.CloseDB();
    const QString groot = Pad("groot.mdb");
    voorbeeld::MaakRandvoorwaarden(groot.toStdString(),
                                   {.locaties = voorbeeld::VeelLocaties(1000)});
    ASSERT_EQ(db.OpenDB(groot, false), OpenResult::Accepted);
    VulLocaties();
    for (const QString& naam : namen) {
        const QString key = tree.JoinKey("ROOTLOCATIES", naam);
        for (int i = 0; i < 3; ++i)
            tree.AddProfiel2Locatie(key, "P" + QString::number(i));
        for (int i = 0; i < 5; ++i)
            tree.AddBerekening2Locatie(tree.GetNodeByKey(key), QString("som%1_P0").arg(i));
    }
    EXPECT_EQ(Kinderen(locaties), namen);
    tree.addBerekeningen2Root(berekeningen, locaties);
    EXPECT_EQ(Kinderen(berekeningen), (QStringList{"som0", "som1", "som2", "som3", "som4"}));
    QStringList lines;
    Beschrijf(locaties, lines);
    EXPECT_EQ(lines.size(), 1 + 1000 * (1 + 1 + 3 + 1 + 5));
    ExpectIndexed();
    tree.removeBerekeningFromTreeview("som0_P0");
    EXPECT_EQ(tree.GetNodeByKey("ROOTLOCATIES\\Locatie-1000\\berekeningen\\som0_P0"), nullptr);
    ExpectIndexed();
}

} // namespace
