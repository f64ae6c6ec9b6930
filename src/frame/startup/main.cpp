#include "frame/startup/Main.h"
#include "frame/Paths.h"
#include "frame/Platform.h"
#include "frame/ui/DesktopTheme.h"
#include "frame/ui/MessageBoxes.h"
#include "frame/ui/QtTexts.h"
#include "mainwindow/Commands.h"

#include <QApplication>

namespace {

/// What escapes the error frame of a handler ends in a box, and the user can
/// still save what is open; otherwise it would end the program.
class Application : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
        bool handled = false;
        RunHandler([&] { handled = QApplication::notify(receiver, event); });
        return handled;
    }
};

} // namespace

int main(int argc, char** argv)
{
    int result = 0;
    {
        Application application(argc, argv);
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
