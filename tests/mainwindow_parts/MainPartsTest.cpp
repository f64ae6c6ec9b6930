#include "MainPartsFixture.h"
#include "calculation/ui/frmLog.h"
#include "geometry/MapLayer.h"

namespace {

TEST_F(MainPartsTest, AnOpenedDatabaseFillsTreeMapAndWorkFolder)
{
    Open();
    EXPECT_TRUE(messages.Texts().isEmpty()) << messages.Texts().join('\n').toStdString();
    EXPECT_EQ(TreeNames().size(), 24);
    EXPECT_EQ(panes->CurrentNodeKey(), "ROOTLOCATIES");
    EXPECT_EQ(window->windowTitle(), "Zandvoet - boezem");

    const MapLayer layer(db.WerkMap() + "/boezem.shp");
    ASSERT_TRUE(layer.Valid()) << layer.Error().toStdString();
    EXPECT_EQ(layer.shapeType(), MapLayer::Point);
    EXPECT_EQ(layer.ShapeCount(), 24U);
}

TEST_F(MainPartsTest, TheTreeHasTheLocationsInTheOrderOfTheirNames)
{
    db.reOpenDB(false);
    db.AddLocatie(120000, 480000, "Achterpolder"); // the last row
    db.AddLocatie(120000, 480000, "plas-01a");
    Open();
    const QStringList names = TreeNames();
    ASSERT_EQ(names.size(), 26);
    EXPECT_EQ(names[0], "Achterpolder");
    EXPECT_EQ(names.indexOf("plas-01a"), names.indexOf("Plas-01") + 1);
}

TEST_F(MainPartsTest, TheMapShowsAllLocationsWithAMargin)
{
    Open();
    const MapRectangle points = panes->Map().PointExtent();
    const MapRectangle view = panes->Map().Transform().Extent();
    EXPECT_LE(view.left, points.left - 1250); // a twentieth of 25 km at least
    EXPECT_GE(view.right, points.right + 1250);
    EXPECT_LE(view.bottom, points.bottom - 1250);
    EXPECT_GE(view.top, points.top + 1250);
}

TEST_F(MainPartsTest, ASecondDatabaseReplacesTheFirstAndItsSelection)
{
    const QString second = Second();
    Open();
    selection.AddALocation2Selection("Plas-02");
    window->OpenDatabase(second);
    EXPECT_TRUE(messages.Texts().isEmpty()) << messages.Texts().join('\n').toStdString();
    EXPECT_EQ(db.fileName(), second);
    EXPECT_EQ(TreeNames(), QStringList{"Plas-01"});
    EXPECT_FALSE(selection.HasSelectedNodes());
    EXPECT_TRUE(window->Labels().shown);
    EXPECT_EQ(window->windowTitle(), "Zandvoet - plas");
}

TEST_F(MainPartsTest, TheOpenDatabaseCanBeChosenAgain)
{
    Open();
    const QString path = First();
    SetFileChooser([path](QWidget*, const FileRequest&) { return path; });
    window->MenuAction("mnuFileOpen")->trigger();
    EXPECT_TRUE(messages.Texts().isEmpty()) << messages.Texts().join('\n').toStdString();
    EXPECT_TRUE(db.IsOpen());
    EXPECT_EQ(TreeNames().size(), 24);
}

TEST_F(MainPartsTest, GivingUpTheDialogKeepsTheDatabaseOpen)
{
    Open();
    SetFileChooser([](QWidget*, const FileRequest&) { return QString(); });
    window->MenuAction("mnuFileOpen")->trigger();
    EXPECT_TRUE(db.IsOpen());
    EXPECT_TRUE(MenuEnabled("mnuLocatie"));
    EXPECT_EQ(TreeNames().size(), 24);
}

TEST_F(MainPartsTest, AFileThatIsNoDatabaseIsToldAndLeavesTheOpenOne)
{
    Open();
    Schrijf(Pad("geen.mdb"), "tekst");
    window->OpenDatabase(Pad("geen.mdb"));
    EXPECT_EQ(boxes.fouten.size(), 1);
    EXPECT_EQ(db.fileName(), First());
    EXPECT_TRUE(db.IsOpen());
    EXPECT_EQ(TreeNames().size(), 24);
}

TEST_F(MainPartsTest, ClosingTakesAwayWhatIsShown)
{
    Open();
    selection.AddALocation2Selection("Plas-02");
    EXPECT_TRUE(window->CloseRandvoorwaarden());
    EXPECT_TRUE(TreeNames().isEmpty());
    EXPECT_FALSE(selection.HasSelectedNodes());
    EXPECT_EQ(panes->Map().PointExtent(), MapRectangle{});
    EXPECT_EQ(panes->CurrentNodeKey(), "");
}

TEST_F(MainPartsTest, ALocationClickedOnTheMapIsSelectedAndCurrent)
{
    Open();
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    panes->SelectTool(1, Qt::ArrowCursor);
    QTest::mouseClick(&panes->Map(), Qt::LeftButton, {}, PlaceOnMap("Plas-03"));
    EXPECT_EQ(selection.Namen(), QStringList{"Plas-03"});
    EXPECT_EQ(panes->CurrentNodeKey(), "ROOTLOCATIES\\Plas-03");
    EXPECT_TRUE(Enabled("mnuBerekeningStart"));
}

TEST_F(MainPartsTest, ACalculationCanBeStartedOnlyWithASelection)
{
    Open();
    Click("ROOTLOCATIES\\Plas-03");
    EXPECT_FALSE(Enabled("mnuBerekeningStart"));
}

TEST_F(MainPartsTest, TheCommandsOfACalculationFollowTheNode)
{
    db.reOpenDB(false);
    MaakBerekening("som", "Plas-01", "Gras 1op3");
    Open();
    EXPECT_FALSE(Enabled("mnuBerekeningFolder"));
    Click("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3");
    for (const char* menu : {"mnuBerekeningFolder", "mnuBerekeningInvoer", "mnuBerekeningDelete",
                             "mnuBerekeningRename"})
        EXPECT_TRUE(Enabled(menu)) << menu;
    EXPECT_FALSE(Enabled("mnuBerekeningGrafiekFaalfreq")); // no form yet
}

TEST_F(MainPartsTest, TheCheckOfTheSetUpTableWritesIntoTheLogPane)
{
    Open();
    const QString statusBefore = window->SetStatusBarText("");
    window->MenuAction("mnuExtraCheckScheefstand")->trigger();
    EXPECT_TRUE(messages.Texts().isEmpty()) << messages.Texts().join('\n').toStdString();
    EXPECT_TRUE(panes->Log().Box().Text().contains("Controle locatie Plas-01"));
    EXPECT_EQ(window->SetStatusBarText(""), statusBefore);
}

TEST_F(MainPartsTest, AWorkFolderThatCannotBeMadeIsToldAndTheDatabaseIsShown)
{
    Schrijf(Pad("boezem"), "a file stands where the work folder should be");
    Open();
    EXPECT_EQ(messages.Texts().size(), 1);
    EXPECT_EQ(TreeNames().size(), 24);
}

TEST_F(MainPartsTest, AShoreFileThatIsAwayIsNotForgotten)
{
    Oeverbestand oevers(strijklengte);
    oevers.SetPath(Pad("weg.shp"));
    EXPECT_EQ(oevers.Path(), Pad("weg.shp"));
}

} // namespace
