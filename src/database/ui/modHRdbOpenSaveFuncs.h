#pragma once

#include "database/HRdb.h"

#include <memory>

class QWidget;

/// Asks for a database in `startmap` and opens it checked, as OpenHRdbChecked.
/// The status bar says so meanwhile and gets its text back. Nothing when the
/// user gave up or the file was refused.
std::unique_ptr<HRdb> OpenDatabaseDialog(QWidget* eigenaar, StatusBar& statusbalk,
                                         const QString& startmap, const QString& titel);

/// Tries a file out on an object of its own: checked, so that it may be upgraded.
/// The object is returned closed, with its file name set. A refusal is told in a
/// box, and nothing is returned.
std::unique_ptr<HRdb> OpenHRdbChecked(StatusBar* statusbalk, const QString& pad);
