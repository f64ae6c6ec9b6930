#pragma once

#include "geometry/Punt.h"

#include <QString>

#include <vector>

namespace geometry {

/// The colour of a line, 0 to 255 each.
struct Kleur {
    int red = 0;
    int green = 0;
    int blue = 0;
};

/// What the plotting operations of `Strijklengte` need of a chart.
class FetchChart {
public:
    virtual ~FetchChart() = default;

    /// A line through the points in the order given, closed or not, without
    /// marks and labels.
    virtual void AddLineSeries(const QString& title, const std::vector<Punt>& points,
                               Kleur colour) = 0;
    /// Removes every series whose title begins with `name`, in any case.
    virtual void RemoveAllSeriesWithName(const QString& name) = 0;
    /// Fixes both axes.
    virtual void SetAxes(double left, double right, double bottom, double top) = 0;
    /// Widens one axis until a unit is as long on both; see `Strijklengte`.
    virtual void KeepAspectRatio() = 0;
    virtual void Repaint() = 0;
};

} // namespace geometry
