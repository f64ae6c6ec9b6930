// The boundary-condition database at its largest: 1,000 locations with twelve
// result rows each, and their folders. The baseline of each line is the bare
// engine doing the same reads or writes without HRdb's statements.

#include "MaakDatabase.h"
#include "TemporaryFolder.h"

#include "database/HRdb.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/Ports.h"

#include <benchmark/benchmark.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

class StilLog : public LogSink {
public:
    QString Text() const override { return {}; }
    void SetText(const QString&) override {}
    void Append(const QString&) override {}
};

/// An installed folder with a large database, its work folder beside it.
class Omgeving {
public:
    explicit Omgeving(int locaties)
    {
        fs::create_directory(m_folder / "data");
        fs::copy_file(fs::path(PROJECT_DATA_FOLDER) / "Zandvoet.ini", m_folder / "Zandvoet.ini");
        fs::copy_file(fs::path(PROJECT_DATA_FOLDER) / "DbTables.ini",
                      m_folder / "data" / "DbTables.ini");
        SetProgramFolder(QString::fromStdString(m_folder.Path().string()));
        SetIniPath(QString::fromStdString((m_folder / "data").string()));
        const auto alle = voorbeeld::VeelLocaties(locaties);
        voorbeeld::MaakRandvoorwaarden(m_folder / "groot.mdb",
                                       {.locaties = alle, .herhalingstijden = 12});
        for (const auto& locatie : alle)
            fs::create_directories(m_folder / "groot" / locatie.naam / "Berekeningen" /
                                   "voorbeeld_Gras 1op3");
    }
    ~Omgeving() { SetProgramFolder({}); }

    QString Bestand() const { return QString::fromStdString((m_folder / "groot.mdb").string()); }

private:
    TemporaryFolder m_folder;
};

void CheckedOpen(benchmark::State& state)
{
    const Omgeving omgeving(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        HRdb db;
        if (db.OpenDB(omgeving.Bestand(), false, true) != OpenResult::Accepted)
            state.SkipWithError(qPrintable(db.OpenErrDescription()));
    }
}
BENCHMARK(CheckedOpen)->Arg(250)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond);

void BareOpen(benchmark::State& state)
{
    const Omgeving omgeving(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        HRdb db;
        db.OpenDB(omgeving.Bestand(), false, false);
    }
}
BENCHMARK(BareOpen)->Arg(1000)->Unit(benchmark::kMillisecond);

void UpdateKwaliteitskenmerk(benchmark::State& state)
{
    const Omgeving omgeving(1000);
    HRdb db;
    db.OpenDB(omgeving.Bestand(), false);
    for (auto _ : state)
        db.UpdateKwaliteitskenmerk();
}
BENCHMARK(UpdateKwaliteitskenmerk)->Unit(benchmark::kMillisecond);

void AddLocatie(benchmark::State& state)
{
    const Omgeving omgeving(1000);
    HRdb db;
    db.OpenDB(omgeving.Bestand(), false);
    int nummer = 0;
    for (auto _ : state)
        db.AddLocatie(1, 2, "Nieuw-" + QString::number(++nummer));
}
BENCHMARK(AddLocatie)->Unit(benchmark::kMillisecond);

/// The flush that AddLocatie ends with, alone: one changed row.
void FlushAlone(benchmark::State& state)
{
    const Omgeving omgeving(1000);
    jet::Workspace workspace;
    const auto database = workspace.OpenDatabase(omgeving.Bestand().toStdString());
    const auto locaties = database->OpenRecordset("Locatie");
    for (auto _ : state) {
        workspace.BeginTrans();
        locaties->Edit();
        locaties->Set("kruinhoogte", jet::Value(1.0));
        locaties->Update();
        workspace.CommitTrans(jet::Flush::Yes);
    }
}
BENCHMARK(FlushAlone)->Unit(benchmark::kMillisecond);

void GetMinMaxVerschil(benchmark::State& state)
{
    const Omgeving omgeving(1000);
    HRdb db;
    db.OpenDB(omgeving.Bestand(), false);
    for (auto _ : state) {
        double min = 1e9, max = -1e9;
        db.GetMinMaxVerschil({1}, {1}, min, max);
        benchmark::DoNotOptimize(max);
    }
}
BENCHMARK(GetMinMaxVerschil)->Unit(benchmark::kMillisecond);

void GetVerschilHBN(benchmark::State& state)
{
    const Omgeving omgeving(1000);
    HRdb db;
    db.OpenDB(omgeving.Bestand(), false);
    for (auto _ : state) {
        const auto rijen = db.GetVerschilHBN({1}, {1}, kNietBekend);
        int aantal = 0;
        for (; !rijen->EndOfFile(); rijen->MoveNext())
            ++aantal;
        state.counters["rijen"] = aantal;
    }
}
BENCHMARK(GetVerschilHBN)->Unit(benchmark::kMillisecond);

void Checkscheefstandtabel(benchmark::State& state)
{
    const Omgeving omgeving(1000);
    HRdb db;
    StilLog log;
    db.setLogRtb(&log);
    db.OpenDB(omgeving.Bestand(), false);
    for (auto _ : state)
        db.Checkscheefstandtabel();
}
BENCHMARK(Checkscheefstandtabel)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
