#include "frame/startup/Assembly.h"

#include "frame/Globals.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/parts/MainCommands.h"
#include "mainwindow/parts/MainPanes.h"
#include "navigation/MapSelection.h"

namespace {

void SetFactories()
{
    gHRdb.SetFactory([] { return std::make_shared<HRdb>(); });
    gMapSelection.SetFactory([] { return std::make_shared<MapSelection>(); });
    gStrijklengte.SetFactory([] { return std::make_shared<Strijklengte>(); });
}

} // namespace

void AssembleMainWindow(frmMain& window)
{
    SetFactories();
    window.setPaneSizes(&gPaneSizes());
    auto* panes =
        new MainPanes(window, {gHRdb(), gMapSelection(), gStrijklengte()}); // the window's child
    SetMainCommands(window, *panes);
}
