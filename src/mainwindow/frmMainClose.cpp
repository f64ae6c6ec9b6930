#include "mainwindow/frmMain.h"

#include "frame/Busy.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/ui/WindowPosition.h"
#include "mainwindow/MainStatusBar.h"
#include "mainwindow/Panes.h"
#include "mainwindow/frmAbout.h"
#include "ui_frmMain.h"

#include <QApplication>
#include <QCloseEvent>

namespace {

/// Closing goes on, whatever fails: what can still be stored is stored.
template <typename Step>
void IgnoreErrors(Step&& step)
{
    try {
        step();
    } catch (const std::exception&) {
        // There is no window left to tell it in.
    }
}

} // namespace

void frmMain::mnuHelpAbout_Click()
{
    frmAbout about(this);
    about.exec();
}

void frmMain::closeEvent(QCloseEvent* event)
{
    bool mayClose = true;
    IgnoreErrors([&] { mayClose = CloseRandvoorwaarden(); });
    if (!mayClose) {
        event->ignore();
        return;
    }
    SetBusy();
    m_statusBar->ClearStatusBarText();
    StoreSettings();
    UnloadOtherForms();
    ResetBusy();
    event->accept();
    emit Unloaded();
}

void frmMain::StoreSettings()
{
    QLMIniFile& ini = gIniFile();
    IgnoreErrors([&] {
        if (m_browser && !m_browser->CurrentNodeKey().isEmpty())
            ini.SaveString("Randvoorwaarden", "lastNode", m_browser->CurrentNodeKey());
    });
    IgnoreErrors([&] {
        if (m_shoreFile)
            ini.SaveString("Algemeen", "FetchShapefile", RelativePath(m_shoreFile->Path()));
    });
    IgnoreErrors([&] {
        // "hidden" is the user's wish; a closed window's toolbar is not visible.
        const int state = m_ui->mnuViewToolbarsTopo->isChecked() ? 1 : 0;
        ini.SaveString("SETTINGS", objectName() + "ToolbarState", QString::number(state));
    });
    IgnoreErrors([&] { SaveKwaliteitscodes(ini, m_kwaliteitscodes); });
    IgnoreErrors([&] { SaveWindowPosition(*this, ini); });
    IgnoreErrors([&] {
        if (m_paneSizes)
            m_paneSizes->SavePanes(ini);
    });
}

void frmMain::UnloadOtherForms()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (auto window = windows.crbegin(); window != windows.crend(); ++window) {
        if (*window != this && (*window)->objectName().startsWith("frm"))
            (*window)->close();
    }
}
