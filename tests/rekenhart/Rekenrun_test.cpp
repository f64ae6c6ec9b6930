// Whole runs over a database in memory: what is written where, what is refused,
// and that a failure leaves nothing half done.

#include "rekenhart/MemoryGegevensbron.h"

#include "TemporaryFolder.h"
#include "rekenhart/files/OutputFiles.h"
#include "rekenhart/files/TextEncoding.h"
#include "rekenhart/report/Reports.h"
#include "rekenhart/run/Rekenrun.h"

#include <gmock/gmock.h>

#include <fstream>
#include <set>
#include <sstream>

using namespace rekenhart;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr int kBerekening = 7;

class RekenrunTest : public testing::Test {
protected:
    /// Runs on the keys of `input`; later keys win.
    ExitCode Run(const std::string& extra = {})
    {
        std::string text;
        for (const auto& [key, value] : input)
            text += key + " = " + value + "\r\n";
        text += extra;
        return RunOn(text);
    }

    ExitCode RunOn(const std::string& text)
    {
        std::ofstream(folder / "invoer.txt", std::ios::binary) << text;
        return RunFile(folder / "invoer.txt");
    }

    ExitCode RunFile(const std::filesystem::path& file)
    {
        std::ostringstream out;
        Console console(out);
        const ExitCode code = Rekenrun(database.Opener(), console).Run(file);
        output = FromWindows1252(out.str());
        return code;
    }

    void ExpectFailure(ExitCode code, ExitCode expected, const std::string& text)
    {
        EXPECT_EQ(code, expected);
        EXPECT_THAT(output, HasSubstr("FOUT: " + text + "\n"));
        EXPECT_THAT(File("uitvoer.txt"), HasSubstr("FOUT: " + text));
        EXPECT_FALSE(std::filesystem::exists(folder / "freqlijn.txt"));
        for (const auto& row : database.resultaten)
            EXPECT_EQ(row.waarden.hbn, kNietBekend) << "no partial rows";
        EXPECT_EQ(database.connections, 0);
    }

    std::string File(const std::string& name) const
    {
        return FromWindows1252(ReadBytes(folder / name).value_or("<geen bestand>"));
    }

    const ResultaatRij& Row(double years) const
    {
        for (const auto& row : database.resultaten)
            if (row.waarden.herhalingstijd == years)
                return row.waarden;
        throw std::out_of_range("no such row");
    }

    MemoryDatabase database;
    TemporaryFolder folder;
    std::string output;
    /// Plas-04 (id 4), Gras 1op3, overtopping of 1 l/s/m.
    std::map<std::string, std::string> input{
        {"DBRVW", "'boezem.mdb'"},
        {"UITVOERMAP", "'" + ToUtf8(folder.Path()) + "'"},
        {"VARIANT", "'DIJKVAK'"},
        {"LOCATIE", "'Plas-04'"},
        {"LOCATIE_ID", "4"},
        {"PROFIEL", "'Gras 1op3'"},
        {"PROFIEL_ID", "-999"},
        {"FAALMECHANISME", "'GOLFOVERSLAG'"},
        {"OVERSLAGDEBIET", "1"},
        {"GOLFGROEIMODULE", "'BRETSCHNEIDER'"},
        {"WINDREDUCTIE", "JA"},
        {"UITSPLITSENNAARAANDELEN", "JA"},
        {"BEREKENING_ID", std::to_string(kBerekening)},
    };
};

} // namespace

TEST_F(RekenrunTest, FillsTheRowsThatWait)
{
    database.AddRow(kBerekening, 4, 1000);
    database.AddRow(kBerekening, 4, 10);
    database.AddRow(kBerekening, 5, 10);
    database.AddRow(8, 4, 10);
    EXPECT_EQ(Run("FREQ = 0.1\r\n"), ExitCode::Ok) << output;

    EXPECT_NEAR(database.resultaten[0].waarden.hbn, 1.16173, 2e-4);
    const ResultaatRij& ten = database.resultaten[1].waarden;
    EXPECT_NEAR(ten.hbn, 0.631021, 2e-4);
    EXPECT_NEAR(ten.overloopMo, -0.144719, 2e-4);
    EXPECT_NEAR(ten.overloopZo, -0.1652, 2e-4);
    EXPECT_NEAR(ten.boezempeil, -0.17, 1e-9);
    EXPECT_EQ(ten.streefpeil, -0.6);
    EXPECT_EQ(ten.dominanteWindrichting, 270);
    EXPECT_EQ(ten.golfrichting, 270);
    EXPECT_EQ(database.resultaten[2].waarden.hbn, kNietBekend) << "another location";
    EXPECT_EQ(database.resultaten[3].waarden.hbn, kNietBekend) << "another calculation";
    EXPECT_EQ(database.openings, 2) << "once to read, once to write";
    EXPECT_EQ(database.connections, 0);
}

TEST_F(RekenrunTest, ReportsProgressInWholeLines)
{
    database.AddRow(kBerekening, 4, 1000);
    Run();
    EXPECT_THAT(output, HasSubstr("Invoer gelezen: locatie Plas-04, profiel Gras 1op3\n"));
    EXPECT_THAT(output, HasSubstr("Voortgang:   5 %\n"));
    EXPECT_THAT(output, HasSubstr("Voortgang:  65 %\n"));
    EXPECT_THAT(output, HasSubstr("Voortgang: 100 %\nBerekening gereed.\n"));
    int before = -1;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("Voortgang: ", 0) == 0) {
            const int percent = std::stoi(line.substr(11));
            EXPECT_GT(percent, before);
            before = percent;
        }
}

TEST_F(RekenrunTest, TheFrequencyLineHasFifteenPointsInTheAgreedForm)
{
    database.AddRow(kBerekening, 4, 1000);
    Run("FREQ = 0.01\r\n");
    std::istringstream lines(File("freqlijn.txt"));
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "15  punten: niveau [m] en overschrijdingsfrequentie [1/jaar]\r");
    double level = -10;
    int count = 0;
    while (std::getline(lines, line)) {
        const auto blank = line.find(' ');
        EXPECT_GT(std::stod(line.substr(0, blank)), level) << "rising";
        EXPECT_EQ(line.substr(blank + 1).size(), 13u) << "0. and ten decimals, CR";
        level = std::stod(line.substr(0, blank));
        ++count;
    }
    EXPECT_EQ(count, 15);
    EXPECT_THAT(File("freqlijn.txt"), HasSubstr(" 0.0000500000\r\n"));
    EXPECT_THAT(File("freqlijn.txt"), HasSubstr("\r\n1.1617 0.0010000000\r\n"));
}

TEST_F(RekenrunTest, TheReportTellsAllThatAnEngineerChecks)
{
    database.AddRow(kBerekening, 4, 1000);
    Run("MEMO = 'eerste regel\r\ntweede regel'\r\nDATBER = '15-11-2026 14:03:22'\r\n"
        "USERNAME = jansen\r\nKRUINHOOGTEPROFIEL = JA\r\nKRUIN = 1.1\r\nKRUIN = 5\r\n");
    const std::string report = File("uitvoer.txt");
    for (const char* part : {"Rekenhart (open referentie) versie ",
                             "15-11-2026 14:03:22",
                             "jansen",
                             "eerste regel",
                             "Grenzen van deze berekening",
                             "De statistiek van de voorbeelddatabase is verzonnen.",
                             "Plas-04",
                             "Gegevens per windrichting",
                             "Gras 1op3",
                             "GOLFOVERSLAG",
                             "1 l/s per m",
                             "Waarschuwingen",
                             "Resultaten",
                             "1.162",
                             "Aandelen",
                             "Ontwerppunten",
                             "Aandeel per windrichting in procenten",
                             "Tussenresultaten per windrichting",
                             "Kruinhoogten",
                             "meer dan 10 miljoen jaar",
                             "Frequentielijn",
                             "Gebruikte formules"})
        EXPECT_THAT(report, HasSubstr(part));
    EXPECT_THAT(report, Not(HasSubstr("Illustratiepunten per windrichting")));
    EXPECT_THAT(report, Not(HasSubstr("nan")));
    EXPECT_EQ(report.find("\r\n"), report.find('\n') - 1);
}

// 0.150 + 0.600, 0.1544 - 0.150, 0.1689 - 0.1544 and 1.1617 - 0.1689 m.
TEST_F(RekenrunTest, TheReportTellsTheFourShares)
{
    database.AddRow(kBerekening, 4, 1000);
    EXPECT_EQ(Run(), ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), testing::ContainsRegex("\n1000 +0.750 +0.004 +0.014 +0.993"));
}

// The grid ends at 1e-7 per year; what it gives beyond is no figure to print.
TEST_F(RekenrunTest, ACrestBeyondTheGridHasNoReturnPeriod)
{
    database.AddRow(kBerekening, 4, 1000);
    EXPECT_EQ(Run("KRUIN = 2.3\r\n"), ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"),
                testing::ContainsRegex("\n2.300 +[1-9][0-9.]*e-[0-9]+ +meer dan 10 miljoen jaar"));
}

// The profile's crest is its last point; a wall or overflow has that of the location.
TEST_F(RekenrunTest, TheCrestOfTheProfileComesBeforeTheExtraOnes)
{
    database.AddRow(kBerekening, 4, 1000);
    const auto crests = [&](const std::string& keys) {
        EXPECT_EQ(Run("KRUINHOOGTEPROFIEL = JA\r\nKRUIN = 0.75\r\n" + keys), ExitCode::Ok);
        const std::string report = File("uitvoer.txt");
        const auto begin = report.find("\r\nKruinhoogten\r\n");
        std::istringstream lines(report.substr(begin, report.find("\r\nFrequentielijn") - begin));
        std::vector<std::string> found;
        for (std::string line; std::getline(lines, line);)
            if (!line.empty() && (std::isdigit(line[0]) || line[0] == '-') && line[1] != '-')
                found.push_back(line.substr(0, 5));
        return found;
    };
    database.At("Plas-04").kruinhoogte = 1.25;
    EXPECT_EQ(crests(""), (std::vector<std::string>{"1.000", "0.750"}));
    EXPECT_EQ(crests("PROFIEL = 'Damwand neus'\r\n"), (std::vector<std::string>{"1.250", "0.750"}));
    EXPECT_EQ(crests("FAALMECHANISME = 'OVERLOOP'\r\n"),
              (std::vector<std::string>{"1.250", "0.750"}));
    database.At("Plas-04").kruinhoogte = kNietBekend;
    EXPECT_EQ(crests("FAALMECHANISME = 'OVERLOOP'\r\n"), (std::vector<std::string>{"0.750"}));
}

TEST_F(RekenrunTest, IllustrationPointsComeWhenAskedFor)
{
    database.AddRow(kBerekening, 4, 1000);
    Run("UITENILL = JA\r\n");
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("Illustratiepunten per windrichting, T = 1000"));
}

TEST_F(RekenrunTest, WithoutSharesFourColumnsStayUnknown)
{
    database.AddRow(kBerekening, 4, 1000);
    Run("UITSPLITSENNAARAANDELEN = NEE\r\n");
    const ResultaatRij& row = Row(1000);
    EXPECT_NEAR(row.hbn, 1.16173, 2e-4);
    for (const double value : {row.overloopMo, row.overloopZo, row.boezempeil, row.streefpeil})
        EXPECT_EQ(value, kNietBekend);
}

TEST_F(RekenrunTest, TheNormRowStaysUnknownWhenItIsNotAskedFor)
{
    database.AddRow(kBerekening, 4, 1000);
    database.AddRow(kBerekening, 4, 100);
    Run("NORMFREQUENTIE = NEE\r\nFREQ = 0.01\r\n");
    EXPECT_EQ(Row(1000).hbn, kNietBekend);
    EXPECT_NEAR(Row(100).hbn, 0.918103, 2e-4);
}

TEST_F(RekenrunTest, ANormPeriodThatIsAlsoAskedForIsOneRow)
{
    database.AddRow(kBerekening, 4, 1000);
    EXPECT_EQ(Run("FREQ = 0.001\r\n"), ExitCode::Ok);
    const std::string report = File("uitvoer.txt");
    const auto results = report.find("\r\nResultaten");
    const auto end = report.find("\r\nAandelen");
    const std::string table = report.substr(results, end - results);
    EXPECT_EQ(table.find("\r\n1000 "), table.rfind("\r\n1000 "));
}

TEST_F(RekenrunTest, ARowOfANearbyPeriodIsAnotherRow)
{
    database.AddRow(kBerekening, 4, 1000);
    database.AddRow(kBerekening, 4, 1000.5);
    EXPECT_EQ(Run(), ExitCode::Ok);
    EXPECT_EQ(Row(1000.5).hbn, kNietBekend);
}

TEST_F(RekenrunTest, APeriodWithoutARowIsAWarning)
{
    database.AddRow(kBerekening, 4, 1000);
    EXPECT_EQ(Run("FREQ = 0.01\r\n"), ExitCode::Ok);
    EXPECT_THAT(output, HasSubstr("WAARSCHUWING: Voor herhalingstijd 100 is geen rij in Resultaat "
                                  "gevonden.\n"));
    EXPECT_NE(Row(1000).hbn, kNietBekend);
}

TEST_F(RekenrunTest, NoWaitingRowAtAllEndsTheRun)
{
    database.AddRow(8, 4, 1000);
    ExpectFailure(Run(), ExitCode::NoRows,
                  "In Resultaat wacht geen enkele rij van berekening 7 en locatie 'Plas-04'.");
}

TEST_F(RekenrunTest, OverflowNeedsNoProfile)
{
    database.AddRow(kBerekening, 4, 1000);
    EXPECT_EQ(Run("FAALMECHANISME = 'OVERLOOP'\r\nPROFIEL = ''\r\n"), ExitCode::Ok);
    EXPECT_NEAR(Row(1000).hbn, 0.168876, 2e-4);
    EXPECT_EQ(Row(1000).golfhoogte, kNietBekend);
    EXPECT_THAT(output, HasSubstr("locatie Plas-04, geen profiel\n"));
}

TEST_F(RekenrunTest, TheOverviewGrowsUnderOneHeading)
{
    database.AddRow(kBerekening, 4, 1000);
    const std::string key = "OVERZICHTNM = '" + ToUtf8(folder / "overzicht.xls") + "'\r\n";
    EXPECT_EQ(Run(key), ExitCode::Ok);
    EXPECT_EQ(Run(key), ExitCode::Ok);
    const std::string overview = File("overzicht.xls");
    EXPECT_EQ(std::count(overview.begin(), overview.end(), '\n'), 3);
    EXPECT_THAT(overview, HasSubstr("Berekening_ID\tLocatie\tX\t"));
    EXPECT_THAT(overview, HasSubstr("\r\n7\tPlas-04\t"));
    EXPECT_THAT(overview, HasSubstr("\tGras 1op3\tGOLFOVERSLAG\t1\tBRETSCHNEIDER\t1000\t1.162\t"));
}

TEST_F(RekenrunTest, AnOverviewThatCannotBeWrittenIsAWarning)
{
    database.AddRow(kBerekening, 4, 1000);
    const std::string path = ToUtf8(folder / "bestaatniet" / "overzicht.xls");
    EXPECT_EQ(Run("OVERZICHTNM = '" + path + "'\r\n"), ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("WAARSCHUWING: Het overzichtsbestand"));
    EXPECT_NE(Row(1000).hbn, kNietBekend);
}

TEST_F(RekenrunTest, UnknownKeysAreIgnoredWithAWarning)
{
    database.AddRow(kBerekening, 4, 1000);
    EXPECT_EQ(Run("GETIJ = JA\r\n"), ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("WAARSCHUWING: De sleutel GETIJ in het "
                                               "invoerbestand is onbekend en is genegeerd."));
}

TEST_F(RekenrunTest, FailedWritingLeavesNoResultBehind)
{
    database.AddRow(kBerekening, 4, 1000);
    std::ofstream(folder / "overzicht.xls", std::ios::binary) << "vorige regel\n";
    database.writeFails = true;
    const auto code = Run("OVERZICHTNM = '" + ToUtf8(folder / "overzicht.xls") + "'\r\n");
    ExpectFailure(code, ExitCode::Database,
                  "De resultaten kunnen niet worden weggeschreven: de schijf is vol.");
    EXPECT_EQ(File("overzicht.xls"), "vorige regel\n") << "the overview is taken back";
}

TEST_F(RekenrunTest, FailedWritingTakesANewOverviewAway)
{
    database.AddRow(kBerekening, 4, 1000);
    database.writeFails = true;
    EXPECT_EQ(Run("OVERZICHTNM = '" + ToUtf8(folder / "overzicht.xls") + "'\r\n"),
              ExitCode::Database);
    EXPECT_FALSE(std::filesystem::exists(folder / "overzicht.xls"));
}

TEST_F(RekenrunTest, AFrequencyLineOfAnEarlierRunDoesNotOutliveAFailure)
{
    std::ofstream(folder / "freqlijn.txt") << "15  van gisteren\n";
    input.erase("OVERSLAGDEBIET");
    ExpectFailure(Run(), ExitCode::InvalidKey,
                  "Sleutel OVERSLAGDEBIET ontbreekt in het invoerbestand.");
}

TEST_F(RekenrunTest, ADeterministicRunLeavesAFrequencyLineOfAnotherAlone)
{
    std::ofstream(folder / "freqlijn.txt") << "15  van een ander\n";
    EXPECT_EQ(Run("VARIANT = 'DETERM'\r\nSITUATIE = 'STORM'\r\n"), ExitCode::InvalidKey);
    EXPECT_EQ(File("freqlijn.txt"), "15  van een ander\n");
}

TEST_F(RekenrunTest, ALockedDatabaseIsRefused)
{
    database.AddRow(kBerekening, 4, 1000);
    database.locked = true;
    ExpectFailure(Run(), ExitCode::Database, "De database 'boezem.mdb' kan niet worden geopend.");
    EXPECT_THAT(output, HasSubstr("Sluit andere programma's"));
}

TEST_F(RekenrunTest, AMissingInputFileIsRefused)
{
    EXPECT_EQ(RunFile(folder / "nietaanwezig.txt"), ExitCode::NoInput);
    EXPECT_THAT(output, HasSubstr("FOUT: Het invoerbestand '"));
    EXPECT_EQ(RunFile(folder.Path()), ExitCode::NoInput) << "a folder is no file";
}

TEST_F(RekenrunTest, AMissingKeyIsReportedInTheOutputFolder)
{
    input.erase("FAALMECHANISME");
    ExpectFailure(Run(), ExitCode::InvalidKey,
                  "Sleutel FAALMECHANISME ontbreekt in het invoerbestand.");
}

TEST_F(RekenrunTest, GarbageAsInputIsAMissingKey)
{
    EXPECT_EQ(RunOn(std::string("\0\xff\x01 zomaar\n=\n'='\n", 18)), ExitCode::InvalidKey);
    EXPECT_EQ(RunOn(""), ExitCode::InvalidKey);
}

TEST_F(RekenrunTest, AMissingOutputFolderIsRefused)
{
    database.AddRow(kBerekening, 4, 1000);
    EXPECT_EQ(Run("UITVOERMAP = '" + ToUtf8(folder / "weg") + "'\r\n"), ExitCode::OutputFile);
    EXPECT_THAT(output, HasSubstr("uitvoer.txt' kan niet worden geschreven."));
    EXPECT_EQ(Row(1000).hbn, kNietBekend);
}

TEST_F(RekenrunTest, AnOutputFileThatCannotBeWrittenLeavesTheRowsAlone)
{
    database.AddRow(kBerekening, 4, 1000);
    std::filesystem::create_directory(folder / "uitvoer.txt");
    EXPECT_EQ(Run(), ExitCode::OutputFile);
    EXPECT_EQ(Row(1000).hbn, kNietBekend);
    EXPECT_FALSE(std::filesystem::exists(folder / "freqlijn.txt"));
}

TEST_F(RekenrunTest, UnknownLocationProfileAndClassAreRefused)
{
    database.AddRow(kBerekening, 4, 1000);
    ExpectFailure(Run("LOCATIE_ID = 444\r\n"), ExitCode::DataMissing,
                  "De locatie 'Plas-04' staat niet in de database.");
    ExpectFailure(Run("PROFIEL = 'Onbekend'\r\n"), ExitCode::DataMissing,
                  "Het profiel 'Onbekend' staat niet in de database.");
    database.At("Plas-04").veiligheidsklasse = 9;
    ExpectFailure(Run(), ExitCode::DataMissing,
                  "De veiligheidsklasse 9 van locatie 'Plas-04' staat niet in de database.");
}

TEST_F(RekenrunTest, TheNameFindsALocationWithoutANumber)
{
    database.AddRow(kBerekening, 4, 1000);
    EXPECT_EQ(Run("LOCATIE_ID = -999\r\n"), ExitCode::Ok);
}

TEST_F(RekenrunTest, IncompleteLocationsAreRefusedWithWhatIsMissing)
{
    database.AddRow(kBerekening, 4, 1000);
    const Locatie whole = database.At("Plas-04");
    const auto expect = [&](const std::string& what, auto damage) {
        Locatie& locatie = database.At("Plas-04");
        damage(locatie);
        ExpectFailure(Run(), ExitCode::DataMissing,
                      "De gegevens van locatie 'Plas-04' zijn niet volledig: " + what + ".");
        locatie = whole;
    };
    expect("streefpeil onbekend", [](Locatie& l) { l.streefpeil = kNietBekend; });
    expect("dijknormaal onbekend", [](Locatie& l) { l.dijknormaal = kNietBekend; });
    expect("minder dan twee boezempeilen bekend", [](Locatie& l) {
        for (std::size_t i = 1; i < l.peilen.size(); ++i)
            l.peilen[i].boezempeil = kNietBekend;
    });
    expect("scheefstand onbekend in sector 3",
           [](Locatie& l) { l.sectoren[2].scheefstand[1].scheefstand = kNietBekend; });
    expect("scheefstand onbekend in sector 1", [](Locatie& l) {
        for (SectorGegevens& sector : l.sectoren)
            sector.scheefstand[0].windsnelheid = kNietBekend;
    });
    expect("scheefstand onbekend in sector 16",
           [](Locatie& l) { l.sectoren[15].scheefstand.clear(); });
    expect("strijklengte onbekend in sector 1",
           [](Locatie& l) { l.sectoren[0].strijklengte = kNietBekend; });
    expect("bodemhoogte onbekend in sector 16",
           [](Locatie& l) { l.sectoren[15].bodemhoogte = kNietBekend; });
    expect("windsnelheden verschillen per sector",
           [](Locatie& l) { l.sectoren[4].scheefstand[1].windsnelheid = 12; });
    expect("ruwheidslengte ongeldig", [](Locatie& l) { l.ruwheidslengte = 0; });
    expect("kwaliteitskenmerk 0", [](Locatie& l) { l.kwaliteitskenmerk = 0; });
}

TEST_F(RekenrunTest, RoughnessMattersOnlyWithWindReduction)
{
    database.AddRow(kBerekening, 4, 1000);
    database.At("Plas-04").ruwheidslengte = kNietBekend;
    EXPECT_EQ(Run("WINDREDUCTIE = NEE\r\n"), ExitCode::Ok);
}

TEST_F(RekenrunTest, InvalidStatisticsAreRefused)
{
    database.AddRow(kBerekening, 4, 1000);
    database.tabellen.winter.kanswindrichting.clear();
    ExpectFailure(Run(), ExitCode::Statistics,
                  "De tabel [Kanswindrichting winter] ontbreekt of is ongeldig: er zijn geen 16 "
                  "windrichtingen.");
}

TEST_F(RekenrunTest, UnsuitableProfilesAreRefused)
{
    database.AddRow(kBerekening, 4, 1000);
    const Profiel whole = database.profielen.at("Gras 1op3");
    const auto expect = [&](auto damage) {
        Profiel& profiel = database.profielen.at("Gras 1op3");
        damage(profiel);
        ExpectFailure(Run(), ExitCode::UnsuitableProfile,
                      "Het profiel 'Gras 1op3' is niet geschikt voor faalmechanisme GOLFOVERSLAG.");
        profiel = whole;
    };
    expect([](Profiel& p) { p.punten.clear(); });
    expect([](Profiel& p) { p.punten.resize(1); });
    expect([](Profiel& p) { p.voorland = 3; });
    expect([](Profiel& p) { p.punten[2].y = p.punten[1].y - 0.5; });
    expect([](Profiel& p) { p.punten[2].y = p.punten[1].y; });
    expect([](Profiel& p) { p.punten[0].y = kNietBekend; });
    expect([](Profiel& p) { p.punten[0].r = kNietBekend; });
    expect([](Profiel& p) {
        p.damtype = 1;
        p.damHoogte = kNietBekend;
    });
    expect([](Profiel& p) {
        p.damtype = 4;
        p.taludhelling = 0;
    });
    EXPECT_EQ(Run("PROFIEL = 'Damwand neus'\r\nFAALMECHANISME = 'GOLFOPLOOP'\r\n"),
              ExitCode::UnsuitableProfile);
}

TEST_F(RekenrunTest, AnOutcomeThatIsNoNumberEndsTheRun)
{
    database.AddRow(kBerekening, 4, 1000);
    database.At("Plas-04").sectoren[3].bodemhoogte = std::numeric_limits<double>::quiet_NaN();
    ExpectFailure(Run(), ExitCode::NotFinite,
                  "De berekening levert geen eindige waarde op (herhalingstijd alle).");
}

TEST_F(RekenrunTest, WarnsOfWhatTheMethodDoesNotModel)
{
    database.AddRow(kBerekening, 4, 1000);
    const auto warnings = [&](const std::string& extra) {
        EXPECT_EQ(Run(extra), ExitCode::Ok) << output;
        std::set<std::string> lines;
        std::istringstream in(output);
        for (std::string line; std::getline(in, line);)
            if (line.rfind("WAARSCHUWING: ", 0) == 0) {
                EXPECT_TRUE(lines.insert(line).second) << "told twice: " << line;
                EXPECT_THAT(File("uitvoer.txt"), HasSubstr(line));
            }
        std::string all;
        for (const std::string& line : lines)
            all += line + "\n";
        return all;
    };
    EXPECT_EQ(warnings(""), "");
    EXPECT_THAT(warnings("PROFIEL = 'Voorland 1op4'\r\n"),
                HasSubstr("de vorm van het voorland is niet gemodelleerd."));
    EXPECT_THAT(warnings("PROFIEL = 'Berm 1op3'\r\n"), HasSubstr("Het profiel heeft een berm"));
    EXPECT_THAT(warnings("PROFIEL = 'Damwand kaal'\r\n"),
                HasSubstr("Stootbelasting op de verticale wand"));
    EXPECT_THAT(warnings("PROFIEL = 'Rietoever'\r\n"),
                HasSubstr("De demping door riet is een ruwe schatting"));
    EXPECT_THAT(warnings("FREQ = 0.0001\r\n"),
                HasSubstr("De herhalingstijd 10000 ligt buiten het bereik van de peilstatistiek"));

    Profiel& grass = database.profielen.at("Gras 1op3");
    grass.palenrij = true;
    EXPECT_THAT(warnings(""), HasSubstr("De palenrij is genegeerd"));
    grass.palenrij = false;
    grass.damtype = 2;
    grass.damHoogte = -0.5;
    EXPECT_THAT(warnings(""), HasSubstr("Damtype 2 is behandeld als een eenvoudige dam"));
    grass.damtype = 0;
    grass.punten[2].x = 5;
    EXPECT_THAT(warnings(""), HasSubstr("De steilste helling is steiler dan 1:2"));
    grass = ExampleData::Get().Profiel("Gras 1op3");
    for (ProfielPunt& punt : grass.punten)
        punt.y += 4;
    EXPECT_THAT(warnings(""), HasSubstr("De teen van het profiel ligt boven de waterstand"));
    grass = ExampleData::Get().Profiel("Gras 1op3");

    Locatie& locatie = database.At("Plas-04");
    locatie.sectoren[0].strijklengte = 0;
    locatie.sectoren[2].strijklengte = 0;
    EXPECT_THAT(warnings(""),
                HasSubstr("Windrichtingen zonder strijklengte geven geen golven: N, NO."));
    locatie.peilen[2].boezempeil = kNietBekend;
    EXPECT_THAT(warnings(""), HasSubstr("er is met 4 punten gerekend."));
    locatie.peilen[3].boezempeil = -0.5;
    EXPECT_THAT(warnings(""), HasSubstr("De boezempeilen stijgen niet"));
    for (SectorGegevens& sector : locatie.sectoren)
        sector.scheefstand.resize(2);
    EXPECT_THAT(warnings(""), HasSubstr("De scheefstand is geëxtrapoleerd boven 10 m/s."));
}

TEST_F(RekenrunTest, ALocationWithoutAnyFetchHasTheOverflowLevel)
{
    database.AddRow(kBerekening, 4, 1000);
    for (SectorGegevens& sector : database.At("Plas-04").sectoren)
        sector.strijklengte = 0;
    EXPECT_EQ(Run(), ExitCode::Ok);
    EXPECT_NEAR(Row(1000).hbn, Row(1000).overloopMo, 1e-6);
    EXPECT_EQ(Row(1000).golfhoogte, 0);
    EXPECT_EQ(Row(1000).piekperiode, 0);
}

TEST_F(RekenrunTest, DeterministicRunsWriteTheReportAlone)
{
    input.erase("BEREKENING_ID");
    input["LOCATIE"] = "'Plas-05'";
    input["LOCATIE_ID"] = "5";
    const std::string keys = "VARIANT = 'DETERM'\r\nSITUATIE = 'HANDMATIG'\r\nBOEZEMPEIL = 0.1\r\n"
                             "WINDSNELHEID = 22\r\nOVERSLAGDEBIET = 0.1\r\n"
                             "GOLFGROEIMODULE = 'YOUNGVERHAGEN'\r\nWINDREDUCTIE = NEE\r\n";
    EXPECT_EQ(Run(keys), ExitCode::Ok) << output;
    const std::string report = File("uitvoer.txt");
    EXPECT_THAT(report, HasSubstr("292.5 WNW"));
    EXPECT_THAT(report, HasSubstr("1.609"));
    EXPECT_THAT(report, HasSubstr("<-- maatgevend"));
    EXPECT_FALSE(std::filesystem::exists(folder / "freqlijn.txt"));
    EXPECT_EQ(database.openings, 1) << "nothing is written to the database";

    EXPECT_EQ(Run(keys + "SITUATIE = 'BEXTRUEXTR'\r\n"), ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("1.795"));
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("veel zeldzamer"));
}

TEST_F(RekenrunTest, TheReportShowsTheReductionThatWasUsed)
{
    input.erase("BEREKENING_ID");
    // From the north-east the waves come in at 105 degrees: roughness and angle
    // together would take off 63 %, of which 60 % count.
    EXPECT_EQ(Run("VARIANT = 'DETERM'\r\nSITUATIE = 'BEXTRUEXTR'\r\nLOCATIE_ID = 5\r\n"
                  "OVERSLAGDEBIET = 0.1\r\nGOLFGROEIMODULE = 'YOUNGVERHAGEN'\r\n"
                  "WINDREDUCTIE = NEE\r\n"),
              ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("105.0  1.50   0.40  0.024"));
    // A wall with a nose, hit at right angles.
    database.At("Plas-05").dijknormaal = 270;
    EXPECT_EQ(Run("VARIANT = 'DETERM'\r\nSITUATIE = 'BEXTRUEXTR'\r\nLOCATIE_ID = 5\r\n"
                  "PROFIEL = 'Damwand neus'\r\n"),
              ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("  0.0    -   0.70  "));
}

TEST_F(RekenrunTest, DeterministicRunsWarnOfTheirGoverningSector)
{
    input.erase("BEREKENING_ID");
    const std::string keys = "VARIANT = 'DETERM'\r\nSITUATIE = 'HANDMATIG'\r\n"
                             "BOEZEMPEIL = 0.1\r\nWINDSNELHEID = 45\r\n";
    EXPECT_EQ(Run(keys), ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("WAARSCHUWING: De scheefstand is geëxtrapoleerd "
                                               "boven 40 m/s."));
    EXPECT_EQ(Run(keys + "WINDSNELHEID = 20\r\nBOEZEMPEIL = -5\r\n"), ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("WAARSCHUWING: De teen van het profiel ligt boven "
                                               "de waterstand"));
    EXPECT_THAT(File("uitvoer.txt"), Not(HasSubstr("geëxtrapoleerd")));

    const std::string extreme = "WAARSCHUWING: De herhalingstijd 5000 ligt buiten het bereik";
    database.klassen[database.At("Plas-04").veiligheidsklasse] = 5000;
    EXPECT_EQ(Run(keys + "SITUATIE = 'BEXTRUGEM'\r\n"), ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr(extreme));
    EXPECT_EQ(Run(keys + "SITUATIE = 'BGEMUEXTR'\r\n"), ExitCode::Ok);
    EXPECT_THAT(File("uitvoer.txt"), Not(HasSubstr(extreme)));
}

TEST_F(RekenrunTest, TheReportEchoesWhatItWasAskedFor)
{
    database.AddRow(kBerekening, 4, 1000);
    EXPECT_EQ(Run("TOESLAGWS = 0.1\r\nTOESLAGWSMEMO = 'zetting'\r\nTOESLAGHBN = 0.2\r\n"
                  "TOESLAGHBNMEMO = 'robuust'\r\nTOENAMEWIND = 5\r\n"),
              ExitCode::Ok);
    const std::string report = File("uitvoer.txt");
    const auto expect = [&](std::string label, const std::string& value) {
        label.resize(34, ' ');
        EXPECT_THAT(report, HasSubstr("\r\n" + label + value + "\r\n"));
    };
    expect("Database", "boezem.mdb");
    expect("Berekening_ID", "7");
    expect("Herhalingstijd van de norm", "ja");
    expect("Uitsplitsen naar aandelen", "ja");
    expect("Illustratiepunten", "nee");
    expect("Windreductie", "ja");
    expect("Toeslag op de waterstand", "0.100 m");
    expect("  toelichting", "zetting");
    expect("Toeslag op het HBN", "0.200 m");
    expect("  toelichting", "robuust");
    expect("Toename van de wind", "5 %");
}

TEST_F(RekenrunTest, DikeRingsReportTheirMembersAndTheRing)
{
    input.erase("BEREKENING_ID");
    EXPECT_EQ(Run("VARIANT = 'DIJKRING'\r\nDIJKRING = 'Ring Oost'\r\n"), ExitCode::Ok) << output;
    const std::string report = File("uitvoer.txt");
    for (const char* part :
         {"Ring Oost", "Plas-02", "Plas-05", "Zwakste lid", "0.06137", "Frequentie van de ring"})
        EXPECT_THAT(report, HasSubstr(part));
    EXPECT_THAT(File("freqlijn.txt"), HasSubstr("1.6677 0.0010000000"));
    EXPECT_THAT(output, HasSubstr("WAARSCHUWING: Plas-03: Het profiel heeft een berm"));
}

TEST_F(RekenrunTest, UnfitRingsAreRefusedByNameOfTheMember)
{
    input.erase("BEREKENING_ID");
    const std::string keys = "VARIANT = 'DIJKRING'\r\nDIJKRING = 'Ring Oost'\r\n";
    ExpectFailure(Run(keys + "DIJKRING = 'Ring West'\r\n"), ExitCode::DataMissing,
                  "De dijkring 'Ring West' heeft geen leden.");
    database.At("Plas-03").kruinhoogte = kNietBekend;
    ExpectFailure(Run(keys), ExitCode::DataMissing,
                  "De gegevens van locatie 'Plas-03' zijn niet volledig: kruinhoogte onbekend.");
    database.At("Plas-03").kruinhoogte = 1;
    database.dijkringen["Ring Oost"][1].overslagdebiet = kNietBekend;
    ExpectFailure(Run(keys), ExitCode::DataMissing,
                  "De gegevens van locatie 'Plas-03' zijn niet volledig: overslagdebiet van het "
                  "ringlid onbekend.");
    database.dijkringen["Ring Oost"][1] = {"Plas-03", "Weg", 1};
    ExpectFailure(Run(keys), ExitCode::DataMissing,
                  "Plas-03: Het profiel 'Weg' staat niet in de database.");
    database.dijkringen["Ring Oost"][1] = {"Plas-03", "Damwand neus", 1};
    ExpectFailure(Run(keys + "FAALMECHANISME = 'GOLFOPLOOP'\r\n"), ExitCode::UnsuitableProfile,
                  "Plas-03: Het profiel 'Damwand neus' is niet geschikt voor faalmechanisme "
                  "GOLFOPLOOP.");
    database.dijkringen["Ring Oost"][1] = {"Plas-99", "Gras 1op3", 1};
    ExpectFailure(Run(keys), ExitCode::DataMissing,
                  "De locatie 'Plas-99' staat niet in de database.");
}
