#include "rekenhart/physics/WaveObstacles.h"

#include "rekenhart/Constants.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace rekenhart {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kStemDiameter = 0.008; // m
constexpr double kStemDrag = 1.0;
constexpr double kBreakingRatio = 0.5;

double SimpleDam(double relativeCrest)
{
    if (relativeCrest < -1.13)
        return 0.80;
    if (relativeCrest > 1.2)
        return 0.10;
    return 0.46 - 0.3 * relativeCrest;
}

double DamWithSlope(const Profiel& dam, double relativeCrest, const Waves& waves)
{
    const double steepness =
        2 * kPi * waves.height / (kGravity * waves.peakPeriod * waves.peakPeriod);
    const double breaker = (1 / dam.taludhelling) / std::sqrt(steepness);
    const double width = std::max(dam.kruinBreedte, 0.1 * waves.height);
    const double permeability = dam.constructietype == 0 ? 0.80 : 0.64;
    const double transmission = -0.4 * relativeCrest + permeability *
                                                           std::pow(width / waves.height, -0.31) *
                                                           (1 - std::exp(-0.5 * breaker));
    return std::clamp(transmission, 0.075, 0.80);
}

} // namespace

double DamTransmission(const Profiel& dam, double waterLevel, const Waves& waves)
{
    const double relativeCrest = (dam.damHoogte - waterLevel) / waves.height;
    const double transmission =
        dam.damtype == 4 ? DamWithSlope(dam, relativeCrest, waves) : SimpleDam(relativeCrest);
    if (relativeCrest <= -4)
        return 1;
    if (relativeCrest < -2)
        return transmission + (1 - transmission) * (-2 - relativeCrest) / 2;
    return transmission;
}

double PileTransmission(const Profiel& piles, double depth, const Waves& waves)
{
    if (!piles.PalenBruikbaar())
        return 1;
    const double open = (piles.hartafstandPalen - piles.paaldiameter) / piles.hartafstandPalen;
    const double e = 0.9 * open / std::sqrt(1 - open * open);
    const double transmission =
        4 * (depth / waves.height) * e * (-e + std::sqrt(e * e + waves.height / (2 * depth)));
    return std::clamp(transmission, 0.0, 1.0);
}

double ReedTransmission(const Profiel& reed, double depth, const Waves& waves)
{
    const double stems = reed.Stengels();
    if (stems <= 0 || reed.vegetatieBreedte <= 0)
        return 1;
    const double k = WaveNumber(waves.peakPeriod, depth);
    const double kd = std::min(k * depth, 20.0); // beyond that only the sinh would overflow
    const double sinh = std::sinh(kd);
    const double shape = (sinh * sinh * sinh + 3 * sinh) / ((std::sinh(2 * kd) + 2 * kd) * sinh);
    const double decay = 1 / (3 * std::sqrt(kPi)) * kStemDrag * kStemDiameter * stems * k *
                         (waves.height / std::numbers::sqrt2) * shape;
    return 1 / (1 + decay * reed.vegetatieBreedte);
}

double WaveNumber(double period, double depth)
{
    const double omega = 2 * kPi / period;
    const double deepWater = omega * omega / kGravity;
    // Newton on k tanh(kd) = k0 from a start that is exact in both limits.
    double k = deepWater / std::sqrt(std::tanh(deepWater * depth));
    for (int i = 0; i < 50; ++i) {
        const double t = std::tanh(k * depth);
        const double step = (k * t - deepWater) / (t + k * depth * (1 - t * t));
        k -= step;
        if (std::abs(step) <= 1e-12 * k)
            break;
    }
    return k;
}

double DepthLimited(double height, double depth)
{
    return std::min(height, std::max(kBreakingRatio * depth, 0.0));
}

} // namespace rekenhart
