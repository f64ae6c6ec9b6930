#include "navigation/MapSelection.h"

#include "navigation/NavTree.h"

#include <QBrush>
#include <QColor>
#include <QTreeWidgetItem>

namespace {

// Stored in callers' terms as 65535: red and green full, no blue.
const QColor kGeselecteerd(255, 255, 0);
// Black text stays readable on yellow, in a dark desktop theme too.
const QColor kTekstOpGeselecteerd(0, 0, 0);

} // namespace

void MapSelection::ResetSelectie()
{
    m_namen.clear();
    m_index.clear();
}

bool MapSelection::IsPreselected(const QTreeWidgetItem* locatie)
{
    const QBrush background = locatie->background(0);
    return background.style() != Qt::NoBrush && background.color() == kGeselecteerd;
}

void MapSelection::ColorSelectionInTreeView(const NavTree& tree, const QString& spoken) const
{
    const QTreeWidgetItem* root = tree.GetNodeByKey(navkey::RootLocaties);
    if (!root)
        return;
    for (int i = 0; i < root->childCount(); ++i) {
        QTreeWidgetItem* locatie = root->child(i);
        const bool selected = IsSelectedLocation(locatie->text(0));
        if (selected == IsPreselected(locatie))
            continue;
        locatie->setBackground(0, selected ? QBrush(kGeselecteerd) : QBrush());
        locatie->setForeground(0, selected ? QBrush(kTekstOpGeselecteerd) : QBrush());
        locatie->setData(0, Qt::AccessibleDescriptionRole, selected ? spoken : QString());
    }
}

void MapSelection::AddALocation2Selection(const QString& naam)
{
    if (naam.isEmpty() || IsSelectedLocation(naam))
        return;
    m_namen << naam;
    m_index << naam.toLower();
}

void MapSelection::RemoveALocationFromSelection(const QString& naam)
{
    if (m_index.remove(naam.toLower()))
        m_namen.removeIf(
            [&](const QString& een) { return een.compare(naam, Qt::CaseInsensitive) == 0; });
}

bool MapSelection::IsSelectedLocation(const QString& naam) const
{
    return m_index.contains(naam.toLower());
}

QString MapSelection::SearchExpression() const
{
    QString expression;
    for (const QString& naam : m_namen)
        expression += "OMSCHR= '" + naam + "' OR ";
    expression.chop(4); // the last " OR "
    return expression;
}

QString MapSelection::SearchExpressionWithKwal(int kwal) const
{
    if (!HasSelectedNodes())
        return {};
    return "KWAL=" + QString::number(kwal) + " AND (" + SearchExpression() + ")";
}
