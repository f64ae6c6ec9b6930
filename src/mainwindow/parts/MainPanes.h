#pragma once

#include "frame/Globals.h"
#include "mainwindow/Panes.h"
#include "mainwindow/parts/HRdbDatabase.h"
#include "mainwindow/parts/Oeverbestand.h"
#include "navigation/NavTree.h"
#include "profiles/ui/BrowserHost.h"

#include <QObject>

class MapSelection;
class MapView;
class frmBerekeningInstellingen;
class frmLocaties;
class frmLog;
class frmMain;

/// What the main window is made of besides itself: map, location browser and log
/// in its panes, the database and the shore file behind them. Passes on what
/// they say to each other.
///
/// An opened database is shown here, and what is shown of it taken away again
/// before it is left.
class MainPanes : public QObject, public BrowserHost, public BrowserPane, public MapPane {
    Q_OBJECT

public:
    struct Omgeving {
        HRdb& database;
        MapSelection& selection;
        Strijklengte& strijklengte;
    };

    /// Becomes a child of the window and hands it its panes. The rest must
    /// outlive the window.
    MainPanes(frmMain& window, const Omgeving& omgeving);
    ~MainPanes() override;

    HRdb& Database() const { return m_hrdb; }
    frmLocaties& Locaties() const { return *m_locaties; }
    frmLog& Log() const { return *m_log; }
    MapView& Map() const { return *m_map; }

    const NavTree& Boom() const { return m_navTree; }
    /// The form keeps its settings from one calculation to the next.
    Global<frmBerekeningInstellingen>& Instellingen() { return m_instellingen; }

    void ZoomFullExtent();
    /// Takes the selected locations out of the database, and off the screen, after asking.
    void DeleteLocaties();
    /// Locations or their marks of quality changed.
    void RefreshLocatiesAndLabelsOpMap() override;

    // BrowserHost
    void SetCommandEnabled(const QString& menu, bool enabled) override;
    void SetEnableButton(int command, bool enabled) override;
    void ShowContextMenu(const QString& menu, const QPoint& globalPosition) override;
    void EditProfiel() override;
    void ShowBerekeningUitvoer() override;
    void EditAddDijkring() override;

    // BrowserPane
    QString CurrentNodeKey() const override;
    QString CurrentNodeTag() const override;
    bool HasLocations() const override;
    void EnsureCurrentNodeVisible() override;
    void ResetCurrentNode() override;

    // MapPane
    void AddAchtergrondLayers() override {} // there are none yet
    void SelectTool(int command, const QCursor& pointer) override;
    void ShowLabels(bool on) override;
    void RefreshMap() override;

private:
    void ShowDatabase(const QString& path);
    void LeaveDatabase();
    void WriteLocationShape();
    void ShowLocations();
    void ShowRemainingLocations();
    int LocationCount() const;
    void ShowSelection();
    void AddToSelection(const QStringList& names);
    QColor ColourOfMark(int kwal) const;

    frmMain& m_window;
    HRdb& m_hrdb;
    MapSelection& m_selection;
    HRdbDatabase m_database;
    Oeverbestand m_oeverbestand;
    NavTree m_navTree;
    Global<frmBerekeningInstellingen> m_instellingen;
    MapView* m_map; // a child of the window, as the next two
    frmLog* m_log;
    frmLocaties* m_locaties;
};
