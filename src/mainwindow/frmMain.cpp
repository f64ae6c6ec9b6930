#include "mainwindow/frmMain.h"

#include "frame/Convert.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/IniNumbers.h"
#include "frame/Paths.h"
#include "frame/ProcessRunner.h"
#include "frame/Texts.h"
#include "frame/ui/FormUnits.h"
#include "frame/ui/IniDialog.h"
#include "frame/ui/MessageBoxes.h"
#include "frame/ui/TranslateForm.h"
#include "frame/ui/WindowPosition.h"
#include "mainwindow/Commands.h"
#include "mainwindow/MainStatusBar.h"
#include "mainwindow/Panes.h"
#include "ui_frmMain.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QFileInfo>
#include <QScreen>
#include <QVBoxLayout>

namespace {

// The smallest window, in twips.
constexpr int kMinimumWidth = 11000;
constexpr int kMinimumHeight = 8000;

constexpr double kFirstShare = 0.9; // of the screen, at most, at the first start

constexpr int kToolbarVisible = 1; // the toolbar's state, as it is stored

void FillPane(QFrame* container, QWidget* pane)
{
    auto* layout = container->layout() ? container->layout() : new QVBoxLayout(container);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(pane);
}

} // namespace

frmMain::frmMain(QWidget* parent)
    : QMainWindow(parent), m_ui(std::make_unique<Ui::frmMain>()), m_tools(new QActionGroup(this))
{
    m_ui->setupUi(this);
    m_statusBar = std::make_unique<MainStatusBar>(*m_ui->statusbar);
    setWindowIcon(ProgramIcon());
    setMinimumSize((kMinimumWidth + kTwipsPerPixel - 1) / kTwipsPerPixel,
                   (kMinimumHeight + kTwipsPerPixel - 1) / kTwipsPerPixel);
    BuildMenus();
    BuildToolbar();
    BuildPanes();
    SetOwnCommands();
    ConnectRecentDatabases();
    setAcceptDrops(true);
}

frmMain::~frmMain() = default;

void frmMain::BuildPanes()
{
    setCentralWidget(m_ui->splRows);
    for (QSplitter* splitter : {m_ui->splRows, m_ui->splUpper})
        connect(splitter, &QSplitter::splitterMoved, this, &frmMain::StorePaneSizes);
    for (QWidget* pane : {m_ui->pneMap, m_ui->pneTree, m_ui->pneLog})
        pane->setMinimumSize(60, 40);
    m_ui->mnuViewTopo->setChecked(true);
    m_ui->mnuViewPunten->setChecked(true);
    m_ui->mnuViewLog->setChecked(true);
    m_ui->mnuViewToolbarsTopo->setChecked(true);
}

void frmMain::setMapPane(QWidget* pane, MapPane* map)
{
    FillPane(m_ui->pneMap, pane);
    m_map = map;
}

void frmMain::setTreePane(QWidget* pane, BrowserPane* browser)
{
    FillPane(m_ui->pneTree, pane);
    m_browser = browser;
}

void frmMain::setLogPane(QWidget* pane)
{
    FillPane(m_ui->pneLog, pane);
}

void frmMain::SetOwnCommands()
{
    setCommand("mnuFileExit", [this] { close(); });
    setCommand("mnuViewTopo", [this] { ShowPane(m_ui->pneMap, m_ui->mnuViewTopo->isChecked()); });
    setCommand("mnuViewPunten",
               [this] { ShowPane(m_ui->pneTree, m_ui->mnuViewPunten->isChecked()); });
    setCommand("mnuViewLog", [this] { ShowPane(m_ui->pneLog, m_ui->mnuViewLog->isChecked()); });
    setCommand("mnuViewToolbarsTopo",
               [this] { m_ui->tlbTopo->setVisible(m_ui->mnuViewToolbarsTopo->isChecked()); });
    setCommand("mnuExtraBSA", [this] { mnuExtraBSA_Click(); });
    setCommand("mnuHelpHandleiding", [this] { mnuHelpHandleiding_Click(); });
    setCommand("mnuHelpAbout", [this] { mnuHelpAbout_Click(); });
}

void frmMain::ShowPane(QWidget* container, bool on)
{
    container->setVisible(on);
    m_ui->splUpper->setVisible(m_ui->mnuViewTopo->isChecked() || m_ui->mnuViewPunten->isChecked());
    ApplyPaneSizes();
}

void frmMain::XYToPane(double x, double y)
{
    m_statusBar->ShowCoordinates("x = " + FixedText(x, 0) + ", y = " + FixedText(y, 0));
}

void frmMain::Load()
{
    try {
        const BusyScope busy;
        SetExtraOpties(gIniFile().GetString("Algemeen", "ExtraOpties") == "RW");
        m_iniFile = std::make_unique<QLMIniFile>(AddBackslash(gIniPath()) + "Main.ini");
        TranslateForm(*this, *m_iniFile, gLanguage());
        for (int index = 0; index < m_buttons.size(); ++index) {
            const ToolbarButton& button = ToolbarButtons()[index];
            QString caption = MenuAction(button.menu)->text().remove('&');
            if (caption.endsWith("..."))
                caption.chop(3);
            m_buttons[index]->setText(button.tip ? QString(button.tip) : caption);
            m_buttons[index]->setToolTip(m_buttons[index]->text());
        }
        if (m_paneSizes)
            m_paneSizes->Initialize(gIniFile());
        LoadSettings();
        if (m_map)
            m_map->AddAchtergrondLayers();
        if (const QScreen* display = screen())
            resize(size().boundedTo(display->availableSize() * kFirstShare));
        LoadWindowPosition(*this, gIniFile());
        ApplyPaneSizes();
        if (m_paneSizes)
            m_paneSizes->setInitialized(true);
        if (m_database) {
            setCommand("mnuFileOpen", [this] { mnuFileOpen_Click(); });
            m_database->RemoveDataSources(OdbcSources(gIniFile()));
        }
        SetHelpHandler([this](QWidget*) { mnuHelpHandleiding_Click(); });
        setCommandEnabled("mnuFileSave", false);
        setCommandEnabled("mnuFileSaveAs", false);
        setCommandEnabled("mnuDijkringPaste", false);
        if (m_browser)
            m_browser->ResetCurrentNode();
        if (m_map)
            m_map->RefreshMap();
        UpdateMenus();
        m_isLoaded = true;
    } catch (const std::exception& error) {
        ReportError(error);
        ResetBusy();
    }
}

void frmMain::LoadSettings()
{
    m_kwaliteitscodes = LoadKwaliteitscodes(gIniFile());
    m_labels = LoadLabelSettings(gIniFile());
    m_buttons[ButtonIndexOfCommand(13)]->setChecked(m_labels.shown);
    m_ui->mnuBewerkenLabels->setChecked(m_labels.shown);

    const bool visible = ReadWhole(gIniFile(), "SETTINGS", objectName() + "ToolbarState",
                                   kToolbarVisible, 0, 0xFFFF) &
                         kToolbarVisible;
    m_ui->tlbTopo->setVisible(visible);
    m_ui->mnuViewToolbarsTopo->setChecked(visible);

    if (m_map) {
        // The work of a tool is the map's; the entry only chooses it.
        for (const ToolbarButton& button : ToolbarButtons()) {
            if (button.mapTool)
                setCommand(button.menu, [] {});
        }
        setCommand("mnuBewerkenLabels", [] {});
    }
}

void frmMain::Initialiseer()
{
    RunHandler([this] {
        const BusyScope busy;
        const QString shore = AbsolutePath(gIniFile().GetString("Algemeen", "FetchShapefile"));
        if (m_shoreFile)
            m_shoreFile->SetPath(shore);
        OpenLastDatabase();
        UpdateMenus();
        // The tree opens on its root, whatever was current at the last exit:
        // `lastNode` is kept in the file and not applied.
        ToolbarsClick(ButtonIndexOfMenu("mnuBewerkenItem_0"));
        SetStatusBarTextByNumber(1);
    });
}

// Other commands

void frmMain::mnuExtraBSA_Click()
{
    const QString told = AbsolutePath(gIniFile().GetString("ALGEMEEN", "WindWaveCalculator.exe"));
    const QString path = ProgramFile(told);
    if (!FileExists(path))
        RaiseFout(11, {told, QString()});
    StartProgram({path, {"NL", "BYH"}});
}

void frmMain::mnuHelpHandleiding_Click()
{
    const QString path =
        AbsolutePath(gIniFile().GetString("Algemeen", "Handleiding" + gLanguage()));
    if (!FileExists(path))
        RaiseFout(7, {path});
    if (ShellOpen(path) <= 32)
        ShowMessageForm(this, 3, {QFileInfo(path).suffix(), path});
}

// Panes and look

void frmMain::ApplyPaneSizes()
{
    if (!m_paneSizes)
        return;
    const bool initialized = m_paneSizes->Initialized();
    m_paneSizes->setInitialized(false);
    const int height = m_ui->splRows->height();
    const int upper = qRound(m_paneSizes->GetHeightFactor(1) * height);
    m_ui->splRows->setSizes({upper, height - upper});
    const int width = m_ui->splUpper->width();
    const int map = qRound(m_paneSizes->GetWidthFactor(1) * width);
    m_ui->splUpper->setSizes({map, width - map});
    m_paneSizes->setInitialized(initialized);
}

void frmMain::StorePaneSizes()
{
    if (!m_paneSizes)
        return;
    const auto factor = [](const QSplitter* splitter) {
        const QList<int> sizes = splitter->sizes();
        const int whole = sizes[0] + sizes[1];
        return whole > 0 && sizes[0] > 0 && sizes[1] > 0 ? sizes[0] / double(whole) : 0.0;
    };
    if (const double rows = factor(m_ui->splRows); rows > 0)
        m_paneSizes->SetHeightFactor(1, rows);
    if (const double columns = factor(m_ui->splUpper); columns > 0)
        m_paneSizes->SetWidthFactor(1, columns);
}

void frmMain::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    if (!isMinimized())
        ApplyPaneSizes();
}

void frmMain::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    ApplyPaneSizes();
}

void frmMain::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !m_buttons.isEmpty())
        PaintIcons();
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && m_browser)
        m_browser->EnsureCurrentNodeVisible();
}

QString frmMain::StatusText() const
{
    return m_statusBar->StatusText();
}

void frmMain::ShowStatusText(const QString& text)
{
    m_statusBar->ShowStatusText(text);
}

void frmMain::ShowProgress(int maximum)
{
    m_statusBar->ShowProgress(maximum);
}

void frmMain::SetProgress(int value)
{
    m_statusBar->SetProgress(value);
}

void frmMain::HideProgress()
{
    m_statusBar->HideProgress();
}
