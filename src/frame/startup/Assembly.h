#pragma once

class frmMain;

/// Ties the main window to its panes, commands and database. This is the place
/// where a form that has become ready gets its menu entry:
///
///     window.setCommand("mnuLocatieBoezempeil", [&window] { ... });
void AssembleMainWindow(frmMain& window);
