#pragma once

#include <QPersistentModelIndex>
#include <QPointer>
#include <QStyledItemDelegate>

class Grid;

/// Editors, check boxes and the way out of an open edit of a Grid.
class GridDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit GridDelegate(Grid& grid);

    QWidget* Editor() const { return m_editor; }
    /// Closes the open edit through the check; false when it stays open.
    bool EndEdit(EndEditHint hint = NoHint);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    bool LosesFocus(QWidget* editor, Qt::FocusReason reason);

    Grid& m_grid;
    mutable QPointer<QWidget> m_editor;
    mutable QPersistentModelIndex m_index;
    bool m_checking = false; // a box of the check takes the focus: not a way out
};
