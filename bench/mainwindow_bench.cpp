// The main window with a large database: 1,000 locations, three profiles and five
// calculations each. A database is opened until the window is painted and can be
// used, beside the parts that cannot be left out: the checked open of the file and
// the same number of names in a plain tree and of dots in a plain widget.
#include "MaakDatabase.h"
#include "TemporaryFolder.h"
#include "calculation/ui/frmLog.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "geometry/Strijklengte.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/parts/LocatieRecords.h"
#include "mainwindow/parts/MainCommands.h"
#include "mainwindow/parts/MainPanes.h"
#include "maps/ui/MapView.h"
#include "navigation/MapSelection.h"
#include "profiles/ui/frmLocaties.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QTreeWidget>
#include <benchmark/benchmark.h>

namespace {

constexpr int kLocaties = 1000;
constexpr int kProfielen = 3;
constexpr int kBerekeningen = 5;

QString Locatie(int number)
{
    return QString("Locatie-%1").arg(number, 4, 10, QChar('0'));
}

/// A program folder with the large database and its work folder.
struct Installation {
    Installation()
    {
        namespace fs = std::filesystem;
        const fs::path data = PROJECT_DATA_FOLDER;
        fs::copy_file(data / "Zandvoet.ini", folder / "Zandvoet.ini");
        fs::create_directory(folder / "data");
        for (const auto& entry : fs::directory_iterator(data)) {
            if (entry.path().extension() == ".ini")
                fs::copy_file(entry.path(), folder / "data" / entry.path().filename());
        }
        SetProgramFolder(QString::fromStdString(folder.Path().string()));
        SetIniPath(QString::fromStdString((folder / "data").string()));

        auto locaties = voorbeeld::VeelLocaties(kLocaties);
        for (auto& locatie : locaties) {
            locatie.profielen = {"Gras 1op3", "Strekdam", "Palenrij"};
            const fs::path berekeningen = folder / "groot" / locatie.naam / "berekeningen";
            fs::create_directories(berekeningen / "voorbeeld_Gras 1op3"); // has results
            for (int i = 1; i < kBerekeningen; ++i)
                fs::create_directories(berekeningen / ("som" + std::to_string(i) + "_Gras 1op3"));
        }
        database = QString::fromStdString((folder / "groot.mdb").string());
        voorbeeld::MaakRandvoorwaarden(database.toStdString(),
                                       {.locaties = locaties, .herhalingstijden = 12});
    }
    TemporaryFolder folder;
    QString database;
};

const Installation& TheInstallation()
{
    static const Installation installation;
    return installation;
}

/// The window as the program makes it, on the screen.
struct Program {
    Program()
    {
        window.setPaneSizes(&sizes);
        window.Load();
        window.resize(1280, 900);
        window.show();
        QApplication::processEvents();
    }
    void Open()
    {
        window.OpenDatabase(TheInstallation().database);
        if (!database.IsOpen())
            throw std::runtime_error(
                qPrintable("the database does not open: " + database.OpenErrDescription()));
        Paint();
    }
    void Paint()
    {
        QApplication::processEvents();
        window.repaint();
    }
    const Installation& installation = TheInstallation();
    HRdb database;
    MapSelection selection;
    Strijklengte strijklengte;
    PaneSizes sizes;
    frmMain window;
    MainPanes* panes = [this] { // the window's child
        auto* made = new MainPanes(window, {database, selection, strijklengte});
        SetMainCommands(window, *made);
        return made;
    }();
};

void OpenDatabaseToPaintedWindow(benchmark::State& state)
{
    Program program;
    for (auto step : state) {
        program.Open();
        state.PauseTiming();
        program.window.CloseRandvoorwaarden();
        program.database.CloseDB();
        state.ResumeTiming();
    }
}

void OpenDatabaseAlone(benchmark::State& state)
{
    for (auto step : state) {
        HRdb database;
        if (database.OpenDB(TheInstallation().database, false, true) != OpenResult::Accepted)
            return state.SkipWithError("the database does not open");
    }
}

void PlainTreeAndDots(benchmark::State& state)
{
    class Dots : public QWidget {
        void paintEvent(QPaintEvent*) override
        {
            QPainter painter(this);
            painter.setRenderHint(QPainter::Antialiasing);
            for (int i = 0; i < kLocaties; ++i) {
                const QPointF place((i * 37) % 800, (i * 53) % 600);
                painter.drawEllipse(place, 4, 4);
                painter.drawText(place, Locatie(i));
            }
        }
    } dots;
    QTreeWidget tree;
    tree.setUniformRowHeights(true);
    for (QWidget* widget : {static_cast<QWidget*>(&tree), static_cast<QWidget*>(&dots)}) {
        widget->resize(800, 600);
        widget->show();
    }
    for (auto step : state) {
        auto* root = new QTreeWidgetItem(&tree, {"Locaties"});
        for (int i = 0; i < kLocaties; ++i) {
            auto* locatie = new QTreeWidgetItem(root, {Locatie(i)});
            for (int j = 0; j < kProfielen + kBerekeningen + 2; ++j)
                new QTreeWidgetItem(locatie, {"Profiel"});
        }
        root->setExpanded(true);
        tree.repaint();
        dots.repaint();
        state.PauseTiming();
        tree.clear();
        state.ResumeTiming();
    }
}

/// Of each kind of node in turn, the whole window painted behind each click.
void ClickNode(benchmark::State& state)
{
    Program program;
    program.Open();
    frmLocaties& browser = program.panes->Locaties();
    int number = 0;
    for (auto step : state) {
        const QString locatie = "ROOTLOCATIES\\" + Locatie(1 + number % kLocaties);
        browser.ClickNode(browser.GetNodeByKey(
            number++ % 2 ? locatie : locatie + "\\berekeningen\\som1_Gras 1op3"));
        program.Paint();
    }
}

/// All locations in view, without and with their names; 2: with names, and at
/// each step another scale, so that all names are placed anew.
void PaintMap(benchmark::State& state)
{
    Program program;
    program.Open();
    MapView& map = program.panes->Map();
    map.SetLabels(state.range(0) > 0, QFont("Times", 12), Qt::black);
    const MapRectangle all = map.PointExtent();
    double step = 0;
    for (auto round : state) {
        if (state.range(0) == 2) {
            const double aside = 1000 + (step = step < 1000 ? step + 1 : 0);
            map.SetExtent(
                {all.left - aside, all.top + aside, all.right + aside, all.bottom - aside});
        }
        map.repaint();
    }
}

/// What a redraw cost if the points were asked for each time.
void ReadAllLocations(benchmark::State& state)
{
    HRdb database;
    if (database.OpenDB(TheInstallation().database, false) != OpenResult::Accepted)
        return state.SkipWithError("the database does not open");
    for (auto step : state)
        benchmark::DoNotOptimize(LeesLocatiePunten(database));
}

BENCHMARK(OpenDatabaseToPaintedWindow)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenDatabaseAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(PlainTreeAndDots)->Unit(benchmark::kMillisecond);
BENCHMARK(ClickNode)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintMap)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadAllLocations)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    application.setApplicationName("Zandvoet");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
