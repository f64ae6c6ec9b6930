#pragma once

#include "frame/Ports.h"
#include "frame/QLMIniFile.h"
#include "mainwindow/Instellingen.h"
#include "mainwindow/PaneSizes.h"

#include <QHash>
#include <QMainWindow>
#include <QSet>

#include <functional>
#include <memory>

class BrowserPane;
class MainDatabase;
class MainStatusBar;
class MapPane;
class QAction;
class QActionGroup;
class ShoreFile;

namespace Ui {
class frmMain;
}

/// The frame of the program: menus, toolbar, three panes, status bar.
///
/// The window decides when a command can be given and gives it; what a command
/// does is told to it:
///
///     main.setCommand("mnuLocatieBoezempeil", [&] { ... });
///
/// A handler runs in an error frame, so it may throw. A menu entry is enabled
/// when it has a handler, when its menu is (most need an open database) and when
/// the current node and selection allow it (setCommandEnabled). A toolbar button
/// follows the menu entry that does the same.
///
/// The roof makes the window, gives it panes, commands and the database, and
/// then calls Load; Initialiseer follows when the window is on the screen.
class frmMain : public QMainWindow, public StatusBar {
    Q_OBJECT

public:
    explicit frmMain(QWidget* parent = nullptr);
    ~frmMain() override;

    // The roof, before Load. Panes become children; what is behind the other
    // pointers must outlive the window.
    void setMapPane(QWidget* pane, MapPane* map);
    void setTreePane(QWidget* pane, BrowserPane* browser);
    void setLogPane(QWidget* pane);
    void setDatabase(MainDatabase* database) { m_database = database; }
    void setShoreFile(ShoreFile* shoreFile) { m_shoreFile = shoreFile; }
    void setPaneSizes(PaneSizes* sizes) { m_paneSizes = sizes; }

    /// The work of a menu entry, by the entry's name ("mnuFileOpen"; elements of
    /// mnuBewerkenItem: "mnuBewerkenItem_5"). Asking for an unknown entry throws
    /// std::invalid_argument.
    void setCommand(const QString& menu, std::function<void()> handler);
    /// What the current node and the selection say about an entry.
    void setCommandEnabled(const QString& menu, bool enabled);
    QAction* MenuAction(const QString& menu) const;
    QAction* ToolbarAction(int buttonIndex) const { return m_buttons.at(buttonIndex); }

    /// The load handler. A failure is reported and leaves IsLoaded false.
    void Load();
    bool IsLoaded() const { return m_isLoaded; }
    /// Called once, when the window is on the screen: opens the last database.
    void Initialiseer();

    /// The switch behind the toolbar; an index outside it does nothing.
    void ToolbarsClick(int buttonIndex);
    /// Index of the map tool that is down.
    int GetChekedButton() const;
    int GetButtonIndexByIconIndex(int command) const;
    void SetEnableButton(int command, bool enabled);
    void XYToPane(double x, double y);
    /// After every open and close, and after commands that add or remove locations.
    void UpdateMenus();

    /// Checks a file and opens it in place of the present one; failures are
    /// told in a box. What the menu does behind its dialog.
    void OpenDatabase(const QString& path);
    void OpenRandvoorwaarden(const QString& path);
    /// Also the question whether the window may close; the answer is always yes.
    bool CloseRandvoorwaarden();

    const QList<Kwaliteitscode>& Kwaliteitscodes() const { return m_kwaliteitscodes; }
    const LabelSettings& Labels() const { return m_labels; }

    void ShowProgress(int maximum) override;
    void SetProgress(int value) override;
    void HideProgress() override;

signals:
    /// The database stands open: the panes build what they show of it.
    void RandvoorwaardenOpened(const QString& path);
    /// Before a database is left: the panes drop what they show of it.
    void RandvoorwaardenClosing();
    /// The window has stored its settings and is about to go.
    void Unloaded();

protected:
    QString StatusText() const override;
    void ShowStatusText(const QString& text) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct Entry {
        std::function<void()> handler;
        bool allowed = true; // by node and selection
    };

    void BuildToolbar();
    void BuildMenus();
    void BuildPanes();
    void PaintIcons();
    void ApplyPaneSizes();
    void StorePaneSizes();
    void ShowPane(QWidget* container, bool on);
    void LoadSettings();
    void SetOwnCommands();
    void RunCommand(const QString& menu);
    void UpdateEntry(const QString& menu);
    void SelectTool(int buttonIndex);
    void ToggleLabels();
    bool MayRun(const QString& menu) const;
    QString MenuOfButton(int buttonIndex) const;

    void mnuFileOpen_Click();
    void mnuExtraBSA_Click();
    void mnuHelpHandleiding_Click();
    void mnuHelpAbout_Click();
    void OpenLastDatabase();
    void Replace(const QString& path);
    void ConnectRecentDatabases();
    void ShowRecentDatabases();
    void StoreSettings();
    void UnloadOtherForms();

    std::unique_ptr<Ui::frmMain> m_ui;
    std::unique_ptr<MainStatusBar> m_statusBar;
    std::unique_ptr<QLMIniFile> m_iniFile;
    QList<QAction*> m_buttons; // children of the toolbar
    QActionGroup* m_tools;
    QList<QAction*> m_recentActions; // in the file menu, with their separator
    QSet<int> m_disabledButtons;     // by SetEnableButton
    QHash<QString, Entry> m_entries;
    QHash<QString, QString> m_menuOf; // of each entry, the menu it stands in
    QList<Kwaliteitscode> m_kwaliteitscodes;
    LabelSettings m_labels;
    PaneSizes* m_paneSizes = nullptr;
    MapPane* m_map = nullptr;
    BrowserPane* m_browser = nullptr;
    MainDatabase* m_database = nullptr;
    ShoreFile* m_shoreFile = nullptr;
    // As of the last UpdateMenus: the file itself is closed while the core runs,
    // and opened again by the next question to it.
    bool m_databaseShown = false;
    bool m_isLoaded = false;
};
