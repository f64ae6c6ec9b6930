// What must hold for every outcome, and how exact the integration is.

#include "rekenhart/ExampleData.h"
#include "rekenhart/calculation/DeterministischeBerekening.h"
#include "rekenhart/calculation/DijkringBerekening.h"
#include "rekenhart/calculation/LocatieBerekening.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <iostream>

using namespace rekenhart;

namespace {

const WindStatistics& Wind()
{
    return ExampleData::Get().Wind();
}

Belastinginstellingen Overtopping(double q = 1)
{
    Belastinginstellingen settings;
    settings.faalmechanisme = Faalmechanisme::Golfoverslag;
    settings.overslagdebiet = q;
    return settings;
}

double Hbn(const Locatie& locatie, const Profiel* profiel, const Belastinginstellingen& settings,
           double years = 100, const WindStatistics& wind = Wind(),
           const IntegrationGrid& grid = {})
{
    return LocatieBerekening(locatie, profiel, settings, wind, false, {}, grid).LevelAt(years);
}

/// The example's exposed lake shore with a grass slope.
struct Exposed {
    Locatie locatie = ExampleData::Get().Locatie("Plas-04");
    Profiel profiel = ExampleData::Get().Profiel("Gras 1op3");
    double Level(const Belastinginstellingen& settings = Overtopping(), double years = 100) const
    {
        return Hbn(locatie, &profiel, settings, years);
    }
};

/// All directions and both seasons alike.
WindStatistics UniformWind()
{
    StatistiekTabellen tables = ExampleData::Get().Tabellen();
    std::vector<WindRij> first;
    for (const WindRij& row : tables.winter.windstatistiek)
        if (row.richting == 13)
            first.push_back(row);
    for (SeizoenTabellen* season : {&tables.winter, &tables.zomer}) {
        season->windstatistiek.clear();
        for (int r = 1; r <= kSectors; ++r)
            for (WindRij row : first) {
                row.richting = r;
                season->windstatistiek.push_back(row);
            }
        for (KansRij& row : season->kanswindrichting)
            row.momentaneKans = 1.0 / kSectors;
    }
    return WindStatistics(tables);
}

} // namespace

TEST(Integration, FrequencyNeverRisesWithTheLevel)
{
    const Exposed at;
    LocatieBerekening calculation(at.locatie, &at.profiel, Overtopping(), Wind(), false);
    double before = calculation.FrequencyOf(-0.7);
    for (double level = -0.69; level < 2; level += 0.01) {
        const double frequency = calculation.FrequencyOf(level);
        EXPECT_LE(frequency, before) << level;
        before = frequency;
    }
    EXPECT_LT(before, 1e-6);
}

TEST(Integration, QuantileAndFrequencyAreEachOthersInverse)
{
    const Exposed at;
    LocatieBerekening calculation(at.locatie, &at.profiel, Overtopping(), Wind(), false);
    for (const double years : {0.5, 1.0, 10.0, 300.0, 20000.0})
        EXPECT_NEAR(calculation.FrequencyOf(calculation.LevelAt(years)) * years, 1, 1e-3);
}

TEST(Integration, HbnRisesWithReturnPeriodFetchWindAndCorrectionFactor)
{
    const Exposed at;
    const double level = at.Level();
    EXPECT_LT(at.Level(Overtopping(), 10), level);
    EXPECT_GT(at.Level(Overtopping(), 1000), level);

    Exposed wider;
    for (SectorGegevens& sector : wider.locatie.sectoren)
        sector.strijklengte *= 1.2;
    EXPECT_GT(wider.Level(), level);

    Belastinginstellingen windier = Overtopping();
    windier.toenameWind = 10;
    EXPECT_GT(at.Level(windier), level);

    Belastinginstellingen higher = Overtopping();
    higher.golfCorrFactor = 1.2;
    EXPECT_GT(at.Level(higher), level);
}

TEST(Integration, HbnFallsWithDischargeAndRoughness)
{
    const Exposed at;
    const double level = at.Level();
    EXPECT_GT(at.Level(Overtopping(0.1)), level);
    EXPECT_LT(at.Level(Overtopping(10)), level);

    Exposed smooth, rough;
    for (auto* one : {&smooth, &rough})
        for (ProfielPunt& punt : one->profiel.punten)
            punt.gras = false;
    for (ProfielPunt& punt : smooth.profiel.punten)
        punt.r = 1;
    for (ProfielPunt& punt : rough.profiel.punten)
        punt.r = 0.6;
    EXPECT_LT(rough.Level(), smooth.Level());
}

TEST(Integration, ToeslagHbnShiftsHbnExactly)
{
    const Exposed at;
    Belastinginstellingen higher = Overtopping();
    higher.toeslagHbn = 0.25;
    EXPECT_NEAR(at.Level(higher), at.Level() + 0.25, 1e-9);
}

TEST(Integration, WithoutWindEffectHbnIsTheBasinLevel)
{
    Locatie locatie = ExampleData::Get().Locatie("Plas-04");
    for (SectorGegevens& sector : locatie.sectoren) {
        sector.strijklengte = 0;
        for (ScheefstandRij& row : sector.scheefstand)
            row.scheefstand = 0;
    }
    const BasinLevel levels(locatie.streefpeil, locatie.peilen, 0);
    const Profiel profiel = ExampleData::Get().Profiel("Gras 1op3");
    for (const double years : {1.0, 10.0, 45.0, 100.0, 1250.0, 10000.0}) {
        EXPECT_NEAR(Hbn(locatie, nullptr, {}, years), levels.AtPeriod(years), 1e-5) << years;
        EXPECT_NEAR(Hbn(locatie, &profiel, Overtopping(), years), levels.AtPeriod(years), 1e-5);
    }
}

TEST(Integration, WithoutFetchHbnIsTheOverflowLevel)
{
    Exposed sheltered;
    for (SectorGegevens& sector : sheltered.locatie.sectoren)
        sector.strijklengte = 0;
    EXPECT_NEAR(sheltered.Level(), Hbn(sheltered.locatie, nullptr, {}), 1e-6);
}

TEST(Integration, ADikeTurnedAwayFromAllWavesHasTheOverflowLevel)
{
    // The toe is above every water level that counts.
    Exposed high;
    for (ProfielPunt& punt : high.profiel.punten)
        punt.y += 5;
    EXPECT_NEAR(high.Level(), Hbn(high.locatie, nullptr, {}), 1e-6);
}

TEST(Integration, TheSharesAddUpAndAreNeverNegative)
{
    for (const auto& [locatie, profiel] : ExampleData::Get().Links()) {
        SCOPED_TRACE(locatie + " " + profiel);
        const Profiel section = ExampleData::Get().Profiel(profiel);
        LocatieBerekening calculation(ExampleData::Get().Locatie(locatie), &section, Overtopping(),
                                      Wind(), true);
        for (const double years : {10.0, 1000.0}) {
            const PeriodResult result = calculation.Calculate(years);
            EXPECT_LE(result.rij.boezempeil, result.rij.overloopZo);
            EXPECT_LE(result.rij.overloopZo, result.rij.overloopMo);
            EXPECT_LE(result.rij.overloopMo, result.rij.hbn);
            double sum = 0;
            for (const double share : result.shares)
                sum += share;
            EXPECT_NEAR(sum, 1, 1e-9);
        }
    }
}

// Between two nodes of the wind axis the integration takes the load as straight;
// the design point is evaluated exactly. Where the load has a bend (grass becomes
// rough, overtopping just begins) that is up to 2 mm, and it goes with the step.
TEST(Integration, TheDesignPointLiesOnTheLimitState)
{
    const auto distance = [](const std::string& locatie, const std::string& profiel,
                             const IntegrationGrid& grid) {
        const Profiel section = ExampleData::Get().Profiel(profiel);
        LocatieBerekening calculation(ExampleData::Get().Locatie(locatie), &section, Overtopping(),
                                      Wind(), false, {}, grid);
        double largest = 0;
        for (const double years : {10.0, 1000.0}) {
            const PeriodResult result = calculation.Calculate(years);
            largest = std::max(largest, std::abs(result.governing.details.load - result.rij.hbn));
        }
        return largest;
    };
    EXPECT_LT(distance("Plas-04", "Gras 1op3", {}), 1e-4);
    for (const auto& [locatie, profiel] : ExampleData::Get().Links())
        EXPECT_LT(distance(locatie, profiel, {}), 2e-3) << locatie << " " << profiel;
    EXPECT_LT(distance("Eiland-1", "Palenrij", IntegrationGrid().Refined(4)),
              0.2 * distance("Eiland-1", "Palenrij", {}));
}

// A bed above the water counts as 0.10 m of water: less would make the local
// set-up grow without bound.
TEST(Integration, ADryBedCountsAsTenCentimetres)
{
    Exposed at;
    for (SectorGegevens& sector : at.locatie.sectoren)
        sector.bodemhoogte = 2;
    const LoadModel model(at.locatie, nullptr, {}, Wind().transformation);
    EXPECT_EQ(model.Evaluate(-0.6, 12, 25, LoadKind::OverflowMo).depth, 0.10);
    EXPECT_EQ(model.Evaluate(2.05, 0, 0, LoadKind::OverflowMo).depth, 0.10);
}

// TOENAMEWIND works on the potential wind, before the transformation and the
// table of the basin's set-up.
TEST(Integration, TheWindIncreaseComesBeforeTheTables)
{
    const Exposed at;
    Belastinginstellingen windier = Overtopping();
    windier.toenameWind = 20;
    const auto& transformation = Wind().transformation;
    const LoadDetails more = LoadModel(at.locatie, &at.profiel, windier, transformation)
                                 .Evaluate(0, 8, 20, LoadKind::Full);
    const LoadDetails same = LoadModel(at.locatie, &at.profiel, Overtopping(), transformation)
                                 .Evaluate(0, 8, 24, LoadKind::Full);
    EXPECT_DOUBLE_EQ(more.waterWind, same.waterWind);
    EXPECT_DOUBLE_EQ(more.scheefstand, same.scheefstand);
    EXPECT_DOUBLE_EQ(more.load, same.load);
}

// The table may hold a lowering; then the overflow level lies below the basin
// level, and its share is negative.
TEST(Integration, ASetUpBelowZeroIsNotRaised)
{
    Exposed at;
    for (SectorGegevens& sector : at.locatie.sectoren)
        sector.scheefstand = {{0, -0.1}, {50, -0.1}};
    LocatieBerekening calculation(at.locatie, nullptr, {}, Wind(), true);
    const ResultaatRij row = calculation.Calculate(100).rij;
    EXPECT_NEAR(row.overloopZo, row.boezempeil - 0.1, 1e-4);
}

// The waves that the wind raised have a period, but none reach the dike.
TEST(Integration, ADryToeHasNoWaveAndNoPeriod)
{
    Exposed high;
    for (ProfielPunt& punt : high.profiel.punten)
        punt.y += 5;
    LocatieBerekening calculation(high.locatie, &high.profiel, Overtopping(), Wind(), false);
    const PeriodResult result = calculation.Calculate(100);
    EXPECT_EQ(result.rij.golfhoogte, 0);
    EXPECT_EQ(result.rij.piekperiode, 0);
}

TEST(Integration, OnlyAWallWithANoseNeedsLessFreeboard)
{
    const Locatie locatie = ExampleData::Get().Locatie("Kleine-3");
    Profiel wall = ExampleData::Get().Profiel("Damwand neus");
    const auto freeboard = [&](int damwandmodule) {
        wall.damwandmodule = damwandmodule;
        return LoadModel(locatie, &wall, Overtopping(), Wind().transformation)
            .Evaluate(0, 13, 25, LoadKind::Full)
            .freeboard.freeboard;
    };
    EXPECT_GT(freeboard(2), 0.5);
    EXPECT_NEAR(freeboard(1), 0.7 * freeboard(2), 1e-12);
}

// A set-up that falls with the wind is odd, but the table may hold it.
TEST(Integration, TheLoadNeverFallsWithTheWind)
{
    Exposed at;
    for (SectorGegevens& sector : at.locatie.sectoren)
        sector.scheefstand = {{0, 0}, {10, 0.8}, {20, 0.1}, {30, 0.2}, {40, 0.3}};
    const BasinLevel levels(at.locatie.streefpeil, at.locatie.peilen, 0);
    const LoadModel model(at.locatie, nullptr, {}, Wind().transformation);
    const LoadTable table(model, LoadKind::Full, levels, {});
    std::vector<double> loads(table.WindNodes());
    table.Interpolate(-0.3, 12, loads);
    EXPECT_TRUE(std::is_sorted(loads.begin(), loads.end()));
    EXPECT_LT(model.Load(-0.3, 12, 20, LoadKind::Full), loads[40]) << "20 m/s";
}

TEST(Integration, OfEqualSharesTheFirstSectorGoverns)
{
    Contributions contributions;
    contributions.share[3] = 0.2;
    contributions.share[7] = 0.2 + 1e-12; // rounding of the sum
    EXPECT_EQ(contributions.DominantSector(), 3);
    contributions.share[7] = 0.2 + 1e-8;
    EXPECT_EQ(contributions.DominantSector(), 7);
}

TEST(Integration, SharesAreLeftOutWhenNotAskedFor)
{
    const Exposed at;
    LocatieBerekening calculation(at.locatie, &at.profiel, Overtopping(), Wind(), false);
    const ResultaatRij row = calculation.Calculate(100).rij;
    for (const double value : {row.overloopMo, row.overloopZo, row.boezempeil, row.streefpeil})
        EXPECT_EQ(value, kNietBekend);
    EXPECT_NE(row.hbn, kNietBekend);
}

TEST(Integration, OverflowHasNoWavesInItsDesignPoint)
{
    const Exposed at;
    LocatieBerekening calculation(at.locatie, nullptr, {}, Wind(), true);
    const ResultaatRij row = calculation.Calculate(100).rij;
    for (const double value : {row.golfhoogte, row.piekperiode, row.golfrichting})
        EXPECT_EQ(value, kNietBekend);
    EXPECT_NE(row.dominanteWindrichting, kNietBekend);
    EXPECT_NEAR(row.hbn, row.overloopMo, 1e-4);
}

TEST(Integration, TurningTheWholeSystemChangesNothingUnderAUniformWind)
{
    const WindStatistics wind = UniformWind();
    const Exposed at;
    Locatie turned = at.locatie;
    turned.dijknormaal += kSectorWidth;
    for (int i = 0; i < kSectors; ++i)
        turned.sectoren[(i + 1) % kSectors] = at.locatie.sectoren[i];
    EXPECT_NEAR(Hbn(turned, &at.profiel, Overtopping(), 100, wind),
                Hbn(at.locatie, &at.profiel, Overtopping(), 100, wind), 1e-9);
}

// The error of the program's grid against one refined four times, and of the
// refined one: it must shrink.
TEST(Integration, ConvergesWhenTheGridIsRefined)
{
    struct Case {
        const char* locatie;
        const char* profiel;
        Faalmechanisme mechanism;
        double bound; // m
    };
    const Case cases[] = {{"Plas-04", "Gras 1op3", Faalmechanisme::Golfoverslag, 0.001},
                          {"Vaart-3", "Palenrij", Faalmechanisme::Golfoploop, 0.001},
                          {"Kleine-3", "Damwand neus", Faalmechanisme::Golfoverslag, 0.001},
                          {"Plas-03", "Berm 1op3", Faalmechanisme::Golfoverslag, 0.01},
                          {"Plas-04", "", Faalmechanisme::Overloop, 0.001}};
    const IntegrationGrid grid;
    for (const Case& one : cases) {
        const Locatie locatie = ExampleData::Get().Locatie(one.locatie);
        std::optional<Profiel> profiel;
        if (*one.profiel)
            profiel = ExampleData::Get().Profiel(one.profiel);
        Belastinginstellingen settings = Overtopping();
        settings.faalmechanisme = one.mechanism;
        const auto line = [&](const IntegrationGrid& steps) {
            LocatieBerekening calculation(locatie, profiel ? &*profiel : nullptr, settings, Wind(),
                                          false, {}, steps);
            std::vector<double> levels;
            for (const double years : {1.0, 10.0, 100.0, 1000.0, 10000.0})
                levels.push_back(calculation.LevelAt(years));
            return levels;
        };
        const auto exact = line(grid.Refined(4));
        const auto error = [&](const std::vector<double>& levels) {
            double largest = 0;
            for (std::size_t i = 0; i < levels.size(); ++i)
                largest = std::max(largest, std::abs(levels[i] - exact[i]));
            return largest;
        };
        const double normal = error(line(grid));
        const double refined = error(line(grid.Refined(2)));
        std::cout << one.locatie << " " << one.profiel << ": error " << normal * 1000
                  << " mm, with steps halved " << refined * 1000 << " mm\n";
        EXPECT_LT(normal, one.bound) << one.locatie << " " << one.profiel;
        EXPECT_LT(refined, std::max(normal, 2e-5));
    }
}

TEST(Integration, ARingIsExceededAtLeastAsOftenAsItsWeakestMember)
{
    std::vector<RingLid> leden;
    for (const DijkringLid& lid : ExampleData::Get().Dijkringen().at("Ring Vaart")) {
        RingLid member{ExampleData::Get().Locatie(lid.locatie), true,
                       ExampleData::Get().Profiel(lid.profiel), Overtopping(lid.overslagdebiet)};
        leden.push_back(member);
    }
    const DijkringBerekening calculation(leden, Wind());
    const RingResultaat& result = calculation.Result();
    EXPECT_GE(result.frequency, result.leden[result.zwakste].crestFrequency * (1 - 1e-9));
    EXPECT_LE(result.frequency, result.sumOfMembers);

    leden.resize(1);
    const DijkringBerekening alone(leden, Wind());
    EXPECT_NEAR(alone.Result().frequency, alone.Result().leden[0].crestFrequency,
                1e-9 * alone.Result().frequency);
}

TEST(Integration, ARingReadsOnTheScaleOfItsWeakestMember)
{
    std::vector<RingLid> leden;
    for (const DijkringLid& lid : ExampleData::Get().Dijkringen().at("Ring Oost"))
        leden.push_back({ExampleData::Get().Locatie(lid.locatie), true,
                         ExampleData::Get().Profiel(lid.profiel), Overtopping(lid.overslagdebiet)});
    const RingResultaat result = DijkringBerekening(leden, Wind()).Result();
    for (std::size_t i = 0; i + 1 < result.lijn.size(); ++i)
        EXPECT_LT(result.lijn[i].niveau, result.lijn[i + 1].niveau);
    // The crest is passed between the neighbouring periods of 1/frequency.
    const double crest = result.leden[result.zwakste].kruinhoogte;
    for (const FreqlijnPunt& punt : result.lijn)
        EXPECT_EQ(punt.niveau<crest, 1 / punt.herhalingstijd> result.frequency)
            << punt.herhalingstijd;
}

TEST(Integration, ASurchargeOnTheWaterRaisesTheWholeRing)
{
    std::vector<RingLid> leden{{ExampleData::Get().Locatie("Vaart-2"), false, {}, {}}};
    const RingResultaat low = DijkringBerekening(leden, Wind()).Result();
    leden[0].instellingen.toeslagWs = 0.2;
    const RingResultaat high = DijkringBerekening(leden, Wind()).Result();
    EXPECT_NEAR(high.leden[0].hbn[2], low.leden[0].hbn[2] + 0.2, 0.005);
}

TEST(Integration, OfTwoEquallyWeakMembersTheFirstIsTheWeakest)
{
    const RingLid lid{ExampleData::Get().Locatie("Vaart-2"), false, {}, {}};
    EXPECT_EQ(DijkringBerekening({lid, lid}, Wind()).Result().zwakste, 0u);
}

// The four combinations of average and extreme, with the surcharge on the level.
TEST(Integration, ADeterministicCaseTakesLevelAndWindAsAsked)
{
    const Exposed at;
    Instellingen settings;
    settings.belasting = Overtopping();
    settings.belasting.toeslagWs = 0.1;
    settings.boezempeil = 0.3;
    settings.windsnelheid = 21;
    const LoadModel model(at.locatie, &at.profiel, settings.belasting, Wind().transformation);
    const BasinLevel levels(at.locatie.streefpeil, at.locatie.peilen, settings.belasting.toeslagWs);
    const double target = -0.6 + 0.1, extreme = 0.15 + 0.1; // 1000 years
    const auto expect = [&](Situatie situatie, double level, double wind) {
        settings.situatie = situatie;
        const DetermRichting west =
            CalculateDeterministic(model, levels, Wind(), settings, 1000).richtingen[12];
        EXPECT_NEAR(west.basinLevel, level, 1e-9) << Keyword(situatie);
        EXPECT_NEAR(west.wind, wind, 1e-9) << Keyword(situatie);
    };
    expect(Situatie::Handmatig, 0.4, 21);
    expect(Situatie::BgemUextr, target, Wind().WindAtPeriod(12, 1000));
    expect(Situatie::BextrUgem, extreme, Wind().MeanWind(12));
    expect(Situatie::BextrUextr, extreme, Wind().WindAtPeriod(12, 1000));
}

// The budget of the method. Processor time, so that a busy machine does not matter.
TEST(Integration, OneLocationTakesLessThanASecondOfProcessorTime)
{
    const Exposed at;
    const std::clock_t start = std::clock();
    LocatieBerekening calculation(at.locatie, &at.profiel, Overtopping(), Wind(), true);
    for (const double years : FrequencyLinePeriods())
        calculation.Calculate(years);
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 1.0);
}
