#include "navigation/LocationClicks.h"

#include "navigation/MapSelection.h"
#include "navigation/NavTree.h"

#include <QTreeWidgetItem>

#include <algorithm>

bool LocationClicks::Click(const QTreeWidgetItem* node, Qt::KeyboardModifiers modifiers)
{
    if (NavTree::Tag(node) != navtag::Locatie)
        return false;
    const bool control = modifiers & Qt::ControlModifier;
    const bool shift = modifiers & Qt::ShiftModifier;
    if (!control)
        m_selection.ResetSelectie();
    if (shift) {
        SelectRange(node);
        return true;
    }
    if (control && m_selection.IsSelectedLocation(node->text(0)))
        m_selection.RemoveALocationFromSelection(node->text(0));
    else
        m_selection.AddALocation2Selection(node->text(0));
    StartAt(node);
    return true;
}

void LocationClicks::StartAt(const QTreeWidgetItem* node)
{
    if (NavTree::Tag(node) == navtag::Locatie)
        m_start = NavTree::Key(node);
}

void LocationClicks::SelectRange(const QTreeWidgetItem* last)
{
    const QTreeWidgetItem* root = last->parent();
    const QTreeWidgetItem* start = m_tree.GetNodeByKey(m_start);
    const int end = root->indexOfChild(const_cast<QTreeWidgetItem*>(last));
    // Without a place to begin at, the range is this one location.
    const int begin = start ? root->indexOfChild(const_cast<QTreeWidgetItem*>(start)) : end;
    const auto [low, high] = std::minmax(begin, end);
    for (int i = low; i <= high; ++i)
        if (!root->child(i)->isHidden())
            m_selection.AddALocation2Selection(root->child(i)->text(0));
    if (!start)
        StartAt(last);
}

void LocationClicks::SelectAll()
{
    m_selection.ResetSelectie();
    const QTreeWidgetItem* root = m_tree.GetNodeByKey(navkey::RootLocaties);
    for (int i = 0; root && i < root->childCount(); ++i)
        if (!root->child(i)->isHidden())
            m_selection.AddALocation2Selection(root->child(i)->text(0));
}
