#include "navigation/MapSelection.h"

#include "database/WerkmapFixture.h"
#include "navigation/NavTree.h"

#include <QTreeWidget>

namespace {

TEST(MapSelectionTest, HoldsNamesFromOneWithoutDoubles)
{
    MapSelection selection;
    EXPECT_FALSE(selection.HasSelectedNodes());
    selection.AddALocation2Selection("Plas-02");
    selection.AddALocation2Selection("Plas-01");
    selection.AddALocation2Selection("PLAS-02");
    selection.AddALocation2Selection("");
    EXPECT_TRUE(selection.HasSelectedNodes());
    EXPECT_EQ(selection.AantalLocaties(), 2);
    EXPECT_EQ(selection.GetLocatieNaam(1), "Plas-02");
    EXPECT_EQ(selection.GetLocatieNaam(2), "Plas-01");
    EXPECT_EQ(selection.GetLocatieNaam(0), "");
    EXPECT_EQ(selection.GetLocatieNaam(3), "");
    EXPECT_TRUE(selection.IsSelectedLocation("plas-01"));
    EXPECT_FALSE(selection.IsSelectedLocation("Plas-03"));
    selection.ResetSelectie();
    EXPECT_FALSE(selection.HasSelectedNodes());
    EXPECT_FALSE(selection.IsSelectedLocation("Plas-01"));
}

TEST(MapSelectionTest, ALocationCanBeTakenOut)
{
    MapSelection selection;
    for (const char* naam : {"A", "B", "C"})
        selection.AddALocation2Selection(naam);
    selection.RemoveALocationFromSelection("b");
    selection.RemoveALocationFromSelection("onbekend");
    EXPECT_EQ(selection.Namen(), (QStringList{"A", "C"}));
    EXPECT_FALSE(selection.IsSelectedLocation("B"));
    selection.AddALocation2Selection("B");
    EXPECT_EQ(selection.GetLocatieNaam(3), "B");
}

TEST(MapSelectionTest, TheExpressionIsAChainOfAlternatives)
{
    MapSelection selection;
    EXPECT_EQ(selection.SearchExpression(), "");
    EXPECT_EQ(selection.SearchExpressionWithKwal(1), "");
    selection.AddALocation2Selection("A");
    EXPECT_EQ(selection.SearchExpression(), "OMSCHR= 'A'");
    selection.AddALocation2Selection("B");
    selection.AddALocation2Selection("'s-Graveland");
    EXPECT_EQ(selection.SearchExpression(), "OMSCHR= 'A' OR OMSCHR= 'B' OR OMSCHR= ''s-Graveland'");
    EXPECT_EQ(selection.SearchExpressionWithKwal(2),
              "KWAL=2 AND (OMSCHR= 'A' OR OMSCHR= 'B' OR OMSCHR= ''s-Graveland')");
}

class MapSelectionTreeTest : public WerkmapTest {
protected:
    MapSelectionTreeTest()
    {
        tree.setTreeViewObject(&view);
        tree.addLocatiesFromDb2Root(tree.AddRoot("ROOTLOCATIES", "Locaties", false), Locaties());
    }
    QStringList Gekleurd() const
    {
        QStringList names;
        const auto* root = tree.GetNodeByKey("ROOTLOCATIES");
        for (int i = 0; i < root->childCount(); ++i)
            if (MapSelection::IsPreselected(root->child(i)))
                names << root->child(i)->text(0);
        return names;
    }
    QTreeWidget view;
    NavTree tree{db};
    MapSelection selection;
};

TEST_F(MapSelectionTreeTest, TakesTheNamesOfRecords)
{
    const auto records = Locaties();
    selection.AddLocationsFromRecordset2Selection(*records);
    EXPECT_EQ(selection.AantalLocaties(), 24);
    EXPECT_EQ(selection.GetLocatieNaam(1), "Plas-01");
}

TEST_F(MapSelectionTreeTest, SelectedLocationsAreYellowAndTheOthersNot)
{
    selection.AddALocation2Selection("plas-03");
    selection.AddALocation2Selection("Vaart-1");
    selection.AddALocation2Selection("Niet in de boom");
    selection.ColorSelectionInTreeView(tree);
    EXPECT_EQ(Gekleurd(), (QStringList{"Plas-03", "Vaart-1"}));
    const QColor colour = tree.GetNodeByKey("ROOTLOCATIES\\Plas-03")->background(0).color();
    EXPECT_EQ(colour.red() + 256 * colour.green() + 65536 * colour.blue(), 65535);

    selection.ResetSelectie();
    selection.AddALocation2Selection("Plas-04");
    selection.ColorSelectionInTreeView(tree);
    EXPECT_EQ(Gekleurd(), QStringList{"Plas-04"});
    EXPECT_EQ(tree.GetNodeByKey("ROOTLOCATIES\\Plas-03")->background(0).style(), Qt::NoBrush);
}

TEST_F(MapSelectionTreeTest, SelectedLocationsAreReadableAndSpoken)
{
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    view.setPalette(dark);
    selection.AddALocation2Selection("Plas-03");
    selection.ColorSelectionInTreeView(tree, "Geselecteerd");
    const auto* node = tree.GetNodeByKey("ROOTLOCATIES\\Plas-03");
    EXPECT_EQ(node->foreground(0).color(), QColor(Qt::black)) << "on yellow, in any theme";
    EXPECT_EQ(node->data(0, Qt::AccessibleDescriptionRole).toString(), "Geselecteerd");
    selection.ResetSelectie();
    selection.ColorSelectionInTreeView(tree, "Geselecteerd");
    EXPECT_EQ(node->foreground(0).style(), Qt::NoBrush) << "the theme's own colour again";
    EXPECT_EQ(node->data(0, Qt::AccessibleDescriptionRole).toString(), "");
}

TEST_F(MapSelectionTreeTest, WithoutALocationsRootNothingIsColoured)
{
    tree.RemoveRoot("ROOTLOCATIES");
    selection.AddALocation2Selection("Plas-03");
    selection.ColorSelectionInTreeView(tree);
    EXPECT_TRUE(selection.HasSelectedNodes());
}

} // namespace
