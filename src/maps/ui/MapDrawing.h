#pragma once

#include "maps/ui/MapTransform.h"

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QSet>
#include <QStaticText>
#include <QString>

#include <vector>

class QPainter;

/// One location on the map.
struct MapPoint {
    double x = 0; ///< metres
    double y = 0;
    QString name;
    QColor colour; ///< an invalid colour: no symbol

    bool operator==(const MapPoint&) const = default;
};

/// A point's name on the map.
struct PlacedLabel {
    std::size_t point = 0; ///< index of the point
    QRectF room;           ///< of the text, from the middle of the symbol, pixels
};

/// How the locations look.
struct MapLook {
    int symbolSize = 8;   ///< diameter, pixels
    int selectionRim = 4; ///< of a selected point, around its symbol
    QFont labelFont;
    QColor labelColour = Qt::black;
    QColor selection{255, 255, 0};
    QColor paper = Qt::white;
    QColor ink = Qt::black;
    QFont font; ///< of the scale bar
};

/// Draws locations as points, the selected ones (names in lower case) on a
/// wider disc. What is out of view is left out.
void DrawPoints(QPainter& painter, const QRectF& window, const MapTransform& transform,
                const std::vector<MapPoint>& points, const QSet<QString>& selected,
                const MapLook& look);

/// Writes the names that are in view, in a colour that is seen on the paper.
void DrawLabels(QPainter& painter, const QRectF& window, const MapTransform& transform,
                const std::vector<MapPoint>& points, const std::vector<QStaticText>& names,
                const std::vector<PlacedLabel>& labels, const MapLook& look);

/// A bar of a round length, with the length beside it, in the lower left corner.
void DrawScaleBar(QPainter& painter, const QRectF& window, const MapTransform& transform,
                  const MapLook& look);

/// The largest length of 1, 2 or 5 times a power of ten that is not above `metres`.
double RoundLength(double metres);
QString LengthText(double metres);
