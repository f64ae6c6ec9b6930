#include "KilledChild.h"
#include "Program.h"
#include "jet_sql/ScratchDatabase.h"

#include <random>
#include <sstream>

// jetsql is killed at random moments while it runs scripts of several
// statements: of each script everything is there afterwards, or nothing.
namespace jet {
namespace {

using jet_testing::Reporter;

std::string Script(std::uint64_t n)
{
    const std::string number = std::to_string(n);
    std::string script =
        "INSERT INTO Stand (nr, tekst) VALUES (" + number + ",'stand " + number + "');";
    for (int i = 0; i < 8; ++i)
        script += "INSERT INTO Rij (stand, deel, lang) VALUES (" + number + "," +
                  std::to_string(i) + ",String(300,'x') & " + number + ");";
    script += "UPDATE Teller SET n=n+1, som=som+" + number + ";";
    script += "DELETE * FROM Rij WHERE stand<=" + number + "-20;";
    if (n % 7 == 0)
        script += "SELECT * INTO Tabel" + number + " FROM Teller; DROP TABLE Tabel" + number + ";";
    return script;
}

int RunJetsql(const std::filesystem::path& file, const std::string& statements)
{
    std::istringstream in;
    std::ostringstream out, errors;
    return jetsql::Program(in, out, errors).Run({file.string(), statements});
}

std::uint64_t CommittedScripts(const std::filesystem::path& file)
{
    Workspace workspace;
    const auto db = workspace.OpenDatabase(file);
    const CheckReport report = db->Check();
    EXPECT_TRUE(report.IsSound()) << (report.faults.empty() ? "" : report.faults.front());
    const auto one = [&](const std::string& sql) {
        return db->OpenRecordset(sql, RecordsetType::Snapshot)->Get(0).AsIntOr(0);
    };
    const int n = one("SELECT n FROM Teller");
    EXPECT_EQ(one("SELECT som FROM Teller"), n * (n + 1) / 2);
    EXPECT_EQ(one("SELECT Count(*) FROM Stand"), n);
    EXPECT_EQ(one("SELECT Max(nr) FROM Stand"), n);
    EXPECT_EQ(one("SELECT Count(*) FROM Rij"), 8 * std::min(n, 20));
    for (const std::string& name : db->TableNames())
        EXPECT_NE(name.substr(0, 5), "Tabel");
    return static_cast<std::uint64_t>(n);
}

TEST(KillTest, AScriptOfJetsqlIsThereWholeOrNotAtAll)
{
    const TemporaryFolder folder;
    const auto file = folder / "kill.mdb";
    ASSERT_EQ(RunJetsql(file, "SELECT 1"), 1) << "there is no file yet";
    {
        Workspace workspace;
        workspace.CreateDatabase(file);
    }
    ASSERT_EQ(
        RunJetsql(file,
                  "CREATE TABLE Stand (nr LONG CONSTRAINT pk PRIMARY KEY, tekst TEXT(30) NOT NULL);"
                  "CREATE TABLE Rij (id COUNTER CONSTRAINT pk PRIMARY KEY, stand LONG, deel LONG, "
                  "lang MEMO);"
                  "CREATE INDEX s ON Rij (stand);"
                  "CREATE TABLE Teller (n LONG, som LONG); INSERT INTO Teller VALUES (0,0)"),
        0);
    std::mt19937 random(11);
    std::uint64_t done = 0;
    int killed = 0;
    for (int i = 0; i < 60 && !HasFailure(); ++i) {
        const std::uint64_t first = done + 1;
        const std::chrono::microseconds delay(random() % 12000);
        const auto outcome = jet_testing::RunAndKill(
            [&](Reporter& parent) {
                parent.Report(first - 1);
                for (std::uint64_t n = first;; ++n) {
                    if (RunJetsql(file, Script(n)) != 0)
                        jet_testing::EndProcessAtOnce(7);
                    parent.Report(n);
                }
            },
            delay, 1 + i % 3); // the moment counts from the first, second or third report
        ASSERT_TRUE(outcome.killed) << outcome.exitCode;
        killed += outcome.killed ? 1 : 0;
        done = CommittedScripts(file);
        EXPECT_TRUE(done == outcome.lastReport || done == outcome.lastReport + 1)
            << done << " after a report of " << outcome.lastReport;
    }
    EXPECT_EQ(killed, 60);
    EXPECT_GT(done, 20U);
}

} // namespace
} // namespace jet
