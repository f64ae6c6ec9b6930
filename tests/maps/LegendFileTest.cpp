#include "maps/MapValues.h"

#include "FullDisk.h"
#include "FakePorts.h"
#include "TemporaryFolder.h"

#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

class LegendFileTest : public testing::Test {
protected:
    LegendFileTest() { gBoxes.Refer(boxes); }
    ~LegendFileTest() override { gBoxes.Release(); }

    QString Pad(const char* naam = "Legenda.zlb") const
    {
        return QString::fromStdString((folder / naam).string());
    }
    QString Bestand(const std::string& inhoud)
    {
        std::ofstream(folder / "Legenda.zlb", std::ios::binary) << inhoud;
        return Pad();
    }
    std::string Inhoud() const
    {
        std::ifstream bestand(folder / "Legenda.zlb", std::ios::binary);
        return {std::istreambuf_iterator<char>(bestand), {}};
    }
    /// Reads `inhoud` into `waarden`.
    bool Lees(const std::string& inhoud) { return waarden.OpenFile(Bestand(inhoud), palet); }

    TemporaryFolder folder;
    FakeBoxes boxes;
    MapValues waarden;
    QString palet;
};

TEST_F(LegendFileTest, WritesHeaderBoundariesAndTheLastUpperOne)
{
    int m = 2;
    waarden.Colormap().NumberOfValues(m, "cool");
    waarden.MaakFixedKlassegrenzen(-0.5, 1, 3);
    EXPECT_TRUE(waarden.SaveFile(Pad()));
    EXPECT_EQ(Inhoud(), "# " + ApplicationTitle().toStdString() +
                            "\r\n# Zandvoet Legenda Bestand\r\n# Versie: 1.0\r\n"
                            "# Kleurenpalet: cool\r\n-0.5\r\n0\r\n0.5\r\n1\r\n");
}

TEST_F(LegendFileTest, WithoutClassesOnlyTheHeaderIsWritten)
{
    EXPECT_TRUE(waarden.SaveFile(Pad()));
    EXPECT_TRUE(Inhoud().ends_with("# Kleurenpalet: default\r\n"));
    EXPECT_FALSE(waarden.OpenFile(Pad(), palet));
}

TEST_F(LegendFileTest, AFullDiskLeavesNoHalfLegendAndNoOpenFile)
{
    if (!FullDisk::Works())
        GTEST_SKIP();
    waarden.MaakFixedKlassegrenzen(0, 1, 5);
    {
        const FullDisk vol(90); // in the middle of the boundaries
        EXPECT_THROW(waarden.SaveFile(Pad()), Fout);
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "Legenda.zlb"))
        << "half a legend would be read as another one";
    const int eerste = gFile().FOpen(Pad("ander.zlb"), QLMFile::Output);
    gFile().FClose(eerste);
    EXPECT_EQ(eerste, 1) << "the number is still taken";
    EXPECT_TRUE(waarden.SaveFile(Pad()));
}

TEST_F(LegendFileTest, ATargetThatMayNotBeWrittenIsFalseAndStays)
{
    Bestand("# Versie: 1.0\r\n1\r\n2\r\n");
    const std::string vorige = Inhoud();
    SetReadOnly(Pad(), true);
    EXPECT_FALSE(waarden.SaveFile(Pad()));
    SetReadOnly(Pad(), false);
    EXPECT_EQ(Inhoud(), vorige);
    EXPECT_FALSE(waarden.SaveFile(Pad("nergens/Legenda.zlb")));
}

TEST_F(LegendFileTest, PathsMayHoldBlanksAndOtherLetters)
{
    waarden.MaakFixedKlassegrenzen(0, 1, 2);
    const QString pad = Pad("Súdwest Fryslân – łąka.zlb");
    ASSERT_TRUE(waarden.SaveFile(pad));
    EXPECT_TRUE(waarden.OpenFile(pad, palet));
}

TEST_F(LegendFileTest, SixBoundariesGiveFiveClasses)
{
    ASSERT_TRUE(Lees("# Versie: 1.0\r\n# Kleurenpalet: autumn\r\n1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n"));
    EXPECT_EQ(palet, "autumn");
    EXPECT_EQ(waarden.AantalKlassen(), 5);
    EXPECT_EQ(waarden.getKlasseOnderGrens(1), 1);
    EXPECT_EQ(waarden.getKlasseBovenGrens(5), 6);
    EXPECT_EQ(waarden.getKlasseKleur(1), 255);
    // Spread over six colours: x = 1/6 for the second.
    EXPECT_EQ(waarden.getKlasseKleur(2), 255 + 256 * 42);
}

TEST_F(LegendFileTest, WhatWasSavedReadsBack)
{
    std::mt19937 random(7);
    for (int keer = 0; keer < 200; ++keer) {
        MapValues bron;
        double grens = double(random() % 2000) / 8 - 100;
        const int klassen = 1 + static_cast<int>(random() % 12);
        for (int i = 0; i < klassen; ++i) {
            const double hoger = grens + double(1 + random() % 100) / 16;
            bron.AddKlassegrens(grens, hoger, 0);
            grens = hoger;
        }
        int m = klassen;
        const QString gekozen = QStringList{"hot", "cool", "summer", "gray"}[random() % 4];
        bron.Colormap().NumberOfValues(m, gekozen);
        ASSERT_TRUE(bron.SaveFile(Pad()));
        MapValues terug;
        ASSERT_TRUE(terug.OpenFile(Pad(), palet));
        EXPECT_EQ(palet, gekozen);
        ASSERT_EQ(terug.AantalKlassen(), klassen);
        for (int i = 1; i <= klassen; ++i) {
            EXPECT_EQ(terug.getKlasseOnderGrens(i), bron.getKlasseOnderGrens(i));
            EXPECT_EQ(terug.getKlasseBovenGrens(i), bron.getKlasseBovenGrens(i));
        }
    }
}

TEST_F(LegendFileTest, AnotherVersionIsMessage8010)
{
    EXPECT_FALSE(Lees("# Versie: 2.0\r\n1\r\n2\r\n"));
    ASSERT_EQ(boxes.messages.size(), 1);
    EXPECT_EQ(boxes.messages[0].number, 8010);
    EXPECT_EQ(boxes.messages[0].arguments, (QStringList{"2.0", "1.0"}));
}

TEST_F(LegendFileTest, AVersionWithoutColonIsEmpty)
{
    EXPECT_FALSE(Lees("# Versie 1.0\r\n1\r\n2\r\n"));
    ASSERT_EQ(boxes.messages.size(), 1);
    EXPECT_EQ(boxes.messages[0].arguments.first(), "");
}

TEST_F(LegendFileTest, BoundariesInFrontOfTheVersionAreHeaderLines)
{
    ASSERT_TRUE(Lees("1\r\n2\r\n# Versie: 1.0\r\n3\r\n4\r\n"));
    EXPECT_EQ(waarden.AantalKlassen(), 1);
    EXPECT_EQ(waarden.getKlasseOnderGrens(1), 3);
}

TEST_F(LegendFileTest, ALaterVersionThatDiffersStopsTheReading)
{
    ASSERT_TRUE(Lees("# Versie: 1.0\r\n1\r\n2\r\n# Versie: 3.0\r\n3\r\n"));
    EXPECT_EQ(waarden.AantalKlassen(), 1) << "what was read is used";
    EXPECT_EQ(boxes.messages.size(), 1);
}

TEST_F(LegendFileTest, ReadsUpToTheFirstComma)
{
    ASSERT_TRUE(Lees("# Versie: 1.0\r\n1.5,rood\r\n2,5\r\n"));
    EXPECT_EQ(waarden.getKlasseOnderGrens(1), 1.5);
    EXPECT_EQ(waarden.getKlasseBovenGrens(1), 2) << "a decimal comma is not what the writer makes";
}

TEST_F(LegendFileTest, AnEmptyLineAndTextCountAsZero)
{
    ASSERT_TRUE(Lees("# Versie: 1.0\r\n1\r\n\r\nabc\r\n"));
    EXPECT_EQ(waarden.AantalKlassen(), 2);
    EXPECT_EQ(waarden.getKlasseBovenGrens(1), 0);
    EXPECT_EQ(waarden.getKlasseBovenGrens(2), 0);
}

TEST_F(LegendFileTest, APaletteWithoutHashBehindTheVersionIsABoundary)
{
    ASSERT_TRUE(Lees("# Versie: 1.0\r\nKleurenpalet: hot\r\n1\r\n"));
    EXPECT_EQ(palet, "default");
    EXPECT_EQ(waarden.AantalKlassen(), 1);
    EXPECT_EQ(waarden.getKlasseOnderGrens(1), 0);
}

TEST_F(LegendFileTest, AHashAnywhereMakesAHeaderLine)
{
    ASSERT_TRUE(Lees("# Versie: 1.0\r\n1\r\n7 # Kleurenpalet: hot\r\n2\r\n"));
    EXPECT_EQ(waarden.AantalKlassen(), 1);
    EXPECT_EQ(waarden.getKlasseBovenGrens(1), 2);
    EXPECT_EQ(palet, "hot");
}

TEST_F(LegendFileTest, ThePaletteIsDefaultUntilTheFileNamesOne)
{
    palet = "cool";
    EXPECT_FALSE(waarden.OpenFile(Pad("bestaat niet.zlb"), palet));
    EXPECT_EQ(palet, "default");
    palet = "cool";
    EXPECT_TRUE(Lees("# Versie: 1.0\r\n1\r\n"));
    EXPECT_EQ(palet, "default");
}

TEST_F(LegendFileTest, OneBoundaryIsTrueAndGivesNoClasses)
{
    waarden.MaakFixedKlassegrenzen(0, 1, 2);
    EXPECT_TRUE(Lees("# Versie: 1.0\r\n1\r\n"));
    EXPECT_EQ(waarden.AantalKlassen(), 0);
}

TEST_F(LegendFileTest, AFileWithoutBoundariesLeavesTheClasses)
{
    waarden.MaakFixedKlassegrenzen(0, 1, 2);
    EXPECT_FALSE(Lees("# Versie: 1.0\r\n# Kleurenpalet: hot\r\n"));
    EXPECT_EQ(waarden.AantalKlassen(), 2);
    EXPECT_FALSE(waarden.OpenFile(Pad("bestaat niet.zlb"), palet));
    EXPECT_EQ(waarden.AantalKlassen(), 2);
}

TEST_F(LegendFileTest, DamagedFilesNeverCrash)
{
    std::mt19937 random(11);
    const std::string heel =
        "# Zandvoet\r\n# Versie: 1.0\r\n# Kleurenpalet: hot\r\n1\r\n2.5\r\n1e300\r\n-7\r\n";
    for (int keer = 0; keer < 500; ++keer) {
        std::string kapot = heel.substr(0, random() % (heel.size() + 1));
        for (int i = 0; i < 3 && !kapot.empty(); ++i)
            kapot[random() % kapot.size()] = static_cast<char>(random());
        MapValues doel;
        doel.OpenFile(Bestand(kapot), palet);
        EXPECT_LE(doel.AantalKlassen(), 20);
    }
}
