// The engine through its face, each piece of work beside a peer that does the
// same in the same run: SQLite for recordsets, inserts and look-ups, mdb-export
// (where it is installed) for a table written out as CSV. Prints the ratios last.

#include "RowPrinter.h"
#include "jet/dao/Workspace.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using jet::ColumnType;
using jet::Value;

constexpr int kRows = 1'000'000;
constexpr int kInserted = 100'000;
constexpr int kLookUps = 100'000;

/// Seconds of each piece of work, the best of its repetitions.
std::map<std::string, double>& Results()
{
    static std::map<std::string, double> results;
    return results;
}

/// Runs `work` under the clock of the benchmark and keeps its time under `name`.
template <typename Work>
void Measure(benchmark::State& state, const std::string& name, Work&& work)
{
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.SetIterationTime(seconds);
        const auto [at, isNew] = Results().emplace(name, seconds);
        if (!isNew)
            at->second = std::min(at->second, seconds);
    }
}

struct Sample {
    int number;
    int group;
    double level;
    std::string name;
};

const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> samples = [] {
        std::mt19937 random(1);
        std::vector<Sample> made;
        for (int number = 1; number <= kRows; ++number)
            made.push_back({number, static_cast<int>(random() % 1000), (random() % 100000) / 1000.0,
                            "Locatie " + std::to_string(random() % 1000000)});
        return made;
    }();
    return samples;
}

class Folder {
public:
    Folder() : m_path(fs::temp_directory_path() / "jet_dao_bench")
    {
        fs::remove_all(m_path);
        fs::create_directory(m_path);
    }
    ~Folder() { fs::remove_all(m_path); }
    fs::path operator/(const char* name) const { return m_path / name; }

private:
    fs::path m_path;
};

Folder& Scratch()
{
    static Folder folder;
    return folder;
}

void MakeTable(jet::Database& database, bool indexed)
{
    jet::TableDef table{.name = "Rij",
                        .fields = {{.name = "Nummer", .type = ColumnType::Long},
                                   {.name = "Groep", .type = ColumnType::Long},
                                   {.name = "Peil", .type = ColumnType::Double},
                                   {.name = "Naam", .type = ColumnType::Text, .size = 50}}};
    if (indexed)
        table.indexes = {{.name = "PrimaryKey", .fields = {{"Nummer"}}, .primary = true},
                         {.name = "Naam", .fields = {{"Naam"}}}};
    database.CreateTable(table);
}

void Fill(jet::Database& database, int rows)
{
    const auto recordset = database.OpenRecordset("Rij");
    for (int i = 0; i < rows; ++i) {
        const Sample& sample = Samples()[static_cast<std::size_t>(i)];
        recordset->AddNew();
        recordset->Set(0, sample.number);
        recordset->Set(1, sample.group);
        recordset->Set(2, sample.level);
        recordset->Set(3, sample.name);
        recordset->Update();
    }
}

/// A file of a million rows, made once.
const fs::path& BigFile()
{
    static const fs::path path = [] {
        fs::path made = Scratch() / "groot.mdb";
        jet::Workspace workspace;
        const auto database = workspace.CreateDatabase(made);
        workspace.BeginTrans();
        MakeTable(*database, false);
        Fill(*database, kRows);
        workspace.CommitTrans();
        return made;
    }();
    return path;
}

class Sqlite {
public:
    explicit Sqlite(const fs::path& path)
    {
        if (sqlite3_open(path.string().c_str(), &m_handle) != SQLITE_OK)
            std::abort();
    }
    ~Sqlite() { sqlite3_close(m_handle); }
    Sqlite(const Sqlite&) = delete;
    Sqlite& operator=(const Sqlite&) = delete;

    void Run(const char* sql)
    {
        if (sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
            std::fprintf(stderr, "%s: %s\n", sql, sqlite3_errmsg(m_handle));
            std::abort();
        }
    }
    sqlite3_stmt* Prepare(const char* sql)
    {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(m_handle, sql, -1, &statement, nullptr) != SQLITE_OK)
            std::abort();
        return statement;
    }

    void Fill(int rows)
    {
        sqlite3_stmt* insert = Prepare("INSERT INTO Rij VALUES (?, ?, ?, ?)");
        for (int i = 0; i < rows; ++i) {
            const Sample& sample = Samples()[static_cast<std::size_t>(i)];
            sqlite3_bind_int(insert, 1, sample.number);
            sqlite3_bind_int(insert, 2, sample.group);
            sqlite3_bind_double(insert, 3, sample.level);
            sqlite3_bind_text(insert, 4, sample.name.c_str(), static_cast<int>(sample.name.size()),
                              SQLITE_STATIC);
            if (sqlite3_step(insert) != SQLITE_DONE)
                std::abort();
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
    }

private:
    sqlite3* m_handle = nullptr;
};

const fs::path& BigSqlite()
{
    static const fs::path path = [] {
        fs::path made = Scratch() / "groot.sqlite";
        Sqlite database(made);
        database.Run("CREATE TABLE Rij (Nummer INTEGER, Groep INTEGER, Peil REAL, Naam TEXT)");
        database.Run("BEGIN");
        database.Fill(kRows);
        database.Run("COMMIT");
        return made;
    }();
    return path;
}

// A walk over all rows and fields ------------------------------------------------

void RecordsetWalk(benchmark::State& state)
{
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(BigFile(), {.readOnly = true});
    Measure(state, "walk", [&] {
        const auto rows = database->OpenRecordset("Rij");
        double sum = 0;
        std::size_t letters = 0;
        for (; !rows->EndOfFile(); rows->MoveNext()) {
            sum += rows->Get(0).AsInt() + rows->Get(1).AsInt() + rows->Get(2).AsDouble();
            letters += rows->Get(3).AsText().size();
        }
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(letters);
    });
}
BENCHMARK(RecordsetWalk)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void SqliteWalk(benchmark::State& state)
{
    Sqlite database(BigSqlite());
    Measure(state, "walk peer", [&] {
        sqlite3_stmt* rows = database.Prepare("SELECT * FROM Rij");
        double sum = 0;
        std::size_t letters = 0;
        while (sqlite3_step(rows) == SQLITE_ROW) {
            sum += sqlite3_column_int(rows, 0) + sqlite3_column_int(rows, 1) +
                   sqlite3_column_double(rows, 2);
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(rows, 3));
            letters += std::string(text).size();
        }
        sqlite3_finalize(rows);
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(letters);
    });
}
BENCHMARK(SqliteWalk)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

// A table written out as CSV -----------------------------------------------------

void CsvExport(benchmark::State& state)
{
    BigFile();
    Measure(state, "csv", [&] {
        jet::Workspace workspace;
        const auto database = workspace.OpenDatabase(BigFile(), {.readOnly = true});
        std::ofstream out(Scratch() / "onze.csv", std::ios::binary);
        jetsql::PrintRows(*database->OpenRecordset("Rij"), jetsql::RowFormat::Csv, out);
    });
}
BENCHMARK(CsvExport)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void MdbExport(benchmark::State& state)
{
    if (std::system("command -v mdb-export > /dev/null") != 0) {
        state.SkipWithError("mdb-export is not installed");
        return;
    }
    const std::string command = "mdb-export '" + BigFile().string() + "' Rij > '" +
                                (Scratch() / "hunne.csv").string() + '\'';
    Measure(state, "csv peer", [&] {
        if (std::system(command.c_str()) != 0)
            std::abort();
    });
}
BENCHMARK(MdbExport)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

// Inserts with a primary key and a text index, one transaction, flushed -----------

void RecordsetInsert(benchmark::State& state)
{
    const fs::path path = Scratch() / "invoer.mdb";
    Samples();
    Measure(state, "insert", [&] {
        fs::remove(path);
        jet::Workspace workspace;
        const auto database = workspace.CreateDatabase(path);
        workspace.BeginTrans();
        MakeTable(*database, true);
        Fill(*database, kInserted);
        workspace.CommitTrans(jet::Flush::Yes);
    });
}
BENCHMARK(RecordsetInsert)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void SqliteInsert(benchmark::State& state)
{
    const fs::path path = Scratch() / "invoer.sqlite";
    Measure(state, "insert peer", [&] {
        fs::remove(path);
        Sqlite database(path);
        database.Run("PRAGMA synchronous=FULL");
        database.Run("BEGIN");
        database.Run("CREATE TABLE Rij (Nummer INTEGER, Groep INTEGER, Peil REAL,"
                     " Naam TEXT COLLATE NOCASE)");
        database.Run("CREATE UNIQUE INDEX Sleutel ON Rij (Nummer)");
        database.Run("CREATE INDEX OpNaam ON Rij (Naam)");
        database.Fill(kInserted);
        database.Run("COMMIT");
    });
}
BENCHMARK(SqliteInsert)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

// Look-ups by key ----------------------------------------------------------------

void RecordsetSeek(benchmark::State& state)
{
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(Scratch() / "invoer.mdb", {.readOnly = true});
    const auto rows = database->OpenRecordset("Rij");
    rows->SetIndex("PrimaryKey");
    Measure(state, "seek", [&] {
        std::mt19937 random(5);
        double sum = 0;
        for (int i = 0; i < kLookUps; ++i) {
            rows->Seek("=", {Value(static_cast<std::int32_t>(1 + random() % kInserted))});
            sum += rows->Get(2).AsDouble();
        }
        benchmark::DoNotOptimize(sum);
    });
}
BENCHMARK(RecordsetSeek)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void SqliteSeek(benchmark::State& state)
{
    Sqlite database(Scratch() / "invoer.sqlite");
    Measure(state, "seek peer", [&] {
        sqlite3_stmt* find = database.Prepare("SELECT Peil FROM Rij WHERE Nummer = ?");
        database.Run("BEGIN"); // or it would take a lock for each look-up; we hold ours
        std::mt19937 random(5);
        double sum = 0;
        for (int i = 0; i < kLookUps; ++i) {
            sqlite3_bind_int(find, 1, static_cast<int>(1 + random() % kInserted));
            if (sqlite3_step(find) != SQLITE_ROW)
                std::abort();
            sum += sqlite3_column_double(find, 0);
            sqlite3_reset(find);
        }
        sqlite3_finalize(find);
        database.Run("COMMIT");
        benchmark::DoNotOptimize(sum);
    });
}
BENCHMARK(SqliteSeek)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

// Opening and closing, whatever the size -----------------------------------------

void OpenAndClose(benchmark::State& state, const char* name, const fs::path& path)
{
    Measure(state, name, [&] {
        for (int i = 0; i < 50; ++i) {
            jet::Workspace workspace;
            benchmark::DoNotOptimize(workspace.OpenDatabase(path)->HasTable("Rij"));
        }
    });
}

/// One table with memos of 60,000 characters: about 500 MB.
fs::path HugeFile()
{
    const fs::path path = Scratch() / "reus.mdb";
    if (fs::exists(path))
        return path;
    jet::Workspace workspace;
    const auto database = workspace.CreateDatabase(path);
    database->CreateTable({.name = "Rij", .fields = {{.name = "M", .type = ColumnType::Memo}}});
    const auto rows = database->OpenRecordset("Rij");
    const std::string text(60000, 'm'); // 120,000 bytes: long memos are not compressed
    for (int part = 0; part < 40; ++part) {
        workspace.BeginTrans();
        for (int i = 0; i < 105; ++i) {
            rows->AddNew();
            rows->Set(0, text);
            rows->Update();
        }
        workspace.CommitTrans();
    }
    return path;
}

void OpenHuge(benchmark::State& state)
{
    const fs::path path = HugeFile();
    state.counters["MB"] = static_cast<double>(fs::file_size(path)) / 1e6;
    OpenAndClose(state, "open", path);
}
BENCHMARK(OpenHuge)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void OpenSmall(benchmark::State& state)
{
    const fs::path path = Scratch() / "klein.mdb";
    if (!fs::exists(path)) {
        jet::Workspace workspace;
        const auto database = workspace.CreateDatabase(path);
        database->CreateTable({.name = "Rij", .fields = {{.name = "M", .type = ColumnType::Memo}}});
    }
    OpenAndClose(state, "open peer", path);
}
BENCHMARK(OpenSmall)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void PrintRatio(const char* name, const char* what, const char* goal)
{
    const auto ours = Results().find(name);
    const auto peer = Results().find(std::string(name) + " peer");
    if (ours == Results().end() || peer == Results().end())
        return;
    std::printf("%-52s %7.1f ms  peer %7.1f ms  ratio %.2f  (goal: %s)\n", what, ours->second * 1e3,
                peer->second * 1e3, ours->second / peer->second, goal);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::printf("\n");
    PrintRatio("csv", "1,000,000 rows to CSV, against mdb-export", "at most 0.20");
    PrintRatio("walk", "the same rows through a recordset, against SQLite", "at most 3");
    PrintRatio("insert", "100,000 inserts, two indexes, against SQLite", "at most 4");
    PrintRatio("seek", "100,000 look-ups by key, against SQLite", "at most 10");
    PrintRatio("open", "50 times open and close 500 MB, against 70 kB", "about 1");
}
