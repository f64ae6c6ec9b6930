#include "frame/startup/Main.h"
#include "frame/Paths.h"
#include "frame/Platform.h"
#include "frame/ui/DesktopTheme.h"
#include "frame/ui/MessageBoxes.h"
#include "frame/ui/QtTexts.h"
#include "mainwindow/Commands.h"

#include <QApplication>

int main(int argc, char** argv)
{
    int result = 0;
    {
        QApplication application(argc, argv);
        QApplication::setApplicationName(ApplicationTitle());
        QApplication::setQuitOnLastWindowClosed(false); // the close routine quits
        FollowDesktopTheme(platform::DesktopPrefersDark());
        QApplication::setWindowIcon(ProgramIcon());
        InstallQtTexts();
        InstallWindowParts();
        result = Main();
    }
    // Components of the desktop do not always let a process end by itself.
    if (!IsInDevelopment())
        platform::EndProcess(result);
    return result;
}
