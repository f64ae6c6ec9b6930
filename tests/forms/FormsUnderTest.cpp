#include "FormsUnderTest.h"

#include "calculation/ui/frmLog.h"
#include "calculation/ui/frmUitvoer.h"
#include "calculation/ui/frmUitvoerHtml.h"
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

} // namespace

QList<FormUnderTest> FormsUnderTest()
{
    return {
        {"About.ini", [] { return std::make_unique<frmAbout>(); }},
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
