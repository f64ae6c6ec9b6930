#pragma once

#include <QMap>
#include <QString>

/// What the commands that vary with the current node need to know of it.
struct NodeState {
    QString key = {};        ///< empty: no current node
    QString tag = {};        ///< empty for a root
    bool selection = false;  ///< locations are selected on the map
    bool uitvoer = false;    ///< its folder holds uitvoer.txt
    bool freqlijn = false;   ///< its folder holds freqlijn.txt
    bool resultaten = false; ///< the database holds results of some calculation
};

/// Whether each command that varies with the current node can be given, by the
/// name of its menu entry; always the same names, so that no state of an
/// earlier node stays behind.
[[nodiscard]] QMap<QString, bool> CommandsOfNode(const NodeState& node);

/// The menu of the main window that belongs to a kind of node: what a right
/// click shows. Empty without a node.
[[nodiscard]] QString ContextMenuOfNode(const QString& key, const QString& tag);
