#pragma once

#include <QPoint>
#include <QString>

/// What the location browser asks of the main window and its map. The main window
/// implements it; tests use a fake.
class BrowserHost {
public:
    virtual ~BrowserHost() = default;

    /// Whether a command can be given, by the name of its menu entry.
    virtual void SetCommandEnabled(const QString& menu, bool enabled) = 0;
    /// The button of the toolbar with this command number.
    virtual void SetEnableButton(int command, bool enabled) = 0;
    /// Shows a menu of the menu bar ("mnuProfiel") as a context menu.
    virtual void ShowContextMenu(const QString& menu, const QPoint& globalPosition) = 0;

    // Commands that a double click gives; they act on the current node.
    virtual void EditProfiel() = 0;
    virtual void ShowBerekeningUitvoer() = 0;
    virtual void EditAddDijkring() = 0;

    /// The selection, or the quality marks of locations, changed: the map is drawn anew.
    virtual void RefreshLocatiesAndLabelsOpMap() = 0;
};
