// From the start of the process to a painted main window, on a virtual screen,
// without a database; beside it a program of the same toolkit that shows an
// empty window and does nothing else. Then the parts of which the start is made.

#include "ProgramRun.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "frame/startup/EnvironmentChecks.h"
#include "frame/ui/TranslateForm.h"
#include "mainwindow/PaneSizes.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/frmSplash.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>

#include <chrono>

namespace {

/// Nanoseconds since the epoch at which the window was painted; 0 when it never was.
qint64 PaintedAt(ProgramRun& run, const QString& name)
{
    for (const QString& line : run.Log(name)) {
        if (line.startsWith("painted\t"))
            return line.section('\t', 1).toLongLong();
    }
    return 0;
}

void TimeStarts(benchmark::State& state, const QString& program)
{
    ProgramRun run;
    int n = 0;
    for (auto _ : state) {
        const QString name = QString::number(++n);
        const auto before = std::chrono::system_clock::now().time_since_epoch();
        const auto process = run.Start(name, 100, false, program);
        if (!process->waitForFinished(20000) || PaintedAt(run, name) == 0) {
            state.SkipWithError("the window was never painted");
            process->kill();
            process->waitForFinished();
            return;
        }
        const qint64 passed = PaintedAt(run, name) - std::chrono::nanoseconds(before).count();
        state.SetIterationTime(double(passed) * 1e-9);
    }
}

void ProgramToPaintedWindow(benchmark::State& state)
{
    TimeStarts(state, QString());
}
BENCHMARK(ProgramToPaintedWindow)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

void EmptyWindowOfTheToolkit(benchmark::State& state)
{
    TimeStarts(state, QCoreApplication::applicationFilePath());
}
BENCHMARK(EmptyWindowOfTheToolkit)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

/// This process in a complete installation.
class Installed {
public:
    Installed()
    {
        SetProgramFolder(m_run.Path());
        SetIniPath(m_run.Path("data"));
        gIniFile.Set(std::make_shared<QLMIniFile>());
    }
    ~Installed()
    {
        gIniFile.Release();
        SetProgramFolder(QString());
    }

private:
    ProgramRun m_run;
};

void Part_Checks(benchmark::State& state)
{
    const Installed installed;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CheckScreen(DisplayInfo()));
        benchmark::DoNotOptimize(CheckRequiredFiles());
    }
}
BENCHMARK(Part_Checks)->Unit(benchmark::kMillisecond);

void Part_Ini(benchmark::State& state)
{
    const Installed installed;
    for (auto _ : state) {
        QLMIniFile program;
        QLMIniFile main(AddBackslash(gIniPath()) + "Main.ini");
        benchmark::DoNotOptimize(program.GetString("Algemeen", "Taal"));
        benchmark::DoNotOptimize(main.GetString("Captions", "frmMain"));
    }
}
BENCHMARK(Part_Ini)->Unit(benchmark::kMillisecond);

void Part_Splash(benchmark::State& state)
{
    const Installed installed;
    for (auto _ : state) {
        frmSplash splash;
        splash.ShowNow();
    }
}
BENCHMARK(Part_Splash)->Unit(benchmark::kMillisecond);

void Part_Translation(benchmark::State& state)
{
    const Installed installed;
    frmMain window;
    for (auto _ : state) {
        QLMIniFile main(AddBackslash(gIniPath()) + "Main.ini");
        TranslateForm(window, main, QString());
    }
}
BENCHMARK(Part_Translation)->Unit(benchmark::kMillisecond);

void Part_Window(benchmark::State& state)
{
    const Installed installed;
    for (auto _ : state) {
        PaneSizes sizes;
        frmMain window;
        window.setPaneSizes(&sizes);
        window.Load();
        window.show();
        QApplication::processEvents();
    }
}
BENCHMARK(Part_Window)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && QString(argv[1]) == "--empty-window") {
        QApplication application(argc, argv);
        QMainWindow window;
        window.setObjectName("frmMain");
        window.show();
        QObject::connect(&application, &QApplication::lastWindowClosed, &application,
                         &QCoreApplication::quit);
        return QApplication::exec();
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
