#include "maps/ui/MapDrawing.h"

#include "frame/ui/Colours.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

constexpr double kScaleBarLength = 120; // pixels, at most
constexpr double kScaleBarMargin = 12;

/// A rim sets a symbol off from any paper.
QColor RimOf(const QColor& colour, const QColor& paper)
{
    return Luminance(paper) < 0.5 ? VisibleOn(paper, colour).lighter(130) : colour.darker(180);
}

void DrawSymbol(QPainter& painter, QPointF centre, double radius, const QColor& colour,
                const QColor& paper)
{
    painter.setPen(QPen(RimOf(colour, paper), 1));
    painter.setBrush(colour);
    painter.drawEllipse(centre, radius, radius);
}

/// A rim in the colour of the paper makes text readable on any layer.
void DrawRim(QPainter& painter, QPointF baseline, const QString& text, const QFont& font,
             const MapLook& look)
{
    QPainterPath path;
    path.addText(baseline, font, text);
    painter.strokePath(path, QPen(look.paper, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void DrawText(QPainter& painter, QPointF baseline, const QString& text, const QFont& font,
              const QColor& ink)
{
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(baseline, text);
}

} // namespace

void DrawPoints(QPainter& painter, const QRectF& window, const MapTransform& transform,
                const std::vector<MapPoint>& points, const QSet<QString>& selected,
                const MapLook& look)
{
    const double radius = look.symbolSize / 2.0;
    const QRectF view = window.adjusted(-2 * radius, -2 * radius, 2 * radius, 2 * radius);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const MapPoint& point : points) {
        const QPointF centre = transform.ToPixel(point.x, point.y);
        if (view.contains(centre) && selected.contains(point.name.toLower()))
            DrawSymbol(painter, centre, radius + look.selectionRim, look.selection, look.paper);
    }
    for (const MapPoint& point : points) {
        const QPointF centre = transform.ToPixel(point.x, point.y);
        if (point.colour.isValid() && view.contains(centre))
            DrawSymbol(painter, centre, radius, point.colour, look.paper);
    }
}

void DrawLabels(QPainter& painter, const QRectF& window, const MapTransform& transform,
                const std::vector<MapPoint>& points, const std::vector<QStaticText>& names,
                const std::vector<PlacedLabel>& labels, const MapLook& look)
{
    // The rim is the text itself in the colour of the paper, around its place:
    // glyphs from the cache, many times faster than the outline of their shapes.
    static constexpr QPointF kRim[] = {{-1.5, 0}, {1.5, 0}, {0, -1.5}, {0, 1.5},
                                       {-1, -1},  {1, -1},  {-1, 1},   {1, 1}};
    const QColor ink = VisibleOn(look.paper, look.labelColour);
    painter.setFont(look.labelFont);
    for (const PlacedLabel& label : labels) {
        const MapPoint& point = points[label.point];
        const QRectF room = label.room.translated(transform.ToPixel(point.x, point.y));
        if (!window.intersects(room))
            continue;
        painter.setPen(look.paper);
        for (const QPointF& offset : kRim)
            painter.drawStaticText(room.topLeft() + offset, names[label.point]);
        painter.setPen(ink);
        painter.drawStaticText(room.topLeft(), names[label.point]);
    }
}

double RoundLength(double metres)
{
    const double power = std::pow(10.0, std::floor(std::log10(metres)));
    for (const int step : {5, 2}) {
        if (step * power <= metres)
            return step * power;
    }
    return power;
}

QString LengthText(double metres)
{
    return metres >= 1000 ? QString::number(metres / 1000) + " km" : QString::number(metres) + " m";
}

void DrawScaleBar(QPainter& painter, const QRectF& window, const MapTransform& transform,
                  const MapLook& look)
{
    const double metres = RoundLength(transform.ToMapDistance(kScaleBarLength));
    const double length = metres / transform.MetresPerPixel();
    const QPointF left = window.bottomLeft() + QPointF(kScaleBarMargin, -kScaleBarMargin);
    const QPointF right = left + QPointF(length, 0);
    QPainterPath bar(left - QPointF(0, 5));
    bar.lineTo(left);
    bar.lineTo(right);
    bar.lineTo(right - QPointF(0, 5));
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.strokePath(bar, QPen(look.paper, 4));
    painter.strokePath(bar, QPen(look.ink, 1));
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF baseline = right + QPointF(6, 0);
    DrawRim(painter, baseline, LengthText(metres), look.font, look);
    DrawText(painter, baseline, LengthText(metres), look.font, look.ink);
}
