#include "geometry/Strijklengte.h"

#include "ShapeBytes.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

using geometry::Lijn;
using geometry::Punt;

double Cosine(double degrees)
{
    return std::cos(degrees * std::numbers::pi / 180);
}

// The effective fetch where the distance to the shore on a bearing is known.
template <typename Shore>
double EffectiveFetch(int sector, Shore&& distanceOn)
{
    double above = 0;
    double below = 0;
    for (int j = -8; j <= 8; ++j) {
        const double alpha = j * 5.625;
        double bearing = (sector - 1) * 22.5 + alpha;
        bearing = bearing < 0 ? bearing + 360 : bearing >= 360 ? bearing - 360 : bearing;
        above += Cosine(alpha) * Cosine(alpha) * distanceOn(bearing);
        below += Cosine(alpha);
    }
    return above / below;
}

// How far it is to the walls of a rectangle.
double ToWalls(double bearing, double north, double east, double south, double west)
{
    const double up = Cosine(bearing);
    const double right = Cosine(bearing - 90);
    double distance = 1e9;
    if (up > 1e-12)
        distance = std::min(distance, north / up);
    if (up < -1e-12)
        distance = std::min(distance, south / -up);
    if (right > 1e-12)
        distance = std::min(distance, east / right);
    if (right < -1e-12)
        distance = std::min(distance, west / -right);
    return distance;
}

class StrijklengteTest : public testing::Test {
protected:
    void Load(const std::vector<TestPolygon>& polygons)
    {
        m_stem = ToQString(m_folder / ("oevers" + std::to_string(++m_number)));
        WritePair(m_stem, MakePolygonFile(polygons));
        ASSERT_TRUE(m_strijklengte.setShapefile(m_stem + ".shp"));
    }
    FetchStatus FetchStatusAt(double x, double y) { return m_strijklengte.CalcFetch(x, y).status; }
    double NormalAt(double x, double y)
    {
        const auto result = m_strijklengte.CalcDijknormaal(x, y);
        EXPECT_EQ(result.status, FetchStatus::NoError);
        return result.dijknormaal;
    }

    TemporaryFolder m_folder;
    int m_number = 0;
    QString m_stem;
    Strijklengte m_strijklengte;
};

const TestRing kBasin = Rectangle(0, 0, 1000, 400);
const TestRing kIsland = Rectangle(600, 150, 700, 250);
const TestRing kLShape = {{0, 0},      {0, 1000}, {200, 1000}, {200, 200},
                          {1000, 200}, {1000, 0}, {0, 0}};

} // namespace

// --- the parts

TEST(SnijpuntTest, FindsWhereTwoLinesMeet)
{
    const Punt p = Snijpunt({{0, 0}, {10, 10}}, {{0, 8}, {8, 0}});
    EXPECT_EQ(p.x, 4);
    EXPECT_EQ(p.y, 4);
}

TEST(SnijpuntTest, ParallelLinesMeetNowhere)
{
    const Punt p = Snijpunt({{0, 0}, {10, 10}}, {{1, 0}, {11, 10}});
    EXPECT_EQ(p.x, 1e38);
    EXPECT_EQ(p.y, 1e38);
    EXPECT_EQ(Snijpunt({{0, 0}, {1, 0}}, {{5, 5}, {5, 5}}).x, 1e38);
}

TEST(SnijpuntTest, LiesExactlyOnAnAxisParallelLine)
{
    for (int i = 1; i < 200; ++i) {
        const Lijn ray{{0.1 * i, 0.7}, {977.3 * i, 12345.678}};
        EXPECT_EQ(Snijpunt(ray, {{1000.1, -9}, {1000.1, 77}}).x, 1000.1);
        EXPECT_EQ(Snijpunt(ray, {{-3, 333.3}, {12, 333.3}}).y, 333.3);
    }
}

TEST(SnijpuntTest, AValueBeyondAllNumbersIsAFailure)
{
    EXPECT_ANY_THROW((void)Snijpunt({{0, 0}, {1e300, 1}}, {{0, 0}, {1, 1e300}}));
}

TEST(LigtBinnenBoxTest, HoldsBothEndsAndAHairMore)
{
    const Lijn line{{0, 0}, {10, 0}};
    EXPECT_TRUE(LigtBinnenBox(line, {0, 0}));
    EXPECT_TRUE(LigtBinnenBox(line, {10, 0}));
    EXPECT_TRUE(LigtBinnenBox(line, {5, 0}));
    EXPECT_TRUE(LigtBinnenBox(line, {10 + 9e-12, 0}));  // 9E-12 x 10 is below 1E-10
    EXPECT_FALSE(LigtBinnenBox(line, {10 + 2e-11, 0})); // 2E-10 is not
    EXPECT_TRUE(LigtBinnenBox(line, {5, 9e-6}));
    EXPECT_FALSE(LigtBinnenBox(line, {5, 1.1e-5}));
    EXPECT_FALSE(LigtBinnenBox({{0, 0}, {0, 0}}, {1e-5, 0}));
    // 1 x -1E-10 is exactly the tolerance: not within.
    EXPECT_FALSE(LigtBinnenBox({{0, 0}, {1e-10 - 1, 0}}, {1e-10, 0}));
}

TEST(PuntInRingTest, CountsCrossings)
{
    const geometry::RingIndex ring(kLShape);
    EXPECT_TRUE(PuntInRing(ring, {100, 900}));
    EXPECT_TRUE(PuntInRing(ring, {900, 100}));
    EXPECT_FALSE(PuntInRing(ring, {900, 900}));
    EXPECT_FALSE(PuntInRing(ring, {-1, 100}));
    EXPECT_FALSE(PuntInRing(ring, {100, 1001}));
}

TEST(PuntInRingTest, HoldsItsRightAndUpperBorderOnly)
{
    const TestRing square = Rectangle(0, 0, 10, 10);
    for (const TestRing& points : {square, TestRing(square.rbegin(), square.rend())}) {
        const geometry::RingIndex ring(points);
        EXPECT_FALSE(PuntInRing(ring, {0, 5})) << "left";
        EXPECT_TRUE(PuntInRing(ring, {10, 5})) << "right";
        EXPECT_FALSE(PuntInRing(ring, {5, 0})) << "lower";
        EXPECT_TRUE(PuntInRing(ring, {5, 10})) << "upper";
        EXPECT_FALSE(PuntInRing(ring, {15, 0})) << "beside the lower border";
        EXPECT_FALSE(PuntInRing(ring, {15, 10})) << "beside the upper border";
    }
}

TEST(PuntInRingTest, AnOpenRingIsClosed)
{
    const TestRing open{{0, 0}, {0, 10}, {10, 10}, {10, 0}};
    EXPECT_TRUE(PuntInRing(geometry::RingIndex(open), {5, 5}));
    EXPECT_FALSE(PuntInRing(geometry::RingIndex(open), {15, 5}));
}

TEST(PuntInRingTest, RingsOfFewPointsHoldNothing)
{
    EXPECT_FALSE(PuntInRing(geometry::RingIndex({}), {0, 0}));
    const TestRing two{{0, 0}, {10, 10}};
    EXPECT_FALSE(PuntInRing(geometry::RingIndex(two), {5, 5}));
    EXPECT_FALSE(PuntInRing(geometry::RingIndex(two), {5, 4}));
}

TEST(BerekenSectorenTest, TheLastSectorWrapsAroundNorth)
{
    // Only the rays 52 to 63 and 0 to 4 count for bearing 337.5.
    Raaien raaien;
    for (std::size_t i = 0; i < raaien.size(); ++i)
        raaien[i].Lengte = i >= 52 && i <= 63 ? 100 : i <= 4 ? 100 : 1e30;
    raaien[64].Lengte = 1e38; // bearing 360 is never read
    const double wanted = EffectiveFetch(16, [](double) { return 100.0; });
    EXPECT_NEAR(BerekenSectoren(raaien)[15].Strijklengte, wanted, 1e-10);
    raaien[52].Lengte = 200;
    EXPECT_GT(BerekenSectoren(raaien)[15].Strijklengte, wanted + 1);
    raaien[51].Lengte = 200;
    EXPECT_LT(BerekenSectoren(raaien)[15].Strijklengte, 200);
}

TEST(BerekenSectorenTest, KnowsTheCentralRay)
{
    Raaien raaien;
    for (std::size_t i = 0; i < raaien.size(); ++i)
        raaien[i] = {i * 5.625, double(i), double(i) + 0.5, -double(i)};
    const Sectoren sectoren = BerekenSectoren(raaien);
    EXPECT_EQ(sectoren[0].Centraal, 0);
    EXPECT_EQ(sectoren[4].Richting, 90);
    EXPECT_EQ(sectoren[4].Centraal, 16);
    EXPECT_EQ(sectoren[4].X, 16.5);
    EXPECT_EQ(sectoren[15].Y, -60);
}

// --- fetches

TEST_F(StrijklengteTest, FetchesInARectangleAreThoseOfItsWalls)
{
    Load({{kBasin}});
    const auto result = m_strijklengte.CalcFetch(300, 100);
    EXPECT_EQ(result.status, FetchStatus::NoError);
    for (int sector = 1; sector <= 16; ++sector) {
        const double wanted = EffectiveFetch(
            sector, [](double bearing) { return ToWalls(bearing, 300, 700, 100, 300); });
        EXPECT_NEAR(result.fetches[static_cast<std::size_t>(sector - 1)], wanted, 1e-8) << sector;
    }
}

TEST_F(StrijklengteTest, RaysTowardsAnIslandEndAtItsShore)
{
    Load({{kBasin, kIsland}});
    const auto result = m_strijklengte.CalcFetch(300, 200);
    EXPECT_EQ(result.status, FetchStatus::NoError);
    // From 300 metres off, the island's corners lie at 50 beside the middle: it
    // is hit between 80.54 and 99.46 degrees.
    const double corner = std::atan2(300, 50) * 180 / std::numbers::pi;
    for (int sector = 1; sector <= 16; ++sector) {
        const double wanted = EffectiveFetch(sector, [corner](double bearing) {
            if (bearing > corner && bearing < 180 - corner)
                return 300 / Cosine(bearing - 90);
            return ToWalls(bearing, 200, 700, 200, 300);
        });
        EXPECT_NEAR(result.fetches[static_cast<std::size_t>(sector - 1)], wanted, 1e-8) << sector;
    }
}

TEST_F(StrijklengteTest, FetchesInAnLAreThoseOfItsArms)
{
    Load({{kLShape}});
    const auto result = m_strijklengte.CalcFetch(100, 100);
    EXPECT_EQ(result.status, FetchStatus::NoError);
    // The inner corner lies at 45 degrees: rays just beside it run into the arms.
    for (int sector = 1; sector <= 16; ++sector) {
        const double wanted = EffectiveFetch(sector, [](double bearing) {
            if (bearing > 0.1 && bearing < 44.9)
                return std::min(100 / Cosine(bearing - 90), 900 / Cosine(bearing));
            if (bearing > 44.9 && bearing < 45.1)
                return 100 * std::numbers::sqrt2;
            if (bearing > 45.1 && bearing < 89.9)
                return std::min(100 / Cosine(bearing), 900 / Cosine(bearing - 90));
            return ToWalls(bearing, 900, 900, 100, 100);
        });
        EXPECT_NEAR(result.fetches[static_cast<std::size_t>(sector - 1)], wanted, 1e-8) << sector;
    }
}

TEST_F(StrijklengteTest, AnIslandCanOnlyShorten)
{
    Load({{kBasin}});
    const auto open = m_strijklengte.CalcFetch(300, 180).fetches;
    Load({{kBasin, kIsland, Rectangle(200, 10, 320, 60)}});
    const auto withIslands = m_strijklengte.CalcFetch(300, 180).fetches;
    bool shorter = false;
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_LE(withIslands[i], open[i]);
        shorter = shorter || withIslands[i] < open[i];
    }
    EXPECT_TRUE(shorter);
}

TEST_F(StrijklengteTest, TurningTheBasinPermutesTheSectors)
{
    const auto turned = [](TestRing ring) { // clockwise, by 90 degrees
        for (Punt& p : ring)
            p = {p.y, -p.x};
        return ring;
    };
    const TestRing ring{{0, 0}, {-30, 500}, {420, 700}, {900, 444}, {1000, -20}, {333, 90}, {0, 0}};
    Load({{ring, kIsland}});
    const auto before = m_strijklengte.CalcFetch(310, 290);
    const double normal = NormalAt(310, 290);
    Load({{turned(ring), turned(kIsland)}});
    const auto after = m_strijklengte.CalcFetch(290, -310);
    ASSERT_EQ(after.status, FetchStatus::NoError);
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NEAR(after.fetches[(i + 4) % 16], before.fetches[i], 1e-8) << i;
    EXPECT_NEAR(std::fmod(normal + 90, 360), NormalAt(290, -310), 1e-9);
}

TEST_F(StrijklengteTest, MovingEverythingByWholeMetresChangesNothing)
{
    const TestRing ring{{0, 0}, {-30, 500}, {420, 700}, {900, 444}, {1000, -20}, {333, 90}, {0, 0}};
    const auto moved = [](TestRing points) {
        for (Punt& p : points)
            p = {p.x + 130000, p.y + 520000};
        return points;
    };
    Load({{ring, kIsland}});
    const auto before = m_strijklengte.CalcFetch(310, 290);
    const double normal = NormalAt(310, 290);
    Load({{moved(ring), moved(kIsland)}});
    const auto after = m_strijklengte.CalcFetch(130310, 520290);
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NEAR(after.fetches[i], before.fetches[i], 1e-6) << i;
    EXPECT_NEAR(NormalAt(130310, 520290), normal, 1e-8);
}

TEST_F(StrijklengteTest, ARayThatMeetsNothingKeepsItsHugeLength)
{
    Load({{Rectangle(0, 0, 150000, 1000)}});
    const auto result = m_strijklengte.CalcFetch(500, 500);
    EXPECT_EQ(result.status, FetchStatus::NoError);
    EXPECT_GT(result.fetches[4], 1e36);  // east
    EXPECT_GT(result.fetches[6], 1e36);  // 45 degrees from east: the ray still belongs to it
    EXPECT_LT(result.fetches[12], 1000); // west
    EXPECT_LT(result.fetches[7], 1000);
}

// --- where the location lies

TEST_F(StrijklengteTest, OutsideAllPolygonsIsInNone)
{
    Load({{kBasin}});
    const auto result = m_strijklengte.CalcFetch(1200, 100);
    EXPECT_EQ(result.status, FetchStatus::PointInNoPoly);
    EXPECT_THAT(result.fetches, testing::Each(0.0));
    EXPECT_EQ(m_strijklengte.CalcDijknormaal(1200, 100).status, FetchStatus::PointInNoPoly);
}

TEST_F(StrijklengteTest, OnAnIslandIsInNone)
{
    Load({{kBasin, kIsland}});
    EXPECT_EQ(FetchStatusAt(650, 200), FetchStatus::PointInNoPoly);
}

TEST_F(StrijklengteTest, TooCloseToTheShoreIsReportedAsInNone)
{
    Load({{kBasin}});
    EXPECT_EQ(FetchStatusAt(0.005, 200), FetchStatus::PointInNoPoly);
    EXPECT_EQ(m_strijklengte.CalcDijknormaal(0.005, 200).status, FetchStatus::PointInNoPoly);
    EXPECT_EQ(FetchStatusAt(0.0099, 200), FetchStatus::PointInNoPoly);
    EXPECT_EQ(FetchStatusAt(0.01, 200), FetchStatus::NoError) << "not less than 0.01";
    EXPECT_EQ(FetchStatusAt(0.0101, 200), FetchStatus::NoError);
}

TEST_F(StrijklengteTest, TwoPolygonsOverThePointCountAsNone)
{
    Load({{kBasin}, {Rectangle(100, 100, 900, 300)}});
    EXPECT_EQ(FetchStatusAt(300, 200), FetchStatus::PointInNoPoly);
    EXPECT_EQ(FetchStatusAt(50, 200), FetchStatus::NoError);
}

TEST_F(StrijklengteTest, ALakeOnAnIslandIsInSeveralRings)
{
    Load({{kBasin, kIsland, Rectangle(620, 180, 680, 220)}});
    const auto result = m_strijklengte.CalcFetch(650, 190);
    EXPECT_EQ(result.status, FetchStatus::PointInMultiPolys);
    EXPECT_GT(result.fetches[0], 0); // what was computed stays, callers ignore it
    EXPECT_EQ(m_strijklengte.CalcDijknormaal(649, 181).status, FetchStatus::Unspecified)
        << "due north of its shore point: the failure comes before the count";
    EXPECT_EQ(m_strijklengte.CalcDijknormaal(621, 200).status, FetchStatus::PointInMultiPolys);
}

TEST_F(StrijklengteTest, TwoRingsAroundThePointAreReportedWhenTheSearchGivesThePolygon)
{
    Load({{kBasin, kIsland}});
    Strijklengte given([](const MapLayer&, Punt) { return std::vector<std::size_t>{0}; },
                       geometry::LoadGisObject);
    ASSERT_TRUE(given.setShapefile(m_stem + ".shp"));
    EXPECT_EQ(given.CalcFetch(650, 210).status, FetchStatus::PointInMultiPolys);
    EXPECT_EQ(given.CalcDijknormaal(601, 210).status, FetchStatus::PointInMultiPolys);
    // Outside all rings, though the search says otherwise.
    const auto outside = given.CalcFetch(1500, 200);
    EXPECT_EQ(outside.status, FetchStatus::PointInNoPoly);
    EXPECT_GT(outside.fetches[12], 0);
}

TEST_F(StrijklengteTest, ASearchThatFailsEndsUnspecified)
{
    Load({{kBasin}});
    Strijklengte failing(
        [](const MapLayer&, Punt) -> std::vector<std::size_t> { throw std::runtime_error("x"); },
        geometry::LoadGisObject);
    ASSERT_TRUE(failing.setShapefile(m_stem + ".shp"));
    EXPECT_EQ(failing.CalcFetch(300, 200).status, FetchStatus::Unspecified);
    EXPECT_EQ(failing.CalcDijknormaal(300, 200).status, FetchStatus::Unspecified);
}

TEST_F(StrijklengteTest, APolygonWithoutPartsHoldsNothing)
{
    Load({{}, {kBasin}});
    EXPECT_EQ(FetchStatusAt(300, 200), FetchStatus::NoError);
    Strijklengte given([](const MapLayer&, Punt) { return std::vector<std::size_t>{0}; },
                       geometry::LoadGisObject);
    ASSERT_TRUE(given.setShapefile(m_stem + ".shp"));
    EXPECT_EQ(given.CalcFetch(300, 200).status, FetchStatus::PointInNoPoly);
}

TEST_F(StrijklengteTest, WithoutALayerTheComputationIsUnspecified)
{
    EXPECT_EQ(FetchStatusAt(1, 1), FetchStatus::Unspecified);
    EXPECT_EQ(m_strijklengte.CalcDijknormaal(1, 1).status, FetchStatus::Unspecified);
}

TEST_F(StrijklengteTest, CoordinatesThatAreNoNumbersEndUnspecified)
{
    TestRing ring = kBasin;
    ring[2].x = std::nan("");
    Load({{ring}});
    EXPECT_EQ(FetchStatusAt(100, 100), FetchStatus::Unspecified);
    EXPECT_EQ(FetchStatusAt(100, 500), FetchStatus::PointInNoPoly); // no edge at this height
    Load({{kBasin, {{10, std::nan("")}, {20, 20}, {30, 10}}}});
    EXPECT_EQ(FetchStatusAt(500, 200), FetchStatus::Unspecified);
    EXPECT_EQ(m_strijklengte.CalcDijknormaal(500, 200).status, FetchStatus::Unspecified);
}

// The bits of an independent computation, in another language, step by step and
// with sines and cosines rounded from 300 bits: they hold for every compiler,
// optimisation level and platform.
TEST_F(StrijklengteTest, HasTheSameBitsEverywhere)
{
    struct Expected {
        double x;
        double y;
        std::array<double, 16> fetches;
        double normal;
    };
    const Expected expected[] = {
        {155012.5,
         463777.25,
         {0x1.e7ba453b5a6bfp+10, 0x1.f47441f5bdc50p+10, 0x1.d637eb7c4c2afp+10,
          0x1.e60fcf31bd956p+10, 0x1.ee6279a909ff2p+10, 0x1.eb482ccea65dep+10,
          0x1.c8e2c419ff4d6p+10, 0x1.5623d54a9f520p+10, 0x1.143cfb40fe955p+10,
          0x1.03652490386b4p+10, 0x1.0e6f772df42f0p+10, 0x1.352b5ca3889f5p+10,
          0x1.5e15880defa1dp+10, 0x1.7dd9bd5cc22a6p+10, 0x1.9e7802f8e975ap+10,
          0x1.b9f68b35c4a21p+10},
         0x1.c200000000000p+7},
        {157801.1,
         464913.9,
         {0x1.db2da65af3a9ep+8, 0x1.2eeab4e83860cp+8, 0x1.0129bbee1db85p+8, 0x1.1d219ba74aa40p+8,
          0x1.bfef804134a53p+8, 0x1.6501fd8c8bf5ep+9, 0x1.03d1911536285p+10, 0x1.6898a004073bap+10,
          0x1.d35c1157afed7p+10, 0x1.05450958b15c0p+11, 0x1.17802ffb7a448p+11,
          0x1.2d5434959d538p+11, 0x1.213814b2725a6p+11, 0x1.031166c579c09p+11,
          0x1.7e2daeba6c2bcp+10, 0x1.a145f7e7bd997p+9},
         0x1.c6a26b39da7f1p+7},
    };
    Load({{{{154012.3, 463001.7},
            {153100.25, 464300.1},
            {154800.5, 466020.9},
            {157333.3, 465800.0},
            {158900.7, 464100.4},
            {157333.3, 462500.0},
            {155500.0, 462500.0},
            {154012.3, 463001.7}},
           {{155900.1, 464200.2},
            {156300.0, 464700.7},
            {156800.9, 464200.2},
            {156300.0, 463900.3},
            {155900.1, 464200.2}}}});
    for (const Expected& one : expected) {
        const auto fetch = m_strijklengte.CalcFetch(one.x, one.y);
        ASSERT_EQ(fetch.status, FetchStatus::NoError);
        EXPECT_EQ(fetch.fetches, one.fetches);
        EXPECT_EQ(NormalAt(one.x, one.y), one.normal);
    }
}

// --- dike normals

TEST_F(StrijklengteTest, TheNormalPointsFromTheShoreToTheLocation)
{
    Load({{kBasin}});
    EXPECT_EQ(NormalAt(1, 200), 90);
    EXPECT_EQ(NormalAt(999, 200), 270);
    // A shore from (0, 0) to (400, 400): the nearest point of (210, 190) is
    // (200, 200), to the north-west of it.
    Load({{{{0, 0}, {400, 400}, {400, 0}, {0, 0}}}});
    EXPECT_NEAR(NormalAt(210, 190), 135, 1e-9);
    Load({{{{0, 0}, {0, 400}, {400, 400}, {0, 0}}}});
    EXPECT_NEAR(NormalAt(190, 210), 315, 1e-9);
}

TEST_F(StrijklengteTest, DueNorthOrSouthOfItsShorePointALocationHasNoNormal)
{
    Load({{kBasin}});
    EXPECT_EQ(m_strijklengte.CalcDijknormaal(500, 1).status, FetchStatus::Unspecified);
    EXPECT_EQ(m_strijklengte.CalcDijknormaal(500, 399).status, FetchStatus::Unspecified);
}

TEST_F(StrijklengteTest, TheNormalIsTakenFromTheNearestRing)
{
    Load({{kBasin, kIsland}});
    EXPECT_EQ(NormalAt(590, 200), 270);
    EXPECT_EQ(NormalAt(710, 200), 90);
}

TEST_F(StrijklengteTest, ARingsFirstPointAsTheNearestGivesSouthWest)
{
    // Around the inner corner no edge has its foot; the corner is the first
    // point, and the closing point an edge without length: the foot is far off.
    Load({{{{200, 200}, {1000, 200}, {1000, 0}, {0, 0}, {0, 1000}, {200, 1000}, {200, 200}}}});
    EXPECT_EQ(NormalAt(190, 180), 225);
    EXPECT_EQ(NormalAt(170, 195), 225);
}

TEST_F(StrijklengteTest, AnotherPointAsTheNearestUsesTheFootOnTheEdgesExtension)
{
    // The same corner in the middle of the ring. The edge that ends in it runs
    // down at x = 200: its foot, beyond its end, is (200, 180).
    Load({{kLShape}});
    EXPECT_NEAR(NormalAt(190, 180), 270, 1e-9);
}

// --- the layer

TEST_F(StrijklengteTest, HoldsTheLayerThatItWasGiven)
{
    EXPECT_EQ(m_strijklengte.layerFile(), nullptr);
    EXPECT_EQ(m_strijklengte.file(), "");
    Load({{kBasin}});
    ASSERT_NE(m_strijklengte.layerFile(), nullptr);
    EXPECT_EQ(m_strijklengte.layerFile()->shapeType(), 23);
    EXPECT_EQ(m_strijklengte.file(), m_stem + ".shp");
}

TEST_F(StrijklengteTest, DropsTheLayerForAFileThatIsNotUsable)
{
    for (const QString& path : {QString("nergens.shp"), QString("  "), QString()}) {
        Load({{kBasin}});
        EXPECT_FALSE(m_strijklengte.setShapefile(path));
        EXPECT_EQ(m_strijklengte.layerFile(), nullptr);
        EXPECT_EQ(m_strijklengte.file(), "");
    }
}

TEST_F(StrijklengteTest, OnlyPolygonsAreAShoreLayer)
{
    const QString stem = ToQString(m_folder / "lijnen");
    WritePair(stem, MakeShapeFile(3, {PolygonContent({kBasin}, 3)}));
    EXPECT_TRUE(MapLayer(stem + ".shp").Valid());
    EXPECT_FALSE(m_strijklengte.setShapefile(stem + ".shp"));
    EXPECT_EQ(m_strijklengte.layerFile(), nullptr);
}

TEST_F(StrijklengteTest, ReadsTheLayerOnce)
{
    Load({{kBasin}});
    const MapLayer* layer = m_strijklengte.layerFile();
    const auto* points = layer->Data().points.data();
    FetchStatusAt(300, 200);
    EXPECT_TRUE(m_strijklengte.setShapefile(m_stem + ".shp"));
    EXPECT_EQ(m_strijklengte.layerFile(), layer);
    EXPECT_EQ(layer->Data().points.data(), points);
}

TEST_F(StrijklengteTest, ReadsAChangedFileAgain)
{
    Load({{kBasin}});
    EXPECT_EQ(FetchStatusAt(1500, 200), FetchStatus::PointInNoPoly);
    WritePair(m_stem, MakePolygonFile({{kIsland}, {Rectangle(1400, 0, 1600, 400)}}));
    EXPECT_EQ(FetchStatusAt(1500, 200), FetchStatus::NoError);
    EXPECT_EQ(FetchStatusAt(300, 200), FetchStatus::PointInNoPoly);
}

TEST_F(StrijklengteTest, AFileThatVanishesEndsUnspecified)
{
    Load({{kBasin}});
    QFile::remove(m_stem + ".shp");
    EXPECT_EQ(FetchStatusAt(300, 200), FetchStatus::Unspecified);
    WriteBytes(m_stem + ".shp", "leeg");
    EXPECT_EQ(FetchStatusAt(300, 200), FetchStatus::Unspecified);
    WritePair(m_stem, MakePolygonFile({{kBasin}}));
    EXPECT_EQ(FetchStatusAt(300, 200), FetchStatus::NoError);
}

// --- statuses as texts

TEST(FetchStatusTest, HasTheKeysAndTextsOfTheForms)
{
    EXPECT_EQ(StatusKey(FetchStatus::NoError), "text.0");
    EXPECT_EQ(StatusKey(FetchStatus::Unspecified), "text.4");
    EXPECT_EQ(StatusKey(FetchStatus::TooCloseToPoly), "text.3");
    EXPECT_EQ(StatusKey(FetchStatus::PointInNoPoly), "text.2");
    EXPECT_EQ(StatusKey(FetchStatus::PointInMultiPolys), "text.1");
    EXPECT_EQ(StatusDefaultText(FetchStatus::NoError), "NOERROR");
    EXPECT_EQ(StatusDefaultText(FetchStatus::Unspecified), "UNSPECIFIED");
    EXPECT_EQ(StatusDefaultText(FetchStatus::TooCloseToPoly), "TOCLOSETOPOLY");
    EXPECT_EQ(StatusDefaultText(FetchStatus::PointInNoPoly), "POINTINNOPOLY");
    EXPECT_EQ(StatusDefaultText(FetchStatus::PointInMultiPolys), "POINTINMULTIPOLYS");
    EXPECT_EQ(StatusKey(BodemhoogteStatus::NoError), "text.0");
    EXPECT_EQ(StatusKey(BodemhoogteStatus::DllError), "text.1");
    EXPECT_EQ(StatusKey(BodemhoogteStatus::Unspecified), "text.3");
    EXPECT_EQ(StatusKey(BodemhoogteStatus::PointOutsideGrid), "text.2");
    EXPECT_EQ(StatusDefaultText(BodemhoogteStatus::DllError), "DLLERROR");
    EXPECT_EQ(StatusDefaultText(BodemhoogteStatus::Unspecified), "UNSPECIFIED");
    EXPECT_EQ(StatusDefaultText(BodemhoogteStatus::PointOutsideGrid), "POINTOUTSIDEGRID");
}
