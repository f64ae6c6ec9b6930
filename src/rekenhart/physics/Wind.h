#pragma once

#include "rekenhart/physics/LinearTable.h"

namespace rekenhart {

/// The factor on the wind over the water, at most 1, because the land around is
/// rougher than the grass that the potential wind stands for. `roughness` is z0
/// in m, used between 0.0001 and 2.
///
/// Both winds are carried down from the same wind at 60 m by the logarithmic
/// profile (Wieringa 1986). It never raises the wind.
double WindReduction(double roughness);

/// Wind stress coefficient over water (Wu 1982), constant above 40 m/s.
double DragCoefficient(double wind);

/// The tilt of the water surface (m) at the lee end of a fetch: the stationary
/// balance of wind stress and surface slope, nodal line at half the fetch, for a
/// finite set-up, so that it stays sound in very shallow water.
/// `wind` over the water in m/s, `fetch` and `depth` in m.
double Opwaaiing(double wind, double fetch, double depth);

/// The set-up of the basin (m) at a location for one wind sector, over the wind
/// speeds of table `Scheefstand`.
class ScheefstandLine {
public:
    ScheefstandLine() = default;
    explicit ScheefstandLine(LinearTable points) : m_points(std::move(points)) {}

    /// Outside the stored speeds the set-up follows the square of the wind.
    double operator()(double wind) const;
    double HighestWind() const { return m_points.LastX(); }

private:
    LinearTable m_points;
};

} // namespace rekenhart
