#include "maps/ui/MapDrawing.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

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
        image.fill(Qt::white);
        QPainter painter(&image);
        DrawPoints(painter, image.rect(), transform, points, selected, look);
        return image;
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
    look.labels = true;
    EXPECT_TRUE(AnyInk(Draw(), beside));
}

TEST_F(MapDrawingTest, ANameDoesNotWipeOutThePointBesideIt)
{
    points = {{620, 500, "Plas-02", Qt::blue}, {500, 500, "Plas-01", Qt::red}};
    const QImage without = Draw();
    look.labels = true;
    look.labelColour = Qt::transparent; // only the rim of the name is left
    const QRect symbol(56, 44, 13, 13);
    EXPECT_EQ(Draw().copy(symbol), without.copy(symbol));
}

TEST_F(MapDrawingTest, ANameIsSeenOfAPointLeftOfTheWindow)
{
    points = {{-100, 500, "Plas-met-een-lange-naam", Qt::red}};
    look.labels = true;
    EXPECT_TRUE(AnyInk(Draw(), {0, 40, 40, 20}));
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
