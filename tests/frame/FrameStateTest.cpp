// Busy count, map extent, status bar, global objects.
#include "frame/Busy.h"
#include "frame/MapExtent.h"
#include "frame/Platform.h"
#include "frame/Ports.h"
#include "frame/QLMIniFile.h"

#include "FrameTestTools.h"

#include <QElapsedTimer>

#include <vector>

namespace {

class BusyTest : public testing::Test {
protected:
    BusyTest()
    {
        SetCursorHook([this](int mode) { m_cursors.push_back(mode); });
    }
    ~BusyTest() override
    {
        while (BusyCount() > 0)
            ResetBusy();
        SetCursorHook({});
    }
    std::vector<int> m_cursors;
};

class FakeMap : public ExtentMap {
public:
    void SetExtent(const MapRectangle& extent) override { m_extent = extent; }
    void Refresh() override { m_refreshedAt = m_extent; }
    MapRectangle m_extent;
    MapRectangle m_refreshedAt;
};

class FakeStatusBar : public StatusBar {
public:
    void ShowProgress(int) override {}
    void SetProgress(int) override {}
    void HideProgress() override {}
    QString m_text = "oud";

protected:
    QString StatusText() const override { return m_text; }
    void ShowStatusText(const QString& text) override { m_text = text; }
};

class FrameStateTest : public FrameTest {};

} // namespace

TEST_F(BusyTest, NestedOperationsKeepTheHourglassUntilTheOutermostEnds)
{
    SetBusy();
    {
        const BusyScope inner;
        EXPECT_EQ(BusyCount(), 2);
    }
    EXPECT_EQ(m_cursors.back(), kPointerHourglass);
    ResetBusy();
    EXPECT_EQ(m_cursors, (std::vector<int>{11, 11, 11, 0}));
}

TEST_F(BusyTest, AResetTooManyDoesNoHarm)
{
    ResetBusy();
    ResetBusy();
    EXPECT_EQ(BusyCount(), 0);
    SetBusy();
    EXPECT_EQ(m_cursors.back(), kPointerHourglass);
}

TEST_F(BusyTest, OtherModesGoStraightToTheCursor)
{
    SetBusy();
    SetMousePointerMode(2);
    EXPECT_EQ(m_cursors.back(), 2);
    EXPECT_EQ(BusyCount(), 1);
}

TEST_F(BusyTest, AScopeEndsOnAnException)
{
    try {
        const BusyScope busy;
        throw std::runtime_error("x");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(BusyCount(), 0);
}

TEST_F(FrameStateTest, TheFullExtentHasAMarginOfATwentiethOnEachSide)
{
    // 100 km wide, 60 km high.
    EXPECT_EQ(FullExtent({100000, 460000, 200000, 400000}),
              (MapRectangle{95000, 463000, 205000, 397000}));
}

TEST_F(FrameStateTest, TheMarginOfASmallExtentIsThatOf25Kilometres)
{
    EXPECT_EQ(FullExtent({1000, 2000, 1010, 2000}), (MapRectangle{-250, 3250, 2260, 750}));
}

TEST_F(FrameStateTest, WithoutALayerTheExtentComesFromTheIni)
{
    EXPECT_EQ(FullExtent({5, 9, 5, 1}), (MapRectangle{-7000, 629000, 300000, 289000}));
    WriteProgramIni("[Shapes]\r\nextent=1|4.5|3|2\r\n");
    gIniFile.Release();
    EXPECT_EQ(FullExtent({}), (MapRectangle{1, 4, 3, 2})) << "whole numbers, halves to even";
    gIniFile.Release();
    WriteProgramIni("[Shapes]\r\nextent=1|2\r\n");
    EXPECT_EQ(FullExtent({}), (MapRectangle{1, 2, 0, 0}));
    gIniFile.Release();
    WriteProgramIni("[Shapes]\r\nextent=1e999|x|-99999999999|2\r\n");
    EXPECT_EQ(FullExtent({}), (MapRectangle{0, 0, 0, 2})) << "damaged";
}

TEST_F(FrameStateTest, SetMapFullExtentRefreshesAfterSetting)
{
    FakeMap map;
    SetMapFullExtent(map, {100000, 460000, 200000, 400000});
    EXPECT_EQ(map.m_extent, (MapRectangle{95000, 463000, 205000, 397000}));
    EXPECT_EQ(map.m_refreshedAt, map.m_extent);
}

TEST_F(FrameStateTest, TheStatusBarReturnsTheTextThatStoodThere)
{
    FakeStatusBar bar;
    EXPECT_EQ(bar.SetStatusBarText("nieuw"), "oud");
    EXPECT_EQ(bar.SetStatusBarText("   "), "nieuw");
    EXPECT_EQ(bar.m_text, "nieuw") << "a blank text only asks";
    EXPECT_EQ(bar.ClearStatusBarText(), "nieuw");
    EXPECT_EQ(bar.m_text, "");
}

TEST_F(FrameStateTest, StatusBarTextsByNumber)
{
    WriteProgramIni("[StatusBarTeksten]\r\nsbt.0005=Bezig met %1\r\n");
    FakeStatusBar bar;
    EXPECT_EQ(bar.SetStatusBarTextByNumber("0"), "oud");
    EXPECT_EQ(bar.SetStatusBarTextByNumber("-1"), "oud");
    EXPECT_EQ(bar.SetStatusBarTextByNumber("x"), "oud");
    EXPECT_EQ(bar.m_text, "oud");
    EXPECT_EQ(bar.SetStatusBarTextByNumber("5", {"lezen"}), "oud");
    EXPECT_EQ(bar.m_text, "Bezig met lezen");
    EXPECT_EQ(bar.SetStatusBarTextByNumber(6), "Bezig met lezen");
    EXPECT_EQ(bar.m_text, "sbt.0006");
}

TEST_F(FrameStateTest, GlobalObjectsOfTheFrameComeOnDemand)
{
    EXPECT_FALSE(gIniFile.Exists());
    EXPECT_EQ(gIniFile().file(), Folder() + "/Zandvoet.ini");
    EXPECT_TRUE(gIniFile.Exists());
    EXPECT_EQ(&gIniFile(), &gIniFile());
}

TEST_F(FrameStateTest, ReleasingTheIniWritesItsChanges)
{
    gIniFile().SaveString("SETTINGS", "frmMainLeft", "12");
    gIniFile.Release();
    EXPECT_EQ(ReadBytes(Path("Zandvoet.ini")), "[SETTINGS]\r\nfrmMainLeft=12");
}

TEST_F(FrameStateTest, AGlobalOfAHigherFloorIsMissingUntilItIsSet)
{
    EXPECT_FALSE(gBoxes.Exists());
    EXPECT_EQ(gBoxes.Get(), nullptr);
    EXPECT_THROW(gBoxes(), std::logic_error);
}

TEST_F(FrameStateTest, AGlobalMayReferToAnObjectThatSomebodyElseOwns)
{
    QLMIniFile own(Path("eigen.ini"));
    gIniFile.Refer(own);
    EXPECT_EQ(&gIniFile(), &own);
    gIniFile.Release();
    own.SaveString("a", "b", "c"); // still alive
    EXPECT_TRUE(own.Save());
}

TEST(ScreenSaver, IsSwitchedWithoutWaitingForADesktop)
{
    QElapsedTimer timer;
    timer.start();
    platform::SetScreenSaverActive(true); // nothing was inhibited
    platform::SetScreenSaverActive(false);
    platform::SetScreenSaverActive(false);
    platform::SetScreenSaverActive(true);
    EXPECT_LT(timer.elapsed(), 1000);
}
