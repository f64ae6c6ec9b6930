#include "maps/ui/MapView.h"
#include "Installation.h"

#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace {

class MapViewTest : public testing::Test {
protected:
    MapViewTest()
    {
        map.resize(400, 200);
        map.show();
        map.SetPoints({{1000, 1000, "Plas-01", Qt::red},
                       {1040, 1000, "Plas-02", Qt::blue},
                       {3000, 500, "Plas-03", Qt::green}});
        map.SetExtent({0, 2000, 4000, 0}); // 10 m a pixel
    }
    void SetTool(MapView::Tool tool) { map.SetTool(tool, Qt::CrossCursor); }
    void Drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(&map, button, {}, from);
        Move(to, button);
        QTest::mouseRelease(&map, button, {}, to);
    }
    void Move(QPoint to, Qt::MouseButtons buttons = Qt::NoButton)
    {
        QMouseEvent event(QEvent::MouseMove, to, map.mapToGlobal(to), Qt::NoButton, buttons, {});
        QApplication::sendEvent(&map, &event);
    }
    void ExpectExtent(double left, double top, double right, double bottom)
    {
        const MapRectangle extent = map.Transform().Extent();
        EXPECT_NEAR(extent.left, left, 1e-6);
        EXPECT_NEAR(extent.top, top, 1e-6);
        EXPECT_NEAR(extent.right, right, 1e-6);
        EXPECT_NEAR(extent.bottom, bottom, 1e-6);
    }
    QStringList Chosen()
    {
        return chosen.isEmpty() ? QStringList() : chosen.takeFirst()[0].toStringList();
    }

    Installation installation;
    MapView map;
    QSignalSpy chosen{&map, &MapView::PointsChosen};
};

TEST_F(MapViewTest, WithNothingShownTheMapHasTheExtentOfTheIni)
{
    gIniFile().SaveString("Shapes", "extent", "0|2000|4000|1000");
    MapView fresh;
    fresh.resize(400, 100);
    fresh.show();
    const MapRectangle extent = fresh.Transform().Extent();
    EXPECT_DOUBLE_EQ(extent.left, 0);
    EXPECT_DOUBLE_EQ(extent.top, 2000);
}

TEST_F(MapViewTest, TheExtentOfThePointsGoesAroundAllOfThem)
{
    EXPECT_EQ(map.PointExtent(), (MapRectangle{1000, 1000, 3000, 500}));
    map.SetPoints({});
    EXPECT_EQ(map.PointExtent(), MapRectangle{});
}

TEST_F(MapViewTest, TheMouseTellsItsPlaceInMapCoordinates)
{
    QSignalSpy moved(&map, &MapView::MouseMoved);
    Move({100, 50});
    ASSERT_EQ(moved.count(), 1);
    EXPECT_DOUBLE_EQ(moved[0][0].toDouble(), 1000);
    EXPECT_DOUBLE_EQ(moved[0][1].toDouble(), 1500);
}

TEST_F(MapViewTest, AClickChoosesTheNearestPointInReach)
{
    SetTool(MapView::Tool::Select);
    QTest::mouseClick(&map, Qt::LeftButton, {}, {103, 100}); // Plas-01 at 100, Plas-02 at 104
    EXPECT_EQ(Chosen(), QStringList{"Plas-02"});
    QTest::mouseClick(&map, Qt::LeftButton, {}, {95, 100});
    EXPECT_EQ(Chosen(), QStringList{"Plas-01"});
    QTest::mouseClick(&map, Qt::LeftButton, {}, {80, 100});
    EXPECT_EQ(chosen.count(), 0);
}

TEST_F(MapViewTest, ARectangleChoosesAllPointsInside)
{
    SetTool(MapView::Tool::Box);
    Drag({150, 150}, {50, 50});
    EXPECT_EQ(Chosen(), (QStringList{"Plas-01", "Plas-02"}));
    Drag({0, 0}, {20, 20});
    EXPECT_EQ(chosen.count(), 0);
    ExpectExtent(0, 2000, 4000, 0);
}

TEST_F(MapViewTest, ZoomingInMakesTheRectangleTheExtent)
{
    SetTool(MapView::Tool::ZoomIn);
    Drag({100, 50}, {300, 150});
    ExpectExtent(1000, 1500, 3000, 500);
    EXPECT_EQ(chosen.count(), 0);
}

TEST_F(MapViewTest, AClickWithTheZoomToolTakesOneStepIn)
{
    SetTool(MapView::Tool::ZoomIn);
    QTest::mouseClick(&map, Qt::LeftButton, {}, {200, 100});
    EXPECT_NEAR(map.Transform().MetresPerPixel(), 10 / 1.5, 1e-9);
}

TEST_F(MapViewTest, ZoomingOutScalesTheExtentAroundItsCentre)
{
    SetTool(MapView::Tool::ZoomOut);
    QTest::mouseClick(&map, Qt::LeftButton, {}, {10, 10});
    ExpectExtent(-1000, 2500, 5000, -500);
}

TEST_F(MapViewTest, PanningFollowsTheMouseAndGivesThePointerBack)
{
    SetTool(MapView::Tool::Pan);
    QTest::mousePress(&map, Qt::LeftButton, {}, {100, 100});
    EXPECT_EQ(map.cursor().shape(), Qt::ClosedHandCursor);
    Move({150, 80}, Qt::LeftButton);
    QTest::mouseRelease(&map, Qt::LeftButton, {}, {150, 80});
    ExpectExtent(-500, 1800, 3500, -200);
    EXPECT_EQ(map.cursor().shape(), Qt::CrossCursor);
    Move({10, 10});
    ExpectExtent(-500, 1800, 3500, -200);
}

TEST_F(MapViewTest, TheMiddleButtonPansWhateverTheTool)
{
    SetTool(MapView::Tool::Select);
    Drag({100, 100}, {110, 100}, Qt::MiddleButton);
    ExpectExtent(-100, 2000, 3900, 0);
}

TEST_F(MapViewTest, TheWheelZoomsAroundTheMouse)
{
    const QPointF place = map.Transform().ToMap({100, 50});
    QWheelEvent event({100, 50}, map.mapToGlobal(QPointF(100, 50)), {}, {0, 120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&map, &event);
    EXPECT_NEAR(map.Transform().MetresPerPixel(), 8, 1e-9);
    const QPointF after = map.Transform().ToMap({100, 50});
    EXPECT_NEAR(after.x(), place.x(), 1e-6);
    EXPECT_NEAR(after.y(), place.y(), 1e-6);
}

TEST_F(MapViewTest, TheKeyboardPansAndZooms)
{
    QTest::keyClick(&map, Qt::Key_Right);
    ExpectExtent(400, 2000, 4400, 0);
    QTest::keyClick(&map, Qt::Key_Up);
    ExpectExtent(400, 2400, 4400, 400);
    QTest::keyClick(&map, Qt::Key_Plus);
    EXPECT_NEAR(map.Transform().MetresPerPixel(), 10 / 1.5, 1e-9);
    QTest::keyClick(&map, Qt::Key_Minus);
    EXPECT_NEAR(map.Transform().MetresPerPixel(), 10, 1e-9);
}

TEST_F(MapViewTest, TheSelectionIsDrawnByNameWithoutRegardToCase)
{
    map.SetSelection({"PLAS-03"});
    const QImage image = map.grab().toImage();
    EXPECT_EQ(image.pixelColor(306, 150), QColor(255, 255, 0)); // 300 is the centre
    EXPECT_EQ(image.pixelColor(94, 100), QColor(Qt::white));
}

TEST_F(MapViewTest, AMouseThatRestsOnAPointIsToldItsName)
{
    Move({101, 99});
    EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text() == "Plas-01"; }, 2000));
    Move({250, 20}); // away from all points
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }, 2000));
    QTest::qWait(150);
    EXPECT_FALSE(QToolTip::isVisible());
}

TEST_F(MapViewTest, NamesStayWhereTheyAreWhileTheMapMoves)
{
    map.SetLabels(true, map.font(), Qt::black);
    map.SetPoints({{2000, 1000, "Plas-01", Qt::red}});
    const QImage before = map.grab().toImage();
    SetTool(MapView::Tool::Pan);
    Drag({100, 100}, {130, 110});
    const QImage after = map.grab().toImage();
    const QRect around(150, 80, 130, 40);
    EXPECT_EQ(after.copy(around.translated(30, 10)), before.copy(around));
}

TEST_F(MapViewTest, PointsOnADarkDesktopAreDrawnOnDarkPaperWithALightRim)
{
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(0x1F, 0x21, 0x23));
    dark.setColor(QPalette::Text, Qt::white);
    map.setPalette(dark);
    const QImage image = map.grab().toImage();
    EXPECT_EQ(image.pixelColor(200, 20), QColor(0x1F, 0x21, 0x23));
    EXPECT_EQ(image.pixelColor(104, 100), QColor(Qt::blue));
    EXPECT_GT(qGray(image.pixel(108, 100)), qGray(qRgb(0, 0, 255)) + 30); // its rim
}

} // namespace
