#include "mainwindow/parts/MainCommands.h"

#include "calculation/ui/frmUitvoer.h"
#include "calculation/ui/run/BerekeningStarten.h"
#include "calculation/ui/run/BoomLocaties.h"
#include "frame/Busy.h"
#include "frame/FileSystemObject.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/ui/MessageBoxes.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/parts/MainPanes.h"
#include "profiles/ui/frmLocaties.h"

#include <QTreeWidgetItem>

namespace {

constexpr int kMeldingBestandOntbreekt = 203;

/// The folder of the current calculation; empty when no calculation is current.
QString BerekeningFolder(const MainPanes& panes)
{
    const QString tag = panes.CurrentNodeTag();
    if (tag != navtag::Berekening && tag != navtag::Dijkringberekening)
        return {};
    return panes.Locaties().GetNodePath(panes.CurrentNodeKey());
}

void ShowBerekeningFile(frmMain& window, const MainPanes& panes, const QString& name)
{
    const QString folder = BerekeningFolder(panes);
    if (folder.isEmpty())
        return;
    const QString file = gFso().BuildPath(folder, name);
    if (!FileExists(file)) {
        ShowMessageForm(&window, kMeldingBestandOntbreekt, {file});
        return;
    }
    frmUitvoer form(&window);
    form.ShowUitvoerFile(file);
    form.exec();
}

void ShowBerekeningFolder(frmMain& window, const MainPanes& panes)
{
    const QString folder = BerekeningFolder(panes);
    if (!folder.isEmpty())
        OpenByAssociation(&window, folder);
}

void StartBerekening(frmMain& window, MainPanes& panes)
{
    const BoomLocaties locaties(panes.Boom());
    BerekeningStarten({.venster = &window,
                       .database = panes.Database(),
                       .hoofdscherm = window,
                       .browser = panes.Locaties(),
                       .boom = panes.Locaties(),
                       .locaties = locaties,
                       .instellingen = panes.Instellingen()})
        .Start();
}

void CheckScheefstand(MainPanes& panes)
{
    const BusyScope busy;
    panes.Database().Checkscheefstandtabel();
}

void SetViewCommands(frmMain& window, MainPanes& panes)
{
    window.setCommand("mnuBerekeningUitvoer",
                      [&] { ShowBerekeningFile(window, panes, "uitvoer.txt"); });
    window.setCommand("mnuBerekeningInvoer",
                      [&] { ShowBerekeningFile(window, panes, "invoer.txt"); });
    window.setCommand("mnuBerekeningFolder", [&] { ShowBerekeningFolder(window, panes); });
    window.setCommand("mnuBewerkenItem_5", [&] { panes.ZoomFullExtent(); });
}

void SetBrowserCommands(frmMain& window, MainPanes& panes)
{
    frmLocaties& locaties = panes.Locaties();
    window.setCommand("mnuLocatieDelete", [&] { panes.DeleteLocaties(); });
    window.setCommand("mnuBerekeningDelete", [&] { locaties.BerekeningDelete(); });
    window.setCommand("mnuBerekeningRename", [&] { locaties.BerekeningRename(); });
    window.setCommand("mnuProfielDelete", [&] { locaties.ProfielDelete(); });
    window.setCommand("mnuProfielAssign2SelectedLocations", [&] {
        if (locaties.CurrentNodeTag() == navtag::Profiel)
            locaties.ProfielAssign2SelectedLocations(locaties.CurrentNode()->text(0));
    });
    window.setCommand("mnuDijkringCopy", [&] { locaties.DijkringCopy(); });
    window.setCommand("mnuDijkringPaste", [&] { locaties.DijkringPaste(); });
    window.setCommand("mnuDijkringDelete", [&] { locaties.DijkringDelete(); });
    window.setCommand("mnuDijkringRename", [&] { locaties.DijkringRename(); });
}

} // namespace

void SetMainCommands(frmMain& window, MainPanes& panes)
{
    SetViewCommands(window, panes);
    SetBrowserCommands(window, panes);
    window.setCommand("mnuBerekeningStart", [&] { StartBerekening(window, panes); });
    window.setCommand("mnuExtraCheckScheefstand", [&] { CheckScheefstand(panes); });
}
