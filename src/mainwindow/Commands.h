#pragma once

#include <QCursor>
#include <QIcon>
#include <QList>
#include <QPalette>
#include <QString>

/// The twelve buttons of the toolbar. Commands are numbered as they always were;
/// 12 is a map tool without a button.
struct ToolbarButton {
    int command;
    bool mapTool;     ///< one of the tools of which exactly one is down
    int mapPointer;   ///< pointer of the map while the tool is down
    const char* tip;  ///< fixed tool tip; otherwise the caption of its menu entry
    const char* menu; ///< the menu entry that does the same
};

const QList<ToolbarButton>& ToolbarButtons();
/// -1 when no button has the command.
int ButtonIndexOfCommand(int command);
/// -1 when the menu entry has no button.
int ButtonIndexOfMenu(const QString& menu);

/// The pointers of map tools: 0 arrow, 2 cross, 52 looking glass, 53 hand.
QCursor CursorOfMapPointer(int mapPointer);

/// The picture of a command, its lines in the text colour of `palette`, for
/// screens of any resolution.
QIcon CommandIcon(int command, const QPalette& palette);

/// The picture of the program.
QIcon ProgramIcon();

/// The menus that are of use only while a database is open.
const QStringList& DatabaseMenus();
