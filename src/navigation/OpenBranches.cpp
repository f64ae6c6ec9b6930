#include "navigation/OpenBranches.h"

#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "navigation/NavTree.h"

#include <QCryptographicHash>
#include <QTreeWidget>

namespace {

const QString kSection = QStringLiteral("BOOMTAKKEN");
const QString kOrder = QStringLiteral("volgorde"); // keys of databases, the last one used first
constexpr int kDatabases = 20;
constexpr int kBranches = 300;

/// All of one length: a key that begins another would overwrite it in the ini.
QString KeyOfDatabase(const QString& database)
{
    const QByteArray path = ResolvePath(database).toLower().toUtf8();
    return "db" + QCryptographicHash::hash(path, QCryptographicHash::Md5).toHex().left(16);
}

void Collect(const QTreeWidgetItem* node, QStringList& keys)
{
    if (!node->isExpanded() || keys.size() >= kBranches)
        return;
    keys << NavTree::Key(node);
    for (int i = 0; i < node->childCount(); ++i)
        Collect(node->child(i), keys);
}

} // namespace

QStringList OpenBranches::Read(const QString& database)
{
    return m_ini.GetString(kSection, KeyOfDatabase(database)).split('|', Qt::SkipEmptyParts);
}

void OpenBranches::Write(const QString& database, const QStringList& keys)
{
    const QString own = KeyOfDatabase(database);
    QStringList order = m_ini.GetString(kSection, kOrder).split('|', Qt::SkipEmptyParts);
    order.removeAll(own);
    order.prepend(own);
    while (order.size() > kDatabases)
        m_ini.RemoveKey(kSection, order.takeLast());
    m_ini.SaveString(kSection, kOrder, order.join('|'));
    m_ini.SaveString(kSection, own, keys.join('|'));
}

QStringList OpenBranches::OfTree(const NavTree& tree)
{
    QStringList keys;
    const QTreeWidget* view = tree.TreeViewObject();
    for (int i = 0; i < view->topLevelItemCount(); ++i)
        Collect(view->topLevelItem(i), keys);
    return keys;
}

void OpenBranches::Apply(const NavTree& tree, const QStringList& keys)
{
    for (const QString& key : keys)
        if (auto* node = tree.GetNodeByKey(key))
            node->setExpanded(true);
}
