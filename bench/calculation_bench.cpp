// What the program itself takes of a batch, per pair of location and profile: folder,
// database closed and opened again, registration, input file, form, tree, log pane and
// read-only marks. The core is a script that ends at once; the same script through the
// process runner alone is the baseline.
#include "MaakDatabase.h"
#include "TemporaryFolder.h"
#include "calculation/ui/frmLog.h"
#include "calculation/ui/run/frmBatchjob.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "navigation/MapSelection.h"
#include "profiles/ui/BrowserHost.h"
#include "profiles/ui/frmLocaties.h"

#include <QApplication>
#include <QFile>
#include <benchmark/benchmark.h>

#include <chrono>
#include <fstream>
#include <numeric>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kLocaties = 1000;
/// Pairs of which the mean is shown, at the begin and at the end of a batch.
constexpr int kSample = 100;
const std::string kProfiel = "Gras 1op3";

class NoHost : public BrowserHost {
public:
    void SetCommandEnabled(const QString&, bool) override {}
    void SetEnableButton(int, bool) override {}
    void ShowContextMenu(const QString&, const QPoint&) override {}
    void EditProfiel() override {}
    void ShowBerekeningUitvoer() override {}
    void EditAddDijkring() override {}
    void RefreshLocatiesAndLabelsOpMap() override {}
};

class NoStatus : public StatusBar {
public:
    void ShowProgress(int) override {}
    void SetProgress(int) override {}
    void HideProgress() override {}

protected:
    QString StatusText() const override { return {}; }
    void ShowStatusText(const QString&) override {}
};

class ListText : public LogSink {
public:
    QString Text() const override { return text; }
    void SetText(const QString& newText) override { text = newText; }
    void Append(const QString& more) override { text += more; }
    QString text;
};

/// An installed folder with a fresh database of a thousand locations.
struct Installation {
    Installation()
    {
        fs::create_directory(folder / "data");
        for (const auto& entry : fs::directory_iterator(PROJECT_DATA_FOLDER))
            if (entry.path().extension() == ".ini")
                fs::copy_file(
                    entry.path(),
                    (entry.path().filename() == "Zandvoet.ini" ? folder.Path() : folder / "data") /
                        entry.path().filename());
        const fs::path core = folder / "Rekenprogramma";
        std::ofstream(core) << "#!/bin/sh\necho klaar\necho resultaat > uitvoer.txt\n";
        fs::permissions(core, fs::perms::owner_all);
        SetProgramFolder(QString::fromStdString(folder.Path().string()));
        SetIniPath(Path("data"));
        SetRekeninstellingenPath(Path("data"));
        gIniFile.Set(std::make_shared<QLMIniFile>());

        auto locaties = voorbeeld::VeelLocaties(kLocaties);
        for (auto& locatie : locaties)
            locatie.profielen = {kProfiel};
        voorbeeld::MaakRandvoorwaarden(folder / "groot.mdb",
                                       {.locaties = locaties, .herhalingstijden = 0});
    }
    ~Installation() { gIniFile.Release(); }
    QString Path(const char* name) const
    {
        return QString::fromStdString((folder / name).string());
    }
    TemporaryFolder folder;
};

struct Program {
    Program()
    {
        if (db.OpenDB(installation.Path("groot.mdb"), false) != OpenResult::Accepted)
            throw std::runtime_error("the database does not open");
        form.resize(320, 600);
        form.show();
        form.CreateRvwBrowserTree(
            "groot",
            db.GetRecordSet("SELECT omschrijving AS OMSCHR FROM Locatie ORDER BY Locatie_ID"));
    }
    Installation installation;
    HRdb db;
    NavTree navTree{db};
    MapSelection selection;
    NoHost host;
    frmLog log;
    frmLocaties form{{db, navTree, selection, host, log}};
};

double Milliseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

double Mean(const std::vector<double>& values, std::size_t from, std::size_t count)
{
    const auto begin = values.begin() + static_cast<std::ptrdiff_t>(from);
    return std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(count), 0.0) /
           static_cast<double>(count);
}

/// A batch of as many pairs as the argument says.
void RunBatch(benchmark::State& state)
{
    const auto pairs = static_cast<int>(state.range(0));
    std::vector<double> times; // of each pair, folders made beforehand not counted
    for (auto step : state) {
        state.PauseTiming();
        auto program = std::make_unique<Program>();
        Batch batch;
        batch.naam = "ontwerp";
        batch.instellingen = program->installation.Path("data/Instellingen.ini");
        for (int i = 1; i <= pairs; ++i)
            batch.paren << TeBerekenen{QString("Locatie-%1").arg(i, 4, 10, QChar('0')),
                                       QString::fromStdString(kProfiel)};
        NoStatus status;
        ListText list;
        BatchVoortgang voortgang;
        BatchVerloop verloop;
        std::vector<Clock::time_point> starts;
        const auto begin = Clock::now();
        state.ResumeTiming();
        BerekenLocaties({program->db, status, program->form, program->form, list,
                         [&] {
                             starts.push_back(Clock::now());
                             return std::make_unique<frmBatchjob>(program->db, voortgang);
                         }},
                        batch, verloop);
        state.PauseTiming();
        starts.push_back(Clock::now());
        if (verloop.gedaan != pairs || list.text.count(" OK\r\n") != pairs)
            return state.SkipWithError("the batch did not run");
        state.counters["folders_ms"] = Milliseconds(starts.front() - begin) / pairs;
        times.clear();
        for (std::size_t i = 1; i < starts.size(); ++i)
            times.push_back(Milliseconds(starts[i] - starts[i - 1]));
        program.reset();
        state.ResumeTiming();
    }
    state.counters["first_ms"] = Mean(times, 0, kSample);
    state.counters["last_ms"] = Mean(times, times.size() - kSample, kSample);
    state.counters["pair_ms"] = Mean(times, 0, times.size());
}

/// The core alone, as often.
void RunCoreAlone(benchmark::State& state)
{
    const Installation installation;
    const auto runs = static_cast<int>(state.range(0));
    for (auto step : state) {
        ProcessRunner runner;
        const ProgramCall call{installation.Path("Rekenprogramma"), {}};
        const auto start = Clock::now();
        for (int i = 0; i < runs; ++i)
            if (runner.Execute(nullptr, call, installation.Path(""), nullptr).exitCode != 0)
                return state.SkipWithError("the core did not run");
        state.counters["pair_ms"] = Milliseconds(Clock::now() - start) / runs;
    }
}

BENCHMARK(RunCoreAlone)->Arg(250)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(RunBatch)->Arg(250)->Arg(500)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Says at every window that it has no frame to give it hints.
    qputenv("QT_LOGGING_RULES", "default.warning=false");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
