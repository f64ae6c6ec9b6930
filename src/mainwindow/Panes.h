#pragma once

#include <QCursor>
#include <QString>
#include <QStringList>

/// What the main window asks of its panes and of the database. The roof ties the
/// real ones; without them the window stands empty and their commands are off.

/// The map in the upper left pane.
class MapPane {
public:
    virtual ~MapPane() = default;
    virtual void AddAchtergrondLayers() = 0;
    /// The tool of a toolbar command is chosen.
    virtual void SelectTool(int command, const QCursor& pointer) = 0;
    virtual void ShowLabels(bool on) = 0;
    virtual void RefreshMap() = 0;
};

/// The location browser in the upper right pane.
class BrowserPane {
public:
    virtual ~BrowserPane() = default;
    /// Key and tag of the current node; empty without one.
    virtual QString CurrentNodeKey() const = 0;
    virtual QString CurrentNodeTag() const = 0;
    virtual bool HasLocations() const = 0;
    virtual void EnsureCurrentNodeVisible() = 0;
    /// Last step of the window's load; does nothing while the tree is empty.
    virtual void ResetCurrentNode() = 0;
};

/// The database as the main window sees it.
class MainDatabase {
public:
    virtual ~MainDatabase() = default;
    /// 0 good, 2 a check failed, 3 too many locations, 4 declined by the user,
    /// any other: cannot be opened.
    virtual int OpenDB(const QString& path, bool readOnly, bool check) = 0;
    virtual void CloseDB() = 0;
    virtual bool IsOpen() const = 0;
    virtual QString OpenErrDescription() const = 0;
    /// Lets the user choose a file and checks it, messages included; the path,
    /// or empty. Nothing is left open.
    virtual QString ChooseChecked(const QString& folder, const QString& title) = 0;
    /// The same check for a file that is known already.
    virtual bool Check(const QString& path) = 0;
    /// Removes data sources of the operating system, where it knows them.
    virtual void RemoveDataSources(const QStringList& names) = 0;
};

/// The shore file of the fetch computations.
class ShoreFile {
public:
    virtual ~ShoreFile() = default;
    virtual QString Path() const = 0;
    virtual void SetPath(const QString& path) = 0;
};
