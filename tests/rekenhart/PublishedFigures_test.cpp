// Each formula against figures that its source prints, not against itself.

#include "rekenhart/physics/RunUpOvertopping.h"
#include "rekenhart/physics/WaveGrowth.h"
#include "rekenhart/physics/WaveObstacles.h"
#include "rekenhart/physics/Wind.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace rekenhart;

namespace {

constexpr double kG = 9.81;
constexpr double kPi = std::numbers::pi;
constexpr double kDeep = 5000; // m

Profiel Slope(double run, double r = 1)
{
    Profiel profiel;
    profiel.voorland = 1;
    profiel.punten = {{0, -3, r, false}, {run * 6, 3, r, false}};
    return profiel;
}

SlopeLoad LoadWithBreaker(double breaker, double tanAlpha, double roughness = 1)
{
    return {tanAlpha, breaker, 0, roughness};
}

} // namespace

// Shore Protection Manual (1984), deep-water equations 3-33 and 3-34:
// g H/U_A^2 = 1.6e-3 (g F/U_A^2)^(1/2); g T/U_A = 2.857e-1 (g F/U_A^2)^(1/3),
// T the peak period. With Ts = 0.95 Tp the shallow-water form of equation 3-40
// then lies 5 % higher in Tp, which is kept as it is.
TEST(PublishedFigures, BretschneiderMeetsTheDeepWaterEquationsOfTheShoreProtectionManual)
{
    const double u = 15, fetch = 2000;
    const double adjusted = 0.71 * std::pow(u, 1.23);
    const double f = kG * fetch / (adjusted * adjusted);
    const Waves waves = GrowWaves(Golfgroeimodule::Bretschneider, u, fetch, kDeep);
    EXPECT_NEAR(waves.height * kG / (adjusted * adjusted), 1.6e-3 * std::sqrt(f),
                0.01 * 1.6e-3 * std::sqrt(f));
    EXPECT_NEAR(0.95 * waves.peakPeriod * kG / adjusted, 2.857e-1 * std::cbrt(f),
                0.01 * 2.857e-1 * std::cbrt(f));
}

// Young and Verhagen (1996), their asymptotes for an unlimited fetch in finite
// depth: eps = 1.06e-3 delta^1.3 and nu = 0.20 delta^-0.375.
TEST(PublishedFigures, YoungAndVerhagenMeetTheirDepthLimitedAsymptotes)
{
    const double u = 20, depth = 1.0;
    const double delta = kG * depth / (u * u);
    const Waves waves = GrowWaves(Golfgroeimodule::YoungVerhagen, u, 1e7, depth);
    const double eps = std::pow(waves.height * kG / (4 * u * u), 2);
    const double nu = u / (kG * waves.peakPeriod);
    EXPECT_NEAR(eps, 1.06e-3 * std::pow(delta, 1.3), 0.02 * eps);
    EXPECT_NEAR(nu, 0.20 * std::pow(delta, -0.375), 0.02 * nu);
}

// Kahma and Calkoen (1992), composite data set: g^2 m0/U^4 = 5.2e-7 X^0.9 and
// omega_p U/g = 13.7 X^-0.27. Breugem and Holthuijsen (2007) start from these.
TEST(PublishedFigures, BreugemAndHolthuijsenMeetKahmaAndCalkoenInDeepWater)
{
    for (const double fetch : {500.0, 5000.0, 20000.0}) {
        const double u = 15;
        const double x = kG * fetch / (u * u);
        const Waves waves = GrowWaves(Golfgroeimodule::BreugemHolthuijsen, u, fetch, kDeep);
        const double height = 4 * std::sqrt(5.2e-7 * std::pow(x, 0.9)) * u * u / kG;
        const double period = 2 * kPi / (13.7 * std::pow(x, -0.27)) * u / kG;
        EXPECT_NEAR(waves.height, height, 0.02 * height);
        EXPECT_NEAR(waves.peakPeriod, period, 0.02 * period);
    }
}

// Wu (1982): 1000 Cd = 0.8 + 0.065 U, so 2.1 at 20 m/s.
TEST(PublishedFigures, DragCoefficientOfWu)
{
    EXPECT_NEAR(DragCoefficient(20), 2.1e-3, 1e-12);
    EXPECT_EQ(DragCoefficient(60), DragCoefficient(40));
}

// The Zuiderzee formula of the State Committee Lorentz (1926), set-up = k u^2 F/
// (2 g d) over half the fetch with k about 3.4e-6 in storm (Technical Advisory
// Committee for Water Defences, guide on lower rivers).
TEST(PublishedFigures, SmallSetUpIsThatOfTheZuiderzeeFormula)
{
    const double u = 29.5, fetch = 4000, depth = 4;
    const double zuiderzee = 0.5 * 3.4e-6 * u * u * fetch / (kG * depth);
    EXPECT_NEAR(Opwaaiing(u, fetch, depth), zuiderzee, 0.05 * zuiderzee);
}

// Wieringa and Rijkoort (1983): the potential wind is the wind at 60 m over 1.31.
// Over open grass there is no reduction; the figure decides the others.
TEST(PublishedFigures, WindReductionComesFromTheSameWindAtSixtyMetres)
{
    EXPECT_EQ(WindReduction(0.03), 1);
    const double overRough = std::log(10 / 0.5) / std::log(60 / 0.5); // share at z0 = 0.5 m
    EXPECT_NEAR(WindReduction(0.5), overRough * 1.31, 0.005);
    EXPECT_EQ(WindReduction(5), WindReduction(2)) << "rougher than the profile can tell";
    EXPECT_EQ(WindReduction(0.001), 1) << "smoother ground does not raise the wind";
}

// Van der Meer (1990): 0.46 at a crest in the water line, 0.80 and 0.10 at the ends.
TEST(PublishedFigures, SimpleDamOfVanDerMeer)
{
    Profiel dam;
    dam.damtype = 1;
    const Waves waves{1, 4};
    EXPECT_NEAR(DamTransmission(dam, 0, waves), 0.46, 1e-12);
    EXPECT_NEAR(DamTransmission(dam, 1.5, waves), 0.80, 1e-12);
    EXPECT_NEAR(DamTransmission(dam, -1.5, waves), 0.10, 1e-12);
}

// Linear between relative crests of -1.13 and 1.2, which it meets at its limits.
TEST(PublishedFigures, SimpleDamIsStraightBetweenItsLimits)
{
    for (const int type : {1, 2, 3, 5}) {
        Profiel dam;
        dam.damtype = type;
        const Waves waves{1, 4};
        EXPECT_NEAR(DamTransmission(dam, 1.12, waves), 0.796, 1e-12);
        EXPECT_NEAR(DamTransmission(dam, 1.14, waves), 0.80, 1e-12);
        EXPECT_NEAR(DamTransmission(dam, -1.19, waves), 0.103, 1e-12);
        EXPECT_NEAR(DamTransmission(dam, -1.21, waves), 0.10, 1e-12);
    }
}

// A crest narrower than a tenth of the wave height counts as a tenth: one wave
// height above the water -0.4 + 0.64 * 0.1^-0.31 (1 - e^-1.5) = 0.6151.
TEST(PublishedFigures, AnEdgeInsteadOfACrestCountsAsATenthOfTheWaveHeight)
{
    Profiel dam;
    dam.damtype = 4;
    dam.damHoogte = 1;
    dam.taludhelling = 2;
    dam.constructietype = 1;
    const double length = 1 / std::pow(0.5 / 3, 2);
    EXPECT_NEAR(DamTransmission(dam, 0, {1, std::sqrt(2 * kPi * length / kG)}), 0.6151, 1e-4);
}

// D'Angremond et al. (1996) limit transmission to 0.075..0.80; permeable 0.64,
// impermeable 0.80. A wide crest at the water line under breaker parameter 3
// (slope 1:2) and B = H gives 0.64 (1 - e^-1.5) = 0.4972.
TEST(PublishedFigures, DamWithSlopeOfDAngremond)
{
    Profiel dam;
    dam.damtype = 4;
    dam.taludhelling = 2;
    dam.constructietype = 1;
    dam.kruinBreedte = 1;
    const double length = 1 / std::pow(0.5 / 3, 2); // H/L0 so that the breaker parameter is 3
    const Waves waves{1, std::sqrt(2 * kPi * length / kG)};
    EXPECT_NEAR(DamTransmission(dam, 0, waves), 0.4972, 1e-4);
    EXPECT_NEAR(DamTransmission(dam, 1.9, waves), 0.80, 1e-12);
    dam.kruinBreedte = 20;
    EXPECT_NEAR(DamTransmission(dam, -1.5, waves), 0.075, 1e-12);
}

TEST(PublishedFigures, ADeepDamLosesItsEffectGradually)
{
    Profiel dam;
    dam.damtype = 1;
    EXPECT_NEAR(DamTransmission(dam, 3, {1, 4}), 0.90, 1e-12); // half way between 2 and 4 heights
    EXPECT_EQ(DamTransmission(dam, 4, {1, 4}), 1);
}

// Hayashi, Kano and Shirai (1966): K = 4 (d/H) E (-E + sqrt(E^2 + H/(2d))).
// With D = s/2 the open part is 0.5 and E = 0.9 * 0.5/sqrt(0.75) = 0.51962; for
// d/H = 4: K = 8.3138 (-0.51962 + sqrt(0.27 + 0.125)) = 0.90519.
TEST(PublishedFigures, PileRowOfHayashi)
{
    Profiel piles;
    piles.paaldiameter = 0.25;
    piles.hartafstandPalen = 0.5;
    EXPECT_NEAR(PileTransmission(piles, 1.2, {0.3, 3}), 0.9052, 1e-4);
    piles.hartafstandPalen = 0.2; // closer than they are thick
    EXPECT_EQ(PileTransmission(piles, 1.2, {0.3, 3}), 1);
}

// Shore Protection Manual, table C-1: d/L0 = 0.1000 gives d/L = 0.1410.
TEST(PublishedFigures, WaveNumberOfTheShoreProtectionManualsTable)
{
    const double period = 5;
    const double deepLength = kG * period * period / (2 * kPi);
    const double depth = 0.1 * deepLength;
    EXPECT_NEAR(WaveNumber(period, depth) * depth / (2 * kPi), 0.1410, 5e-5);
}

// Dalrymple et al. (1984) for emergent stalks and regular waves of height H:
// 1/(1 + a x), a = 4/(9 pi) Cd b N H k (sinh^3 kd + 3 sinh kd)/((sinh 2kd + 2kd) sinh kd).
// For random waves Mendez and Losada (2004) write 1/(3 sqrt(pi)) and Hrms: the
// ratio of both factors is 3 sqrt(pi)/4 = 1.3293.
TEST(PublishedFigures, ReedDampsRandomWavesByTheKnownShareOfRegularOnes)
{
    Profiel reed;
    reed.vegetatieBreedte = 10;
    reed.aantalLevendeStengels = 100;
    reed.seizoensinvloedFactor = 1;
    // From shallow water to nearly deep water.
    for (const auto& [depth, period] : {std::pair(1.0, 3.0), std::pair(3.0, 1.5)}) {
        const double height = 0.5;
        const double k = WaveNumber(period, depth), kd = k * depth;
        const double s = std::sinh(kd);
        const double regular = 4 / (9 * kPi) * 1.0 * 0.008 * 100 * (height / std::sqrt(2.0)) * k *
                               (s * s * s + 3 * s) / ((std::sinh(2 * kd) + 2 * kd) * s);
        const double decay = (1 / ReedTransmission(reed, depth, {height, period}) - 1) / 10;
        EXPECT_NEAR(decay, regular * 3 * std::sqrt(kPi) / 4, 1e-10);
    }
    EXPECT_TRUE(std::isfinite(ReedTransmission(reed, 2000, {0.5, 1}))) << "the sinh overflows";
    reed.seizoensinvloedFactor = 0;
    EXPECT_EQ(ReedTransmission(reed, 1, {0.5, 3}), 1) << "no stalks";
}

// TAW (2002): the two branches of the run-up meet at a breaker parameter of 1.75;
// 4.0 - 1.5/sqrt(2) = 2.94 at 2.
TEST(PublishedFigures, RunUpOnASmoothSlope)
{
    EXPECT_NEAR(RelativeRunUp(1), 1.65, 1e-12);
    EXPECT_NEAR(RelativeRunUp(2), 2.94, 0.005);
    EXPECT_NEAR(1.65 * 1.746, 4.0 - 1.5 / std::sqrt(1.746), 0.02);
    EXPECT_LT(RelativeRunUp(1.76), 1.65 * 1.76 + 1e-12);
}

// TAW (2002): influence of the angle at 80 degrees 0.824 on run-up, 0.736 on overtopping.
TEST(PublishedFigures, ObliqueAttack)
{
    EXPECT_NEAR(RunUpFreeboard(LoadWithBreaker(1, 0.3), 80).angleFactor, 0.824, 1e-12);
    EXPECT_NEAR(RunUpFreeboard(LoadWithBreaker(1, 0.3), 100).angleFactor, 0.824, 1e-12);
    EXPECT_NEAR(OvertoppingFreeboard({1, 4}, LoadWithBreaker(1, 0.3), 80, 1e-3).angleFactor, 0.736,
                1e-12);
    EXPECT_EQ(ReduceForAngle({1, 4}, 80).height, 1);
    EXPECT_NEAR(ReduceForAngle({1, 4}, 81).height, 29.0 / 30, 1e-12);
    EXPECT_NEAR(ReduceForAngle({1, 4}, 95).height, 0.5, 1e-12);
    EXPECT_NEAR(ReduceForAngle({1, 4}, 95).period, 4 * std::sqrt(0.5), 1e-12);
    EXPECT_EQ(ReduceForAngle({1, 4}, 111).height, 0);
    EXPECT_EQ(AngleBetween(350, 20), 30);
    EXPECT_EQ(AngleBetween(10, 190), 180);
}

// EurOtop (2007), equations 5.9: q/sqrt(g H^3) = 0.067/sqrt(tan a) xi
// exp(-4.75 Rc/(xi H g)), at most 0.2 exp(-2.6 Rc/(H g)). The freeboard put back
// into them gives the discharge again.
TEST(PublishedFigures, OvertoppingFreeboardPutBackGivesTheDischarge)
{
    const double q = 1e-3, height = 0.8;
    const WavesAtDike waves{height, 3};
    for (const double breaker : {0.8, 1.5, 3.0}) {
        const double tanAlpha = 0.3, roughness = 0.9, angle = 20;
        const FreeboardResult result =
            OvertoppingFreeboard(waves, LoadWithBreaker(breaker, tanAlpha, roughness), angle, q);
        const double factor = roughness * (1 - 0.0033 * angle);
        const double breaking = 0.067 / std::sqrt(tanAlpha) * breaker *
                                std::exp(-4.75 * result.freeboard / (breaker * height * factor));
        const double largest = 0.2 * std::exp(-2.6 * result.freeboard / (height * factor));
        EXPECT_NEAR(std::min(breaking, largest) * std::sqrt(kG * std::pow(height, 3)), q, 1e-9);
    }
}

// EurOtop (2018), non-impulsive waves on a vertical wall:
// q/sqrt(g H^3) = 0.05 exp(-2.78 Rc/H).
TEST(PublishedFigures, WallFreeboardPutBackGivesTheDischarge)
{
    const double height = 0.7, q = 1e-3;
    const double rc = WallFreeboard({height, 3}, false, 0, q).freeboard;
    EXPECT_NEAR(0.05 * std::exp(-2.78 * rc / height) * std::sqrt(kG * std::pow(height, 3)), q,
                1e-9);
    EXPECT_NEAR(WallFreeboard({height, 3}, true, 0, q).freeboard, 0.7 * rc, 1e-12);
    EXPECT_NEAR(WallFreeboard({height, 3}, false, 60, q).angleFactor, 1 - 0.0062 * 45, 1e-12);
}

TEST(PublishedFigures, NoFreeboardIsNeededWhenWavesNeverReachTheDischarge)
{
    EXPECT_EQ(OvertoppingFreeboard({0.05, 1}, LoadWithBreaker(1.5, 0.3), 0, 0.1).freeboard, 0);
    EXPECT_EQ(WallFreeboard({0.05, 1}, false, 0, 0.1).freeboard, 0);
}

// Roughness and angle together take off at most 60 % (TAW 2002).
TEST(PublishedFigures, ReductionsEndAtFourTenths)
{
    SlopeLoad slope = LoadWithBreaker(1.2, 0.3, 0.45);
    slope.smoothRunUp = 2;
    EXPECT_NEAR(RunUpFreeboard(slope, 80).freeboard, 0.8, 1e-12);
}

// A plane slope has its own slope as mean; the roughness factor rises to 1
// between breaker parameters 1.8 and 10 (TAW 2002).
TEST(PublishedFigures, APlaneSlopeKeepsItsSlopeAndRoughness)
{
    const DikeSlope slope(Slope(4, 0.8));
    const double period = std::sqrt(2 * kPi * 1 / kG) / 0.25; // breaker parameter 1 for H = 1
    const SlopeLoad gentle = slope.Schematise(0, {1, period});
    EXPECT_NEAR(gentle.tanAlpha, 0.25, 1e-12);
    EXPECT_NEAR(gentle.breaker, 1, 1e-9);
    EXPECT_NEAR(gentle.roughness, 0.8, 1e-12);
    const SlopeLoad longWaves = slope.Schematise(0, {1, 5.9 * period});
    EXPECT_NEAR(longWaves.roughness, 0.8 + 0.2 * (5.9 - 1.8) / 8.2, 1e-9);
    EXPECT_NEAR(slope.Schematise(0, {1, 12 * period}).roughness, 1, 1e-12);
}

TEST(PublishedFigures, TheMeanSlopeStaysWithinOneInFiftyAndOneInOne)
{
    EXPECT_EQ(DikeSlope(Slope(0.5)).Schematise(0, {0.5, 3}).tanAlpha, 1);
    EXPECT_EQ(DikeSlope(Slope(100)).Schematise(0, {0.5, 3}).tanAlpha, 0.02);
}

// Along the slope: the lower part 0.25 z2 * sqrt(10), the berm 2 m, the upper
// part 0.5 z2 * sqrt(10).
TEST(PublishedFigures, ALevelBermAtTheWaterLineCountsWithItsLength)
{
    Profiel profiel;
    profiel.voorland = 1;
    profiel.punten = {
        {0, -3, 1, false}, {9, 0, 0.6, false}, {11, 0, 0.8, false}, {20, 3, 1, false}};
    const SlopeLoad load = DikeSlope(profiel).Schematise(0, {0.8, 3});
    ASSERT_LT(load.breaker, 1.8);
    const double low = 0.25 * load.smoothRunUp * std::sqrt(10.0), high = 2 * low, berm = 2;
    EXPECT_NEAR(load.roughness, (low + 0.6 * berm + 0.8 * high) / (low + berm + high), 1e-12);
}

TEST(PublishedFigures, BermsAndSteepSlopesAreToldByTheirLimits)
{
    EXPECT_TRUE(DikeSlope(Slope(8.5)).HasBerm());
    EXPECT_FALSE(DikeSlope(Slope(8)).HasBerm());
    EXPECT_FALSE(DikeSlope(Slope(7.5)).HasBerm());
    EXPECT_TRUE(DikeSlope(Slope(1.9)).IsSteep());
    EXPECT_FALSE(DikeSlope(Slope(2)).IsSteep());
    EXPECT_FALSE(DikeSlope(Slope(2.1)).IsSteep());
}

// EurOtop (2007) after TAW (1997): grass 1.15 sqrt(H) for small waves, 1 from 0.75 m.
TEST(PublishedFigures, GrassIsRoughForSmallWavesOnly)
{
    Profiel profiel = Slope(3);
    profiel.punten[0].gras = true;
    const DikeSlope slope(profiel);
    EXPECT_NEAR(slope.Schematise(0, {0.36, 2}).roughness, 1.15 * 0.6, 1e-9);
    EXPECT_NEAR(slope.Schematise(0, {0.80, 3}).roughness, 1, 1e-12);
    EXPECT_NEAR(slope.Schematise(0, {0.04, 0.8}).roughness, 0.5, 1e-9);
}

TEST(PublishedFigures, WavesBreakAtHalfTheDepth)
{
    EXPECT_EQ(DepthLimited(2, 3), 1.5);
    EXPECT_EQ(DepthLimited(1, 3), 1);
    EXPECT_EQ(DepthLimited(1, -0.2), 0);
}

TEST(PublishedFigures, NoWindOrFetchRaisesNoWaves)
{
    for (const auto model : {Golfgroeimodule::Bretschneider, Golfgroeimodule::YoungVerhagen,
                             Golfgroeimodule::BreugemHolthuijsen}) {
        EXPECT_EQ(GrowWaves(model, 0.05, 1000, 2).height, 0);
        EXPECT_EQ(GrowWaves(model, 20, 0, 2).height, 0);
        EXPECT_EQ(GrowWaves(model, 20, -999, 2).peakPeriod, 0);
    }
}
