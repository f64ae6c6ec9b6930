#include "frame/ui/GridDelegate.h"

#include "frame/ui/FocusHold.h"
#include "frame/ui/Grid.h"
#include "frame/ui/KeyFilters.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScopedValueRollback>

namespace {

QString EditorText(const QWidget* editor)
{
    if (const auto* list = qobject_cast<const QComboBox*>(editor))
        return list->currentText();
    return qobject_cast<const QLineEdit*>(editor)->text();
}

void SelectEditorText(QWidget* editor)
{
    if (auto* line = qobject_cast<QLineEdit*>(editor))
        line->selectAll();
}

bool IsCheckCell(const QModelIndex& index)
{
    return index.data(Qt::CheckStateRole).isValid();
}

QRect CheckRect(const QStyleOptionViewItem& option)
{
    QStyleOptionButton box;
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    const QSize size = style->subElementRect(QStyle::SE_CheckBoxIndicator, &box).size();
    return QStyle::alignedRect(option.direction, Qt::AlignCenter, size, option.rect);
}

} // namespace

GridDelegate::GridDelegate(Grid& grid) : QStyledItemDelegate(&grid), m_grid(grid) {}

bool GridDelegate::EndEdit(EndEditHint hint)
{
    if (!m_editor)
        return true;
    QWidget* editor = m_editor;
    QString text = EditorText(editor);
    Grid::EditVerdict verdict = Grid::EditVerdict::Restored;
    {
        const QScopedValueRollback checking(m_checking, true);
        if (m_index.isValid())
            verdict = m_grid.Check(m_index.row(), m_index.column(), text);
    }
    if (verdict == Grid::EditVerdict::StaysOpen) {
        editor->setFocus(Qt::OtherFocusReason);
        SelectEditorText(editor);
        return false;
    }
    if (verdict == Grid::EditVerdict::Accepted) {
        const int row = m_index.row();
        const int column = m_index.column();
        m_grid.setText(row, column, text);
        m_editor = nullptr; // what setModelData would write stands there now
        emit closeEditor(editor, hint);
        emit m_grid.CellEdited(row, column);
        return true;
    }
    m_editor = nullptr;
    emit closeEditor(editor, RevertModelCache);
    return true;
}

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                    const QModelIndex& index) const
{
    if (!m_grid.MayEdit(index.row(), index.column()))
        return nullptr;
    QWidget* editor = nullptr;
    switch (m_grid.Kind(index.column())) {
    case Grid::ColumnKind::List: {
        auto* list = new QComboBox(parent);
        list->addItems(m_grid.List(index.row(), index.column()));
        editor = list;
        break;
    }
    case Grid::ColumnKind::Text:
    case Grid::ColumnKind::Whole:
    case Grid::ColumnKind::Decimal: {
        auto* line = new QLineEdit(parent);
        line->setFrame(false);
        if (m_grid.Kind(index.column()) != Grid::ColumnKind::Text) {
            line->setAlignment(Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()));
            AttachNumberFilter(line, {m_grid.Kind(index.column()) == Grid::ColumnKind::Whole
                                          ? DataTypes::Long
                                          : DataTypes::Double});
        }
        editor = line;
        break;
    }
    default:
        return nullptr;
    }
    editor->setAutoFillBackground(true);
    m_editor = editor;
    m_index = index;
    return editor;
}

void GridDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    const QString text = index.data(Qt::DisplayRole).toString();
    if (auto* list = qobject_cast<QComboBox*>(editor))
        list->setCurrentIndex(list->findText(text));
    else if (auto* line = qobject_cast<QLineEdit*>(editor))
        line->setText(text);
}

void GridDelegate::setModelData(QWidget* editor, QAbstractItemModel*,
                                const QModelIndex& index) const
{
    // Only reached when the view itself ends the edit, because the program moved
    // the current cell or took the row away; the user's ways out pass EndEdit.
    if (editor != m_editor)
        return;
    m_editor = nullptr;
    m_grid.Enter(index.row(), index.column(), EditorText(editor));
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const
{
    if (!IsCheckCell(index)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const auto state = static_cast<Qt::CheckState>(index.data(Qt::CheckStateRole).toInt());
    cell.features &= ~QStyleOptionViewItem::HasCheckIndicator;
    cell.text.clear();
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, option.widget);

    QStyleOptionButton box;
    box.rect = CheckRect(option);
    box.palette = option.palette;
    box.state = state == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
    if (m_grid.isEnabled() && m_grid.MayEdit(index.row(), index.column()))
        box.state |= QStyle::State_Enabled;
    style->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter, option.widget);
    if (option.palette.color(QPalette::Base).lightness() < 128) {
        // Styles draw the box's edge for a light ground.
        QColor edge = option.palette.color(QPalette::Text);
        edge.setAlpha(130);
        painter->save();
        painter->setPen(edge);
        painter->drawRect(box.rect.adjusted(0, 0, -1, -1));
        painter->restore();
    }
}

bool GridDelegate::editorEvent(QEvent* event, QAbstractItemModel*,
                               const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (!IsCheckCell(index) || event->type() != QEvent::MouseButtonRelease)
        return false;
    const auto* mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() != Qt::LeftButton || !option.rect.contains(mouse->position().toPoint()))
        return false;
    if (!m_grid.MayEdit(index.row(), index.column()))
        return false;
    m_grid.setChecked(index.row(), index.column(), !m_grid.IsChecked(index.row(), index.column()));
    emit m_grid.CellEdited(index.row(), index.column());
    return true;
}

bool GridDelegate::eventFilter(QObject* watched, QEvent* event)
{
    auto* editor = qobject_cast<QWidget*>(watched);
    if (!editor || editor != m_editor)
        return QStyledItemDelegate::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Enter:
        case Qt::Key_Return:
            EndEdit();
            return true;
        case Qt::Key_Tab:
            EndEdit(EditNextItem);
            return true;
        case Qt::Key_Backtab:
            EndEdit(EditPreviousItem);
            return true;
        case Qt::Key_Escape:
            m_editor = nullptr;
            emit closeEditor(editor, RevertModelCache);
            return true;
        default:
            return false;
        }
    }
    if (event->type() == QEvent::FocusOut)
        return LosesFocus(editor, static_cast<QFocusEvent*>(event)->reason());
    return QStyledItemDelegate::eventFilter(watched, event);
}

bool GridDelegate::LosesFocus(QWidget* editor, Qt::FocusReason reason)
{
    if (m_checking || !LeavesControl(reason))
        return false;
    const QWidget* next = QApplication::focusWidget();
    if (next && editor->isAncestorOf(next))
        return false;
    if (FocusGoesToCancel() || !editor->isVisible()) {
        m_editor = nullptr;
        emit closeEditor(editor, RevertModelCache);
        return false;
    }
    QPointer<QWidget> goal = QApplication::focusWidget();
    if (!EndEdit())
        HoldFocus(editor, reason);
    else if (goal && goal != &m_grid && goal != m_grid.viewport())
        goal->setFocus(reason); // closing an editor hands the focus to the grid
    return false;
}

void GridDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (m_grid.Kind(index.column()) == Grid::ColumnKind::Fixed) {
        option->backgroundBrush = option->palette.brush(QPalette::Button);
        option->palette.setBrush(QPalette::Text, option->palette.brush(QPalette::ButtonText));
    }
}
