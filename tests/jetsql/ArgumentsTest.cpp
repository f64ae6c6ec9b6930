#include "Arguments.h"

#include <gtest/gtest.h>

namespace {

using jetsql::Arguments;
using jetsql::Command;

Arguments Parse(const std::vector<std::string>& words)
{
    return Arguments::Parse(words);
}

TEST(Arguments, ReadStatementsByDefault)
{
    const Arguments none = Parse({"boezem.mdb"});
    EXPECT_EQ(none.command, Command::Statements);
    EXPECT_EQ(none.file, "boezem.mdb");
    EXPECT_FALSE(none.statements);
    EXPECT_EQ(Parse({"boezem.mdb", "SELECT 1"}).statements, "SELECT 1");
}

TEST(Arguments, StandBeforeOrBehindTheFile)
{
    for (const auto& words : {std::vector<std::string>{"--json", "--read-only", "a.mdb", "x"},
                              {"a.mdb", "--json", "x", "--read-only"},
                              {"a.mdb", "x", "--read-only", "--json"}}) {
        const Arguments arguments = Parse(words);
        EXPECT_EQ(arguments.file, "a.mdb");
        EXPECT_EQ(arguments.statements, "x");
        EXPECT_TRUE(arguments.json);
        EXPECT_TRUE(arguments.readOnly);
    }
    EXPECT_EQ(Parse({"--tables", "a.mdb"}).command, Command::Tables);
    EXPECT_EQ(Parse({"a.mdb", "--tables", "--system"}).command, Command::Tables);
    EXPECT_TRUE(Parse({"a.mdb", "--tables", "--system"}).withSystemTables);
}

TEST(Arguments, NameTheTableOfASchemaOrNone)
{
    EXPECT_EQ(Parse({"a.mdb", "--schema"}).table, "");
    EXPECT_EQ(Parse({"a.mdb", "--schema", "Locatie"}).table, "Locatie");
    EXPECT_EQ(Parse({"--schema", "a.mdb", "Locatie"}).table, "Locatie");
    EXPECT_EQ(Parse({"--schema", "a.mdb"}).file, "a.mdb");
}

TEST(Arguments, NameWhatIsImportedAndExported)
{
    const Arguments in = Parse({"--import", "rijen.csv", "Locatie", "a.mdb"});
    EXPECT_EQ(in.command, Command::Import);
    EXPECT_EQ(in.csv, "rijen.csv");
    EXPECT_EQ(in.table, "Locatie");
    EXPECT_EQ(in.file, "a.mdb");
    const Arguments out = Parse({"a.mdb", "--export", "Locatie", "--json"});
    EXPECT_EQ(out.command, Command::Export);
    EXPECT_EQ(out.table, "Locatie");
}

TEST(Arguments, NeedNoFileForHelpAndVersion)
{
    EXPECT_EQ(Parse({"--help"}).command, Command::Help);
    EXPECT_EQ(Parse({"-h"}).command, Command::Help);
    EXPECT_EQ(Parse({"--version"}).command, Command::Version);
}

TEST(Arguments, EndWithTwoDashes)
{
    EXPECT_EQ(Parse({"--", "--vreemd.mdb"}).file, "--vreemd.mdb");
    EXPECT_EQ(Parse({"a.mdb", "-"}).statements, "-");
}

TEST(Arguments, RefuseWhatMakesNoSense)
{
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"--tables"},
        {"--wat", "a.mdb"},
        {"a.mdb", "--tables", "--check"},
        {"a.mdb", "--import", "x.csv"},
        {"a.mdb", "--export"},
        {"a.mdb", "een", "twee"},
        {"a.mdb", "--check", "SELECT 1"},
        {"a.mdb", "--export", "T", "SELECT 1"},
    };
    for (const auto& words : wrong)
        EXPECT_THROW(Parse(words), jetsql::UsageError) << (words.empty() ? "" : words.back());
}

} // namespace
