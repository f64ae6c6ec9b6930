#include "navigation/LocationClicks.h"

#include "database/WerkmapFixture.h"
#include "navigation/MapSelection.h"
#include "navigation/NavTree.h"

#include <QTreeWidget>

namespace {

/// The example's locations Plas-01, Plas-02 and so on, each with profiles below it.
class LocationClicksTest : public WerkmapTest {
protected:
    LocationClicksTest()
    {
        tree.setTreeViewObject(&view);
        root = tree.AddRoot("ROOTLOCATIES", "Locaties", false);
        tree.addLocatiesFromDb2Root(root, Locaties());
        tree.addProfielenFromDb2Locaties(root);
    }
    QTreeWidgetItem* Plas(int number) const { return root->child(number - 1); }
    /// The numbers of the selected locations after a click on one of them.
    std::vector<int> After(int number, Qt::KeyboardModifiers modifiers = {})
    {
        EXPECT_TRUE(clicks.Click(Plas(number), modifiers));
        return Selected();
    }
    std::vector<int> Selected() const
    {
        std::vector<int> numbers;
        for (const QString& naam : selection.Namen())
            numbers.push_back(naam.right(2).toInt());
        return numbers;
    }

    using Numbers = std::vector<int>;
    static constexpr auto kControl = Qt::ControlModifier;
    static constexpr auto kShift = Qt::ShiftModifier;
    QTreeWidget view;
    NavTree tree{db};
    QTreeWidgetItem* root = nullptr;
    MapSelection selection;
    LocationClicks clicks{tree, selection};
};

TEST_F(LocationClicksTest, APlainClickSelectsOneLocation)
{
    EXPECT_EQ(After(3), Numbers{3});
    EXPECT_EQ(After(5), Numbers{5});
    EXPECT_EQ(After(5), Numbers{5});
}

TEST_F(LocationClicksTest, ControlAddsAndTakesOut)
{
    After(3);
    EXPECT_EQ(After(5, kControl), (Numbers{3, 5}));
    EXPECT_EQ(After(3, kControl), Numbers{5});
    EXPECT_EQ(After(5, kControl), Numbers{}) << "the last one too";
}

TEST_F(LocationClicksTest, ShiftSelectsFromTheLastClickInEitherDirection)
{
    After(4);
    EXPECT_EQ(After(6, kShift), (Numbers{4, 5, 6}));
    EXPECT_EQ(After(2, kShift), (Numbers{2, 3, 4})) << "from the same place";
    EXPECT_EQ(After(4, kShift), Numbers{4});
    After(8, kControl);
    EXPECT_EQ(After(9, kShift), (Numbers{8, 9})) << "the range replaces the selection";
}

TEST_F(LocationClicksTest, ControlAndShiftAddTheRange)
{
    After(2);
    After(5, kControl);
    EXPECT_EQ(After(7, kControl | kShift), (Numbers{2, 5, 6, 7}));
}

TEST_F(LocationClicksTest, ARangeBeginsWhereTheUserWentWithoutSelecting)
{
    clicks.StartAt(Plas(2));
    clicks.StartAt(Plas(2)->child(0)); // a folder is no place to begin at
    EXPECT_EQ(After(4, kShift), (Numbers{2, 3, 4}));
}

TEST_F(LocationClicksTest, ShiftAloneWithoutABeginningSelectsOne)
{
    EXPECT_EQ(After(4, kShift), Numbers{4});
    EXPECT_EQ(After(6, kShift), (Numbers{4, 5, 6}));
    tree.Remove(Plas(4));
    EXPECT_EQ(After(7, kShift), Numbers{8}) << "the beginning is gone: Plas-08 stands there now";
}

TEST_F(LocationClicksTest, WhatTheFilterHidesIsNotSelected)
{
    Plas(3)->setHidden(true);
    After(2);
    EXPECT_EQ(After(4, kShift), (Numbers{2, 4}));
    clicks.SelectAll();
    EXPECT_EQ(selection.AantalLocaties(), 23);
    EXPECT_FALSE(selection.IsSelectedLocation("Plas-03"));
}

TEST_F(LocationClicksTest, OtherNodesChangeNothing)
{
    After(3);
    EXPECT_FALSE(clicks.Click(root, kControl));
    EXPECT_FALSE(clicks.Click(Plas(1)->child(0), kShift));
    EXPECT_FALSE(clicks.Click(nullptr, {}));
    EXPECT_EQ(Selected(), Numbers{3});
}

TEST_F(LocationClicksTest, WithoutLocationsNothingCanBeSelected)
{
    tree.RemoveRoot("ROOTLOCATIES");
    selection.AddALocation2Selection("Plas-03");
    clicks.SelectAll();
    EXPECT_FALSE(selection.HasSelectedNodes());
}

} // namespace
