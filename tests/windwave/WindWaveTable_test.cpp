#include "windwave/WindWaveTable.h"

#include "windwave/WindWaveTexts.h"

#include <gtest/gtest.h>

using rekenhart::Golfgroeimodule;

TEST(ModelsOfLettersTest, TakesTheModelsInTheOrderGiven)
{
    EXPECT_EQ(ModelsOfLetters("HB"),
              (std::vector<Golfgroeimodule>{Golfgroeimodule::BreugemHolthuijsen,
                                            Golfgroeimodule::Bretschneider}));
    EXPECT_EQ(ModelsOfLetters(" byb"),
              (std::vector<Golfgroeimodule>{Golfgroeimodule::Bretschneider,
                                            Golfgroeimodule::YoungVerhagen}));
}

TEST(ModelsOfLettersTest, OffersAllThreeWithoutAnyLetter)
{
    EXPECT_EQ(ModelsOfLetters("").size(), 3u);
    EXPECT_EQ(ModelsOfLetters("xz?").size(), 3u);
}

TEST(WindWaveTableTest, TheAskedWindTakesItsPlaceAmongTheEvenOnes)
{
    const auto rows = MakeWindWaveTable({17.5, 5000, 3}, ModelsOfLetters("B"));
    ASSERT_EQ(rows.size(), 21u);
    for (std::size_t i = 1; i < rows.size(); ++i)
        EXPECT_LT(rows[i - 1].wind, rows[i].wind);
    for (const WindWaveRow& row : rows)
        EXPECT_EQ(row.isAsked, row.wind == 17.5);
    EXPECT_EQ(MakeWindWaveTable({20, 5000, 3}, ModelsOfLetters("B")).size(), 20u);
    EXPECT_EQ(MakeWindWaveTable({55, 5000, 3}, ModelsOfLetters("B")).back().wind, 55);
}

// Fetch 5 km, depth 3 m, 20 m/s, worked out apart from this program.
TEST(WindWaveTableTest, GivesTheWavesOfEachModel)
{
    const auto rows = MakeWindWaveTable({20, 5000, 3}, ModelsOfLetters("BYH"));
    const WindWaveRow& row = rows[9];
    ASSERT_EQ(row.wind, 20);
    const double heights[] = {0.780, 0.623, 0.857}, periods[] = {3.03, 3.23, 3.37};
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(row.waves[i].height, heights[i], 0.0005);
        EXPECT_NEAR(row.waves[i].peakPeriod, periods[i], 0.005);
    }
}

TEST(WindWaveTextsTest, AreEnglishUnlessTheLanguageIsDutch)
{
    EXPECT_EQ(WindWaveTexts::Of("NL").title, "Windgolven");
    EXPECT_EQ(WindWaveTexts::Of(" nl").title, "Windgolven");
    EXPECT_EQ(WindWaveTexts::Of("").title, "Windgolven");
    EXPECT_EQ(WindWaveTexts::Of("EN").title, "Wind waves");
}
