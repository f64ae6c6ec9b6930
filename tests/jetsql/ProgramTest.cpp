#include "Program.h"

#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using jet::ColumnType;

class ProgramTest : public testing::Test {
protected:
    ProgramTest() : path((folder / "boezem.mdb").string()) {}

    void MakeFile()
    {
        jet::Workspace workspace;
        const auto database = workspace.CreateDatabase(path);
        database->CreateTable(
            {.name = "Locatie",
             .fields = {{.name = "Id", .type = ColumnType::Long, .autoNumber = true},
                        {.name = "Naam", .type = ColumnType::Text, .size = 50, .required = true},
                        {.name = "Peil",
                         .type = ColumnType::Double,
                         .defaultValue = "-999",
                         .description = "streefpeil"},
                        {.name = "Gras", .type = ColumnType::Boolean},
                        {.name = "Dag", .type = ColumnType::DateTime},
                        {.name = "Rauw", .type = ColumnType::Binary, .size = 8}},
             .indexes = {{.name = "PrimaryKey", .fields = {{"Id"}}, .primary = true},
                         {.name = "OpNaam", .fields = {{"Naam", true}}, .unique = true}}});
        database->CreateTable({.name = "Leeg", .fields = {{.name = "A"}}});
    }

    void WriteCsv(const std::string& content)
    {
        std::ofstream(folder / "rijen.csv", std::ios::binary) << content;
    }
    std::string CsvPath() const { return (folder / "rijen.csv").string(); }

    int Run(const std::vector<std::string>& words, const std::string& input = "")
    {
        std::istringstream in(input);
        std::ostringstream out, errors;
        const int code = jetsql::Program(in, out, errors).Run(words);
        output = out.str();
        message = errors.str();
        return code;
    }

    TemporaryFolder folder;
    std::string path, output, message;
};

TEST_F(ProgramTest, CreatesAFileOnce)
{
    EXPECT_EQ(Run({"--create", path}), 0) << message;
    EXPECT_EQ(Run({path, "--tables"}), 0);
    EXPECT_EQ(output, "");
    EXPECT_EQ(Run({"--create", path}), 1);
    EXPECT_NE(message, "");
}

TEST_F(ProgramTest, ListsTables)
{
    MakeFile();
    EXPECT_EQ(Run({path, "--tables"}), 0);
    EXPECT_EQ(output, "Leeg\nLocatie\n");
    EXPECT_EQ(Run({"--system", "--tables", path}), 0);
    EXPECT_EQ(output, "Leeg\nLocatie\nMSysACEs\nMSysObjects\nMSysQueries\nMSysRelationships\n");
    EXPECT_EQ(Run({path, "--tables", "--json"}), 0);
    EXPECT_EQ(output, "{\"table\":\"Leeg\"}\n{\"table\":\"Locatie\"}\n");
}

TEST_F(ProgramTest, ShowsTheSchema)
{
    MakeFile();
    EXPECT_EQ(Run({path, "--schema", "locatie"}), 0);
    EXPECT_EQ(output, "Locatie (0 rijen)\n"
                      "  Id    Long, autonummering\n"
                      "  Naam  Text(50), verplicht\n"
                      "  Peil  Double, standaard -999  -- streefpeil\n"
                      "  Gras  Boolean\n"
                      "  Dag   DateTime\n"
                      "  Rauw  Binary(8)\n"
                      "  index PrimaryKey op Id (primair)\n"
                      "  index OpNaam op Naam aflopend (uniek)\n");
    EXPECT_EQ(Run({path, "--schema"}), 0);
    EXPECT_TRUE(output.starts_with("Leeg (0 rijen)\n  A  Long\n\nLocatie"));
    EXPECT_EQ(Run({path, "--schema", "Leeg", "--json"}), 0);
    EXPECT_EQ(output,
              "{\"table\":\"Leeg\",\"rows\":0,\"fields\":[{\"name\":\"A\",\"type\":\"Long\"}],"
              "\"indexes\":[]}\n");
    EXPECT_EQ(Run({path, "--schema", "Geen"}), 1);
}

TEST_F(ProgramTest, ImportsAndExports)
{
    MakeFile();
    WriteCsv("Naam,Gras,Dag,Rauw\r\n"
             "\"Dijk, noord\",true,2024-03-01 06:30:00,00ff\r\n"
             "Zuid,0,,\r\n");
    EXPECT_EQ(Run({"--import", CsvPath(), "Locatie", path}), 0) << message;
    EXPECT_EQ(Run({path, "--export", "Locatie"}), 0);
    EXPECT_EQ(output, "Id,Naam,Peil,Gras,Dag,Rauw\n"
                      "1,\"Dijk, noord\",-999,1,2024-03-01 06:30:00,00FF\n"
                      "2,Zuid,-999,0,,\n");
    EXPECT_EQ(Run({path, "--export", "locatie", "--json"}), 0);
    EXPECT_EQ(output, "{\"Id\":1,\"Naam\":\"Dijk, noord\",\"Peil\":-999,\"Gras\":true,"
                      "\"Dag\":\"2024-03-01 06:30:00\",\"Rauw\":\"00FF\"}\n"
                      "{\"Id\":2,\"Naam\":\"Zuid\",\"Peil\":-999,\"Gras\":false,\"Dag\":null,"
                      "\"Rauw\":null}\n");
}

TEST_F(ProgramTest, AnExportCanBeImportedAgain)
{
    MakeFile();
    WriteCsv("Id,Naam,Peil,Gras,Dag,Rauw\n5,\"a \"\"b\"\"\nc\",0.1,1,1899-12-30 00:00:00,0102\n"
             "9,x,,0,,\n");
    ASSERT_EQ(Run({"--import", CsvPath(), "Locatie", path}), 0) << message;
    ASSERT_EQ(Run({path, "--export", "Locatie"}), 0);
    const std::string exported = output;
    const std::string second = (folder / "twee.mdb").string();
    fs::rename(path, second);
    MakeFile();
    ASSERT_EQ(Run({"--import", "-", "Locatie", path}, exported), 0) << message;
    ASSERT_EQ(Run({path, "--export", "Locatie"}), 0);
    EXPECT_EQ(output, exported);
}

TEST_F(ProgramTest, ImportsAllRowsOrNone)
{
    MakeFile();
    WriteCsv("Naam,Peil\ngoed,1\nslecht,veel\n");
    EXPECT_EQ(Run({"--import", CsvPath(), "Locatie", path}), 1);
    EXPECT_NE(message.find("Regel 3"), std::string::npos) << message;
    EXPECT_EQ(Run({path, "--export", "Locatie"}), 0);
    EXPECT_EQ(output, "Id,Naam,Peil,Gras,Dag,Rauw\n");
    for (const char* csv : {"Naam,Peil\na\n", "Naam,Hoogte\na,1\n", "", "Naam\na\nA\n",
                            "Rauw,Naam\n0g,a\n", "Rauw,Naam\n012,a\n"}) {
        WriteCsv(csv);
        EXPECT_EQ(Run({"--import", CsvPath(), "Locatie", path}), 1) << csv;
    }
    EXPECT_EQ(Run({"--import", (folder / "er niet.csv").string(), "Locatie", path}), 1);
    EXPECT_EQ(Run({path, "--export", "Locatie"}), 0);
    EXPECT_EQ(output, "Id,Naam,Peil,Gras,Dag,Rauw\n");
}

TEST_F(ProgramTest, ChecksAndCompacts)
{
    MakeFile();
    EXPECT_EQ(Run({"--check", path}), 0);
    EXPECT_EQ(output, "Het bestand is in orde.\n");
    EXPECT_EQ(Run({"--compact", path}), 0) << message;
    EXPECT_EQ(Run({path, "--tables"}), 0);
    EXPECT_EQ(output, "Leeg\nLocatie\n");

    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(0xE00 + 4); // a commit word
    file.write("\0\0", 2);
    file.close();
    EXPECT_EQ(Run({path, "--check"}), 1);
    EXPECT_TRUE(output.starts_with("fout: ")) << output;
    EXPECT_NE(output.find("Het bestand is beschadigd.\n"), std::string::npos);
    EXPECT_EQ(Run({path, "--check", "--json"}), 1);
    EXPECT_TRUE(output.starts_with("{\"soort\":\"fout\",\"tekst\":\"")) << output;
}

TEST_F(ProgramTest, OpensWhatCanOnlyBeReadWithoutBeingAsked)
{
    const fs::path old = folder / "oud.mdb";
    fs::copy_file(fs::path(TEST_DATA_FOLDER) / "jet" / "samples" / "indexV1997.mdb", old);
    fs::permissions(old, fs::perms::owner_all);
    EXPECT_EQ(Run({old.string(), "--tables"}), 0) << message;
    EXPECT_TRUE(output.starts_with("Table1\n"));
    EXPECT_EQ(Run({old.string(), "--export", "Table1"}), 0);
    WriteCsv("id\n1\n");
    EXPECT_EQ(Run({"--import", CsvPath(), "Table1", old.string()}), 1);
    EXPECT_NE(message, "");
    EXPECT_EQ(Run({"--compact", old.string()}), 1);
}

TEST_F(ProgramTest, ReadOnlyRefusesChanges)
{
    MakeFile();
    WriteCsv("Naam\na\n");
    EXPECT_EQ(Run({"--read-only", "--import", CsvPath(), "Locatie", path}), 1);
    EXPECT_EQ(Run({path, "--export", "Locatie", "--read-only"}), 0);
    EXPECT_EQ(output, "Id,Naam,Peil,Gras,Dag,Rauw\n");
}

TEST_F(ProgramTest, TellsErrorsOnStandardError)
{
    EXPECT_EQ(Run({(folder / "er niet.mdb").string(), "--tables"}), 1);
    EXPECT_EQ(output, "");
    EXPECT_TRUE(message.starts_with("jetsql: ")) << message;
    EXPECT_EQ(Run({"--wat"}), 1);
    EXPECT_NE(message.find("--help"), std::string::npos);
    EXPECT_EQ(Run({}), 1);
}

TEST_F(ProgramTest, HelpsAndTellsItsVersion)
{
    EXPECT_EQ(Run({"--help"}), 0);
    for (const char* option :
         {"--tables", "--schema", "--check", "--compact", "--create", "--import", "--export",
          "--json", "--read-only", "--system", "--version", "--help"})
        EXPECT_NE(output.find(option), std::string::npos) << option;
    EXPECT_EQ(Run({"--version"}), 0);
    EXPECT_TRUE(output.starts_with("jetsql 1.")) << output;
}

} // namespace
