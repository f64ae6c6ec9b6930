// What a run of the core costs beside its calculation, in a database of a
// thousand locations with twelve results each. Budget: 50 ms for all of it.

#include "MaakDatabase.h"
#include "TemporaryFolder.h"
#include "jet/dao/Workspace.h"
#include "rekenhart/data/JetGegevensbron.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>

using namespace rekenhart;

namespace {

constexpr int kLocations = 1000;

/// The database, made once.
struct Large {
    TemporaryFolder folder;
    std::string path = (folder / "groot.mdb").string();
    int berekening = 0;
    std::vector<ResultaatRij> rows; ///< of the last location

    Large()
    {
        voorbeeld::MaakRandvoorwaarden(
            path, {.locaties = voorbeeld::VeelLocaties(kLocations), .herhalingstijden = 12});
        jet::Workspace workspace;
        const auto db = workspace.OpenDatabase(path);
        const auto results = db->OpenRecordset("Resultaat");
        berekening = results->Get("Berekening_ID").AsInt();
        for (const double years : PeriodsOfTheLastLocation(*results))
            rows.push_back({years, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1});
    }

    static Large& Get()
    {
        static Large large;
        return large;
    }

private:
    static std::vector<double> PeriodsOfTheLastLocation(jet::Recordset& results)
    {
        std::vector<double> periods;
        for (; !results.EndOfFile(); results.MoveNext())
            if (results.Get("Locatie_ID").AsInt() == kLocations)
                periods.push_back(results.Get("Herhalingstijd").AsDouble());
        return periods;
    }
};

void ReadAll(benchmark::State& state)
{
    const Large& large = Large::Get();
    for (auto _ : state) {
        const auto source = OpenJetGegevensbron(large.path, Toegang::Lezen);
        benchmark::DoNotOptimize(source->ReadLocatie(kLocations, ""));
        benchmark::DoNotOptimize(source->ReadProfiel(1, ""));
        benchmark::DoNotOptimize(source->ReadNormHerhalingstijd(3));
        benchmark::DoNotOptimize(source->ReadHerhalingstijden(large.berekening, kLocations));
        benchmark::DoNotOptimize(source->ReadStatistiek());
    }
}

void WriteTwelveRows(benchmark::State& state)
{
    const Large& large = Large::Get();
    for (auto _ : state)
        OpenJetGegevensbron(large.path, Toegang::Schrijven)
            ->WriteResultaten(large.berekening, kLocations, large.rows);
    state.counters["rows"] = static_cast<double>(large.rows.size());
}

/// The baseline: all bytes of the file, read once.
void ReadTheFilesBytes(benchmark::State& state)
{
    const Large& large = Large::Get();
    std::vector<char> bytes(std::filesystem::file_size(large.path));
    for (auto _ : state) {
        std::ifstream file(large.path, std::ios::binary);
        file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        benchmark::DoNotOptimize(bytes.data());
    }
    state.counters["MB"] = static_cast<double>(bytes.size()) / 1e6;
}

/// A whole process that only tells its version.
void StartProgram(benchmark::State& state)
{
    const std::string command = std::string(REKENPROGRAMMA) + " -VERSIE > /dev/null";
    for (auto _ : state)
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("the program does not start");
}

BENCHMARK(ReadAll)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteTwelveRows)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ReadTheFilesBytes)->Unit(benchmark::kMillisecond);
BENCHMARK(StartProgram)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
