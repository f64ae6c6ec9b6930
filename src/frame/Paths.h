#pragma once

#include <QString>

/// Paths of the system.
///
/// Ini files keep ".\" paths with backslashes on every platform. Everything
/// below takes "\" and the platform's own separator; all but RelativePath and
/// RelativeToFolder give the platform's own.

/// "Zandvoet", until the environment check of a second instance changes it.
[[nodiscard]] QString ApplicationTitle();
void SetApplicationTitle(const QString& title);

/// The folder of the running program, unless set (tests).
[[nodiscard]] QString ProgramFolder();
void SetProgramFolder(const QString& folder);

/// THE way from a path to the disc: whoever opens, finds or makes a file or
/// folder by name does it under ResolvePath(name).
/// Turns the separators into the platform's. On a case-sensitive file system a
/// component that does not exist is looked for regardless of case; from the
/// first that is not found at all on, the names stay as given.
[[nodiscard]] QString ResolvePath(const QString& path);

/// Whether a file (not a folder), or a folder, exists under ResolvePath.
[[nodiscard]] bool FileExists(const QString& path);
[[nodiscard]] bool FolderExists(const QString& path);

/// For everything read from an ini. A path with a "." in front counts from the
/// program's folder, any other from the current one; blank gives empty.
/// The result is resolved (see ResolvePath).
[[nodiscard]] QString AbsolutePath(const QString& path);

/// For everything written to an ini: ".\" and the rest for what lies below the
/// program's folder, otherwise the absolute path, never with "..\".
/// The test compares the bare text of the folder, case ignored: "C:\Zand" is
/// taken for a parent of "C:\Zandvoet\x", too.
[[nodiscard]] QString RelativePath(const QString& path);
[[nodiscard]] QString RelativeToFolder(const QString& path, const QString& folder);

/// A network name below a mapped drive with that drive's (lower-case) letter;
/// anything else, and everything outside Windows, as it stands.
[[nodiscard]] QString UncToDrive(const QString& path);

/// Where the last "\" or separator of the platform stands; -1 without one.
[[nodiscard]] qsizetype LastSeparator(const QString& path);

/// Adds the platform's separator, unless the path is empty or ends in one.
[[nodiscard]] QString AddBackslash(const QString& path);

/// The program, or run-time library, that an ini names for Windows
/// (".\Rekenprogramma.exe", ".\QLMGis.dll"), as this platform calls it: outside
/// Windows "Rekenprogramma" and "QLMGis.so" (or "libQLMGis.so") when they exist.
/// Apply to the result of AbsolutePath.
[[nodiscard]] QString ProgramFile(const QString& path);
[[nodiscard]] QString LibraryFile(const QString& path);

/// Read-only means: nobody, not even an administrator, should write to it.
[[nodiscard]] bool IsReadOnly(const QString& path);
bool SetReadOnly(const QString& path, bool readOnly);

/// The temporary folder, with a separator at its end.
[[nodiscard]] QString GetTempFolder();
/// The user's name, or "onbekend".
[[nodiscard]] QString GetUserName();

/// For names of locations: not empty, no "." in front, none of _\/:*?<>|"
[[nodiscard]] bool IsValidName(const QString& name);
/// For names of dike rings and calculations: the same with !.[]`'\/:*?<>|"
[[nodiscard]] bool IsValidDbName(const QString& name);
