#include "geometry/Strijklengte.h"

#include "ShapeBytes.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

using geometry::Punt;

class FakeChart : public geometry::FetchChart {
public:
    struct Series {
        QString title;
        std::vector<Punt> points;
        geometry::Kleur colour;
    };

    void AddLineSeries(const QString& title, const std::vector<Punt>& points,
                       geometry::Kleur colour) override
    {
        series.push_back({title, points, colour});
    }
    void RemoveAllSeriesWithName(const QString& name) override
    {
        std::erase_if(series, [&](const Series& one) {
            return one.title.startsWith(name, Qt::CaseInsensitive);
        });
    }
    void SetAxes(double left, double right, double bottom, double top) override
    {
        axes = {left, right, bottom, top};
    }
    void KeepAspectRatio() override { ++aspects; }
    void Repaint() override { ++repaints; }

    std::vector<QString> Titles() const
    {
        std::vector<QString> titles;
        for (const Series& one : series)
            titles.push_back(one.title);
        return titles;
    }

    std::vector<Series> series;
    std::vector<double> axes;
    int repaints = 0;
    int aspects = 0;
};

class StrijklengtePlotTest : public testing::Test {
protected:
    void Load(const std::vector<TestPolygon>& polygons)
    {
        const QString stem = ToQString(m_folder / "oevers");
        WritePair(stem, MakePolygonFile(polygons));
        ASSERT_TRUE(m_strijklengte.setShapefile(stem + ".shp"));
    }

    TemporaryFolder m_folder;
    Strijklengte m_strijklengte;
};

const TestRing kBasin = Rectangle(0, 0, 1000, 400);

} // namespace

TEST_F(StrijklengtePlotTest, PlotsEveryRingFromItsLastPoint)
{
    Load({{kBasin, {{600, 150}, {600, 250}, {700, 250}}}});
    FakeChart chart;
    chart.AddLineSeries("polygoon oud", {}, {});
    chart.AddLineSeries("mijn POLYGOON", {}, {});
    m_strijklengte.PlotPolygonen(chart, 300, 200);
    EXPECT_THAT(chart.Titles(), testing::ElementsAre("mijn POLYGOON", "POLYGOON0", "POLYGOON1"));
    ASSERT_EQ(chart.series.size(), 3u);
    EXPECT_EQ(chart.series[1].points.size(), kBasin.size() + 1);
    const auto& island = chart.series[2];
    ASSERT_EQ(island.points.size(), 4u);
    EXPECT_EQ(island.points[0].x, 700);
    EXPECT_EQ(island.points[1].x, 600);
    EXPECT_EQ(island.points[3].x, 700);
    EXPECT_EQ(island.colour.red, 10);
    EXPECT_EQ(island.colour.green, 20);
    EXPECT_EQ(island.colour.blue, 220);
}

TEST_F(StrijklengtePlotTest, PlotsNoPolygonWithoutExactlyOne)
{
    FakeChart chart;
    m_strijklengte.PlotPolygonen(chart, 300, 200); // no layer
    Load({{kBasin}, {Rectangle(100, 100, 900, 300)}});
    m_strijklengte.PlotPolygonen(chart, 300, 200);  // two
    m_strijklengte.PlotPolygonen(chart, 3000, 200); // none
    EXPECT_TRUE(chart.series.empty());
}

TEST_F(StrijklengtePlotTest, PlotsNoPolygonWhereTheSearchFails)
{
    const double endless = std::numeric_limits<double>::infinity();
    Load({{kBasin, {{10, 10}, {20, endless}, {30, 10}}}});
    FakeChart chart;
    EXPECT_NO_THROW(m_strijklengte.PlotPolygonen(chart, 500, 200));
    EXPECT_TRUE(chart.series.empty());
}

TEST_F(StrijklengtePlotTest, PlotsFetchesAsRaysAndFitsTheAxesAroundTheirEnds)
{
    FakeChart chart;
    chart.AddLineSeries("strijklengte9", {}, {});
    chart.AddLineSeries("POLYGOON0", {}, {});
    const double directions[] = {0, 90, 180, 270};
    const double lengths[] = {100, 50, 300, 150};
    m_strijklengte.PlotStrijklengtes(chart, 1000, 2000, directions, lengths);
    EXPECT_THAT(chart.Titles(), testing::ElementsAre("POLYGOON0", "STRIJKLENGTE0", "STRIJKLENGTE1",
                                                     "STRIJKLENGTE2", "STRIJKLENGTE3"));
    const auto& east = chart.series[2].points;
    ASSERT_EQ(east.size(), 2u);
    EXPECT_EQ(east[0].x, 1000);
    EXPECT_NEAR(east[1].x, 1050, 1e-9);
    EXPECT_NEAR(east[1].y, 2000, 1e-9);
    // x from 850 to 1050, y from 1700 to 2100, a fifth added on either side.
    ASSERT_EQ(chart.axes.size(), 4u);
    EXPECT_NEAR(chart.axes[0], 810, 1e-9);
    EXPECT_NEAR(chart.axes[1], 1090, 1e-9);
    EXPECT_NEAR(chart.axes[2], 1620, 1e-9);
    EXPECT_NEAR(chart.axes[3], 2180, 1e-9);
    EXPECT_EQ(chart.repaints, 1);
}

TEST_F(StrijklengtePlotTest, TheLocationDoesNotWidenTheAxes)
{
    FakeChart chart;
    const double directions[] = {90, 90};
    const double lengths[] = {100, 200};
    m_strijklengte.PlotStrijklengtes(chart, 0, 0, directions, lengths);
    EXPECT_NEAR(chart.axes[0], 80, 1e-9);
    EXPECT_NEAR(chart.axes[1], 220, 1e-9);
}

TEST_F(StrijklengtePlotTest, HandsTheOtherChartOperationsOn)
{
    FakeChart chart;
    chart.AddLineSeries("POLYGOON12", {}, {});
    chart.AddLineSeries("STRIJKLENGTE1", {}, {});
    m_strijklengte.RemoveAllSeriesWithName(chart, "polygoon");
    EXPECT_THAT(chart.Titles(), testing::ElementsAre("STRIJKLENGTE1"));
    m_strijklengte.KeepAspectRatio(chart);
    EXPECT_EQ(chart.aspects, 1);
}
