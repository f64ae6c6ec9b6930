#pragma once

#include <QTreeWidget>

/// The tree control of the location browser: what the mouse and the keys do to the
/// tree, as events of a node.
///
/// A node becomes the control's current one by a left click or by the arrow keys; both
/// are a click on it. A right click moves nothing, and dragging does not move
/// the selection along. Changes made by the program are no clicks.
///
/// The control itself has one current node and no more. Control and Shift are told
/// along, since they mean something for the selection of locations, which
/// shows as the nodes' background.
class BrowserTree : public QTreeWidget {
    Q_OBJECT

public:
    explicit BrowserTree(QWidget* parent = nullptr);

signals:
    void NodeClick(QTreeWidgetItem* node, Qt::KeyboardModifiers modifiers);
    void NodeDoubleClick(QTreeWidgetItem* node);
    /// The left button came up over the node that it went down on, or the keyboard did
    /// what is the same: Space on it, or an arrow key to it with Shift.
    void NodeMouseUp(QTreeWidgetItem* node, Qt::KeyboardModifiers modifiers);
    /// The right button came up over a node, or the menu key was pressed.
    void ContextMenu(const QPoint& globalPosition);
    /// F2, Delete (Control+X too), Enter, or A for Control+A; outside an edit.
    void CommandKey(int key);
    /// The user closed a label edit with this text.
    void LabelEdited(QTreeWidgetItem* node, const QString& text);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

private:
    QTreeWidgetItem* NodeAt(const QPoint& position) const;
    void MoveByKey(QKeyEvent* event);

    QTreeWidgetItem* m_pressed = nullptr; // only compared
};
