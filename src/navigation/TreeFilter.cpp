#include "navigation/TreeFilter.h"

#include "navigation/NavTree.h"
#include "navigation/OpenBranches.h"

#include <QTreeWidget>

#include <utility>

int TreeFilter::Apply(const QString& text)
{
    QTreeWidget* view = m_tree.TreeViewObject();
    const QString wanted = text.trimmed();
    if (wanted.isEmpty() && !IsActive())
        return 0;
    if (!IsActive())
        m_branchesBefore = OpenBranches::OfTree(m_tree);
    m_text = wanted;
    m_matches = 0;

    view->setUpdatesEnabled(false);
    for (int i = 0; i < view->topLevelItemCount(); ++i) {
        QTreeWidgetItem* root = view->topLevelItem(i);
        if (IsActive())
            ApplyTo(root, false);
        else
            ShowAll(root);
    }
    if (!IsActive()) {
        view->collapseAll();
        OpenBranches::Apply(m_tree, std::exchange(m_branchesBefore, {}));
    }
    view->setUpdatesEnabled(true);
    return m_matches;
}

void TreeFilter::Reset()
{
    m_text.clear();
    m_branchesBefore.clear();
}

/// Whether the node is shown.
bool TreeFilter::ApplyTo(QTreeWidgetItem* node, bool ancestorMatches)
{
    const QString tag = NavTree::Tag(node);
    const bool isFolder = tag.isEmpty() || tag == navtag::Profielmap ||
                          tag == navtag::Berekeningmap || tag == navtag::Dijkringmap;
    const bool matches = !isFolder && node->text(0).contains(m_text, Qt::CaseInsensitive);
    m_matches += matches ? 1 : 0;

    bool below = false;
    for (int i = 0; i < node->childCount(); ++i) {
        const bool shown = ApplyTo(node->child(i), ancestorMatches || matches);
        below = below || shown;
    }
    const bool leads = below && !ancestorMatches && !matches;
    if (node->childCount() > 0)
        node->setExpanded(leads);
    const bool shown = tag.isEmpty() || ancestorMatches || matches || below;
    node->setHidden(!shown);
    return shown && !tag.isEmpty();
}

void TreeFilter::ShowAll(QTreeWidgetItem* node)
{
    node->setHidden(false);
    for (int i = 0; i < node->childCount(); ++i)
        ShowAll(node->child(i));
}
