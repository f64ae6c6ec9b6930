#include "mainwindow/PaneSizes.h"

#include "Installation.h"

#include <gtest/gtest.h>

namespace {

TEST(PaneSizesTest, AbsentKeysGiveTheDefaults)
{
    const Installation installation;
    PaneSizes sizes;
    sizes.Initialize(gIniFile());
    EXPECT_EQ(sizes.GetHeightFactor(1), 0.8);
    EXPECT_EQ(sizes.GetWidthFactor(1), 0.65);
    EXPECT_EQ(sizes.GetHeightFactor(3), 0.3);
    EXPECT_FALSE(sizes.Initialized());
}

TEST(PaneSizesTest, FactorsAreReadWithEitherDecimalSign)
{
    const Installation installation;
    gIniFile().SaveString("SETTINGS", "PANE_TOP0_HeightFactor", "0.7");
    gIniFile().SaveString("SETTINGS", "PANE_TOP0_WidthFactor", "0,5");
    PaneSizes sizes;
    sizes.Initialize(gIniFile());
    EXPECT_EQ(sizes.GetHeightFactor(1), 0.7);
    EXPECT_EQ(sizes.GetWidthFactor(1), 0.5);
}

TEST(PaneSizesTest, AFactorThatIsNoneLeavesTheDefault)
{
    const Installation installation;
    gIniFile().SaveString("SETTINGS", "PANE_TOP0_HeightFactor", "breed");
    gIniFile().SaveString("SETTINGS", "PANE_TOP0_WidthFactor", "7");
    PaneSizes sizes;
    sizes.Initialize(gIniFile());
    EXPECT_EQ(sizes.GetHeightFactor(1), 0.8);
    EXPECT_EQ(sizes.GetWidthFactor(1), 0.65);
}

TEST(PaneSizesTest, NothingIsSetBeforeItIsInitialized)
{
    PaneSizes sizes;
    sizes.SetHeightFactor(1, 0.4);
    sizes.SetWidthFactor(1, 0.4);
    EXPECT_EQ(sizes.GetHeightFactor(1), 0.8);
    sizes.setInitialized(true);
    sizes.SetHeightFactor(1, 0.4);
    sizes.SetWidthFactor(1, 0.3);
    EXPECT_EQ(sizes.GetHeightFactor(1), 0.4);
    EXPECT_EQ(sizes.GetWidthFactor(1), 0.3);
}

TEST(PaneSizesTest, FactorsSurviveARestart)
{
    const Installation installation;
    PaneSizes sizes;
    sizes.setInitialized(true);
    sizes.SetHeightFactor(1, 0.55);
    sizes.SetHeightFactor(3, 0.25);
    sizes.SavePanes(gIniFile());
    EXPECT_EQ(gIniFile().GetString("SETTINGS", "PANE_TOP0_HeightFactor"), "0.55");
    PaneSizes next;
    next.Initialize(gIniFile());
    EXPECT_EQ(next.GetHeightFactor(1), 0.55);
    EXPECT_EQ(next.GetWidthFactor(1), 0.65);
    EXPECT_EQ(next.GetHeightFactor(3), 0.25);
}

TEST(PaneSizesTest, AnIndexOutsideOneToThreeIsRefused)
{
    const PaneSizes sizes;
    EXPECT_THROW((void)sizes.GetHeightFactor(0), std::out_of_range);
    EXPECT_THROW((void)sizes.GetWidthFactor(4), std::out_of_range);
}

} // namespace
