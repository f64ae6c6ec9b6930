#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/storage/FileSystem.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace jet {
namespace {

/// The one place where an errno becomes an error; `what` begins the sentence.
[[noreturn]] void ThrowErrno(int error, const std::string& what, const std::filesystem::path& path)
{
    const std::string name = Utf8FromPath(path);
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        throw Error(ErrorKind::FileNotFound, "Het bestand " + name + " bestaat niet.");
    case EACCES:
    case EPERM:
    case EROFS:
        throw Error(ErrorKind::AccessDenied, what + " " + name + " is niet toegestaan.");
    case EEXIST:
        throw Error(ErrorKind::AlreadyExists, "Het bestand " + name + " bestaat al.");
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        throw Error(ErrorKind::DiskFull, what + " " + name + " is mislukt: de schijf is vol.");
    default:
        throw Error(ErrorKind::Io,
                    what + " " + name + " is mislukt: " + std::strerror(error) + ".");
    }
}

[[noreturn]] void ThrowLocked(const std::filesystem::path& path)
{
    throw Error(ErrorKind::Locked, "Het bestand " + Utf8FromPath(path) +
                                       " is al geopend, door dit programma of door een ander.");
}

class PosixFile : public File {
public:
    PosixFile(int descriptor, std::filesystem::path path)
        : m_descriptor(descriptor), m_path(std::move(path))
    {}
    ~PosixFile() override { ::close(m_descriptor); }

    std::uint64_t Size() override
    {
        struct stat status {};
        if (::fstat(m_descriptor, &status) != 0)
            ThrowErrno(errno, "Opvragen van de grootte van", m_path);
        return static_cast<std::uint64_t>(status.st_size);
    }

    void ReadAt(std::uint64_t offset, std::span<std::byte> into) override
    {
        while (!into.empty()) {
            const ssize_t n =
                ::pread(m_descriptor, into.data(), into.size(), static_cast<off_t>(offset));
            if (n < 0 && errno == EINTR)
                continue;
            if (n < 0)
                ThrowErrno(errno, "Lezen van", m_path);
            if (n == 0)
                throw Error(ErrorKind::Io, "Lezen van " + Utf8FromPath(m_path) +
                                               " is mislukt: het bestand is korter dan verwacht.");
            offset += static_cast<std::uint64_t>(n);
            into = into.subspan(static_cast<std::size_t>(n));
        }
    }

    void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override
    {
        while (!bytes.empty()) {
            const ssize_t n =
                ::pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
            if (n < 0 && errno == EINTR)
                continue;
            if (n < 0)
                ThrowErrno(errno, "Schrijven van", m_path);
            offset += static_cast<std::uint64_t>(n);
            bytes = bytes.subspan(static_cast<std::size_t>(n));
        }
    }

    void Resize(std::uint64_t size) override
    {
        if (::ftruncate(m_descriptor, static_cast<off_t>(size)) != 0)
            ThrowErrno(errno, "Aanpassen van de grootte van", m_path);
    }

    void Sync() override
    {
        if (::fsync(m_descriptor) != 0)
            ThrowErrno(errno, "Naar schijf schrijven van", m_path);
    }

    bool TryLock(Sharing sharing) override
    {
        const int wanted = sharing == Sharing::Exclusive ? LOCK_EX : LOCK_SH;
        if (::flock(m_descriptor, wanted | LOCK_NB) == 0)
            return true;
        if (errno != EWOULDBLOCK)
            ThrowErrno(errno, "Vergrendelen van", m_path);
        // A refused conversion gives the old lock up as well. Taken back at once:
        // whoever slipped in between holds it shared as we do, or keeps us out.
        if (sharing == Sharing::Exclusive && ::flock(m_descriptor, LOCK_SH | LOCK_NB) != 0)
            ThrowLocked(m_path);
        return false;
    }

    int Descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
    std::filesystem::path m_path;
};

class PosixFileSystem : public FileSystem {
public:
    std::unique_ptr<File> Open(const std::filesystem::path& path, Mode mode,
                               Sharing sharing) override
    {
        const int flags = mode == Mode::ReadOnly    ? O_RDONLY
                          : mode == Mode::ReadWrite ? O_RDWR
                                                    : O_RDWR | O_CREAT | O_EXCL;
        // O_NONBLOCK: a pipe under this name must not hang us; no effect on files.
        const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0666);
        if (descriptor < 0 && errno == EISDIR)
            ThrowNoFile(path);
        if (descriptor < 0)
            ThrowErrno(errno, "Openen van", path);
        auto file = std::make_unique<PosixFile>(descriptor, path);
        struct stat status {};
        if (::fstat(descriptor, &status) != 0)
            ThrowErrno(errno, "Openen van", path);
        if (!S_ISREG(status.st_mode))
            ThrowNoFile(path);
        // A flock belongs to this opening of the file, not to the process: it keeps
        // out a second opening in this process too.
        if (::flock(descriptor, (sharing == Sharing::Exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB) !=
            0) {
            if (errno == EWOULDBLOCK)
                ThrowLocked(path);
            if (mode != Mode::ReadOnly) // a share without locks can still be read
                ThrowErrno(errno, "Vergrendelen van", path);
        }
        return file;
    }

    bool Exists(const std::filesystem::path& path) override
    {
        std::error_code error;
        return std::filesystem::exists(path, error);
    }

    bool IsInUse(const std::filesystem::path& path) override
    {
        const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        if (descriptor < 0)
            return errno != ENOENT && errno != ENOTDIR; // kept from us: somebody is there
        // Windows users of a share hold byte locks, which arrive here as these.
        struct flock range {};
        range.l_type = F_WRLCK;
        range.l_whence = SEEK_SET;
        const bool byteLocks = ::fcntl(descriptor, F_GETLK, &range) == 0 && range.l_type != F_UNLCK;
        const bool wholeLock = ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        ::close(descriptor);
        return byteLocks || wholeLock;
    }

    void Remove(const std::filesystem::path& path) override
    {
        if (::unlink(path.c_str()) != 0 && errno != ENOENT)
            ThrowErrno(errno, "Verwijderen van", path);
    }

    void Replace(const std::filesystem::path& from, const std::filesystem::path& to) override
    {
        if (::rename(from.c_str(), to.c_str()) != 0)
            ThrowErrno(errno, "Vervangen van", to);
    }

    void SyncFolder(const std::filesystem::path& folder) override
    {
        const int descriptor =
            ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0)
            ThrowErrno(errno, "Openen van", folder);
        const int error = ::fsync(descriptor) == 0 ? 0 : errno;
        ::close(descriptor);
        // File systems that cannot flush a folder say so in one of these ways.
        if (error != 0 && error != EINVAL && error != ENOTSUP)
            ThrowErrno(error, "Naar schijf schrijven van", folder);
    }

    std::filesystem::path Resolve(const std::filesystem::path& path) override
    {
        std::error_code error;
        std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
        return error ? path : resolved;
    }

private:
    [[noreturn]] static void ThrowNoFile(const std::filesystem::path& path)
    {
        throw Error(ErrorKind::NotADatabase, Utf8FromPath(path) + " is geen bestand.");
    }
};

} // namespace

FileSystem& FileSystem::System()
{
    static PosixFileSystem system;
    return system;
}

} // namespace jet
