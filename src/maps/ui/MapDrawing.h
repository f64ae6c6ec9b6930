#pragma once

#include "maps/ui/MapTransform.h"

#include <QColor>
#include <QFont>
#include <QSet>
#include <QString>

#include <vector>

class QPainter;

/// One location on the map.
struct MapPoint {
    double x = 0; ///< metres
    double y = 0;
    QString name;
    QColor colour; ///< an invalid colour: no symbol
};

/// How the locations look.
struct MapLook {
    int symbolSize = 8; ///< diameter, pixels
    bool labels = false;
    QFont labelFont;
    QColor labelColour = Qt::black;
    QColor selection{255, 255, 0};
    QColor paper = Qt::white;
    QColor ink = Qt::black;
    QFont font; ///< of the scale bar
};

/// Draws locations as points, the selected ones (names in lower case) on a
/// wider disc, and their names beside them. What is out of view is left out.
void DrawPoints(QPainter& painter, const QRectF& window, const MapTransform& transform,
                const std::vector<MapPoint>& points, const QSet<QString>& selected,
                const MapLook& look);

/// A bar of a round length, with the length beside it, in the lower left corner.
void DrawScaleBar(QPainter& painter, const QRectF& window, const MapTransform& transform,
                  const MapLook& look);

/// The largest length of 1, 2 or 5 times a power of ten that is not above `metres`.
double RoundLength(double metres);
QString LengthText(double metres);
