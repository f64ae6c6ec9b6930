#include "calculation/BerekeningInstellingen.h"

#include "Installation.h"
#include "calculation/Rekeninstellingen.h"

#include <gtest/gtest.h>

namespace {

class BerekeningInstellingenTest : public testing::Test {
protected:
    /// What a file of this content is read as.
    BerekeningInstellingen Lees(const QByteArray& inhoud)
    {
        installatie.Write("proef.ini", QByteArray(inhoud).replace("\n", "\r\n"));
        QLMIniFile ini(pad);
        return BerekeningInstellingen::Lees(ini);
    }
    QByteArray Inhoud() const
    {
        QFile bestand(pad);
        return bestand.open(QIODevice::ReadOnly) ? bestand.readAll().replace("\r\n", "\n")
                                                 : QByteArray();
    }
    void Bewaar(const BerekeningInstellingen& instellingen)
    {
        QLMIniFile ini(pad);
        EXPECT_TRUE(instellingen.Bewaar(ini));
    }

    Installation installatie;
    QString pad = installatie.Path("proef.ini");
};

BerekeningInstellingen AllesAnders()
{
    BerekeningInstellingen s;
    s.normFrequentie = false;
    s.extraFrequenties = true;
    for (int i = 1; i <= 12; ++i)
        s.frequenties << QString::number(i * 10);
    s.kruinhoogteProfiel = false;
    s.extraKruinhoogtes = true;
    s.kruinhoogtes = QStringList{"-1,5", "2"};
    s.indexFaalmechanisme = 2;
    s.overslagdebiet = "0,1";
    s.indexGolfgroeimodule = 1;
    s.golfCorrFactorAan = true;
    s.golfCorrFactor = "1,25";
    s.uitEnIll = false;
    s.windreductie = false;
    s.uitsplitsenNaarAandelen = false;
    s.toeslagWS = {true, "0,3", "klink en zetting"};
    s.toeslagHBN = {true, "0,2", "robuustheid"};
    s.toenameWind = {true, "12,5", {}};
    return s;
}

} // namespace

TEST_F(BerekeningInstellingenTest, AnAbsentFileGivesTheDefaultsOfTheDialog)
{
    QLMIniFile ini(pad);
    BerekeningInstellingen verwacht;
    verwacht.overslagdebiet = "1";
    verwacht.golfCorrFactor = "1";
    verwacht.toeslagWS.waarde = "1";
    verwacht.toeslagHBN.waarde = "1";
    verwacht.toenameWind.waarde = "1";
    // The rest as the struct begins: all switches on, no surcharge, overflow.
    EXPECT_EQ(BerekeningInstellingen::Lees(ini), verwacht);
    EXPECT_EQ(verwacht.indexFaalmechanisme, 0);
    EXPECT_TRUE(verwacht.normFrequentie && verwacht.windreductie);
}

TEST_F(BerekeningInstellingenTest, WhatIsSavedIsReadBack)
{
    const auto s = AllesAnders();
    Bewaar(s);
    QLMIniFile ini(pad);
    EXPECT_EQ(BerekeningInstellingen::Lees(ini), s);
    Bewaar(s); // over the present keys, FREQ.1 before FREQ.10
    QLMIniFile weer(pad);
    EXPECT_EQ(BerekeningInstellingen::Lees(weer), s);
}

TEST_F(BerekeningInstellingenTest, KeysStandInTheirOrder)
{
    auto s = AllesAnders();
    s.frequenties = QStringList{"10", "0,5"};
    Bewaar(s);
    EXPECT_EQ(Inhoud().replace("\n\n", "\n").trimmed(),
              "[Frequenties]\nNORMFREQ=0\nEXTRAFREQ=1\nNFREQ=2\nFREQ.1=10\nFREQ.2=0,5\n"
              "[Kruinhoogtes]\nKRUINHPROFIEL=0\nEXTRAKRUINH=1\nNKRUIN=2\nKRUIN.1=-1,5\nKRUIN.2=2\n"
              "[Faalmechanisme]\nINDEXFAALMECHANISME=2\nOVERSLAGDEBIET=0,1\n"
              "[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=1\nGOLFCORRFACTOR=1,25\n"
              "GOLFCORRFACTORAAN=1\n"
              "[Extra]\nUITENILL=0\nWINDREDUCTIE=0\nUITSPLITSENNAARAANDELEN=0\n"
              "[Toeslagen]\nTOESLAGWSAAN=1\nTOESLAGWSVAL=0,3\nTOESLAGWSMEMO=klink en zetting\n"
              "TOESLAGHBNAAN=1\nTOESLAGHBNVAL=0,2\nTOESLAGHBNMEMO=robuustheid\n"
              "TOENAMEWINDAAN=1\nTOENAMEWINDVAL=12,5")
        << Inhoud().toStdString();
}

TEST_F(BerekeningInstellingenTest, FlagAndFactorOfWavesBothArrive)
{
    // Also in a file where the flag stands in front.
    Lees("[Golfgroeimodule]\nGOLFCORRFACTORAAN=0\nGOLFCORRFACTOR=3\n");
    Bewaar(AllesAnders());
    QLMIniFile ini(pad);
    const auto gelezen = BerekeningInstellingen::Lees(ini);
    EXPECT_TRUE(gelezen.golfCorrFactorAan);
    EXPECT_EQ(gelezen.golfCorrFactor, "1,25");
    EXPECT_EQ(LeesGolfCorrFactor(pad), 1.25);
}

TEST_F(BerekeningInstellingenTest, ReturnPeriodsAreForcedIntoTheirRange)
{
    const auto s = Lees("[Frequenties]\nNFREQ=6\nFREQ.1=0.1\nFREQ.2=0,5\nFREQ.3=50000\n"
                        "FREQ.4=onzin\nFREQ.5=-3\nFREQ.6=1e400\n");
    EXPECT_EQ(s.frequenties, (QStringList{"0,5", "0,5", "20000", "0,5", "0,5", "20000"}));
}

TEST_F(BerekeningInstellingenTest, EitherDecimalSignIsRead)
{
    const auto s = Lees("[Frequenties]\nNFREQ=2\nFREQ.1=0.75\nFREQ.2=0,75\n"
                        "[Toeslagen]\nTOESLAGWSVAL=0.25\n");
    EXPECT_EQ(s.frequenties, (QStringList{"0,75", "0,75"}));
    EXPECT_EQ(s.toeslagWS.waarde, "0,25");
}

TEST_F(BerekeningInstellingenTest, CrestHeightsAreNeverClamped)
{
    const auto s = Lees("[Kruinhoogtes]\nNKRUIN=3\nKRUIN.1=55\nKRUIN.2=-300.5\n");
    EXPECT_EQ(s.kruinhoogtes, (QStringList{"55", "-300,5", "1000"}));
}

TEST_F(BerekeningInstellingenTest, IndexesAreForcedIntoTheirRange)
{
    const auto lees = [this](const QByteArray& index) {
        const auto s = Lees("[Faalmechanisme]\nINDEXFAALMECHANISME=" + index +
                            "\n[Golfgroeimodule]\nINDEXGOLFGROEIMODULE=" + index + "\n");
        EXPECT_EQ(s.indexFaalmechanisme, s.indexGolfgroeimodule);
        return s.indexFaalmechanisme;
    };
    EXPECT_EQ(lees("-1"), 0);
    EXPECT_EQ(lees("1"), 1);
    EXPECT_EQ(lees("3"), 2);
    EXPECT_EQ(lees("99999999999"), 2);
    EXPECT_EQ(lees("x"), 0);
}

TEST_F(BerekeningInstellingenTest, NonsenseInEveryKeyIsRead)
{
    for (const QByteArray onzin : {"onzin", "-1e999", "1e999", "99999999999999999999", ""}) {
        QByteArray inhoud;
        for (const char* sectie : {"Frequenties", "Kruinhoogtes", "Faalmechanisme",
                                   "Golfgroeimodule", "Extra", "Toeslagen"}) {
            inhoud += QByteArray("[") + sectie + "]\n";
            for (const char* sleutel : {"NORMFREQ",
                                        "EXTRAFREQ",
                                        "NFREQ",
                                        "FREQ.1",
                                        "KRUINHPROFIEL",
                                        "EXTRAKRUINH",
                                        "NKRUIN",
                                        "KRUIN.1",
                                        "INDEXFAALMECHANISME",
                                        "OVERSLAGDEBIET",
                                        "INDEXGOLFGROEIMODULE",
                                        "GOLFCORRFACTOR",
                                        "GOLFCORRFACTORAAN",
                                        "UITENILL",
                                        "WINDREDUCTIE",
                                        "UITSPLITSENNAARAANDELEN",
                                        "TOESLAGWSAAN",
                                        "TOESLAGWSVAL",
                                        "TOESLAGHBNAAN",
                                        "TOESLAGHBNVAL",
                                        "TOENAMEWINDAAN",
                                        "TOENAMEWINDVAL"})
                inhoud += QByteArray(sleutel) + "=" + onzin + "\n";
        }
        const auto s = Lees(inhoud);
        EXPECT_FALSE(s.normFrequentie || s.windreductie || s.toeslagWS.aan) << onzin.toStdString();
        EXPECT_LE(s.frequenties.size(), 100);
        EXPECT_LE(s.kruinhoogtes.size(), 100);
        EXPECT_EQ(s.overslagdebiet, onzin == "99999999999999999999" ? "1E+20" : "0");
    }
}

TEST_F(BerekeningInstellingenTest, NumbersAboveTheCountStayInTheFile)
{
    auto s = Lees("[Frequenties]\nNFREQ=3\nFREQ.1=1\nFREQ.2=2\nFREQ.3=3\n");
    s.frequenties = QStringList{"7"};
    Bewaar(s);
    QLMIniFile ini(pad);
    EXPECT_EQ(OpgeslagenFrequentie(ini, 1), "7");
    EXPECT_EQ(OpgeslagenFrequentie(ini, 3), "3");
    EXPECT_EQ(OpgeslagenFrequentie(ini, 4), "1000");
    EXPECT_EQ(OpgeslagenKruinhoogte(ini, 4), "10");
}

TEST_F(BerekeningInstellingenTest, AFolderThatIsGoneIsToldOnSaving)
{
    QLMIniFile ini(installatie.Path("weg/proef.ini"));
    EXPECT_FALSE(AllesAnders().Bewaar(ini));
}

TEST_F(BerekeningInstellingenTest, BoundsOfFactorAndRanges)
{
    for (const char* goed : {"0,001", "1", "9.999", " 5 "})
        EXPECT_TRUE(IsGolfCorrFactor(goed)) << goed;
    for (const char* fout : {"0", "10", "-1", "", "x", "10,0"})
        EXPECT_FALSE(IsGolfCorrFactor(fout)) << fout;
    EXPECT_TRUE(IsTussen("0,5", 0.5, 20000));
    EXPECT_TRUE(IsTussen("20000", 0.5, 20000));
    EXPECT_FALSE(IsTussen("0,49", 0.5, 20000));
    EXPECT_FALSE(IsTussen("", -20, 20));
}

TEST_F(BerekeningInstellingenTest, TheShippedFileAsksForWaveOvertopping)
{
    const QString bestand = installatie.Path("data/Instellingen.ini");
    QLMIniFile ini(bestand);
    const auto s = BerekeningInstellingen::Lees(ini);
    EXPECT_TRUE(s.normFrequentie && s.extraFrequenties);
    EXPECT_EQ(s.frequenties, (QStringList{"10", "30", "100", "300", "1000"}));
    EXPECT_EQ(s.indexFaalmechanisme, faalmechanisme::Golfoverslag);
    EXPECT_EQ(LeesOverslagdebiet(bestand), 1);
    EXPECT_EQ(s.indexGolfgroeimodule, 0);
    EXPECT_FALSE(s.golfCorrFactorAan);
    EXPECT_TRUE(s.uitsplitsenNaarAandelen);
    EXPECT_EQ(OpgeslagenFrequentie(ini, 10), "1000");
    // Where the order of two keys decides what a save overwrites.
    QFile file(bestand);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray inhoud = file.readAll();
    EXPECT_LT(inhoud.indexOf("\r\nFREQ.1="), inhoud.indexOf("\r\nFREQ.10="));
    EXPECT_LT(inhoud.indexOf("\r\nGOLFCORRFACTOR="), inhoud.indexOf("\r\nGOLFCORRFACTORAAN="));
}
