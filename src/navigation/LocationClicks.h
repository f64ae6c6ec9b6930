#pragma once

#include <QString>
#include <QtCore/qnamespace.h>

class MapSelection;
class NavTree;
class QTreeWidgetItem;

/// What clicks on the locations of the tree do to the selection. A plain click selects
/// that location and no other; with Control it adds the location or takes it out;
/// with Shift it selects all from the location where the user was before; with both it
/// adds those.
///
/// Locations that are hidden (by the filter) take no part. Nodes that are no
/// locations are passed over.
class LocationClicks {
public:
    LocationClicks(const NavTree& tree, MapSelection& selection)
        : m_tree(tree), m_selection(selection)
    {}

    /// Whether the node is a location, so that the selection may have changed.
    bool Click(const QTreeWidgetItem* node, Qt::KeyboardModifiers modifiers);
    /// The user went to this node without selecting: where the next range begins.
    void StartAt(const QTreeWidgetItem* node);
    /// All locations that are shown.
    void SelectAll();

private:
    void SelectRange(const QTreeWidgetItem* last);

    const NavTree& m_tree;
    MapSelection& m_selection;
    QString m_start; // key of the location where a range begins
};
