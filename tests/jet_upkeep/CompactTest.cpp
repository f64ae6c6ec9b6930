#include "DamagedFile.h"
#include "TemporaryFolder.h"

#include "FaultyFileSystem.h"
#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/catalog/Session.h"
#include "jet/upkeep/Compact.h"

#include <gtest/gtest.h>

namespace {

using jet::Row;

/// Everything that a table holds, in the order of its primary key or its rows.
std::vector<Row> RowsOf(jet::Database& database, const std::string& table)
{
    const auto recordset = database.OpenRecordset(table, jet::RecordsetType::Table);
    std::vector<Row> rows;
    for (; !recordset->EndOfFile(); recordset->MoveNext()) {
        Row row;
        for (std::size_t i = 0; i < recordset->Fields().size(); ++i)
            row.push_back(recordset->Get(static_cast<int>(i)));
        rows.push_back(std::move(row));
    }
    return rows;
}

struct Content {
    std::map<std::string, std::vector<Row>> rows;
    std::map<std::string, std::vector<std::string>> fields;
    std::map<std::string, std::vector<std::string>> indexes;
};

Content ContentOf(jet::Database& database)
{
    Content content;
    for (const std::string& name : database.TableNames()) {
        content.rows[name] = RowsOf(database, name);
        const jet::TableDef table = database.GetTableDef(name);
        for (const auto& field : table.fields)
            content.fields[name].push_back(
                field.name + ' ' + std::to_string(static_cast<int>(field.type)) + ' ' +
                std::to_string(field.size) + (field.autoNumber ? " auto" : "") +
                (field.required ? " required" : "") + ' ' + field.defaultValue + ' ' +
                field.description);
        for (const auto& index : table.indexes) {
            std::string text = index.name + (index.primary ? " primary" : "") +
                               (index.unique ? " unique" : "") + (index.foreign ? " foreign" : "");
            for (const auto& part : index.fields)
                text += ' ' + part.field + (part.descending ? "-" : "+");
            content.indexes[name].push_back(text);
        }
    }
    return content;
}

void ExpectSame(const Content& a, const Content& b)
{
    EXPECT_EQ(a.fields, b.fields);
    EXPECT_EQ(a.indexes, b.indexes);
    ASSERT_EQ(a.rows.size(), b.rows.size());
    for (const auto& [name, rows] : a.rows)
        EXPECT_EQ(rows, b.rows.at(name)) << name;
}

Content OpenAndRead(jet::FileSystem& files, const std::filesystem::path& path)
{
    jet::Workspace workspace(files);
    return ContentOf(*workspace.OpenDatabase(path, {.readOnly = true}));
}

TEST(Compact, KeepsEverythingAndGivesRoomBack)
{
    DamagedFile file;
    {
        jet::Workspace workspace(file.Files());
        const auto database = workspace.OpenDatabase(DamagedFile::kName);
        const auto rows = database->OpenRecordset("Dijk");
        for (int i = 0; i < 300; ++i) {
            rows->Delete();
            rows->MoveNext();
        }
    }
    const Content before = OpenAndRead(file.Files(), DamagedFile::kName);
    const auto sizeBefore = file.Files().Get(DamagedFile::kName).size();
    jet::CompactFile(file.Files(), DamagedFile::kName);
    ExpectSame(before, OpenAndRead(file.Files(), DamagedFile::kName));
    EXPECT_LT(file.Files().Get(DamagedFile::kName).size(), sizeBefore / 2);
    EXPECT_TRUE(file.Check().IsSound());
    EXPECT_EQ(file.Files().Names(), std::vector<std::string>{DamagedFile::kName});
}

TEST(Compact, GoesOnNumberingWhereItWas)
{
    DamagedFile file;
    {
        jet::Workspace workspace(file.Files());
        const auto database = workspace.OpenDatabase(DamagedFile::kName);
        const auto rows = database->OpenRecordset("Dijk");
        rows->MoveLast();
        rows->Delete(); // number 400 is not given out again
    }
    jet::CompactFile(file.Files(), DamagedFile::kName);
    jet::Workspace workspace(file.Files());
    const auto database = workspace.OpenDatabase(DamagedFile::kName);
    const auto rows = database->OpenRecordset("Dijk");
    rows->AddNew();
    rows->Set("Naam", "nieuw");
    rows->Update();
    rows->MoveToLastModified();
    EXPECT_EQ(rows->Get("Id"), jet::Value(401));
}

TEST(Compact, KeepsFilesOfOtherMakers)
{
    const auto folder = std::filesystem::path(TEST_DATA_FOLDER) / "jet" / "samples";
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mdb" || entry.path().stem().string().ends_with("1997"))
            continue;
        SCOPED_TRACE(entry.path().filename());
        TemporaryFolder scratch;
        const auto copy = scratch / "kopie.mdb";
        std::filesystem::copy_file(entry.path(), copy);
        std::filesystem::permissions(copy, std::filesystem::perms::owner_all);
        const Content before = OpenAndRead(jet::FileSystem::System(), copy);
        jet::CompactDatabase(copy);
        ExpectSame(before, OpenAndRead(jet::FileSystem::System(), copy));
        jet::Workspace workspace;
        const auto report = workspace.OpenDatabase(copy)->Check();
        EXPECT_TRUE(report.IsSound());
        EXPECT_TRUE(report.remarks.empty());
        ++files;
    }
    EXPECT_EQ(files, 9);
}

TEST(Compact, KeepsRowsOfObjectsItDoesNotKnow)
{
    const auto sample =
        std::filesystem::path(TEST_DATA_FOLDER) / "jet" / "samples" / "indexPropertiesV2000.mdb";
    TemporaryFolder scratch;
    const auto copy = scratch / "kopie.mdb";
    std::filesystem::copy_file(sample, copy);
    std::filesystem::permissions(copy, std::filesystem::perms::owner_all);
    const auto systemRows = [&](const char* table) {
        jet::Workspace workspace;
        return RowsOf(*workspace.OpenDatabase(copy, {.readOnly = true}), table);
    };
    const auto objects = systemRows("MSysObjects").size();
    const auto rights = systemRows("MSysACEs").size();
    const auto queries = systemRows("MSysQueries");
    jet::CompactDatabase(copy);
    EXPECT_EQ(systemRows("MSysObjects").size(), objects);
    EXPECT_EQ(systemRows("MSysACEs").size(), rights);
    EXPECT_EQ(systemRows("MSysQueries"), queries);
}

TEST(Compact, LeavesADamagedFileAsItIs)
{
    DamagedFile file;
    file.Change(file.MemoPages().front(),
                [](std::span<std::byte> p) { jet::PutU16(p, 14, 0xC005); });
    const auto before = file.Files().Get(DamagedFile::kName);
    EXPECT_THROW(jet::CompactFile(file.Files(), DamagedFile::kName), jet::Error);
    EXPECT_EQ(file.Files().Get(DamagedFile::kName), before);
    EXPECT_EQ(file.Files().Names(), std::vector<std::string>{DamagedFile::kName});
}

TEST(Compact, LeavesTheOriginalWhenAnyStepFails)
{
    DamagedFile file;
    const auto before = OpenAndRead(file.Files(), DamagedFile::kName);
    jet_testing::FaultyFileSystem faulty(file.Files());
    faulty.Disarm();
    // Counted on a copy, since a run that succeeds replaces the file.
    const auto original = file.Files().Get(DamagedFile::kName);
    jet::CompactFile(faulty, DamagedFile::kName);
    const long steps = faulty.Count(jet_testing::FaultyFileSystem::kChange);
    ASSERT_GT(steps, 10);
    file.Files().Put(DamagedFile::kName, original);
    for (long step = 1; step <= steps; step += std::max(1L, steps / 40)) {
        faulty.Arm({.operations = jet_testing::FaultyFileSystem::kChange,
                    .at = step,
                    .effect = jet_testing::FaultyFileSystem::Effect::Fail});
        try {
            jet::CompactFile(faulty, DamagedFile::kName);
        } catch (const jet::Error&) {
        }
        faulty.Disarm();
        ExpectSame(before, OpenAndRead(file.Files(), DamagedFile::kName));
    }
}

TEST(Compact, RefusesAFileThatIsOpen)
{
    DamagedFile file;
    jet::Workspace workspace(file.Files());
    const auto database = workspace.OpenDatabase(DamagedFile::kName);
    try {
        jet::CompactFile(file.Files(), DamagedFile::kName);
        ADD_FAILURE();
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.Kind(), jet::ErrorKind::Locked);
    }
}

TEST(Compact, RefusesAJet3File)
{
    TemporaryFolder scratch;
    const auto copy = scratch / "oud.mdb";
    std::filesystem::copy_file(
        std::filesystem::path(TEST_DATA_FOLDER) / "jet" / "samples" / "indexV1997.mdb", copy);
    std::filesystem::permissions(copy, std::filesystem::perms::owner_all);
    try {
        jet::CompactDatabase(copy);
        ADD_FAILURE();
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.Kind(), jet::ErrorKind::ReadOnly);
    }
}

} // namespace
