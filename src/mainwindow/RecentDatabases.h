#pragma once

#include <QString>
#include <QStringList>

class QLMIniFile;

/// The databases opened last, the latest first, as the file menu offers them.
/// They stand in section `Randvoorwaarden` of the program's ini, relative to the
/// program's folder where that can be.

inline constexpr int kRecentDatabases = 8;

/// Absolute paths. Files are not looked for: a network drive may be slow.
QStringList LoadRecentDatabases(QLMIniFile& ini);
void AddRecentDatabase(QLMIniFile& ini, const QString& path);
/// Takes a file off the list that is not there any more.
void ForgetRecentDatabaseWhenGone(QLMIniFile& ini, const QString& path);
