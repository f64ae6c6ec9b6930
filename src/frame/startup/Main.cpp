#include "frame/startup/Main.h"

#include "frame/Busy.h"
#include "frame/Convert.h"
#include "frame/FileSystemObject.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMFile.h"
#include "frame/QLMIniFile.h"
#include "frame/SingleObject.h"
#include "frame/Texts.h"
#include "frame/startup/Assembly.h"
#include "frame/startup/EnvironmentChecks.h"
#include "frame/startup/PreviousInstance.h"
#include "frame/ui/MessageBoxes.h"
#include "mainwindow/PaneSizes.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/frmSplash.h"

#include <QApplication>

namespace {

constexpr int kRefused = 1;

/// Thrown behind a box that said why the program does not start.
struct Refused {};

void RefuseIf(const std::optional<QString>& text)
{
    if (!text)
        return;
    ResetBusy();
    WrappedFoutBox(nullptr, BoxTitle(), *text);
    throw Refused();
}

/// True when this instance should end.
bool ActivatePrevInstance(PreviousInstance& previous)
{
    if (previous.Activate())
        return true;
    // It holds the lock and nobody listens: go on beside it, under another
    // title, so that nobody takes this window for the first one.
    if (previous.Exists())
        SetApplicationTitle("unwanted instance");
    return false;
}

/// Behind the close of the main window, which has stored its settings.
void ReleaseGlobals()
{
    gMapResultaatForm.Release();
    gMainForm.Release();
    gSingleObject.Release();
    gMapSelection.Release();
    gStrijklengte.Release();
    gPaneSizes.Release();
    gIniFile.Release(); // writes its changes
    gHRdb.Release();
    gFile.Release();
    gFso.Release();
    gConvert.Release();
}

void LoadMainWindow()
{
    frmSplash splash;
    splash.ShowNow();
    SetExtraOpties(false);
    gFso.Set(std::make_shared<FileSystemObject>());
    gMainForm.Set(std::make_shared<frmMain>());
    AssembleMainWindow(gMainForm());
    gMainForm().Load();
}

} // namespace

bool IsInDevelopment()
{
    return false;
}

int Main()
{
    // Given up last: the next instance finds the settings of this one written.
    std::unique_ptr<PreviousInstance> previous;
    try {
        gPaneSizes.SetFactory([] { return std::make_shared<PaneSizes>(); });
        gSingleObject.SetFactory([] { return std::make_shared<SingleObject>(); });
        gIniFile.Set(std::make_shared<QLMIniFile>());
        SetBusy();
        previous = std::make_unique<PreviousInstance>();
        if (previous->Exists() && ActivatePrevInstance(*previous))
            return 0;
        RefuseIf(CheckScreen(DisplayInfo()));
        SetLanguage(QString());
        SetIniPath(AbsolutePath(gIniFile().GetString("IniBestanden", "IniPath")));
        SetRekeninstellingenPath(
            AbsolutePath(gIniFile().GetString("RekeninstellingenBestanden", "IniPath")));
        RefuseIf(CheckRequiredFiles());
        LoadMainWindow();
        if (!gMainForm().IsLoaded()) {
            ResetBusy();
            ReleaseGlobals();
            return kRefused;
        }
        frmMain& window = gMainForm();
        QObject::connect(&window, &frmMain::Unloaded, qApp, &QCoreApplication::quit,
                         Qt::QueuedConnection);
        QObject::connect(previous.get(), &PreviousInstance::Knocked, &window,
                         [&window] { BringForward(window); });
        window.show();
        QApplication::processEvents();
        window.Initialiseer();
        ResetBusy();
        if (window.isVisible()) // a box of Initialiseer may have let the user close it
            QApplication::exec();
    } catch (const Refused&) {
        ReleaseGlobals();
        return kRefused;
    } catch (const std::exception& error) {
        ReportError(error);
        ResetBusy();
        ReleaseGlobals();
        return kRefused;
    }
    ReleaseGlobals();
    return 0;
}
