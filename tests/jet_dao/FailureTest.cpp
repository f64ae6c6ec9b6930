#include "FaultyFileSystem.h"
#include "MemoryFileSystem.h"
#include "jet/base/Error.h"
#include "jet/dao/Workspace.h"

#include <gtest/gtest.h>

namespace {

using jet_testing::FaultyFileSystem;
using Effect = FaultyFileSystem::Effect;

constexpr const char* kFile = "boezem.mdb";

/// Table "T" with 400 rows; the transaction below changes, adds and removes rows,
/// memos included, and adds a table.
jet_testing::Bytes NewFile()
{
    jet_testing::MemoryFileSystem files;
    jet::Workspace workspace(files);
    const auto database = workspace.CreateDatabase(kFile);
    database->CreateTable(
        {.name = "T",
         .fields = {{.name = "Id", .type = jet::ColumnType::Long, .autoNumber = true},
                    {.name = "Naam", .type = jet::ColumnType::Text},
                    {.name = "Tekst", .type = jet::ColumnType::Memo}},
         .indexes = {{.name = "PrimaryKey", .fields = {{"Id"}}, .primary = true},
                     {.name = "Naam", .fields = {{"Naam"}}}}});
    const auto rows = database->OpenRecordset("T");
    for (int i = 0; i < 400; ++i) {
        rows->AddNew();
        rows->Set(1, "rij " + std::to_string(i));
        rows->Set(2, std::string(static_cast<std::size_t>(i % 7) * 700, 'a'));
        rows->Update();
    }
    rows->Close();
    database->Close();
    return files.Get(kFile);
}

void MakeFile(jet_testing::MemoryFileSystem& files)
{
    static const jet_testing::Bytes made = NewFile();
    files.Put(kFile, made);
}

void ChangeRows(jet::Database& database)
{
    const auto rows = database.OpenRecordset("T");
    for (int i = 0; i < 150; ++i, rows->MoveNext()) {
        rows->Edit();
        rows->Set(1, "gewijzigd " + std::string(static_cast<std::size_t>(i), 'x'));
        rows->Set(2, std::string(static_cast<std::size_t>(150 - i) * 30, 'b'));
        rows->Update();
    }
    for (int i = 0; i < 100; ++i, rows->MoveNext())
        rows->Delete();
    for (int i = 0; i < 60; ++i) {
        rows->AddNew();
        rows->Set(1, "nieuw " + std::to_string(i));
        rows->Set(2, std::string(3000, 'c'));
        rows->Update();
    }
    database.CreateTable({.name = "U", .fields = {{.name = "A"}}});
}

void RunTransaction(jet::FileSystem& files)
{
    jet::Workspace workspace(files);
    const auto database = workspace.OpenDatabase(kFile);
    workspace.BeginTrans();
    ChangeRows(*database);
    workspace.CommitTrans(jet::Flush::Yes);
}

/// Everything in the file as one text; fails when it is not sound.
std::string ContentOf(jet::FileSystem& files)
{
    jet::Workspace workspace(files);
    const auto database = workspace.OpenDatabase(kFile);
    const jet::CheckReport report = database->Check();
    EXPECT_TRUE(report.IsSound()) << report.faults.front();
    std::string content;
    for (const std::string& name : database->TableNames()) {
        content += name + '\n';
        const auto rows = database->OpenRecordset(name);
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            for (std::size_t i = 0; i < rows->Fields().size(); ++i)
                content += rows->Get(static_cast<int>(i)).AsTextOr("-") + '|';
            content += '\n';
        }
    }
    return content;
}

struct States {
    std::string before, after;
    long operations = 0;
};

States StatesOf(unsigned operations)
{
    jet_testing::MemoryFileSystem files;
    MakeFile(files);
    States states;
    states.before = ContentOf(files);
    FaultyFileSystem counting(files);
    counting.Disarm();
    RunTransaction(counting);
    states.operations = counting.Count(operations);
    states.after = ContentOf(files);
    return states;
}

// The process dies at the n-th change of the disk, for every n, the last write
// whole or torn: the next opener finds the state before or after, never between.
TEST(Failure, DyingAtAnyWriteLeavesOneOfTheTwoStates)
{
    const States states = StatesOf(FaultyFileSystem::kChange);
    ASSERT_NE(states.before, states.after);
    ASSERT_GT(states.operations, 30);
    int before = 0, after = 0;
    for (const Effect effect : {Effect::Die, Effect::DieTorn}) {
        for (long at = 1; at <= states.operations; ++at) {
            jet_testing::MemoryFileSystem files;
            MakeFile(files);
            FaultyFileSystem faulty(files);
            faulty.Arm({.operations = FaultyFileSystem::kChange, .at = at, .effect = effect});
            try {
                RunTransaction(faulty);
            } catch (const jet::Error&) {
            }
            const std::string content = ContentOf(files);
            ASSERT_TRUE(content == states.before || content == states.after)
                << "died at operation " << at;
            (content == states.before ? before : after) += 1;
        }
    }
    EXPECT_GT(before, 0);
    EXPECT_GT(after, 0);
}

TEST(Failure, AFailingWriteOrFlushGoesUpAndTheFileIsAsBefore)
{
    const States states = StatesOf(FaultyFileSystem::kChange);
    for (const Effect effect : {Effect::Fail, Effect::FailForGood, Effect::DiskFull}) {
        for (long at = 1; at <= states.operations; ++at) {
            jet_testing::MemoryFileSystem files;
            MakeFile(files);
            FaultyFileSystem faulty(files);
            faulty.Arm({.operations = FaultyFileSystem::kChange, .at = at, .effect = effect});
            bool failed = false;
            try {
                RunTransaction(faulty);
            } catch (const jet::Error&) {
                failed = true;
            }
            faulty.Disarm();
            const std::string content = ContentOf(files);
            ASSERT_TRUE(content == states.after || (failed && content == states.before))
                << "operation " << at << (failed ? " failed" : " was borne");
        }
    }
}

TEST(Failure, AFailingReadGoesUpAndTheFileIsAsBefore)
{
    const States states = StatesOf(FaultyFileSystem::kRead);
    for (long at = 1; at <= states.operations; ++at) {
        jet_testing::MemoryFileSystem files;
        MakeFile(files);
        FaultyFileSystem faulty(files);
        faulty.Arm({.operations = FaultyFileSystem::kRead, .at = at, .effect = Effect::Fail});
        bool failed = false;
        try {
            RunTransaction(faulty);
        } catch (const jet::Error&) {
            failed = true;
        }
        faulty.Disarm();
        const std::string content = ContentOf(files);
        ASSERT_TRUE(content == states.after || (failed && content == states.before)) << at;
    }
}

TEST(Failure, AfterAFailedCommitOnlyARollbackIsPossible)
{
    jet_testing::MemoryFileSystem files;
    MakeFile(files);
    const std::string before = ContentOf(files);
    FaultyFileSystem faulty(files);
    jet::Workspace workspace(faulty);
    const auto database = workspace.OpenDatabase(kFile);
    workspace.BeginTrans();
    ChangeRows(*database);
    faulty.Arm({.operations = FaultyFileSystem::kSync, .at = 1, .effect = Effect::FailForGood});
    EXPECT_THROW(workspace.CommitTrans(jet::Flush::Yes), jet::Error);
    faulty.Disarm();
    EXPECT_EQ(workspace.TransactionDepth(), 1);
    workspace.Rollback();
    EXPECT_EQ(workspace.TransactionDepth(), 0);
    EXPECT_FALSE(database->HasTable("U"));
    workspace.BeginTrans();
    ChangeRows(*database);
    workspace.CommitTrans(jet::Flush::Yes);
    EXPECT_TRUE(database->HasTable("U"));
    database->Close();
    EXPECT_NE(ContentOf(files), before);
}

TEST(Failure, AFullDiskLeavesARefusedRowAndAUsableDatabase)
{
    jet_testing::MemoryFileSystem files;
    MakeFile(files);
    const std::string before = ContentOf(files);
    FaultyFileSystem faulty(files);
    {
        jet::Workspace workspace(faulty);
        const auto database = workspace.OpenDatabase(kFile);
        faulty.Arm({.operations = FaultyFileSystem::kAll, .at = 1, .effect = Effect::DiskFull});
        const auto rows = database->OpenRecordset("T");
        rows->AddNew();
        rows->Set(2, std::string(50000, 'z'));
        try {
            rows->Update();
            ADD_FAILURE();
        } catch (const jet::Error& error) {
            EXPECT_EQ(error.Kind(), jet::ErrorKind::DiskFull) << error.what();
        }
        faulty.Disarm();
        EXPECT_EQ(rows->RecordCount(), 400);
        rows->Update(); // the row was kept, and now there is room
        EXPECT_EQ(rows->RecordCount(), 401);
    }
    EXPECT_NE(ContentOf(files), before);
}

} // namespace
