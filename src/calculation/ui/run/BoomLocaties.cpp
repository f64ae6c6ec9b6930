#include "calculation/ui/run/BoomLocaties.h"

#include "navigation/MapSelection.h"
#include "navigation/NavTree.h"

#include <QTreeWidgetItem>

namespace {

QStringList Profielen(const QTreeWidgetItem* locatie)
{
    QStringList profielen;
    for (int i = 0; i < locatie->childCount(); ++i) {
        const QTreeWidgetItem* map = locatie->child(i);
        if (NavTree::Tag(map) != navtag::Profielmap)
            continue;
        for (int j = 0; j < map->childCount(); ++j)
            profielen << map->child(j)->text(0);
    }
    return profielen;
}

} // namespace

QList<LocatieInBoom> BoomLocaties::Locaties() const
{
    QList<LocatieInBoom> locaties;
    const QTreeWidgetItem* root = m_boom.GetNodeByKey(navkey::RootLocaties);
    for (int i = 0; root && i < root->childCount(); ++i) {
        const QTreeWidgetItem* node = root->child(i);
        if (NavTree::Tag(node) == navtag::Locatie)
            locaties << LocatieInBoom{node->text(0), MapSelection::IsPreselected(node),
                                      Profielen(node)};
    }
    return locaties;
}
