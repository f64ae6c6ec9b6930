// The trees against the example database and its work folder.
#include "LocatiesFixture.h"

#include "MaakDatabase.h"
#include "frame/Globals.h"
#include "frame/QLMIniFile.h"
#include "Unprivileged.h"

namespace {

using BouwTest = LocatiesTest;

/// What the example database and the folders of the fixture hold, worked out with plain
/// code: "key|text|tag|parent's key".
QStringList Verwacht(const std::vector<std::pair<QString, QStringList>>& locaties,
                     const QStringList& profielen)
{
    QStringList lines;
    const auto add = [&](const QString& parent, const QString& step, const QString& text,
                         const QString& tag) {
        const QString key = parent.isEmpty() ? step : parent + "\\" + step;
        lines << key + "|" + text + "|" + tag + "|" + parent;
        return key;
    };
    const QString locatieRoot = add("", "ROOTLOCATIES", "Locaties", "");
    for (const auto& [naam, eigen] : locaties) {
        const QString key = add(locatieRoot, naam, naam, "LOCATIE");
        const QString map = add(key, "profielen", "Profielen", "PRDIR");
        for (const QString& profiel : eigen)
            add(map, profiel, profiel, "PROFIEL");
        QStringList sommen;
        if (naam == "Plas-01")
            sommen = QStringList{"rest", "som_Gras 1op3"};
        else if (naam == "Plas-02")
            sommen = QStringList{"som_Gras 1op3"};
        if (sommen.isEmpty())
            continue;
        const QString berekeningen = add(key, "berekeningen", "berekeningen", "BRDIR");
        for (const QString& som : sommen)
            add(berekeningen, som, som, "BEREKENING");
    }
    const QString ringRoot = add("", "ROOTDIJKRINGEN", "Dijkringen", "");
    const QString oost = add(ringRoot, "Ring Oost", "Ring Oost", "DIJKRING");
    add(add(oost, "berekeningen", "berekeningen", "DRDIR"), "Overloop", "Overloop", "DRBEREKENING");
    add(ringRoot, "Ring Vaart", "Ring Vaart", "DIJKRING");
    const QString profielRoot = add("", "ROOTPROFIELEN", "Profielen", "");
    for (const QString& profiel : profielen)
        add(profielRoot, profiel, profiel, "PROFIEL");
    const QString berekeningRoot = add("", "ROOTBEREKENINGEN", "Berekeningen", "");
    add(berekeningRoot, "rest", "rest", "BEREKENING");
    add(berekeningRoot, "som", "som", "BEREKENING");
    return lines;
}

QStringList Nodes(QTreeWidget* tree)
{
    QStringList lines;
    for (QTreeWidgetItemIterator node(tree); *node; ++node)
        lines << NavTree::Key(*node) + "|" + (*node)->text(0) + "|" + NavTree::Tag(*node) + "|" +
                     NavTree::Key((*node)->parent());
    return lines;
}

TEST_F(BouwTest, TheTreeShowsTheExampleNodeByNode)
{
    std::vector<std::pair<QString, QStringList>> locaties;
    for (const auto& locatie : voorbeeld::Locaties()) {
        QStringList profielen;
        for (const std::string& profiel : locatie.profielen)
            profielen << QString::fromStdString(profiel);
        profielen.sort(Qt::CaseInsensitive);
        locaties.emplace_back(QString::fromStdString(locatie.naam), profielen);
    }
    QStringList profielen;
    for (const auto& profiel : voorbeeld::Profielen())
        profielen << QString::fromStdString(profiel.naam);
    EXPECT_EQ(Nodes(tree), Verwacht(locaties, profielen));
}

TEST_F(BouwTest, ARunWithoutAFolderDoesNotAppear)
{
    db.AddNewResultaatRecord(db.AddBerekening("spook", 0, "OVERLOOP", 0), "Plas-03", 10);
    Bouw();
    EXPECT_FALSE(form->NodeExists("ROOTBEREKENINGEN\\spook"));
}

TEST_F(BouwTest, RootsTellTheirDatabase)
{
    EXPECT_EQ(Node("ROOTLOCATIES")->toolTip(0), "Locaties - boezem");
    EXPECT_FALSE(tree->accessibleName().isEmpty());
    EXPECT_FALSE(filter->accessibleName().isEmpty());
}

TEST_F(BouwTest, RemovingTheTreesLeavesNothing)
{
    Klik("ROOTLOCATIES\\Plas-01");
    form->RemoveRvwTrees();
    EXPECT_EQ(tree->topLevelItemCount(), 0);
    EXPECT_EQ(form->CurrentNode(), nullptr);
    EXPECT_EQ(form->LocatiesNode(), nullptr);
    EXPECT_FALSE(form->NodeExists(""));
    EXPECT_TRUE(host.Enabled().isEmpty());
    EXPECT_EQ(logViewer.shown, "");
    form->RemoveRvwTrees();
    form->ResetCurrentNode();
    form->ApplyNode(nullptr);
}

TEST_F(BouwTest, OpeningAgainBuildsTheTreesAnew)
{
    Klik("ROOTLOCATIES\\Plas-01");
    const QStringList before = Nodes(tree);
    MaakMapVanBerekening("Plas-05", "later");
    Bouw();
    EXPECT_EQ(Nodes(tree).size(), before.size() + 3) << "folder, calculation, and below the root";
    EXPECT_EQ(CurrentKey(), "ROOTLOCATIES");
}

TEST_F(BouwTest, AFreshProfileTreeFollowsTheDatabase)
{
    Klik("ROOTPROFIELEN\\Strekdam");
    db.DeleteProfiel("Strekdam");
    form->CreateProfielTree();
    EXPECT_FALSE(form->NodeExists("ROOTPROFIELEN\\Strekdam"));
    EXPECT_TRUE(form->NodeExists("ROOTPROFIELEN\\Gras 1op3"));
    EXPECT_EQ(form->CurrentNode(), nullptr) << "a node that is gone is not current";
    Klik("ROOTPROFIELEN\\Gras 1op3");
    form->CreateProfielTree();
    EXPECT_EQ(tree->currentItem(), Node("ROOTPROFIELEN\\Gras 1op3"));
}

TEST_F(BouwTest, OpenBranchesComeBackWithTheirDatabase)
{
    Node("ROOTLOCATIES\\Plas-02")->setExpanded(true);
    Node("ROOTPROFIELEN")->setExpanded(true);
    Node("ROOTLOCATIES")->setExpanded(false);
    form->RemoveRvwTrees();
    Bouw();
    EXPECT_TRUE(Node("ROOTPROFIELEN")->isExpanded());
    EXPECT_FALSE(Node("ROOTLOCATIES")->isExpanded());

    Node("ROOTLOCATIES")->setExpanded(true);
    Node("ROOTLOCATIES\\Plas-02")->setExpanded(true);
    form->RemoveRvwTrees();
    gIniFile().Save();
    Maak(); // the program starts again
    Bouw();
    EXPECT_TRUE(Node("ROOTLOCATIES\\Plas-02")->isExpanded());
    EXPECT_FALSE(Node("ROOTLOCATIES\\Plas-03")->isExpanded());
}

TEST_F(BouwTest, ADatabaseSeenForTheFirstTimeShowsItsLocations)
{
    EXPECT_TRUE(Node("ROOTLOCATIES")->isExpanded());
    EXPECT_FALSE(Node("ROOTPROFIELEN")->isExpanded());
}

TEST_F(BouwTest, AWorkFolderThatCannotBeReadGivesATreeWithoutCalculations)
{
    if (!Unprivileged::Works())
        GTEST_SKIP() << "needs an administrator who can give up his rights";
    QFile::setPermissions(db.WerkMap(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile::setPermissions(folder.Path().string().c_str(),
                          QFile::Permissions(0x7777)); // the database itself stays usable
    {
        const Unprivileged nobody;
        Bouw();
    }
    EXPECT_EQ(tree->topLevelItemCount(), 4);
    EXPECT_EQ(Node("ROOTBEREKENINGEN")->childCount(), 0);
    EXPECT_EQ(Node("ROOTLOCATIES")->childCount(), 24);
}

TEST_F(BouwTest, AMissingWorkFolderGivesATreeWithoutCalculations)
{
    QDir(db.WerkMap()).removeRecursively();
    Bouw();
    EXPECT_EQ(Node("ROOTBEREKENINGEN")->childCount(), 0);
    Klik("ROOTLOCATIES\\Plas-01");
    EXPECT_EQ(logViewer.shown, "");
}

TEST_F(BouwTest, ForeignFilesAndFoldersAreNotShown)
{
    Schrijf(InWerkmap("brief.doc"), "x");
    Schrijf(InWerkmap("Plas-01/berekeningen/readme.txt"), "x");
    QDir().mkpath(InWerkmap("van iemand anders/berekeningen/x"));
    QDir().mkpath(InWerkmap(".verborgen"));
    const QStringList before = Nodes(tree);
    Bouw();
    EXPECT_EQ(Nodes(tree), before);
}

} // namespace
