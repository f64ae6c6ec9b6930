#include "navigation/OpenBranches.h"

#include "database/WerkmapFixture.h"
#include "frame/QLMIniFile.h"
#include "navigation/NavTree.h"
#include "navigation/TreeFilter.h"

#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace {

class OpenBranchesTest : public WerkmapTest {
protected:
    OpenBranchesTest()
    {
        tree.setTreeViewObject(&view);
        auto* locaties = tree.AddRoot("ROOTLOCATIES", "Locaties", false);
        tree.addLocatiesFromDb2Root(locaties, Locaties());
        tree.addProfielenFromDb2Locaties(locaties);
        tree.AddRoot("ROOTPROFIELEN", "Profielen", false);
        tree.addProfielenFromDb2Root(tree.GetNodeByKey("ROOTPROFIELEN"), db.GetProfielNamen());
    }
    void Open(const QString& key) { tree.GetNodeByKey(key)->setExpanded(true); }

    QLMIniFile ini{Pad("Zandvoet.ini")};
    OpenBranches branches{ini};
    QTreeWidget view;
    NavTree tree{db};
};

TEST_F(OpenBranchesTest, AreRememberedPerDatabase)
{
    Open("ROOTLOCATIES");
    Open("ROOTLOCATIES\\Plas-02");
    Open("ROOTLOCATIES\\Plas-02\\profielen");
    const QStringList open = OpenBranches::OfTree(tree);
    EXPECT_EQ(open, (QStringList{"ROOTLOCATIES", "ROOTLOCATIES\\Plas-02",
                                 "ROOTLOCATIES\\Plas-02\\profielen"}));
    branches.Write(Pad("a.mdb"), open);
    branches.Write(Pad("b.mdb"), {"ROOTPROFIELEN"});
    EXPECT_EQ(branches.Read(Pad("a.mdb")), open);
    EXPECT_EQ(branches.Read(Pad("b.mdb")), QStringList{"ROOTPROFIELEN"});
    EXPECT_TRUE(branches.Read(Pad("c.mdb")).isEmpty());

    view.collapseAll();
    OpenBranches::Apply(tree, branches.Read(Pad("a.mdb")) + QStringList{"ROOTLOCATIES\\Weg"});
    EXPECT_EQ(OpenBranches::OfTree(tree), open);
}

TEST_F(OpenBranchesTest, OfTheLastTwentyDatabases)
{
    for (int i = 1; i <= 21; ++i)
        branches.Write(Pad("db" + std::to_string(i) + ".mdb"), {"ROOTLOCATIES"});
    EXPECT_TRUE(branches.Read(Pad("db1.mdb")).isEmpty());
    EXPECT_FALSE(branches.Read(Pad("db2.mdb")).isEmpty());
    branches.Write(Pad("db2.mdb"), {"ROOTPROFIELEN"}); // used again
    branches.Write(Pad("db22.mdb"), {"ROOTLOCATIES"});
    EXPECT_TRUE(branches.Read(Pad("db3.mdb")).isEmpty());
    EXPECT_EQ(branches.Read(Pad("db2.mdb")), QStringList{"ROOTPROFIELEN"});
}

using TreeFilterTest = OpenBranchesTest;

QStringList Shown(const QTreeWidget& view)
{
    QStringList texts;
    QTreeWidgetItemIterator node(const_cast<QTreeWidget*>(&view),
                                 QTreeWidgetItemIterator::NotHidden);
    for (; *node; ++node) {
        bool reachable = true;
        for (auto* above = (*node)->parent(); above; above = above->parent())
            reachable = reachable && above->isExpanded();
        if (reachable)
            texts << (*node)->text(0);
    }
    return texts;
}

TEST_F(TreeFilterTest, ShowsWhatMatchesAndTheWayToIt)
{
    TreeFilter filter(tree);
    EXPECT_EQ(filter.Apply("KAAL"), 2);
    EXPECT_EQ(Shown(view), (QStringList{"Locaties", "Vaart-1", "Profielen", "Damwand kaal",
                                        "Profielen", "Damwand kaal"}));
    EXPECT_EQ(filter.Apply("vaart-"), 4);
    EXPECT_EQ(Shown(view),
              (QStringList{"Locaties", "Vaart-1", "Vaart-2", "Vaart-3", "Vaart-4", "Profielen"}))
        << "what hangs below a match is there, behind its closed branch";
    EXPECT_FALSE(tree.GetNodeByKey("ROOTLOCATIES\\Vaart-1\\profielen\\Damwand kaal")->isHidden());
    EXPECT_EQ(filter.Apply("komt niet voor"), 0);
    EXPECT_EQ(Shown(view), (QStringList{"Locaties", "Profielen"}));
}

TEST_F(TreeFilterTest, FolderNamesAreNoMatch)
{
    TreeFilter filter(tree);
    EXPECT_EQ(filter.Apply("profielen"), 0);
}

TEST_F(TreeFilterTest, ChangesNoKeysAndGivesTheBranchesBack)
{
    Open("ROOTPROFIELEN");
    Open("ROOTLOCATIES\\Plas-02");
    QStringList keys;
    for (QTreeWidgetItemIterator node(&view); *node; ++node)
        keys << NavTree::Key(*node);
    TreeFilter filter(tree);
    filter.Apply("gras");
    filter.Apply("damwand");
    EXPECT_TRUE(filter.IsActive());
    EXPECT_EQ(filter.BranchesBefore(), QStringList{"ROOTPROFIELEN"});
    filter.Apply("  ");
    EXPECT_FALSE(filter.IsActive());
    QStringList after;
    for (QTreeWidgetItemIterator node(&view); *node; ++node) {
        after << NavTree::Key(*node);
        EXPECT_FALSE((*node)->isHidden());
    }
    EXPECT_EQ(after, keys);
    EXPECT_EQ(OpenBranches::OfTree(tree), QStringList{"ROOTPROFIELEN"});
}

} // namespace
