// Rows in and out of a Jet table, below catalog and SQL, each piece of work
// beside a peer that does the same: SQLite for rows and look-ups, mdb-export
// (where it is installed) for a table written out as text.

#include "jet/table/TableInternals.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace jet;

namespace {

constexpr int kRows = 1'000'000;
constexpr int kInserted = 100'000;

struct Sample {
    std::int32_t number;
    std::int32_t group;
    double level;
    std::string name;
};

/// The rows to insert, made beforehand.
const Sample& SampleRow(int i)
{
    static const std::vector<Sample> samples = [] {
        std::mt19937 random(1);
        std::vector<Sample> made;
        for (int number = 1; number <= kRows; ++number)
            made.push_back({number, static_cast<std::int32_t>(random() % 1000),
                            (random() % 100000) / 1000.0,
                            "Locatie " + std::to_string(random() % 1000000)});
        return made;
    }();
    return samples[static_cast<std::size_t>(i)];
}

class Folder {
public:
    Folder() : m_path(std::filesystem::temp_directory_path() / "jet_table_bench")
    {
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directory(m_path);
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    std::filesystem::path operator/(const char* name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

Folder& TheFolder()
{
    static Folder folder;
    return folder;
}

/// A database with one table: Id (primary key), Groep, Peil, Naam (indexed).
class JetSide {
public:
    explicit JetSide(const char* name)
    {
        const auto path = TheFolder() / name;
        std::filesystem::copy_file(std::filesystem::path(TEST_DATA_FOLDER) / "jet" / "samples" /
                                       "adox_jet4.mdb",
                                   path, std::filesystem::copy_options::overwrite_existing);
        std::filesystem::permissions(path, std::filesystem::perms::owner_write,
                                     std::filesystem::perm_options::add);
        m_path = path;
        m_pager = Pager::Open(FileSystem::System(), path, {});
        m_pages = std::make_unique<PageAllocator>(*m_pager);
        MakeTable();
    }

    void Insert(int count)
    {
        m_pager->Begin();
        Row row(4);
        for (int i = 0; i < count; ++i) {
            const Sample& sample = SampleRow(i);
            row[0] = sample.number;
            row[1] = sample.group;
            row[2] = sample.level;
            row[3] = sample.name;
            m_table->Insert(row);
        }
        m_pager->Commit(Flush::Yes);
    }

    Table& Rows() { return *m_table; }
    const std::filesystem::path& Path() const { return m_path; }

private:
    void MakeTable()
    {
        ChangeScope scope(*m_pager);
        TableDefinition definition;
        definition.page = m_pages->Allocate().Number();
        definition.ownedMap = m_pages->AllocateMap();
        definition.freeMap = m_pages->AllocateMap();
        const auto add = [&](const char* name, ColumnType type, int length) {
            Column column;
            column.name = name;
            column.type = type;
            column.number = static_cast<std::uint16_t>(definition.columns.size());
            column.lengthBytes = static_cast<std::uint16_t>(length);
            definition.columns.push_back(column);
        };
        add("Id", ColumnType::Long, 4);
        add("Groep", ColumnType::Long, 4);
        add("Peil", ColumnType::Double, 8);
        add("Naam", ColumnType::Text, 100);
        definition.columns[1].position = 4;
        definition.columns[2].position = 8;
        definition.columns[3].fixed = false;
        definition.maxColumns = 4;
        definition.variableColumns = 1;
        for (const int column : {0, 3}) {
            PhysicalIndex index;
            index.columns = {{column, true}};
            index.unique = index.required = column == 0;
            index.ownedMap = m_pages->AllocateMap();
            const PageEdit root = m_pages->Allocate();
            FormatLeaf(root, definition.page);
            index.root = root.Number();
            UsageMap(*m_pager, index.ownedMap).Add(index.root);
            LogicalIndex logical;
            logical.physical = static_cast<int>(definition.physicalIndexes.size());
            logical.number = static_cast<std::uint32_t>(logical.physical);
            logical.name = column == 0 ? "PrimaryKey" : "Naam";
            logical.kind = column == 0 ? LogicalIndex::Kind::Primary : LogicalIndex::Kind::Plain;
            definition.physicalIndexes.push_back(index);
            definition.logicalIndexes.push_back(logical);
        }
        WriteTableDefinition(*m_pager, *m_pages, definition);

        // A row in MSysObjects, so that other readers find the table.
        Table objects(*m_pager, *m_pages, "MSysObjects", ReadTableDefinition(*m_pager, 2));
        Row row(objects.Definition().columns.size());
        const auto set = [&](const char* name, Value value) {
            row[static_cast<std::size_t>(objects.Definition().FindColumn(name))] = std::move(value);
        };
        set("Id", static_cast<std::int32_t>(definition.page));
        set("ParentId", std::int32_t{0x0F000001});
        set("Name", "Rijen");
        set("Type", std::int16_t{1});
        set("Flags", std::int32_t{0});
        objects.Insert(row);
        scope.Done();
        m_table = std::make_unique<Table>(*m_pager, *m_pages, "Rijen", definition);
    }

    std::filesystem::path m_path;
    std::unique_ptr<Pager> m_pager;
    std::unique_ptr<PageAllocator> m_pages;
    std::unique_ptr<Table> m_table;
};

class SqliteSide {
public:
    explicit SqliteSide(const char* name)
    {
        const std::string path = (TheFolder() / name).string();
        std::remove(path.c_str());
        sqlite3_open(path.c_str(), &m_database);
        Run("CREATE TABLE Rijen (Id INTEGER NOT NULL, Groep INTEGER, Peil REAL, Naam TEXT);"
            "CREATE UNIQUE INDEX PrimaryKey ON Rijen (Id);"
            "CREATE INDEX Naam ON Rijen (Naam COLLATE NOCASE)");
    }
    ~SqliteSide() { sqlite3_close(m_database); }
    SqliteSide(const SqliteSide&) = delete;
    SqliteSide& operator=(const SqliteSide&) = delete;

    void Run(const char* sql) { sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr); }

    sqlite3_stmt* Prepare(const char* sql)
    {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(m_database, sql, -1, &statement, nullptr);
        return statement;
    }

    void Insert(int count)
    {
        Run("BEGIN");
        sqlite3_stmt* insert = Prepare("INSERT INTO Rijen VALUES (?, ?, ?, ?)");
        for (int i = 0; i < count; ++i) {
            const Sample& sample = SampleRow(i);
            sqlite3_bind_int(insert, 1, sample.number);
            sqlite3_bind_int(insert, 2, sample.group);
            sqlite3_bind_double(insert, 3, sample.level);
            sqlite3_bind_text(insert, 4, sample.name.data(), static_cast<int>(sample.name.size()),
                              SQLITE_TRANSIENT);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        Run("COMMIT");
    }

private:
    sqlite3* m_database = nullptr;
};

JetSide& MillionJet()
{
    static JetSide* side = [] {
        static JetSide made("million.mdb");
        made.Insert(kRows);
        return &made;
    }();
    return *side;
}

SqliteSide& MillionSqlite()
{
    static SqliteSide* side = [] {
        static SqliteSide made("million.sqlite");
        made.Insert(kRows);
        return &made;
    }();
    return *side;
}

void ScanAllFieldsJet(benchmark::State& state)
{
    Table& table = MillionJet().Rows();
    for (auto _ : state) {
        double sum = 0;
        for (TableScan scan(table); scan.Next();) {
            for (int column = 0; column < 3; ++column)
                sum += scan.Get(column).AsDouble();
            sum += static_cast<double>(scan.Get(3).AsText().size());
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}

void ScanAllFieldsSqlite(benchmark::State& state)
{
    sqlite3_stmt* select = MillionSqlite().Prepare("SELECT Id, Groep, Peil, Naam FROM Rijen");
    for (auto _ : state) {
        double sum = 0;
        while (sqlite3_step(select) == SQLITE_ROW) {
            for (int column = 0; column < 3; ++column)
                sum += sqlite3_column_double(select, column);
            sum += static_cast<double>(
                std::string(reinterpret_cast<const char*>(sqlite3_column_text(select, 3))).size());
        }
        sqlite3_reset(select);
        benchmark::DoNotOptimize(sum);
    }
    sqlite3_finalize(select);
    state.SetItemsProcessed(state.iterations() * kRows);
}

void ScanToCsvJet(benchmark::State& state)
{
    Table& table = MillionJet().Rows();
    for (auto _ : state) {
        std::FILE* out = std::fopen((TheFolder() / "jet.csv").string().c_str(), "wb");
        std::string line;
        char number[64];
        for (TableScan scan(table); scan.Next();) {
            line.clear();
            for (int column = 0; column < 2; ++column) {
                const auto end = std::to_chars(number, number + sizeof number,
                                               std::get<std::int32_t>(scan.Get(column).Raw()));
                line.append(number, end.ptr).push_back(',');
            }
            const auto end = std::to_chars(number, number + sizeof number, scan.Get(2).AsDouble());
            line.append(number, end.ptr);
            line += ",\"";
            line += scan.Get(3).AsText();
            line += "\"\n";
            std::fwrite(line.data(), 1, line.size(), out);
        }
        std::fclose(out);
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}

void ScanToCsvMdbExport(benchmark::State& state)
{
    const std::string command = "mdb-export \"" + MillionJet().Path().string() + "\" Rijen > \"" +
                                (TheFolder() / "mdb.csv").string() + "\"";
    for (auto _ : state) {
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("mdb-export is not installed, or cannot open the file");
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}

void InsertJet(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto side = std::make_unique<JetSide>("insert.mdb");
        state.ResumeTiming();
        side->Insert(kInserted);
        state.PauseTiming();
        side.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kInserted);
}

void InsertSqlite(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto side = std::make_unique<SqliteSide>("insert.sqlite");
        state.ResumeTiming();
        side->Insert(kInserted);
        state.PauseTiming();
        side.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kInserted);
}

void LookUpJet(benchmark::State& state)
{
    Table& table = MillionJet().Rows();
    std::mt19937 random(7);
    RowReader reader(table);
    for (auto _ : state) {
        const auto key = static_cast<std::int32_t>(random() % kRows + 1);
        IndexScan scan(table, 0, IndexRange::Equal({key}));
        if (!scan.Next() || !reader.MoveTo(scan.Id()))
            state.SkipWithError("a row is missing");
        benchmark::DoNotOptimize(reader.Get(2).AsDouble());
    }
}

void LookUpSqlite(benchmark::State& state)
{
    sqlite3_stmt* select = MillionSqlite().Prepare("SELECT Peil FROM Rijen WHERE Id = ?");
    std::mt19937 random(7);
    for (auto _ : state) {
        sqlite3_bind_int(select, 1, static_cast<int>(random() % kRows + 1));
        if (sqlite3_step(select) != SQLITE_ROW)
            state.SkipWithError("a row is missing");
        benchmark::DoNotOptimize(sqlite3_column_double(select, 0));
        sqlite3_reset(select);
    }
    sqlite3_finalize(select);
}

BENCHMARK(ScanAllFieldsSqlite)->Unit(benchmark::kMillisecond);
BENCHMARK(ScanAllFieldsJet)->Unit(benchmark::kMillisecond);
BENCHMARK(ScanToCsvMdbExport)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ScanToCsvJet)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(InsertSqlite)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(InsertJet)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(LookUpSqlite);
BENCHMARK(LookUpJet);

} // namespace

BENCHMARK_MAIN();
