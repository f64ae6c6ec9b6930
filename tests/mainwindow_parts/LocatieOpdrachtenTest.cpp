// Commands on the selected locations, from the menu to database, tree, map and shape file.
#include "MainPartsFixture.h"

#include "frame/Busy.h"
#include "frame/Texts.h"
#include "geometry/MapLayer.h"

namespace {

class LocatieOpdrachtenTest : public MainPartsTest {
protected:
    void Kies(const QStringList& namen)
    {
        for (const QString& naam : namen)
            selection.AddALocation2Selection(naam);
        panes->Locaties().ApplySelectedLocations();
    }
    std::size_t PointsInShape() const
    {
        return MapLayer(db.WerkMap() + "/boezem.shp").ShapeCount();
    }
};

TEST_F(LocatieOpdrachtenTest, TheSelectedLocationsGoEverywhere)
{
    db.reOpenDB(false);
    MaakBerekening("som", "Plas-01", "Gras 1op3");
    Open();
    Kies({"Plas-01", "Plas-02"});
    const MapRectangle all = panes->Map().PointExtent();
    messages.Press("Ja");
    window->MenuAction("mnuLocatieDelete")->trigger();
    EXPECT_EQ(messages.Texts(), QStringList{QuestionText(3)});
    EXPECT_EQ(TreeNames().size(), 22);
    EXPECT_EQ(LeesLocatiePunten(db).locaties.size(), 22U);
    EXPECT_EQ(PointsInShape(), 22U);
    EXPECT_FALSE(selection.HasSelectedNodes());
    EXPECT_FALSE(panes->Locaties().NodeExists("ROOTBEREKENINGEN\\som"));
    EXPECT_FALSE(Enabled("mnuLocatieDelete"));
    window->MenuAction("mnuLocatieDelete")->trigger();
    EXPECT_EQ(messages.Texts().size(), 1) << "without a selection nothing is asked";

    Kies(TreeNames().mid(1));
    messages.Press("Ja");
    window->MenuAction("mnuLocatieDelete")->trigger();
    EXPECT_EQ(TreeNames().size(), 1);
    EXPECT_NE(panes->Map().PointExtent(), all) << "the map shows what is left";
    EXPECT_EQ(PointsInShape(), 1U);
}

TEST_F(LocatieOpdrachtenTest, TheCommandFollowsTheSelection)
{
    EXPECT_FALSE(Enabled("mnuLocatieDelete"));
    Open();
    EXPECT_FALSE(Enabled("mnuLocatieDelete"));
    Kies({"Plas-03"});
    EXPECT_TRUE(Enabled("mnuLocatieDelete"));
    for (const char* key :
         {"ROOTPROFIELEN", "ROOTDIJKRINGEN\\Ring Oost", "ROOTLOCATIES\\Plas-05"}) {
        Click(key);
        EXPECT_TRUE(Enabled("mnuLocatieDelete")) << key << ": the selection counts, not the node";
    }
    EXPECT_FALSE(Enabled("mnuLocatieProperties")) << "has no form yet";
    window->CloseRandvoorwaarden();
    EXPECT_FALSE(Enabled("mnuLocatieDelete"));
}

TEST_F(LocatieOpdrachtenTest, WithoutLocationsNoneCanBeAddedFromTheEditMenu)
{
    Open();
    window->setCommand("mnuBewerkenAddLocatie", [] {});
    EXPECT_TRUE(Enabled("mnuBewerkenAddLocatie"));
    Kies(TreeNames());
    messages.Press("Ja");
    window->MenuAction("mnuLocatieDelete")->trigger();
    EXPECT_TRUE(TreeNames().isEmpty());
    EXPECT_EQ(panes->CurrentNodeKey(), "ROOTLOCATIES");
    EXPECT_FALSE(Enabled("mnuBewerkenAddLocatie"));
    EXPECT_EQ(PointsInShape(), 0U);
}

TEST_F(LocatieOpdrachtenTest, NoAndAFailureKeepEverything)
{
    Voeruit(First(), {"DROP TABLE Scheefstand"});
    Open();
    Kies({"Plas-01", "Plas-02"});
    window->MenuAction("mnuLocatieDelete")->trigger(); // "no" is the default
    messages.Press("Ja");
    window->MenuAction("mnuLocatieDelete")->trigger();
    ASSERT_EQ(messages.Texts().size(), 3);
    EXPECT_TRUE(messages.Texts()[2].startsWith(FoutText(1520, {""}).trimmed()))
        << messages.Texts()[2].toStdString();
    EXPECT_EQ(TreeNames().size(), 24);
    EXPECT_EQ(PointsInShape(), 24U);
    EXPECT_EQ(selection.Namen(), (QStringList{"Plas-01", "Plas-02"}));
    EXPECT_EQ(BusyCount(), 0);
}

TEST_F(LocatieOpdrachtenTest, AProfileGoesToTheSelectionAndARefusalIsTold)
{
    Open();
    Kies({"Plas-01", "Plas-04", "Plas-05"}); // the second has it
    Click("ROOTPROFIELEN\\Strekdam");
    window->MenuAction("mnuProfielAssign2SelectedLocations")->trigger();
    EXPECT_EQ(messages.Texts().size(), 1);
    EXPECT_TRUE(panes->Locaties().NodeExists("ROOTLOCATIES\\Plas-01\\profielen\\Strekdam"));
    EXPECT_FALSE(panes->Locaties().NodeExists("ROOTLOCATIES\\Plas-05\\profielen\\Strekdam"));
}

} // namespace
