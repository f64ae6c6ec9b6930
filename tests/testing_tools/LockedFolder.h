#pragma once

#include <filesystem>
#include <string>

#ifdef __linux__
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

/// A folder whose files can be neither deleted nor added to while this object lives, as
/// with files that another program holds open on Windows. The superuser minds no
/// permissions, but does mind the file system's own mark; ask Locked, and skip the test
/// where there is none.
class LockedFolder {
public:
    explicit LockedFolder(std::filesystem::path folder) : m_folder(std::move(folder)) { Set(true); }
    ~LockedFolder() { Set(false); }
    LockedFolder(const LockedFolder&) = delete;
    LockedFolder& operator=(const LockedFolder&) = delete;

    [[nodiscard]] bool Locked() const { return m_locked; }

private:
    void Set(bool locked)
    {
        namespace fs = std::filesystem;
        std::error_code ignored;
        fs::permissions(m_folder, fs::perms::owner_write,
                        locked ? fs::perm_options::remove : fs::perm_options::add, ignored);
#ifdef __linux__
        m_locked = locked && geteuid() != 0;
        const int file = open(m_folder.c_str(), O_RDONLY | O_DIRECTORY);
        int flags = 0;
        if (file >= 0 && geteuid() == 0 && ioctl(file, FS_IOC_GETFLAGS, &flags) == 0) {
            flags = locked ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
            m_locked = ioctl(file, FS_IOC_SETFLAGS, &flags) == 0 && locked;
        }
        if (file >= 0)
            close(file);
#else
        m_locked = false;
#endif
    }

    std::filesystem::path m_folder;
    bool m_locked = false;
};
