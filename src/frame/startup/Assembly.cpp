#include "frame/startup/Assembly.h"

#include "frame/Globals.h"
#include "mainwindow/frmMain.h"

void AssembleMainWindow(frmMain& window)
{
    window.setPaneSizes(&gPaneSizes());
}
