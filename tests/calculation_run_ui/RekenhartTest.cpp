// The whole road with the real calculation core: what stands in the database afterwards is
// what the core itself reports in its files.
#include "BatchFixture.h"

#include "frame/ui/FileBox.h"

#include <QCheckBox>
#include <QHash>

#include <cmath>

namespace {

using Tabel = QList<QList<double>>;

/// The rows of numbers below a heading of the report, up to the first empty line.
Tabel LeesTabel(const QByteArray& verslag, const QByteArray& kop)
{
    Tabel tabel;
    const auto regels = QByteArray(verslag).replace("\r", "").split('\n');
    for (qsizetype i = regels.indexOf(kop) + 3; i > 2 && i < regels.size(); ++i) {
        if (regels[i].trimmed().isEmpty())
            break;
        QList<double> rij;
        for (const QByteArray& woord : regels[i].simplified().split(' '))
            rij << (woord == "-" ? -999 : woord.toDouble());
        tabel << rij;
    }
    return tabel;
}

/// The frequency line: level for each return period in whole years.
QHash<int, double> LeesFreqlijn(const QByteArray& bestand)
{
    QHash<int, double> peilen;
    const auto regels = bestand.split('\n');
    for (qsizetype i = 1; i < regels.size(); ++i) {
        const auto woorden = regels[i].simplified().split(' ');
        if (woorden.size() == 2)
            peilen[static_cast<int>(std::lround(1 / woorden[1].toDouble()))] =
                woorden[0].toDouble();
    }
    return peilen;
}

/// Batches with overflow, wave overtopping and wave run-up over a few unlike locations.
class RekenhartTest : public BatchTest {
protected:
    RekenhartTest()
    {
        QFile::remove(Pad("Rekenprogramma"));
        EXPECT_TRUE(QFile::link(REKENPROGRAMMA, Pad("Rekenprogramma")));
        gekozen = {"Plas-02", "Plas-04", "Kleine-1", "Vaart-3"};
    }

    struct Rij {
        double hbn, metOpwaaiing, zonderOpwaaiing, boezempeil, streefpeil;
    };
    QHash<int, Rij> Rijen(const QString& locatie, const QString& profiel)
    {
        const auto rijen = db.GetRecordSet(
            "SELECT Herhalingstijd, HBN_MS_MO, OVERLOOP_MS_MO, OVERLOOP_MS_ZO, BOEZEMPEIL, "
            "STREEFPEIL FROM Resultaat WHERE Berekening_ID=" +
            QString::number(db.GetBerekening_ID_Profiel(naam.toLower(), profiel)) +
            " AND Locatie_ID=" + QString::number(db.GetLocatie_ID(locatie)));
        QHash<int, Rij> gelezen;
        if (!HRdb::heeftRecords(rijen))
            return gelezen;
        for (; !rijen->EndOfFile(); rijen->MoveNext())
            gelezen[static_cast<int>(rijen->Get(0).AsDouble())] = {
                rijen->Get(1).AsDouble(), rijen->Get(2).AsDouble(), rijen->Get(3).AsDouble(),
                rijen->Get(4).AsDouble(), rijen->Get(5).AsDouble()};
        return gelezen;
    }

    /// Every number of the database stands in the files of that calculation.
    void ExpectZoalsVerslag(const QString& locatie, const QString& profiel)
    {
        SCOPED_TRACE((locatie + ", " + profiel).toStdString());
        const QString map =
            Map(locatie, naam.toLower() + (profiel.isEmpty() ? QString() : "_" + profiel));
        const QByteArray verslag = Lees(map + "/uitvoer.txt");
        const Tabel resultaten = LeesTabel(verslag, "Resultaten");
        const auto rijen = Rijen(locatie, profiel);
        ASSERT_EQ(rijen.size(), 5);
        ASSERT_EQ(resultaten.size(), rijen.size());
        constexpr double kDrieDecimalen = 0.00051;
        for (const auto& regel : resultaten) {
            ASSERT_EQ(regel.size(), 6);
            const int jaren = static_cast<int>(regel[0]);
            ASSERT_TRUE(rijen.contains(jaren)) << jaren;
            const Rij& rij = rijen[jaren];
            EXPECT_NE(rij.hbn, -999);
            EXPECT_NEAR(rij.hbn, regel[1], kDrieDecimalen) << jaren;
            EXPECT_NEAR(rij.metOpwaaiing, regel[2], kDrieDecimalen) << jaren;
            EXPECT_NEAR(rij.zonderOpwaaiing, regel[3], kDrieDecimalen) << jaren;
            EXPECT_NEAR(rij.boezempeil, regel[4], kDrieDecimalen) << jaren;
            EXPECT_NEAR(rij.streefpeil, regel[5], kDrieDecimalen) << jaren;
        }
        // The shares are differences of two numbers, each rounded.
        for (const auto& regel : LeesTabel(verslag, "Aandelen")) {
            const Rij& rij = rijen[static_cast<int>(regel[0])];
            EXPECT_NEAR(rij.boezempeil - rij.streefpeil, regel[1], 2 * kDrieDecimalen);
            EXPECT_NEAR(rij.zonderOpwaaiing - rij.boezempeil, regel[2], 2 * kDrieDecimalen);
            EXPECT_NEAR(rij.metOpwaaiing - rij.zonderOpwaaiing, regel[3], 2 * kDrieDecimalen);
            EXPECT_NEAR(rij.hbn - rij.metOpwaaiing, regel[4], 2 * kDrieDecimalen);
        }
        const auto lijn = LeesFreqlijn(Lees(map + "/freqlijn.txt"));
        EXPECT_EQ(lijn.size(), 15);
        for (const int jaren : {10, 30, 100, 300, 1000})
            EXPECT_NEAR(rijen[jaren].hbn, lijn.value(jaren), 0.00006) << jaren; // four decimals
        EXPECT_TRUE(Lees(map + "/uitvoer.log").contains("Voortgang: 100 %"));
        EXPECT_TRUE(InBoom(locatie, map.section('/', -1).toLower()));
    }
};

} // namespace

TEST_F(RekenhartTest, OverflowStandsInTheDatabaseAsInTheReport)
{
    const auto uitkomst = Start();
    EXPECT_EQ(uitkomst.lijst.count(" OK\r\n"), 4) << uitkomst.lijst.toStdString();
    for (const QString& locatie : gekozen)
        ExpectZoalsVerslag(locatie, "");
}

TEST_F(RekenhartTest, WaveOvertoppingStandsInTheDatabaseAsInTheReport)
{
    ZetInstelling("Faalmechanisme", "INDEXFAALMECHANISME", "1");
    const auto uitkomst = Start();
    EXPECT_EQ(uitkomst.lijst.count(" OK\r\n"), 6) << uitkomst.lijst.toStdString();
    for (const auto& [locatie, profiel] : {std::pair("Plas-02", "Gras 1op3"),
                                           {"Plas-02", "Voorland 1op4"},
                                           {"Plas-04", "Gras 1op3"},
                                           {"Plas-04", "Strekdam"},
                                           {"Kleine-1", "Gras 1op3"},
                                           {"Vaart-3", "Palenrij"}})
        ExpectZoalsVerslag(locatie, profiel);
    // A value worked out beforehand for the example data.
    EXPECT_NEAR(Rijen("Plas-04", "Gras 1op3")[1000].hbn, 1.1617, 0.0002);
}

TEST_F(RekenhartTest, WaveRunUpStandsInTheDatabaseAsInTheReport)
{
    ZetInstelling("Faalmechanisme", "INDEXFAALMECHANISME", "2");
    ZetInstelling("Golfgroeimodule", "INDEXGOLFGROEIMODULE", "1");
    gekozen = {"Plas-04", "Kleine-3"};
    const auto uitkomst = Start();
    EXPECT_EQ(uitkomst.lijst.count(" OK\r\n"), 3) << uitkomst.lijst.toStdString();
    ExpectZoalsVerslag("Plas-04", "Gras 1op3");
    ExpectZoalsVerslag("Plas-04", "Strekdam");
    ExpectZoalsVerslag("Kleine-3", "Gras 1op3"); // its sheet-pile wall is left out
}

TEST_F(RekenhartTest, TheNormAloneLeavesTheOthersOut)
{
    ZetInstelling("Frequenties", "EXTRAFREQ", "0");
    gekozen = {"Plas-04"};
    Start();
    const auto rijen = Rijen("Plas-04", "");
    ASSERT_EQ(rijen.size(), 1);
    EXPECT_NEAR(rijen[1000].hbn,
                LeesTabel(Lees(Map("Plas-04", "ontwerp") + "/uitvoer.txt"), "Resultaten")[0][1],
                0.00051);
}

TEST_F(RekenhartTest, SharesThatWereNotAskedForStayUnknown)
{
    ZetInstelling("Extra", "UITSPLITSENNAARAANDELEN", "0");
    gekozen = {"Plas-04"};
    Start();
    for (const auto& rij : Rijen("Plas-04", "")) {
        EXPECT_NE(rij.hbn, -999);
        EXPECT_EQ(rij.metOpwaaiing, -999);
        EXPECT_EQ(rij.boezempeil, -999);
    }
}

TEST_F(RekenhartTest, TheOverviewHoldsALineForEachPeriod)
{
    ZetInstelling("Frequenties", "NFREQ", "2");
    gekozen = {"Plas-02", "Plas-04"};
    forms.On("frmBerekeningStart", [this](QDialog& form) {
        Find<QCheckBox>(form, "chkOverzichtNm")->setChecked(true);
        Find<FileBox>(form, "fsbOverzichtNm")->setText(Pad("overzicht.xls"));
        Kies(form);
    });
    Start();
    const auto regels = Lees(Pad("overzicht.xls")).trimmed().split('\n');
    EXPECT_EQ(regels.size(), 1 + 2 * 3) << "the norm and two extra periods of two locations";
}
