#include "profiles/HRProfiel.h"

#include <gtest/gtest.h>

namespace {

struct Punt {
    float x, y;
    float r = 0.9F;
    bool gras = false;
};

HRProfiel Talud(std::initializer_list<Punt> punten, qint16 voorland = 1)
{
    HRProfiel profiel;
    profiel.setNaam("P1");
    profiel.setVoorland(voorland);
    for (const Punt& punt : punten)
        profiel.AddXYR(punt.x, punt.y, punt.r, punt.gras);
    return profiel;
}

HRProfiel Wand(std::initializer_list<Punt> punten)
{
    HRProfiel profiel = Talud(punten);
    profiel.setDamwandmodule(1);
    return profiel;
}

/// The message number of the first broken rule, 0 when the profile is valid.
int Melding(const HRProfiel& profiel)
{
    int melding = -1;
    int index = -1;
    const bool goed = profiel.ControleerProfiel(melding, index);
    EXPECT_EQ(goed, melding == 0);
    return melding;
}

int IndexVanFout(const HRProfiel& profiel)
{
    int melding = 0;
    int index = -99;
    EXPECT_FALSE(profiel.ControleerProfiel(melding, index));
    return index;
}

} // namespace

TEST(HRProfielTest, IsEmptyWhenNew)
{
    const HRProfiel profiel;
    EXPECT_TRUE(profiel.Naam().isEmpty());
    EXPECT_EQ(profiel.AantalProfielpunten(), 0);
    EXPECT_EQ(profiel.Damtype(), 0);
    EXPECT_EQ(profiel.Taludhelling(), 0);
    EXPECT_FALSE(profiel.Palenrij());
    EXPECT_FALSE(profiel.HeeftDam());
    EXPECT_FALSE(profiel.HeeftVoorland());
}

TEST(HRProfielTest, ReadsMinus99999OutsideThePoints)
{
    HRProfiel profiel = Talud({{1, 2}, {3, 4}});
    EXPECT_EQ(profiel.Xcoord(0), -99999);
    EXPECT_EQ(profiel.Xcoord(1), 1);
    EXPECT_EQ(profiel.Xcoord(2), 3);
    EXPECT_EQ(profiel.Xcoord(3), -99999);
    EXPECT_EQ(profiel.Ycoord(3), -99999);
    EXPECT_EQ(profiel.Ruwheid(3), -99999);
    EXPECT_FALSE(profiel.Gras(3));
}

TEST(HRProfielTest, IgnoresASetOutsideThePoints)
{
    HRProfiel profiel = Talud({{1, 2}, {3, 4}});
    profiel.setXcoord(0, 50);
    profiel.setXcoord(3, 50);
    profiel.setYcoord(3, 50);
    EXPECT_EQ(profiel.Xcoord(1), 1);
    EXPECT_EQ(profiel.Xcoord(2), 3);
    EXPECT_EQ(profiel.Ycoord(2), 4);
    EXPECT_EQ(profiel.AantalProfielpunten(), 2);
}

TEST(HRProfielTest, SetsACoordinateOfOnePoint)
{
    HRProfiel profiel = Talud({{1, 2}, {3, 4}});
    profiel.setXcoord(2, 50);
    profiel.setYcoord(1, 60);
    EXPECT_EQ(profiel.Xcoord(1), 1);
    EXPECT_EQ(profiel.Xcoord(2), 50);
    EXPECT_EQ(profiel.Ycoord(1), 60);
    EXPECT_EQ(profiel.Ycoord(2), 4);
}

TEST(HRProfielTest, PointsAddedAfterClearingAreTheOnlyOnes)
{
    HRProfiel profiel = Talud({{0, 0}, {1, 1, 0.5F, true}});
    profiel.ClearXYR();
    profiel.AddXYR(7, 8, 0.9F, false);
    EXPECT_EQ(profiel.AantalProfielpunten(), 1);
    EXPECT_EQ(profiel.Xcoord(1), 7);
    EXPECT_EQ(profiel.Ruwheid(1), 0.9F);
    EXPECT_FALSE(profiel.Gras(1));
}

TEST(HRProfielTest, GrassHasRoughnessOneWhateverWasGiven)
{
    const HRProfiel profiel = Talud({{0, 0, 0.5F, true}, {1, 1, 0.5F, false}});
    EXPECT_EQ(profiel.Ruwheid(1), 1);
    EXPECT_TRUE(profiel.Gras(1));
    EXPECT_EQ(profiel.Ruwheid(2), 0.5F);
    EXPECT_FALSE(profiel.Gras(2));
}

TEST(HRProfielTest, ClearXYRRemovesAllPoints)
{
    HRProfiel profiel = Talud({{0, 0}, {1, 1}});
    profiel.ClearXYR();
    EXPECT_EQ(profiel.AantalProfielpunten(), 0);
    EXPECT_EQ(profiel.Xcoord(1), -99999);
}

TEST(HRProfielTest, KnowsDamForeshoreAndToe)
{
    HRProfiel profiel = Talud({{0, -1}, {20, -0.5F}, {26, 1}}, 2);
    EXPECT_TRUE(profiel.HeeftVoorland());
    EXPECT_EQ(profiel.AantalSegmentenVoorland(), 1);
    EXPECT_EQ(profiel.TeenHoogte(), -0.5F);
    profiel.setDamtype(1);
    EXPECT_TRUE(profiel.HeeftDam());
    profiel.setVoorland(1);
    EXPECT_FALSE(profiel.HeeftVoorland());
    EXPECT_EQ(profiel.TeenHoogte(), -1);
}

TEST(HellingTest, IsRunOverRise)
{
    const HRProfiel profiel = Talud({{0, 0}, {6, 2}, {8, 1}});
    EXPECT_EQ(profiel.helling(1), 3);
    EXPECT_EQ(profiel.helling(2), 2) << "a falling segment has the slope of a rising one";
}

TEST(HellingTest, IsZeroForAHorizontalSegmentTheLastPointAndOutside)
{
    const HRProfiel profiel = Talud({{0, 1}, {6, 1}});
    EXPECT_EQ(profiel.helling(1), 0);
    EXPECT_EQ(profiel.helling(2), 0);
    EXPECT_EQ(profiel.helling(0), 0);
    EXPECT_EQ(profiel.helling(3), 0);
}

TEST(HellingTest, SetX2ByHellingMovesOnlyTheNextPoint)
{
    HRProfiel profiel = Talud({{1, 0}, {5, 2}, {9, 4}});
    profiel.SetX2ByHelling(1, 3);
    EXPECT_EQ(profiel.Xcoord(2), 7);
    EXPECT_EQ(profiel.Ycoord(2), 2);
    EXPECT_EQ(profiel.Xcoord(3), 9);
}

TEST(HellingTest, SetX2ByHellingLeavesAHorizontalSegment)
{
    HRProfiel profiel = Talud({{1, 2}, {5, 2}});
    profiel.SetX2ByHelling(1, 3);
    EXPECT_EQ(profiel.Xcoord(2), 5);
}

TEST(HellingTest, SetY2ByHellingAlwaysRises)
{
    HRProfiel profiel = Talud({{0, 5}, {6, 1}});
    profiel.SetY2ByHelling(1, 3);
    EXPECT_EQ(profiel.Ycoord(2), 7);
}

TEST(HellingTest, SetY2ByHellingWithZeroMakesTheSegmentHorizontal)
{
    HRProfiel profiel = Talud({{0, 5}, {6, 1}});
    profiel.SetY2ByHelling(1, 0);
    EXPECT_EQ(profiel.Ycoord(2), 5);
}

TEST(HellingTest, SetY2ByHellingLeavesAVerticalSegment)
{
    HRProfiel profiel = Talud({{6, 5}, {6, 1}});
    profiel.SetY2ByHelling(1, 3);
    EXPECT_EQ(profiel.Ycoord(2), 1);
}

TEST(ControleerProfielTest, PassesASlopeWithForeshore)
{
    EXPECT_EQ(Melding(Talud({{0, -1.6F}, {30, -1.2F}, {38, 0.8F}}, 2)), 0);
}

TEST(ControleerProfielTest, RefusesASlopeWithoutName)
{
    HRProfiel profiel = Talud({{0, 0}, {2, 1}});
    profiel.setNaam("");
    EXPECT_EQ(Melding(profiel), 106);
    EXPECT_EQ(IndexVanFout(profiel), -1);
}

TEST(ControleerProfielTest, PassesAWallWithoutNameOrPoints)
{
    HRProfiel wand = Wand({{0, 5}, {1, 0}});
    wand.setNaam("");
    EXPECT_EQ(Melding(wand), 0);
    EXPECT_EQ(Melding(Wand({})), 0);
    EXPECT_EQ(Melding(Wand({{0, 5}})), 0);
}

TEST(ControleerProfielTest, PassesASlopeOfFewerThanTwoPoints)
{
    EXPECT_EQ(Melding(Talud({})), 0);
    EXPECT_EQ(Melding(Talud({{0, 0}})), 0);
    int melding = 0, index = -99;
    EXPECT_TRUE(Talud({{0, 0}}).ControleerProfiel(melding, index));
    EXPECT_EQ(index, -1);
}

TEST(VoorlandregelsTest, XMustNotFall)
{
    const HRProfiel profiel = Wand({{0, 0}, {20, 0}, {15, 0}});
    EXPECT_EQ(Melding(profiel), 101);
    EXPECT_EQ(IndexVanFout(profiel), 2);
}

TEST(VoorlandregelsTest, LevelMustNotFall)
{
    EXPECT_EQ(Melding(Wand({{0, 1}, {20, 0}})), 102);
}

TEST(VoorlandregelsTest, XIsLookedAtBeforeLevel)
{
    EXPECT_EQ(Melding(Wand({{20, 1}, {0, 0}})), 101);
}

TEST(VoorlandregelsTest, AFallingLevelIsFoundBeforeANarrowSegment)
{
    EXPECT_EQ(Melding(Wand({{0, 1}, {5, 0}})), 102);
}

TEST(VoorlandregelsTest, ASegmentOfExactlyTenMetresPasses)
{
    EXPECT_EQ(Melding(Wand({{0, 0}, {10, 0}})), 0);
    EXPECT_EQ(Melding(Wand({{0, 0}, {9.9F, 0}})), 103);
}

TEST(VoorlandregelsTest, AGradientOfExactlyOneInTenPasses)
{
    EXPECT_EQ(Melding(Wand({{0, 0}, {10, 1}})), 0);
    EXPECT_EQ(Melding(Wand({{0, 0}, {10, 1.01F}})), 104);
}

TEST(VoorlandregelsTest, InFrontOfAWallEverythingIsForeshore)
{
    // As a dike this would be fine: 1 in 2.
    const HRProfiel profiel = Wand({{0, 0}, {20, 0.1F}, {29.9F, 0.2F}});
    EXPECT_EQ(Melding(profiel), 103);
    EXPECT_EQ(IndexVanFout(profiel), 2);
}

TEST(VoorlandregelsTest, ASlopeWithToeAtItsFirstPointHasNoForeshore)
{
    EXPECT_EQ(Melding(Talud({{0, 0}, {2, 1}}, 1)), 0) << "2 m wide, 1 in 2";
    EXPECT_EQ(Melding(Talud({{0, 0}, {2, 0.1F}, {4, 1.1F}}, 2)), 103);
}

TEST(DijkregelsTest, LevelIsLookedAtBeforeX)
{
    EXPECT_EQ(Melding(Talud({{2, 1}, {0, 0}})), 112);
    EXPECT_EQ(Melding(Talud({{2, 0}, {0, 1}})), 111);
}

TEST(DijkregelsTest, AVerticalSegmentIsRefused)
{
    EXPECT_EQ(Melding(Talud({{0, 0}, {2, 1}, {2, 2}, {4, 3}})), 113);
}

TEST(DijkregelsTest, FirstAndLastSegmentAreAtLeastOneInEight)
{
    EXPECT_EQ(Melding(Talud({{0, 0}, {8, 1}, {10, 2}})), 0) << "exactly 1 in 8 passes";
    EXPECT_EQ(Melding(Talud({{0, 0}, {9, 1}, {11, 2}})), 119);
    EXPECT_EQ(Melding(Talud({{0, 0}, {2, 1}, {11, 2}})), 119);
    EXPECT_EQ(Melding(Talud({{0, 0}, {2, 1}, {22, 1.1F}, {24, 2.1F}})), 0)
        << "a berm in the middle may be flatter";
    EXPECT_EQ(Melding(Talud({{0, 0}, {9, 1}})), 119) << "the only segment is first and last";
}

TEST(DijkregelsTest, NoSegmentIsSteeperThanOneInOne)
{
    EXPECT_EQ(Melding(Talud({{0, 0}, {1, 1}})), 0);
    EXPECT_EQ(Melding(Talud({{0, 0}, {1, 1.01F}})), 114);
}

TEST(DijkregelsTest, TheIndexCountsFromTheToe)
{
    const HRProfiel profiel = Talud({{0, 0}, {10, 0}, {20, 0}, {22, 1}, {23, 3}}, 3);
    EXPECT_EQ(Melding(profiel), 114);
    EXPECT_EQ(IndexVanFout(profiel), 2) << "point 4 of the profile, the second of the dike";
}

TEST(DijkregelsTest, AToeThatWasNeverSetCountsAsTheFirstPoint)
{
    EXPECT_EQ(Melding(Talud({{0, 0}, {2, 1}}, 0)), 0);
    const HRProfiel steil = Talud({{0, 0}, {1, 2}}, 0);
    EXPECT_EQ(Melding(steil), 114);
    EXPECT_EQ(IndexVanFout(steil), 1);
}

TEST(DijkregelsTest, ADikeOfOnePointHasNoSegments)
{
    EXPECT_EQ(Melding(Talud({{0, 0}, {10, 0}}, 2)), 0);
}

TEST(DamregelTest, TypeFourNeedsAPositiveSlope)
{
    HRProfiel profiel = Talud({{0, 0}, {2, 1}});
    profiel.setDamtype(4);
    EXPECT_EQ(Melding(profiel), 107);
    profiel.setTaludhelling(-1);
    EXPECT_EQ(Melding(profiel), 107);
    profiel.setTaludhelling(0.5F);
    EXPECT_EQ(Melding(profiel), 0);
    profiel.setDamtype(3);
    profiel.setTaludhelling(0);
    EXPECT_EQ(Melding(profiel), 0);
}

TEST(DamregelTest, HoldsForAWallWithoutNameOrPointsToo)
{
    HRProfiel wand = Wand({});
    wand.setNaam("");
    wand.setDamtype(4);
    EXPECT_EQ(Melding(wand), 107);
}

TEST(DamregelTest, ComesBehindTheOtherRules)
{
    HRProfiel profiel = Talud({{0, 0}, {1, 2}});
    profiel.setDamtype(4);
    EXPECT_EQ(Melding(profiel), 114);
}
