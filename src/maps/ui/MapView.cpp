#include "maps/ui/MapView.h"

#include "maps/ui/LabelPlaces.h"

#include <QKeyEvent>
#include <QPainter>
#include <QRubberBand>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kZoomOutFactor = 1.5;
constexpr double kWheelFactor = 1.25; // for one notch
constexpr double kNotch = 120;        // in units of the wheel
// A click hits a point at this distance at most: wider than the symbol, so that
// it need not be hit exactly.
constexpr double kHitDistance = 100.0 / 15; // 100 twips, in pixels
// Less than this is a click with an unsteady hand, not a rectangle.
constexpr int kSmallestRectangle = 4;
constexpr int kKeyStep = 40;
constexpr int kTipDelay = 100;      // ms
constexpr QPoint kTipOffset(0, 19); // 290 twips below the mouse

} // namespace

MapView::MapView(QWidget* parent)
    : QWidget(parent), m_band(new QRubberBand(QRubberBand::Rectangle, this))
{
    setObjectName("mapGebied");
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName("Kaart");
    m_look.paper = palette().color(QPalette::Base);
    m_look.ink = palette().color(QPalette::Text);
    m_look.font = font();
    m_tipTimer.setSingleShot(true);
    m_tipTimer.setInterval(kTipDelay);
    connect(&m_tipTimer, &QTimer::timeout, this, &MapView::ShowTip);
    SetExtent(FullExtent({}));
}

MapView::~MapView() = default;

// What is shown

void MapView::SetPoints(std::vector<MapPoint> points)
{
    if (points == m_points)
        return;
    m_points = std::move(points);
    m_names.clear();
    update();
}

void MapView::SetSelection(const QStringList& names)
{
    QSet<QString> selected;
    for (const QString& name : names)
        selected.insert(name.toLower());
    if (selected == m_selected)
        return;
    m_selected = std::move(selected);
    m_labelScale = 0;
    update();
}

void MapView::SetLabels(bool on, const QFont& font, const QColor& colour)
{
    m_showLabels = on;
    m_look.labelFont = font;
    m_look.labelColour = colour;
    m_names.clear();
    update();
}

void MapView::SetSymbolSize(int pixels)
{
    m_look.symbolSize = pixels;
    m_labelScale = 0;
    update();
}

MapRectangle MapView::PointExtent() const
{
    if (m_points.empty())
        return {};
    MapRectangle extent{m_points[0].x, m_points[0].y, m_points[0].x, m_points[0].y};
    for (const MapPoint& point : m_points) {
        extent.left = std::min(extent.left, point.x);
        extent.right = std::max(extent.right, point.x);
        extent.bottom = std::min(extent.bottom, point.y);
        extent.top = std::max(extent.top, point.y);
    }
    return extent;
}

void MapView::SetExtent(const MapRectangle& extent)
{
    m_transform.SetExtent(extent);
    update();
}

void MapView::Refresh()
{
    update();
}

void MapView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_look.paper);
    DrawPoints(painter, rect(), m_transform, m_points, m_selected, m_look);
    if (m_showLabels)
        DrawNames(painter);
    DrawScaleBar(painter, rect(), m_transform, m_look);
}

void MapView::DrawNames(QPainter& painter)
{
    if (m_names.empty()) {
        m_names = LayOutNames(m_points, m_look);
        m_labelScale = 0;
    }
    const double scale = m_transform.MetresPerPixel();
    if (m_labelScale != scale) {
        m_labels = PlaceLabels(m_points, m_names, m_selected, scale, m_look);
        m_labelScale = scale;
    }
    DrawLabels(painter, rect(), m_transform, m_points, m_names, m_labels, m_look);
}

void MapView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_transform.SetSize(size());
}

void MapView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        m_look.paper = palette().color(QPalette::Base);
        m_look.ink = palette().color(QPalette::Text);
        update();
    }
}

// Mouse and keyboard

void MapView::SetTool(Tool tool, const QCursor& pointer)
{
    m_tool = tool;
    m_pointer = pointer;
    setCursor(pointer);
}

void MapView::StartDrag(Drag drag, QPoint position)
{
    m_drag = drag;
    m_dragStart = position;
    if (drag == Drag::Pan) {
        setCursor(Qt::ClosedHandCursor);
    } else {
        m_band->setGeometry(QRect(position, QSize()));
        m_band->show();
    }
}

void MapView::mousePressEvent(QMouseEvent* event)
{
    if (m_drag != Drag::None)
        return;
    if (event->button() == Qt::MiddleButton) {
        StartDrag(Drag::Pan, event->pos());
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    switch (m_tool) {
    case Tool::Pan:
        StartDrag(Drag::Pan, event->pos());
        break;
    case Tool::Box:
    case Tool::ZoomIn:
        StartDrag(Drag::Rectangle, event->pos());
        break;
    case Tool::ZoomOut:
        m_transform.Zoom(1 / kZoomOutFactor);
        update();
        break;
    case Tool::Select:
        if (const MapPoint* point = PointAt(event->position()))
            emit PointsChosen({point->name});
    }
}

void MapView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_drag == Drag::Pan) {
        m_transform.Pan(event->pos() - m_dragStart);
        m_dragStart = event->pos();
        update();
    } else if (m_drag == Drag::Rectangle) {
        m_band->setGeometry(QRect(m_dragStart, event->pos()).normalized());
    }
    m_tipPlace = event->pos();
    QToolTip::hideText();
    m_tipTimer.start();
    const QPointF place = m_transform.ToMap(event->position());
    emit MouseMoved(place.x(), place.y());
}

void MapView::mouseReleaseEvent(QMouseEvent* event)
{
    const Drag drag = std::exchange(m_drag, Drag::None);
    if (drag == Drag::None)
        return;
    setCursor(m_pointer);
    m_band->hide();
    if (drag == Drag::Rectangle)
        EndRectangle(event->pos());
}

void MapView::EndRectangle(QPoint position)
{
    const QPointF first = m_transform.ToMap(m_dragStart);
    const QPointF last = m_transform.ToMap(position);
    const MapRectangle rectangle{std::min(first.x(), last.x()), std::max(first.y(), last.y()),
                                 std::max(first.x(), last.x()), std::min(first.y(), last.y())};
    if (m_tool == Tool::Box) {
        ChooseInside(rectangle);
        return;
    }
    if ((position - m_dragStart).manhattanLength() < kSmallestRectangle) {
        m_transform.Zoom(kZoomOutFactor, m_dragStart); // a click: a step in, as far as one out
        update();
    } else {
        SetExtent(rectangle);
    }
}

const MapPoint* MapView::PointAt(QPointF position) const
{
    const MapPoint* nearest = nullptr;
    double smallest = kHitDistance;
    for (const MapPoint& point : m_points) {
        const QPointF offset = m_transform.ToPixel(point.x, point.y) - position;
        const double distance = std::hypot(offset.x(), offset.y());
        if (distance <= smallest) {
            smallest = distance;
            nearest = &point;
        }
    }
    return nearest;
}

void MapView::ShowTip()
{
    const MapPoint* point = m_drag == Drag::None ? PointAt(m_tipPlace) : nullptr;
    if (point)
        QToolTip::showText(mapToGlobal(m_tipPlace + kTipOffset), point->name, this);
}

void MapView::ChooseInside(const MapRectangle& rectangle)
{
    QStringList names;
    for (const MapPoint& point : m_points) {
        if (point.x >= rectangle.left && point.x <= rectangle.right &&
            point.y >= rectangle.bottom && point.y <= rectangle.top)
            names.append(point.name);
    }
    if (!names.isEmpty())
        emit PointsChosen(names);
}

void MapView::wheelEvent(QWheelEvent* event)
{
    const double notches = event->angleDelta().y() / kNotch;
    if (notches != 0) {
        m_transform.Zoom(std::pow(kWheelFactor, notches), event->position());
        update();
    }
    event->accept();
}

void MapView::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        m_transform.Pan({kKeyStep, 0});
        break;
    case Qt::Key_Right:
        m_transform.Pan({-kKeyStep, 0});
        break;
    case Qt::Key_Up:
        m_transform.Pan({0, kKeyStep});
        break;
    case Qt::Key_Down:
        m_transform.Pan({0, -kKeyStep});
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        m_transform.Zoom(kZoomOutFactor);
        break;
    case Qt::Key_Minus:
        m_transform.Zoom(1 / kZoomOutFactor);
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    update();
}
