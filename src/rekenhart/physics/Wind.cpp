#include "rekenhart/physics/Wind.h"

#include "rekenhart/Constants.h"

#include <algorithm>
#include <cmath>

namespace rekenhart {

namespace {

constexpr double kReferenceRoughness = 0.03; // m, grass of the wind tables
constexpr double kAirToWaterDensity = 1.25e-3;

/// Wind at 10 m over wind at 60 m.
double ShareOfMesowind(double roughness)
{
    return std::log(10 / roughness) / std::log(60 / roughness);
}

} // namespace

double WindReduction(double roughness)
{
    const double z0 = std::clamp(roughness, 0.0001, 2.0);
    return std::min(1.0, ShareOfMesowind(z0) / ShareOfMesowind(kReferenceRoughness));
}

double DragCoefficient(double wind)
{
    return (0.8 + 0.065 * std::min(wind, 40.0)) * 1e-3;
}

double Opwaaiing(double wind, double fetch, double depth)
{
    if (fetch <= 0 || wind <= 0)
        return 0;
    const double slope = kAirToWaterDensity * DragCoefficient(wind) * wind * wind / kGravity;
    return std::sqrt(depth * depth + slope * fetch) - depth;
}

double ScheefstandLine::operator()(double wind) const
{
    const auto square = [](double value) { return value * value; };
    if (wind > m_points.LastX())
        return m_points.LastX() > 0 ? m_points.LastY() * square(wind / m_points.LastX())
                                    : m_points.LastY();
    if (wind < m_points.FirstX())
        return m_points.FirstY() * square(wind / m_points.FirstX());
    return m_points(wind);
}

} // namespace rekenhart
