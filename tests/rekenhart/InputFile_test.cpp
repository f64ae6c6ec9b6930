#include "CoreInputs.h"
#include "rekenhart/Fout.h"
#include "rekenhart/files/InputFile.h"
#include "rekenhart/files/InvoerLezer.h"
#include "rekenhart/files/Numbers.h"
#include "rekenhart/files/TextEncoding.h"

#include <gtest/gtest.h>

#include <random>

using namespace rekenhart;

namespace {

/// The file that the application writes for one location.
const std::string kDijkvak = ";------------algemeen------------\r\n"
                             "USERNAME                     = jansen\r\n"
                             "DATBER                       = '15-11-2026 14:03:22'\r\n"
                             "DBRVW                        = 'D:\\model\\boezem.mdb'\r\n"
                             "ODBCRVW                      = 'Zandvoet Gegevens'\r\n"
                             "UITVOERMAP                   = 'D:\\werk\\ontwerp_P1'\r\n"
                             "OVERZICHTNM                  = ''\r\n"
                             "MEMO                         = 'eerste ontwerp'\r\n"
                             ";------------variant-------------\r\n"
                             "VARIANT                      = 'DIJKVAK'\r\n"
                             "LOCATIE                      = 'Dijkpaal 12'\r\n"
                             "LOCATIE_ID                   = 117\r\n"
                             ";------------profiel-------------\r\n"
                             "PROFIEL                      = 'P1'\r\n"
                             "PROFIEL_ID                   = 4\r\n"
                             ";------------faalmechanisme------\r\n"
                             "FAALMECHANISME               = 'GOLFOVERSLAG'\r\n"
                             "OVERSLAGDEBIET               = 0.5\r\n"
                             "GOLFGROEIMODULE              = 'YOUNGVERHAGEN'\r\n"
                             ";------------frequenties------------\r\n"
                             "NORMFREQUENTIE               = JA\r\n"
                             "FREQ                         = 0.01\r\n"
                             "FREQ                         = 0.0001\r\n"
                             ";------------kruinhoogtes------------\r\n"
                             "KRUINHOOGTEPROFIEL           = JA\r\n"
                             "KRUIN                        = 1.5\r\n"
                             "KRUIN                        = 2\r\n"
                             ";------------berekening------------\r\n"
                             "BEREKENING_ID                = 212\r\n"
                             ";------------extra------------\r\n"
                             "UITENILL                     = NEE\r\n"
                             "WINDREDUCTIE                 = JA\r\n"
                             "UITSPLITSENNAARAANDELEN      = NEE\r\n"
                             ";-----------toeslagen----------\r\n"
                             "TOESLAGWS                    = 0.1\r\n"
                             "TOESLAGWSMEMO                = 'marge'\r\n";

/// kDijkvak with the line of `key` replaced by `line` (removed when empty).
std::string With(const std::string& key, const std::string& line)
{
    std::string text = kDijkvak;
    const auto at = text.find("\n" + key + " ") + 1;
    text.replace(at, text.find('\n', at) + 1 - at, line.empty() ? "" : line + "\r\n");
    return text;
}

Instellingen Read(const std::string& text)
{
    return ReadInstellingen(InputFile(text));
}

void ExpectRefused(const std::string& text, const std::string& message)
{
    try {
        Read(text);
        ADD_FAILURE() << "accepted; expected: " << message;
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Code(), ExitCode::InvalidKey);
        EXPECT_EQ(fout.Text(), message);
    }
}

} // namespace

TEST(InputFileTest, ReadsWhatTheApplicationWrites)
{
    const Instellingen s = Read(kDijkvak);
    EXPECT_EQ(s.gebruiker, "jansen");
    EXPECT_EQ(s.datum, "15-11-2026 14:03:22");
    EXPECT_EQ(s.database, "D:\\model\\boezem.mdb");
    EXPECT_EQ(s.uitvoermap, "D:\\werk\\ontwerp_P1");
    EXPECT_EQ(s.overzicht, "");
    EXPECT_EQ(s.memo, "eerste ontwerp");
    EXPECT_EQ(s.variant, Variant::Dijkvak);
    EXPECT_EQ(s.locatie, "Dijkpaal 12");
    EXPECT_EQ(s.locatieId, 117);
    EXPECT_EQ(s.profiel, "P1");
    EXPECT_EQ(s.profielId, 4);
    EXPECT_EQ(s.belasting.faalmechanisme, Faalmechanisme::Golfoverslag);
    EXPECT_EQ(s.belasting.overslagdebiet, 0.5);
    EXPECT_EQ(s.belasting.golfgroeimodule, Golfgroeimodule::YoungVerhagen);
    EXPECT_EQ(s.belasting.golfCorrFactor, 1);
    EXPECT_TRUE(s.normfrequentie);
    EXPECT_EQ(s.herhalingstijden, (std::vector<double>{100, 10000}));
    EXPECT_TRUE(s.kruinhoogteProfiel);
    EXPECT_EQ(s.kruinhoogten, (std::vector<double>{1.5, 2}));
    EXPECT_EQ(s.berekeningId, 212);
    EXPECT_FALSE(s.uitEnIll);
    EXPECT_TRUE(s.belasting.windreductie);
    EXPECT_FALSE(s.uitsplitsen);
    EXPECT_EQ(s.belasting.toeslagWs, 0.1);
    EXPECT_EQ(s.memoToeslagWs, "marge");
    EXPECT_EQ(s.belasting.toeslagHbn, 0);
    EXPECT_TRUE(s.onbekendeSleutels.empty());
}

TEST(InputFileTest, OrderAndCaseDoNotMatterAndTheLastOfASingleKeyCounts)
{
    const InputFile file("b = 2\nA=1\nB = 3\n");
    EXPECT_EQ(file.Value("B"), "3");
    EXPECT_EQ(file.Values("B"), (std::vector<std::string>{"2", "3"}));
    EXPECT_EQ(file.Value("C"), std::nullopt);
}

TEST(InputFileTest, SkipsCommentsEmptyLinesAndLinesWithoutAnEqualsSign)
{
    const InputFile file("; x = 1\n\nzomaar wat\n  y = 2  \n");
    ASSERT_EQ(file.Lines().size(), 1u);
    EXPECT_EQ(file.Value("Y"), "2");
}

TEST(InputFileTest, ANameMayHoldApostrophesAndEqualsSigns)
{
    EXPECT_EQ(InputFile("LOCATIE = ''t Zand'\r\n").Value("LOCATIE"), "'t Zand");
    EXPECT_EQ(InputFile("LOCATIE = 'Piet's dijk'\r\n").Value("LOCATIE"), "Piet's dijk");
    EXPECT_EQ(InputFile("PROFIEL = 'a = b'\r\n").Value("PROFIEL"), "a = b");
    EXPECT_EQ(InputFile("PROFIEL = ''\r\n").Value("PROFIEL"), "");
    EXPECT_EQ(InputFile("PROFIEL = 'open\r\n").Value("PROFIEL"), "open");
}

TEST(InputFileTest, AMemoRunsOnToTheLineThatEndsInAnApostrophe)
{
    const InputFile file(
        "MEMO = 'eerste regel\r\nFREQ = 0.5\r\nfoto's\r\nslot'\r\nFREQ = 0.01\r\n");
    EXPECT_EQ(file.Value("MEMO"), "eerste regel\nFREQ = 0.5\nfoto's\nslot");
    EXPECT_EQ(file.Values("FREQ"), (std::vector<std::string>{"0.01"}));
}

TEST(InputFileTest, AMemoThatIsNeverClosedIsOneLine)
{
    const InputFile file("MEMO = 'open\r\nFREQ = 0.01\r\n");
    EXPECT_EQ(file.Value("MEMO"), "open");
    EXPECT_EQ(file.Value("FREQ"), "0.01");
}

TEST(InputFileTest, TextIsWindows1252)
{
    EXPECT_EQ(InputFile("LOCATIE = 'Scheld\xE9 \x80'").Value("LOCATIE"), "Scheldé €");
}

// An editor that saves as UTF-8 says so in the first three bytes.
TEST(InputFileTest, AFileThatBeginsWithAByteOrderMarkIsUtf8)
{
    const InputFile file("\xEF\xBB\xBFVARIANT = 'DIJKVAK'\nLOCATIE = 'Scheldé €'\n");
    EXPECT_EQ(file.Value("VARIANT"), "DIJKVAK");
    EXPECT_EQ(file.Value("LOCATIE"), "Scheldé €");
}

TEST(InputFileTest, CodePageAndUtf8GoBackAndForth)
{
    std::string all;
    for (int c = 1; c < 256; ++c)
        all += static_cast<char>(c);
    EXPECT_EQ(ToWindows1252(FromWindows1252(all)), all);
    EXPECT_EQ(ToWindows1252("π€"), "?\x80");
    EXPECT_EQ(CharacterCount("dé €"), 4u);
}

TEST(InputFileTest, UnknownKeysAreCollectedOnce)
{
    EXPECT_EQ(Read(kDijkvak + "NIEUW = 1\r\nnieuw = 2\r\n").onbekendeSleutels,
              (std::vector<std::string>{"NIEUW"}));
}

TEST(InputFileTest, MissingKeysAreNamed)
{
    for (const char* key : {"VARIANT", "DBRVW", "UITVOERMAP", "FAALMECHANISME", "OVERSLAGDEBIET",
                            "GOLFGROEIMODULE", "BEREKENING_ID"})
        ExpectRefused(With(key, ""),
                      "Sleutel " + std::string(key) + " ontbreekt in het invoerbestand.");
    ExpectRefused(
        With("LOCATIE_ID", "LOCATIE_ID = -999")
            .replace(With("LOCATIE_ID", "LOCATIE_ID = -999").find("'Dijkpaal 12'"), 13, "''"),
        "Sleutel LOCATIE ontbreekt in het invoerbestand.");
}

// Some other file given by mistake must not keep the program busy with its keys.
TEST(InputFileTest, ALargeFileOfOtherKeysIsRefusedAtOnce)
{
    std::string text;
    for (int i = 0; i < 200000; ++i)
        text += "sleutel" + std::to_string(i) + " = 1\n";
    ExpectRefused(text, "Sleutel VARIANT ontbreekt in het invoerbestand.");
}

TEST(InputFileTest, InvalidValuesAreNamed)
{
    const auto expect = [](const std::string& key, const std::string& value) {
        ExpectRefused(With(key, key + " = " + value),
                      "Sleutel " + key + " heeft een ongeldige waarde: '" + value + "'.");
    };
    expect("VARIANT", "ANDERS");
    expect("FAALMECHANISME", "PIPING");
    expect("OVERSLAGDEBIET", "0");
    expect("OVERSLAGDEBIET", "0,5");
    expect("OVERSLAGDEBIET", "veel");
    expect("GOLFGROEIMODULE", "SWAN");
    expect("NORMFREQUENTIE", "MISSCHIEN");
    expect("BEREKENING_ID", "12.5");
    expect("TOESLAGWS", "11");
    expect("KRUIN", "hoog");
    ExpectRefused(kDijkvak + "FREQ = 3\r\n", "Sleutel FREQ heeft een ongeldige waarde: '3'.");
    ExpectRefused(kDijkvak + "FREQ = 0\r\n", "Sleutel FREQ heeft een ongeldige waarde: '0'.");
    ExpectRefused(kDijkvak + "FREQ = 0.00001\r\n",
                  "Sleutel FREQ heeft een ongeldige waarde: '0.00001'.");
    ExpectRefused(kDijkvak + "GOLFCORRFACTOR = 10\r\n",
                  "Sleutel GOLFCORRFACTOR heeft een ongeldige waarde: '10'.");
    ExpectRefused(kDijkvak + "TOENAMEWIND = 101\r\n",
                  "Sleutel TOENAMEWIND heeft een ongeldige waarde: '101'.");
}

TEST(InputFileTest, SurchargesAreReadWithinTheirLimits)
{
    const Instellingen s = Read(With("TOESLAGWS", "TOESLAGWS = -10") +
                                "TOESLAGHBN = 10\r\nTOESLAGHBNMEMO = 'ruim'\r\n"
                                "TOENAMEWIND = -50\r\nUITENILL = JA\r\nWINDREDUCTIE = NEE\r\n");
    EXPECT_EQ(s.belasting.toeslagWs, -10);
    EXPECT_EQ(s.belasting.toeslagHbn, 10);
    EXPECT_EQ(s.memoToeslagHbn, "ruim");
    EXPECT_EQ(s.belasting.toenameWind, -50);
    EXPECT_TRUE(s.uitEnIll);
    EXPECT_FALSE(s.belasting.windreductie);
    for (const char* line : {"TOESLAGWS = -10.1", "TOESLAGHBN = 10.1", "TOESLAGHBN = -10.1",
                             "TOENAMEWIND = -50.1", "TOENAMEWIND = 100.1"})
        EXPECT_THROW(Read(kDijkvak + line + "\r\n"), Fout) << line;
}

TEST(InputFileTest, AbsentFlagsHaveTheirDefaults)
{
    std::string text = kDijkvak;
    for (const char* key : {"NORMFREQUENTIE", "KRUINHOOGTEPROFIEL", "UITENILL", "WINDREDUCTIE",
                            "UITSPLITSENNAARAANDELEN"}) {
        const auto at = text.find("\n" + std::string(key) + " ") + 1;
        text.erase(at, text.find('\n', at) + 1 - at);
    }
    const Instellingen s = Read(text);
    EXPECT_TRUE(s.normfrequentie);
    for (const bool flag :
         {s.kruinhoogteProfiel, s.uitEnIll, s.belasting.windreductie, s.uitsplitsen})
        EXPECT_FALSE(flag);
}

TEST(InputFileTest, TheEndsOfTheRangeOfReturnPeriodsAreIn)
{
    const Instellingen s = Read(kDijkvak + "FREQ = 2\r\nFREQ = 0.00005\r\n");
    EXPECT_NEAR(s.herhalingstijden[2], 0.5, 1e-12);
    EXPECT_NEAR(s.herhalingstijden[3], 20000, 1e-6);
}

TEST(InputFileTest, Minus999IsNoValue)
{
    const Instellingen s = Read(kDijkvak + "GOLFCORRFACTOR = -999\r\nKRUIN = -999\r\n");
    EXPECT_EQ(s.belasting.golfCorrFactor, 1);
    EXPECT_EQ(s.kruinhoogten.size(), 2u);
    ExpectRefused(With("OVERSLAGDEBIET", "OVERSLAGDEBIET = -999"),
                  "Sleutel OVERSLAGDEBIET ontbreekt in het invoerbestand.");
}

TEST(InputFileTest, AnOverflowedCalculationNumberIsUsedAsItStands)
{
    EXPECT_EQ(Read(With("BEREKENING_ID", "BEREKENING_ID = -32768")).berekeningId, -32768);
}

TEST(InputFileTest, OverflowNeedsNoProfileWavesOrDischarge)
{
    std::string text = With("FAALMECHANISME", "FAALMECHANISME = 'OVERLOOP'");
    for (const char* line : {"OVERSLAGDEBIET               = 0.5\r\n",
                             "GOLFGROEIMODULE              = 'YOUNGVERHAGEN'\r\n"})
        text.erase(text.find(line), std::string(line).size());
    text.replace(text.find("'P1'"), 4, "''");
    EXPECT_EQ(Read(text).belasting.faalmechanisme, Faalmechanisme::Overloop);
}

TEST(InputFileTest, ReadsADeterministicCalculation)
{
    const std::string text = "DBRVW = 'x.mdb'\r\nUITVOERMAP = '/tmp'\r\nVARIANT = 'DETERM'\r\n"
                             "LOCATIE = 'A'\r\nLOCATIE_ID = 1\r\nPROFIEL = ''\r\n"
                             "PROFIEL_ID = -999\r\nSITUATIE = 'HANDMATIG'\r\nBOEZEMPEIL = 0.3\r\n"
                             "WINDSNELHEID = 20\r\nFAALMECHANISME = 'OVERLOOP'\r\n"
                             "OVERSLAGDEBIET = 0\r\nWINDREDUCTIE = NEE\r\n";
    const Instellingen s = Read(text);
    EXPECT_EQ(s.situatie, Situatie::Handmatig);
    EXPECT_EQ(s.boezempeil, 0.3);
    EXPECT_EQ(s.windsnelheid, 20);
    EXPECT_EQ(Read(text + "SITUATIE = 'BGEMUEXTR'\r\n").situatie, Situatie::BgemUextr);
    ExpectRefused(text + "SITUATIE = 'STORM'\r\n",
                  "Sleutel SITUATIE heeft een ongeldige waarde: 'STORM'.");
    ExpectRefused(text + "WINDSNELHEID = -1\r\n",
                  "Sleutel WINDSNELHEID heeft een ongeldige waarde: '-1'.");
    ExpectRefused(text + "BOEZEMPEIL = -999\r\n",
                  "Sleutel BOEZEMPEIL ontbreekt in het invoerbestand.");
}

TEST(InputFileTest, ReadsADikeRing)
{
    const std::string text = "DBRVW = 'x.mdb'\r\nUITVOERMAP = '/tmp'\r\nVARIANT = 'DIJKRING'\r\n"
                             "DIJKRING = 'Ring Oost'\r\nFAALMECHANISME = 'GOLFOVERSLAG'\r\n"
                             "GOLFGROEIMODULE = 'BRETSCHNEIDER'\r\nWINDREDUCTIE = JA\r\n";
    const Instellingen s = Read(text);
    EXPECT_EQ(s.variant, Variant::Dijkring);
    EXPECT_EQ(s.dijkring, "Ring Oost");
    ExpectRefused(text + "DIJKRING = ''\r\n", "Sleutel DIJKRING ontbreekt in het invoerbestand.");
}

TEST(NumbersTest, WritesPlainDecimalsWithAPoint)
{
    EXPECT_EQ(Fixed(0.00005, 10), "0.0000500000");
    EXPECT_EQ(Fixed(-0.0004, 3), "0.000");
    EXPECT_EQ(Fixed(-0.0006, 3), "-0.001");
    EXPECT_EQ(Fixed(-999, 3), "-");
    EXPECT_EQ(Period(1000), "1000");
    EXPECT_EQ(Period(20000), "20000");
    EXPECT_EQ(Period(100.0 / 3), "33.3333");
    EXPECT_EQ(Period(4e6), "4000000");
}

TEST(NumbersTest, RefusesWhatIsNotWhollyANumber)
{
    EXPECT_EQ(ParseNumber("1.5"), 1.5);
    for (const char* text : {"", "1,5", "1.5 m", "x", "nan", "inf"})
        EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
    EXPECT_EQ(ParseInteger("-32768"), -32768);
    EXPECT_EQ(ParseInteger("99999999999"), std::nullopt);
}

TEST(InputFileTest, DamagedFilesAreReadOrRefusedButNeverCrash)
{
    std::mt19937 random(20261122);
    for (int i = 0; i < 2000; ++i) {
        std::string damaged = kDijkvak;
        for (unsigned j = 1 + random() % 4; j > 0; --j)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        if (i % 3 == 0)
            damaged.resize(random() % damaged.size());
        EXPECT_NO_THROW(fuzz::ReadCoreInput(std::as_bytes(std::span(damaged)))) << damaged;
    }
}
