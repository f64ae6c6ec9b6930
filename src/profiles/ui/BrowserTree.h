#pragma once

#include <QTreeWidget>

/// The tree control of the location browser: what the mouse and the keys do to the
/// tree, as events of a node.
///
/// A node becomes the control's current one by a left click or by the arrow keys; both
/// are a click on it. A right click moves nothing, and dragging does not move
/// the selection along. Changes made by the program are no clicks.
class BrowserTree : public QTreeWidget {
    Q_OBJECT

public:
    explicit BrowserTree(QWidget* parent = nullptr);

signals:
    void NodeClick(QTreeWidgetItem* node);
    void NodeDoubleClick(QTreeWidgetItem* node);
    /// The left button came up over the node that it went down on.
    void NodeMouseUp(QTreeWidgetItem* node);
    /// The right button came up over a node, or the menu key was pressed.
    void ContextMenu(const QPoint& globalPosition);
    /// F2, Delete, Control+X, Enter or Space, outside an edit.
    void CommandKey(int key);
    /// The user closed a label edit with this text.
    void LabelEdited(QTreeWidgetItem* node, const QString& text);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QTreeWidgetItem* NodeAt(const QPoint& position) const;

    QTreeWidgetItem* m_pressed = nullptr; // only compared
};
