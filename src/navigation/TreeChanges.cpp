#include "navigation/TreeChanges.h"

#include "database/FolderChanges.h"
#include "database/HRdb.h"
#include "database/Transactie.h"
#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/Windows1252.h"
#include "navigation/NavTree.h"
#include "navigation/NodePaths.h"

#include <QTreeWidgetItem>

#include <exception>

namespace {

constexpr int kDijkringNaamLengte = 50;

bool SameText(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

bool IsAllowed(const QString& naam)
{
    return IsValidDbName(naam) && FitsWindows1252(naam);
}

bool Contains(const QStringList& namen, const QString& naam)
{
    return namen.contains(naam, Qt::CaseInsensitive);
}

/// The folder beside `path` with another name.
QString Sibling(const QString& path, const QString& naam)
{
    return path.left(LastSeparator(path) + 1) + naam;
}

} // namespace

bool TreeChanges::IsBelow(const QTreeWidgetItem* node, const QString& root) const
{
    return NavTree::Key(node).startsWith(root + m_tree.pathSeparator(), Qt::CaseInsensitive);
}

QString TreeChanges::Path(const QTreeWidgetItem* node) const
{
    return PathOfNode(NavTree::Key(node), m_tree.pathSeparator(), m_database.WerkMap());
}

TreeChanges::Geregistreerd TreeChanges::BerekeningVanMap(const QString& mapnaam)
{
    for (qsizetype at = mapnaam.lastIndexOf('_'); at > 0; at = mapnaam.lastIndexOf('_', at - 1)) {
        const QString berekening = mapnaam.left(at);
        const QString profiel = mapnaam.mid(at + 1);
        const int id = m_database.GetBerekening_ID_Profiel(berekening, profiel);
        if (id != kNietBekend)
            return {berekening, profiel, id};
    }
    return {mapnaam, {}, m_database.GetBerekening_ID_Profiel(mapnaam, {})};
}

QList<QTreeWidgetItem*> TreeChanges::NodesOfBerekening(const QString& naam) const
{
    QList<QTreeWidgetItem*> nodes;
    const QTreeWidgetItem* root = m_tree.GetNodeByKey(navkey::RootLocaties);
    for (int i = 0; root && i < root->childCount(); ++i) {
        const auto* map =
            m_tree.GetNodeByKey(m_tree.JoinKey(NavTree::Key(root->child(i)), navkey::Berekeningen));
        for (int j = 0; map && j < map->childCount(); ++j) {
            const QString text = map->child(j)->text(0);
            if (SameText(text, naam) || text.startsWith(naam + '_', Qt::CaseInsensitive))
                nodes << map->child(j);
        }
    }
    return nodes;
}

QStringList TreeChanges::NamenInDatabase(const QString& naam, const QList<QTreeWidgetItem*>& nodes)
{
    // A name with a "_" shows at the calculations root under its first part, so that
    // there may be more than one.
    QStringList namen{naam};
    QStringList mapnamen;
    for (const QTreeWidgetItem* node : nodes) {
        if (Contains(mapnamen, node->text(0)))
            continue;
        mapnamen << node->text(0);
        const Geregistreerd gevonden = BerekeningVanMap(node->text(0));
        if (gevonden.id != kNietBekend && !Contains(namen, gevonden.berekening))
            namen << gevonden.berekening;
    }
    return namen;
}

void TreeChanges::RebuildBerekeningen()
{
    auto* root = m_tree.GetNodeByKey(navkey::RootBerekeningen);
    m_tree.RemoveChildren(root);
    m_tree.addBerekeningen2Root(root, m_tree.GetNodeByKey(navkey::RootLocaties));
}

// Renames

QString TreeChanges::RenameBerekening(QTreeWidgetItem* node, const QString& naam)
{
    if (!IsAllowed(naam))
        RaiseFout(101);
    if (m_database.BerekeningExists(naam))
        RaiseFout(102);
    return IsBelow(node, navkey::RootBerekeningen) ? RenameEverywhere(node->text(0), naam)
                                                   : RenameHere(node, naam);
}

QString TreeChanges::RenameEverywhere(const QString& oud, const QString& nieuw)
{
    const auto renamed = [&](const QString& text) { return nieuw + text.mid(oud.size()); };
    const auto nodes = NodesOfBerekening(oud);
    FolderChanges folders(m_database.WerkMap());
    Transactie rows = m_database.BeginTransactie();
    for (const QString& naam : NamenInDatabase(oud, nodes))
        m_database.RenameBerekening(naam, renamed(naam));
    for (const QTreeWidgetItem* node : nodes) {
        const QString path = Path(node);
        folders.Rename(path, Sibling(path, renamed(node->text(0))));
    }
    rows.Commit();
    folders.Commit();
    for (QTreeWidgetItem* node : nodes) {
        const QString text = renamed(node->text(0));
        m_tree.Rename(node, text, text);
    }
    RebuildBerekeningen();
    return NavTree::Key(m_tree.AddBerekening2Root(nieuw));
}

QString TreeChanges::RenameHere(QTreeWidgetItem* node, const QString& naam)
{
    const QString sibling = m_tree.JoinKey(NavTree::Key(node->parent()), naam);
    if (auto* other = m_tree.GetNodeByKey(sibling); other && other != node)
        RaiseFout(102);
    const QString path = Path(node);
    FolderChanges folders(m_database.WerkMap());
    if (node->text(0) != naam)
        folders.Rename(path, Sibling(path, naam));
    folders.Commit();
    m_tree.Rename(node, naam, naam);
    RebuildBerekeningen();
    return NavTree::Key(node);
}

QString TreeChanges::RenameDijkring(QTreeWidgetItem* node, const QString& naam)
{
    if (naam.size() > kDijkringNaamLengte)
        RaiseFout(21, {QString::number(kDijkringNaamLengte)});
    if (!IsAllowed(naam))
        RaiseFout(22);
    if (m_database.DijkringExists(naam))
        RaiseFout(23);
    const QString path = Path(node);
    FolderChanges folders(m_database.WerkMap());
    Transactie rows = m_database.BeginTransactie();
    m_database.RenameDijkring(node->text(0), naam);
    folders.Rename(path, Sibling(path, naam));
    rows.Commit();
    folders.Commit();
    m_tree.Rename(node, naam.toLower(), naam);
    return NavTree::Key(node);
}

// Deletes

void TreeChanges::DeleteBerekening(QTreeWidgetItem* node)
{
    if (IsBelow(node, navkey::RootBerekeningen))
        DeleteEverywhere(node->text(0));
    else
        DeleteHere(node);
}

void TreeChanges::DeleteHere(QTreeWidgetItem* node)
{
    const QString mapnaam = node->text(0);
    QTreeWidgetItem* owner = node->parent()->parent(); // location or ring
    FolderChanges folders(m_database.WerkMap());
    Transactie rows = m_database.BeginTransactie();
    if (NavTree::Tag(owner) == navtag::Locatie) {
        const int id = BerekeningVanMap(mapnaam).id;
        const int locatie = m_database.GetLocatie_ID(owner->text(0));
        if (id != kNietBekend && locatie != kNietBekend)
            m_database.DeleteBerekeningResultaten(id, locatie);
    }
    folders.Remove(Path(node));
    rows.Commit();
    folders.Keep();
    m_tree.removeBerekeningFromLocationNode(owner, mapnaam);
    RebuildBerekeningen();
    folders.Commit();
}

void TreeChanges::DeleteEverywhere(const QString& naam)
{
    const auto nodes = NodesOfBerekening(naam);
    FolderChanges folders(m_database.WerkMap());
    Transactie rows = m_database.BeginTransactie();
    for (const QString& berekening : NamenInDatabase(naam, nodes))
        m_database.DeleteBerekening(berekening);
    for (const QTreeWidgetItem* node : nodes)
        folders.Remove(Path(node));
    rows.Commit();
    folders.Keep();
    for (const QTreeWidgetItem* node : nodes)
        m_tree.removeBerekeningFromLocationNode(node->parent()->parent(), node->text(0));
    m_tree.removeBerekeningFromTreeview(naam);
    folders.Commit();
}

void TreeChanges::DeleteDijkring(QTreeWidgetItem* node)
{
    FolderChanges folders(m_database.WerkMap());
    Transactie rows = m_database.BeginTransactie();
    m_database.DeleteDijkring(node->text(0));
    folders.Remove(Path(node));
    rows.Commit();
    folders.Keep();
    m_tree.Remove(node);
    folders.Commit();
}

void TreeChanges::DeleteLocaties(const QStringList& namen)
{
    FolderChanges folders(m_database.WerkMap());
    Transactie rows = m_database.BeginTransactie();
    for (const QString& naam : namen) {
        if (m_database.GetLocatie_ID(naam) == kNietBekend)
            continue; // gone behind our back; what stands in its folder is nobody's to delete
        // Out of the way first: a folder that the database finds it deletes for good.
        folders.Remove(gFso().BuildPath(m_database.WerkMap(), naam));
        m_database.DeleteLocatie(naam);
    }
    const auto emptyRings = DijkringenWithoutRows();
    rows.Commit();
    folders.Keep();
    for (const QString& naam : namen)
        m_tree.Remove(m_tree.GetNodeByKey(m_tree.JoinKey(navkey::RootLocaties, naam)));
    for (QTreeWidgetItem* ring : emptyRings)
        m_tree.Remove(ring);
    RebuildBerekeningen();
    folders.Commit();
}

QList<QTreeWidgetItem*> TreeChanges::DijkringenWithoutRows()
{
    QList<QTreeWidgetItem*> rings;
    const QTreeWidgetItem* root = m_tree.GetNodeByKey(navkey::RootDijkringen);
    for (int i = 0; root && i < root->childCount(); ++i)
        if (!m_database.DijkringExists(root->child(i)->text(0)))
            rings << root->child(i);
    return rings;
}

QTreeWidgetItem* TreeChanges::PasteDijkring(const QString& naam)
{
    Transactie rows = m_database.BeginTransactie();
    QString nieuw = naam;
    for (int number = 1; m_database.DijkringExists(nieuw); ++number)
        nieuw = naam + '_' + QString::number(number);
    m_database.CopyDijkring(naam, nieuw);
    rows.Commit();
    return m_tree.AddDijkring2Root(nieuw);
}

// Profiles

void TreeChanges::UnlinkProfiel(QTreeWidgetItem* node)
{
    QTreeWidgetItem* locatie = node->parent()->parent();
    const QString naam = node->text(0);
    Transactie rows = m_database.BeginTransactie();
    m_database.DeleteProfielFromLocation(m_database.GetLocatie_ID(locatie->text(0)),
                                         m_database.GetProfiel_ID(naam));
    rows.Commit();
    m_tree.removeProfielFromLocationNode(locatie, naam);
}

void TreeChanges::DeleteProfiel(const QString& naam)
{
    Transactie rows = m_database.BeginTransactie();
    m_database.DeleteProfiel(naam);
    rows.Commit();
    m_tree.removeProfielFromTreeview(naam);
}

void TreeChanges::AssignProfiel(const QString& naam, const QStringList& locaties)
{
    const int profiel = m_database.GetProfiel_ID(naam);
    if (profiel == kNietBekend)
        return;
    QStringList linked;
    std::exception_ptr refusal;
    Transactie rows = m_database.BeginTransactie();
    m_database.UpdateKwaliteitskenmerkOnce([&] {
        try {
            for (const QString& locatie : locaties) {
                const int id = m_database.GetLocatie_ID(locatie);
                if (id == kNietBekend)
                    continue;
                m_database.AddProfiel2Location(id, profiel);
                linked << locatie;
            }
        } catch (const std::exception&) {
            refusal = std::current_exception(); // told once those before it are stored
        }
    });
    rows.Commit();
    for (const QString& locatie : std::as_const(linked))
        m_tree.AddProfiel2Locatie(m_tree.JoinKey(navkey::RootLocaties, locatie), naam);
    if (refusal)
        std::rethrow_exception(refusal);
}
