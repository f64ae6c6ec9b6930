// The page layer of the engine: opening and closing whatever the size of the
// file, reading pages, and transactions; beside plain file operations and SQLite.
//
//     build/release/bench/jet_storage_bench

#include "MinimalDatabase.h"
#include "TemporaryFolder.h"
#include "jet/storage/Pager.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <fstream>
#include <random>
#include <sqlite3.h>
#include <string>

namespace {

using jet::FileSystem;
using jet::Flush;
using jet::PageNumber;
using jet::Pager;

constexpr std::size_t kPage = 4096;

/// A database of `megabytes`, every page with something in it.
std::filesystem::path MakeFile(const TemporaryFolder& folder, std::int64_t megabytes)
{
    const auto path = folder / ("boezem" + std::to_string(megabytes) + ".mdb");
    if (std::filesystem::exists(path))
        return path;
    std::ofstream file(path, std::ios::binary);
    auto start = jet_testing::MinimalDatabase(2);
    file.write(reinterpret_cast<const char*>(start.data()),
               static_cast<std::streamsize>(start.size()));
    std::string page(kPage, 'x');
    for (std::int64_t n = 2; n < megabytes * 256; ++n)
        file.write(page.data(), static_cast<std::streamsize>(page.size()));
    return path;
}

TemporaryFolder& Folder()
{
    static TemporaryFolder folder;
    return folder;
}

/// Memory of this process that is in use, in MB.
double ResidentMegabytes()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == "VmRSS:") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes / 1024;
        }
    }
    return 0;
}

void OpenAndClose(benchmark::State& state)
{
    const auto path = MakeFile(Folder(), state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(Pager::Open(FileSystem::System(), path, {}));
    state.SetLabel(std::to_string(state.range(0)) + " MB");
}
BENCHMARK(OpenAndClose)->Arg(1)->Arg(50)->Arg(500)->Unit(benchmark::kMicrosecond);

void ReadWholeFile(benchmark::State& state)
{
    const auto path = MakeFile(Folder(), state.range(0));
    const double before = ResidentMegabytes();
    std::size_t cached = 0;
    double most = 0;
    for (auto _ : state) {
        const auto pager = Pager::Open(FileSystem::System(), path, {});
        std::uint64_t sum = 0;
        for (PageNumber page = 0; page < pager->PageCount(); ++page)
            sum += std::to_integer<std::uint64_t>(pager->Read(page).Data()[100]);
        benchmark::DoNotOptimize(sum);
        cached = pager->CachedBytes();
        most = std::max(most, ResidentMegabytes() - before);
    }
    state.counters["cacheMB"] = static_cast<double>(cached) / 1048576.0;
    state.counters["processGrewMB"] = most;
    state.SetBytesProcessed(state.iterations() * state.range(0) * 1048576);
}
BENCHMARK(ReadWholeFile)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);

void ReadWholeFilePlainly(benchmark::State& state)
{
    const auto path = MakeFile(Folder(), state.range(0));
    for (auto _ : state) {
        const auto file =
            FileSystem::System().Open(path, FileSystem::Mode::ReadOnly, jet::Sharing::Shared);
        std::vector<std::byte> page(kPage);
        std::uint64_t sum = 0;
        for (std::int64_t n = 0; n < state.range(0) * 256; ++n) {
            file->ReadAt(static_cast<std::uint64_t>(n) * kPage, page);
            sum += std::to_integer<std::uint64_t>(page[100]);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * 1048576);
}
BENCHMARK(ReadWholeFilePlainly)->Arg(500)->Unit(benchmark::kMillisecond);

void ReadCachedPage(benchmark::State& state)
{
    const auto pager = Pager::Open(FileSystem::System(), MakeFile(Folder(), 50), {});
    std::mt19937 random(1);
    std::vector<PageNumber> pages(4096);
    for (PageNumber& page : pages)
        page = static_cast<PageNumber>(random() % pager->PageCount());
    std::size_t i = 0;
    std::uint64_t sum = 0;
    for (auto _ : state)
        sum += std::to_integer<std::uint64_t>(pager->Read(pages[i++ % 4096]).Data()[100]);
    benchmark::DoNotOptimize(sum);
}
BENCHMARK(ReadCachedPage);

/// One transaction that changes many pages at random, flushed.
void ChangeManyPages(benchmark::State& state)
{
    const auto pager = Pager::Open(FileSystem::System(), MakeFile(Folder(), 500), {});
    std::mt19937 random(1);
    for (auto _ : state) {
        pager->Begin();
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            const auto edit =
                pager->Write(static_cast<PageNumber>(2 + random() % (pager->PageCount() - 2)));
            edit.Data()[random() % kPage] = std::byte{'y'};
        }
        pager->Commit(Flush::Yes);
    }
    state.counters["cacheMB"] = static_cast<double>(pager->CachedBytes()) / 1048576.0;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ChangeManyPages)->Arg(1000)->Arg(50000)->Unit(benchmark::kMillisecond);

/// A nested level around each few changes: what an inner transaction costs.
void ChangePagesInInnerLevels(benchmark::State& state)
{
    const auto pager = Pager::Open(FileSystem::System(), MakeFile(Folder(), 50), {});
    std::mt19937 random(1);
    pager->Begin();
    for (auto _ : state) {
        pager->Begin();
        for (int i = 0; i < 5; ++i)
            pager->Write(static_cast<PageNumber>(2 + random() % 1000)).Data()[7] = std::byte{'z'};
        pager->Commit(Flush::No);
    }
    pager->Rollback();
}
BENCHMARK(ChangePagesInInnerLevels);

/// Small transactions one after the other, as single statements make them.
void CommitSmallTransaction(benchmark::State& state)
{
    const auto pager = Pager::Open(FileSystem::System(), MakeFile(Folder(), 50), {});
    const Flush flush = state.range(0) != 0 ? Flush::Yes : Flush::No;
    PageNumber page = 2;
    for (auto _ : state) {
        pager->Begin();
        for (int i = 0; i < 3; ++i)
            pager->Write(2 + page++ % 5000).Data()[8] = std::byte{'q'};
        pager->Commit(flush);
    }
    state.SetLabel(flush == Flush::Yes ? "flushed" : "not flushed");
}
BENCHMARK(CommitSmallTransaction)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond)->UseRealTime();

void CommitSmallTransactionInSqlite(benchmark::State& state)
{
    const auto path = Folder() / "peer.db";
    std::filesystem::remove(path);
    sqlite3* db = nullptr;
    sqlite3_open(path.string().c_str(), &db);
    sqlite3_exec(db,
                 "PRAGMA journal_mode=PERSIST; PRAGMA synchronous=FULL;"
                 "CREATE TABLE t(a INTEGER PRIMARY KEY, b TEXT);"
                 "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<15000)"
                 "INSERT INTO t SELECT i, hex(zeroblob(600)) FROM n;",
                 nullptr, nullptr, nullptr);
    int row = 1;
    for (auto _ : state) {
        const std::string sql = "BEGIN; UPDATE t SET b=hex(randomblob(600)) WHERE a IN (" +
                                std::to_string(row) + "," + std::to_string(row + 3) + "," +
                                std::to_string(row + 6) + "); COMMIT;";
        sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
        row = (row + 9) % 14000 + 1;
    }
    sqlite3_close(db);
}
BENCHMARK(CommitSmallTransactionInSqlite)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
