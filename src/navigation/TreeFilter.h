#pragma once

#include <QString>
#include <QStringList>

class NavTree;
class QTreeWidgetItem;

/// Hides the nodes of the tree that do not match a text, and nothing else: keys,
/// order and selection stay. A node is shown when its own text, that
/// of a node above it (roots and folders aside) or of one below it holds the text,
/// case ignored. Roots always show.
///
/// Branches that lead to a match are opened; when the filter goes, the
/// branches stand as they stood before it.
class TreeFilter {
public:
    explicit TreeFilter(const NavTree& tree) : m_tree(tree) {}

    /// Blank shows everything. Returns how many nodes match by their own text.
    int Apply(const QString& text);
    bool IsActive() const { return !m_text.isEmpty(); }
    /// Forgets the text and the branches: the tree is built anew.
    void Reset();
    /// The branches that stood open before the filter came.
    const QStringList& BranchesBefore() const { return m_branchesBefore; }

private:
    bool ApplyTo(QTreeWidgetItem* node, bool ancestorMatches);
    void ShowAll(QTreeWidgetItem* node);

    const NavTree& m_tree;
    QString m_text;
    QStringList m_branchesBefore;
    int m_matches = 0;
};
