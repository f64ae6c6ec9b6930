#include "MainWindowTools.h"
#include "frame/Fouten.h"
#include "frame/Texts.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QScreen>
#include <QSignalSpy>
#include <QSplitter>
#include <QToolBar>
#include <gtest/gtest.h>

namespace {

class frmMainTest : public MainWindowTest {
protected:
    QSplitter* Rows() const { return m_window->findChild<QSplitter*>("splRows"); }
    QSplitter* Upper() const { return m_window->findChild<QSplitter*>("splUpper"); }
    static double Share(const QSplitter* splitter)
    {
        const QList<int> sizes = splitter->sizes();
        return sizes[0] / double(sizes[0] + sizes[1]);
    }
    /// Moves a divider as a user's mouse does.
    static void Drag(QSplitter* splitter, QPoint by)
    {
        QSplitterHandle* handle = splitter->handle(1);
        const QPoint from = handle->rect().center();
        QTest::mousePress(handle, Qt::LeftButton, {}, from);
        QTest::mouseMove(handle, from + by);
        QMouseEvent move(QEvent::MouseMove, from + by, handle->mapToGlobal(from + by), Qt::NoButton,
                         Qt::LeftButton, {});
        QApplication::sendEvent(handle, &move);
        QTest::mouseRelease(handle, Qt::LeftButton, {}, from);
    }
};

TEST_F(frmMainTest, LoadTranslatesAndIsTheOnlyWayToBeLoaded)
{
    m_window = std::make_unique<frmMain>();
    EXPECT_FALSE(m_window->IsLoaded());
    Load();
    EXPECT_TRUE(m_window->IsLoaded());
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
    EXPECT_EQ(m_window->windowTitle(),
              "Zandvoet - Toetsen en ontwerpen van regionale waterkeringen");
    EXPECT_EQ(m_window->MenuAction("mnuDijkringCopy")->text(), QString::fromUtf8("&Kopiëren"));
    EXPECT_EQ(m_map.calls, (QStringList{"lagen", "ververs"}));
    EXPECT_EQ(m_browser.resets, 1);
}

TEST_F(frmMainTest, AFailureOfTheLoadIsReportedAndLeavesItUnloaded)
{
    class BrokenMap : public FakeMap {
        void AddAchtergrondLayers() override { RaiseFout(9000, {"kaart"}); }
    } broken;
    m_window = std::make_unique<frmMain>();
    m_window->setMapPane(new QWidget, &broken);
    m_window->Load();
    EXPECT_FALSE(m_window->IsLoaded());
    EXPECT_EQ(m_boxes.Texts(), QStringList{FoutText(9000, {"kaart"})});
}

TEST_F(frmMainTest, WithoutADatabaseOnlyFileViewAndHelpAreOn)
{
    Load();
    for (const QMenu* menu : m_window->menuBar()->findChildren<QMenu*>()) {
        const QString name = menu->objectName();
        const bool always = name == "mnuFile" || name == "mnuView" || name == "mnuHelp";
        EXPECT_EQ(menu->menuAction()->isEnabled(), always) << name.toStdString();
    }
    OpenDatabase();
    for (const QMenu* menu : m_window->menuBar()->findChildren<QMenu*>())
        EXPECT_TRUE(menu->menuAction()->isEnabled()) << menu->objectName().toStdString();
}

TEST_F(frmMainTest, SaveSaveAsAndPasteAreOff)
{
    Load();
    for (const char* name : {"mnuFileSave", "mnuFileSaveAs", "mnuDijkringPaste"}) {
        m_window->setCommand(name, [] {});
        OpenDatabase();
        EXPECT_FALSE(Enabled(name)) << name;
    }
}

TEST_F(frmMainTest, ACommandIsOnWhenItHasWorkADatabaseAndTheNodesConsent)
{
    Load();
    EXPECT_FALSE(Enabled("mnuLocatieBoezempeil"));
    int runs = 0;
    m_window->setCommand("mnuLocatieBoezempeil", [&] { ++runs; });
    EXPECT_FALSE(Enabled("mnuLocatieBoezempeil"));
    OpenDatabase();
    EXPECT_TRUE(Enabled("mnuLocatieBoezempeil"));
    m_window->setCommandEnabled("mnuLocatieBoezempeil", false);
    EXPECT_FALSE(Enabled("mnuLocatieBoezempeil"));
    m_window->setCommandEnabled("mnuLocatieBoezempeil", true);
    m_window->MenuAction("mnuLocatieBoezempeil")->trigger();
    EXPECT_EQ(runs, 1);
}

TEST_F(frmMainTest, AnUnknownCommandIsAMistakeOfTheCaller)
{
    Load();
    EXPECT_THROW(m_window->setCommand("mnuBestaatNiet", [] {}), std::invalid_argument);
    EXPECT_THROW(m_window->setCommandEnabled("mnuFile", true), std::invalid_argument);
}

TEST_F(frmMainTest, ACommandThatFailsEndsInOneBox)
{
    Load();
    OpenDatabase();
    m_window->setCommand("mnuLocatieAdd", [] { RaiseFout(5003); });
    m_window->MenuAction("mnuLocatieAdd")->trigger();
    EXPECT_EQ(m_boxes.Texts(), QStringList{FoutText(5003)});
}

TEST_F(frmMainTest, AddingFromTheEditMenuFollowsTheLocations)
{
    Load();
    m_window->setCommand("mnuBewerkenAddLocatie", [] {});
    OpenDatabase();
    EXPECT_FALSE(Enabled("mnuBewerkenAddLocatie"));
    EXPECT_FALSE(m_window->findChild<QAction*>("mnuBewerkenSep2")->isEnabled());
    m_browser.hasLocations = true;
    m_window->UpdateMenus();
    EXPECT_TRUE(Enabled("mnuBewerkenAddLocatie"));
    EXPECT_TRUE(m_window->findChild<QAction*>("mnuBewerkenSep2")->isEnabled());
}

TEST_F(frmMainTest, ControlAndOOpensADatabaseFromAnywhere)
{
    Load();
    auto* pane = new QLineEdit;
    m_window->setLogPane(pane);
    Show();
    pane->setFocus();
    QTest::keyClick(pane, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(m_database.askedTitle, "Database met randvoorwaarden openen");
    EXPECT_EQ(m_database.askedFolder, m_installation.Path("data/databases"));
}

TEST_F(frmMainTest, ExtraOptionsNeedTheExactValue)
{
    m_installation.Set("Algemeen", "ExtraOpties", "rw");
    gIniFile.Set(std::make_shared<QLMIniFile>());
    Load();
    EXPECT_FALSE(gExtraOpties());
    m_installation.Set("Algemeen", "ExtraOpties", "RW");
    gIniFile.Set(std::make_shared<QLMIniFile>());
    Load();
    EXPECT_TRUE(gExtraOpties());
    SetExtraOpties(false);
}

// Toolbar

TEST_F(frmMainTest, AMapToolStaysDownAloneAndGivesTheMapItsPointer)
{
    Load();
    EXPECT_EQ(m_window->GetChekedButton(), 0);
    m_window->ToolbarsClick(2);
    EXPECT_EQ(m_window->GetChekedButton(), 2);
    EXPECT_TRUE(m_map.calls.contains("gereedschap 4"));
    EXPECT_EQ(m_map.pointer.shape(), Qt::OpenHandCursor);
    EXPECT_TRUE(m_window->MenuAction("mnuBewerkenItem_2")->isChecked());
    EXPECT_FALSE(m_window->MenuAction("mnuBewerkenItem_0")->isChecked());
    EXPECT_FALSE(m_window->ToolbarAction(0)->isChecked());
}

TEST_F(frmMainTest, TheEditMenuChoosesTheSameTools)
{
    Load();
    OpenDatabase();
    m_window->MenuAction("mnuBewerkenItem_3")->trigger();
    EXPECT_EQ(m_window->GetChekedButton(), 3);
    EXPECT_TRUE(m_map.calls.contains("gereedschap 5"));
}

TEST_F(frmMainTest, AButtonOutsideTheToolbarDoesNothing)
{
    Load();
    m_map.calls.clear();
    m_window->ToolbarsClick(12);
    m_window->ToolbarsClick(-1);
    EXPECT_TRUE(m_map.calls.isEmpty());
}

TEST_F(frmMainTest, TheProfileButtonEditsAProfileAndElseMakesOne)
{
    Load();
    OpenDatabase();
    QStringList runs;
    m_window->setCommand("mnuProfielEdit", [&] { runs.append("edit"); });
    m_window->setCommand("mnuProfielAdd", [&] { runs.append("nieuw"); });
    const int button = m_window->GetButtonIndexByIconIndex(8);
    m_browser.tag = "LOCATIE";
    m_window->ToolbarsClick(button);
    m_browser.tag = "PROFIEL";
    m_window->ToolbarsClick(button);
    EXPECT_EQ(runs, (QStringList{"nieuw", "edit"}));
}

TEST_F(frmMainTest, TheRingButtonWorksOnARingOnly)
{
    Load();
    OpenDatabase();
    int runs = 0;
    m_window->setCommand("mnuDijkringEdit", [&] { ++runs; });
    m_browser.tag = "LOCATIE";
    m_window->ToolbarsClick(m_window->GetButtonIndexByIconIndex(9));
    EXPECT_EQ(runs, 0);
    m_browser.tag = "DIJKRING";
    m_window->ToolbarsClick(m_window->GetButtonIndexByIconIndex(9));
    EXPECT_EQ(runs, 1);
}

TEST_F(frmMainTest, ButtonsFollowTheirMenuEntries)
{
    Load();
    QAction* button = m_window->ToolbarAction(m_window->GetButtonIndexByIconIndex(11));
    EXPECT_FALSE(button->isEnabled());
    m_window->setCommand("mnuBerekeningUitvoer", [] {});
    OpenDatabase();
    EXPECT_TRUE(button->isEnabled());
    m_window->SetEnableButton(11, false);
    EXPECT_FALSE(button->isEnabled());
    EXPECT_TRUE(Enabled("mnuBerekeningUitvoer"));
    m_window->SetEnableButton(11, true);
    EXPECT_TRUE(button->isEnabled());
    m_window->SetEnableButton(99, true); // no such button
}

TEST_F(frmMainTest, TipsAreFixedOrTheCaptionOfTheEntry)
{
    Load();
    EXPECT_EQ(m_window->ToolbarAction(3)->toolTip(), "Zoom in");
    EXPECT_EQ(m_window->ToolbarAction(7)->toolTip(), "Profiel bewerken");
    EXPECT_EQ(m_window->ToolbarAction(8)->toolTip(), "Dijkring bewerken");
    EXPECT_EQ(m_window->ToolbarAction(5)->toolTip(), "Kaartlagen");
    for (int i = 0; i < 12; ++i)
        EXPECT_FALSE(m_window->ToolbarAction(i)->toolTip().isEmpty()) << i;
}

TEST_F(frmMainTest, LabelsToggledOffStayOffBehindARestart)
{
    Load();
    const int button = m_window->GetButtonIndexByIconIndex(13);
    EXPECT_TRUE(m_window->ToolbarAction(button)->isChecked());
    m_window->ToolbarsClick(button);
    EXPECT_EQ(m_map.calls.last(), "namen uit");
    EXPECT_EQ(gIniFile().GetString("LABELS", "STATUS"), "UIT");
    Load();
    EXPECT_FALSE(m_window->Labels().shown);
    EXPECT_FALSE(m_window->ToolbarAction(button)->isChecked());
    m_window->ToolbarsClick(button);
    EXPECT_EQ(gIniFile().GetString("LABELS", "STATUS"), "AAN");
}

TEST_F(frmMainTest, WithoutPanesTheirCommandsAreOff)
{
    m_withPanes = false;
    Load();
    EXPECT_TRUE(m_window->IsLoaded());
    for (int i = 0; i < 12; ++i)
        EXPECT_FALSE(m_window->ToolbarAction(i)->isEnabled()) << i;
    EXPECT_FALSE(Enabled("mnuFileOpen"));
    EXPECT_TRUE(Enabled("mnuFileExit"));
    m_window->Initialiseer();
    EXPECT_TRUE(m_boxes.Texts().isEmpty());
}

// Panes, place and status bar

TEST_F(frmMainTest, TheWindowCannotBeMadeTooSmall)
{
    Load();
    Show();
    m_window->resize(100, 100);
    EXPECT_GE(m_window->width() * 15, 11000);
    EXPECT_GE(m_window->height() * 15, 8000);
    EXPECT_LT(m_window->width() * 15, 11015);
}

TEST_F(frmMainTest, PanesTakeTheirFactors)
{
    Load();
    Show();
    EXPECT_NEAR(Share(Rows()), 0.8, 0.01);
    EXPECT_NEAR(Share(Upper()), 0.65, 0.01);
}

TEST_F(frmMainTest, AResizeByItselfDoesNotChangeTheFactors)
{
    Load();
    Show();
    for (const QSize size : {QSize(1100, 900), QSize(740, 540), QSize(999, 701)}) {
        m_window->resize(size);
        QCoreApplication::processEvents();
        EXPECT_NEAR(Share(Rows()), 0.8, 0.01);
    }
    EXPECT_EQ(m_sizes.GetHeightFactor(1), 0.8);
    EXPECT_EQ(m_sizes.GetWidthFactor(1), 0.65);
}

TEST_F(frmMainTest, ADraggedDividerIsKeptThroughResizeAndRestart)
{
    Load();
    Show();
    Drag(Upper(), QPoint(-120, 0));
    const double width = m_sizes.GetWidthFactor(1);
    EXPECT_LT(width, 0.6);
    EXPECT_NEAR(Share(Upper()), width, 0.01);
    m_window->resize(1200, 800);
    EXPECT_NEAR(Share(Upper()), width, 0.01);
    m_window->close();
    m_sizes = PaneSizes();
    Load();
    Show();
    EXPECT_NEAR(m_sizes.GetWidthFactor(1), width, 1e-9);
    EXPECT_NEAR(Share(Upper()), width, 0.01);
    EXPECT_EQ(m_sizes.GetHeightFactor(3), 0.3);
}

TEST_F(frmMainTest, HidingAPaneDoesNotChangeTheFactors)
{
    Load();
    Show();
    QWidget* log = m_window->findChild<QWidget*>("pneLog");
    m_window->MenuAction("mnuViewLog")->trigger();
    EXPECT_FALSE(log->isVisible());
    m_window->MenuAction("mnuViewTopo")->trigger();
    m_window->MenuAction("mnuViewPunten")->trigger();
    m_window->MenuAction("mnuViewLog")->trigger();
    EXPECT_TRUE(log->isVisible());
    m_window->MenuAction("mnuViewTopo")->trigger();
    m_window->MenuAction("mnuViewPunten")->trigger();
    EXPECT_NEAR(Share(Rows()), 0.8, 0.01);
    EXPECT_NEAR(Share(Upper()), 0.65, 0.01);
    EXPECT_EQ(m_sizes.GetWidthFactor(1), 0.65);
}

TEST_F(frmMainTest, AHiddenToolbarStaysHiddenBehindARestart)
{
    Load();
    Show();
    m_window->MenuAction("mnuViewToolbarsTopo")->trigger();
    EXPECT_FALSE(m_window->findChild<QToolBar*>()->isVisible());
    m_window->close();
    EXPECT_EQ(gIniFile().GetString("SETTINGS", "frmMainToolbarState"), "0");
    Load();
    Show();
    EXPECT_FALSE(m_window->findChild<QToolBar*>()->isVisible());
    EXPECT_FALSE(m_window->MenuAction("mnuViewToolbarsTopo")->isChecked());
}

TEST_F(frmMainTest, TheWindowComesBackWhereItWas)
{
    Load();
    Show();
    m_window->move(20, 10);
    m_window->resize(760, 580);
    m_window->close();
    Load();
    EXPECT_EQ(m_window->pos(), QPoint(20, 10));
    EXPECT_EQ(m_window->size(), QSize(760, 580));
}

TEST_F(frmMainTest, ActivationBringsTheCurrentNodeIntoView)
{
    Load();
    Show();
    EXPECT_GT(m_browser.ensured, 0);
}

TEST_F(frmMainTest, TheStatusBarShowsTextsAndKeepsThemForABlankOne)
{
    Load();
    EXPECT_EQ(m_window->SetStatusBarText("eerste"), "");
    EXPECT_EQ(m_window->SetStatusBarText("  "), "eerste");
    EXPECT_EQ(m_window->SetStatusBarTextByNumber("0"), "eerste");
    EXPECT_EQ(m_window->SetStatusBarTextByNumber("1"), "eerste");
    EXPECT_EQ(m_window->SetStatusBarText(""), "Gereed");
}

TEST_F(frmMainTest, CoordinatesAndProgressHaveTheirPlace)
{
    Load();
    Show();
    m_window->XYToPane(123456.5, -1.4);
    QStringList texts;
    for (const QLabel* label : m_window->statusBar()->findChildren<QLabel*>())
        texts.append(label->text());
    EXPECT_TRUE(texts.contains("x = 123457, y = -1"));
    auto* progress = m_window->findChild<QProgressBar*>();
    EXPECT_FALSE(progress->isVisible());
    m_window->ShowProgress(10);
    m_window->SetProgress(4);
    EXPECT_TRUE(progress->isVisible());
    EXPECT_EQ(progress->value(), 4);
    m_window->HideProgress();
    EXPECT_FALSE(progress->isVisible());
}

TEST_F(frmMainTest, ALongStatusTextDoesNotWidenTheWindow)
{
    Load();
    Show();
    const int width = m_window->width();
    m_window->SetStatusBarText(QString(2000, 'x'));
    QCoreApplication::processEvents();
    EXPECT_EQ(m_window->width(), width);
    EXPECT_LE(m_window->minimumSizeHint().width(), width);
}

TEST_F(frmMainTest, TheFirstStartFitsTheScreen)
{
    Load();
    const QSize room = m_window->screen()->availableSize();
    EXPECT_LE(m_window->width(), room.width());
    EXPECT_LE(m_window->height(), room.height());
}

TEST_F(frmMainTest, OneToolOfTheMapIsMarkedInTheMenu)
{
    Load();
    m_window->ToolbarsClick(0);
    OpenDatabase();
    m_window->MenuAction("mnuBewerkenItem_2")->trigger();
    for (int item = 0; item < 5; ++item)
        EXPECT_EQ(m_window->MenuAction(QString("mnuBewerkenItem_%1").arg(item))->isChecked(),
                  item == 2)
            << item;
    m_window->MenuAction("mnuBewerkenItem_2")->trigger(); // again: it stays
    EXPECT_TRUE(m_window->MenuAction("mnuBewerkenItem_2")->isChecked());
    EXPECT_EQ(m_window->GetChekedButton(), 2);
}

TEST_F(frmMainTest, CommandsStayOnBehindACalculationThatClosedTheFile)
{
    Load();
    OpenDatabase();
    m_window->setCommand("mnuBerekeningFolder", [] {});
    m_database.isOpen = false; // the core has it; the next question opens it again
    m_window->setCommandEnabled("mnuBerekeningFolder", false);
    EXPECT_FALSE(Enabled("mnuBerekeningFolder"));
    m_window->setCommandEnabled("mnuBerekeningFolder", true);
    EXPECT_TRUE(Enabled("mnuBerekeningFolder"));
    m_window->UpdateMenus();
    EXPECT_FALSE(Enabled("mnuBerekeningFolder"));
}

} // namespace
