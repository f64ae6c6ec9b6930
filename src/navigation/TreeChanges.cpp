#include "navigation/TreeChanges.h"

#include "database/HRdb.h"
#include "frame/Fouten.h"
#include "frame/Paths.h"
#include "frame/Windows1252.h"
#include "navigation/FolderChanges.h"
#include "navigation/NavTree.h"
#include "navigation/NodePaths.h"

#include <QHash>
#include <QTreeWidgetItem>

#include <functional>
#include <utility>

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

/// The folder beside `path` with another name.
QString Sibling(const QString& path, const QString& naam)
{
    return path.left(LastSeparator(path) + 1) + naam;
}

/// Takes back renames in the database when what follows them fails. The
/// database renames row by row, so that a rename that fails is taken back too.
class DatabaseRenames {
public:
    explicit DatabaseRenames(std::function<void(const QString&, const QString&)> rename)
        : m_rename(std::move(rename))
    {}
    ~DatabaseRenames()
    {
        for (const auto& [oud, nieuw] : m_done) {
            try {
                m_rename(nieuw, oud);
            } catch (const std::exception&) {
                // The failure that brought us here is the one to tell.
            }
        }
    }
    DatabaseRenames(const DatabaseRenames&) = delete;
    DatabaseRenames& operator=(const DatabaseRenames&) = delete;

    void Rename(const QString& oud, const QString& nieuw)
    {
        m_done.append({oud, nieuw});
        m_rename(oud, nieuw);
    }
    void Commit() { m_done.clear(); }

private:
    std::function<void(const QString&, const QString&)> m_rename;
    QList<std::pair<QString, QString>> m_done;
};

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
    DatabaseRenames rows(
        [&](const QString& from, const QString& to) { m_database.RenameBerekening(from, to); });

    // A name with a "_" shows here under its first part, so that there may be more
    // than one. In the order of the locations; names in the database without
    // regard to case.
    QStringList namen{oud};
    QHash<QString, bool> seen; // folder names looked up already
    for (QTreeWidgetItem* node : nodes) {
        const QString path = Path(node);
        const QString text = node->text(0);
        folders.Rename(path, Sibling(path, renamed(text)));
        if (std::exchange(seen[text.toLower()], true))
            continue;
        const Geregistreerd inDatabase = BerekeningVanMap(text);
        if (inDatabase.id != kNietBekend &&
            !namen.contains(inDatabase.berekening, Qt::CaseInsensitive))
            namen << inDatabase.berekening;
    }
    for (const QString& naam : std::as_const(namen))
        rows.Rename(naam, renamed(naam));

    folders.Commit();
    rows.Commit();
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
    DatabaseRenames rows(
        [&](const QString& from, const QString& to) { m_database.RenameDijkring(from, to); });
    folders.Rename(path, Sibling(path, naam));
    rows.Rename(node->text(0), naam);
    folders.Commit();
    rows.Commit();
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
    folders.Remove(Path(node));
    if (NavTree::Tag(owner) == navtag::Locatie) {
        const int id = BerekeningVanMap(mapnaam).id;
        const int locatie = m_database.GetLocatie_ID(owner->text(0));
        if (id != kNietBekend && locatie != kNietBekend)
            m_database.DeleteBerekeningResultaten(id, locatie);
    }
    m_tree.removeBerekeningFromLocationNode(owner, mapnaam);
    RebuildBerekeningen();
    folders.Commit();
}

void TreeChanges::DeleteEverywhere(const QString& naam)
{
    const auto nodes = NodesOfBerekening(naam);
    FolderChanges folders(m_database.WerkMap());
    QStringList mapnamen;
    for (const QTreeWidgetItem* node : nodes) {
        folders.Remove(Path(node));
        if (!mapnamen.contains(node->text(0), Qt::CaseInsensitive))
            mapnamen << node->text(0);
    }
    QStringList namen{naam};
    for (const QString& mapnaam : std::as_const(mapnamen)) {
        // A name with a "_" shows here under its first part.
        const Geregistreerd inDatabase = BerekeningVanMap(mapnaam);
        if (inDatabase.id != kNietBekend &&
            !namen.contains(inDatabase.berekening, Qt::CaseInsensitive))
            namen << inDatabase.berekening;
    }
    for (const QString& berekening : std::as_const(namen))
        m_database.DeleteBerekening(berekening);
    for (const QString& mapnaam : std::as_const(mapnamen))
        m_tree.removeBerekeningFromTreeview(mapnaam);
    m_tree.removeBerekeningFromTreeview(naam);
    folders.Commit();
}

void TreeChanges::DeleteDijkring(QTreeWidgetItem* node)
{
    const QString naam = node->text(0);
    FolderChanges folders(m_database.WerkMap());
    folders.Remove(Path(node));
    m_database.DeleteDijkring(naam);
    m_tree.Remove(node);
    folders.Commit();
}

QTreeWidgetItem* TreeChanges::PasteDijkring(const QString& naam)
{
    QString nieuw = naam;
    for (int number = 1; m_database.DijkringExists(nieuw); ++number)
        nieuw = naam + '_' + QString::number(number);
    m_database.CopyDijkring(naam, nieuw);
    return m_tree.AddDijkring2Root(nieuw);
}

// Profiles

void TreeChanges::UnlinkProfiel(QTreeWidgetItem* node)
{
    QTreeWidgetItem* locatie = node->parent()->parent();
    const QString naam = node->text(0);
    m_database.DeleteProfielFromLocation(m_database.GetLocatie_ID(locatie->text(0)),
                                         m_database.GetProfiel_ID(naam));
    m_tree.removeProfielFromLocationNode(locatie, naam);
}

void TreeChanges::DeleteProfiel(const QString& naam)
{
    m_database.DeleteProfiel(naam);
    m_tree.removeProfielFromTreeview(naam);
}

void TreeChanges::AssignProfiel(const QString& naam, const QStringList& locaties)
{
    const int profiel = m_database.GetProfiel_ID(naam);
    if (profiel == kNietBekend)
        return;
    for (const QString& locatie : locaties) {
        const auto rows = m_database.GetLocatieProperties(locatie);
        if (!HRdb::heeftRecords(rows))
            continue;
        m_database.AddProfiel2Location(rows->Get("Locatie_ID").AsInt(), profiel);
        m_tree.AddProfiel2Locatie(m_tree.JoinKey(navkey::RootLocaties, locatie), naam);
    }
}
