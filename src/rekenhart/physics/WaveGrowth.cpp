#include "rekenhart/physics/WaveGrowth.h"

#include "rekenhart/Constants.h"

#include <cmath>

namespace rekenhart {

namespace {

/// tanh(a) tanh(b/tanh(a)): the limit by depth, and within it the growth with fetch.
double LimitedGrowth(double depthTerm, double fetchTerm)
{
    const double limit = std::tanh(depthTerm);
    return limit * std::tanh(fetchTerm / limit);
}

Waves Bretschneider(double wind, double fetch, double depth)
{
    const double adjusted = 0.71 * std::pow(wind, 1.23);
    const double squared = adjusted * adjusted;
    const double d = kGravity * depth / squared;
    const double f = kGravity * fetch / squared;
    const double significantPeriod =
        7.54 * (adjusted / kGravity) *
        LimitedGrowth(0.833 * std::pow(d, 0.375), 0.0379 * std::cbrt(f));
    return {0.283 * (squared / kGravity) *
                LimitedGrowth(0.530 * std::pow(d, 0.75), 0.00565 * std::sqrt(f)),
            significantPeriod / 0.95};
}

Waves YoungVerhagen(double wind, double fetch, double depth)
{
    const double squared = wind * wind;
    const double d = kGravity * depth / squared;
    const double f = kGravity * fetch / squared;
    const double energy =
        3.64e-3 *
        std::pow(LimitedGrowth(0.493 * std::pow(d, 0.75), 3.13e-3 * std::pow(f, 0.57)), 1.74);
    const double frequency =
        0.133 *
        std::pow(LimitedGrowth(0.331 * std::pow(d, 1.01), 5.215e-4 * std::pow(f, 0.73)), -0.37);
    return {4 * (squared / kGravity) * std::sqrt(energy), wind / (kGravity * frequency)};
}

Waves BreugemHolthuijsen(double wind, double fetch, double depth)
{
    const double squared = wind * wind;
    const double d = kGravity * depth / squared;
    const double f = kGravity * fetch / squared;
    return {
        0.24 * (squared / kGravity) *
            std::pow(LimitedGrowth(0.343 * std::pow(d, 1.14), 4.41e-4 * std::pow(f, 0.79)), 0.572),
        7.69 * (wind / kGravity) *
            std::pow(LimitedGrowth(0.10 * std::pow(d, 2.01), 2.77e-7 * std::pow(f, 1.45)), 0.187)};
}

} // namespace

Waves GrowWaves(Golfgroeimodule model, double wind, double fetch, double depth)
{
    if (wind < 0.1 || fetch <= 0)
        return {};
    switch (model) {
    case Golfgroeimodule::Bretschneider:
        return Bretschneider(wind, fetch, depth);
    case Golfgroeimodule::YoungVerhagen:
        return YoungVerhagen(wind, fetch, depth);
    case Golfgroeimodule::BreugemHolthuijsen:
        break;
    }
    return BreugemHolthuijsen(wind, fetch, depth);
}

} // namespace rekenhart
