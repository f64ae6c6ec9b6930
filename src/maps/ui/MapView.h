#pragma once

#include "maps/ui/MapDrawing.h"

#include <QCursor>
#include <QTimer>
#include <QWidget>

class QRubberBand;

/// A map with the locations as points. The tool that is chosen decides what the
/// left button does; the wheel zooms around the mouse, the middle button pans,
/// and with the keyboard the arrows pan and + and - zoom, whatever the tool.
/// A mouse that rests on a point is told its name.
///
/// Points are given and kept: drawing them again asks nobody for them.
class MapView : public QWidget, public ExtentMap {
    Q_OBJECT

public:
    /// Numbers of the toolbar's commands.
    enum class Tool { Select = 1, Box = 2, Pan = 4, ZoomIn = 5, ZoomOut = 6 };

    explicit MapView(QWidget* parent = nullptr);
    ~MapView() override;

    void SetPoints(std::vector<MapPoint> points);
    /// By name, without regard to case.
    void SetSelection(const QStringList& names);
    void SetLabels(bool on, const QFont& font, const QColor& colour);
    void SetSymbolSize(int pixels);
    void SetTool(Tool tool, const QCursor& pointer);
    Tool CurrentTool() const { return m_tool; }

    /// The rectangle around all points; without points it has no width.
    MapRectangle PointExtent() const;
    void SetExtent(const MapRectangle& extent) override;
    void Refresh() override;
    const MapTransform& Transform() const { return m_transform; }

    QSize sizeHint() const override { return {600, 450}; }

signals:
    /// In map coordinates.
    void MouseMoved(double x, double y);
    /// Names of the points that a click (one) or a rectangle hit; never none.
    void PointsChosen(const QStringList& names);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Drag { None, Pan, Rectangle };

    void StartDrag(Drag drag, QPoint position);
    void EndRectangle(QPoint position);
    /// The nearest point in reach of the mouse; null when there is none.
    const MapPoint* PointAt(QPointF position) const;
    void ShowTip();
    void DrawNames(QPainter& painter);
    void ChooseInside(const MapRectangle& rectangle);

    MapTransform m_transform;
    MapLook m_look;
    std::vector<MapPoint> m_points;
    QSet<QString> m_selected; // lower-cased names
    bool m_showLabels = false;
    std::vector<QStaticText> m_names;  // of the points; empty: to be laid out anew
    std::vector<PlacedLabel> m_labels; // for m_labelScale; 0: to be placed anew
    double m_labelScale = 0;
    QTimer m_tipTimer;
    QPoint m_tipPlace;
    Tool m_tool = Tool::Select;
    QCursor m_pointer;
    Drag m_drag = Drag::None;
    QPoint m_dragStart;
    QRubberBand* m_band; // child
};
