#include "frame/Platform.h"

#include <array>
#include <cstdlib>
#include <vector>

#include <windows.h>

namespace platform {

namespace {

const wchar_t* Wide(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

QString NetworkName(const QString& drive)
{
    std::vector<char> buffer(2048);
    DWORD size = DWORD(buffer.size());
    const QString root = drive + "\\";
    DWORD result =
        WNetGetUniversalNameW(Wide(root), UNIVERSAL_NAME_INFO_LEVEL, buffer.data(), &size);
    if (result == ERROR_MORE_DATA) {
        buffer.resize(size);
        result = WNetGetUniversalNameW(Wide(root), UNIVERSAL_NAME_INFO_LEVEL, buffer.data(), &size);
    }
    if (result != NO_ERROR)
        return {};
    QString name = QString::fromWCharArray(
        reinterpret_cast<const UNIVERSAL_NAME_INFOW*>(buffer.data())->lpUniversalName);
    while (name.endsWith('\\'))
        name.chop(1);
    return name;
}

} // namespace

QString UncToDrive(const QString& path)
{
    if (!path.startsWith("\\\\"))
        return path;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        const QString drive = QString(QChar(letter)) + ":";
        if (GetDriveTypeW(Wide(drive + "\\")) != DRIVE_REMOTE)
            continue;
        const QString name = NetworkName(drive);
        if (!name.isEmpty() && path.startsWith(name, Qt::CaseInsensitive))
            return drive + path.mid(name.size());
    }
    return path;
}

QString ShortPath(const QString& path)
{
    std::vector<wchar_t> buffer(32768);
    const DWORD length = GetShortPathNameW(Wide(path), buffer.data(), DWORD(buffer.size()));
    return length == 0 || length >= buffer.size()
               ? path
               : QString::fromWCharArray(buffer.data(), int(length));
}

bool IsSystemFile(const QString& path)
{
    const DWORD attributes = GetFileAttributesW(Wide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_SYSTEM) != 0;
}

bool HasCaseSensitiveFiles()
{
    return false;
}

void EndProcess(int exitCode)
{
    TerminateProcess(GetCurrentProcess(), UINT(exitCode));
    std::abort(); // not reached
}

bool CanMakePipe()
{
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    if (!CreatePipe(&readEnd, &writeEnd, nullptr, 0))
        return false;
    CloseHandle(readEnd);
    CloseHandle(writeEnd);
    return true;
}

void SetScreenSaverActive(bool active)
{
    SystemParametersInfoW(SPI_SETSCREENSAVEACTIVE, active ? 1 : 0, nullptr, 0);
}

QString UserName()
{
    std::array<wchar_t, 260> buffer{};
    DWORD size = DWORD(buffer.size());
    return GetUserNameW(buffer.data(), &size) ? QString::fromWCharArray(buffer.data()) : QString();
}

bool DesktopPrefersDark()
{
    DWORD light = 1;
    DWORD size = sizeof light;
    const LSTATUS result = RegGetValueW(
        HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
        L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &light, &size);
    return result == ERROR_SUCCESS && light == 0;
}

} // namespace platform
