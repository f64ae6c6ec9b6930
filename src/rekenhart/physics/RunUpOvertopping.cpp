#include "rekenhart/physics/RunUpOvertopping.h"

#include "rekenhart/Constants.h"

#include <algorithm>
#include <cmath>

namespace rekenhart {

namespace {

constexpr double kNoseFactor = 0.7; // our own: the order of magnitude of a nose

double RelativeDischarge(const WavesAtDike& waves, double discharge)
{
    return discharge / std::sqrt(kGravity * waves.height * waves.height * waves.height);
}

/// Roughness and obliqueness together never take off more than 60 %.
double CombinedFactor(double roughness, double angleFactor)
{
    return std::max(roughness * angleFactor, 0.4);
}

} // namespace

double AngleBetween(double bearingOne, double bearingTwo)
{
    const double difference = std::abs(std::remainder(bearingOne - bearingTwo, 360.0));
    return std::min(difference, 180.0);
}

WavesAtDike ReduceForAngle(const WavesAtDike& waves, double angle)
{
    if (angle > 110)
        return {0, waves.period};
    if (angle <= 80)
        return waves;
    const double part = (110 - angle) / 30;
    return {waves.height * part, waves.period * std::sqrt(part)};
}

FreeboardResult RunUpFreeboard(const SlopeLoad& slope, double angle)
{
    FreeboardResult result;
    result.angleFactor = 1 - 0.0022 * std::min(angle, 80.0);
    result.factor = CombinedFactor(slope.roughness, result.angleFactor);
    result.freeboard = result.factor * slope.smoothRunUp;
    return result;
}

FreeboardResult OvertoppingFreeboard(const WavesAtDike& waves, const SlopeLoad& slope, double angle,
                                     double discharge)
{
    FreeboardResult result;
    result.angleFactor = 1 - 0.0033 * std::min(angle, 80.0);
    result.factor = CombinedFactor(slope.roughness, result.angleFactor);
    const double q = RelativeDischarge(waves, discharge);
    result.breaking = waves.height * slope.breaker * result.factor / 4.75 *
                      std::log(0.067 * slope.breaker / (std::sqrt(slope.tanAlpha) * q));
    result.nonBreaking = waves.height * result.factor / 2.6 * std::log(0.2 / q);
    result.freeboard = std::max(0.0, std::min(result.breaking, result.nonBreaking));
    return result;
}

FreeboardResult WallFreeboard(const WavesAtDike& waves, bool nose, double angle, double discharge)
{
    FreeboardResult result;
    result.angleFactor = 1 - 0.0062 * std::min(angle, 45.0);
    result.factor = result.angleFactor * (nose ? kNoseFactor : 1);
    result.freeboard = std::max(0.0, waves.height * result.factor / 2.78 *
                                         std::log(0.05 / RelativeDischarge(waves, discharge)));
    return result;
}

} // namespace rekenhart
