#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace jet {

enum class Access { ReadOnly, ReadWrite };
enum class Sharing { Exclusive, Shared };

/// One open file of the operating system. Errors are thrown as Error (Io,
/// DiskFull, ...), with the file's name in the message.
class File {
public:
    virtual ~File() = default;

    virtual std::uint64_t Size() = 0;
    /// Fills `into` wholly or throws.
    virtual void ReadAt(std::uint64_t offset, std::span<std::byte> into) = 0;
    /// Writes all of `bytes` or throws; the file grows when needed.
    virtual void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) = 0;
    virtual void Resize(std::uint64_t size) = 0;
    /// Returns when the device has everything.
    virtual void Sync() = 0;
    /// For a file opened Shared: Exclusive succeeds only while nobody else has it
    /// open, and then keeps everybody out until Shared is asked for again.
    virtual bool TryLock(Sharing sharing) = 0;
};

/// The door to the operating system; the tests put failing and dying ones in
/// its place. The real one is System(): storage/FileSystem_posix.cpp and
/// FileSystem_windows.cpp.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    enum class Mode { ReadOnly, ReadWrite, CreateNew };
    /// Exclusive: nobody else, in this process or another, gets the file until it
    /// is closed (Locked is thrown to whoever comes second). Shared: others may
    /// open it shared too.
    /// Throws FileNotFound, AccessDenied, Locked, AlreadyExists, Io.
    virtual std::unique_ptr<File> Open(const std::filesystem::path& path, Mode mode,
                                       Sharing sharing) = 0;
    virtual bool Exists(const std::filesystem::path& path) = 0;
    /// Whether some process has `path` open and holds locks in it, or keeps others out.
    virtual bool IsInUse(const std::filesystem::path& path) = 0;
    /// No error when there is no such file.
    virtual void Remove(const std::filesystem::path& path) = 0;
    /// Replaces `to` by `from` in one step.
    virtual void Replace(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    /// Makes creations and removals in `folder` last (nothing to do on Windows).
    virtual void SyncFolder(const std::filesystem::path& folder) = 0;
    /// The file's one true path, links followed: companions of a file (its
    /// journal) stand beside it however it was reached.
    virtual std::filesystem::path Resolve(const std::filesystem::path& path) = 0;

    static FileSystem& System();
};

} // namespace jet
