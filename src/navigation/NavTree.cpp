#include "navigation/NavTree.h"

#include "database/SqlTekst.h"
#include "frame/FileSystemObject.h"
#include "frame/Globals.h"

#include <QCollator>
#include <QTreeWidget>

// A library's resources are not linked into a program that does not ask for them.
static void InitIcons()
{
    Q_INIT_RESOURCE(navigation);
}

namespace {

enum Role {
    KeyRole = Qt::UserRole,
    TagRole,
    SortedRole, ///< the children stand in alphabetical order
};

// Numbers of the tree's image list.
constexpr int kGeslotenMap = 1;
constexpr int kOpenMap = 2;
constexpr int kProfiel = 4;
constexpr int kBerekening = 5;

QString IconFile(int image)
{
    switch (image) {
    case kGeslotenMap:
        return QStringLiteral(":/navigation/map-gesloten.svg");
    case kOpenMap:
        return QStringLiteral(":/navigation/map-open.svg");
    case kProfiel:
        return QStringLiteral(":/navigation/profiel.svg");
    default:
        return QStringLiteral(":/navigation/berekening.svg");
    }
}

const QCollator& Collator()
{
    static const QCollator collator = [] {
        QCollator made{QLocale(QLocale::Dutch)};
        made.setCaseSensitivity(Qt::CaseInsensitive);
        return made;
    }();
    return collator;
}

/// Where `text` belongs among the sorted children of `parent`.
int SortedPosition(const QTreeWidgetItem* parent, const QString& text)
{
    int low = 0;
    int high = parent->childCount();
    while (low < high) {
        const int middle = (low + high) / 2;
        if (Collator().compare(parent->child(middle)->text(0), text) <= 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

template <typename Action>
void ForEachChild(QTreeWidgetItem* node, const QString& tag, Action&& action)
{
    if (!node)
        return;
    for (int i = 0; i < node->childCount(); ++i)
        if (NavTree::Tag(node->child(i)) == tag)
            action(node->child(i));
}

/// What stands before the first "_" that has something in front of it.
QString FirstPart(const QString& naam)
{
    return naam.section('_', 0, 0, QString::SectionSkipEmpty);
}

} // namespace

/// A row of the table of node kinds.
struct NavTree::Soort {
    QString tag;
    int image;
    int selectedImage;
    bool sorted;
};

NavTree::NavTree(HRdb& database) : m_database(database)
{
    InitIcons();
}

/// An icon that shows another picture while its node is selected, or keeps its own: a
/// style would tint it until it can hardly be seen.
QIcon NavTree::NodeIcon(int image, int selectedImage)
{
    QIcon& icon = m_icons[{image, selectedImage}];
    if (icon.isNull()) {
        icon.addFile(IconFile(image));
        icon.addFile(IconFile(selectedImage != 0 ? selectedImage : image), {}, QIcon::Selected);
    }
    return icon;
}

void NavTree::setTreeViewObject(QTreeWidget* tree)
{
    m_tree = tree;
    if (const QString separator = tree->property("pathSeparator").toString(); !separator.isEmpty())
        m_separator = separator;
}

QString NavTree::Key(const QTreeWidgetItem* node)
{
    return node ? node->data(0, KeyRole).toString() : QString();
}

QString NavTree::Tag(const QTreeWidgetItem* node)
{
    return node ? node->data(0, TagRole).toString() : QString();
}

QTreeWidgetItem* NavTree::GetNodeByKey(const QString& key) const
{
    return m_index.value(key.toLower());
}

QTreeWidgetItem* NavTree::AddRoot(const QString& key, const QString& text, bool sorted)
{
    if (auto* existing = GetNodeByKey(key))
        return existing;
    auto* root = new QTreeWidgetItem(m_tree, {text});
    root->setIcon(0, NodeIcon(kGeslotenMap, kOpenMap));
    root->setData(0, KeyRole, key);
    root->setData(0, SortedRole, sorted);
    root->setData(0, Qt::AccessibleTextRole, text);
    m_index.insert(key.toLower(), root);
    return root;
}

void NavTree::RemoveRoot(const QString& key)
{
    Remove(GetNodeByKey(key));
}

void NavTree::RemoveChildren(QTreeWidgetItem* node)
{
    if (!node)
        return;
    const auto children = node->takeChildren();
    for (auto* child : children)
        Forget(child);
    qDeleteAll(children);
}

void NavTree::Remove(QTreeWidgetItem* node)
{
    if (!node)
        return;
    Forget(node);
    delete node; // takes itself and its children out of the tree
}

void NavTree::Forget(QTreeWidgetItem* node)
{
    m_index.remove(Key(node).toLower());
    for (int i = 0; i < node->childCount(); ++i)
        Forget(node->child(i));
}

void NavTree::Rename(QTreeWidgetItem* node, const QString& lastStep, const QString& text)
{
    const QString oldKey = Key(node);
    const qsizetype last = oldKey.lastIndexOf(m_separator);
    Forget(node);
    node->setText(0, text);
    node->setData(0, Qt::AccessibleTextRole, text);
    Rekey(node, last < 0 ? lastStep : oldKey.left(last) + m_separator + lastStep);
}

void NavTree::Rekey(QTreeWidgetItem* node, const QString& key)
{
    for (int i = 0; i < node->childCount(); ++i) {
        auto* child = node->child(i);
        Rekey(child, JoinKey(key, Key(child).section(m_separator, -1)));
    }
    node->setData(0, KeyRole, key);
    m_index.insert(key.toLower(), node);
}

QTreeWidgetItem* NavTree::Add(QTreeWidgetItem* parent, const QString& step, const QString& text,
                              const Soort& soort)
{
    if (!parent)
        return nullptr;
    const QString key = JoinKey(Key(parent), step);
    if (auto* existing = GetNodeByKey(key))
        return existing;
    auto node = std::make_unique<QTreeWidgetItem>(QStringList{text});
    node->setIcon(0, NodeIcon(soort.image, soort.selectedImage));
    node->setData(0, KeyRole, key);
    node->setData(0, TagRole, soort.tag);
    node->setData(0, SortedRole, soort.sorted);
    node->setData(0, Qt::AccessibleTextRole, text);
    if (soort.tag == navtag::Berekening || soort.tag == navtag::Dijkring ||
        soort.tag == navtag::Dijkringberekening)
        node->setFlags(node->flags() | Qt::ItemIsEditable);
    auto* added = node.release(); // the tree's from here on
    if (parent->data(0, SortedRole).toBool())
        parent->insertChild(SortedPosition(parent, text), added);
    else
        parent->addChild(added);
    m_index.insert(key.toLower(), added);
    return added;
}

void NavTree::addLocatiesFromDb2Root(QTreeWidgetItem* root, const RecordsetPtr& locaties)
{
    if (!root || !HRdb::heeftRecords(locaties))
        return;
    const Soort soort{navtag::Locatie, kGeslotenMap, kOpenMap, false};
    for (; !locaties->EndOfFile(); locaties->MoveNext()) {
        const QString naam = veld::Tekst(*locaties, "OMSCHR");
        Add(root, naam, naam, soort);
    }
}

QTreeWidgetItem* NavTree::AddProfiel2Root(const QString& naam)
{
    return Add(GetNodeByKey(navkey::RootProfielen), naam, naam,
               {navtag::Profiel, kProfiel, 0, false});
}

void NavTree::addProfielenFromDb2Root(QTreeWidgetItem* root, const RecordsetPtr& profielen)
{
    if (!HRdb::heeftRecords(profielen))
        return;
    for (; !profielen->EndOfFile(); profielen->MoveNext()) {
        const QString naam = veld::Tekst(*profielen, "NAAM");
        Add(root, naam, naam, {navtag::Profiel, kProfiel, 0, false});
    }
}

void NavTree::addDijkringenFromDb2Root(QTreeWidgetItem* root, const RecordsetPtr& dijkringen)
{
    if (!HRdb::heeftRecords(dijkringen))
        return;
    for (; !dijkringen->EndOfFile(); dijkringen->MoveNext()) {
        const QString naam = veld::Tekst(*dijkringen, "NAAM");
        Add(root, naam, naam, {navtag::Dijkring, kGeslotenMap, kOpenMap, false});
    }
}

QTreeWidgetItem* NavTree::AddDijkring2Root(const QString& naam)
{
    return Add(GetNodeByKey(navkey::RootDijkringen), naam, naam,
               {navtag::Dijkring, kGeslotenMap, kOpenMap, false});
}

QTreeWidgetItem* NavTree::AddBerekening2Root(const QString& naam)
{
    const QString deel = FirstPart(naam);
    if (deel.isEmpty())
        return nullptr;
    return Add(GetNodeByKey(navkey::RootBerekeningen), deel, deel,
               {navtag::Berekening, kBerekening, 0, false});
}

void NavTree::addBerekeningen2Root(QTreeWidgetItem* berekeningen, QTreeWidgetItem* locaties)
{
    const Soort soort{navtag::Berekening, kBerekening, 0, false};
    ForEachChild(locaties, navtag::Locatie, [&](QTreeWidgetItem* locatie) {
        ForEachChild(locatie, navtag::Berekeningmap, [&](QTreeWidgetItem* map) {
            ForEachChild(map, navtag::Berekening, [&](QTreeWidgetItem* berekening) {
                const QString deel = FirstPart(berekening->text(0));
                if (!deel.isEmpty())
                    Add(berekeningen, deel, deel, soort);
            });
        });
    });
}

void NavTree::addBerekeningenFromWerkmap2Locaties(QTreeWidgetItem* locaties, const QString& werkmap)
{
    ForEachChild(locaties, navtag::Locatie, [&](QTreeWidgetItem* locatie) {
        const QString map =
            gFso().BuildPath(gFso().BuildPath(werkmap, locatie->text(0)), navkey::Berekeningen);
        for (const QString& naam : gFso().SubFolders(map))
            AddBerekening2Locatie(locatie, naam);
    });
}

void NavTree::addBerekeningenFromWerkmap2Dijkringen(QTreeWidgetItem* dijkringen,
                                                    const QString& werkmap)
{
    const QString ringen = gFso().BuildPath(werkmap, "Dijkringen");
    ForEachChild(dijkringen, navtag::Dijkring, [&](QTreeWidgetItem* dijkring) {
        const QString map =
            gFso().BuildPath(gFso().BuildPath(ringen, dijkring->text(0)), navkey::Berekeningen);
        for (const QString& naam : gFso().SubFolders(map))
            AddBerekening2Dijkring(dijkring, naam);
    });
}

void NavTree::addProfielenFromDb2Locaties(QTreeWidgetItem* locaties)
{
    ForEachChild(locaties, navtag::Locatie, [&](QTreeWidgetItem* locatie) {
        const auto profielen = m_database.GetProfielNamenVanLocatie(locatie->text(0));
        if (!HRdb::heeftRecords(profielen))
            return;
        for (; !profielen->EndOfFile(); profielen->MoveNext())
            AddProfiel2Locatie(Key(locatie), veld::Tekst(*profielen, "Naam"));
    });
}

QTreeWidgetItem* NavTree::addProfielFolder(QTreeWidgetItem* locatie)
{
    return Add(locatie, navkey::Profielen, QStringLiteral("Profielen"),
               {navtag::Profielmap, kGeslotenMap, kOpenMap, true});
}

QTreeWidgetItem* NavTree::AddProfiel2Locatie(const QString& locatieKey, const QString& naam)
{
    return Add(addProfielFolder(GetNodeByKey(locatieKey)), naam, naam,
               {navtag::Profiel, kProfiel, 0, false});
}

QTreeWidgetItem* NavTree::AddBerekening2Locatie(QTreeWidgetItem* locatie, const QString& naam)
{
    auto* map = Add(locatie, navkey::Berekeningen, navkey::Berekeningen,
                    {navtag::Berekeningmap, kGeslotenMap, kOpenMap, true});
    return Add(map, naam, naam, {navtag::Berekening, kBerekening, 0, false});
}

QTreeWidgetItem* NavTree::AddBerekening2Dijkring(QTreeWidgetItem* dijkring, const QString& naam)
{
    auto* map = Add(dijkring, navkey::Berekeningen, navkey::Berekeningen,
                    {navtag::Dijkringmap, kGeslotenMap, kOpenMap, true});
    return Add(map, naam, naam, {navtag::Dijkringberekening, kBerekening, 0, false});
}

void NavTree::RemoveFromFolder(QTreeWidgetItem* owner, const QString& folder, const QString& naam)
{
    if (!owner)
        return;
    auto* node = GetNodeByKey(JoinKey(JoinKey(Key(owner), folder), naam));
    if (!node)
        return;
    auto* map = node->parent();
    Remove(node);
    if (map->childCount() == 0)
        Remove(map);
}

void NavTree::removeBerekeningFromLocationNode(QTreeWidgetItem* locatie, const QString& naam)
{
    RemoveFromFolder(locatie, navkey::Berekeningen, naam);
}

void NavTree::removeProfielFromLocationNode(QTreeWidgetItem* locatie, const QString& naam)
{
    RemoveFromFolder(locatie, navkey::Profielen, naam);
}

void NavTree::removeDijkringFromTreeview(const QString& naam)
{
    Remove(GetNodeByKey(JoinKey(navkey::RootDijkringen, naam)));
}

void NavTree::removeProfielFromTreeview(const QString& naam)
{
    ForEachChild(GetNodeByKey(navkey::RootLocaties), navtag::Locatie,
                 [&](QTreeWidgetItem* locatie) { removeProfielFromLocationNode(locatie, naam); });
    Remove(GetNodeByKey(JoinKey(navkey::RootProfielen, naam)));
}

void NavTree::removeBerekeningFromTreeview(const QString& naam)
{
    ForEachChild(
        GetNodeByKey(navkey::RootLocaties), navtag::Locatie,
        [&](QTreeWidgetItem* locatie) { removeBerekeningFromLocationNode(locatie, naam); });
    Remove(GetNodeByKey(JoinKey(navkey::RootBerekeningen, naam)));
}
