#include "DatabaseFixture.h"

#include "MaakDatabase.h"
#include "Voorbeeldboezem.h"
#include "profiles/HRProfiel.h"

#include <nlohmann/json.hpp>

#include <fstream>

/// The recipe against the numbers that were published with the method.
class VoorbeeldTest : public testing::Test {
protected:
    VoorbeeldTest()
    {
        std::ifstream bestand(TEST_DATA_FOLDER "/voorbeeld/demo.json");
        demo = nlohmann::json::parse(bestand);
    }
    nlohmann::json demo;
};

TEST_F(VoorbeeldTest, LocationsAreThePublishedOnes)
{
    const auto locaties = voorbeeld::Locaties();
    const auto& verwacht = demo["locaties"];
    ASSERT_EQ(locaties.size(), verwacht.size());
    for (std::size_t i = 0; i < locaties.size(); ++i) {
        const auto& l = locaties[i];
        const auto& v = verwacht[i];
        SCOPED_TRACE(l.naam);
        EXPECT_EQ(l.id, v["Locatie_ID"]);
        EXPECT_EQ(l.naam, v["omschrijving"]);
        EXPECT_EQ(l.x, v["x"]);
        EXPECT_EQ(l.y, v["y"]);
        EXPECT_EQ(l.dijknormaal, v["dijknormaal"]);
        EXPECT_EQ(l.ruwheidslengte, v["ruwheidslengte"]);
        EXPECT_EQ(l.streefpeil, v["streefpeil"]);
        EXPECT_EQ(l.kruinhoogte, v["kruinhoogte"]);
        EXPECT_EQ(l.veiligheidsklasse, v["veiligheidsklasse"]);
        EXPECT_EQ(l.profielen, v["profielen"]);
        for (std::size_t t = 0; t < 5; ++t)
            EXPECT_EQ(l.peilen[t], v["peilen"][t][1]);
        for (std::size_t r = 0; r < 16; ++r) {
            EXPECT_EQ(l.bodemhoogte[r], v["geometrie"][r][0]);
            EXPECT_EQ(l.strijklengte[r], v["geometrie"][r][1]);
            for (std::size_t u = 0; u < 5; ++u)
                EXPECT_EQ(l.scheefstand[r][u], v["scheefstand"]["s"][r][u]);
        }
    }
}

TEST_F(VoorbeeldTest, ShoresAreThePublishedOnes)
{
    for (const auto& water : voorbeeld::Waterlichamen()) {
        const auto& ringen = demo["waterlichamen"][water.naam];
        ASSERT_EQ(water.ringen.size(), ringen.size()) << water.naam;
        for (std::size_t i = 0; i < ringen.size(); ++i) {
            ASSERT_EQ(water.ringen[i].size(), ringen[i].size());
            for (std::size_t p = 0; p < ringen[i].size(); ++p) {
                EXPECT_EQ(water.ringen[i][p].x, ringen[i][p][0]);
                EXPECT_EQ(water.ringen[i][p].y, ringen[i][p][1]);
            }
        }
    }
}

TEST_F(VoorbeeldTest, EverySectorsProbabilityDiffersBetweenTheSeasons)
{
    // Equal ones would mark the file as outdated.
    const auto winter = voorbeeld::Winter();
    const auto zomer = voorbeeld::Zomer();
    double somWinter = 0, somZomer = 0;
    for (std::size_t r = 0; r < 16; ++r) {
        EXPECT_NE(winter.kans[r], zomer.kans[r]) << r;
        EXPECT_EQ(winter.kans[r], demo["statistiek"]["Kanswindrichting winter"][r]);
        EXPECT_EQ(zomer.kans[r], demo["statistiek"]["Kanswindrichting zomer"][r]);
        somWinter += winter.kans[r];
        somZomer += zomer.kans[r];
    }
    EXPECT_NEAR(somWinter, 1, 1e-6);
    EXPECT_NEAR(somZomer, 1, 1e-6);
}

TEST_F(VoorbeeldTest, WindStatisticsAreThePublishedOnes)
{
    const auto vergelijk = [this](const voorbeeld::Windseizoen& seizoen, const char* naam) {
        const auto& kansen = demo["statistiek"][naam]["Overschrijdingskans"];
        for (int r = 0; r < 16; ++r)
            for (int i = 0; i < 22; ++i) {
                const double verwacht = kansen[std::size_t(r)][std::size_t(i)];
                EXPECT_NEAR(seizoen.Overschrijdingskans(r, 2 * i), verwacht, 2e-9 * verwacht);
            }
    };
    vergelijk(voorbeeld::Winter(), "Windstatistiek winter");
    vergelijk(voorbeeld::Zomer(), "Windstatistiek zomer");
}

TEST_F(DatabaseTest, AllProfilesOfTheExampleAreValid)
{
    OpenVoorbeeld();
    for (const auto& recept : voorbeeld::Profielen()) {
        HRProfiel profiel;
        profiel.ReadFromHrDb(db, QString::fromStdString(recept.naam));
        int melding = 0, index = 0;
        EXPECT_TRUE(profiel.ControleerProfiel(melding, index)) << recept.naam << " " << melding;
        EXPECT_EQ(profiel.AantalProfielpunten(), int(recept.punten.size()));
    }
}

TEST_F(DatabaseTest, TheExampleIsTheSameToTheByteEachTimeItIsMade)
{
    const auto maak = [this](const char* naam) {
        voorbeeld::MaakRandvoorwaarden(folder / naam, {.locaties = voorbeeld::Locaties()});
        std::ifstream bestand(folder / naam, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(bestand), {});
    };
    EXPECT_TRUE(maak("een.mdb") == maak("twee.mdb"));
}
