#include "jet_sql/QueryMaker.h"
#include "jet_sql/ScratchDatabase.h"

#include "jet/index/TextKey.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

// Random statements on the engine and on SQLite's own tables, with the same
// rows and the same order of texts: every answer must be the same.
namespace jet {
namespace {

using namespace testing;

/// SQLite's own tables.
class PlainTables {
public:
    PlainTables()
    {
        sqlite3* handle = nullptr;
        sqlite3_open(":memory:", &handle);
        m_handle.reset(handle);
        sqlite3_create_collation_v2(
            handle, "JET", SQLITE_UTF8, nullptr,
            [](void*, int an, const void* a, int bn, const void* b) {
                return CompareText({static_cast<const char*>(a), static_cast<std::size_t>(an)},
                                   {static_cast<const char*>(b), static_cast<std::size_t>(bn)});
            },
            nullptr);
    }

    void Create(const MadeTable& table)
    {
        std::string text = "CREATE TABLE " + table.name + " (";
        for (const MadeColumn& column : table.columns)
            text += (text.back() == '(' ? "" : ",") + column.name +
                    (column.kind == Kind::Text ? " TEXT COLLATE JET"
                     : column.kind != Kind::Whole && column.kind != Kind::YesNo ? " REAL"
                                                                                : "");
        Run(text + ")");
    }

    void Run(const std::string& text)
    {
        char* message = nullptr;
        if (sqlite3_exec(m_handle.get(), text.c_str(), nullptr, nullptr, &message) != SQLITE_OK)
            ADD_FAILURE() << text << "\n" << (message ? message : "");
        sqlite3_free(message);
    }

    /// All rows; a field is empty text for null, else a mark and its value.
    std::vector<std::vector<std::string>> Query(const std::string& text, bool fold);

private:
    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::unique_ptr<sqlite3, Close> m_handle;
};

std::string Marked(std::string text, bool fold)
{
    return "t" + (fold ? TextSortKey(text) : text);
}

std::string Marked(double number)
{
    char text[40];
    std::snprintf(text, sizeof text, "n%.12g", number == 0 ? 0.0 : number);
    return text;
}

std::vector<std::vector<std::string>> PlainTables::Query(const std::string& text, bool fold)
{
    std::vector<std::vector<std::string>> rows;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(m_handle.get(), text.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        ADD_FAILURE() << text << "\n" << sqlite3_errmsg(m_handle.get());
        return rows;
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
        std::vector<std::string> row;
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
            const int type = sqlite3_column_type(statement, i);
            if (type == SQLITE_NULL)
                row.emplace_back();
            else if (type == SQLITE_TEXT)
                row.push_back(
                    Marked(reinterpret_cast<const char*>(sqlite3_column_text(statement, i)), fold));
            else
                row.push_back(Marked(sqlite3_column_double(statement, i)));
        }
        rows.push_back(std::move(row));
    }
    sqlite3_finalize(statement);
    return rows;
}

std::vector<std::vector<std::string>> EngineRows(Database& db, const std::string& text, bool fold)
{
    std::vector<std::vector<std::string>> rows;
    const auto records =
        db.OpenRecordset(text, RecordsetType::Snapshot, {.readOnly = true, .forwardOnly = true});
    for (; !records->EndOfFile(); records->MoveNext()) {
        std::vector<std::string> row;
        for (int i = 0; i < static_cast<int>(records->Fields().size()); ++i) {
            const Value value = records->Get(i);
            if (value.IsNull())
                row.emplace_back();
            else if (value.IsText())
                row.push_back(Marked(value.AsText(), fold));
            else
                row.push_back(Marked(value.AsDouble()));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

// The first `top` rows and those that tie with the last of them.
void CutTop(std::vector<std::vector<std::string>>& rows, int top)
{
    const auto first = static_cast<std::size_t>(top);
    if (top < 0 || rows.size() <= first)
        return;
    std::size_t end = first;
    while (end < rows.size() && rows[end][0] == rows[first - 1][0])
        ++end;
    rows.resize(end);
}

/// One random database and a number of statements on it; returns how many.
int RunOne(unsigned seed, int queries)
{
    QueryMaker maker(seed);
    ScratchDatabase scratch;
    PlainTables plain;
    const std::vector<MadeTable> tables = maker.MakeTables();
    scratch.workspace.BeginTrans();
    for (const MadeTable& table : tables) {
        std::string text = "CREATE TABLE " + table.name + " (";
        for (const MadeColumn& column : table.columns)
            text += (text.back() == '(' ? "[" : ",[") + column.name + "] " + column.jetType;
        scratch.db->Execute(text + ")");
        plain.Create(table);
    }
    for (const std::string& index : maker.MakeIndexes())
        scratch.db->Execute(index);
    for (const MadeTable& table : tables) {
        const int rows = maker.Chance(10) ? 0 : 1 + maker.Below(30);
        for (int id = 1; id <= rows; ++id) {
            const std::string insert = maker.MakeRow(table, id);
            scratch.db->Execute(insert);
            plain.Run(insert);
        }
    }
    scratch.workspace.CommitTrans();

    for (int i = 0; i < queries; ++i) {
        if (maker.Chance(4)) {
            const Twin change = maker.MakeChange();
            scratch.db->Execute(change.jet);
            plain.Run(change.lite);
            for (const MadeTable& table : tables) {
                const std::string all = "SELECT * FROM " + table.name + " ORDER BY id";
                EXPECT_EQ(EngineRows(*scratch.db, all, false), plain.Query(all, false))
                    << "seed " << seed << "\n"
                    << change.jet << "\n"
                    << change.lite;
            }
            if (::testing::Test::HasFailure())
                return i;
            continue;
        }
        const MadeQuery query = maker.MakeQuery();
        std::vector<std::vector<std::string>> expected, found;
        // Equal sort keys must tie for TOP, so texts are folded there too.
        const bool fold = query.foldsTexts || query.top >= 0;
        expected = plain.Query(query.text.lite, fold);
        try {
            found = EngineRows(*scratch.db, query.text.jet, fold);
        } catch (const Error& error) {
            ADD_FAILURE() << "seed " << seed << "\n" << query.text.jet << "\n" << error.what();
            return i;
        }
        if (query.ordered) {
            CutTop(expected, query.top);
            for (std::size_t r = 0; fold && r < std::min(expected.size(), found.size()); ++r)
                EXPECT_EQ(found[r][0], expected[r][0]) << "seed " << seed << ", order of\n"
                                                       << query.text.jet;
        }
        std::sort(expected.begin(), expected.end());
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, expected) << "seed " << seed << "\n"
                                   << query.text.jet << "\n"
                                   << query.text.lite;
        if (::testing::Test::HasFailure())
            return i;
    }
    EXPECT_TRUE(scratch.db->Check().IsSound()) << "seed " << seed;
    return queries;
}

TEST(DifferentialTest, TwentyThousandRandomStatementsAnswerAsOnSqlitesOwnTables)
{
    const char* wanted = std::getenv("JET_SQL_QUERIES"); // more, for a long run
    const int total = wanted ? std::atoi(wanted) : 21000;
    const char* first = std::getenv("JET_SQL_SEED");
    unsigned seed = first ? static_cast<unsigned>(std::atoi(first)) : 1;
    int done = 0;
    while (done < total && !HasFailure())
        done += RunOne(seed++, 100);
    EXPECT_GE(done, total);
}

} // namespace
} // namespace jet
