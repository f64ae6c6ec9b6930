#include "maps/ui/MapDrawing.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

constexpr double kLabelGap = 3;         // pixels between symbol and name
constexpr double kScaleBarLength = 120; // pixels, at most
constexpr double kScaleBarMargin = 12;

void DrawSymbol(QPainter& painter, QPointF centre, double radius, const QColor& colour)
{
    painter.setPen(QPen(colour.darker(180), 1));
    painter.setBrush(colour);
    painter.drawEllipse(centre, radius, radius);
}

/// With a rim in the colour of the paper, readable on any layer.
void DrawText(QPainter& painter, QPointF baseline, const QString& text, const QFont& font,
              const MapLook& look, const QColor& ink)
{
    QPainterPath path;
    path.addText(baseline, font, text);
    painter.strokePath(path, QPen(look.paper, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
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
            DrawSymbol(painter, centre, radius + 4, look.selection);
    }
    for (const MapPoint& point : points) {
        const QPointF centre = transform.ToPixel(point.x, point.y);
        if (point.colour.isValid() && view.contains(centre))
            DrawSymbol(painter, centre, radius, point.colour);
    }
    if (!look.labels)
        return;
    const QFontMetricsF metrics(look.labelFont);
    for (const MapPoint& point : points) {
        const QPointF centre = transform.ToPixel(point.x, point.y);
        // A name may still be seen of a point that lies left of the window.
        const QPointF baseline =
            centre + QPointF(radius + kLabelGap, (metrics.ascent() - metrics.descent()) / 2);
        const QRectF label = metrics.boundingRect(point.name).translated(baseline);
        if (window.intersects(label))
            DrawText(painter, baseline, point.name, look.labelFont, look, look.labelColour);
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
    DrawText(painter, right + QPointF(6, 0), LengthText(metres), painter.font(), look, look.ink);
}
