// Every menu entry and node-bound button on every kind of node, given by mouse and by keyboard.
#include "MainPartsFixture.h"

#include <QMenuBar>
#include <QToolBar>

namespace {

/// The window with a handler for every entry, those whose forms do not exist yet included,
/// so that only node, selection and database decide.
class MenusTest : public MainPartsTest {
protected:
    MenusTest()
    {
        db.reOpenDB(false);
        MaakBerekening("som", "Plas-01", "Gras 1op3");
        MaakMapVanRing("Ring Oost", "Overloop");
        const QString uitvoer = InWerkmap("Plas-01/berekeningen/som_Gras 1op3/");
        Schrijf(uitvoer + "uitvoer.txt", "x");
        Schrijf(uitvoer + "freqlijn.txt", "x");
        for (QMenu* menu : Menus())
            for (QAction* entry : Entries(menu))
                window->setCommand(entry->objectName(),
                                   [this, name = entry->objectName()] { given << name; });
        Open();
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        tree = window->findChild<QTreeWidget*>("treLocaties");
        for (QTreeWidgetItemIterator node(tree); *node; ++node)
            (*node)->setExpanded(true);
    }
    QList<QMenu*> Menus() const { return window->findChild<QMenuBar*>()->findChildren<QMenu*>(); }
    static QList<QAction*> Entries(const QMenu* menu)
    {
        QList<QAction*> entries;
        for (QAction* action : menu->actions())
            if (!action->isSeparator() && !action->objectName().isEmpty())
                entries << action;
        return entries;
    }
    QStringList EnabledEntries() const
    {
        QStringList names;
        for (const QMenu* menu : Menus())
            for (const QAction* entry : Entries(menu))
                if (entry->isEnabled())
                    names << entry->objectName();
        names.sort();
        return names;
    }
    void GaNaar(const QString& key)
    {
        QTreeWidgetItem* node = panes->Locaties().GetNodeByKey(key);
        ASSERT_NE(node, nullptr) << key.toStdString();
        tree->scrollToItem(node);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                          tree->visualItemRect(node).center());
    }

    QStringList given;
    QTreeWidget* tree = nullptr;
};

/// Of no influence: enabled whenever a database is open.
const QStringList kAlways{
    "mnuBewerkenAddLocatie", "mnuBewerkenItem_0", "mnuBewerkenItem_1", "mnuBewerkenItem_2",
    "mnuBewerkenItem_3", "mnuBewerkenItem_4", "mnuBewerkenItem_5", "mnuBewerkenLabels",
    "mnuBewerkenLayerAdd", "mnuBewerkenSymbolProperties", "mnuDijkringAdd",
    "mnuDijkringBerekeningStart", "mnuExtraBSA", "mnuExtraCheckScheefstand", "mnuExtraDeterm",
    "mnuFileExit", "mnuFileOpen", "mnuHelpAbout", "mnuHelpHandleiding", "mnuLocatieAdd",
    "mnuLocatieBoezempeil", "mnuLocatieProperties", "mnuLocatieStrijklengtes", "mnuProfielAdd",
    "mnuViewLog", "mnuViewPunten", "mnuViewToolbarsTopo", "mnuViewTopo", "mnuWeergaveAandeel",
    "mnuWeergaveBoezempeil", "mnuWeergaveMaxScheefstand", "mnuWeergaveVerschil",
    // there are results
    "mnuWeergaveExportMap", "mnuWeergaveHBN"};
const QStringList kBerekening{"mnuBerekeningDelete", "mnuBerekeningFolder", "mnuBerekeningInvoer",
                              "mnuBerekeningRename"};
const QStringList kUitvoer{"mnuBerekeningGrafiekFaalfreq", "mnuBerekeningUitvoer"};
const QStringList kNormalen{"mnuBerekeningDijknormalen"};
const QStringList kLocatie{"mnuBerekeningBodemhoogtes", "mnuBerekeningDijknormalen",
                           "mnuBerekeningStrijklengtes"};
const QStringList kSelectie{"mnuBerekeningStart", "mnuLocatieDelete"};
const QStringList kRing{"mnuDijkringCopy", "mnuDijkringDelete", "mnuDijkringEdit",
                        "mnuDijkringPaste", "mnuDijkringRename"};
const QStringList kProfiel{"mnuProfielDelete", "mnuProfielEdit"};

struct Regel {
    const char* key;
    QStringList commands;
    std::vector<int> buttons; ///< of 8, 9, 10 and 11
};

/// Without a selection.
const std::vector<Regel> kTabel{
    {"ROOTLOCATIES", kNormalen, {8}},
    {"ROOTLOCATIES\\Plas-02\\profielen", kLocatie, {8}},
    {"ROOTLOCATIES\\Plas-02\\profielen\\Gras 1op3", kLocatie + kProfiel, {8}},
    {"ROOTLOCATIES\\Plas-01\\berekeningen", kLocatie, {8}},
    {"ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3",
     kLocatie + kBerekening + kUitvoer,
     {8, 10, 11}},
    {"ROOTDIJKRINGEN", kNormalen, {8}},
    {"ROOTDIJKRINGEN\\Ring Oost", kRing, {8, 9}},
    {"ROOTDIJKRINGEN\\Ring Oost\\berekeningen", kRing, {8, 9}},
    {"ROOTDIJKRINGEN\\Ring Oost\\berekeningen\\Overloop", kRing + kBerekening, {8, 9}},
    {"ROOTPROFIELEN", kNormalen, {8}},
    {"ROOTPROFIELEN\\Strekdam", kProfiel, {8}},
    {"ROOTBEREKENINGEN", kNormalen, {8}},
    {"ROOTBEREKENINGEN\\som", kBerekening, {8}},
};

TEST_F(MenusTest, EveryEntryAndButtonFollowsEveryKindOfNode)
{
    for (const Regel& regel : kTabel) {
        SCOPED_TRACE(regel.key);
        GaNaar(regel.key);
        EXPECT_EQ(panes->CurrentNodeKey(), regel.key);
        QStringList expected = kAlways + regel.commands;
        expected.sort();
        EXPECT_EQ(EnabledEntries(), expected);
        std::vector<int> buttons;
        for (const int command : {8, 9, 10, 11})
            if (window->ToolbarAction(window->GetButtonIndexByIconIndex(command))->isEnabled())
                buttons.push_back(command);
        EXPECT_EQ(buttons, regel.buttons);
    }
}

TEST_F(MenusTest, WithASelectionLocationsAndProfilesCanDoMore)
{
    const std::vector<std::pair<const char*, QStringList>> table{
        {"ROOTLOCATIES\\Plas-01", kLocatie + kSelectie}, // the click selects it
        {"ROOTLOCATIES\\Plas-01\\profielen\\Gras 1op3", kLocatie + kProfiel + kSelectie},
        {"ROOTLOCATIES", kNormalen + QStringList{"mnuLocatieDelete"}},
        {"ROOTDIJKRINGEN\\Ring Oost", kRing + QStringList{"mnuLocatieDelete"}},
        {"ROOTPROFIELEN\\Strekdam",
         kProfiel + QStringList{"mnuLocatieDelete", "mnuProfielAssign2SelectedLocations"}},
    };
    for (const auto& [key, commands] : table) {
        SCOPED_TRACE(key);
        GaNaar(key);
        QStringList expected = kAlways + commands;
        expected.sort();
        EXPECT_EQ(EnabledEntries(), expected);
    }
}

TEST_F(MenusTest, TheArrowKeysLeadToTheSameStates)
{
    QHash<QString, QStringList> byMouse;
    for (const Regel& regel : kTabel) {
        GaNaar(regel.key);
        byMouse[regel.key] = EnabledEntries();
    }
    tree->setFocus();
    QTest::keyClick(tree, Qt::Key_Home);
    int met = 0;
    for (QString last; panes->CurrentNodeKey() != last; QTest::keyClick(tree, Qt::Key_Down)) {
        last = panes->CurrentNodeKey();
        if (!byMouse.contains(last))
            continue;
        ++met;
        EXPECT_EQ(EnabledEntries(), byMouse[last]) << last.toStdString();
    }
    EXPECT_EQ(met, int(kTabel.size()));
}

/// Tools of the map and the labels are switches of the window itself, with tests of their own.
bool IsSwitch(const QString& entry)
{
    return entry == "mnuBewerkenLabels" ||
           (entry.startsWith("mnuBewerkenItem_") && entry != "mnuBewerkenItem_5");
}

TEST_F(MenusTest, EveryEnabledEntryIsGivenByMouseAndByItsLetter)
{
    selection.AddALocation2Selection("Plas-01");
    for (const Regel& regel : kTabel) {
        SCOPED_TRACE(regel.key);
        GaNaar(regel.key);
        for (QMenu* menu : Menus()) {
            for (QAction* entry : Entries(menu)) {
                if (IsSwitch(entry->objectName()))
                    continue;
                const QStringList expected =
                    entry->isEnabled() ? QStringList{entry->objectName()} : QStringList{};
                given.clear();
                menu->popup({0, 0});
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(entry).center());
                menu->close();
                EXPECT_EQ(given, expected) << "mouse " << entry->objectName().toStdString();

                const qsizetype mark = entry->text().indexOf('&');
                ASSERT_GE(mark, 0) << entry->objectName().toStdString() << " has no letter";
                given.clear();
                menu->popup({0, 0});
                QTest::keyClick(menu, entry->text()[mark + 1].toLatin1());
                menu->close();
                EXPECT_EQ(given, expected) << "key " << entry->objectName().toStdString();
            }
        }
    }
}

TEST_F(MenusTest, TheContextMenuOfEveryKindOpensAndGivesItsCommands)
{
    GaNaar("ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3");
    QTest::keyClick(tree, Qt::Key_Menu);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->objectName(), "mnuBerekening");
    QTest::mouseClick(menu, Qt::LeftButton, {},
                      menu->actionGeometry(window->MenuAction("mnuBerekeningFolder")).center());
    EXPECT_EQ(given, QStringList{"mnuBerekeningFolder"});
}

TEST_F(MenusTest, TheProfileButtonEditsAProfileAndMakesANewOneElsewhere)
{
    QAction* button = window->ToolbarAction(window->GetButtonIndexByIconIndex(8));
    for (const char* key : {"ROOTLOCATIES", "ROOTDIJKRINGEN\\Ring Oost", "ROOTPROFIELEN"}) {
        GaNaar(key);
        given.clear();
        button->trigger();
        EXPECT_EQ(given, QStringList{"mnuProfielAdd"}) << key;
    }
    for (const char* key :
         {"ROOTPROFIELEN\\Strekdam", "ROOTLOCATIES\\Plas-02\\profielen\\Gras 1op3"}) {
        GaNaar(key);
        given.clear();
        button->trigger();
        EXPECT_EQ(given, QStringList{"mnuProfielEdit"}) << key;
    }
    window->setCommand("mnuProfielEdit", nullptr); // as long as the form is missing
    EXPECT_FALSE(button->isEnabled());
    GaNaar("ROOTLOCATIES");
    EXPECT_TRUE(button->isEnabled());
    window->setCommand("mnuProfielAdd", nullptr);
    EXPECT_FALSE(button->isEnabled());
}

TEST_F(MenusTest, WithoutADatabaseOnlyFileViewAndHelpAreLeft)
{
    window->CloseRandvoorwaarden();
    db.CloseDB();
    window->UpdateMenus();
    EXPECT_EQ(EnabledEntries(),
              (QStringList{"mnuFileExit", "mnuFileOpen", "mnuHelpAbout", "mnuHelpHandleiding",
                           "mnuViewLog", "mnuViewPunten", "mnuViewToolbarsTopo", "mnuViewTopo"}));
    for (const int command : {8, 9, 10, 11})
        EXPECT_FALSE(
            window->ToolbarAction(window->GetButtonIndexByIconIndex(command))->isEnabled());
}

} // namespace
