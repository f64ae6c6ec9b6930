#include "FormsUnderTest.h"

#include "calculation/ui/frmLog.h"
#include "calculation/ui/frmUitvoer.h"
#include "calculation/ui/frmUitvoerHtml.h"
#include "calculation/ui/run/BoomLocaties.h"
#include "calculation/ui/run/frmBatchjob.h"
#include "calculation/ui/run/frmBatchresult.h"
#include "calculation/ui/run/frmBerekeningInstellingen.h"
#include "calculation/ui/run/frmBerekeningStart.h"
#include "frame/ui/frmMemo.h"
#include "mainwindow/frmAbout.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/frmSplash.h"
#include "navigation/MapSelection.h"
#include "profiles/ui/BrowserHost.h"
#include "profiles/ui/frmLocaties.h"

namespace {

/// Whom the location browser needs, doing nothing.
struct Browser : BrowserHost, LogViewer {
    void SetCommandEnabled(const QString&, bool) override {}
    void SetEnableButton(int, bool) override {}
    void ShowContextMenu(const QString&, const QPoint&) override {}
    void EditProfiel() override {}
    void ShowBerekeningUitvoer() override {}
    void EditAddDijkring() override {}
    void RefreshLocatiesAndLabelsOpMap() override {}
    void ShowLogFile(const QString&) override {}
    void ClearLogWindow() override {}

    HRdb db;
    NavTree navTree{db};
    MapSelection selection;
};

std::unique_ptr<QWidget> MakeLocaties()
{
    static Browser browser;
    return std::make_unique<frmLocaties>(
        frmLocaties::Omgeving{browser.db, browser.navTree, browser.selection, browser, browser});
}

std::unique_ptr<QWidget> MakeBatchjob()
{
    static HRdb db;
    static BatchVoortgang voortgang;
    return std::make_unique<frmBatchjob>(db, voortgang);
}

std::unique_ptr<QWidget> MakeBerekeningStart()
{
    static HRdb db;
    static const NavTree navTree{db};
    static const BoomLocaties locaties{navTree};
    static Global<frmBerekeningInstellingen> instellingen;
    return std::make_unique<frmBerekeningStart>(
        frmBerekeningStart::Omgeving{db, locaties, instellingen});
}

} // namespace

QList<FormUnderTest> FormsUnderTest()
{
    return {
        {"About.ini", [] { return std::make_unique<frmAbout>(); }},
        {"Batchjob.ini", MakeBatchjob},
        {"Batchresult.ini", [] { return std::make_unique<frmBatchresult>(); }},
        {"BerekeningInstellingen.ini",
         [] { return std::make_unique<frmBerekeningInstellingen>(); }},
        {"BerekeningStart.ini",
         MakeBerekeningStart,
         {"frmBerekeningStart.fsbDialogTitle", "frmBerekeningStart.fsbOverzichtNm.filters",
          "frmBerekeningStart.msgBox.windowtext", "frmBerekeningStart.msgBox.prompttext",
          "frmBerekeningStart.msgBox.btn1text", "frmBerekeningStart.msgBox.btn2text",
          "frmBerekeningStart.msgBox.btn3text"}},
        {"Locaties.ini", MakeLocaties},
        {"Log.ini", [] { return std::make_unique<frmLog>(); }},
        {"Main.ini", [] { return std::make_unique<frmMain>(); }, {"database.open.title"}},
        {"Memo.ini", [] { return std::make_unique<frmMemo>(); }},
        {"Splash.ini", [] { return std::make_unique<frmSplash>(); }},
        {"Uitvoer.ini",
         [] { return std::make_unique<frmUitvoer>(); },
         {"frmUitvoer.caption.normaal", "frmUitvoer.caption.extra"}},
        {"UitvoerHtml.ini", [] { return std::make_unique<frmUitvoerHtml>(); }},
    };
}
