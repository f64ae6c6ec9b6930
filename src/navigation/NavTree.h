#pragma once

#include "database/HRdb.h"

#include <QHash>
#include <QIcon>
#include <QString>

#include <utility>

class QTreeWidget;
class QTreeWidgetItem;

/// Keys of the four roots, in capitals as they stand in every key.
namespace navkey {
inline const QString RootLocaties = QStringLiteral("ROOTLOCATIES");
inline const QString RootProfielen = QStringLiteral("ROOTPROFIELEN");
inline const QString RootDijkringen = QStringLiteral("ROOTDIJKRINGEN");
inline const QString RootBerekeningen = QStringLiteral("ROOTBEREKENINGEN");
inline const QString Profielen = QStringLiteral("profielen");
inline const QString Berekeningen = QStringLiteral("berekeningen");
} // namespace navkey

/// What a node is.
namespace navtag {
inline const QString Locatie = QStringLiteral("LOCATIE");
inline const QString Profielmap = QStringLiteral("PRDIR");
inline const QString Profiel = QStringLiteral("PROFIEL");
inline const QString Berekeningmap = QStringLiteral("BRDIR");
inline const QString Berekening = QStringLiteral("BEREKENING");
inline const QString Dijkring = QStringLiteral("DIJKRING");
inline const QString Dijkringmap = QStringLiteral("DRDIR");
inline const QString Dijkringberekening = QStringLiteral("DRBEREKENING");
} // namespace navtag

/// The navigation tree: locations with their profiles and calculations,
/// profiles, dike rings and calculations as a whole. It knows the tree's fixed
/// shape and how keys are made, and holds nothing but names: database and work
/// folder are the truth, the tree is rebuilt from them.
///
/// A node's key is the path from its root ("ROOTLOCATIES\Plas-04\profielen\P1"),
/// unique in the whole tree. Keys are looked up without regard to
/// case, in constant time: all nodes with a key must be made and removed here.
///
/// Every add operation may be repeated: a node that exists is returned as it
/// stands. With no parent nothing is added and nullptr returned.
class NavTree {
public:
    explicit NavTree(HRdb& database);
    NavTree(const NavTree&) = delete;
    NavTree& operator=(const NavTree&) = delete;

    /// Set once, before anything else; not owned. Its dynamic property
    /// "pathSeparator" is what stands between the steps of a key ("\" without it).
    void setTreeViewObject(QTreeWidget* tree);
    QTreeWidget* TreeViewObject() const { return m_tree; }
    const QString& pathSeparator() const { return m_separator; }

    /// A root; an existing one is returned. Sorted roots keep their children in order.
    QTreeWidgetItem* AddRoot(const QString& key, const QString& text, bool sorted);
    void RemoveRoot(const QString& key);
    /// Removes what hangs below a node.
    void RemoveChildren(QTreeWidgetItem* node);
    /// Removes a node with all below it.
    void Remove(QTreeWidgetItem* node);
    /// Gives a node another key (its last step) and text; the keys below it follow.
    void Rename(QTreeWidgetItem* node, const QString& lastStep, const QString& text);

    /// The node, or nullptr.
    QTreeWidgetItem* GetNodeByKey(const QString& key) const;
    static QString Key(const QTreeWidgetItem* node);
    static QString Tag(const QTreeWidgetItem* node);
    QString JoinKey(const QString& parentKey, const QString& step) const
    {
        return parentKey + m_separator + step;
    }

    /// Names stand in field OMSCHR; the recordset is then at its end.
    void addLocatiesFromDb2Root(QTreeWidgetItem* root, const RecordsetPtr& locaties);
    QTreeWidgetItem* AddProfiel2Root(const QString& naam);
    void addProfielenFromDb2Root(QTreeWidgetItem* root, const RecordsetPtr& profielen);
    void addDijkringenFromDb2Root(QTreeWidgetItem* root, const RecordsetPtr& dijkringen);
    QTreeWidgetItem* AddDijkring2Root(const QString& naam);
    /// Under the part of the name before its first "_".
    QTreeWidgetItem* AddBerekening2Root(const QString& naam);
    /// Gathers the calculations of all locations.
    void addBerekeningen2Root(QTreeWidgetItem* berekeningen, QTreeWidgetItem* locaties);
    /// Each sub-folder of <werkmap>\<location>\berekeningen is a calculation.
    void addBerekeningenFromWerkmap2Locaties(QTreeWidgetItem* locaties, const QString& werkmap);
    void addBerekeningenFromWerkmap2Dijkringen(QTreeWidgetItem* dijkringen, const QString& werkmap);
    void addProfielenFromDb2Locaties(QTreeWidgetItem* locaties);
    QTreeWidgetItem* AddProfiel2Locatie(const QString& locatieKey, const QString& naam);
    QTreeWidgetItem* AddBerekening2Locatie(QTreeWidgetItem* locatie, const QString& naam);
    QTreeWidgetItem* AddBerekening2Dijkring(QTreeWidgetItem* dijkring, const QString& naam);

    // An absent name is passed over. A folder node left empty goes too. The
    // calculations of a dike ring are removed as those of a location.
    void removeDijkringFromTreeview(const QString& naam);
    void removeProfielFromTreeview(const QString& naam);
    void removeBerekeningFromTreeview(const QString& naam);
    void removeBerekeningFromLocationNode(QTreeWidgetItem* locatie, const QString& naam);
    void removeProfielFromLocationNode(QTreeWidgetItem* locatie, const QString& naam);

private:
    struct Soort;
    QTreeWidgetItem* Add(QTreeWidgetItem* parent, const QString& step, const QString& text,
                         const Soort& soort);
    QTreeWidgetItem* addProfielFolder(QTreeWidgetItem* locatie);
    void RemoveFromFolder(QTreeWidgetItem* owner, const QString& folder, const QString& naam);
    void Forget(QTreeWidgetItem* node);
    void Rekey(QTreeWidgetItem* node, const QString& key);
    QIcon NodeIcon(int image, int selectedImage);

    HRdb& m_database;
    QTreeWidget* m_tree = nullptr; // not owned
    QString m_separator = QStringLiteral("\\");
    QHash<QString, QTreeWidgetItem*> m_index; // by lower-cased key; the tree owns the items
    QHash<std::pair<int, int>, QIcon> m_icons;
};
