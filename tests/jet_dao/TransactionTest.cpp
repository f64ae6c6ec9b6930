#include "MemoryFileSystem.h"
#include "jet/base/Error.h"
#include "jet/dao/Workspace.h"

#include <gtest/gtest.h>

namespace {

using jet::ErrorKind;
using jet::Value;

class TransactionTest : public testing::Test {
protected:
    TransactionTest() : database(Make("een.mdb")) {}

    std::unique_ptr<jet::Database> Make(const char* name)
    {
        auto made = workspace.CreateDatabase(name);
        made->CreateTable({.name = "T", .fields = {{.name = "A"}}});
        return made;
    }

    static void Add(jet::Database& to, int number)
    {
        const auto rows = to.OpenRecordset("T");
        rows->AddNew();
        rows->Set("A", number);
        rows->Update();
    }

    static std::string Numbers(jet::Database& of)
    {
        std::string numbers;
        const auto rows = of.OpenRecordset("T");
        for (; !rows->EndOfFile(); rows->MoveNext())
            numbers += rows->Get(0).AsText() + ' ';
        return numbers;
    }

    jet_testing::MemoryFileSystem files;
    jet::Workspace workspace{files};
    std::unique_ptr<jet::Database> database;
};

TEST_F(TransactionTest, CommitsAndRollsBack)
{
    EXPECT_EQ(workspace.TransactionDepth(), 0);
    workspace.BeginTrans();
    EXPECT_EQ(workspace.TransactionDepth(), 1);
    Add(*database, 1);
    workspace.CommitTrans();
    workspace.BeginTrans();
    Add(*database, 2);
    EXPECT_EQ(Numbers(*database), "1 2 ");
    workspace.Rollback();
    EXPECT_EQ(Numbers(*database), "1 ");
    workspace.BeginTrans();
    Add(*database, 3);
    workspace.CommitTrans(jet::Flush::Yes);
    EXPECT_EQ(Numbers(*database), "1 3 ");
}

TEST_F(TransactionTest, NestsAndUndoesTheInnerPartOnly)
{
    for (int depth = 1; depth <= 8; ++depth) {
        workspace.BeginTrans();
        Add(*database, depth);
    }
    EXPECT_EQ(workspace.TransactionDepth(), 8);
    workspace.Rollback();    // 8
    workspace.CommitTrans(); // 7 belongs to 6
    workspace.Rollback();    // 6 and 7
    EXPECT_EQ(Numbers(*database), "1 2 3 4 5 ");
    for (int depth = 5; depth >= 1; --depth)
        workspace.CommitTrans();
    EXPECT_EQ(Numbers(*database), "1 2 3 4 5 ");
    EXPECT_TRUE(database->Check().IsSound());
}

TEST_F(TransactionTest, NeedsABegin)
{
    for (const auto& end : std::vector<std::function<void()>>{[&] { workspace.CommitTrans(); },
                                                              [&] { workspace.Rollback(); }}) {
        try {
            end();
            ADD_FAILURE();
        } catch (const jet::Error& error) {
            EXPECT_EQ(error.Kind(), ErrorKind::NoTransaction);
        }
    }
}

TEST_F(TransactionTest, SpansAllOpenDatabases)
{
    const auto second = Make("twee.mdb");
    workspace.BeginTrans();
    Add(*database, 1);
    Add(*second, 2);
    workspace.Rollback();
    EXPECT_EQ(Numbers(*database) + Numbers(*second), "");
    workspace.BeginTrans();
    Add(*database, 1);
    Add(*second, 2);
    workspace.CommitTrans();
    EXPECT_EQ(Numbers(*database) + Numbers(*second), "1 2 ");
}

TEST_F(TransactionTest, TakesInADatabaseOpenedOnTheWay)
{
    Make("twee.mdb")->Close();
    workspace.BeginTrans();
    workspace.BeginTrans();
    const auto second = workspace.OpenDatabase("twee.mdb");
    Add(*second, 1);
    workspace.Rollback();
    EXPECT_EQ(Numbers(*second), "");
    Add(*second, 2);
    workspace.CommitTrans();
    EXPECT_EQ(Numbers(*second), "2 ");
}

TEST_F(TransactionTest, LeavesReadOnlyDatabasesOut)
{
    Make("twee.mdb")->Close();
    const auto second = workspace.OpenDatabase("twee.mdb", {.readOnly = true});
    workspace.BeginTrans();
    Add(*database, 1);
    EXPECT_EQ(Numbers(*second), "");
    workspace.CommitTrans();
    EXPECT_EQ(Numbers(*database), "1 ");
}

TEST_F(TransactionTest, ClosingRollsTheOpenPartBack)
{
    workspace.BeginTrans();
    Add(*database, 1);
    database->Close();
    workspace.CommitTrans(); // of the files that are left: none
    const auto again = workspace.OpenDatabase("een.mdb");
    EXPECT_EQ(Numbers(*again), "");
    EXPECT_EQ(files.Names(), std::vector<std::string>{"een.mdb"});
}

TEST_F(TransactionTest, TheEndOfTheWorkspaceRollsBack)
{
    {
        jet::Workspace other(files);
        const auto second = other.CreateDatabase("twee.mdb");
        second->CreateTable({.name = "T", .fields = {{.name = "A"}}});
        other.BeginTrans();
        Add(*second, 1);
    }
    const auto second = workspace.OpenDatabase("twee.mdb");
    EXPECT_EQ(Numbers(*second), "");
}

TEST_F(TransactionTest, ADatabaseMayOutliveItsWorkspace)
{
    std::unique_ptr<jet::Database> orphan;
    {
        jet::Workspace other(files);
        orphan = other.CreateDatabase("twee.mdb");
    }
    EXPECT_FALSE(orphan->IsOpen());
}

TEST_F(TransactionTest, SchemaChangesTakePart)
{
    workspace.BeginTrans();
    database->AddField("T", {.name = "B", .type = jet::ColumnType::Text, .required = true});
    database->CreateTable({.name = "U", .fields = {{.name = "A"}}});
    workspace.Rollback();
    EXPECT_FALSE(database->HasTable("U"));
    EXPECT_EQ(database->GetTableDef("T").fields.size(), 1u);
    Add(*database, 1);
    EXPECT_EQ(Numbers(*database), "1 ");
    EXPECT_TRUE(database->Check().remarks.empty());
}

} // namespace
