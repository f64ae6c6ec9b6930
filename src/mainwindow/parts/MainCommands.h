#pragma once

class MainPanes;
class frmMain;

/// Gives the window the menu commands that work on its panes and the database.
void SetMainCommands(frmMain& window, MainPanes& panes);
