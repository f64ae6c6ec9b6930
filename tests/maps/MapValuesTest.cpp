#include "maps/MapValues.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

/// The boundaries of all classes, the upper one of the last included.
std::vector<double> Grenzen(const MapValues& waarden)
{
    std::vector<double> grenzen;
    for (int i = 1; i <= waarden.AantalKlassen(); ++i)
        grenzen.push_back(waarden.getKlasseOnderGrens(i));
    if (waarden.AantalKlassen() > 0)
        grenzen.push_back(waarden.getKlasseBovenGrens(waarden.AantalKlassen()));
    return grenzen;
}

void ExpectGrenzen(const MapValues& waarden, const std::vector<double>& verwacht)
{
    const auto grenzen = Grenzen(waarden);
    ASSERT_EQ(grenzen.size(), verwacht.size());
    for (std::size_t i = 0; i < grenzen.size(); ++i)
        EXPECT_NEAR(grenzen[i], verwacht[i], 1e-12) << i;
}

} // namespace

TEST(MapValuesDataTest, AWalkMeetsAZeroElementFirst)
{
    MapValues waarden;
    waarden.AddData(10, 20, 1.5);
    waarden.MoveFirst();
    EXPECT_FALSE(waarden.Eof());
    EXPECT_EQ(waarden.X(), 0);
    EXPECT_EQ(waarden.Y(), 0);
    EXPECT_EQ(waarden.value(), 0);
    waarden.MoveNext();
    EXPECT_EQ(waarden.X(), 10);
    EXPECT_EQ(waarden.Y(), 20);
    EXPECT_EQ(waarden.value(), 1.5);
    waarden.MoveNext();
    EXPECT_TRUE(waarden.Eof());
}

TEST(MapValuesDataTest, TheZeroElementIsNoExtreme)
{
    MapValues waarden;
    waarden.AddData(0, 0, 3);
    waarden.AddData(0, 0, 5);
    EXPECT_EQ(waarden.Minimum(), 3);
    EXPECT_EQ(waarden.Maximum(), 5);
}

TEST(MapValuesDataTest, WithoutDataTheExtremesAreTheWrongWayRound)
{
    MapValues waarden;
    EXPECT_EQ(waarden.Minimum(), 1.79769313486231E+308);
    EXPECT_EQ(waarden.Maximum(), -1.79769313486231E+308);
    waarden.AddData(1, 2, 3);
    waarden.ClearData();
    EXPECT_EQ(waarden.Minimum(), 1.79769313486231E+308);
    EXPECT_EQ(waarden.Maximum(), -1.79769313486231E+308);
}

TEST(MapValuesDataTest, ClearDataLeavesTheZeroElement)
{
    MapValues waarden;
    waarden.AddData(10, 20, 1.5);
    waarden.ClearData();
    waarden.MoveFirst();
    EXPECT_EQ(waarden.value(), 0);
    waarden.MoveNext();
    EXPECT_TRUE(waarden.Eof());
}

TEST(MapValuesDataTest, FindsASecondValueAtOnePlace)
{
    MapValues waarden;
    waarden.AddData(10, 20, 1);
    waarden.AddData(10, 21, 2);
    EXPECT_FALSE(waarden.HeeftMeerdereWaardeOpZelfdeLocatie(1, 10, 20));
    EXPECT_FALSE(waarden.HeeftMeerdereWaardeOpZelfdeLocatie(0, -1, 0));
    waarden.AddData(10, 20, 3);
    EXPECT_TRUE(waarden.HeeftMeerdereWaardeOpZelfdeLocatie(1, 10, 20));
    EXPECT_FALSE(waarden.HeeftMeerdereWaardeOpZelfdeLocatie(2, 10, 21));
    EXPECT_TRUE(waarden.HeeftMeerdereWaardeOpZelfdeLocatie(0, -1, 0)) << "tests them all";
    EXPECT_TRUE(waarden.HeeftMeerdereWaardeOpZelfdeLocatie(2, -1, 21))
        << "so does a location that lies at -1";
}

TEST(MapValuesDataTest, AValueAtTheOriginMeetsTheZeroElement)
{
    MapValues waarden;
    waarden.AddData(0, 0, 1);
    EXPECT_TRUE(waarden.HeeftMeerdereWaardeOpZelfdeLocatie(1, 0, 0));
}

TEST(KlassegrenzenTest, AreRoundAroundTheRange)
{
    // Step 0.28 becomes 0.2; the count takes one class more, so that the top
    // class begins at the highest boundary.
    MapValues waarden;
    EXPECT_EQ(waarden.MaakKlassegrenzen(0.3, 1.7), "3.1f");
    ExpectGrenzen(waarden, {0.2, 0.4, 0.6, 0.8, 1.0, 1.2, 1.4, 1.6, 1.8, 2.0});
    EXPECT_EQ(waarden.Colormap().Kleurenpalet(), "summer");
}

TEST(KlassegrenzenTest, TakeTheFirstRoundStepThatTheWidthReaches)
{
    MapValues waarden;
    waarden.MaakKlassegrenzen(0, 50); // step 10: m 0.1 of 100
    ExpectGrenzen(waarden, {0, 10, 20, 30, 40, 50, 60});
    waarden.MaakKlassegrenzen(0, 49); // step 9.8: m 0.98 becomes 0.9
    EXPECT_EQ(waarden.AantalKlassen(), 7);
    EXPECT_NEAR(waarden.getKlasseBovenGrens(1), 9, 1e-12);
}

TEST(KlassegrenzenTest, WorkBelowZero)
{
    MapValues waarden;
    waarden.MaakKlassegrenzen(-1.1, -0.1); // step 0.2
    EXPECT_NEAR(waarden.getKlasseOnderGrens(1), -1.2, 1e-12);
    EXPECT_NEAR(waarden.getKlasseBovenGrens(waarden.AantalKlassen()), 0.2, 1e-12);
}

TEST(KlassegrenzenTest, TheFormatHoldsTheLongestNumberAndItsDecimals)
{
    MapValues waarden;
    EXPECT_EQ(waarden.MaakKlassegrenzen(1000, 1250), "4.0f");
    EXPECT_EQ(waarden.MaakKlassegrenzen(0, 0.05), "4.2f");
    waarden.setAantalDecimalen(3);
    EXPECT_EQ(waarden.MaakKlassegrenzen(0, 0.05), "4.3f");
    waarden.setAantalDecimalen(-1);
    EXPECT_EQ(waarden.MaakKlassegrenzen(0, 0.05), "4.2f");
}

TEST(KlassegrenzenTest, AMinimumAboveTheMaximumGivesClassesThatMatchNothing)
{
    MapValues waarden;
    waarden.MaakKlassegrenzen(1.7, 0.3);
    ASSERT_GT(waarden.AantalKlassen(), 0);
    EXPECT_LT(waarden.getKlasseBovenGrens(1), waarden.getKlasseOnderGrens(1));
    EXPECT_FALSE(waarden.GetSymbol(1).has_value());
}

TEST(KlassegrenzenTest, EqualValuesAreNoFailure)
{
    MapValues waarden;
    waarden.MaakKlassegrenzen(0.5, 0.5);
    EXPECT_GT(waarden.AantalKlassen(), 0);
    EXPECT_TRUE(waarden.GetSymbol(0.5).has_value());
    waarden.MaakKlassegrenzen(0, 0); // a width of 1E-10 on either side
    ASSERT_GT(waarden.AantalKlassen(), 0);
    EXPECT_LT(waarden.getKlasseBovenGrens(waarden.AantalKlassen()), 3e-10);
}

TEST(KlassegrenzenTest, TheStepIsRoundedDownToATenth)
{
    MapValues waarden;
    for (int tiende = 1; tiende <= 9; ++tiende) {
        waarden.MaakKlassegrenzen(0, 0.5 * tiende + 0.25); // a fifth of it: half a tenth too much
        EXPECT_NEAR(waarden.getKlasseOnderGrens(2), tiende / 10.0, 1e-12);
    }
}

TEST(KlassegrenzenTest, TheHighestBoundaryLeavesOutAThousandthOfAStep)
{
    MapValues waarden;
    waarden.MaakKlassegrenzen(0, 5.05); // step 1
    ExpectGrenzen(waarden, {0, 1, 2, 3, 4, 5, 6, 7});
    waarden.MaakKlassegrenzen(0, 5.0005);
    ExpectGrenzen(waarden, {0, 1, 2, 3, 4, 5, 6});
}

TEST(KlassegrenzenTest, ARangeJustBelowAWholeNumberOfStepsLosesNoClass)
{
    MapValues waarden;
    waarden.MaakKlassegrenzen(-4, -3.4); // (hi - lo) / step is 6 less a few bits
    ExpectGrenzen(waarden, {-4, -3.9, -3.8, -3.7, -3.6, -3.5, -3.4, -3.3});
}

TEST(KlassegrenzenTest, EqualValuesSoLargeThatTheStepVanishesHaveNoClasses)
{
    MapValues waarden;
    waarden.MaakKlassegrenzen(1e12, 1e12);
    EXPECT_EQ(waarden.AantalKlassen(), 0);
    EXPECT_FALSE(waarden.GetSymbol(1e12).has_value());
}

TEST(KlassegrenzenTest, FixedClassesAreEquallyWideInThePresentPalette)
{
    MapValues waarden;
    int m = 2;
    waarden.Colormap().NumberOfValues(m, "gray");
    waarden.MaakFixedKlassegrenzen(1, 3, 4);
    ExpectGrenzen(waarden, {1, 1.5, 2, 2.5, 3});
    EXPECT_EQ(waarden.Colormap().Kleurenpalet(), "gray");
    EXPECT_EQ(waarden.getKlasseKleur(2), waarden.Colormap().kleur(2));
    EXPECT_NE(waarden.getKlasseKleur(4), 0);
    waarden.MaakFixedKlassegrenzen(1, 3, 0);
    EXPECT_EQ(waarden.AantalKlassen(), 0);
}

TEST(GetSymbolTest, AValueOnABoundaryBelongsToTheLowerClass)
{
    MapValues waarden;
    waarden.MaakFixedKlassegrenzen(0, 3, 3);
    EXPECT_EQ(waarden.GetSymbol(1)->kleur, waarden.Colormap().kleur(1));
    EXPECT_EQ(waarden.GetSymbol(1.5)->kleur, waarden.Colormap().kleur(2));
    EXPECT_EQ(waarden.GetSymbol(3)->kleur, waarden.Colormap().kleur(3));
    EXPECT_EQ(waarden.GetSymbol(0)->grootte, 8);
}

TEST(GetSymbolTest, GivesNothingOutsideAllClasses)
{
    MapValues waarden;
    EXPECT_FALSE(waarden.GetSymbol(1).has_value()) << "no classes at all";
    waarden.MaakFixedKlassegrenzen(0, 3, 3);
    EXPECT_FALSE(waarden.GetSymbol(-0.001).has_value());
    EXPECT_FALSE(waarden.GetSymbol(3.001).has_value());
}

TEST(GetSymbolTest, TakesTheColourOfThePresentPalette)
{
    MapValues waarden;
    waarden.MaakFixedKlassegrenzen(0, 3, 3);
    int m = 3;
    waarden.Colormap().NumberOfValues(m, "autumn");
    EXPECT_EQ(waarden.GetSymbol(0.5)->kleur, 255);
    EXPECT_EQ(waarden.getKlasseKleur(1), 255) << "the class keeps it";
}

TEST(KlasseTest, OutsideTheClassesEverythingIsZero)
{
    MapValues waarden;
    waarden.AddKlassegrens(1, 2, 77);
    EXPECT_EQ(waarden.getKlasseKleur(1), 77);
    EXPECT_EQ(waarden.getKlasseOnderGrens(0), 0);
    EXPECT_EQ(waarden.getKlasseBovenGrens(2), 0);
    EXPECT_EQ(waarden.getKlasseKleur(2), 0);
}

TEST(DrawLegendTest, DrawsEachClassInItsColourAtItsPlace)
{
    MapValues waarden;
    waarden.Titel = "HBN";
    waarden.Eenheid = "m";
    int m = 2;
    waarden.Colormap().NumberOfValues(m, "autumn");
    waarden.MaakFixedKlassegrenzen(0, 2, 2);
    QImage beeld(200, 200, QImage::Format_RGB32);
    beeld.fill(Qt::white);
    QPainter painter(&beeld);
    waarden.DrawLegend(painter);
    painter.end();
    EXPECT_EQ(beeld.pixelColor(30, 75), QColor(255, 0, 0)) << "class 1 stands on top";
    EXPECT_EQ(beeld.pixelColor(30, 100), QColor(255, 128, 0));
    const auto heeftInkt = [&beeld](const QRect& vlak) {
        for (int y = vlak.top(); y <= vlak.bottom(); ++y)
            for (int x = vlak.left(); x <= vlak.right(); ++x)
                if (beeld.pixelColor(x, y) != QColor(Qt::white))
                    return true;
        return false;
    };
    EXPECT_TRUE(heeftInkt({0, 0, 60, 12})) << "the title";
    EXPECT_TRUE(heeftInkt({50, 67, 100, 14})) << "the boundaries of class 1";
    EXPECT_FALSE(heeftInkt({0, 117, 200, 40})) << "no subtitle, nothing drawn";
}

TEST(DrawLegendTest, EveryTextStandsAtItsPlace)
{
    MapValues waarden;
    waarden.Titel = "HBN";
    waarden.SubTitel1 = "Boezem";
    waarden.SubTitel2 = "100 jaar";
    waarden.SubTitel3 = "overloop";
    waarden.Eenheid = "m+NAP";
    int m = 2;
    waarden.Colormap().NumberOfValues(m, "gray");
    waarden.AddKlassegrens(0, 1, 0);
    waarden.AddKlassegrens(1, 2, 0);
    const auto beeld = [](auto&& teken) {
        QImage vlak(260, 240, QImage::Format_RGB32);
        vlak.fill(Qt::white);
        QPainter painter(&vlak);
        teken(painter);
        return vlak;
    };
    const QImage verwacht = beeld([](QPainter& painter) {
        QFont letter("Courier New", 9);
        letter.setStyleHint(QFont::TypeWriter);
        letter.setBold(true);
        painter.setFont(letter);
        const int hoog = painter.fontMetrics().ascent();
        painter.drawText(0, hoog, "HBN");
        const int tweede = painter.fontMetrics().height();
        letter.setBold(false);
        painter.setFont(letter);
        const int laag = painter.fontMetrics().ascent();
        painter.drawText(0, tweede + laag, "Boezem");
        painter.setBrush(QColor(128, 128, 128));
        painter.drawEllipse(QPoint(30, 100), 4, 4);
        painter.drawText(50, 92 + laag, "  1.00 -   2.00 m+NAP");
        painter.setBrush(QColor(0, 0, 0));
        painter.drawEllipse(QPoint(30, 75), 4, 4);
        painter.drawText(50, 67 + laag, "  0.00 -   1.00 m+NAP");
        painter.drawText(0, 117 + laag, "100 jaar");
        painter.drawText(0, 167 + laag, "overloop");
    });
    EXPECT_EQ(beeld([&](QPainter& painter) { waarden.DrawLegend(painter); }), verwacht);
}
