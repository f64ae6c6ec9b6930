#pragma once

/// Dutch for the texts of the toolkit itself that a user meets: the menu of a
/// text box, the dialogs for files. Called once, after the application object is
/// made; the toolkit's own Dutch, where it is installed, fills in what is missing here.
void InstallQtTexts();
