// Programs of others read what the engine wrote.

#include "TemporaryFolder.h"
#include "jet/dao/Workspace.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>

namespace {

using jet::ColumnType;
using jet::Value;
namespace fs = std::filesystem;

struct Output {
    std::string text;
    int code = -1;
};

Output RunCommand(const std::string& command)
{
    Output output;
    FILE* pipe = popen((command + " 2>/dev/null").c_str(), "r");
    if (!pipe)
        return output;
    std::array<char, 4096> buffer;
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe))
        output.text.append(buffer.data(), count);
    output.code = pclose(pipe);
    return output;
}

bool IsInstalled(const char* program)
{
    return RunCommand(std::string("command -v ") + program).code == 0;
}

std::string Quoted(const std::string& text)
{
    return '\'' + text + '\'';
}

/// Splits a CSV text whose fields stand between | and whose rows end with a line end.
std::vector<std::vector<std::string>> Fields(const std::string& text)
{
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line, '\x02');) {
        std::vector<std::string> fields(1);
        for (const char c : line) {
            if (c == '\x01')
                fields.emplace_back();
            else
                fields.back() += c;
        }
        rows.push_back(std::move(fields));
    }
    return rows;
}

class JudgesTest : public testing::Test {
protected:
    JudgesTest() : path(folder / "boezem.mdb") {}

    /// A table of every type the judges print alike, with rows that were changed,
    /// moved and deleted, fields added and dropped.
    void MakeFile(bool withDeletedRows = true)
    {
        jet::Workspace workspace;
        const auto database = workspace.CreateDatabase(path);
        workspace.BeginTrans();
        database->CreateTable(
            {.name = "Alles",
             .fields = {{.name = "Id", .type = ColumnType::Long, .autoNumber = true},
                        {.name = "Vlag", .type = ColumnType::Boolean},
                        {.name = "Klein", .type = ColumnType::Byte},
                        {.name = "Kort", .type = ColumnType::Integer},
                        {.name = "Weg", .type = ColumnType::Double},
                        {.name = "Dubbel", .type = ColumnType::Double, .defaultValue = "-999"},
                        {.name = "Naam",
                         .type = ColumnType::Text,
                         .size = 60,
                         .required = true,
                         .description = "hoe het heet"},
                        {.name = "Verhaal", .type = ColumnType::Memo}},
             .indexes = {
                 {.name = "PrimaryKey", .fields = {{"Id"}}, .primary = true},
                 {.name = "OpNaam", .fields = {{"Naam"}, {"Kort", true}}, .unique = true}}});
        const auto rows = database->OpenRecordset("Alles");
        for (int i = 1; i <= 700; ++i) {
            rows->AddNew();
            rows->Set("Vlag", i % 3 == 0);
            rows->Set("Klein", i % 256);
            rows->Set("Kort", i - 350);
            rows->Set("Weg", i * 1.0);
            if (i % 5 != 0)
                rows->Set("Dubbel", i / 8.0);
            rows->Set("Naam", "né " + std::to_string(i) + (i % 4 == 0 ? " €uro" : ""));
            if (i % 2 == 0)
                rows->Set("Verhaal", Story(i));
            rows->Update();
        }
        int i = 0;
        for (rows->MoveFirst(); !rows->EndOfFile(); rows->MoveNext()) {
            ++i;
            if (withDeletedRows && i % 7 == 0) {
                rows->Delete();
            } else if (i % 11 == 0) {
                rows->Edit();
                rows->Set("Naam", std::string(55, 'w') + std::to_string(i));
                rows->Update();
            }
        }
        rows->Close();
        database->DropField("Alles", "Weg");
        database->AddField("Alles", {.name = "Erbij", .type = ColumnType::Text, .size = 10});
        const auto again = database->OpenRecordset("Alles");
        for (int n = 0; n < 100; ++n, again->MoveNext()) {
            again->Edit();
            again->Set("Erbij", "e" + std::to_string(n));
            again->Update();
        }
        workspace.CommitTrans();
    }

    static std::string Story(int i)
    {
        return "verhaal " + std::to_string(i) + ' ' +
               std::string(static_cast<std::size_t>(i) * 13, 's');
    }

    TemporaryFolder folder;
    fs::path path;
};

TEST_F(JudgesTest, MdbtoolsListsAndCountsOurTables)
{
    if (!IsInstalled("mdb-tables"))
        GTEST_SKIP() << "mdbtools is not installed";
    MakeFile();
    EXPECT_EQ(RunCommand("mdb-ver " + path.string()).text, "JET4\n");
    EXPECT_EQ(RunCommand("mdb-tables -1 " + path.string()).text, "Alles\n");
    EXPECT_EQ(RunCommand("mdb-count " + path.string() + " Alles").text, "600\n");
}

TEST_F(JudgesTest, MdbtoolsShowsTheSchemaThatWeMade)
{
    if (!IsInstalled("mdb-schema"))
        GTEST_SKIP() << "mdbtools is not installed";
    MakeFile();
    std::string schema =
        RunCommand("mdb-schema --indexes --default-values --not-null " + path.string() + " access")
            .text;
    schema += RunCommand("mdb-schema --indexes " + path.string() + " mysql").text;
    std::string squeezed;
    for (const char c : schema)
        if (c != '\t' && c != ' ' && c != '\n')
            squeezed += c;
    for (const char* part :
         {"[Id]LongInteger", "[Vlag]BooleanNOTNULL", "[Klein]Byte", "[Kort]Integer",
          "[Dubbel]DoubleDEFAULT-999", "[Naam]Text(60)NOTNULL", "[Verhaal]Memo/Hyperlink(255)",
          "[Erbij]Text(10)", "ADDPRIMARYKEY(`Id`)", "ADDUNIQUEINDEX`OpNaam`(`Naam`,`Kort`"})
        EXPECT_NE(squeezed.find(part), std::string::npos) << part << "\nin\n" << schema;
    EXPECT_EQ(squeezed.find("[Weg]"), std::string::npos);
}

TEST_F(JudgesTest, MdbtoolsReadsOurProperties)
{
    if (!IsInstalled("mdb-prop"))
        GTEST_SKIP() << "mdbtools is not installed";
    MakeFile();
    const std::string properties = RunCommand("mdb-prop " + path.string() + " Alles").text;
    for (const char* part : {"DefaultValue: -999", "Required: yes", "Description: hoe het heet"})
        EXPECT_NE(properties.find(part), std::string::npos) << part << "\nin\n" << properties;
}

/// A field in a form in which both sides print it alike: numbers to six digits,
/// dates and bytes only as present.
std::string Comparable(const std::string& text, ColumnType type)
{
    switch (type) {
    case ColumnType::Text:
    case ColumnType::Memo:
    case ColumnType::Boolean:
        return text;
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
    case ColumnType::Single:
    case ColumnType::Double:
    case ColumnType::Currency:
    case ColumnType::Decimal: {
        if (text.empty())
            return "-";
        std::array<char, 40> digits;
        std::snprintf(digits.data(), digits.size(), "%.6g", std::atof(text.c_str()));
        return digits.data();
    }
    default:
        return text.empty() ? "-" : "+";
    }
}

/// Row by row, but in any order: mdbtools meets rows that moved where they are
/// now, we where they were.
void ExpectRowsOfMdbExport(const fs::path& path, const std::string& table)
{
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(path, {.exclusive = false, .readOnly = true});
    const auto rows = database->OpenRecordset(table, jet::RecordsetType::Table);
    std::vector<std::string> ours, theirs;
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        std::string line;
        for (std::size_t i = 0; i < rows->Fields().size(); ++i) {
            const Value value = rows->Get(static_cast<int>(i));
            const ColumnType type = rows->Fields()[i].type;
            std::string text = "+";
            if (value.IsNull())
                text = "";
            else if (type == ColumnType::Boolean)
                text = value.AsBool() ? "1" : "0";
            else if (type != ColumnType::Binary && type != ColumnType::Ole)
                text = value.AsText();
            line += Comparable(text, type) + '|';
        }
        ours.push_back(std::move(line));
    }
    const std::string text =
        RunCommand("mdb-export -H -Q -b hex -d \"$(printf '\\001')\" -R \"$(printf '\\002')\" " +
                   Quoted(path.string()) + ' ' + Quoted(table))
            .text;
    for (const auto& fields : Fields(text)) {
        ASSERT_EQ(fields.size(), rows->Fields().size()) << table;
        std::string line;
        for (std::size_t i = 0; i < fields.size(); ++i)
            line += Comparable(fields[i], rows->Fields()[i].type) + '|';
        theirs.push_back(std::move(line));
    }
    std::ranges::sort(ours);
    std::ranges::sort(theirs);
    EXPECT_EQ(ours, theirs) << table;
}

TEST_F(JudgesTest, MdbExportReadsOurRowsOneByOne)
{
    if (!IsInstalled("mdb-export"))
        GTEST_SKIP() << "mdbtools is not installed";
    MakeFile();
    ExpectRowsOfMdbExport(path, "Alles");
}

TEST_F(JudgesTest, MdbExportReadsWhatWeChangedInFilesOfOtherMakers)
{
    if (!IsInstalled("mdb-export"))
        GTEST_SKIP() << "mdbtools is not installed";
    for (const char* sample : {"overflowV2000", "delColV2000", "compIndexV2000", "common2V2000",
                               "indexPropertiesV2000", "fixedNumericV2000"}) {
        SCOPED_TRACE(sample);
        const fs::path copy = folder / (std::string(sample) + ".mdb");
        fs::copy_file(fs::path(TEST_DATA_FOLDER) / "jet" / "samples" / copy.filename(), copy);
        fs::permissions(copy, fs::perms::owner_all);
        std::vector<std::string> names;
        {
            jet::Workspace workspace;
            const auto database = workspace.OpenDatabase(copy);
            names = database->TableNames();
            for (const std::string& name : names) {
                const auto rows = database->OpenRecordset(name, jet::RecordsetType::Table);
                int i = 0;
                for (; !rows->EndOfFile(); rows->MoveNext()) {
                    if (++i % 3 == 0) {
                        rows->Delete();
                        continue;
                    }
                    if (i % 3 != 1)
                        continue;
                    rows->Edit();
                    for (std::size_t f = 0; f < rows->Fields().size(); ++f) {
                        const auto& field = rows->Fields()[f];
                        if (field.type == ColumnType::Memo)
                            rows->Set(static_cast<int>(f),
                                      std::string(2500, 'm') + std::to_string(i));
                    }
                    rows->Update();
                }
            }
            const jet::CheckReport report = database->Check();
            EXPECT_TRUE(report.IsSound()) << report.faults.front();
        }
        for (const std::string& name : names)
            ExpectRowsOfMdbExport(copy, name);
    }
}

// Uses the package mdb-reader of npm where MDB_READER names the folder that holds
// its node_modules (or where it is found from the working folder).
TEST_F(JudgesTest, MdbReaderOfNpmReadsOurRows)
{
    const char* modules = std::getenv("MDB_READER");
    const std::string home = modules ? modules : ".";
    const std::string probe = "cd " + Quoted(home) +
                              " && node -e \"import('mdb-reader').then(()=>process.exit(0),"
                              "()=>process.exit(1))\"";
    if (!IsInstalled("node") || RunCommand(probe).code != 0)
        GTEST_SKIP() << "npm's mdb-reader is not installed (set MDB_READER)";
    // It mistakes the flags of a deleted slot for a part of the next row's place,
    // so its file has no rows deleted before memos.
    MakeFile(false);
    const std::string script = folder / "lees.mjs";
    {
        FILE* file = fopen(script.c_str(), "w");
        fputs("import { createRequire } from 'module';\n"
              "import { readFileSync } from 'fs';\n"
              "const need = createRequire(process.cwd() + '/x.js');\n"
              "const found = need.resolve('mdb-reader');\n"
              "const { default: Reader } = await import(found);\n"
              "const reader = new Reader(readFileSync(process.argv[2]));\n"
              "for (const row of reader.getTable('Alles').getData())\n"
              "  console.log(JSON.stringify(row));\n",
              file);
        fclose(file);
    }
    const Output output = RunCommand("cd " + Quoted(home) + " && node " + Quoted(script) + ' ' +
                                     Quoted(path.string()));
    ASSERT_EQ(output.code, 0);
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(path, {.readOnly = true});
    const auto rows = database->OpenRecordset("Alles");
    rows->SetIndex("PrimaryKey"); // rows that moved come in another order there
    std::istringstream lines(output.text);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        const auto json = nlohmann::json::parse(line);
        rows->Seek("=", {Value(json["Id"].get<std::int32_t>())});
        ASSERT_FALSE(rows->NoMatch()) << line;
        for (const char* number : {"Id", "Klein", "Kort", "Dubbel"})
            EXPECT_EQ(json[number].get<double>(), rows->Get(number).AsDouble()) << number << count;
        EXPECT_EQ(json["Vlag"].get<bool>(), rows->Get("Vlag").AsBool());
        for (const char* text : {"Naam", "Verhaal", "Erbij"}) {
            const Value value = rows->Get(text);
            EXPECT_EQ(json[text].is_null(), value.IsNull()) << text << count;
            if (!value.IsNull()) {
                EXPECT_EQ(json[text].get<std::string>(), value.AsText()) << text << count;
            }
        }
    }
    EXPECT_EQ(count, 700);
}

} // namespace
