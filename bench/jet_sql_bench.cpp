// Statements on the engine beside the same statements on SQLite's own tables,
// with the same rows, in the same run. The pairs bear one name: Jet_X, Sqlite_X.
#include "jet/dao/Workspace.h"
#include "jet/index/TextKey.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <string>

namespace {

constexpr int kLocaties = 1000;

std::string T(double number)
{
    return jet::Value(number).AsText();
}

/// The same tables twice.
class Data {
public:
    Data()
    {
        std::filesystem::remove(m_path);
        m_db = m_workspace.CreateDatabase(m_path);
        sqlite3* handle = nullptr;
        sqlite3_open(":memory:", &handle);
        m_lite.reset(handle);
        sqlite3_create_collation_v2(
            handle, "JET", SQLITE_UTF8, nullptr,
            [](void*, int an, const void* a, int bn, const void* b) {
                return jet::CompareText(
                    {static_cast<const char*>(a), static_cast<std::size_t>(an)},
                    {static_cast<const char*>(b), static_cast<std::size_t>(bn)});
            },
            nullptr);
        Both("CREATE TABLE Locatie (Locatie_ID INTEGER PRIMARY KEY, x DOUBLE, y DOUBLE, "
             "omschrijving TEXT(50)@, "
             "kwaliteitskenmerk SHORT, streefpeil DOUBLE, dijknormaal DOUBLE)");
        Both("CREATE TABLE Boezempeilstatistiek (Locatie_ID LONG, Herhalingstijd DOUBLE, "
             "Boezempeil DOUBLE)");
        Both("CREATE TABLE Scheefstand (Locatie_ID LONG, Richting_ID LONG, Windsnelheid DOUBLE, "
             "Scheefstand DOUBLE)");
        Both("CREATE TABLE Geometrie (Locatie_ID LONG, Richting_ID LONG, B DOUBLE, FE DOUBLE)");
        Both("CREATE TABLE Locatie_Profiel (Locatie_ID LONG, Profiel_ID LONG)");
        Both("CREATE TABLE Resultaat (Berekening_ID LONG, Locatie_ID LONG, Herhalingstijd DOUBLE, "
             "HBN DOUBLE, "
             "PEIL DOUBLE)");
        Both("CREATE TABLE A (k LONG, v LONG)");
        Both("CREATE TABLE B (k LONG, v LONG)");
        Both("CREATE INDEX iG ON Geometrie (Locatie_ID)");
        Both("CREATE INDEX iSch ON Scheefstand (Locatie_ID)");
        Both("CREATE INDEX iB ON Boezempeilstatistiek (Locatie_ID)");
        Both("CREATE INDEX iL ON Locatie_Profiel (Locatie_ID)");
        m_workspace.BeginTrans();
        Lite("BEGIN");
        Fill();
        m_workspace.CommitTrans();
        Lite("COMMIT");
    }
    ~Data()
    {
        m_db->Close();
        std::filesystem::remove(m_path);
    }

    jet::Database& Jet() { return *m_db; }
    sqlite3* Sqlite() { return m_lite.get(); }

private:
    void Lite(const std::string& sql)
    {
        sqlite3_exec(m_lite.get(), sql.c_str(), nullptr, nullptr, nullptr);
    }
    void Both(std::string sql)
    {
        std::string lite = sql;
        if (const auto mark = sql.find('@'); mark != sql.npos) {
            sql.erase(mark, 1);
            lite.replace(mark, 1, " COLLATE JET");
        }
        m_db->Execute(sql);
        Lite(lite);
    }
    void Add(const std::string& table, const std::string& values)
    {
        m_db->Execute("INSERT INTO " + table + " VALUES (" + values + ")");
        Lite("INSERT INTO " + table + " VALUES (" + values + ")");
    }
    void Fill()
    {
        const char* periods[] = {"10", "30", "100", "300", "1000"};
        for (int i = 1; i <= kLocaties; ++i) {
            const std::string id = std::to_string(i);
            Add("Locatie", id + "," + T(i * 10.5) + "," + T(i * 7.25) + ",'Dijkvak " +
                               std::to_string(i * 7919 % 1000) + "',1,0.1,15");
            for (const char* period : periods)
                Add("Boezempeilstatistiek", id + "," + period + ",0.5");
            for (int r = 1; r <= 16; ++r) {
                Add("Geometrie", id + "," + std::to_string(r) + ",-2,100");
                for (int v = 0; v < 5; ++v)
                    Add("Scheefstand", id + "," + std::to_string(r) + "," + std::to_string(v * 10) +
                                           "," + T(0.01 * v * r + i));
            }
            Add("Locatie_Profiel", id + ",1");
            for (int b = 1; b <= 12; ++b)
                Add("Resultaat", std::to_string(b) + "," + id + "," + periods[b % 5] + "," +
                                     T(b + 0.01 * i) + ",1");
        }
        for (int i = 0; i < 100000; ++i) {
            const std::string key = std::to_string(static_cast<int>(i * 7919LL % 100000));
            Add("A", std::to_string(i) + ",1");
            Add("B", key + ",2");
        }
    }

    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::filesystem::path m_path = std::filesystem::temp_directory_path() / "jet_sql_bench.mdb";
    jet::Workspace m_workspace;
    std::unique_ptr<jet::Database> m_db;
    std::unique_ptr<sqlite3, Close> m_lite;
};

Data& Both()
{
    static Data data;
    return data;
}

std::int64_t RunJet(const std::string& sql)
{
    const auto rows = Both().Jet().OpenRecordset(sql, jet::RecordsetType::Snapshot,
                                                 {.readOnly = true, .forwardOnly = true});
    const int fields = static_cast<int>(rows->Fields().size());
    std::int64_t count = 0;
    for (; !rows->EndOfFile(); rows->MoveNext(), ++count) {
        for (int i = 0; i < fields; ++i)
            benchmark::DoNotOptimize(rows->Get(i));
    }
    return count;
}

std::int64_t RunSqlite(const std::string& sql)
{
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(Both().Sqlite(), sql.c_str(), -1, &statement, nullptr);
    std::int64_t count = 0;
    for (; sqlite3_step(statement) == SQLITE_ROW; ++count) {
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
            if (sqlite3_column_type(statement, i) == SQLITE_TEXT)
                benchmark::DoNotOptimize(sqlite3_column_text(statement, i));
            else
                benchmark::DoNotOptimize(sqlite3_column_double(statement, i));
        }
    }
    sqlite3_finalize(statement);
    return count;
}

using Run = std::int64_t (*)(const std::string&);

void QualityMark(benchmark::State& state, Run run)
{
    for (auto _ : state) {
        for (int i = 1; i <= kLocaties; ++i) {
            const std::string id = std::to_string(i);
            run("SELECT FE FROM Geometrie WHERE FE=-999  AND Locatie_ID =" + id + ";");
            run("SELECT dijknormaal FROM Locatie WHERE dijknormaal=-999  AND Locatie_ID =" + id +
                ";");
            run("SELECT Boezempeil FROM Boezempeilstatistiek WHERE Boezempeil <> -999 AND "
                "Herhalingstijd In "
                "(10,30,100,300,1000) AND Locatie_ID =" +
                id + ";");
            run("SELECT * FROM Scheefstand WHERE Scheefstand=-999 AND Locatie_ID =" + id + ";");
            run("SELECT Profiel_ID FROM Locatie_Profiel WHERE Locatie_ID=" + id + ";");
        }
    }
}

void Statement(benchmark::State& state, Run run, const std::string& sql)
{
    std::int64_t rows = 0;
    for (auto _ : state)
        rows = run(sql);
    state.counters["rows"] = static_cast<double>(rows);
}

// 1,000 searches on an indexed field, each with a text of its own.
void IndexedField(benchmark::State& state, Run run)
{
    for (auto _ : state) {
        for (int i = 1; i <= 1000; ++i)
            run("SELECT B, FE FROM Geometrie WHERE Locatie_ID=" + std::to_string(i));
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

// A statement that was never seen before, up to its first row.
void Prepare(benchmark::State& state)
{
    int n = 0;
    for (auto _ : state) {
        const std::string alias = "w" + std::to_string(++n);
        RunJet(
            "SELECT Locatie.x, Locatie.y, Resultaat.HBN-Resultaat.PEIL AS " + alias +
            " FROM Resultaat INNER JOIN Locatie ON Resultaat.Locatie_ID = Locatie.Locatie_ID WHERE "
            "(Resultaat.Berekening_ID IN (1,2)) AND Resultaat.Herhalingstijd=77 AND "
            "Resultaat.HBN<>-" +
            std::to_string(n) + " AND Locatie.Locatie_ID=-1 ORDER BY Locatie.x" +
            (n % 2 == 0 ? " DESC" : "") + ", " + std::to_string(n % 3 + 1));
    }
}

const std::string kJoin =
    "SELECT Locatie.omschrijving, Resultaat.Herhalingstijd, Resultaat.HBN FROM Resultaat INNER "
    "JOIN "
    "Locatie ON Resultaat.Locatie_ID = Locatie.Locatie_ID ORDER BY Locatie.omschrijving, "
    "Resultaat.Herhalingstijd";
const std::string kHash = "SELECT Count(*), Sum(A.v+B.v) FROM A INNER JOIN B ON A.k=B.k";
const std::string kGroup =
    "SELECT Locatie_ID, Richting_ID, Max(Scheefstand) AS m FROM Scheefstand GROUP BY Locatie_ID, "
    "Richting_ID";

BENCHMARK_CAPTURE(QualityMark, Jet, RunJet)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(QualityMark, Sqlite, RunSqlite)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(IndexedField, Jet, RunJet)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(IndexedField, Sqlite, RunSqlite)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Statement, Jet_SortedJoin, RunJet, kJoin)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Statement, Sqlite_SortedJoin, RunSqlite, kJoin)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Statement, Jet_UnindexedJoin, RunJet, kHash)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Statement, Sqlite_UnindexedJoin, RunSqlite, kHash)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Statement, Jet_GroupMaximum, RunJet, kGroup)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Statement, Sqlite_GroupMaximum, RunSqlite, kGroup)->Unit(benchmark::kMillisecond);
BENCHMARK(Prepare)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    Both(); // is filled before anything is measured
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
