#include "maps/Colormap.h"

#include <gtest/gtest.h>

namespace {

int Rgb(int r, int g, int b)
{
    return r + 256 * g + 65536 * b;
}

/// Colours 1 to `m` of a palette.
std::vector<int> Kleuren(const QString& palet, int m)
{
    Colormap kaart;
    int gevraagd = m;
    kaart.NumberOfValues(gevraagd, palet);
    std::vector<int> kleuren;
    for (int i = 1; i <= m; ++i)
        kleuren.push_back(kaart.kleur(i));
    return kleuren;
}

} // namespace

TEST(ColormapTest, IsCalledDefaultUntilAPaletteIsChosen)
{
    Colormap kaart;
    EXPECT_EQ(kaart.Kleurenpalet(), "default");
    int m = 3;
    kaart.NumberOfValues(m, "cool");
    EXPECT_EQ(kaart.Kleurenpalet(), "cool");
    m = 3;
    kaart.NumberOfValues(m, "");
    EXPECT_EQ(kaart.Kleurenpalet(), "cool") << "an empty name keeps the palette";
}

TEST(ColormapTest, RaisesTheCallersCount)
{
    Colormap kaart;
    int m = 5;
    kaart.NumberOfValues(m, "gray");
    EXPECT_EQ(m, 6);
}

TEST(ColormapTest, BelowOneValueOnlyTheNameChanges)
{
    Colormap kaart;
    int m = 5;
    kaart.NumberOfValues(m, "gray");
    m = 0;
    kaart.NumberOfValues(m, "spring");
    EXPECT_EQ(m, 0);
    EXPECT_EQ(kaart.Kleurenpalet(), "spring");
    EXPECT_EQ(kaart.kleur(2), Rgb(51, 51, 51)) << "the colours are still the grays";
}

TEST(ColormapTest, FiveGraysEndBeforeWhite)
{
    EXPECT_EQ(Kleuren("gray", 5), (std::vector<int>{0, Rgb(51, 51, 51), Rgb(102, 102, 102),
                                                    Rgb(153, 153, 153), Rgb(204, 204, 204)}));
}

TEST(ColormapTest, OutsideThePaletteIsZero)
{
    Colormap kaart;
    EXPECT_EQ(kaart.kleur(1), 0);
    int m = 5;
    kaart.NumberOfValues(m, "autumn");
    EXPECT_EQ(kaart.kleur(0), 0);
    EXPECT_EQ(kaart.kleur(-1), 0);
    EXPECT_NE(kaart.kleur(5), 0);
    EXPECT_EQ(kaart.kleur(6), 0) << "the last element is never given out";
}

TEST(ColormapTest, RampsStartAndRiseAsTold)
{
    // x = 0 and 0.5; halves round to even (127.5 is 128, 63.75 is 64).
    EXPECT_EQ(Kleuren("spring", 2), (std::vector<int>{Rgb(255, 0, 255), Rgb(255, 128, 128)}));
    EXPECT_EQ(Kleuren("summer", 2), (std::vector<int>{Rgb(0, 128, 102), Rgb(128, 191, 102)}));
    EXPECT_EQ(Kleuren("autumn", 2), (std::vector<int>{Rgb(255, 0, 0), Rgb(255, 128, 0)}));
    EXPECT_EQ(Kleuren("winter", 2), (std::vector<int>{Rgb(0, 0, 255), Rgb(0, 128, 191)}));
    EXPECT_EQ(Kleuren("cool", 2), (std::vector<int>{Rgb(0, 255, 255), Rgb(128, 128, 255)}));
    // 0.5 x 1.25 = 0.625 -> 159.375; 0.3906 -> 99.603; 0.24875 -> 63.43
    EXPECT_EQ(Kleuren("copper", 2), (std::vector<int>{0, Rgb(159, 100, 63)}));
}

TEST(ColormapTest, CopperStopsAtFullRed)
{
    EXPECT_EQ(Kleuren("copper", 10).back() & 0xFF, 255) << "0.9 x 1.25 is above 1";
}

TEST(ColormapTest, DefaultRunsFromBlueOverGreenToRed)
{
    // x = 4.1 i / 4: 1.025, 2.05, 3.075.
    EXPECT_EQ(Kleuren("default", 3),
              (std::vector<int>{Rgb(0, 134, 255), Rgb(140, 255, 140), Rgb(255, 134, 0)}));
}

TEST(ColormapTest, HotRisesInRedThenGreenThenBlue)
{
    // M = 8, k = 3: r = i/3 up to 3; g = (i-3)/3 up to 6; b = (i-6)/2 beyond.
    EXPECT_EQ(Kleuren("hot", 7),
              (std::vector<int>{Rgb(85, 0, 0), Rgb(170, 0, 0), Rgb(255, 0, 0), Rgb(255, 85, 0),
                                Rgb(255, 170, 0), Rgb(255, 255, 0), Rgb(255, 255, 128)}));
    EXPECT_EQ(Kleuren("hot", 1), (std::vector<int>{Rgb(255, 255, 128)})) << "k is 0 then";
}

TEST(ColormapTest, NamesAreComparedInLowerCaseAndUnknownOnesAreBlack)
{
    EXPECT_EQ(Kleuren("GRAY", 3), Kleuren("gray", 3));
    EXPECT_EQ(Kleuren("regenboog", 3), (std::vector<int>{0, 0, 0}));
}

TEST(ColormapTest, ANumberIsRedPlus256GreenPlus65536Blue)
{
    EXPECT_EQ(KleurVanGetal(Rgb(1, 2, 3)), QColor(1, 2, 3));
}
