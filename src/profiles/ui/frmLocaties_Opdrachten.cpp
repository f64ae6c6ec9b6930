// The commands of the location browser, and the events of its tree.
#include "profiles/ui/frmLocaties.h"

#include "frame/Busy.h"
#include "frame/ui/MessageBoxes.h"
#include "navigation/MapSelection.h"
#include "navigation/NodeCommands.h"
#include "profiles/ui/BrowserHost.h"
#include "ui_frmLocaties.h"

#include <QKeyEvent>
#include <QShortcut>

namespace {

constexpr int kVraagBerekening = 2;
constexpr int kVraagLocaties = 3;
constexpr int kVraagDijkring = 4;
constexpr int kVraagDijkringberekening = 5;
constexpr int kVraagProfielInGebruik = 100;
constexpr int kVraagProfiel = 101;
constexpr int kMeldingProfielInDijkring = 2003;

bool IsFolder(const QTreeWidgetItem* node)
{
    const QString tag = NavTree::Tag(node);
    return tag == navtag::Profielmap || tag == navtag::Berekeningmap || tag == navtag::Dijkringmap;
}

} // namespace

QString frmLocaties::NextNode(const QTreeWidgetItem* node)
{
    const QTreeWidgetItem* parent = node->parent();
    const int index = parent->indexOfChild(const_cast<QTreeWidgetItem*>(node));
    if (index + 1 < parent->childCount())
        return NavTree::Key(parent->child(index + 1));
    if (index > 0)
        return NavTree::Key(parent->child(index - 1));
    // An empty folder goes with its last child.
    return NavTree::Key(IsFolder(parent) ? parent->parent() : parent);
}

template <typename Change>
void frmLocaties::ChangeAndMoveOn(const QString& next, Change&& change)
{
    const BusyScope busy;
    try {
        change();
    } catch (...) {
        if (!CurrentNode())
            MoveOn(next);
        throw;
    }
    MoveOn(next);
}

void frmLocaties::MoveOn(const QString& next)
{
    ForgetGoneLocations();
    QString key = CurrentNode() ? m_currentKey : next;
    while (!key.isEmpty() && !NodeExists(key))
        key = key.left(std::max<qsizetype>(0, key.lastIndexOf(m_navTree.pathSeparator())));
    ClickNode(GetNodeByKey(key));
}

// Locations

bool frmLocaties::DeleteLocaties()
{
    if (!m_mapSelection.HasSelectedNodes() || AskQuestion(this, kVraagLocaties) != Answer::Yes)
        return false;
    ChangeAndMoveOn(NextUnselectedLocation(),
                    [this] { m_changes.DeleteLocaties(m_mapSelection.Namen()); });
    return true;
}

QString frmLocaties::NextUnselectedLocation() const
{
    const QTreeWidgetItem* current = CurrentLocationNode();
    if (!current)
        return m_currentKey;
    const QTreeWidgetItem* root = current->parent();
    const int index = root->indexOfChild(const_cast<QTreeWidgetItem*>(current));
    const auto stays = [&](int i) {
        return !m_mapSelection.IsSelectedLocation(root->child(i)->text(0));
    };
    for (int i = index; i < root->childCount(); ++i)
        if (stays(i))
            return NavTree::Key(root->child(i));
    for (int i = index - 1; i >= 0; --i)
        if (stays(i))
            return NavTree::Key(root->child(i));
    return NavTree::Key(root);
}

void frmLocaties::ForgetGoneLocations()
{
    const QStringList namen = m_mapSelection.Namen();
    for (const QString& naam : namen)
        if (!NodeExists(m_navTree.JoinKey(navkey::RootLocaties, naam)))
            m_mapSelection.RemoveALocationFromSelection(naam);
}

// Profiles

void frmLocaties::ProfielAssign2SelectedLocations(const QString& profiel)
{
    const BusyScope busy;
    try {
        m_changes.AssignProfiel(profiel, m_mapSelection.Namen());
    } catch (...) {
        m_host.RefreshLocatiesAndLabelsOpMap(); // those before a refusal have their profile
        throw;
    }
    m_host.RefreshLocatiesAndLabelsOpMap();
}

void frmLocaties::ProfielDelete()
{
    QTreeWidgetItem* node = CurrentNode();
    if (NavTree::Tag(node) != navtag::Profiel)
        return;
    const QString naam = node->text(0);
    if (m_database.ProfielInDijkring(naam)) {
        ShowMessageForm(this, kMeldingProfielInDijkring, {naam});
        return;
    }
    const QString next = NextNode(node);
    if (CurrentLocationNode()) {
        ChangeAndMoveOn(next, [&] { m_changes.UnlinkProfiel(node); });
    } else {
        const int question = m_database.ProfielUsed(naam) ? kVraagProfielInGebruik : kVraagProfiel;
        if (AskQuestion(this, question, {naam}) != Answer::Yes)
            return;
        ChangeAndMoveOn(next, [&] { m_changes.DeleteProfiel(naam); });
    }
    m_host.RefreshLocatiesAndLabelsOpMap(); // a location may have lost its last profile
}

// Calculations

void frmLocaties::BerekeningDelete()
{
    QTreeWidgetItem* node = CurrentNode();
    const QString tag = NavTree::Tag(node);
    if (tag != navtag::Berekening && tag != navtag::Dijkringberekening)
        return;
    const int question = tag == navtag::Berekening ? kVraagBerekening : kVraagDijkringberekening;
    if (AskQuestion(this, question, {node->text(0)}) != Answer::Yes)
        return;
    ChangeAndMoveOn(NextNode(node), [&] { m_changes.DeleteBerekening(node); });
}

void frmLocaties::BerekeningNodeDelete(const QString& key)
{
    QTreeWidgetItem* node = GetNodeByKey(key);
    if (!node || node == CurrentNode())
        return;
    const QString next = NextNode(node);
    QTreeWidgetItem* map = node->parent();
    m_navTree.Remove(node);
    if (IsFolder(map) && map->childCount() == 0)
        m_navTree.Remove(map);
    ClickNode(GetNodeByKey(next));
}

void frmLocaties::BerekeningRename()
{
    const QString tag = CurrentNodeTag();
    if (tag == navtag::Berekening || tag == navtag::Dijkringberekening)
        StartLabelEdit(CurrentNode());
}

// Dike rings

void frmLocaties::DijkringCopy()
{
    const QTreeWidgetItem* ring = CurrentDijkringNode();
    if (!ring)
        return;
    m_copiedRing = NavTree::Key(ring);
    m_host.SetCommandEnabled("mnuDijkringPaste", true);
}

void frmLocaties::DijkringPaste()
{
    const QTreeWidgetItem* ring = GetNodeByKey(m_copiedRing);
    if (!ring)
        return; // none was copied, or it has gone
    const BusyScope busy;
    QTreeWidgetItem* copy = m_changes.PasteDijkring(ring->text(0));
    ResetCurrentNode();
    ApplyNode(copy);
}

void frmLocaties::DijkringDelete()
{
    QTreeWidgetItem* ring = CurrentDijkringNode();
    if (!ring || AskQuestion(this, kVraagDijkring, {ring->text(0)}) != Answer::Yes)
        return;
    ChangeAndMoveOn(NextNode(ring), [&] { m_changes.DeleteDijkring(ring); });
}

void frmLocaties::DijkringRename()
{
    if (QTreeWidgetItem* ring = CurrentDijkringNode())
        StartLabelEdit(ring);
}

// Label edits

void frmLocaties::StartLabelEdit(QTreeWidgetItem* node)
{
    m_ui->treLocaties->scrollToItem(node);
    m_ui->treLocaties->editItem(node);
}

void frmLocaties::treLocaties_AfterLabelEdit(const QString& key, const QString& text)
{
    QTreeWidgetItem* node = GetNodeByKey(key);
    const QString naam = text.trimmed();
    if (!node || naam.isEmpty())
        return;
    const BusyScope busy;
    const bool isCurrent = node == CurrentNode();
    const QString currentKey = m_currentKey;
    const bool isRing = NavTree::Tag(node) == navtag::Dijkring;
    const QString newKey =
        isRing ? m_changes.RenameDijkring(node, naam) : m_changes.RenameBerekening(node, naam);
    if (key.compare(m_copiedRing, Qt::CaseInsensitive) == 0)
        m_copiedRing = newKey;
    m_boldKeys.replaceInStrings(key, newKey, Qt::CaseInsensitive);
    // A node below the renamed one stays current, under its new key.
    const QString current = isCurrent ? newKey : newKey + currentKey.mid(key.size());
    ClickNode(GetNodeByKey(NodeExists(current) ? current : newKey));
}

// The tree's events

void frmLocaties::ConnectTree()
{
    const auto handle = [this](auto handler) {
        return [this, handler](const auto&... arguments) {
            RunHandler([&] { (this->*handler)(arguments...); });
        };
    };
    BrowserTree* tree = m_ui->treLocaties;
    connect(tree, &BrowserTree::NodeClick, this, handle(&frmLocaties::treLocaties_NodeClick));
    connect(tree, &BrowserTree::NodeDoubleClick, this,
            handle(&frmLocaties::treLocaties_NodeDoubleClick));
    connect(tree, &BrowserTree::NodeMouseUp, this, handle(&frmLocaties::treLocaties_MouseUp));
    connect(tree, &BrowserTree::ContextMenu, this, handle(&frmLocaties::treLocaties_ContextMenu));
    connect(tree, &BrowserTree::CommandKey, this, handle(&frmLocaties::treLocaties_KeyDown));
    // The editor is still open, and a box would take the focus from it and end
    // the edit once more: the outcome waits until it has gone.
    connect(tree, &BrowserTree::LabelEdited, this,
            [this, handle](QTreeWidgetItem* node, const QString& text) {
                QMetaObject::invokeMethod(
                    this,
                    [=, key = NavTree::Key(node)] {
                        handle (&frmLocaties::treLocaties_AfterLabelEdit)(key, text);
                    },
                    Qt::QueuedConnection);
            });
}

void frmLocaties::treLocaties_NodeClick(QTreeWidgetItem* node, Qt::KeyboardModifiers modifiers)
{
    if (!(modifiers & Qt::ShiftModifier))
        m_clicks.StartAt(node);
    ClickNode(node);
}

void frmLocaties::treLocaties_NodeDoubleClick(QTreeWidgetItem* node)
{
    const QString tag = NavTree::Tag(node);
    if (tag == navtag::Profiel)
        m_host.EditProfiel();
    else if (tag == navtag::Berekening || tag == navtag::Dijkringberekening)
        m_host.ShowBerekeningUitvoer();
    else if (tag == navtag::Dijkring)
        m_host.EditAddDijkring();
    else
        node->setExpanded(!node->isExpanded());
}

void frmLocaties::treLocaties_MouseUp(QTreeWidgetItem* node, Qt::KeyboardModifiers modifiers)
{
    if (m_clicks.Click(node, modifiers))
        ShowPickedLocations();
}

void frmLocaties::ShowPickedLocations()
{
    ApplySelectedLocations();
    m_host.RefreshLocatiesAndLabelsOpMap();
}

void frmLocaties::treLocaties_ContextMenu(const QPoint& globalPosition)
{
    const QString menu = ContextMenuOfNode(CurrentNodeKey(), CurrentNodeTag());
    if (!menu.isEmpty())
        m_host.ShowContextMenu(menu, globalPosition);
}

void frmLocaties::treLocaties_KeyDown(int key)
{
    QTreeWidgetItem* node = CurrentNode();
    const QString tag = NavTree::Tag(node);
    const bool isBerekening = tag == navtag::Berekening || tag == navtag::Dijkringberekening;
    switch (key) {
    case Qt::Key_F2:
        if (isBerekening)
            BerekeningRename();
        else if (tag == navtag::Dijkring)
            DijkringRename();
        break;
    case Qt::Key_Delete:
        if (tag == navtag::Profiel)
            ProfielDelete();
        else if (isBerekening)
            BerekeningDelete();
        else if (tag == navtag::Dijkring)
            DijkringDelete();
        break;
    case Qt::Key_A:
        m_clicks.SelectAll();
        ShowPickedLocations();
        break;
    default: // Enter is the keyboard's double click
        if (node)
            treLocaties_NodeDoubleClick(node);
    }
}

// The filter

void frmLocaties::ConnectFilter()
{
    connect(m_ui->txtFilter, &QLineEdit::textChanged, this,
            [this](const QString& text) { RunHandler([&] { txtFilter_Change(text); }); });
    auto* find =
        new QShortcut(QKeySequence::Find, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(find, &QShortcut::activated, this, [this] {
        m_ui->txtFilter->setFocus(Qt::ShortcutFocusReason);
        m_ui->txtFilter->selectAll();
    });
    const auto inFilter = [this](Qt::Key key, auto action) {
        auto* shortcut =
            new QShortcut(QKeySequence(key), m_ui->txtFilter, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, action);
    };
    inFilter(Qt::Key_Escape, [this] {
        m_ui->txtFilter->clear();
        m_ui->treLocaties->setFocus();
    });
    inFilter(Qt::Key_Down, [this] { m_ui->treLocaties->setFocus(); });
}

void frmLocaties::txtFilter_Change(const QString& text)
{
    m_filter.Apply(text);
    if (text.trimmed().isEmpty())
        EnsureCurrentNodeVisible();
}
