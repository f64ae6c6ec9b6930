#include "profiles/ui/BrowserTree.h"

#include "frame/Windows1252.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QStyledItemDelegate>

namespace {

/// Lets the user edit a node's text and hands the outcome on; the text itself
/// changes only when somebody else changes it. An edit that is left by a click
/// elsewhere without a change was no edit.
class LabelDelegate : public QStyledItemDelegate {
public:
    explicit LabelDelegate(BrowserTree* tree) : QStyledItemDelegate(tree), m_tree(tree) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override
    {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (auto* line = qobject_cast<QLineEdit*>(editor)) {
            line->setAccessibleName(index.data().toString());
            connect(line, &QLineEdit::textEdited, line, [line](const QString& text) {
                if (FitsWindows1252(text))
                    return;
                QApplication::beep();
                const int caret = line->cursorPosition();
                QString storable;
                for (const QChar character : text)
                    if (FitsWindows1252(QStringView(&character, 1)))
                        storable += character;
                line->setText(storable);
                line->setCursorPosition(std::max(0, caret - int(text.size() - storable.size())));
            });
        }
        return editor;
    }

    void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const override
    {
        const auto* line = qobject_cast<QLineEdit*>(editor);
        QTreeWidgetItem* node = m_tree->itemFromIndex(index);
        if (line && node)
            emit m_tree->LabelEdited(node, line->text());
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        auto* line = qobject_cast<QLineEdit*>(object);
        if (line && event->type() == QEvent::FocusOut && !line->isModified()) {
            emit closeEditor(line, QAbstractItemDelegate::RevertModelCache);
            return false;
        }
        return QStyledItemDelegate::eventFilter(object, event);
    }

private:
    BrowserTree* m_tree;
};

} // namespace

BrowserTree::BrowserTree(QWidget* parent) : QTreeWidget(parent)
{
    setProperty("pathSeparator", "\\");
    setColumnCount(1);
    setHeaderHidden(true);
    setUniformRowHeights(true); // or a thousand rows are measured one by one
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setContextMenuPolicy(Qt::PreventContextMenu); // the right button and the menu key do it
    setItemDelegate(new LabelDelegate(this));
}

QTreeWidgetItem* BrowserTree::NodeAt(const QPoint& position) const
{
    QTreeWidgetItem* node = itemAt(position);
    // Left of the text stand the lines and the mark that opens the branch.
    return node && position.x() >= visualItemRect(node).left() ? node : nullptr;
}

void BrowserTree::mousePressEvent(QMouseEvent* event)
{
    m_pressed = NodeAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton)
        return event->accept();
    QTreeWidget::mousePressEvent(event);
    if (m_pressed)
        emit NodeClick(m_pressed);
}

void BrowserTree::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() == Qt::NoButton)
        QTreeWidget::mouseMoveEvent(event);
}

void BrowserTree::mouseReleaseEvent(QMouseEvent* event)
{
    QTreeWidgetItem* node = NodeAt(event->position().toPoint());
    const bool samePlace = node && node == m_pressed;
    m_pressed = nullptr;
    if (event->button() == Qt::RightButton) {
        if (samePlace)
            emit ContextMenu(event->globalPosition().toPoint());
        return event->accept();
    }
    QTreeWidget::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && samePlace)
        emit NodeMouseUp(node);
}

void BrowserTree::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return event->accept();
    QTreeWidget::mouseDoubleClickEvent(event);
    if (QTreeWidgetItem* node = NodeAt(event->position().toPoint()))
        emit NodeDoubleClick(node);
}

void BrowserTree::keyPressEvent(QKeyEvent* event)
{
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool plain = modifiers == Qt::NoModifier;
    const bool isMenuKey = (plain && event->key() == Qt::Key_Menu) ||
                           (modifiers == Qt::ShiftModifier && event->key() == Qt::Key_F10);
    if (isMenuKey) {
        const QRect rect = currentItem() ? visualItemRect(currentItem()) : QRect();
        emit ContextMenu(viewport()->mapToGlobal(rect.center()));
        return;
    }
    const bool isCut = modifiers == Qt::ControlModifier && event->key() == Qt::Key_X;
    switch (event->key()) {
    case Qt::Key_F2:
    case Qt::Key_Delete:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (plain) {
            emit CommandKey(event->key());
            return;
        }
        break;
    default:
        if (isCut) {
            emit CommandKey(Qt::Key_Delete);
            return;
        }
    }
    const QTreeWidgetItem* before = currentItem();
    QTreeWidget::keyPressEvent(event);
    if (currentItem() && currentItem() != before)
        emit NodeClick(currentItem());
}
