#include "profiles/ui/BrowserTree.h"

#include "frame/Windows1252.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>

namespace {

/// Paints a node, lets the user edit its text and hands the outcome on; the text itself
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

    /// The current node is a selected location at the same time: its colour stays, in a frame of
    /// the highlight's colour, or nobody could tell.
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        if (!(option.state & QStyle::State_Selected) || !HasOwnColour(index))
            return;
        painter->save();
        painter->setPen(QPen(option.palette.color(QPalette::Highlight), kFrame));
        const double half = kFrame / 2.0;
        painter->drawRect(QRectF(option.rect).adjusted(half, half, -half, -half));
        painter->restore();
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!(option->state & QStyle::State_Selected) || !HasOwnColour(index))
            return;
        option->icon = QIcon(option->icon.pixmap(option->decorationSize, QIcon::Selected));
        option->state &= ~QStyle::State_Selected;
    }

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
    static bool HasOwnColour(const QModelIndex& index)
    {
        return index.data(Qt::BackgroundRole).isValid();
    }

    static constexpr int kFrame = 2; // pixels
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
        emit NodeClick(m_pressed, event->modifiers());
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
        emit NodeMouseUp(node, event->modifiers());
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
    const int key = event->key();
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool plain = modifiers == Qt::NoModifier;
    const bool control = modifiers == Qt::ControlModifier;
    const bool shift = modifiers == Qt::ShiftModifier;

    if ((plain && key == Qt::Key_Menu) || (shift && key == Qt::Key_F10)) {
        const QRect rect = currentItem() ? visualItemRect(currentItem()) : QRect();
        emit ContextMenu(viewport()->mapToGlobal(rect.center()));
    } else if (key == Qt::Key_Space) {
        if (currentItem())
            emit NodeMouseUp(currentItem(), modifiers);
    } else if (control && key == Qt::Key_X) {
        emit CommandKey(Qt::Key_Delete);
    } else if ((control && key == Qt::Key_A) ||
               (plain && (key == Qt::Key_F2 || key == Qt::Key_Delete || key == Qt::Key_Return ||
                          key == Qt::Key_Enter))) {
        emit CommandKey(key);
    } else {
        MoveByKey(event);
    }
}

void BrowserTree::MoveByKey(QKeyEvent* event)
{
    const QTreeWidgetItem* before = currentItem();
    QTreeWidget::keyPressEvent(event);
    if (!currentItem() || currentItem() == before)
        return;
    emit NodeClick(currentItem(), event->modifiers());
    if (event->modifiers() & Qt::ShiftModifier)
        emit NodeMouseUp(currentItem(), event->modifiers());
}

/// Control does not take the highlight off the current node, as it would by itself.
QItemSelectionModel::SelectionFlags BrowserTree::selectionCommand(const QModelIndex&,
                                                                  const QEvent*) const
{
    return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
}
