// Fetches, layers and bed levels against their plain ways, in the same run.
#define PLAIN_FETCH_WITHOUT_CHECKS
#include "../tests/geometry/PlainFetch.h"
#include "../tests/geometry/RandomRings.h"
#include "../tests/qlmgis/GridFiles.h"
#include "geometry/Strijklengte.h"
#include "qlmgis/RasterCache.h"

#include "../tests/testing_tools/TemporaryFolder.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <benchmark/benchmark.h>

namespace {

const TemporaryFolder& Folder()
{
    static const TemporaryFolder folder;
    return folder;
}

// A basin of 100,000 shore points with an island of 400.
struct Basin {
    std::vector<TestPolygon> polygons;
    QString stem;
    std::vector<geometry::Punt> locations; // 1,000 on the water

    explicit Basin(bool spiky) : stem(ToQString(Folder() / (spiky ? "stekelig" : "boezem")))
    {
        RandomRings random(42);
        polygons = {{spiky ? random.Shore(155000, 463000, 8000, 100000, 0.2)
                           : random.Coast(155000, 463000, 8000, 100000),
                     random.Shore(157000, 464000, 500, 400, 0.2)}};
        WritePair(stem, MakePolygonFile(polygons));
        while (locations.size() < 1000) {
            const geometry::Punt p{random.Between(147000, 163000), random.Between(455000, 471000)};
            if (plain::Search(polygons, p).size() == 1)
                locations.push_back(p);
        }
    }
};

const Basin& TheBasin()
{
    static const Basin basin(false);
    return basin;
}

// The worst case for boxes: each edge a spike of some hundred metres, half a
// metre from the next.
const Basin& SpikyBasin()
{
    static const Basin basin(true);
    return basin;
}

void FetchAndNormalPlain(benchmark::State& state, const Basin& (*make)())
{
    const Basin& basin = make();
    std::size_t i = 0;
    for (auto _ : state) {
        const auto [x, y] = basin.locations[i++ % basin.locations.size()];
        benchmark::DoNotOptimize(plain::CalcFetch(basin.polygons, x, y));
        benchmark::DoNotOptimize(plain::CalcNormal(basin.polygons, x, y));
    }
}
BENCHMARK_CAPTURE(FetchAndNormalPlain, coast, TheBasin)->Unit(benchmark::kMillisecond);

void FetchAndNormalIndexed(benchmark::State& state, const Basin& (*make)())
{
    const Basin& basin = make();
    Strijklengte strijklengte;
    if (!strijklengte.setShapefile(basin.stem + ".shp"))
        state.SkipWithError("no layer");
    std::size_t i = 0;
    for (auto _ : state) {
        const auto [x, y] = basin.locations[i++ % basin.locations.size()];
        benchmark::DoNotOptimize(strijklengte.CalcFetch(x, y));
        benchmark::DoNotOptimize(strijklengte.CalcDijknormaal(x, y));
    }
}
BENCHMARK_CAPTURE(FetchAndNormalIndexed, coast, TheBasin)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FetchAndNormalPlain, spikes, SpikyBasin)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FetchAndNormalIndexed, spikes, SpikyBasin)->Unit(benchmark::kMillisecond);

void ThousandLocationsWithLoading(benchmark::State& state)
{
    const Basin& basin = TheBasin();
    for (auto _ : state) {
        Strijklengte strijklengte;
        if (!strijklengte.setShapefile(basin.stem + ".shp"))
            state.SkipWithError("no layer");
        for (const auto& [x, y] : basin.locations) {
            benchmark::DoNotOptimize(strijklengte.CalcFetch(x, y));
            benchmark::DoNotOptimize(strijklengte.CalcDijknormaal(x, y));
        }
    }
}
BENCHMARK(ThousandLocationsWithLoading)->Unit(benchmark::kMillisecond);

// 1,000,000 points in 50 polygons.
const QString& LargeFile()
{
    static const QString path = [] {
        RandomRings random(7);
        std::vector<TestPolygon> polygons;
        for (int i = 0; i < 50; ++i)
            polygons.push_back({random.Shore(i * 20000.0, 0, 8000, 19999, 0.2)});
        const QString stem = ToQString(Folder() / "groot");
        WritePair(stem, MakePolygonFile(polygons));
        return stem + ".shp";
    }();
    return path;
}

void LoadAMillionPoints(benchmark::State& state)
{
    const QString& path = LargeFile();
    double share = 0;
    for (auto _ : state) {
        const MapLayer layer(path);
        if (!layer.Valid())
            state.SkipWithError("no layer");
        share = double(layer.MemoryUse()) / double(QFileInfo(path).size());
    }
    state.counters["memory_per_file_byte"] = share;
}
BENCHMARK(LoadAMillionPoints)->Unit(benchmark::kMillisecond);

// ogrinfo in a process of its own; `-so` reads the header and counts.
void OgrInfoOnAMillionPoints(benchmark::State& state)
{
    const QString program = QStandardPaths::findExecutable("ogrinfo");
    if (program.isEmpty()) {
        state.SkipWithError("ogrinfo is not installed");
        return;
    }
    const QString& path = LargeFile();
    for (auto _ : state) {
        QProcess process;
        process.start(program, {"-ro", "-so", "-al", path});
        process.waitForFinished();
        if (process.exitCode() != 0)
            state.SkipWithError("ogrinfo failed");
    }
}
BENCHMARK(OgrInfoOnAMillionPoints)->Unit(benchmark::kMillisecond)->UseRealTime();

// 4 million cells of 5 metres.
const std::string& GridFile()
{
    static const std::string path = [] {
        const GridText grid{2000, 2000, 150000, 460000, 5};
        return WriteGrid(Folder() / "bodem.asc", grid.With([](double x, double y) {
            return std::to_string(-2.5 + std::fmod(x * 0.001 + y * 0.002, 1.0)).substr(0, 5);
        }));
    }();
    return path;
}

void ParseFourMillionCells(benchmark::State& state)
{
    const std::string& path = GridFile();
    for (auto _ : state) {
        qlmgis::RasterCache cache;
        benchmark::DoNotOptimize(cache.Find(path));
    }
}
BENCHMARK(ParseFourMillionCells)->Unit(benchmark::kMillisecond);

void BedLevelsOfAThousandLocations(benchmark::State& state)
{
    const std::string& path = GridFile();
    std::size_t parses = 0;
    for (auto _ : state) {
        qlmgis::RasterCache cache;
        RandomRings random(3);
        for (int location = 0; location < 1000; ++location) {
            const auto raster = cache.Find(path);
            const double x = random.Between(154000, 156000);
            const double y = random.Between(464000, 466000);
            for (int direction = 0; direction < 16; ++direction) {
                const double angle = direction * 0.3927;
                const double length = random.Between(100, 3500);
                benchmark::DoNotOptimize(raster->Mean(x, y, x + length * std::cos(angle),
                                                      y + length * std::sin(angle), 10000));
            }
        }
        parses = cache.Parses();
    }
    state.counters["parses"] = double(parses);
}
BENCHMARK(BedLevelsOfAThousandLocations)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
