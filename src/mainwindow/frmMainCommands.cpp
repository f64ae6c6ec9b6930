#include "mainwindow/frmMain.h"

#include "frame/Globals.h"
#include "frame/ui/MessageBoxes.h"
#include "mainwindow/Commands.h"
#include "mainwindow/Panes.h"
#include "ui_frmMain.h"

#include <QActionGroup>
#include <QMenu>

#include <stdexcept>

// When a command can be given, and on what road it travels: menu entry, toolbar
// button, handler.

void frmMain::BuildMenus()
{
    // Part of the entry behind it: both go with the locations.
    QAction* separator = m_ui->mnuBewerken->insertSeparator(m_ui->mnuBewerkenAddLocatie);
    separator->setObjectName("mnuBewerkenSep2");

    for (QMenu* menu : m_ui->menubar->findChildren<QMenu*>()) {
        for (QAction* action : menu->actions()) {
            const QString name = action->objectName();
            if (name.isEmpty() || action->isSeparator())
                continue;
            m_menuOf.insert(name, menu->objectName());
            m_entries.insert(name, Entry());
            // Above all panes: a pane's own use of the key does not hide the command.
            action->setShortcutContext(Qt::WindowShortcut);
            connect(action, &QAction::triggered, this, [this, name] { RunCommand(name); });
        }
    }
    auto* tools = new QActionGroup(this); // one of them is down: the menu shows dots, not ticks
    for (const ToolbarButton& button : ToolbarButtons()) {
        if (button.mapTool)
            tools->addAction(MenuAction(button.menu));
    }
}

void frmMain::BuildToolbar()
{
    QFont font("MS Sans Serif", 8);
    font.setBold(true);
    m_ui->tlbTopo->setFont(font);
    m_ui->tlbTopo->setIconSize(QSize(24, 24));
    for (int index = 0; index < ToolbarButtons().size(); ++index) {
        auto* action = new QAction(m_ui->tlbTopo);
        const ToolbarButton& button = ToolbarButtons()[index];
        if (button.mapTool) {
            action->setCheckable(true);
            m_tools->addAction(action);
        } else if (button.command == 13) {
            action->setCheckable(true);
        }
        m_ui->tlbTopo->addAction(action);
        if (index == 4 || index == 6 || index == 10)
            m_ui->tlbTopo->addSeparator();
        connect(action, &QAction::triggered, this,
                [this, index] { RunHandler([this, index] { ToolbarsClick(index); }); });
        m_buttons.append(action);
    }
    m_buttons[0]->setChecked(true);
    PaintIcons();
}

void frmMain::PaintIcons()
{
    for (int index = 0; index < m_buttons.size(); ++index)
        m_buttons[index]->setIcon(CommandIcon(ToolbarButtons()[index].command, palette()));
}

QAction* frmMain::MenuAction(const QString& menu) const
{
    auto* action = findChild<QAction*>(menu);
    if (!action || !m_entries.contains(menu))
        throw std::invalid_argument("no menu entry " + menu.toStdString());
    return action;
}

void frmMain::setCommand(const QString& menu, std::function<void()> handler)
{
    MenuAction(menu);
    m_entries[menu].handler = std::move(handler);
    UpdateEntry(menu);
}

void frmMain::setCommandEnabled(const QString& menu, bool enabled)
{
    MenuAction(menu);
    m_entries[menu].allowed = enabled;
    UpdateEntry(menu);
}

bool frmMain::MayRun(const QString& menu) const
{
    const Entry& entry = m_entries[menu];
    const bool needsDatabase = DatabaseMenus().contains(m_menuOf[menu]);
    return entry.handler && entry.allowed && (!needsDatabase || m_databaseShown);
}

void frmMain::UpdateEntry(const QString& menu)
{
    const bool enabled = MayRun(menu);
    MenuAction(menu)->setEnabled(enabled);
    const int index = menu == "mnuProfielAdd" ? ButtonIndexOfCommand(8) : ButtonIndexOfMenu(menu);
    if (index < 0)
        return;
    const ToolbarButton& button = ToolbarButtons()[index];
    // The tools of the map serve its background layers too, with no database.
    const bool mapAlone = button.mapTool || button.command == 3;
    // The profile button makes a new one where no profile is current.
    const QString given = button.command == 8 ? MenuOfButton(index) : menu;
    const bool usable = mapAlone ? m_entries[menu].handler != nullptr : MayRun(given);
    m_buttons[index]->setEnabled(usable && !m_disabledButtons.contains(button.command));
}

void frmMain::RunCommand(const QString& menu)
{
    RunHandler([&] {
        // Those of this menu are buttons by another name; any other entry acts by itself, also on
        // a node that its button does nothing for.
        const int index = m_menuOf[menu] == "mnuBewerken" ? ButtonIndexOfMenu(menu) : -1;
        if (index >= 0)
            ToolbarsClick(index);
        else if (MayRun(menu))
            m_entries[menu].handler();
    });
}

QString frmMain::MenuOfButton(int buttonIndex) const
{
    const ToolbarButton& button = ToolbarButtons()[buttonIndex];
    const QString tag = m_browser ? m_browser->CurrentNodeTag() : QString();
    if (button.command == 8)
        return tag == "PROFIEL" ? "mnuProfielEdit" : "mnuProfielAdd";
    if (button.command == 9 && tag != "DIJKRING")
        return QString();
    return button.menu;
}

void frmMain::ToolbarsClick(int buttonIndex)
{
    if (buttonIndex < 0 || buttonIndex >= ToolbarButtons().size())
        return;
    const ToolbarButton& button = ToolbarButtons()[buttonIndex];
    if (button.mapTool) {
        SelectTool(buttonIndex);
    } else if (button.command == 13) {
        ToggleLabels();
    } else {
        const QString menu = MenuOfButton(buttonIndex);
        const bool mapAlone = button.command == 3;
        if (!menu.isEmpty() && m_entries[menu].handler && (mapAlone || MayRun(menu)))
            m_entries[menu].handler();
    }
}

void frmMain::SelectTool(int buttonIndex)
{
    const ToolbarButton& chosen = ToolbarButtons()[buttonIndex];
    for (int index = 0; index < m_buttons.size(); ++index) {
        if (!ToolbarButtons()[index].mapTool)
            continue;
        m_buttons[index]->setChecked(index == buttonIndex);
        MenuAction(ToolbarButtons()[index].menu)->setChecked(index == buttonIndex);
    }
    if (m_map)
        m_map->SelectTool(chosen.command, CursorOfMapPointer(chosen.mapPointer));
}

void frmMain::ToggleLabels()
{
    m_labels.shown = !m_labels.shown;
    m_buttons[ButtonIndexOfCommand(13)]->setChecked(m_labels.shown);
    m_ui->mnuBewerkenLabels->setChecked(m_labels.shown);
    if (m_map)
        m_map->ShowLabels(m_labels.shown);
    SaveLabelStatus(gIniFile(), m_labels.shown);
}

int frmMain::GetChekedButton() const
{
    for (int index = 0; index < m_buttons.size(); ++index) {
        if (ToolbarButtons()[index].mapTool && m_buttons[index]->isChecked())
            return index;
    }
    return -1;
}

int frmMain::GetButtonIndexByIconIndex(int command) const
{
    return ButtonIndexOfCommand(command);
}

void frmMain::SetEnableButton(int command, bool enabled)
{
    const int index = ButtonIndexOfCommand(command);
    if (index < 0)
        return;
    if (enabled)
        m_disabledButtons.remove(command);
    else
        m_disabledButtons.insert(command);
    UpdateEntry(ToolbarButtons()[index].menu);
}

void frmMain::UpdateMenus()
{
    m_databaseShown = m_database && m_database->IsOpen();
    for (const QString& menu : DatabaseMenus())
        findChild<QMenu*>(menu)->menuAction()->setEnabled(m_databaseShown);
    const bool hasLocations = m_browser && m_browser->HasLocations();
    findChild<QAction*>("mnuBewerkenSep2")->setEnabled(hasLocations);
    m_entries["mnuBewerkenAddLocatie"].allowed = hasLocations;
    for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry)
        UpdateEntry(entry.key());
}
