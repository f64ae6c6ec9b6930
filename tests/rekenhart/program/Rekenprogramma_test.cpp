// The program through its command line, on the example database.

#include "rekenhart/program/OutsideProgram.h"

#include "MaakDatabase.h"
#include "TemporaryFolder.h"
#include "jet/dao/Workspace.h"
#include "rekenhart/data/JetGegevensbron.h"
#include "rekenhart/files/Numbers.h"
#include "rekenhart/files/OutputFiles.h"
#include "rekenhart/files/TextEncoding.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iostream>
#include <map>

using testing::HasSubstr;
using testing::Not;

namespace {

constexpr int kPlas04 = 4;

class RekenprogrammaTest : public testing::Test {
protected:
    RekenprogrammaTest()
    {
        // Made once, copied for each test: making it takes longer than a run.
        static const TemporaryFolder shared;
        const auto original = shared / "Voorbeeldboezem.mdb";
        if (!std::filesystem::exists(original))
            voorbeeld::MaakRandvoorwaarden(original, {.locaties = voorbeeld::Locaties()});
        std::filesystem::copy_file(original, database);
    }

    void AddRows(int berekening, int locatie, const std::vector<double>& periods)
    {
        jet::Workspace workspace;
        const auto db = workspace.OpenDatabase(database);
        const auto rows = db->OpenRecordset("Resultaat");
        for (const double years : periods) {
            rows->AddNew();
            rows->Set("Berekening_ID", jet::Value(berekening));
            rows->Set("Locatie_ID", jet::Value(locatie));
            rows->Set("Herhalingstijd", jet::Value(years));
            rows->Update();
        }
    }

    /// The value of a column for each row of Resultaat, in the order of the periods.
    std::map<double, double> Column(const std::string& field)
    {
        jet::Workspace workspace;
        const auto db = workspace.OpenDatabase(database);
        const auto rows = db->OpenRecordset("Resultaat");
        std::map<double, double> values;
        for (; !rows->EndOfFile(); rows->MoveNext())
            values[rows->Get("Herhalingstijd").AsDouble()] = rows->Get(field).AsDouble();
        return values;
    }

    std::string Input(const std::string& extra) const
    {
        return "USERNAME = tester\r\nDBRVW = '" + database.string() + "'\r\nUITVOERMAP = '" +
               folder.Path().string() +
               "'\r\nVARIANT = 'DIJKVAK'\r\nLOCATIE = 'Plas-04'\r\nLOCATIE_ID = 4\r\n"
               "PROFIEL = 'Gras 1op3'\r\nPROFIEL_ID = -999\r\nFAALMECHANISME = "
               "'GOLFOVERSLAG'\r\nOVERSLAGDEBIET = 1\r\nGOLFGROEIMODULE = "
               "'BRETSCHNEIDER'\r\nBEREKENING_ID = 3\r\nWINDREDUCTIE = "
               "JA\r\nUITSPLITSENNAARAANDELEN = JA\r\n" +
               extra;
    }

    void WriteInput(const std::string& extra = {}) const
    {
        std::ofstream(folder / "invoer.txt", std::ios::binary) << Input(extra);
    }

    ProgramRun Run(const std::string& extra = {}) const
    {
        WriteInput(extra);
        return RunProgram(REKENPROGRAMMA, {"-INVOER", (folder / "invoer.txt").string()},
                          folder.Path());
    }

    std::string File(const std::string& name) const
    {
        return rekenhart::ReadBytes(folder / name).value_or("<geen bestand>");
    }

    TemporaryFolder folder;
    std::filesystem::path database = folder / "Voorbeeldboezem.mdb";
};

} // namespace

TEST_F(RekenprogrammaTest, TellsItsVersion)
{
    const ProgramRun run = RunProgram(REKENPROGRAMMA, {"-VERSIE"}, folder.Path());
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "Rekenhart (open referentie) versie " ZANDVOET_VERSION "\n");
}

TEST_F(RekenprogrammaTest, AnyOtherCommandLineTellsTheUsage)
{
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"-INVOER"},
                                               {"-INVOER", "a", "b"},
                                               {"-VERSIE", "x"},
                                               {"--help"},
                                               {"invoer.txt"}}) {
        const ProgramRun run = RunProgram(REKENPROGRAMMA, arguments, folder.Path());
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.output, "FOUT: Gebruik: rekenhart -INVOER bestand, of rekenhart -VERSIE.\n");
    }
}

TEST_F(RekenprogrammaTest, CalculatesAllThreeMechanismsOnTheExample)
{
    AddRows(3, kPlas04, {1000, 100});
    ASSERT_EQ(Run("FREQ = 0.01\r\nFAALMECHANISME = 'OVERLOOP'\r\n").exitCode, 0);
    EXPECT_NEAR(Column("HBN_MS_MO").at(1000), 0.168876, 2e-4);
    EXPECT_NEAR(Column("HBN_MS_MO").at(100), 0.01108, 2e-4);
    EXPECT_EQ(Column("GOLFHOOGTE").at(100), -999);

    ASSERT_EQ(Run("FREQ = 0.01\r\n").exitCode, 0);
    EXPECT_NEAR(Column("HBN_MS_MO").at(1000), 1.16173, 2e-4);
    EXPECT_NEAR(Column("HBN_MS_MO").at(100), 0.918103, 2e-4);
    EXPECT_NEAR(Column("OVERLOOP_MS_ZO").at(100), -0.00542571, 2e-4);
    EXPECT_NEAR(Column("OVERLOOP_MS_MO").at(100), 0.01108, 2e-4);
    EXPECT_NEAR(Column("BOEZEMPEIL").at(100), -0.01, 1e-6);
    EXPECT_EQ(Column("STREEFPEIL").at(100), -0.6);
    EXPECT_EQ(Column("DOMINANTE WINDRICHTING").at(100), 270);
    EXPECT_EQ(Column("GOLFRICHTING").at(100), 270);
    EXPECT_NEAR(Column("WATERSTAND").at(100), -0.233906, 1e-3);
    EXPECT_NEAR(Column("GOLFHOOGTE").at(100), 0.736381, 0.005);
    EXPECT_NEAR(Column("PIEKPERIODE").at(100), 3.01279, 0.005);

    ASSERT_EQ(Run("FREQ = 0.01\r\nFAALMECHANISME = 'GOLFOPLOOP'\r\n").exitCode, 0);
    EXPECT_GT(Column("HBN_MS_MO").at(1000), Column("HBN_MS_MO").at(100));
    EXPECT_GT(Column("HBN_MS_MO").at(100), 0.5);
}

TEST_F(RekenprogrammaTest, ReportsLineByLineAndLeavesItsFiles)
{
    AddRows(3, kPlas04, {1000});
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("Rekenhart (open referentie) versie " ZANDVOET_VERSION
                                      "\nInvoer gelezen: locatie Plas-04, profiel Gras 1op3\n"
                                      "Voortgang:   5 %\n"));
    EXPECT_THAT(run.output, HasSubstr("Voortgang: 100 %\nBerekening gereed.\n"));
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("\r\nOntwerppunten\r\n"));
    EXPECT_EQ(File("freqlijn.txt").substr(0, 4), "15  ");
}

TEST_F(RekenprogrammaTest, CalculatesADikeRingByName)
{
    const ProgramRun run = Run("VARIANT = 'DIJKRING'\r\nDIJKRING = 'ring oost'\r\n");
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("0.06137 per jaar"));
    EXPECT_THAT(File("freqlijn.txt"), HasSubstr("1.6677 0.0010000000"));
}

TEST_F(RekenprogrammaTest, CalculatesADeterministicCase)
{
    const ProgramRun run =
        Run("VARIANT = 'DETERM'\r\nLOCATIE = 'Plas-05'\r\nLOCATIE_ID = 5\r\nSITUATIE = "
            "'BEXTRUEXTR'\r\nOVERSLAGDEBIET = 0.1\r\nGOLFGROEIMODULE = 'YOUNGVERHAGEN'\r\n"
            "WINDREDUCTIE = NEE\r\n");
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_THAT(File("uitvoer.txt"), HasSubstr("1.795 m"));
}

TEST_F(RekenprogrammaTest, EveryKindOfBadInputHasItsExitCode)
{
    AddRows(3, kPlas04, {1000});
    const auto expect = [&](const ProgramRun& run, int exitCode, const std::string& text) {
        EXPECT_EQ(run.exitCode, exitCode) << run.output;
        EXPECT_THAT(run.output, HasSubstr(text));
        EXPECT_EQ(Column("HBN_MS_MO").at(1000), -999);
    };
    expect(RunProgram(REKENPROGRAMMA, {"-INVOER", "weg.txt"}, folder.Path()), 2,
           "FOUT: Het invoerbestand 'weg.txt' kan niet worden gelezen.");
    expect(Run("FAALMECHANISME = 'X'\r\n"), 3,
           "FOUT: Sleutel FAALMECHANISME heeft een ongeldige waarde: 'X'.");
    expect(Run("DBRVW = '/weg/boezem.mdb'\r\n"), 4,
           "FOUT: De database '/weg/boezem.mdb' kan niet worden geopend.");
    expect(Run("DBRVW = '" + (folder / "invoer.txt").string() + "'\r\n"), 4,
           "kan niet worden geopend.");
    expect(Run("LOCATIE_ID = 1234\r\n"), 5,
           "FOUT: De locatie 'Plas-04' staat niet in de database.");
    expect(Run("PROFIEL = 'Weg'\r\n"), 5, "FOUT: Het profiel 'Weg' staat niet in de database.");
    expect(Run("PROFIEL = 'Damwand neus'\r\nFAALMECHANISME = 'GOLFOPLOOP'\r\n"), 7,
           "FOUT: Het profiel 'Damwand neus' is niet geschikt voor faalmechanisme GOLFOPLOOP.");
    expect(Run("UITVOERMAP = '/weg'\r\n"), 9, "kan niet worden geschreven.");
    expect(Run("BEREKENING_ID = 99\r\n"), 10, "FOUT: In Resultaat wacht geen enkele rij");
}

TEST_F(RekenprogrammaTest, MissingStatisticsAreToldByTheNameOfTheTable)
{
    AddRows(3, kPlas04, {1000});
    {
        jet::Workspace workspace;
        workspace.OpenDatabase(database)->DropTable("Transformatietabel");
    }
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitCode, 6);
    EXPECT_THAT(run.output, HasSubstr("FOUT: De tabel [Transformatietabel] ontbreekt"));
}

TEST_F(RekenprogrammaTest, ADatabaseInUseIsRefused)
{
    AddRows(3, kPlas04, {1000});
    jet::Workspace workspace;
    auto db = workspace.OpenDatabase(database);
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitCode, 4) << run.output;
    EXPECT_THAT(run.output, HasSubstr("kan niet worden geopend."));
    EXPECT_THAT(run.output, HasSubstr("Sluit andere programma's"));
    db->Close();
    EXPECT_EQ(Run().exitCode, 0);
}

TEST_F(RekenprogrammaTest, ADatabaseThatLacksATableIsToldWithAdvice)
{
    AddRows(3, kPlas04, {1000});
    {
        jet::Workspace workspace;
        workspace.OpenDatabase(database)->DropTable("Scheefstand");
    }
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitCode, 4) << run.output;
    EXPECT_THAT(run.output, HasSubstr("Scheefstand"));
    EXPECT_THAT(run.output, HasSubstr("Open de database in het programma"));
    EXPECT_THAT(run.output, Not(HasSubstr("Sluit andere programma's")));
}

TEST_F(RekenprogrammaTest, ADatabaseWithoutRingsHasNoMembers)
{
    {
        jet::Workspace workspace;
        const auto db = workspace.OpenDatabase(database);
        if (db->HasTable("Dijkring"))
            db->DropTable("Dijkring");
    }
    const ProgramRun run = Run("VARIANT = 'DIJKRING'\r\nDIJKRING = 'Ring Oost'\r\n");
    EXPECT_EQ(run.exitCode, 5) << run.output;
    EXPECT_THAT(run.output, HasSubstr("FOUT: De dijkring 'Ring Oost' heeft geen leden."));
}

TEST_F(RekenprogrammaTest, AReadOnlyDatabaseIsReadAndThenTold)
{
    AddRows(3, kPlas04, {1000});
    const auto writable = std::filesystem::status(database).permissions();
    std::filesystem::permissions(database, std::filesystem::perms::owner_read);
    if (std::ofstream(database, std::ios::app))
        GTEST_SKIP() << "this user may write everything";
    const ProgramRun run = Run();
    std::filesystem::permissions(database, writable);
    EXPECT_EQ(run.exitCode, 4) << run.output;
    EXPECT_THAT(run.output, HasSubstr("Controleer de rechten"));
    EXPECT_EQ(Column("HBN_MS_MO").at(1000), -999);
}

// Nulls where the application stores -999.
TEST_F(RekenprogrammaTest, AnEmptyFieldIsAnUnknownOne)
{
    AddRows(3, kPlas04, {1000});
    {
        jet::Workspace workspace;
        const auto db = workspace.OpenDatabase(database);
        const auto rows = db->OpenRecordset("Locatie");
        while (rows->Get("Locatie_ID").AsInt() != kPlas04)
            rows->MoveNext();
        rows->Edit();
        rows->Set("streefpeil", jet::Value());
        rows->Update();
    }
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitCode, 5) << run.output;
    EXPECT_THAT(run.output, HasSubstr("zijn niet volledig: streefpeil onbekend."));
}

TEST_F(RekenprogrammaTest, AFullDiskLeavesTheRowsAlone)
{
    AddRows(3, kPlas04, {1000});
    std::filesystem::create_symlink("/dev/full", folder / "uitvoer.txt");
    const ProgramRun run = Run();
    EXPECT_EQ(run.exitCode, 9) << run.output;
    EXPECT_THAT(run.output, HasSubstr("uitvoer.txt' kan niet worden geschreven."));
    EXPECT_EQ(Column("HBN_MS_MO").at(1000), -999);
    EXPECT_FALSE(std::filesystem::exists(folder / "freqlijn.txt"));
}

TEST_F(RekenprogrammaTest, NamesMayHoldAccentsApostrophesAndBlanks)
{
    {
        jet::Workspace workspace;
        const auto db = workspace.OpenDatabase(database);
        const auto rows = db->OpenRecordset("Locatie");
        while (rows->Get("Locatie_ID").AsInt() != kPlas04)
            rows->MoveNext();
        rows->Edit();
        rows->Set("omschrijving", jet::Value("'t Geëx = dijk's"));
        rows->Update();
    }
    AddRows(3, kPlas04, {1000});
    const auto home = folder / "map met é";
    std::filesystem::create_directory(home);
    const std::string utf8 = Input("LOCATIE = ''t Geëx = dijk's'\r\nLOCATIE_ID = -999\r\n"
                                   "UITVOERMAP = '" +
                                   home.string() + "'\r\n");
    std::ofstream(home / "invoer.txt", std::ios::binary) << rekenhart::ToWindows1252(utf8);
    const ProgramRun run =
        RunProgram(REKENPROGRAMMA, {"-invoer", (home / "invoer.txt").string()}, home);
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_THAT(run.output, HasSubstr("locatie 't Ge\xEBx = dijk's, profiel"));
    EXPECT_TRUE(std::filesystem::exists(home / "freqlijn.txt"));
}

// A kill at any moment leaves a sound database with all rows filled or none.
TEST_F(RekenprogrammaTest, KilledInTheMiddleItLeavesTheDatabaseWhole)
{
    std::vector<double> periods;
    std::string frequencies;
    for (int i = 1; i <= 30; ++i) {
        periods.push_back(100 * i);
        frequencies += "FREQ = " + rekenhart::General(1.0 / (100 * i), 15) + "\r\n";
    }
    AddRows(3, kPlas04, periods);
    WriteInput(frequencies);
    const auto untouched = folder / "leeg.mdb";
    std::filesystem::copy_file(database, untouched);
    const std::vector<std::string> arguments{"-INVOER", (folder / "invoer.txt").string()};

    // The rows are written after the levels have been found.
    const std::string marker = "Voortgang:  95 %";
    const ProgramRun whole =
        RunProgram(REKENPROGRAMMA, arguments, folder.Path(), KillMoment{marker});
    ASSERT_EQ(whole.exitCode, 0);
    ASSERT_GT(whole.afterMarker, 0);

    constexpr int kRuns = 40;
    int before = 0, after = 0;
    for (int i = 0; i < kRuns; ++i) {
        std::filesystem::copy_file(untouched, database,
                                   std::filesystem::copy_options::overwrite_existing);
        const long moment = whole.afterMarker * i / kRuns;
        const ProgramRun run =
            RunProgram(REKENPROGRAMMA, arguments, folder.Path(), KillMoment{marker, moment});

        const auto hbn = Column("HBN_MS_MO");
        ASSERT_EQ(hbn.size(), periods.size());
        const bool filled = hbn.begin()->second != -999;
        for (const auto& [years, value] : hbn)
            EXPECT_EQ(value != -999, filled) << years << " after a kill at " << moment;
        (filled ? after : before) += run.exitCode == -1;
        jet::Workspace workspace;
        const jet::CheckReport report = workspace.OpenDatabase(database)->Check();
        EXPECT_TRUE(report.IsSound()) << report.faults.front();
    }
    EXPECT_GT(before, 0) << "no kill came before the rows were written";
    std::cout << before << " kills before and " << after << " after the commit\n";
}
