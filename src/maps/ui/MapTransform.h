#pragma once

#include "frame/MapExtent.h"

#include <QPointF>
#include <QSizeF>

/// What part of the plane a window shows: map coordinates in metres, y upwards,
/// to pixels, y downwards, and back. One scale for both axes, so that a map is
/// never distorted: an extent that is asked for is in view as a whole, in the
/// middle.
class MapTransform {
public:
    /// Metres per pixel stay between these: a map is never lost by zooming.
    static constexpr double kFinest = 0.01;
    static constexpr double kCoarsest = 1E5;

    /// The window changed its size: what was asked for stays in view.
    void SetSize(QSizeF pixels);
    /// Edges may come in either order. An extent without area keeps the scale.
    void SetExtent(const MapRectangle& extent);
    /// All that is in view, with what the window's shape adds.
    MapRectangle Extent() const;
    double MetresPerPixel() const { return m_scale; }

    QPointF ToPixel(double x, double y) const;
    QPointF ToMap(QPointF pixel) const;
    double ToMapDistance(double pixels) const { return pixels * m_scale; }

    /// Makes everything `factor` times as large; the map point under `fixed` stays there.
    void Zoom(double factor, QPointF fixed);
    /// Around the centre.
    void Zoom(double factor);
    void Pan(QPointF pixels);

private:
    void Fit();
    void Remember();

    QSizeF m_size{1, 1};
    MapRectangle m_asked{0, 1, 1, 0}; // fitted again at every change of size
    double m_scale = 1;
    QPointF m_centre; // in map coordinates
};
