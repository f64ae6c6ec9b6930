#include "maps/ui/MapTransform.h"

#include <gtest/gtest.h>

namespace {

void ExpectExtent(const MapRectangle& extent, double left, double top, double right, double bottom)
{
    EXPECT_DOUBLE_EQ(extent.left, left);
    EXPECT_DOUBLE_EQ(extent.top, top);
    EXPECT_DOUBLE_EQ(extent.right, right);
    EXPECT_DOUBLE_EQ(extent.bottom, bottom);
}

MapTransform Made(QSizeF size, const MapRectangle& extent)
{
    MapTransform transform;
    transform.SetSize(size);
    transform.SetExtent(extent);
    return transform;
}

TEST(MapTransformTest, AnExtentOfTheWindowsShapeFillsIt)
{
    const MapTransform transform = Made({400, 200}, {1000, 2000, 5000, 0});
    EXPECT_DOUBLE_EQ(transform.MetresPerPixel(), 10);
    EXPECT_EQ(transform.ToPixel(1000, 2000), QPointF(0, 0));
    EXPECT_EQ(transform.ToPixel(5000, 0), QPointF(400, 200));
    EXPECT_EQ(transform.ToPixel(3000, 1500), QPointF(200, 50));
}

TEST(MapTransformTest, AnExtentOfAnotherShapeIsInViewAsAWholeInTheMiddle)
{
    const MapTransform transform = Made({400, 200}, {0, 1000, 1000, 0});
    ExpectExtent(transform.Extent(), -500, 1000, 1500, 0);
}

TEST(MapTransformTest, EdgesMayComeInEitherOrder)
{
    const MapTransform transform = Made({400, 200}, {5000, 0, 1000, 2000});
    ExpectExtent(transform.Extent(), 1000, 2000, 5000, 0);
}

TEST(MapTransformTest, PixelsAndMetresAreEachOthersInverse)
{
    const MapTransform transform = Made({317, 211}, {-7000, 629000, 300000, 289000});
    const QPointF place = transform.ToMap(transform.ToPixel(121000, 487000));
    EXPECT_NEAR(place.x(), 121000, 1e-6);
    EXPECT_NEAR(place.y(), 487000, 1e-6);
}

TEST(MapTransformTest, ZoomingKeepsThePlaceUnderTheMouse)
{
    MapTransform transform = Made({400, 200}, {0, 2000, 4000, 0});
    const QPointF place = transform.ToMap({100, 50});
    transform.Zoom(2, {100, 50});
    EXPECT_DOUBLE_EQ(transform.MetresPerPixel(), 5);
    EXPECT_EQ(transform.ToMap({100, 50}), place);
}

TEST(MapTransformTest, ZoomingOutScalesTheExtentAroundItsCentre)
{
    MapTransform transform = Made({400, 200}, {0, 2000, 4000, 0});
    transform.Zoom(1 / 1.5);
    ExpectExtent(transform.Extent(), -1000, 2500, 5000, -500);
}

TEST(MapTransformTest, PanningMovesTheMapWithTheMouse)
{
    MapTransform transform = Made({400, 200}, {0, 2000, 4000, 0});
    transform.Pan({30, -20});
    ExpectExtent(transform.Extent(), -300, 1800, 3700, -200);
}

TEST(MapTransformTest, AnotherSizeKeepsInViewWhatWasAskedFor)
{
    MapTransform transform = Made({400, 200}, {0, 2000, 4000, 0});
    transform.SetSize({200, 200});
    ExpectExtent(transform.Extent(), 0, 3000, 4000, -1000);
    transform.SetSize({400, 200});
    ExpectExtent(transform.Extent(), 0, 2000, 4000, 0);
}

TEST(MapTransformTest, ZoomingStopsAtTheFinestAndTheCoarsest)
{
    MapTransform transform = Made({400, 200}, {0, 2000, 4000, 0});
    for (int i = 0; i < 500; ++i)
        transform.Zoom(2);
    EXPECT_DOUBLE_EQ(transform.MetresPerPixel(), MapTransform::kFinest);
    for (int i = 0; i < 500; ++i)
        transform.Zoom(0.5);
    EXPECT_DOUBLE_EQ(transform.MetresPerPixel(), MapTransform::kCoarsest);
    transform.Zoom(0);
    EXPECT_DOUBLE_EQ(transform.MetresPerPixel(), MapTransform::kCoarsest);
}

TEST(MapTransformTest, AnExtentWithoutAreaIsCentredAtTheScaleAsItWas)
{
    MapTransform transform = Made({400, 200}, {0, 2000, 4000, 0});
    transform.SetExtent({100, 50, 100, 50});
    EXPECT_DOUBLE_EQ(transform.MetresPerPixel(), 10);
    EXPECT_EQ(transform.ToMap({200, 100}), QPointF(100, 50));
}

} // namespace
