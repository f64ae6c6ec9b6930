#include "rekenhart/ExampleData.h"
#include "rekenhart/Fout.h"
#include "rekenhart/physics/Wind.h"
#include "rekenhart/statistics/BasinLevel.h"
#include "rekenhart/statistics/WindStatistics.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace rekenhart;

namespace {

void ExpectInvalid(const StatistiekTabellen& tables, const std::string& table)
{
    try {
        const WindStatistics wind(tables);
        ADD_FAILURE() << "the tables were accepted";
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Code(), ExitCode::Statistics);
        EXPECT_EQ(fout.Text().rfind("De tabel [" + table + "] ontbreekt of is ongeldig: ", 0), 0u)
            << fout.Text();
    }
}

} // namespace

TEST(BasinLevelTest, IsStraightOverTheLogarithmOfTheFrequency)
{
    const BasinLevel levels(-0.6, {{10, -0.2}, {1000, 0.2}}, 0);
    EXPECT_EQ(levels(0), -0.6);
    EXPECT_NEAR(levels.AtPeriod(10), -0.2, 1e-12);
    EXPECT_NEAR(levels.AtPeriod(100), 0.0, 1e-12) << "half way between 10 and 1000";
    EXPECT_NEAR(levels.AtPeriod(10000), 0.4, 1e-12) << "the last slope goes on";
}

TEST(BasinLevelTest, SkipsUnknownLevelsAndRaisesFallingOnes)
{
    const BasinLevel levels(-0.6, {{100, -0.3}, {10, -0.2}, {30, kNietBekend}}, 0.1);
    EXPECT_EQ(levels.KnownPoints(), 2);
    EXPECT_TRUE(levels.WasRaised());
    EXPECT_NEAR(levels.AtPeriod(100), -0.1, 1e-12) << "raised to the level of 10 years, plus 0.1";
}

TEST(BasinLevelTest, TakesAPeriodOnceAndNoneWithinABlock)
{
    const BasinLevel levels(-0.6, {{0.005, -0.5}, {10, -0.2}, {10, 0.5}, {1000, 0.2}}, 0);
    EXPECT_EQ(levels.KnownPoints(), 2) << "48 hours are 0.0055 years";
    EXPECT_NEAR(levels.AtPeriod(10), -0.2, 1e-12) << "the first row counts";
    EXPECT_NEAR(levels.AtPeriod(100), 0, 1e-12);
}

TEST(BasinLevelTest, KnowsWhereItExtrapolates)
{
    const BasinLevel levels(-0.6, {{10, -0.2}, {1000, 0.2}}, 0);
    EXPECT_TRUE(levels.Covers(10));
    EXPECT_TRUE(levels.Covers(1000));
    EXPECT_FALSE(levels.Covers(5));
    EXPECT_FALSE(levels.Covers(1250));
}

TEST(ScheefstandTest, FollowsTheSquareOfTheWindOutsideItsSpeeds)
{
    const ScheefstandLine line(LinearTable({10, 20}, {0.04, 0.10}));
    EXPECT_NEAR(line(5), 0.01, 1e-12);
    EXPECT_NEAR(line(15), 0.07, 1e-12);
    EXPECT_NEAR(line(40), 0.40, 1e-12);
}

TEST(ScheefstandTest, SkipsASegmentOfZeroWidth)
{
    const ScheefstandLine line(LinearTable({0, 10, 10, 20}, {0, 0.1, 0.3, 0.5}));
    EXPECT_NEAR(line(10), 0.1, 1e-12) << "the earlier row counts";
    EXPECT_NEAR(line(5), 0.05, 1e-12);
    EXPECT_NEAR(line(15), 0.4, 1e-12);
}

TEST(WindStatisticsTest, ReproducesItsTableAndIsExponentialBetween)
{
    const WindStatistics& wind = ExampleData::Get().Wind();
    for (const WindRij& row : ExampleData::Get().Tabellen().winter.windstatistiek)
        EXPECT_NEAR(wind.winter.Exceedance(row.richting - 1, row.windsnelheid),
                    row.overschrijdingskans, 1e-9 * row.overschrijdingskans);
    const double p2 = wind.winter.Exceedance(3, 20), p4 = wind.winter.Exceedance(3, 22);
    EXPECT_NEAR(wind.winter.Exceedance(3, 21), std::sqrt(p2 * p4), 1e-12);
    const double end = wind.winter.Exceedance(3, 42), before = wind.winter.Exceedance(3, 40);
    EXPECT_NEAR(wind.winter.Exceedance(3, 44) / end, end / before, 1e-9);
    EXPECT_EQ(wind.winter.Exceedance(3, 0), 1);
}

TEST(WindStatisticsTest, WindAtAPeriodIsExceededThatOften)
{
    const WindStatistics& wind = ExampleData::Get().Wind();
    const double u = wind.WindAtPeriod(12, 100);
    const double frequency = 730.5 * 0.5 *
                             (wind.winter.DirectionProbability(12) * wind.winter.Exceedance(12, u) +
                              wind.zomer.DirectionProbability(12) * wind.zomer.Exceedance(12, u));
    EXPECT_NEAR(frequency, 0.01, 1e-8);
    EXPECT_EQ(wind.WindAtPeriod(12, 0.001), 0) << "more often than the wind blows from there";
}

TEST(WindStatisticsTest, MeanWindIsTheAreaUnderTheExceedanceLine)
{
    // Weibull with shape 2 and scale 8.8 (sector 13 in winter): mean 8.8 sqrt(pi)/2.
    const double mean = 8.8 * std::sqrt(std::acos(-1.0)) / 2;
    EXPECT_NEAR(ExampleData::Get().Wind().winter.MeanWind(12), mean, 0.02);
}

// Opening a database drops all five tables when one sector has the same
// probability in winter and summer, so the example must differ everywhere.
TEST(WindStatisticsTest, TheExamplesSeasonsDifferInEverySector)
{
    const StatistiekTabellen& tables = ExampleData::Get().Tabellen();
    for (int r = 0; r < kSectors; ++r)
        EXPECT_NE(tables.winter.kanswindrichting[r].momentaneKans,
                  tables.zomer.kanswindrichting[r].momentaneKans)
            << r + 1;
}

TEST(WindStatisticsTest, RefusesInvalidTables)
{
    const StatistiekTabellen good = ExampleData::Get().Tabellen();
    StatistiekTabellen bad = good;
    bad.winter.kanswindrichting.pop_back();
    ExpectInvalid(bad, "Kanswindrichting winter");
    bad = good;
    bad.zomer.kanswindrichting[4].momentaneKans += 0.01;
    ExpectInvalid(bad, "Kanswindrichting zomer");
    bad = good;
    bad.zomer.kanswindrichting[4].richting = 17;
    ExpectInvalid(bad, "Kanswindrichting zomer");
    bad = good;
    bad.zomer.kanswindrichting[4].richting = 4;
    ExpectInvalid(bad, "Kanswindrichting zomer");
    bad = good;
    bad.winter.windstatistiek[0].overschrijdingskans = 0.9;
    ExpectInvalid(bad, "Windstatistiek winter");
    bad = good;
    bad.winter.windstatistiek[5].overschrijdingskans = 0;
    ExpectInvalid(bad, "Windstatistiek winter");
    bad = good;
    bad.zomer.windstatistiek[30].windsnelheid += 0.5;
    ExpectInvalid(bad, "Windstatistiek zomer");
    bad = good;
    bad.zomer.windstatistiek.clear();
    ExpectInvalid(bad, "Windstatistiek zomer");
    bad = good;
    bad.zomer.kanswindrichting[4].momentaneKans += 5e-6;
    ExpectInvalid(bad, "Kanswindrichting zomer");
    bad = good;
    std::swap(bad.winter.windstatistiek[5].overschrijdingskans,
              bad.winter.windstatistiek[6].overschrijdingskans);
    ExpectInvalid(bad, "Windstatistiek winter");
    bad = good;
    bad.winter.windstatistiek.push_back({17, 0, 1});
    ExpectInvalid(bad, "Windstatistiek winter");
    bad = good;
    bad.winter.windstatistiek[6].windsnelheid = bad.winter.windstatistiek[5].windsnelheid;
    bad.winter.windstatistiek[6].overschrijdingskans *= 0.99;
    ExpectInvalid(bad, "Windstatistiek winter");
    bad = good;
    bad.transformatie[3].windsnelheid = bad.transformatie[2].windsnelheid;
    ExpectInvalid(bad, "Transformatietabel");
    bad = good;
    bad.transformatie.resize(1);
    ExpectInvalid(bad, "Transformatietabel");
    bad = good;
    bad.transformatie[3].factor = kNietBekend;
    ExpectInvalid(bad, "Transformatietabel");
}

TEST(WindStatisticsTest, RefusesValuesThatAreNoNumbers)
{
    const StatistiekTabellen good = ExampleData::Get().Tabellen();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    StatistiekTabellen bad = good;
    for (std::size_t i = 0; i < bad.winter.windstatistiek.size(); i += 3)
        bad.winter.windstatistiek[i].windsnelheid = nan;
    ExpectInvalid(bad, "Windstatistiek winter");
    bad = good;
    bad.transformatie[2].windsnelheid = nan;
    ExpectInvalid(bad, "Transformatietabel");
    bad = good;
    bad.zomer.kanswindrichting[2].momentaneKans = nan;
    ExpectInvalid(bad, "Kanswindrichting zomer");
    bad = good;
    bad.zomer.windstatistiek[3].overschrijdingskans = nan;
    ExpectInvalid(bad, "Windstatistiek zomer");
}

TEST(WindStatisticsTest, TakesTheRowsInAnyOrder)
{
    StatistiekTabellen shuffled = ExampleData::Get().Tabellen();
    std::reverse(shuffled.winter.windstatistiek.begin(), shuffled.winter.windstatistiek.end());
    std::reverse(shuffled.winter.kanswindrichting.begin(), shuffled.winter.kanswindrichting.end());
    std::reverse(shuffled.transformatie.begin(), shuffled.transformatie.end());
    const WindStatistics wind(shuffled);
    EXPECT_EQ(wind.winter.Exceedance(9, 17.3),
              ExampleData::Get().Wind().winter.Exceedance(9, 17.3));
    EXPECT_EQ(wind.transformation(12), ExampleData::Get().Wind().transformation(12));
}
