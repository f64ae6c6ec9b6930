#include "profiles/ui/frmLocaties.h"

#include "calculation/LogViewer.h"
#include "frame/Busy.h"
#include "frame/FileSystemObject.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/ui/MessageBoxes.h"
#include "frame/ui/TranslateForm.h"
#include "navigation/MapSelection.h"
#include "navigation/NodeCommands.h"
#include "navigation/NodePaths.h"
#include "profiles/ui/BrowserHost.h"
#include "ui_frmLocaties.h"

namespace {

/// Edits the profile that is current and makes a new one on any other node.
constexpr int kProfielButton = 8;

/// The buttons of the toolbar that do what a command of a node does.
struct NodeButton {
    int command;
    const char* menu;
};
constexpr NodeButton kNodeButtons[] = {
    {9, "mnuDijkringEdit"},
    {10, "mnuBerekeningGrafiekFaalfreq"},
    {11, "mnuBerekeningUitvoer"},
};

std::unique_ptr<Ui::frmLocaties> SetUp(QWidget* form)
{
    auto ui = std::make_unique<Ui::frmLocaties>();
    ui->setupUi(form);
    return ui;
}

void SetBold(QTreeWidgetItem* node, bool bold)
{
    QFont font = node->font(0);
    font.setBold(bold);
    node->setFont(0, font);
}

} // namespace

frmLocaties::frmLocaties(const Omgeving& omgeving, QWidget* parent)
    : QWidget(parent),
      m_ui(SetUp(this)),
      m_iniFile(AddBackslash(gIniPath()) + "Locaties.ini"),
      m_database(omgeving.database),
      m_navTree(omgeving.navTree),
      m_mapSelection(omgeving.mapSelection),
      m_host(omgeving.host),
      m_log(omgeving.log),
      m_changes(m_navTree, m_database),
      m_filter(m_navTree),
      m_clicks(m_navTree, m_mapSelection),
      m_branches(gIniFile())
{
    TranslateForm(*this, m_iniFile, gLanguage());
    const QString section = "Teksten" + gLanguage();
    m_ui->treLocaties->setAccessibleName(m_iniFile.GetString(
        section, "treLocaties", "Locaties, dijkringen, profielen en berekeningen"));
    m_spokenSelection = m_iniFile.GetString(section, "geselecteerd", "Geselecteerd");
    const QString filter = m_iniFile.GetString(section, "txtFilter", "Deel van een naam");
    m_ui->txtFilter->setPlaceholderText(filter);
    m_ui->txtFilter->setAccessibleName(filter);
    m_navTree.setTreeViewObject(m_ui->treLocaties);
    ConnectTree();
    ConnectFilter();
}

frmLocaties::~frmLocaties() = default;

// Building the trees

QString frmLocaties::RootText(const QString& key, const QString& standaard)
{
    return m_iniFile.GetString("Teksten" + gLanguage(), key, standaard);
}

QTreeWidgetItem* frmLocaties::AddRoot(const QString& key, const QString& standaard, bool sorted)
{
    QTreeWidgetItem* root = m_navTree.AddRoot(key, RootText(key, standaard), sorted);
    root->setToolTip(0, root->text(0) + " - " + m_basisnaam);
    return root;
}

void frmLocaties::RememberBranches()
{
    if (m_openDatabase.isEmpty() || !LocatiesNode())
        return;
    m_branches.Write(m_openDatabase, m_filter.IsActive() ? m_filter.BranchesBefore()
                                                         : OpenBranches::OfTree(m_navTree));
}

void frmLocaties::RemoveRvwTrees()
{
    RememberBranches();
    m_openDatabase.clear();
    ResetCurrentNode();
    SetCurrentNodeNothing();
    m_copiedRing.clear();
    m_filter.Reset();
    {
        const QSignalBlocker quiet(m_ui->txtFilter);
        m_ui->txtFilter->clear();
    }
    for (const QString& root : {navkey::RootLocaties, navkey::RootDijkringen, navkey::RootProfielen,
                                navkey::RootBerekeningen})
        m_navTree.RemoveRoot(root);
    const auto commands = CommandsOfNode({});
    for (auto command = commands.cbegin(); command != commands.cend(); ++command)
        m_host.SetCommandEnabled(command.key(), command.value());
    m_log.ClearLogWindow();
}

void frmLocaties::CreateRvwBrowserTree(const QString& basisnaam, const RecordsetPtr& locaties)
{
    const BusyScope busy;
    RemoveRvwTrees();
    m_basisnaam = basisnaam;
    m_ui->treLocaties->setUpdatesEnabled(false);
    try {
        CreateLocatieTree(locaties);
        CreateDijkringTree();
        CreateProfielTree();
        CreateBerekeningTree();
    } catch (...) {
        m_ui->treLocaties->setUpdatesEnabled(true);
        throw;
    }
    m_openDatabase = m_database.fileName();
    const QStringList open = m_branches.Read(m_openDatabase);
    OpenBranches::Apply(m_navTree, open.isEmpty() ? QStringList{navkey::RootLocaties} : open);
    m_ui->treLocaties->setUpdatesEnabled(true);
}

void frmLocaties::CreateLocatieTree(const RecordsetPtr& locaties)
{
    // In the order of the records: sorting is for folders.
    QTreeWidgetItem* root = AddRoot(navkey::RootLocaties, "Locaties", false);
    m_navTree.addLocatiesFromDb2Root(root, locaties);
    m_navTree.addProfielenFromDb2Locaties(root);
    m_navTree.addBerekeningenFromWerkmap2Locaties(root, m_database.WerkMap());
}

void frmLocaties::CreateDijkringTree()
{
    QTreeWidgetItem* root = AddRoot(navkey::RootDijkringen, "Dijkringen", false);
    m_navTree.addDijkringenFromDb2Root(root, m_database.GetDijkringNamen());
    m_navTree.addBerekeningenFromWerkmap2Dijkringen(root, m_database.WerkMap());
}

void frmLocaties::CreateProfielTree()
{
    QTreeWidgetItem* root = AddRoot(navkey::RootProfielen, "Profielen", false);
    m_navTree.RemoveChildren(root);
    m_navTree.addProfielenFromDb2Root(root, m_database.GetProfielNamen());
    if (CurrentNode())
        m_ui->treLocaties->setCurrentItem(CurrentNode());
}

void frmLocaties::CreateBerekeningTree()
{
    QTreeWidgetItem* root = AddRoot(navkey::RootBerekeningen, "Berekeningen", true);
    m_navTree.addBerekeningen2Root(root, LocatiesNode());
}

// The current node

QTreeWidgetItem* frmLocaties::CurrentNode() const
{
    return m_navTree.GetNodeByKey(m_currentKey);
}

void frmLocaties::setCurrentNode(QTreeWidgetItem* node)
{
    m_currentKey = NavTree::Key(node);
}

void frmLocaties::SetCurrentNodeNothing()
{
    m_currentKey.clear();
}

QTreeWidgetItem* frmLocaties::LocatiesNode() const
{
    return m_navTree.GetNodeByKey(navkey::RootLocaties);
}

QTreeWidgetItem* frmLocaties::DijkringenNode() const
{
    return m_navTree.GetNodeByKey(navkey::RootDijkringen);
}

QTreeWidgetItem* frmLocaties::Ancestor(const QString& tag) const
{
    QTreeWidgetItem* node = CurrentNode();
    while (node && NavTree::Tag(node) != tag)
        node = node->parent();
    return node;
}

QTreeWidgetItem* frmLocaties::CurrentLocationNode() const
{
    return Ancestor(navtag::Locatie);
}

QTreeWidgetItem* frmLocaties::CurrentDijkringNode() const
{
    return Ancestor(navtag::Dijkring);
}

QString frmLocaties::CurrentNodeKey() const
{
    return NavTree::Key(CurrentNode());
}

QString frmLocaties::CurrentNodeTag() const
{
    return NavTree::Tag(CurrentNode());
}

void frmLocaties::EnsureCurrentNodeVisible()
{
    if (QTreeWidgetItem* node = CurrentNode())
        m_ui->treLocaties->scrollToItem(node);
}

void frmLocaties::ResetCurrentNode()
{
    for (const QString& key : std::exchange(m_boldKeys, {}))
        if (QTreeWidgetItem* node = m_navTree.GetNodeByKey(key))
            SetBold(node, false);
    for (const NodeButton& button : kNodeButtons)
        m_host.SetEnableButton(button.command, false);
    m_host.SetEnableButton(kProfielButton, false);
}

void frmLocaties::ApplyNode(QTreeWidgetItem* node)
{
    if (!node)
        return;
    setCurrentNode(node);
    for (QTreeWidgetItem* above : {CurrentLocationNode(), CurrentDijkringNode()}) {
        if (!above)
            continue;
        SetBold(above, true);
        m_boldKeys << NavTree::Key(above);
    }

    for (const QTreeWidgetItem* above = node; above; above = above->parent()) {
        if (!above->isHidden())
            continue;
        m_ui->txtFilter->clear(); // a current node is never out of sight
        break;
    }
    if (m_ui->treLocaties->currentItem() != node)
        m_ui->treLocaties->setCurrentItem(node);
    m_ui->treLocaties->scrollToItem(node);

    ApplyCommands();
    ShowLog();
    ApplyResultCommands(); // last: reads the database, and may fail
}

void frmLocaties::ClickNode(QTreeWidgetItem* node)
{
    const BusyScope busy;
    ResetCurrentNode();
    ApplyNode(node);
}

void frmLocaties::ApplyCommands()
{
    const QString map = GetNodePath(m_currentKey);
    const auto holds = [&](const char* file) {
        return !map.isEmpty() && gFso().FileExists(gFso().BuildPath(map, file));
    };
    const auto commands = CommandsOfNode({.key = CurrentNodeKey(),
                                          .tag = CurrentNodeTag(),
                                          .selection = m_mapSelection.HasSelectedNodes(),
                                          .uitvoer = holds("uitvoer.txt"),
                                          .freqlijn = holds("freqlijn.txt")});
    for (auto command = commands.cbegin(); command != commands.cend(); ++command)
        if (!command.key().startsWith("mnuWeergave"))
            m_host.SetCommandEnabled(command.key(), command.value());
    for (const NodeButton& button : kNodeButtons)
        m_host.SetEnableButton(button.command, commands[button.menu]);
    m_host.SetEnableButton(kProfielButton, CurrentNode() != nullptr);
}

void frmLocaties::ApplyResultCommands()
{
    const bool resultaten =
        m_database.IsOpen() && HRdb::heeftRecords(m_database.GetBerekeningNamenFromResultaat());
    const auto commands = CommandsOfNode(
        {.key = CurrentNodeKey(), .tag = CurrentNodeTag(), .resultaten = resultaten});
    for (auto command = commands.cbegin(); command != commands.cend(); ++command)
        if (command.key().startsWith("mnuWeergave"))
            m_host.SetCommandEnabled(command.key(), command.value());
}

void frmLocaties::ShowLog()
{
    const QString map = GetNodePath(m_currentKey);
    const QString log = map.isEmpty() ? QString() : gFso().BuildPath(map, "uitvoer.log");
    if (!log.isEmpty() && gFso().FileExists(log))
        m_log.ShowLogFile(log);
    else
        m_log.ClearLogWindow();
}

// The selection on the map

void frmLocaties::SelecteerLocatie(const QString& naam)
{
    QTreeWidgetItem* node = m_navTree.GetNodeByKey(m_navTree.JoinKey(navkey::RootLocaties, naam));
    if (!node || node == CurrentNode())
        return;
    ResetCurrentNode();
    ApplyNode(node);
}

void frmLocaties::ResetSelectedLocations()
{
    m_mapSelection.ResetSelectie();
    m_mapSelection.ColorSelectionInTreeView(m_navTree, m_spokenSelection);
}

void frmLocaties::ApplySelectedLocations()
{
    m_mapSelection.ColorSelectionInTreeView(m_navTree, m_spokenSelection);
    ApplyCommands();
}

// Keys and paths

QString frmLocaties::GetNodePath(const QString& key) const
{
    return PathOfNode(key, m_navTree.pathSeparator(), m_database.WerkMap());
}

bool frmLocaties::NodeExists(const QString& key)
{
    return GetNodeByKey(key) != nullptr;
}

QTreeWidgetItem* frmLocaties::GetNodeByKey(const QString& key)
{
    return m_navTree.GetNodeByKey(key);
}

QString frmLocaties::GetPathSeparator()
{
    return m_navTree.pathSeparator();
}

QTreeWidgetItem* frmLocaties::AddBerekening2Locatie(QTreeWidgetItem* locatie, const QString& naam)
{
    return m_navTree.AddBerekening2Locatie(locatie, naam);
}

void frmLocaties::AddBerekening2Root(const QString& naam)
{
    m_navTree.AddBerekening2Root(naam);
}
