#include "KilledChild.h"
#include "TemporaryFolder.h"
#include "jet/dao/Workspace.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using jet::Value;

constexpr int kRowsPerTransaction = 12;

void MakeFile(const std::filesystem::path& path)
{
    jet::Workspace workspace;
    const auto database = workspace.CreateDatabase(path);
    database->CreateTable(
        {.name = "Log",
         .fields = {{.name = "Id", .type = jet::ColumnType::Long, .autoNumber = true},
                    {.name = "Beurt", .type = jet::ColumnType::Long},
                    {.name = "Naam", .type = jet::ColumnType::Text},
                    {.name = "Tekst", .type = jet::ColumnType::Memo}},
         .indexes = {{.name = "PrimaryKey", .fields = {{"Id"}}, .primary = true},
                     {.name = "Beurt", .fields = {{"Beurt"}}},
                     {.name = "Naam", .fields = {{"Naam"}}}}});
}

/// Turn n: twelve rows more, and those of turn n - 3 gone.
void RunTurn(jet::Workspace& workspace, jet::Database& database, int turn)
{
    workspace.BeginTrans();
    const auto rows = database.OpenRecordset("Log");
    for (int i = 0; i < kRowsPerTransaction; ++i) {
        rows->AddNew();
        rows->Set("Beurt", turn);
        rows->Set("Naam", "beurt " + std::to_string(turn) + " rij " + std::to_string(i));
        rows->Set("Tekst", std::string(static_cast<std::size_t>(i) * 400, 't'));
        rows->Update();
    }
    rows->SetIndex("Beurt");
    for (;;) {
        rows->Seek("=", {Value(turn - 3)});
        if (rows->NoMatch())
            break;
        rows->Delete();
    }
    workspace.CommitTrans(jet::Flush::Yes);
}

/// The turns that the file holds: whole ones only, the last three.
void ExpectTurn(const std::filesystem::path& path, int reported, int& last)
{
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(path);
    const jet::CheckReport report = database->Check();
    ASSERT_TRUE(report.IsSound()) << report.faults.front();
    std::map<int, int> rowsOfTurn;
    const auto rows = database->OpenRecordset("Log");
    for (; !rows->EndOfFile(); rows->MoveNext()) {
        ++rowsOfTurn[rows->Get("Beurt").AsInt()];
        ASSERT_TRUE(rows->Get("Tekst").IsText());
    }
    last = rowsOfTurn.empty() ? 0 : rowsOfTurn.rbegin()->first;
    ASSERT_TRUE(last == reported || last == reported + 1) << last << " after " << reported;
    for (int turn = std::max(1, last - 2); turn <= last; ++turn)
        ASSERT_EQ(rowsOfTurn[turn], kRowsPerTransaction) << turn;
    ASSERT_EQ(rowsOfTurn.size(), static_cast<std::size_t>(std::min(last, 3)));
}

TEST(Kill, AProcessKilledAtAnyMomentLeavesWholeTransactions)
{
    TemporaryFolder folder;
    const auto path = folder / "log.mdb";
    MakeFile(path);
    std::mt19937 random(7);
    int last = 0, killed = 0;
    for (int round = 0; round < 120; ++round) {
        const int first = last + 1;
        const auto outcome = jet_testing::RunAndKill(
            [&](jet_testing::Reporter& parent) {
                jet::Workspace workspace;
                const auto database = workspace.OpenDatabase(path);
                for (int turn = first;; ++turn) {
                    RunTurn(workspace, *database, turn);
                    parent.Report(static_cast<std::uint64_t>(turn));
                }
            },
            std::chrono::microseconds(random() % 6000));
        killed += outcome.killed ? 1 : 0;
        const int reported = outcome.lastReport == 0 ? last : static_cast<int>(outcome.lastReport);
        ASSERT_NO_FATAL_FAILURE(ExpectTurn(path, reported, last)) << "round " << round;
    }
    EXPECT_EQ(killed, 120);
    EXPECT_GT(last, 120);
}

} // namespace
