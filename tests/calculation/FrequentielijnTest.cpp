#include "calculation/Frequentielijn.h"

#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>

class FrequentielijnTest : public testing::Test {
protected:
    std::optional<std::vector<Frequentiepunt>> Lees(const std::string& inhoud)
    {
        std::ofstream(folder / "freqlijn.txt", std::ios::binary) << inhoud;
        return LeesFrequentielijn(QString::fromStdString((folder / "freqlijn.txt").string()));
    }
    TemporaryFolder folder;
};

TEST_F(FrequentielijnTest, ReadsLevelAndReturnPeriod)
{
    const auto lijn =
        Lees("2  punten: niveau en frequentie\r\n0.5412 0.2000000000\r\n0.6310,0.1\r\n");
    ASSERT_TRUE(lijn);
    ASSERT_EQ(lijn->size(), 2U);
    EXPECT_EQ((*lijn)[0].niveau, 0.5412);
    EXPECT_EQ((*lijn)[0].herhalingstijd, 5);
    EXPECT_EQ((*lijn)[1].niveau, 0.631);
    EXPECT_EQ((*lijn)[1].herhalingstijd, 10);
}

TEST_F(FrequentielijnTest, RunsOfBlanksAndCommasSplitOnce)
{
    const auto lijn = Lees("1\r\n   -0.25  , ,  0.01  \r\n");
    ASSERT_EQ(lijn->size(), 1U);
    EXPECT_EQ((*lijn)[0].niveau, -0.25);
    EXPECT_EQ((*lijn)[0].herhalingstijd, 100);
}

TEST_F(FrequentielijnTest, AFrequencyOfZeroStaysZero)
{
    EXPECT_EQ((*Lees("1\r\n1 0\r\n"))[0].herhalingstijd, 0);
    EXPECT_EQ((*Lees("1\r\n1\r\n"))[0].herhalingstijd, 0);
    EXPECT_EQ((*Lees("1\r\n1 veel\r\n"))[0].herhalingstijd, 0);
}

TEST_F(FrequentielijnTest, TakesAsManyLinesAsAnnouncedAndPresent)
{
    EXPECT_EQ(Lees("1\r\n1 0.1\r\n2 0.01\r\n")->size(), 1U);
    EXPECT_EQ(Lees("9\r\n1 0.1\r\n2 0.01\r\n")->size(), 2U);
    EXPECT_EQ(Lees("0\r\n1 0.1\r\n")->size(), 0U);
    EXPECT_EQ(Lees("-3\r\n1 0.1\r\n")->size(), 0U);
    EXPECT_EQ(Lees("geen getal\r\n1 0.1\r\n")->size(), 0U);
}

TEST_F(FrequentielijnTest, NoFileOrAnEmptyOneIsNothing)
{
    EXPECT_FALSE(Lees(""));
    EXPECT_FALSE(
        LeesFrequentielijn(QString::fromStdString((folder / "bestaat niet.txt").string())));
}

TEST_F(FrequentielijnTest, DamagedFilesNeverCrash)
{
    std::mt19937 random(3);
    const std::string heel = "15  punten\r\n0.5412 0.2000000000\r\n0.6310 0.1000000000\r\n";
    for (int keer = 0; keer < 500; ++keer) {
        std::string kapot = heel.substr(0, random() % (heel.size() + 1));
        for (int i = 0; i < 3 && !kapot.empty(); ++i)
            kapot[random() % kapot.size()] = static_cast<char>(random());
        if (const auto lijn = Lees(kapot))
            KnipFrequentielijn(*lijn);
    }
    const auto lang = Lees("1000000000\r\n1 0.1\r\n");
    EXPECT_EQ(lang->size(), 1U) << "an announced length takes no memory";
}

// --- clipping ---

TEST(KnippenTest, BelowTenYearsNothingIsLeft)
{
    EXPECT_TRUE(KnipFrequentielijn({{1, 2}, {2, 5}, {3, 9.99}}).empty());
    EXPECT_TRUE(KnipFrequentielijn({}).empty());
}

TEST(KnippenTest, EntersTheRangeAtAnInterpolatedPoint)
{
    // Half-way between 1 and 100 in the logarithm.
    const auto deel = KnipFrequentielijn({{1, 1}, {3, 100}});
    ASSERT_EQ(deel.size(), 2U);
    EXPECT_EQ(deel[0].herhalingstijd, 10);
    EXPECT_NEAR(deel[0].niveau, 2, 1e-12);
    EXPECT_EQ(deel[1].herhalingstijd, 100);
}

TEST(KnippenTest, APointAtExactlyTenHasNoInterpolatedPredecessor)
{
    const auto deel = KnipFrequentielijn({{1, 5}, {2, 10}, {3, 100}});
    ASSERT_EQ(deel.size(), 2U);
    EXPECT_EQ(deel[0].niveau, 2);
}

TEST(KnippenTest, AFirstPointAboveTenStandsAlone)
{
    const auto deel = KnipFrequentielijn({{2, 20}, {3, 100}});
    ASSERT_EQ(deel.size(), 2U);
    EXPECT_EQ(deel[0].herhalingstijd, 20);
}

TEST(KnippenTest, APredecessorOfFrequencyZeroGivesNoPoint)
{
    const auto deel = KnipFrequentielijn({{1, 0}, {3, 100}});
    ASSERT_EQ(deel.size(), 1U);
    EXPECT_EQ(deel[0].herhalingstijd, 100);
}

TEST(KnippenTest, LeavesTheRangeAtAnInterpolatedPointAndDropsTheRest)
{
    const auto deel = KnipFrequentielijn({{1, 1000}, {3, 100000}, {4, 500}});
    ASSERT_EQ(deel.size(), 2U);
    EXPECT_EQ(deel[1].herhalingstijd, 10000);
    EXPECT_NEAR(deel[1].niveau, 2, 1e-12);
}

TEST(KnippenTest, APointAtExactlyTenThousandIsKept)
{
    const auto deel = KnipFrequentielijn({{1, 1000}, {2, 10000}, {3, 20000}});
    ASSERT_EQ(deel.size(), 2U);
    EXPECT_EQ(deel[1].herhalingstijd, 10000);
    EXPECT_EQ(deel[1].niveau, 2);
}

TEST(KnippenTest, ExactlyTenThousandNeedsNoPredecessorAndGetsNoSecondPoint)
{
    EXPECT_EQ(KnipFrequentielijn({{1, 10000}}).size(), 1U);
    const auto deel = KnipFrequentielijn({{1, 1000}, {2, 10000}, {3, 20000}});
    ASSERT_EQ(deel.size(), 2U);
    EXPECT_EQ(deel[1].niveau, 2);
}

TEST(KnippenTest, FromBelowTenToBeyondTenThousandBothPointsAreAdded)
{
    const auto deel = KnipFrequentielijn({{0, 1}, {5, 100000}});
    ASSERT_EQ(deel.size(), 2U);
    EXPECT_NEAR(deel[0].niveau, 1, 1e-12);
    EXPECT_NEAR(deel[1].niveau, 4, 1e-12);
}

TEST(KnippenTest, BeyondTenThousandWithoutPredecessorNothingIsAdded)
{
    EXPECT_TRUE(KnipFrequentielijn({{5, 20000}, {6, 500}}).empty());
}

// --- axes ---

TEST(LogaritmischeAsTest, ReachesToThePowersOfTenAround)
{
    const auto as = LogaritmischeAs(12, 4500);
    EXPECT_EQ(as.laag, 10);
    EXPECT_EQ(as.hoog, 10000);
}

TEST(LogaritmischeAsTest, APowerOfTenIsItsOwnBound)
{
    for (const double macht : {10.0, 100.0, 1000.0, 10000.0}) {
        const auto as = LogaritmischeAs(macht, macht);
        EXPECT_EQ(as.laag, macht);
        EXPECT_EQ(as.hoog, macht);
    }
}

TEST(RondeAsTest, TakesOneTwoOrFiveTimesAPowerOfTen)
{
    // Width 1 in 5: 0.2, e = nearest to -0.699 = -1, m = 2 -> 1: step 0.1.
    const auto as = RondeAs(0.31, 1.31, 5, 1, 1);
    EXPECT_NEAR(as.stap, 0.1, 1e-12);
    EXPECT_NEAR(as.laag, 0.3, 1e-12);
    EXPECT_NEAR(as.hoog, 1.4, 1e-12);

    // Width 2.1 in 5: 0.42, e = nearest to -0.377 = 0, m = 0.42 -> 0.2.
    EXPECT_NEAR(RondeAs(0, 2.1, 5, 1, 1).stap, 0.2, 1e-12);
    // Width 3 in 5: 0.6, e = 0, m = 0.6 -> 0.5.
    EXPECT_NEAR(RondeAs(0, 3, 5, 1, 1).stap, 0.5, 1e-12);
}

TEST(RondeAsTest, AZeroRangeIsNoFailure)
{
    const auto as = RondeAs(0.5, 0.5, 5, 1, 1);
    EXPECT_TRUE(std::isfinite(as.laag));
    EXPECT_TRUE(std::isfinite(as.hoog));
    EXPECT_LE(as.laag, 0.5);
    EXPECT_GE(as.hoog, 0.5 - 1e-9);
    const auto groot = RondeAs(1e12, 1e12, 5, 1, 1);
    EXPECT_TRUE(std::isfinite(groot.laag));
}

TEST(RondeAsTest, AZeroRangeIsTakenAsATenMilliardthOnEitherSide)
{
    const auto as = RondeAs(0, 0, 5, 1, 1); // 4E-11 a step, rounded to 2E-11
    EXPECT_NEAR(as.stap, 2e-11, 1e-16);
    EXPECT_NEAR(as.laag, -1e-10, 3e-11);
    EXPECT_NEAR(as.hoog, 1e-10, 3e-11);
}

TEST(RondeAsTest, TheUpperBoundLeavesOutAThousandthOfAStep)
{
    EXPECT_NEAR(RondeAs(0, 3.0003, 5, 1, 1).hoog, 3, 1e-12); // step 0.5
    EXPECT_NEAR(RondeAs(0, 3.001, 5, 1, 1).hoog, 3.5, 1e-12);
}

TEST(RondeAsTest, ALowerValueAboveTheUpperOneRunsDownwards)
{
    EXPECT_LT(RondeAs(3, 0, 5, 1, 1).stap, 0);
}

TEST(RondeAsTest, TellsHowLongTheLabelsAre)
{
    EXPECT_EQ(RondeAs(0.31, 1.31, 5, 1, 1).decimalen, 3) << "\"0.3\"";
}
