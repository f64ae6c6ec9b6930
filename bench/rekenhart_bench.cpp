// The reference core by stage, and the budget that users feel: one location with
// twelve return periods for all three failure mechanisms.

#include "rekenhart/ExampleData.h"
#include "rekenhart/calculation/LocatieBerekening.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>

using namespace rekenhart;

namespace {

std::size_t allocations = 0;

} // namespace

// Counts what the inner loops ask of the heap: it must be nothing.
[[gnu::noinline]] void* operator new(std::size_t size)
{
    ++allocations;
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

const std::vector<double> kTwelvePeriods{1, 2, 5, 10, 20, 50, 100, 300, 500, 1000, 3000, 10000};

Belastinginstellingen Settings(Faalmechanisme mechanism)
{
    Belastinginstellingen settings;
    settings.faalmechanisme = mechanism;
    settings.overslagdebiet = 1;
    settings.windreductie = true;
    return settings;
}

/// The example's exposed lake shore with all that a stage needs.
struct Shore {
    explicit Shore(Faalmechanisme mechanism, Golfgroeimodule model = Golfgroeimodule::Bretschneider)
        : settings(Settings(mechanism))
    {
        settings.golfgroeimodule = model;
    }
    const WindStatistics& wind = ExampleData::Get().Wind();
    Locatie locatie = ExampleData::Get().Locatie("Plas-04");
    Profiel profiel = ExampleData::Get().Profiel("Gras 1op3");
    Belastinginstellingen settings;
    BasinLevel levels{locatie.streefpeil, locatie.peilen, 0};
    IntegrationGrid grid;

    LoadModel Model() const { return {locatie, &profiel, settings, wind.transformation}; }
    ExceedanceLine Line() const
    {
        const LoadTable table(Model(), LoadKind::Full, levels, grid);
        return {LoadField(table, levels, grid.LevelNodes(levels.Knots()), grid), wind};
    }
};

/// The plain way to a quantile: halving alone.
double QuantileByHalving(ExceedanceLine& line, double years)
{
    double low = line.Field().LowestAtFirstNode() - 0.01;
    double high = line.Field().Highest() + 0.01;
    while (high - low > 1e-4) {
        const double middle = 0.5 * (low + high);
        (line.Frequency(middle) > 1 / years ? low : high) = middle;
    }
    return 0.5 * (low + high);
}

void OneLoad(benchmark::State& state)
{
    const Shore shore(static_cast<Faalmechanisme>(state.range(0)),
                      static_cast<Golfgroeimodule>(state.range(1)));
    const LoadModel model = shore.Model();
    double wind = 5;
    const std::size_t before = allocations;
    for (auto _ : state) {
        wind = wind < 40 ? wind + 0.1 : 5;
        benchmark::DoNotOptimize(model.Load(-0.2, 12, wind, LoadKind::Full));
    }
    state.counters["allocations"] = static_cast<double>(allocations - before);
}

void Table(benchmark::State& state)
{
    const Shore shore(static_cast<Faalmechanisme>(state.range(0)));
    const LoadModel model = shore.Model();
    for (auto _ : state)
        benchmark::DoNotOptimize(LoadTable(model, LoadKind::Full, shore.levels, shore.grid));
}

void Field(benchmark::State& state)
{
    const Shore shore(Faalmechanisme::Golfoverslag);
    const LoadTable table(shore.Model(), LoadKind::Full, shore.levels, shore.grid);
    for (auto _ : state)
        benchmark::DoNotOptimize(LoadField(
            table, shore.levels, shore.grid.LevelNodes(shore.levels.Knots()), shore.grid));
}

void Frequency(benchmark::State& state)
{
    const Shore shore(Faalmechanisme::Golfoverslag);
    ExceedanceLine line = shore.Line();
    double level = 0;
    const std::size_t before = allocations;
    for (auto _ : state) {
        level = level < 1.5 ? level + 0.01 : 0;
        benchmark::DoNotOptimize(line.Frequency(level));
    }
    state.counters["allocations"] = static_cast<double>(allocations - before);
}

void Quantile(benchmark::State& state)
{
    const Shore shore(Faalmechanisme::Golfoverslag);
    ExceedanceLine line = shore.Line();
    for (auto _ : state)
        for (const double years : kTwelvePeriods)
            benchmark::DoNotOptimize(line.Quantile(years));
}

void QuantileHalvingOnly(benchmark::State& state)
{
    const Shore shore(Faalmechanisme::Golfoverslag);
    ExceedanceLine line = shore.Line();
    for (auto _ : state)
        for (const double years : kTwelvePeriods)
            benchmark::DoNotOptimize(QuantileByHalving(line, years));
}

void DesignPoints(benchmark::State& state)
{
    const Shore shore(Faalmechanisme::Golfoverslag);
    ExceedanceLine line = shore.Line();
    for (auto _ : state)
        benchmark::DoNotOptimize(line.ContributionsAt(0.9));
}

/// Everything that a run computes: results with shares and the frequency line.
void RunLocation(const Shore& shore)
{
    LocatieBerekening calculation(shore.locatie, &shore.profiel, shore.settings, shore.wind, true);
    for (const double years : kTwelvePeriods)
        benchmark::DoNotOptimize(calculation.Calculate(years));
    for (const double years : FrequencyLinePeriods())
        benchmark::DoNotOptimize(calculation.LevelAt(years));
}

void LocationWithTwelvePeriods(benchmark::State& state)
{
    const Shore shore(static_cast<Faalmechanisme>(state.range(0)));
    for (auto _ : state)
        RunLocation(shore);
}

/// Budget: 0.5 s.
void LocationWithTwelvePeriodsAndThreeMechanisms(benchmark::State& state)
{
    const Shore overflow(Faalmechanisme::Overloop), overtopping(Faalmechanisme::Golfoverslag),
        runUp(Faalmechanisme::Golfoploop);
    for (auto _ : state) {
        RunLocation(overflow);
        RunLocation(overtopping);
        RunLocation(runUp);
    }
}

BENCHMARK(OneLoad)->ArgNames({"mechanism", "model"})->ArgsProduct({{0, 1, 2}, {0, 1, 2}});
BENCHMARK(Table)->ArgName("mechanism")->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(Field)->Unit(benchmark::kMillisecond);
BENCHMARK(Frequency)->Unit(benchmark::kMicrosecond);
BENCHMARK(Quantile)->Unit(benchmark::kMillisecond);
BENCHMARK(QuantileHalvingOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(DesignPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(LocationWithTwelvePeriods)
    ->ArgName("mechanism")
    ->DenseRange(0, 2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(LocationWithTwelvePeriodsAndThreeMechanisms)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
