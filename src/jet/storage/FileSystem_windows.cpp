#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/storage/FileSystem.h"

#include <algorithm>
#include <windows.h>

namespace jet {
namespace {

/// The one place where a Windows error code becomes an error.
[[noreturn]] void ThrowWindowsError(DWORD error, const std::string& what,
                                    const std::filesystem::path& path)
{
    const std::string name = Utf8FromPath(path);
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
        throw Error(ErrorKind::FileNotFound, "Het bestand " + name + " bestaat niet.");
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
        throw Error(ErrorKind::AccessDenied, what + " " + name + " is niet toegestaan.");
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        throw Error(ErrorKind::Locked, "Het bestand " + name +
                                           " is al geopend, door dit programma of door een ander.");
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        throw Error(ErrorKind::AlreadyExists, "Het bestand " + name + " bestaat al.");
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        throw Error(ErrorKind::DiskFull, what + " " + name + " is mislukt: de schijf is vol.");
    default:
        throw Error(ErrorKind::Io,
                    what + " " + name + " is mislukt: Windows-fout " + std::to_string(error) + ".");
    }
}

// Where the users of a file opened Shared hold their presence: one byte far
// behind any data. Everybody holds it shared; who is alone can have it exclusive.
constexpr DWORD kPresenceHigh = 0x7FFFFFFF;

class WindowsFile : public File {
public:
    WindowsFile(HANDLE handle, std::filesystem::path path)
        : m_handle(handle), m_path(std::move(path))
    {}
    ~WindowsFile() override { CloseHandle(m_handle); }

    std::uint64_t Size() override
    {
        LARGE_INTEGER size;
        if (!GetFileSizeEx(m_handle, &size))
            ThrowWindowsError(GetLastError(), "Opvragen van de grootte van", m_path);
        return static_cast<std::uint64_t>(size.QuadPart);
    }

    void ReadAt(std::uint64_t offset, std::span<std::byte> into) override
    {
        while (!into.empty()) {
            OVERLAPPED place = Place(offset);
            DWORD n = 0;
            if (!ReadFile(m_handle, into.data(), Portion(into.size()), &n, &place) &&
                GetLastError() != ERROR_HANDLE_EOF)
                ThrowWindowsError(GetLastError(), "Lezen van", m_path);
            if (n == 0)
                throw Error(ErrorKind::Io, "Lezen van " + Utf8FromPath(m_path) +
                                               " is mislukt: het bestand is korter dan verwacht.");
            offset += n;
            into = into.subspan(n);
        }
    }

    void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override
    {
        while (!bytes.empty()) {
            OVERLAPPED place = Place(offset);
            DWORD n = 0;
            if (!WriteFile(m_handle, bytes.data(), Portion(bytes.size()), &n, &place))
                ThrowWindowsError(GetLastError(), "Schrijven van", m_path);
            if (n == 0)
                ThrowWindowsError(ERROR_DISK_FULL, "Schrijven van", m_path);
            offset += n;
            bytes = bytes.subspan(n);
        }
    }

    void Resize(std::uint64_t size) override
    {
        FILE_END_OF_FILE_INFO end;
        end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
        if (!SetFileInformationByHandle(m_handle, FileEndOfFileInfo, &end, sizeof end))
            ThrowWindowsError(GetLastError(), "Aanpassen van de grootte van", m_path);
    }

    void Sync() override
    {
        if (!FlushFileBuffers(m_handle))
            ThrowWindowsError(GetLastError(), "Naar schijf schrijven van", m_path);
    }

    bool TryLock(Sharing sharing) override
    {
        if (sharing == Sharing::Shared) {
            // A shared lock may lie over an exclusive one of the same handle, which
            // is the first to go when one is given up: there is no moment without.
            if (!Lock(Sharing::Shared))
                return false;
            Unlock();
            return true;
        }
        // The other way a lock cannot be converted: it is given up and taken anew.
        Unlock();
        if (Lock(Sharing::Exclusive))
            return true;
        if (!Lock(Sharing::Shared))
            ThrowWindowsError(ERROR_SHARING_VIOLATION, "Vergrendelen van", m_path);
        return false;
    }

    bool Lock(Sharing sharing)
    {
        OVERLAPPED place{};
        place.OffsetHigh = kPresenceHigh;
        const DWORD flags = LOCKFILE_FAIL_IMMEDIATELY |
                            (sharing == Sharing::Exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0);
        if (LockFileEx(m_handle, flags, 0, 1, 0, &place))
            return true;
        const DWORD error = GetLastError();
        if (error != ERROR_LOCK_VIOLATION && error != ERROR_IO_PENDING)
            ThrowWindowsError(error, "Vergrendelen van", m_path);
        return false;
    }

private:
    void Unlock()
    {
        OVERLAPPED place{};
        place.OffsetHigh = kPresenceHigh;
        UnlockFileEx(m_handle, 0, 1, 0, &place);
    }

    static OVERLAPPED Place(std::uint64_t offset)
    {
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(offset >> 32);
        return place;
    }

    static DWORD Portion(std::size_t size)
    {
        return static_cast<DWORD>(std::min<std::size_t>(size, 1u << 30));
    }

    HANDLE m_handle;
    std::filesystem::path m_path;
};

/// Virus scanners and indexers open files for a moment, new and deleted ones
/// above all: what they get in the way of is tried again.
template <typename Attempt>
DWORD TryAgainWhileBusy(Attempt attempt)
{
    constexpr int kTries = 8;
    constexpr DWORD kPause = 25; // ms
    for (int i = 1;; ++i) {
        if (attempt())
            return ERROR_SUCCESS;
        const DWORD error = GetLastError();
        const bool busy = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
                          error == ERROR_LOCK_VIOLATION;
        if (!busy || i == kTries)
            return error;
        Sleep(kPause);
    }
}

class WindowsFileSystem : public FileSystem {
public:
    std::unique_ptr<File> Open(const std::filesystem::path& path, Mode mode,
                               Sharing sharing) override
    {
        const DWORD attributes = GetFileAttributesW(path.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
            throw Error(ErrorKind::NotADatabase, Utf8FromPath(path) + " is geen bestand.");
        const DWORD access = mode == Mode::ReadOnly ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
        const DWORD share = sharing == Sharing::Exclusive ? 0
                            : mode == Mode::CreateNew     ? FILE_SHARE_READ
                                                          : FILE_SHARE_READ | FILE_SHARE_WRITE;
        HANDLE handle = INVALID_HANDLE_VALUE;
        const auto open = [&] {
            handle = CreateFileW(path.c_str(), access, share, nullptr,
                                 mode == Mode::CreateNew ? CREATE_NEW : OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr);
            return handle != INVALID_HANDLE_VALUE;
        };
        if (mode == Mode::CreateNew) {
            if (const DWORD error = TryAgainWhileBusy(open))
                ThrowWindowsError(error, "Openen van", path);
        } else if (!open()) {
            ThrowWindowsError(GetLastError(), "Openen van", path);
        }
        auto file = std::make_unique<WindowsFile>(handle, path);
        if (sharing == Sharing::Shared && !file->Lock(Sharing::Shared))
            ThrowWindowsError(ERROR_SHARING_VIOLATION, "Openen van", path);
        return file;
    }

    bool Exists(const std::filesystem::path& path) override
    {
        return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    bool IsInUse(const std::filesystem::path& path) override
    {
        const HANDLE handle = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            CloseHandle(handle);
            return false;
        }
        const DWORD error = GetLastError();
        return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
    }

    void Remove(const std::filesystem::path& path) override
    {
        const DWORD error = TryAgainWhileBusy([&] { return DeleteFileW(path.c_str()) != 0; });
        if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND)
            ThrowWindowsError(error, "Verwijderen van", path);
    }

    void Replace(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        const DWORD error = TryAgainWhileBusy([&] {
            return MoveFileExW(from.c_str(), to.c_str(),
                               MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
        });
        if (error != ERROR_SUCCESS)
            ThrowWindowsError(error, "Vervangen van", to);
    }

    void SyncFolder(const std::filesystem::path&) override {}

    std::filesystem::path Resolve(const std::filesystem::path& path) override
    {
        std::error_code error;
        std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
        return error ? path : resolved;
    }
};

} // namespace

FileSystem& FileSystem::System()
{
    static WindowsFileSystem system;
    return system;
}

} // namespace jet
