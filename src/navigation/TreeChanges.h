#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class HRdb;
class NavTree;
class QTreeWidgetItem;

/// Deletes, renames and copies that touch work folder, database and tree
/// together. When one of the three fails, the others are as they were; what
/// failed is raised. Questions to the user come before the call.
///
/// The order makes it so: the database changes inside a transaction, folders move
/// (see FolderChanges), the transaction is committed; then the tree follows, which
/// cannot fail, and at last what was moved out of sight is deleted. Only that last step
/// can leave something behind: files that nobody can delete, under the name that
/// error 13 tells.
///
/// A folder that has gone behind our back is no failure: what is left of a
/// calculation or ring can always be removed or renamed.
class TreeChanges {
public:
    TreeChanges(NavTree& tree, HRdb& database) : m_tree(tree), m_database(database) {}

    /// A calculation's name as it was registered, and its profile.
    struct Geregistreerd {
        QString berekening;
        QString profiel;
        int id; ///< kNietBekend: the database does not know it
    };
    /// Which calculation of the database a folder holds: "naam" or "naam_profiel".
    /// Both parts may hold a "_": the last one divides them, unless the database
    /// knows the folder only by another.
    [[nodiscard]] Geregistreerd BerekeningVanMap(const QString& mapnaam);

    /// Below the calculations root: the calculation of that name at all
    /// locations, and in the database. Anywhere else: this one folder alone.
    /// Raises 101 for a name that is not allowed and 102 for one that is in use.
    /// Returns the key of the renamed node.
    QString RenameBerekening(QTreeWidgetItem* node, const QString& naam);
    /// Raises 21 (too long), 22 (not allowed) and 23 (in use). Returns the new key.
    QString RenameDijkring(QTreeWidgetItem* node, const QString& naam);

    /// Below the calculations root: the calculation of that name at all
    /// locations. Anywhere else: this one folder with its results. Error 13 with the
    /// path of a folder that cannot be deleted.
    void DeleteBerekening(QTreeWidgetItem* node);
    /// With its calculations. Error 13.
    void DeleteDijkring(QTreeWidgetItem* node);
    /// With their folders and all that hangs from them in the database; a name that the
    /// database does not know only leaves the tree. A ring without a
    /// location is none any more; its folder stays. Errors 13 and 1520.
    void DeleteLocaties(const QStringList& namen);
    /// A copy of a ring under the first free name: "A", "A_1", "A_2"...
    QTreeWidgetItem* PasteDijkring(const QString& naam);

    /// `node` is a profile below a location: its link goes, the profile stays.
    void UnlinkProfiel(QTreeWidgetItem* node);
    /// With its links to locations.
    void DeleteProfiel(const QString& naam);
    /// Links a profile to locations, in order. A location that has it already raises
    /// the engine's error, where the file has a key, and stops the walk; those before
    /// it keep the link.
    void AssignProfiel(const QString& naam, const QStringList& locaties);

private:
    bool IsBelow(const QTreeWidgetItem* node, const QString& root) const;
    QString Path(const QTreeWidgetItem* node) const;
    /// The nodes of a calculation at all locations: those with its name, and
    /// with its name and a "_".
    QList<QTreeWidgetItem*> NodesOfBerekening(const QString& naam) const;
    /// The names that the calculations of these nodes have in the database; `naam` first.
    QStringList NamenInDatabase(const QString& naam, const QList<QTreeWidgetItem*>& nodes);
    QString RenameEverywhere(const QString& oud, const QString& nieuw);
    QString RenameHere(QTreeWidgetItem* node, const QString& naam);
    void DeleteEverywhere(const QString& naam);
    void DeleteHere(QTreeWidgetItem* node);
    /// Rings of the tree that the database has no row of.
    QList<QTreeWidgetItem*> DijkringenWithoutRows();
    void RebuildBerekeningen();

    NavTree& m_tree;
    HRdb& m_database;
};
