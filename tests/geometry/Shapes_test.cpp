#include "frame/Globals.h"
#include "geometry/CShape.h"
#include "geometry/CollectedShapes.h"

#include "NotedBoxes.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

std::shared_ptr<CPoint> Point(double x, double y)
{
    return std::make_shared<CPoint>(x, y);
}

std::shared_ptr<CPart> Part(const std::vector<std::pair<double, double>>& points)
{
    auto part = std::make_shared<CPart>();
    for (const auto& [x, y] : points)
        part->Add(Point(x, y));
    return part;
}

template <typename Shape>
void ExpectBounds(const Shape& shape, double left, double bottom, double right, double top)
{
    EXPECT_EQ(shape.Left(), left);
    EXPECT_EQ(shape.Bottom(), bottom);
    EXPECT_EQ(shape.Right(), right);
    EXPECT_EQ(shape.Top(), top);
}

} // namespace

TEST(CPointTest, HasItselfAsBounds)
{
    CPoint point(3, -4);
    ExpectBounds(point, 3, -4, 3, -4);
    point.setX(5);
    point.setY(6);
    ExpectBounds(point, 5, 6, 5, 6);
}

TEST(ShapeTest, StartsWithoutBoundsAndNotNull)
{
    ExpectBounds(CPoint(), 0, 0, 0, 0);
    ExpectBounds(CRect(), 0, 0, 0, 0);
    ExpectBounds(CPart(), 0, 0, 0, 0);
    ExpectBounds(CMultiPoint(), 0, 0, 0, 0);
    ExpectBounds(CPolyLine(), 0, 0, 0, 0);
    ExpectBounds(CPolygon(), 0, 0, 0, 0);
    ExpectBounds(CShape(), 0, 0, 0, 0);
    EXPECT_FALSE(CPoint().IsNull());
    EXPECT_FALSE(CMultiPoint().IsNull());
    EXPECT_FALSE(CPolyLine().IsNull());
    EXPECT_FALSE(CPolygon().IsNull());
    CPolygon polygon;
    polygon.MakeNull(true);
    EXPECT_TRUE(polygon.IsNull());
}

TEST(CRectTest, TakesPointsAndNumbersUnordered)
{
    CRect rect;
    rect.MakeXY(10, 20, 1, 2);
    ExpectBounds(rect, 10, 2, 1, 20);
    rect.Make(CPoint(1, 2), CPoint(3, 4));
    ExpectBounds(rect, 1, 4, 3, 2);
    rect.setTop(9);
    rect.setBottom(8);
    rect.setLeft(7);
    rect.setRight(6);
    ExpectBounds(rect, 7, 8, 6, 9);
    rect.MakeEmpty();
    ExpectBounds(rect, 0, 0, 0, 0);
}

TEST(CPolygonTest, TakesTheBoundsOfItsFirstPartAlsoFarAway)
{
    CPolygon polygon;
    polygon.Add(Part({{5000, 7000}, {5010, 7020}}));
    ExpectBounds(polygon, 5000, 7000, 5010, 7020);
    polygon.Add(Part({{4999, 7001}, {5005, 7030}}));
    ExpectBounds(polygon, 4999, 7000, 5010, 7030);
    EXPECT_EQ(polygon.Count(), 2);
    EXPECT_EQ(polygon.Item(2)->Left(), 4999);
}

TEST(CPartTest, ShrinksWhenItsExtremePointGoes)
{
    auto part = Part({{0, 0}, {100, 50}, {10, 10}});
    part->Remove(2);
    ExpectBounds(*part, 0, 0, 10, 10);
    part->Remove(1);
    ExpectBounds(*part, 10, 10, 10, 10);
    part->Remove(1);
    ExpectBounds(*part, 0, 0, 0, 0);
    EXPECT_EQ(part->Count(), 0);
}

TEST(CPolygonTest, KeepsItsBoundsWhenItsExtremePartGoes)
{
    CPolygon polygon;
    polygon.Add(Part({{0, 0}, {10, 10}}));
    polygon.Add(Part({{90, 90}, {100, 100}}));
    polygon.Remove(2);
    EXPECT_EQ(polygon.Count(), 1);
    ExpectBounds(polygon, 0, 0, 100, 100);
}

TEST(CMultiPointTest, KeepsItsBoundsWhenAPointGoes)
{
    CMultiPoint points;
    points.Add(Point(-5, 2));
    points.Add(Point(7, 30));
    ExpectBounds(points, -5, 2, 7, 30);
    points.Remove(1);
    ExpectBounds(points, -5, 2, 7, 30);
    EXPECT_EQ(points.Item(1)->X(), 7);
}

TEST(ShapeCollectionTest, AnIndexOutOfRangeIsARunTimeFailure)
{
    CPolyLine line;
    line.Add(Part({{1, 1}}));
    for (const int index : {-1, 0, 2}) {
        EXPECT_THROW((void)line.Item(index), Fout);
        EXPECT_THROW(line.Remove(index), Fout);
    }
    EXPECT_NO_THROW((void)line.Item(1));
    try {
        (void)line.Item(2);
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Description(), "Element 2 bestaat niet; er zijn er 1.");
    }
}

TEST(ShapeCollectionTest, IsWalkedInOrder)
{
    double sum = 0;
    double factor = 1;
    const auto part = Part({{1, 0}, {2, 0}, {3, 0}});
    for (const auto& point : *part) {
        sum += factor * point->X();
        factor *= 10;
    }
    EXPECT_EQ(sum, 321);
}

TEST(AddTest, RefusesObjectsOfAnotherTypeAndChangesNothing)
{
    CPart part;
    ExpectFout(0x8004020F, "CPart::Add", "CPart can only accept objects of type CPoint",
               [&] { part.Add(std::make_shared<CPart>()); });
    CMultiPoint points;
    ExpectFout(0x8004020F, "CMultiPoint::Add",
               "CMultiPoint Add can only accept objects of type CPoints",
               [&] { points.Add(std::make_shared<CRect>()); });
    CPolyLine line;
    ExpectFout(0x8004020F, "CPolyLine::Add", "CPolyLine Add can only accept objects of type CPart",
               [&] { line.Add(std::make_shared<CPolygon>()); });
    CPolygon polygon;
    polygon.Add(Part({{1, 2}, {3, 4}}));
    ExpectFout(0x8004020F, "CPolygon::Add", "CPolygon Add can only accept objects of type CPart",
               [&] { polygon.Add(Point(100, 100)); });
    EXPECT_EQ(polygon.Count(), 1);
    ExpectBounds(polygon, 1, 2, 3, 4);
    EXPECT_ANY_THROW(polygon.Add(nullptr));
}

// --- distances

TEST(DistanceTest, BetweenPoints)
{
    EXPECT_EQ(CPoint(1, 2).Distance(CPoint(4, 6)), 5);
}

TEST(DistanceTest, ToANullShapeIsAFailure)
{
    CPoint point(1, 1);
    CPoint null;
    null.MakeNull(true);
    const QString source = "CPoint::IShape_Distance";
    const QString text = "Cannot compute distance to a null shape";
    ExpectFout(0x80040212, source, text, [&] { (void)point.Distance(null); });
    ExpectFout(0x80040212, source, text, [&] { (void)null.Distance(point); });
}

TEST(DistanceTest, ToAnEdgeIsTheFootOfThePerpendicular)
{
    CPolyLine line;
    line.Add(Part({{0, 0}, {10, 0}, {10, 10}}));
    EXPECT_EQ(CPoint(8, -3).Distance(line), 3);
    EXPECT_EQ(CPoint(13, 4).Distance(line), 3);
    EXPECT_EQ(CPoint(13, -4).Distance(line), 5); // beyond the corner: the vertex
    EXPECT_EQ(CPoint(-3, -4).Distance(line), 5); // before the first vertex
    EXPECT_EQ(CPoint(10, 13).Distance(line), 3); // behind the last
}

TEST(DistanceTest, LooksAtTheEdgesOfTheNearestVertexOnly)
{
    // The long edge passes at 1 metre, but the nearest vertex of the part is
    // the far end of the short edge.
    CPolyLine line;
    line.Add(Part({{-100, 1}, {100, 1}, {100, 50}, {0, 9}}));
    EXPECT_NEAR(CPoint(0, 0).Distance(line), 9, 1e-12);
}

TEST(DistanceTest, APartThatCannotBeatAnEarlierOneKeepsItsFirstVertex)
{
    // Vertex (5, 6) of the second part is not nearer than (0, 5): the part's
    // index stays at 1 and its edge at (5, 6) is not looked at.
    CPolygon polygon;
    polygon.Add(Part({{0, 5}}));
    polygon.Add(Part({{90, 90}, {5, 6}, {-5, 1}}));
    EXPECT_EQ(CPoint(0, 0).Distance(polygon), 5);
    CPolygon alone;
    alone.Add(polygon.Item(2));
    EXPECT_LT(CPoint(0, 0).Distance(alone), 4);
}

TEST(DistanceTest, ToAPartOfOnePointIsThatOfTheVertex)
{
    CPolygon polygon;
    polygon.Add(Part({{3, 4}}));
    EXPECT_EQ(CPoint(0, 0).Distance(polygon), 5);
}

TEST(DistanceTest, TwoEqualPointsInARowAreARunTimeFailure)
{
    CPolyLine line;
    line.Add(Part({{3, 4}, {3, 4}, {10, 10}}));
    EXPECT_THROW((void)CPoint(0, 0).Distance(line), Fout);
}

TEST(DistanceTest, AnythingElseShowsABoxAndGivesZero)
{
    NotedBoxes boxes;
    gBoxes.Refer(boxes);
    const CPoint point(1, 1);
    const CRect rect;
    const CMultiPoint points;
    const CPolyLine line;
    const CPolygon polygon;
    EXPECT_EQ(point.Distance(rect), 0);
    EXPECT_EQ(point.Distance(points), 0);
    EXPECT_EQ(rect.Distance(point), 0);
    EXPECT_EQ(points.Distance(point), 0);
    EXPECT_EQ(line.Distance(point), 0);
    EXPECT_EQ(polygon.Distance(point), 0);
    gBoxes.Release();
    EXPECT_EQ(boxes.errors, QStringList(6, "NOT IMPLEMENTED"));
    EXPECT_EQ(point.Distance(rect), 0) << "without boxes, too";
}
