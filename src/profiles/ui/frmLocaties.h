#pragma once

#include "calculation/BerekenLocaties.h"
#include "database/HRdb.h"
#include "frame/QLMIniFile.h"
#include "navigation/LocationClicks.h"
#include "navigation/NavTree.h"
#include "navigation/OpenBranches.h"
#include "navigation/TreeChanges.h"
#include "navigation/TreeFilter.h"

#include <QWidget>

#include <memory>

class BrowserHost;
class LogViewer;
class MapSelection;

namespace Ui {
class frmLocaties;
}

/// The pane with the tree `treLocaties`: the user's way to everything that database and
/// work folder hold. It decides what is current, keeps the commands of the main window
/// and the log pane in step with it, and carries out what starts from the
/// tree. What the tree holds is NavTree's business, what a command changes is that of
/// TreeChanges.
///
/// Key, not pointer, says which node is current, so that a node removed by anybody is
/// simply not current any more.
class frmLocaties : public QWidget, public LocatieBrowser, public Berekeningenboom {
    Q_OBJECT

public:
    /// All must outlive the form. The tree control becomes that of `navTree`.
    struct Omgeving {
        HRdb& database;
        NavTree& navTree;
        MapSelection& mapSelection;
        BrowserHost& host;
        LogViewer& log;
    };

    explicit frmLocaties(const Omgeving& omgeving, QWidget* parent = nullptr);
    ~frmLocaties() override;

    void RemoveRvwTrees();
    /// `locaties` holds their names in field OMSCHR, in the order of the tree.
    void CreateRvwBrowserTree(const QString& basisnaam, const RecordsetPtr& locaties);
    void CreateProfielTree();

    void SelecteerLocatie(const QString& naam);
    /// Nothing is selected any more.
    void ResetSelectedLocations();
    /// Colours and commands follow the selection as it is.
    void ApplySelectedLocations();

    void ResetCurrentNode() override;
    void SetCurrentNodeNothing();
    /// Makes a node current: selected, in view, its log and its commands. Nothing
    /// happens without a node.
    void ApplyNode(QTreeWidgetItem* node) override;
    /// ApplyNode as a click on the node does it.
    void ClickNode(QTreeWidgetItem* node);

    // Commands. Those that delete ask first.
    /// The locations of the selection, with their folders; false when the user keeps them or
    /// nothing is selected.
    bool DeleteLocaties();
    void ProfielAssign2SelectedLocations(const QString& profiel);
    void ProfielDelete();
    void BerekeningDelete();
    void BerekeningRename();
    void DijkringCopy();
    void DijkringPaste();
    void DijkringDelete();
    void DijkringRename();
    /// The calculation is about to be replaced. Does nothing for the current node.
    void BerekeningNodeDelete(const QString& key) override;

    QTreeWidgetItem* CurrentNode() const;
    void setCurrentNode(QTreeWidgetItem* node);
    QTreeWidgetItem* LocatiesNode() const;
    QTreeWidgetItem* DijkringenNode() const;
    /// The current node or the nearest above it that is a location (a ring).
    QTreeWidgetItem* CurrentLocationNode() const;
    QTreeWidgetItem* CurrentDijkringNode() const;
    /// Of the current node; empty without one.
    QString CurrentNodeKey() const;
    QString CurrentNodeTag() const;
    void EnsureCurrentNodeVisible();

    QString GetNodePath(const QString& key) const;
    bool NodeExists(const QString& key) override;
    QTreeWidgetItem* GetNodeByKey(const QString& key) override;
    QString GetPathSeparator() override;

    QTreeWidgetItem* AddBerekening2Locatie(QTreeWidgetItem* locatie, const QString& naam) override;
    void AddBerekening2Root(const QString& naam) override;

private:
    void CreateLocatieTree(const RecordsetPtr& locaties);
    void CreateDijkringTree();
    void CreateBerekeningTree();
    QString RootText(const QString& key, const QString& standaard);
    QTreeWidgetItem* AddRoot(const QString& key, const QString& standaard, bool sorted);
    void RememberBranches();

    QTreeWidgetItem* Ancestor(const QString& tag) const;
    /// What becomes current when `node` goes.
    static QString NextNode(const QTreeWidgetItem* node);
    /// What becomes current when all of the selection goes.
    QString NextUnselectedLocation() const;
    /// Runs a change that may take the current node away and moves on to `next` then, or to
    /// what is left above it; also when the change tells that a folder was left behind.
    template <typename Change>
    void ChangeAndMoveOn(const QString& next, Change&& change);
    void MoveOn(const QString& next);
    void ForgetGoneLocations();
    void ApplyCommands();
    void ApplyResultCommands();
    void ShowLog();
    void StartLabelEdit(QTreeWidgetItem* node);

    void treLocaties_NodeClick(QTreeWidgetItem* node, Qt::KeyboardModifiers modifiers);
    void treLocaties_NodeDoubleClick(QTreeWidgetItem* node);
    void treLocaties_MouseUp(QTreeWidgetItem* node, Qt::KeyboardModifiers modifiers);
    void ShowPickedLocations();
    void treLocaties_ContextMenu(const QPoint& globalPosition);
    void treLocaties_KeyDown(int key);
    void treLocaties_AfterLabelEdit(const QString& key, const QString& text);
    void txtFilter_Change(const QString& text);
    void ConnectTree();
    void ConnectFilter();

    std::unique_ptr<Ui::frmLocaties> m_ui;
    QLMIniFile m_iniFile;
    HRdb& m_database;
    NavTree& m_navTree;
    MapSelection& m_mapSelection;
    BrowserHost& m_host;
    LogViewer& m_log;
    TreeChanges m_changes;
    TreeFilter m_filter;
    LocationClicks m_clicks;
    OpenBranches m_branches;

    QString m_spokenSelection; // what a screen reader says of a selected location
    QString m_currentKey;
    QStringList m_boldKeys;
    QString m_copiedRing;   // key
    QString m_basisnaam;    // of the database, shown on the roots
    QString m_openDatabase; // whose branches are shown
};
