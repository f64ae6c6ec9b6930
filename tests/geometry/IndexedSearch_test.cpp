// The index may only leave out edges that decide nothing: everything here
// compares bits with the search over all edges.
#include "PlainFetch.h"
#include "RandomRings.h"
#include "geometry/Strijklengte.h"

#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

namespace {

std::uint64_t Bits(double value)
{
    return std::bit_cast<std::uint64_t>(value);
}

class IndexedSearchTest : public testing::Test {
protected:
    void Load(const std::vector<TestPolygon>& polygons)
    {
        const QString stem = ToQString(m_folder / ("oevers" + std::to_string(++m_number)));
        WritePair(stem, MakePolygonFile(polygons));
        m_polygons = polygons;
        ASSERT_TRUE(m_strijklengte.setShapefile(stem + ".shp"));
    }

    void ExpectEqualAt(double x, double y)
    {
        const auto fetch = m_strijklengte.CalcFetch(x, y);
        const auto plainFetch = plain::CalcFetch(m_polygons, x, y);
        ASSERT_EQ(static_cast<int>(fetch.status), plainFetch.status) << x << ' ' << y;
        for (std::size_t i = 0; i < 16; ++i) {
            ASSERT_EQ(Bits(fetch.fetches[i]), Bits(plainFetch.fetches[i]))
                << x << ' ' << y << " sector " << i << ": " << fetch.fetches[i] << " and "
                << plainFetch.fetches[i];
        }
        const auto normal = m_strijklengte.CalcDijknormaal(x, y);
        const auto plainNormal = plain::CalcNormal(m_polygons, x, y);
        ASSERT_EQ(static_cast<int>(normal.status), plainNormal.status) << x << ' ' << y;
        ASSERT_EQ(Bits(normal.dijknormaal), Bits(plainNormal.normal)) << x << ' ' << y;
        ++m_seen[plainFetch.status];
        ++m_seenNormal[plainNormal.status];
    }

    TemporaryFolder m_folder;
    int m_number = 0;
    std::vector<TestPolygon> m_polygons;
    Strijklengte m_strijklengte;
    std::array<int, 5> m_seen{};
    std::array<int, 5> m_seenNormal{};
};

} // namespace

TEST_F(IndexedSearchTest, EqualsThePlainSearchOnWrinkledShoresWithIslands)
{
    RandomRings random(20240501);
    for (int basin = 0; basin < 12; ++basin) {
        const double x = random.Between(10000, 280000);
        const double y = random.Between(300000, 620000);
        TestPolygon rings{basin % 2
                              ? random.Coast(x, y, 5000, random.Whole(50, 5000))
                              : random.Shore(x, y, 5000, random.Whole(50, 3000), random.Unit())};
        for (int island = random.Whole(0, 6); island > 0; --island)
            rings.push_back(random.Shore(x + random.Between(-3000, 3000),
                                         y + random.Between(-3000, 3000), random.Between(50, 600),
                                         random.Whole(3, 400), random.Unit() / 2));
        Load({rings});
        for (int i = 0; i < 20; ++i)
            ExpectEqualAt(x + random.Between(-5500, 5500), y + random.Between(-5500, 5500));
        // Close to the shore, and on its points.
        for (int i = 0; i < 20; ++i) {
            const TestRing& ring = rings[static_cast<std::size_t>(
                random.Whole(0, static_cast<int>(rings.size()) - 1))];
            const auto& p =
                ring[static_cast<std::size_t>(random.Whole(0, static_cast<int>(ring.size()) - 1))];
            const double off = i % 4 == 0 ? 0 : random.Between(-1, 1) * (i % 2 ? 20 : 0.02);
            ExpectEqualAt(p.x + off, p.y + off * random.Between(-1, 1));
        }
    }
    EXPECT_GT(m_seen[0], 50);
    EXPECT_GT(m_seen[3], 50);
}

TEST_F(IndexedSearchTest, EqualsThePlainSearchOnLatticesThroughTheirPoints)
{
    RandomRings random(77);
    for (int basin = 0; basin < 150; ++basin) {
        std::vector<TestPolygon> polygons;
        for (int n = random.Whole(1, 3); n > 0; --n) {
            TestPolygon rings;
            for (int r = random.Whole(0, 4); r > 0; --r)
                rings.push_back(random.Lattice(random.Whole(1, 60), 16));
            polygons.push_back(rings);
        }
        Load(polygons);
        for (int i = 0; i < 25; ++i) {
            // Whole and half coordinates: rays meet points and run along edges.
            ExpectEqualAt(random.Whole(-34, 34) / 2.0, random.Whole(-34, 34) / 2.0);
        }
    }
    EXPECT_GT(m_seen[0], 100);
    EXPECT_GT(m_seen[3], 100);
    EXPECT_GT(m_seen[4], 20);
    EXPECT_GT(m_seenNormal[1], 20);
}

TEST_F(IndexedSearchTest, EqualsThePlainSearchWhereRaysReachFurtherThanTheirLength)
{
    RandomRings random(5);
    Load({{random.Shore(0, 0, 140000, 500, 0.3)}, {random.Shore(400000, 0, 90000, 700, 0.1)}});
    for (int i = 0; i < 60; ++i)
        ExpectEqualAt(random.Between(-120000, 480000), random.Between(-90000, 90000));
    EXPECT_GT(m_seen[0], 20);
}

TEST_F(IndexedSearchTest, EqualsThePlainSearchOnTinyAndHugeScales)
{
    RandomRings random(11);
    for (const double scale : {1e-9, 1e-4, 1.0, 1e7, 1e12, 1e16}) {
        for (int basin = 0; basin < 4; ++basin) {
            TestPolygon rings{random.Shore(scale * 3, -scale, scale, 300, 0.4),
                              random.Shore(scale * 3, -scale, scale / 10, 40, 0.4)};
            Load({rings});
            for (int i = 0; i < 20; ++i)
                ExpectEqualAt(scale * random.Between(1.8, 4.2), scale * random.Between(-2, 0));
        }
    }
}

TEST_F(IndexedSearchTest, EqualsThePlainSearchOnCoordinatesThatAreNoMap)
{
    RandomRings random(13);
    const double bad[] = {std::numeric_limits<double>::quiet_NaN(),
                          std::numeric_limits<double>::infinity(),
                          -std::numeric_limits<double>::infinity(),
                          1e200,
                          -1e308,
                          1e-310,
                          5e-324,
                          1e-25};
    for (int basin = 0; basin < 200; ++basin) {
        TestRing ring = random.Shore(0, 0, basin % 2 ? 1 : 1000, random.Whole(3, 40), 0.5);
        for (int n = random.Whole(1, 3); n > 0; --n) {
            auto& p =
                ring[static_cast<std::size_t>(random.Whole(0, static_cast<int>(ring.size()) - 1))];
            (random.Whole(0, 1) ? p.x : p.y) = bad[random.Whole(0, 7)];
        }
        Load({{ring}});
        for (int i = 0; i < 10; ++i)
            ExpectEqualAt(random.Between(-1, 1) * (i % 2 ? 1 : 700),
                          random.Between(-1, 1) * (i % 3 ? 1 : 700));
    }
    EXPECT_GT(m_seen[1], 100);
}

TEST_F(IndexedSearchTest, EqualsThePlainSearchAtLocationsThatAreNoPlace)
{
    RandomRings random(17);
    Load({{random.Shore(0, 0, 1000, 200, 0.3)}});
    for (const double x : {std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity(), 1e300, -1e21, 0.0}) {
        for (const double y : {std::numeric_limits<double>::quiet_NaN(), -1e300, 0.0})
            ExpectEqualAt(x, y);
    }
}

TEST_F(IndexedSearchTest, EqualsThePlainSearchForEqualDistancesInSeveralRings)
{
    // The location has the same distance to many edges: the first one counts.
    TestPolygon rings{Rectangle(-100, -100, 100, 100)};
    for (const double x : {-60.0, 40.0}) {
        for (const double y : {-60.0, 40.0})
            rings.push_back(Rectangle(x, y, x + 20, y + 20));
    }
    Load({rings});
    ExpectEqualAt(0, 0);
    ExpectEqualAt(0, 20);
    ExpectEqualAt(20, 20);
    std::swap(rings[0], rings[3]);
    Load({rings});
    ExpectEqualAt(0, 0);
    EXPECT_EQ(m_seen[0], 4);
}
