#include "maps/ui/LabelPlaces.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include <limits>

namespace {

class MapDrawingTest : public testing::Test {
protected:
    MapDrawingTest()
    {
        transform.SetSize({200, 100});
        transform.SetExtent({0, 1000, 2000, 0}); // 10 m a pixel
        look.labelFont.setPixelSize(12);
    }
    QImage Draw(const QSet<QString>& selected = {})
    {
        QImage image(200, 100, QImage::Format_RGB32);
        image.fill(look.paper);
        QPainter painter(&image);
        DrawPoints(painter, image.rect(), transform, points, selected, look);
        if (labels)
            DrawLabels(painter, image.rect(), transform, points, LayOutNames(points, look),
                       Places(selected), look);
        return image;
    }
    std::vector<PlacedLabel> Places(const QSet<QString>& selected = {}) const
    {
        return PlaceLabels(points, LayOutNames(points, look), selected, transform.MetresPerPixel(),
                           look);
    }
    /// The room of a point's name in the window; empty when it has none.
    QRectF RoomOf(std::size_t point, const QSet<QString>& selected = {}) const
    {
        for (const PlacedLabel& label : Places(selected)) {
            if (label.point == point)
                return label.room.translated(transform.ToPixel(points[point].x, points[point].y));
        }
        return {};
    }
    static bool AnyInk(const QImage& image, const QRect& where)
    {
        for (int y = where.top(); y <= where.bottom(); ++y)
            for (int x = where.left(); x <= where.right(); ++x)
                if (image.pixel(x, y) != qRgb(255, 255, 255))
                    return true;
        return false;
    }

    MapTransform transform;
    MapLook look;
    bool labels = false;
    std::vector<MapPoint> points{{500, 500, "Plas-01", Qt::red}, {1500, 500, "Plas-02", Qt::blue}};
};

TEST_F(MapDrawingTest, PointsStandAtTheirPlaceInTheirColour)
{
    const QImage image = Draw();
    EXPECT_EQ(image.pixelColor(50, 50), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(150, 50), QColor(Qt::blue));
    EXPECT_FALSE(AnyInk(image, {60, 0, 80, 100}));
}

TEST_F(MapDrawingTest, SelectedPointsHaveAYellowRim)
{
    const QImage image = Draw({"plas-02"});
    EXPECT_EQ(image.pixelColor(150, 50), QColor(Qt::blue));
    EXPECT_EQ(image.pixelColor(156, 50), QColor(255, 255, 0));
    EXPECT_EQ(image.pixelColor(56, 50), QColor(Qt::white));
}

TEST_F(MapDrawingTest, APointWithoutAColourHasNoSymbol)
{
    points = {{500, 500, "Plas-01", QColor()}};
    EXPECT_FALSE(AnyInk(Draw(), {0, 0, 200, 100}));
}

TEST_F(MapDrawingTest, NamesStandBesideThePointsWhenTheyAreOn)
{
    const QRect beside(58, 40, 40, 20);
    EXPECT_FALSE(AnyInk(Draw(), beside));
    labels = true;
    EXPECT_TRUE(AnyInk(Draw(), beside));
}

TEST_F(MapDrawingTest, ANameDoesNotWipeOutThePointBesideIt)
{
    points = {{620, 500, "Plas-02", Qt::blue}, {500, 500, "Plas-01", Qt::red}};
    const QImage without = Draw();
    labels = true;
    look.labelColour = Qt::transparent; // only the rim of the name is left
    const QRect symbol(56, 44, 13, 13);
    EXPECT_EQ(Draw().copy(symbol), without.copy(symbol));
}

TEST_F(MapDrawingTest, ANameIsSeenOfAPointLeftOfTheWindow)
{
    points = {{-100, 500, "Plas-met-een-lange-naam", Qt::red}};
    labels = true;
    EXPECT_TRUE(AnyInk(Draw(), {0, 40, 40, 20}));
}

TEST_F(MapDrawingTest, ANameCoversNoSymbolAndNoOtherName)
{
    points.clear();
    for (int i = 0; i < 20; ++i)
        points.push_back(
            {400.0 + 30 * i, 500.0 + 50 * (i % 3), QString("Vaart-%1").arg(i), Qt::red});
    std::vector<QRectF> rooms;
    for (const PlacedLabel& label : Places())
        rooms.push_back(RoomOf(label.point));
    ASSERT_GT(rooms.size(), 3U);
    EXPECT_LT(rooms.size(), points.size()); // there is not room for all
    for (std::size_t i = 0; i < rooms.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_FALSE(rooms[i].intersects(rooms[j])) << i << " " << j;
        for (const MapPoint& point : points)
            EXPECT_FALSE(rooms[i].contains(transform.ToPixel(point.x, point.y))) << i;
    }
}

TEST_F(MapDrawingTest, TwoPointsOnOnePlaceBothShowTheirNames)
{
    points = {{1000, 500, "Vaart-1", Qt::red}, {1000, 500, "Vaart-2", Qt::red}};
    EXPECT_GT(RoomOf(0).left(), 100);
    EXPECT_LT(RoomOf(1).right(), 100);
    EXPECT_FALSE(RoomOf(1).isEmpty());
}

TEST_F(MapDrawingTest, ASelectedNameGoesFirst)
{
    points.assign(10, {1000, 500, "Vaart", Qt::red}); // eight places around them
    points.back().name = "Gekozen";
    EXPECT_TRUE(RoomOf(9).isEmpty());
    EXPECT_FALSE(RoomOf(9, {"gekozen"}).isEmpty());
    EXPECT_GT(RoomOf(9, {"gekozen"}).left(), 108); // the best place, beside the rim
}

TEST_F(MapDrawingTest, EveryNameHasAScaleAtWhichItShows)
{
    points.clear();
    for (int i = 0; i < 50; ++i)
        points.push_back({double(i), 500, QString("Locatie-%1").arg(i), Qt::red}); // 1 m apart
    EXPECT_LT(Places().size(), points.size());
    transform.SetExtent({0, 501, 2, 500});
    EXPECT_EQ(Places().size(), points.size());
}

TEST_F(MapDrawingTest, APointThatIsNowhereDoesNotHurt)
{
    points = {{std::numeric_limits<double>::quiet_NaN(), 500, "Nergens", Qt::red},
              {1e300, -1e300, "Ver weg", Qt::red},
              {1000, 500, "Plas-01", Qt::red}};
    labels = true;
    EXPECT_TRUE(RoomOf(0).isEmpty());
    EXPECT_TRUE(AnyInk(Draw(), {100, 40, 40, 20}));
}

TEST_F(MapDrawingTest, OnDarkPaperBlackNamesAreWrittenLight)
{
    look.paper = QColor(0x1F, 0x21, 0x23);
    labels = true;
    points = {{500, 500, "Plas-01", QColor()}};
    const QImage image = Draw();
    int lightest = 0;
    for (int x = 55; x < 100; ++x)
        for (int y = 40; y < 60; ++y)
            lightest = std::max(lightest, qGray(image.pixel(x, y)));
    EXPECT_GT(lightest, 150);
}

TEST(ScaleBarTest, TheBarHasTheLargestRoundLengthThatFits)
{
    EXPECT_DOUBLE_EQ(RoundLength(1), 1);
    EXPECT_DOUBLE_EQ(RoundLength(1.9), 1);
    EXPECT_DOUBLE_EQ(RoundLength(2), 2);
    EXPECT_DOUBLE_EQ(RoundLength(4999), 2000);
    EXPECT_DOUBLE_EQ(RoundLength(5000), 5000);
    EXPECT_DOUBLE_EQ(RoundLength(0.07), 0.05);
}

TEST(ScaleBarTest, LengthsFromAKilometreOnAreInKilometres)
{
    EXPECT_EQ(LengthText(500), "500 m");
    EXPECT_EQ(LengthText(1000), "1 km");
    EXPECT_EQ(LengthText(20000), "20 km");
}

} // namespace
