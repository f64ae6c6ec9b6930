#include "mainwindow/parts/MainPanes.h"

#include "calculation/ui/frmLog.h"
#include "calculation/ui/run/frmBerekeningInstellingen.h"
#include "frame/Busy.h"
#include "frame/ui/MessageBoxes.h"
#include "geometry/modCreateShape.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/parts/LocatieRecords.h"
#include "maps/ui/MapView.h"
#include "navigation/MapSelection.h"
#include "profiles/ui/frmLocaties.h"

#include <QFileInfo>
#include <QMenu>

namespace {

QFont LabelFont(const LabelSettings& labels)
{
    QFont font(labels.fontName);
    if (labels.fontSize > 0)
        font.setPointSizeF(labels.fontSize);
    font.setBold(labels.bold);
    font.setItalic(labels.italic);
    font.setUnderline(labels.underline);
    font.setStrikeOut(labels.strikeThrough);
    return font;
}

} // namespace

MainPanes::MainPanes(frmMain& window, const Omgeving& omgeving)
    : QObject(&window),
      m_window(window),
      m_hrdb(omgeving.database),
      m_selection(omgeving.selection),
      m_database(omgeving.database, window, window),
      m_oeverbestand(omgeving.strijklengte),
      m_navTree(omgeving.database),
      m_map(new MapView(&window)),
      m_log(new frmLog(&window)),
      m_locaties(new frmLocaties({omgeving.database, m_navTree, omgeving.selection, *this, *m_log},
                                 &window))
{
    m_instellingen.SetFactory([] { return std::make_shared<frmBerekeningInstellingen>(); });
    m_hrdb.setLogRtb(&m_log->Box());
    m_window.setMapPane(m_map, this);
    m_window.setTreePane(m_locaties, this);
    m_window.setLogPane(m_log);
    m_window.setDatabase(&m_database);
    m_window.setShoreFile(&m_oeverbestand);

    const auto handled = [](auto action) {
        return [action](const auto&... arguments) { RunHandler([&] { action(arguments...); }); };
    };
    connect(&window, &frmMain::RandvoorwaardenOpened, this,
            handled([this](const QString& path) { ShowDatabase(path); }));
    connect(&window, &frmMain::RandvoorwaardenClosing, this, handled([this] { LeaveDatabase(); }));
    connect(m_map, &MapView::MouseMoved, this,
            [this](double x, double y) { m_window.XYToPane(x, y); });
    connect(m_map, &MapView::PointsChosen, this,
            handled([this](const QStringList& names) { AddToSelection(names); }));
}

MainPanes::~MainPanes()
{
    m_hrdb.setLogRtb(nullptr);
}

// The database on the screen

void MainPanes::ShowDatabase(const QString& path)
{
    const BusyScope busy;
    const QString base = QFileInfo(path).completeBaseName();
    m_locaties->CreateRvwBrowserTree(base, LocatiesOpNaam(m_hrdb));
    ShowLocations();
    ZoomFullExtent();
    m_locaties->ApplyNode(m_locaties->LocatiesNode());
    // Last: the program can be worked with when the work folder cannot be written.
    WriteLocationShape();
}

void MainPanes::WriteLocationShape()
{
    m_hrdb.OpenWerkMap(m_hrdb.WerkMap());
    RebuildLocationShape(m_hrdb.WerkMap(), QFileInfo(m_hrdb.fileName()).completeBaseName(),
                         LeesLocatiePunten(m_hrdb));
}

void MainPanes::LeaveDatabase()
{
    m_locaties->ResetSelectedLocations();
    m_map->SetSelection({});
    m_map->SetPoints({});
    m_locaties->RemoveRvwTrees();
}

// The map

QColor MainPanes::ColourOfMark(int kwal) const
{
    for (const Kwaliteitscode& code : m_window.Kwaliteitscodes()) {
        if (code.code.trimmed() == QString::number(kwal))
            return code.colour;
    }
    return {}; // a mark without a colour has no symbol
}

void MainPanes::ShowLocations()
{
    std::vector<MapPoint> points;
    for (const LocatiePunt& locatie : LeesLocatiePunten(m_hrdb).locaties)
        points.push_back(
            {locatie.x, locatie.y, locatie.omschrijving, ColourOfMark(locatie.kwaliteitskenmerk)});
    m_map->SetPoints(std::move(points));
}

void MainPanes::ShowSelection()
{
    m_map->SetSelection(m_selection.Namen());
}

void MainPanes::AddToSelection(const QStringList& names)
{
    const BusyScope busy;
    for (const QString& name : names)
        m_selection.AddALocation2Selection(name);
    m_locaties->ApplySelectedLocations();
    if (names.size() == 1)
        m_locaties->SelecteerLocatie(names.first());
    ShowSelection();
}

void MainPanes::DeleteLocaties()
{
    const int before = LocationCount();
    try {
        m_locaties->DeleteLocaties();
    } catch (...) {
        if (LocationCount() != before) // a folder was left behind: that is what is to be told
            ShowRemainingLocations();
        throw;
    }
    if (LocationCount() != before)
        ShowRemainingLocations();
}

void MainPanes::ShowRemainingLocations()
{
    const BusyScope busy;
    m_window.UpdateMenus();
    RefreshLocatiesAndLabelsOpMap();
    WriteLocationShape();
}

void MainPanes::ZoomFullExtent()
{
    SetMapFullExtent(*m_map, m_map->PointExtent());
}

void MainPanes::RefreshLocatiesAndLabelsOpMap()
{
    if (m_hrdb.IsOpen())
        ShowLocations();
    ShowSelection();
}

void MainPanes::SelectTool(int command, const QCursor& pointer)
{
    m_map->SetTool(static_cast<MapView::Tool>(command), pointer);
}

void MainPanes::ShowLabels(bool on)
{
    const LabelSettings& labels = m_window.Labels();
    m_map->SetLabels(on, LabelFont(labels), labels.colour);
}

void MainPanes::RefreshMap()
{
    m_map->Refresh();
}

// What the location browser asks

void MainPanes::SetCommandEnabled(const QString& menu, bool enabled)
{
    m_window.setCommandEnabled(menu, enabled);
}

void MainPanes::SetEnableButton(int command, bool enabled)
{
    m_window.SetEnableButton(command, enabled);
}

void MainPanes::ShowContextMenu(const QString& menu, const QPoint& globalPosition)
{
    if (auto* entries = m_window.findChild<QMenu*>(menu))
        entries->popup(globalPosition);
}

void MainPanes::EditProfiel()
{
    m_window.MenuAction("mnuProfielEdit")->trigger();
}

void MainPanes::ShowBerekeningUitvoer()
{
    m_window.MenuAction("mnuBerekeningUitvoer")->trigger();
}

void MainPanes::EditAddDijkring()
{
    m_window.MenuAction("mnuDijkringEdit")->trigger();
}

// What the main window asks of the location browser

QString MainPanes::CurrentNodeKey() const
{
    return m_locaties->CurrentNodeKey();
}

QString MainPanes::CurrentNodeTag() const
{
    return m_locaties->CurrentNodeTag();
}

int MainPanes::LocationCount() const
{
    const QTreeWidgetItem* root = m_locaties->LocatiesNode();
    return root ? root->childCount() : 0;
}

bool MainPanes::HasLocations() const
{
    return LocationCount() > 0;
}

void MainPanes::EnsureCurrentNodeVisible()
{
    m_locaties->EnsureCurrentNodeVisible();
}

void MainPanes::ResetCurrentNode()
{
    m_locaties->ResetCurrentNode();
}
