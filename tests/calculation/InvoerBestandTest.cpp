#include "calculation/InvoerBestand.h"
#include "calculation/Rekeninstellingen.h"

#include "DatabaseFixture.h"
#include "SmallDisk.h"

#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

QByteArray LeesBestand(const QString& pad)
{
    QFile bestand(pad);
    return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray("(geen bestand)");
}

/// A settings file with this value in every key.
QByteArray OveralDezelfdeWaarde(const QByteArray& waarde)
{
    using namespace instelling;
    QByteArray inhoud, sectie;
    for (const Instelling& sleutel : {NormFreq,
                                      ExtraFreq,
                                      NFreq,
                                      KruinhProfiel,
                                      ExtraKruinh,
                                      NKruin,
                                      IndexFaalmechanisme,
                                      Overslagdebiet,
                                      IndexGolfgroeimodule,
                                      GolfCorrFactor,
                                      GolfCorrFactorAan,
                                      UitEnIll,
                                      Windreductie,
                                      UitsplitsenNaarAandelen,
                                      ToeslagWSAan,
                                      ToeslagWSVal,
                                      ToeslagWSMemo,
                                      ToeslagHBNAan,
                                      ToeslagHBNVal,
                                      ToeslagHBNMemo,
                                      ToenameWindAan,
                                      ToenameWindVal}) {
        if (sectie != sleutel.sectie)
            inhoud += "[" + QByteArray(sleutel.sectie) + "]\n";
        sectie = sleutel.sectie;
        inhoud += QByteArray(sleutel.sleutel) + "=" + waarde + "\n";
    }
    return inhoud;
}

} // namespace

/// Location `Dijkpaal 12` (117, class 5: 1000 years) with profile `P1` (4); the
/// next calculation gets id 212.
class InvoerBestandTest : public DatabaseTest {
protected:
    InvoerBestandTest()
    {
        bestand = VoorbeeldDatabase();
        Voeruit(bestand,
                {"INSERT INTO Locatie (Locatie_ID,omschrijving,veiligheidsklasse) VALUES "
                 "(117,'Dijkpaal 12',5)",
                 "UPDATE Profielen SET Naam='P1' WHERE Profiel_ID=4",
                 "INSERT INTO Berekening (Id,Naam,ProfielId,Faalmechanisme,QOverslag) VALUES "
                 "(211,'eerder',0,'OVERLOOP',-999)"});
        db.OpenDB(bestand, false);
        berekening = {.berekening = "ontwerp",
                      .locatie = "Dijkpaal 12",
                      .profiel = "P1",
                      .map = Pad("map"),
                      .overzicht = "",
                      .memo = "eerste ontwerp"};
        MaakMap(berekening.map);
    }

    void Instellingen(const QByteArray& inhoud)
    {
        QFile ini(Pad("Instellingen.ini"));
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
        ini.write(QByteArray(inhoud).replace("\n", "\r\n"));
    }

    bool Schrijf() { return SchrijfInvoerBestand(db, Pad("Instellingen.ini"), berekening); }

    /// The file with what differs per machine and moment replaced.
    QString Invoer()
    {
        QString tekst = QString::fromLatin1(LeesBestand(Pad("map/invoer.txt")));
        tekst.replace(QRegularExpression("USERNAME {21}= [^\r]*"), "USERNAME=<gebruiker>");
        tekst.replace(
            QRegularExpression("DATBER {23}= '\\d\\d-\\d\\d-\\d{4} \\d\\d:\\d\\d:\\d\\d'"),
            "DATBER=<tijdstip>");
        return tekst;
    }

    /// The lines between a header and the next.
    QStringList Sectie(const QString& naam)
    {
        QStringList regels;
        bool binnen = false;
        for (const QString& regel : Invoer().split("\r\n", Qt::SkipEmptyParts)) {
            if (regel.startsWith(';'))
                binnen = regel.contains('-' + naam + '-');
            else if (binnen)
                regels << regel.simplified();
        }
        return regels;
    }

    Rijen Resultaten()
    {
        return Lees("SELECT Berekening_ID, Locatie_ID, Herhalingstijd FROM Resultaat ORDER BY "
                    "Herhalingstijd");
    }

    QString bestand;
    LocatieBerekening berekening;
};

TEST_F(InvoerBestandTest, WritesTheWorkedExampleToTheByte)
{
    Instellingen(
        "[Frequenties]\nNORMFREQ=1\nEXTRAFREQ=1\nNFREQ=2\nFREQ.1=100\nFREQ.2=10000\n"
        "[Kruinhoogtes]\nKRUINHPROFIEL=1\nEXTRAKRUINH=1\nNKRUIN=2\nKRUIN.1=1,5\nKRUIN.2=2\n"
        "[Faalmechanisme]\nINDEXFAALMECHANISME=1\nOVERSLAGDEBIET=0.5\n"
        "[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=1\nGOLFCORRFACTOR=3\nGOLFCORRFACTORAAN=0\n"
        "[Extra]\nUITENILL=0\nWINDREDUCTIE=1\nUITSPLITSENNAARAANDELEN=0\n"
        "[Toeslagen]\nTOESLAGWSAAN=1\nTOESLAGWSVAL=0,1\nTOESLAGWSMEMO=marge\n");
    ASSERT_TRUE(Schrijf()) << boxes.reported.join('\n').toStdString();
    const QString verwacht = ";------------algemeen------------\n"
                             "USERNAME=<gebruiker>\n"
                             "DATBER=<tijdstip>\n"
                             "DBRVW                        = '" +
                             bestand +
                             "'\n"
                             "ODBCRVW                      = 'Zandvoet Gegevens'\n"
                             "UITVOERMAP                   = '" +
                             Pad("map") +
                             "'\n"
                             "OVERZICHTNM                  = ''\n"
                             "MEMO                         = 'eerste ontwerp'\n"
                             ";------------variant-------------\n"
                             "VARIANT                      = 'DIJKVAK'\n"
                             "LOCATIE                      = 'Dijkpaal 12'\n"
                             "LOCATIE_ID                   = 117\n"
                             ";------------profiel-------------\n"
                             "PROFIEL                      = 'P1'\n"
                             "PROFIEL_ID                   = 4\n"
                             ";------------faalmechanisme------\n"
                             "FAALMECHANISME               = 'GOLFOVERSLAG'\n"
                             "OVERSLAGDEBIET               = 0.5\n"
                             "GOLFGROEIMODULE              = 'YOUNGVERHAGEN'\n"
                             ";------------frequenties------------\n"
                             "NORMFREQUENTIE               = JA\n"
                             "FREQ                         = 0.01\n"
                             "FREQ                         = 0.0001\n"
                             ";------------kruinhoogtes------------\n"
                             "KRUINHOOGTEPROFIEL           = JA\n"
                             "KRUIN                        = 1.5\n"
                             "KRUIN                        = 2\n"
                             ";------------berekening------------\n"
                             "BEREKENING_ID                = 212\n"
                             ";------------extra------------\n"
                             "UITENILL                     = NEE\n"
                             "WINDREDUCTIE                 = JA\n"
                             "UITSPLITSENNAARAANDELEN      = NEE\n"
                             ";-----------toeslagen----------\n"
                             "TOESLAGWS                    = 0.1\n"
                             "TOESLAGWSMEMO                = 'marge'\n";
    EXPECT_EQ(Invoer(), QString(verwacht).replace("\n", "\r\n"));
    EXPECT_EQ(Resultaten(),
              (Rijen{{"212", "117", "100"}, {"212", "117", "1000"}, {"212", "117", "10000"}}));
    EXPECT_EQ(
        Lees("SELECT Naam, ProfielId, Faalmechanisme, QOverslag FROM Berekening WHERE Id=212"),
        (Rijen{{"ontwerp", "4", "GOLFOVERSLAG(Young en Verhagen)", "0.5"}}));
}

TEST_F(InvoerBestandTest, WithoutSettingsTheWritersDefaultsHold)
{
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("faalmechanisme"),
              (QStringList{"FAALMECHANISME = 'GOLFOPLOOP'", "GOLFGROEIMODULE = 'BRETSCHNEIDER'"}));
    EXPECT_EQ(Sectie("frequenties"), QStringList{"NORMFREQUENTIE = NEE"});
    EXPECT_EQ(Sectie("kruinhoogtes"), QStringList{"KRUINHOOGTEPROFIEL = NEE"});
    EXPECT_EQ(Sectie("extra"), (QStringList{"UITENILL = NEE", "WINDREDUCTIE = NEE",
                                            "UITSPLITSENNAARAANDELEN = NEE"}));
    EXPECT_TRUE(Invoer().endsWith(";-----------toeslagen----------\r\n"))
        << "the header stands also when nothing follows it";
    EXPECT_EQ(Resultaten(), (Rijen{{"212", "117", "1000"}}))
        << "the norm's row is there all the same";
    EXPECT_EQ(Lees("SELECT Faalmechanisme, QOverslag FROM Berekening WHERE Id=212"),
              (Rijen{{"GOLFOPLOOP(Bretschneider)", "-999"}}));
}

TEST_F(InvoerBestandTest, OverflowHasNeitherDischargeNorWaves)
{
    Instellingen(
        "[Faalmechanisme]\nINDEXFAALMECHANISME=0\nOVERSLAGDEBIET=5\n"
        "[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=2\nGOLFCORRFACTOR=2\nGOLFCORRFACTORAAN=1\n");
    berekening.profiel = "   ";
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("faalmechanisme"), QStringList{"FAALMECHANISME = 'OVERLOOP'"});
    EXPECT_EQ(Sectie("profiel"), (QStringList{"PROFIEL = ''", "PROFIEL_ID = -999"}));
    EXPECT_EQ(Lees("SELECT ProfielId, Faalmechanisme, QOverslag FROM Berekening WHERE Id=212"),
              (Rijen{{"0", "OVERLOOP", "-999"}}));
    EXPECT_EQ(db.GetBerekening_ID_Profiel("ontwerp", ""), 212) << "it is found back";
}

TEST_F(InvoerBestandTest, TheCorrectionFactorNeedsItsFlag)
{
    Instellingen(
        "[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=2\nGOLFCORRFACTOR=1,25\nGOLFCORRFACTORAAN=1\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("faalmechanisme"),
              (QStringList{"FAALMECHANISME = 'GOLFOPLOOP'",
                           "GOLFGROEIMODULE = 'BREUGEMHOLTHUIJSEN'", "GOLFCORRFACTOR = 1.25"}));
    Instellingen("[Golfgroeimodule]\nGOLFCORRFACTOR=1,25\nGOLFCORRFACTORAAN=01\n");
    berekening.berekening = "tweede";
    ASSERT_TRUE(Schrijf());
    EXPECT_FALSE(Invoer().contains("GOLFCORRFACTOR")) << "flags compare as text";
}

TEST_F(InvoerBestandTest, AnUnknownMechanismHasNoLine)
{
    Instellingen("[Faalmechanisme]\nINDEXFAALMECHANISME=7\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("faalmechanisme"), QStringList{"GOLFGROEIMODULE = 'BRETSCHNEIDER'"});
}

TEST_F(InvoerBestandTest, AnUnknownWaveGrowthHasNoLine)
{
    Instellingen("[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=3\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("faalmechanisme"), QStringList{"FAALMECHANISME = 'GOLFOPLOOP'"});
    EXPECT_EQ(Lees("SELECT Faalmechanisme FROM Berekening WHERE Id=212"), (Rijen{{"GOLFOPLOOP"}}));
    ASSERT_TRUE(SchrijfDijkringInvoerBestand(db, {.dijkring = "Ring Oost",
                                                  .map = Pad("map"),
                                                  .indexFaalmechanisme = 2,
                                                  .indexGolfgroeimodule = 3,
                                                  .memo = {}}));
    EXPECT_EQ(Sectie("faalmechanisme"), QStringList{"FAALMECHANISME = 'GOLFOPLOOP'"});
}

TEST_F(InvoerBestandTest, WhatIsWantedIsAllThatIsNotZero)
{
    Instellingen("[Frequenties]\nNORMFREQ=ja\nEXTRAFREQ=00\nNFREQ=1\nFREQ.1=100\n"
                 "[Kruinhoogtes]\nKRUINHPROFIEL=2\nEXTRAKRUINH=ja\nNKRUIN=1\nKRUIN.1=2\n"
                 "[Extra]\nWINDREDUCTIE=00\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("frequenties"), (QStringList{"NORMFREQUENTIE = JA", "FREQ = 0.01"}));
    EXPECT_EQ(Sectie("kruinhoogtes"), (QStringList{"KRUINHOOGTEPROFIEL = JA", "KRUIN = 2"}));
    EXPECT_EQ(Sectie("extra")[1], "WINDREDUCTIE = JA");
}

TEST_F(InvoerBestandTest, TheDescriptionNamesTheWaveGrowth)
{
    for (const auto& [index, omschrijving] : {std::pair("0", "GOLFOPLOOP(Bretschneider)"),
                                              {"1", "GOLFOPLOOP(Young en Verhagen)"},
                                              {"2", "GOLFOPLOOP(Breugem en Holthuijsen)"}}) {
        berekening.berekening = QString("golf") + index;
        Instellingen(QByteArray("[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=") + index + "\n");
        ASSERT_TRUE(Schrijf());
        EXPECT_EQ(Lees("SELECT Faalmechanisme FROM Berekening WHERE Naam='" +
                       berekening.berekening.toStdString() + "'"),
                  (Rijen{{omschrijving}}));
    }
}

TEST_F(InvoerBestandTest, TheOverviewIsNamedAsItWasGiven)
{
    berekening.overzicht = "D:\\mijn map\\overzicht.xls";
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("algemeen")[5], "OVERZICHTNM = 'D:\\mijn map\\overzicht.xls'");
}

TEST_F(InvoerBestandTest, ADatabaseThatWasOpenedByARelativePathIsNamedInFull)
{
    const QString hier = QDir::currentPath();
    db.CloseDB();
    ASSERT_TRUE(QDir::setCurrent(QFileInfo(bestand).path()));
    EXPECT_EQ(db.OpenDB(QFileInfo(bestand).fileName(), false, false), OpenResult::Accepted);
    EXPECT_TRUE(Schrijf()) << boxes.reported.join('\n').toStdString();
    db.CloseDB();
    QDir::setCurrent(hier);
    EXPECT_TRUE(Sectie("algemeen").contains("DBRVW = '" + bestand + "'"))
        << Sectie("algemeen").join('\n').toStdString();
}

TEST_F(InvoerBestandTest, WithoutALocationThereIsNoId)
{
    berekening.locatie = " ";
    Schrijf();
    EXPECT_EQ(Sectie("variant"),
              (QStringList{"VARIANT = 'DIJKVAK'", "LOCATIE = ''", "LOCATIE_ID = -999"}));
}

TEST_F(InvoerBestandTest, RowsMadeBeforeAFailureStay)
{
    db.CloseDB();
    Voeruit(bestand, {"INSERT INTO Berekening (Id,Naam,ProfielId,Faalmechanisme,QOverslag) VALUES "
                      "(212,'ontwerp',4,'GOLFOPLOOP(Bretschneider)',-999)",
                      "INSERT INTO Resultaat (Berekening_ID,Locatie_ID,Herhalingstijd) VALUES "
                      "(212,117,100)"});
    Instellingen("[Frequenties]\nEXTRAFREQ=1\nNFREQ=3\nFREQ.1=50\nFREQ.2=100\nFREQ.3=200\n");
    EXPECT_FALSE(Schrijf()) << "the row for 100 years is there";
    EXPECT_EQ(boxes.reported.size(), 1);
    EXPECT_EQ(Resultaten(),
              (Rijen{{"212", "117", "50"}, {"212", "117", "100"}, {"212", "117", "1000"}}));
    EXPECT_TRUE(Sectie("berekening").isEmpty());
}

TEST_F(InvoerBestandTest, ExtraPeriodsWithoutCountGiveNoLine)
{
    Instellingen("[Frequenties]\nEXTRAFREQ=1\nNFREQ=0\nFREQ.1=50\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_FALSE(Invoer().contains("FREQ  "));
    EXPECT_EQ(Resultaten().size(), 1U);
}

TEST_F(InvoerBestandTest, FrequenciesAreInPlainDecimals)
{
    Instellingen("[Frequenties]\nEXTRAFREQ=1\nNFREQ=3\nFREQ.1=1250\nFREQ.2=20000\nFREQ.3=0,5\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("frequenties"),
              (QStringList{"NORMFREQUENTIE = NEE", "FREQ = 0.0008", "FREQ = 0.00005", "FREQ = 2"}));
}

TEST_F(InvoerBestandTest, MissingPeriodsAndCrestsHaveTheirDefaults)
{
    Instellingen("[Frequenties]\nEXTRAFREQ=1\nNFREQ=1\n[Kruinhoogtes]\nEXTRAKRUINH=1\nNKRUIN=1\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("frequenties").last(), "FREQ = 0.001");
    EXPECT_EQ(Sectie("kruinhoogtes").last(), "KRUIN = 1");
}

TEST_F(InvoerBestandTest, APeriodAskedForTwiceHasOneRow)
{
    Instellingen("[Frequenties]\nNORMFREQ=1\nEXTRAFREQ=1\nNFREQ=2\nFREQ.1=1000\nFREQ.2=100\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("frequenties").size(), 3) << "both lines are written";
    EXPECT_EQ(Resultaten(), (Rijen{{"212", "117", "100"}, {"212", "117", "1000"}}));
}

TEST_F(InvoerBestandTest, LocationsWithTheSameProfileShareOneCalculation)
{
    ASSERT_TRUE(Schrijf());
    berekening.locatie = "Plas-01";
    ASSERT_TRUE(Schrijf()) << boxes.reported.join('\n').toStdString();
    EXPECT_EQ(Sectie("berekening"), QStringList{"BEREKENING_ID = 212"});
    EXPECT_EQ(Lees("SELECT Locatie_ID FROM Resultaat WHERE Berekening_ID=212 ORDER BY Locatie_ID"),
              (Rijen{{"1"}, {"117"}}));
}

TEST_F(InvoerBestandTest, APeriodThatIsNoNumberEndsTheWriterBeforeTheCalculationExists)
{
    Instellingen("[Frequenties]\nEXTRAFREQ=1\nNFREQ=2\nFREQ.1=100\nFREQ.2=veel\n");
    EXPECT_FALSE(Schrijf());
    EXPECT_EQ(boxes.reported.size(), 1);
    EXPECT_TRUE(Invoer().endsWith("FREQ                         = 0.01\r\n"))
        << "what was written stays";
    EXPECT_FALSE(db.BerekeningExists("ontwerp"));
    EXPECT_TRUE(Resultaten().empty());
}

TEST_F(InvoerBestandTest, AllSurchargesWithTheirExplanations)
{
    Instellingen(
        "[Toeslagen]\nTOESLAGWSAAN=1\nTOESLAGWSVAL=0.25\nTOESLAGWSMEMO=a\nTOESLAGHBNAAN=1\n"
        "TOESLAGHBNVAL=-0.5\nTOENAMEWINDAAN=1\nTOENAMEWINDVAL=10\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("toeslagen"),
              (QStringList{"TOESLAGWS = 0.25", "TOESLAGWSMEMO = 'a'", "TOESLAGHBN = -0.5",
                           "TOESLAGHBNMEMO = ''", "TOENAMEWIND = 10"}));
}

TEST_F(InvoerBestandTest, WhatIsOnWithoutAValueHasTheWritersDefault)
{
    Instellingen("[Faalmechanisme]\nINDEXFAALMECHANISME=1\n"
                 "[Golfgroeimodule]\nGOLFCORRFACTORAAN=1\n"
                 "[Toeslagen]\nTOESLAGWSAAN=1\nTOESLAGHBNAAN=1\nTOENAMEWINDAAN=1\n");
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("faalmechanisme"),
              (QStringList{"FAALMECHANISME = 'GOLFOVERSLAG'", "OVERSLAGDEBIET = 1",
                           "GOLFGROEIMODULE = 'BRETSCHNEIDER'", "GOLFCORRFACTOR = 1"}));
    EXPECT_EQ(Sectie("toeslagen"),
              (QStringList{"TOESLAGWS = 0", "TOESLAGWSMEMO = ''", "TOESLAGHBN = 0",
                           "TOESLAGHBNMEMO = ''", "TOENAMEWIND = 0"}));
}

// --- settings that no dialog made ---

TEST_F(InvoerBestandTest, TextWhereNumbersBelongCountsAsZero)
{
    const auto schrijf = [this](const QByteArray& inhoud) {
        berekening.berekening += "+"; // a calculation of its own
        Instellingen(inhoud);
        EXPECT_TRUE(Schrijf()) << inhoud.toStdString();
    };
    // Flags are "0" or not, or "1" or not; an index and a count of text are 0.
    schrijf(OveralDezelfdeWaarde("onzin"));
    EXPECT_EQ(Sectie("faalmechanisme"), QStringList{"FAALMECHANISME = 'OVERLOOP'"});
    EXPECT_EQ(Sectie("frequenties"), QStringList{"NORMFREQUENTIE = JA"});
    EXPECT_EQ(Sectie("kruinhoogtes"), QStringList{"KRUINHOOGTEPROFIEL = JA"});
    EXPECT_EQ(Sectie("extra"),
              (QStringList{"UITENILL = JA", "WINDREDUCTIE = JA", "UITSPLITSENNAARAANDELEN = JA"}));
    EXPECT_TRUE(Sectie("toeslagen").isEmpty());
    // The values themselves, where they are asked for.
    schrijf("[Kruinhoogtes]\nEXTRAKRUINH=1\nNKRUIN=2\nKRUIN.1=hoog\nKRUIN.2=1,2,3\n"
            "[Faalmechanisme]\nINDEXFAALMECHANISME=1\nOVERSLAGDEBIET=veel\n"
            "[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=golf\nGOLFCORRFACTOR=x\n"
            "GOLFCORRFACTORAAN=1\n"
            "[Toeslagen]\nTOESLAGWSAAN=1\nTOESLAGWSVAL=a\nTOESLAGHBNAAN=1\nTOESLAGHBNVAL=b\n"
            "TOENAMEWINDAAN=1\nTOENAMEWINDVAL=c\n");
    EXPECT_EQ(Sectie("kruinhoogtes").mid(1), (QStringList{"KRUIN = 0", "KRUIN = 0"}));
    EXPECT_EQ(Sectie("faalmechanisme").mid(1),
              (QStringList{"OVERSLAGDEBIET = 0", "GOLFGROEIMODULE = 'BRETSCHNEIDER'",
                           "GOLFCORRFACTOR = 0"}));
    EXPECT_EQ(Sectie("toeslagen"),
              (QStringList{"TOESLAGWS = 0", "TOESLAGWSMEMO = ''", "TOESLAGHBN = 0",
                           "TOESLAGHBNMEMO = ''", "TOENAMEWIND = 0"}));
}

TEST_F(InvoerBestandTest, NumbersBeyondAllBoundsAreReportedAndNeverWritten)
{
    const QByteArray alles = "[Frequenties]\nEXTRAFREQ=1\nNFREQ=1\nFREQ.1=100\n"
                             "[Kruinhoogtes]\nEXTRAKRUINH=1\nNKRUIN=1\nKRUIN.1=2\n"
                             "[Faalmechanisme]\nINDEXFAALMECHANISME=1\nOVERSLAGDEBIET=1\n"
                             "[Golfgroeimodule]\nGOLFCORRFACTOR=2\nGOLFCORRFACTORAAN=1\n"
                             "[Toeslagen]\nTOESLAGWSAAN=1\nTOESLAGWSVAL=1\nTOESLAGHBNAAN=1\n"
                             "TOESLAGHBNVAL=1\nTOENAMEWINDAAN=1\nTOENAMEWINDVAL=1\n";
    const auto weigert = [&](const QByteArray& sleutel, const QByteArray& waarde) {
        SCOPED_TRACE((sleutel + "=" + waarde).toStdString());
        berekening.berekening = QString::fromLatin1(sleutel + waarde).remove('.');
        boxes.reported.clear();
        const QByteArray regel = "\n" + sleutel + "=";
        const qsizetype begin = alles.indexOf(regel) + regel.size();
        ASSERT_GE(begin, regel.size());
        Instellingen(QByteArray(alles).replace(begin, alles.indexOf('\n', begin) - begin, waarde));
        EXPECT_FALSE(Schrijf());
        EXPECT_EQ(boxes.reported.size(), 1);
        EXPECT_FALSE(Invoer().contains(QRegularExpression(
            "= -?(inf|nan)|\\d[eE]", QRegularExpression::CaseInsensitiveOption)));
        db.DeleteBerekening(berekening.berekening);
    };
    for (const char* sleutel :
         {"NFREQ", "FREQ.1", "NKRUIN", "KRUIN.1", "OVERSLAGDEBIET", "GOLFCORRFACTOR",
          "TOESLAGWSVAL", "TOESLAGHBNVAL", "TOENAMEWINDVAL"})
        for (const char* waarde : {"1e999", "-1e999"})
            weigert(sleutel, waarde);
    weigert("NFREQ", "99999999999999999999");
    weigert("NKRUIN", "32768");
    weigert("FREQ.1", "1e-310"); // its inverse fits no number
    weigert("FREQ.1", "0");
    weigert("FREQ.1", "");
}

TEST_F(InvoerBestandTest, AnIndexBeyondAllBoundsIsAnUnknownOne)
{
    for (const char* index : {"1e999", "-1e999", "99999999999999999999", "32768", "-1"}) {
        SCOPED_TRACE(index);
        berekening.berekening += "+";
        Instellingen(QByteArray("[Faalmechanisme]\nINDEXFAALMECHANISME=") + index +
                     "\n[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=" + index + "\n");
        EXPECT_TRUE(Schrijf()) << boxes.reported.join('\n').toStdString();
        EXPECT_TRUE(Sectie("faalmechanisme").isEmpty());
        const QString ini = Pad("Instellingen.ini");
        EXPECT_EQ(FaalmechanismeSleutelwoord(LeesIndexFaalmechanisme(ini)), "");
        EXPECT_EQ(GolfgroeimoduleSleutelwoord(LeesIndexGolfgroeimodule(ini)), "");
    }
}

TEST_F(InvoerBestandTest, TheReadersTakeTextForZero)
{
    Instellingen(OveralDezelfdeWaarde("onzin"));
    const QString ini = Pad("Instellingen.ini");
    EXPECT_EQ(LeesIndexFaalmechanisme(ini), 0);
    EXPECT_EQ(LeesOverslagdebiet(ini), 0);
    EXPECT_EQ(LeesIndexGolfgroeimodule(ini), 0);
    EXPECT_EQ(LeesGolfCorrFactor(ini), -999) << "its flag is not 1";
}

TEST_F(InvoerBestandTest, ASettingsFileThatIsNoTextAtAllCountsAsNone)
{
    QByteArray bytes;
    for (int i = 0; i < 20000; ++i)
        bytes += static_cast<char>((i * 7919) >> 3);
    Instellingen(bytes);
    ASSERT_TRUE(Schrijf()) << boxes.reported.join('\n').toStdString();
    EXPECT_EQ(Sectie("faalmechanisme"),
              (QStringList{"FAALMECHANISME = 'GOLFOPLOOP'", "GOLFGROEIMODULE = 'BRETSCHNEIDER'"}));
}

TEST_F(InvoerBestandTest, AMemoIsCutAtTwoHundredCharacters)
{
    berekening.memo = QString(250, 'x');
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("algemeen").last(), "MEMO = '" + QString(200, 'x') + "'");
    berekening.memo = "";
    berekening.berekening = "tweede";
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("algemeen").last(), "MEMO = ''");
}

TEST_F(InvoerBestandTest, ApostrophesGoInUnescaped)
{
    db.CloseDB();
    Voeruit(bestand, {"UPDATE Locatie SET omschrijving=\"Dirk's dijk\" WHERE Locatie_ID=117"});
    berekening.locatie = "  Dirk's dijk ";
    ASSERT_TRUE(Schrijf());
    EXPECT_EQ(Sectie("variant"),
              (QStringList{"VARIANT = 'DIJKVAK'", "LOCATIE = 'Dirk's dijk'", "LOCATIE_ID = 117"}))
        << "and names are trimmed";
}

TEST_F(InvoerBestandTest, AccentsAreWindows1252)
{
    berekening.memo = QStringLiteral("één €");
    ASSERT_TRUE(Schrijf());
    EXPECT_TRUE(LeesBestand(Pad("map/invoer.txt")).contains("'\xE9\xE9n \x80'"));
}

TEST_F(InvoerBestandTest, AnUnknownLocationIsReported)
{
    berekening.locatie = "bestaat niet";
    EXPECT_FALSE(Schrijf());
    EXPECT_EQ(boxes.reported.size(), 1);
    EXPECT_TRUE(Resultaten().empty());
}

TEST_F(InvoerBestandTest, AFolderThatIsGoneIsError7)
{
    berekening.map = Pad("weg");
    EXPECT_FALSE(Schrijf());
    ASSERT_EQ(boxes.reported.size(), 1);
    EXPECT_TRUE(boxes.reported.first().contains("invoer.txt"));
    EXPECT_FALSE(db.BerekeningExists("ontwerp"));
}

TEST_F(InvoerBestandTest, TheSameLocationTwiceIsReportedAndTheRowsStayAsTheyWere)
{
    ASSERT_TRUE(Schrijf());
    EXPECT_FALSE(Schrijf()) << "its result rows are there";
    EXPECT_EQ(boxes.reported.size(), 1);
    EXPECT_EQ(Resultaten().size(), 1U);
}

TEST_F(InvoerBestandTest, AFullDiskIsReportedAndNothingIsRegistered)
{
    // Writing to this device fails as on a full disk.
    ASSERT_TRUE(QFile::link("/dev/full", Pad("map/invoer.txt")));
    EXPECT_FALSE(Schrijf());
    EXPECT_EQ(boxes.reported.size(), 1);
    EXPECT_FALSE(db.BerekeningExists("ontwerp"));
    EXPECT_TRUE(Resultaten().empty());
    EXPECT_FALSE(
        SchrijfDijkringInvoerBestand(db, {.dijkring = "Ring Oost", .map = Pad("map"), .memo = {}}));
    EXPECT_EQ(boxes.reported.size(), 2);
}

TEST_F(InvoerBestandTest, ADiskThatIsFullForTheDatabaseChangesNothing)
{
    const SmallDisk disk(folder / "schijf", 2 * 1024);
    if (!disk.Mounted())
        GTEST_SKIP() << "no disk can be mounted here";
    db.CloseDB();
    const QString kopie = Pad("schijf/boezem.mdb");
    std::filesystem::copy_file(bestand.toStdString(), kopie.toStdString());
    db.OpenDB(kopie, false, false);
    disk.FillUpTo(0);
    EXPECT_FALSE(Schrijf());
    EXPECT_EQ(boxes.reported.size(), 1);
    db.CloseDB();
    disk.Free();
    ExpectSound(kopie);
    EXPECT_TRUE(Resultaten().empty());
    EXPECT_FALSE(db.BerekeningExists("ontwerp"));
    db.CloseDB();
}

// --- dike rings ---

TEST_F(InvoerBestandTest, TheRingFileIsShortAndRegistersNothing)
{
    ASSERT_TRUE(SchrijfDijkringInvoerBestand(db, {.dijkring = " Ring Oost ",
                                                  .map = Pad("map"),
                                                  .indexFaalmechanisme = 1,
                                                  .windreductie = true,
                                                  .indexGolfgroeimodule = 2,
                                                  .golfCorrFactorAan = true,
                                                  .golfCorrFactor = 1.5,
                                                  .memo = "ring"}));
    const QString verwacht = ";------------algemeen------------\n"
                             "USERNAME=<gebruiker>\n"
                             "DATBER=<tijdstip>\n"
                             "DBRVW                        = '" +
                             bestand +
                             "'\n"
                             "ODBCRVW                      = 'Zandvoet Gegevens'\n"
                             "UITVOERMAP                   = '" +
                             Pad("map") +
                             "'\n"
                             "MEMO                         = 'ring'\n"
                             ";------------variant-------------\n"
                             "VARIANT                      = 'DIJKRING'\n"
                             "DIJKRING                     = 'Ring Oost'\n"
                             ";------------faalmechanisme------\n"
                             "FAALMECHANISME               = 'GOLFOVERSLAG'\n"
                             "GOLFGROEIMODULE              = 'BREUGEMHOLTHUIJSEN'\n"
                             "GOLFCORRFACTOR               = 1.5\n"
                             ";------------extra------------\n"
                             "WINDREDUCTIE                 = JA\n";
    EXPECT_EQ(Invoer(), QString(verwacht).replace("\n", "\r\n"));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Berekening"), (Rijen{{"1"}}));
}

TEST_F(InvoerBestandTest, AMemoOfARingIsCutToo)
{
    ASSERT_TRUE(SchrijfDijkringInvoerBestand(
        db, {.dijkring = "Ring Oost", .map = Pad("map"), .memo = QString(250, 'x')}));
    EXPECT_EQ(Sectie("algemeen").last(), "MEMO = '" + QString(200, 'x') + "'");
}

TEST_F(InvoerBestandTest, ARingWithOverflowHasNoWaves)
{
    ASSERT_TRUE(SchrijfDijkringInvoerBestand(
        db, {.dijkring = "Ring Oost", .map = Pad("map"), .golfCorrFactorAan = true, .memo = {}}));
    EXPECT_EQ(Sectie("faalmechanisme"), QStringList{"FAALMECHANISME = 'OVERLOOP'"});
    EXPECT_EQ(Sectie("extra"), QStringList{"WINDREDUCTIE = NEE"});
}

// --- readers and numbers ---

TEST_F(InvoerBestandTest, TheReadersGiveOneValueEach)
{
    Instellingen(
        "[Faalmechanisme]\nINDEXFAALMECHANISME=1\nOVERSLAGDEBIET=0,5\n"
        "[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=2\nGOLFCORRFACTOR=1.5\nGOLFCORRFACTORAAN=1\n");
    const QString ini = Pad("Instellingen.ini");
    EXPECT_EQ(LeesIndexFaalmechanisme(ini), 1);
    EXPECT_EQ(LeesOverslagdebiet(ini), 0.5);
    EXPECT_EQ(LeesIndexGolfgroeimodule(ini), 2);
    EXPECT_EQ(LeesGolfCorrFactor(ini), 1.5);
    const QString geen = Pad("geen.ini");
    EXPECT_EQ(LeesIndexFaalmechanisme(geen), 2);
    EXPECT_EQ(LeesOverslagdebiet(geen), 1);
    EXPECT_EQ(LeesIndexGolfgroeimodule(geen), 0);
    EXPECT_EQ(LeesGolfCorrFactor(geen), -999);
}

TEST(InvoerGetalTest, NeverHasAnExponent)
{
    EXPECT_EQ(InvoerGetal(0.5), "0.5");
    EXPECT_EQ(InvoerGetal(2), "2");
    EXPECT_EQ(InvoerGetal(-999), "-999");
    EXPECT_EQ(InvoerGetal(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(InvoerGetal(1.0 / 20000), "0.00005");
    EXPECT_EQ(InvoerGetal(-0.0000125), "-0.0000125");
    EXPECT_EQ(InvoerGetal(1e16), "10000000000000000");
    EXPECT_EQ(InvoerGetal(1.5e15), "1500000000000000");
    EXPECT_EQ(InvoerGetal(0), "0");
    EXPECT_EQ(InvoerGetal(-0.0), "0");
}

TEST(InvoerGetalTest, HasAtMostFifteenDigitsThatCount)
{
    EXPECT_EQ(InvoerGetal(123456789.1234567), "123456789.123457");
    EXPECT_EQ(InvoerGetal(-1.2345678901234567e20), "-123456789012346000000");
    EXPECT_EQ(InvoerGetal(1.2345678901234567e-7), "0.000000123456789012346");
    EXPECT_EQ(InvoerGetal(0.000099999999999999999), "0.0001");
    EXPECT_EQ(InvoerGetal(999999999999999.9), "1000000000000000");
    EXPECT_EQ(InvoerGetal(1e308), "1" + QString(308, '0'));
    EXPECT_EQ(InvoerGetal(1.7e-308), "0." + QString(307, '0') + "17");
}

TEST(SchrijfRegelTest, PutsTheSignInColumnThirty)
{
    const TemporaryFolder map;
    const QString pad = QString::fromStdString((map / "regel.txt").string());
    const int bestand = gFile().FOpen(pad, QLMFile::Output);
    SchrijfRegel(bestand, "SLEUTEL", "waarde", true);
    SchrijfRegel(bestand, "WEG", "waarde", true, false);
    SchrijfRegel(bestand, "GETAL", "1", false);
    gFile().FClose(bestand);
    const auto regels = LeesBestand(pad).split('\n');
    ASSERT_EQ(regels.size(), 3);
    EXPECT_EQ(regels[0].indexOf('='), 29);
    EXPECT_EQ(regels[0].mid(31), "'waarde'\r");
    EXPECT_EQ(regels[1].mid(31), "1\r");
}
