// The location browser with a large database: 1,000 locations, 3 profiles and
// 5 calculations each. The tree is built beside a plain tree of the same size without
// database, disc and index; a log of 20 MB is shown beside a box that loads it whole. What
// a command does to many locations at once stands beside the same for one after the other.
#include "MaakDatabase.h"
#include "TemporaryFolder.h"
#include "calculation/ui/frmLog.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "navigation/MapSelection.h"
#include "profiles/ui/BrowserHost.h"
#include "profiles/ui/frmLocaties.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QTreeWidget>
#include <benchmark/benchmark.h>

namespace {

constexpr int kLocaties = 1000;
constexpr int kBerekeningen = 5;
constexpr int kProfielen = 3;

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

/// An installed folder with the large database and its work folder.
struct Installation {
    Installation()
    {
        namespace fs = std::filesystem;
        fs::copy_file(fs::path(PROJECT_DATA_FOLDER) / "Zandvoet.ini", folder / "Zandvoet.ini");
        fs::create_directory(folder / "data");
        for (const char* ini : {"Locaties.ini", "Log.ini", "DbTables.ini"})
            fs::copy_file(fs::path(PROJECT_DATA_FOLDER) / ini, folder / "data" / ini);
        SetProgramFolder(QString::fromStdString(folder.Path().string()));
        SetIniPath(QString::fromStdString((folder / "data").string()));

        auto locaties = voorbeeld::VeelLocaties(kLocaties);
        for (auto& locatie : locaties) {
            locatie.profielen = {"Gras 1op3", "Strekdam", "Palenrij"};
            for (int i = 0; i < kBerekeningen; ++i)
                fs::create_directories(folder / "groot" / locatie.naam / "berekeningen" /
                                       ("som" + std::to_string(i) + "_Gras 1op3"));
        }
        database = QString::fromStdString((folder / "groot.mdb").string());
        voorbeeld::MaakRandvoorwaarden(database.toStdString(),
                                       {.locaties = locaties, .herhalingstijden = 12});
        QFile log(QString::fromStdString((folder / "uitvoer.log").string()));
        if (log.open(QIODevice::WriteOnly))
            for (int i = 0; log.size() < 20 * 1024 * 1024; ++i)
                log.write("Stap " + QByteArray::number(i) + " van de berekening is gereed\r\n");
        logFile = log.fileName();
    }
    TemporaryFolder folder;
    QString database;
    QString logFile;
};

const Installation& TheInstallation()
{
    static const Installation installation;
    return installation;
}

struct Browser {
    Browser()
    {
        if (db.OpenDB(TheInstallation().database, false) != OpenResult::Accepted)
            throw std::runtime_error("the database does not open");
        log.resize(700, 200);
        form.resize(320, 600);
        form.show();
        log.show();
    }
    void Build()
    {
        form.CreateRvwBrowserTree(
            "groot",
            db.GetRecordSet("SELECT omschrijving AS OMSCHR FROM Locatie ORDER BY Locatie_ID"));
        form.ApplyNode(form.GetNodeByKey("ROOTLOCATIES"));
        form.repaint();
    }
    HRdb db;
    NavTree navTree{db};
    MapSelection selection;
    NoHost host;
    frmLog log;
    frmLocaties form{{db, navTree, selection, host, log}};
};

void BuildTree(benchmark::State& state)
{
    Browser browser;
    for (auto step : state) {
        browser.Build();
        state.PauseTiming();
        browser.form.RemoveRvwTrees();
        state.ResumeTiming();
    }
}

void BuildPlainTree(benchmark::State& state)
{
    QTreeWidget tree;
    tree.setUniformRowHeights(true);
    tree.show();
    for (auto step : state) {
        auto* root = new QTreeWidgetItem(&tree, {"Locaties"});
        for (int i = 0; i < kLocaties; ++i) {
            auto* locatie = new QTreeWidgetItem(root, {QString("Locatie-%1").arg(i)});
            auto* profielen = new QTreeWidgetItem(locatie, {"Profielen"});
            for (int j = 0; j < kProfielen; ++j)
                new QTreeWidgetItem(profielen, {"Profiel"});
            auto* berekeningen = new QTreeWidgetItem(locatie, {"berekeningen"});
            for (int j = 0; j < kBerekeningen; ++j)
                new QTreeWidgetItem(berekeningen, {"som"});
        }
        root->setExpanded(true);
        tree.repaint();
        state.PauseTiming();
        tree.clear();
        state.ResumeTiming();
    }
}

/// Of each kind of node in turn, as a user goes through the tree.
void ClickNode(benchmark::State& state)
{
    Browser browser;
    browser.Build();
    int number = 0;
    for (auto step : state) {
        const QString locatie =
            QString("ROOTLOCATIES\\Locatie-%1").arg(1 + number++ % kLocaties, 4, 10, QChar('0'));
        browser.form.ClickNode(browser.form.GetNodeByKey(
            number % 2 ? locatie : locatie + "\\berekeningen\\som1_Gras 1op3"));
        browser.form.repaint();
    }
}

void ClickLocatieWithSelection(benchmark::State& state)
{
    Browser browser;
    browser.Build();
    for (auto step : state) {
        browser.form.ResetSelectedLocations();
        for (int i = 1; i <= kLocaties; ++i)
            browser.selection.AddALocation2Selection(
                QString("Locatie-%1").arg(i, 4, 10, QChar('0')));
        browser.form.ApplySelectedLocations();
    }
}

void FilterTree(benchmark::State& state)
{
    Browser browser;
    browser.Build();
    TreeFilter filter(browser.navTree);
    for (auto step : state) {
        filter.Apply("locatie-05");
        filter.Apply("");
    }
}

void ShowLog(benchmark::State& state)
{
    static_cast<void>(TheInstallation());
    frmLog log;
    log.resize(700, 200);
    log.show();
    for (auto step : state) {
        log.ShowLogFile(TheInstallation().logFile);
        log.repaint();
    }
}

void LoadLogWhole(benchmark::State& state)
{
    QPlainTextEdit box;
    box.setLineWrapMode(QPlainTextEdit::NoWrap);
    box.resize(700, 200);
    box.show();
    for (auto step : state) {
        QFile file(TheInstallation().logFile);
        if (!file.open(QIODevice::ReadOnly))
            return state.SkipWithError("no log");
        box.setPlainText(QString::fromLatin1(file.readAll()));
        box.moveCursor(QTextCursor::End);
        box.repaint();
    }
}

/// A copy of the large database that may be changed, its work folder, and the tree of both.
struct ChangingBrowser {
    ChangingBrowser()
    {
        namespace fs = std::filesystem;
        const fs::path folder = TheInstallation().folder.Path();
        fs::copy_file(folder / "groot.mdb", folder / "kopie.mdb",
                      fs::copy_options::overwrite_existing);
        fs::remove_all(folder / "kopie");
        fs::copy(folder / "groot", folder / "kopie", fs::copy_options::recursive);
        if (db.OpenDB(QString::fromStdString((folder / "kopie.mdb").string()), false) !=
            OpenResult::Accepted)
            throw std::runtime_error("the copy does not open");
        tree.setTreeViewObject(&view);
        auto* root = tree.AddRoot(navkey::RootLocaties, "Locaties", false);
        tree.addLocatiesFromDb2Root(root,
                                    db.GetRecordSet("SELECT omschrijving AS OMSCHR FROM Locatie"));
        tree.addProfielenFromDb2Locaties(root);
        tree.addBerekeningenFromWerkmap2Locaties(root, db.WerkMap());
        for (int i = 0; i < root->childCount(); ++i)
            namen << root->child(i)->text(0);
    }
    HRdb db;
    QTreeWidget view;
    NavTree tree{db};
    TreeChanges changes{tree, db};
    QStringList namen;
};

template <typename Work>
void OnACopy(benchmark::State& state, Work&& work)
{
    for (auto step : state) {
        state.PauseTiming();
        auto browser = std::make_unique<ChangingBrowser>();
        browser->namen.resize(state.range(0));
        state.ResumeTiming();
        work(*browser);
        state.PauseTiming();
        browser.reset();
        state.ResumeTiming();
    }
    state.SetComplexityN(state.range(0));
}

void AssignProfiel(benchmark::State& state)
{
    OnACopy(state, [](ChangingBrowser& browser) {
        browser.changes.AssignProfiel("Voorland 1op4", browser.namen);
    });
}

void AssignOneAfterTheOther(benchmark::State& state)
{
    OnACopy(state, [](ChangingBrowser& browser) {
        for (const QString& naam : browser.namen)
            browser.changes.AssignProfiel("Voorland 1op4", {naam});
    });
}

void DeleteLocaties(benchmark::State& state)
{
    OnACopy(state, [](ChangingBrowser& browser) { browser.changes.DeleteLocaties(browser.namen); });
}

void DeleteOneAfterTheOther(benchmark::State& state)
{
    OnACopy(state, [](ChangingBrowser& browser) {
        for (const QString& naam : browser.namen)
            browser.changes.DeleteLocaties({naam});
    });
}

BENCHMARK(BuildTree)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildPlainTree)->Unit(benchmark::kMillisecond);
BENCHMARK(ClickNode)->Unit(benchmark::kMillisecond);
BENCHMARK(ClickLocatieWithSelection)->Unit(benchmark::kMillisecond);
BENCHMARK(FilterTree)->Unit(benchmark::kMillisecond);
BENCHMARK(AssignProfiel)
    ->Unit(benchmark::kMillisecond)
    ->Arg(250)
    ->Arg(500)
    ->Arg(1000)
    ->Iterations(2)
    ->Complexity(benchmark::oN);
BENCHMARK(AssignOneAfterTheOther)->Unit(benchmark::kMillisecond)->Arg(25)->Iterations(1);
BENCHMARK(DeleteLocaties)->Unit(benchmark::kMillisecond)->Arg(50)->Arg(250)->Iterations(1);
BENCHMARK(DeleteOneAfterTheOther)->Unit(benchmark::kMillisecond)->Arg(50)->Iterations(1);
BENCHMARK(ShowLog)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadLogWhole)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
