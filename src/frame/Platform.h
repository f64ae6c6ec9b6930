#pragma once

#include <QString>

/// What differs between Windows and the rest; the only file pair with system
/// headers. Everything here works on native, absolute paths.
namespace platform {

[[nodiscard]] QString UncToDrive(const QString& path);
[[nodiscard]] QString ShortPath(const QString& path);
[[nodiscard]] bool IsSystemFile(const QString& path);
[[nodiscard]] bool HasCaseSensitiveFiles();
/// Ends this process at once, without destructors.
[[noreturn]] void EndProcess(int exitCode);
/// Whether the system still has room for a pipe.
[[nodiscard]] bool CanMakePipe();
/// Lets the screen saver come (true) or keeps it away (false).
void SetScreenSaverActive(bool active);
/// The user's name, empty if unknown.
[[nodiscard]] QString UserName();
/// The user's desktop asks programs for dark windows; false when it does not say.
[[nodiscard]] bool DesktopPrefersDark();

} // namespace platform
