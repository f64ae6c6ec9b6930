#include "Program.h"
#include "StatementRunner.h"
#include "jet_sql/ScratchDatabase.h"

#include <sstream>

// Statements through the shell.
namespace jet {
namespace {

struct Shell {
    TemporaryFolder folder;
    std::string file = (folder / "schelp.mdb").string();
    std::string output, message;

    Shell()
    {
        Workspace().CreateDatabase(file);
        Run({file, "CREATE TABLE T (id COUNTER, naam TEXT(20), peil DOUBLE, gras YESNO, dag "
                   "DATETIME, rauw "
                   "BINARY(4), geld CURRENCY); INSERT INTO T (naam,peil,gras,dag,geld) VALUES "
                   "('a,b',1.5,True,"
                   "#2001-02-03 04:05:06#,12.5); INSERT INTO T (naam) VALUES ('zeg \"ja\"')"});
    }

    int Run(const std::vector<std::string>& words, const std::string& input = "")
    {
        std::istringstream in(input);
        std::ostringstream out, errors;
        const int code = jetsql::Program(in, out, errors).Run(words);
        output = out.str();
        message = errors.str();
        return code;
    }
};

TEST(JetsqlTest, ASelectPrintsCsvWithAHeaderLine)
{
    Shell shell;
    EXPECT_EQ(shell.Run({shell.file, "SELECT naam, peil, dag FROM T ORDER BY id"}), 0)
        << shell.message;
    EXPECT_EQ(shell.output,
              "naam,peil,dag\n\"a,b\",1.5,2001-02-03 04:05:06\n\"zeg \"\"ja\"\"\",,\n");
    EXPECT_EQ(shell.Run({shell.file, "SELECT naam FROM T WHERE id=77;"}), 0);
    EXPECT_EQ(shell.output, "naam\n");
}

TEST(JetsqlTest, JsonGivesOneObjectARow)
{
    Shell shell;
    EXPECT_EQ(shell.Run({"--json", shell.file,
                         "SELECT * FROM T WHERE id=1; SELECT Count(*) AS n FROM T"}),
              0);
    EXPECT_EQ(shell.output,
              "{\"id\":1,\"naam\":\"a,b\",\"peil\":1.5,\"gras\":true,\"dag\":\"2001-02-03 "
              "04:05:06\",\"rauw\":null,\"geld\":12.5}\n{\"n\":2}\n");
}

TEST(JetsqlTest, OneFailedStatementUndoesTheWholeCall)
{
    Shell shell;
    EXPECT_EQ(
        shell.Run({shell.file,
                   "DELETE FROM T; CREATE TABLE Weg (x LONG); SELECT fout FROM T; DROP TABLE T"}),
        1);
    EXPECT_THAT(shell.message, ::testing::HasSubstr("Onbekend veld 'fout'"));
    EXPECT_EQ(shell.Run({shell.file, "SELECT Count(*) AS n FROM T"}), 0);
    EXPECT_EQ(shell.output, "n\n2\n");
    EXPECT_EQ(shell.Run({shell.file, "SELECT * FROM Weg"}), 1);
}

TEST(JetsqlTest, StatementsComeFromStandardInputToo)
{
    Shell shell;
    EXPECT_EQ(shell.Run({shell.file},
                        "UPDATE T SET peil=2\nWHERE id=2;\nSELECT peil\nFROM T;SELECT 1 AS x"),
              0);
    EXPECT_EQ(shell.output, "peil\n1.5\n2\nx\n1\n");
    EXPECT_EQ(shell.Run({shell.file}, "DELETE FROM T;\nSELECT * FROM Weg;\n"), 1);
    EXPECT_EQ(shell.Run({shell.file}, "SELECT Count(*) AS n FROM T"), 0);
    EXPECT_EQ(shell.output, "n\n2\n");
    EXPECT_EQ(shell.Run({shell.file}, ""), 0);
}

TEST(JetsqlTest, ASemicolonInATextEndsNothing)
{
    Shell shell;
    EXPECT_EQ(shell.Run({shell.file, "SELECT ';' AS [a;b]; SELECT \";\" AS c"}), 0)
        << shell.message;
    EXPECT_EQ(shell.output, "a;b\n;\nc\n;\n");
}

TEST(JetsqlTest, AFileThatIsOnlyReadRefusesChangesAlone)
{
    Shell shell;
    EXPECT_EQ(shell.Run({"--read-only", shell.file, "SELECT id FROM T WHERE id=1"}), 0)
        << shell.message;
    EXPECT_EQ(shell.output, "id\n1\n");
    EXPECT_EQ(shell.Run({"--read-only", shell.file, "DELETE FROM T"}), 1);
    EXPECT_FALSE(shell.message.empty());
}

TEST(JetsqlTest, AtThePromptEveryStatementStandsForItself)
{
    Shell shell;
    Workspace workspace;
    const auto db = workspace.OpenDatabase(shell.file);
    std::vector<std::string> lines = {"SELECT id FROM T", "WHERE id=1;",
                                      "DELETE FROM T WHERE id=1; SELECT fout FROM T;",
                                      "SELECT Count(*) AS n FROM T;", "SELECT 'geen einde"};
    std::ostringstream out, errors;
    std::vector<bool> continued;
    jetsql::StatementRunner runner(workspace, *db, jetsql::RowFormat::Csv, out);
    runner.Talk(
        [&](bool goesOn) -> std::optional<std::string> {
            continued.push_back(goesOn);
            if (lines.empty())
                return std::nullopt;
            const std::string line = lines.front();
            lines.erase(lines.begin());
            return line;
        },
        errors);
    EXPECT_EQ(out.str(), "id\n1\n1 rijen\nn\n1\n");
    EXPECT_THAT(errors.str(), ::testing::HasSubstr("Onbekend veld 'fout'"));
    EXPECT_EQ(continued, (std::vector<bool>{false, true, false, false, false, true}));
    EXPECT_EQ(workspace.TransactionDepth(), 0);
}

} // namespace
} // namespace jet
