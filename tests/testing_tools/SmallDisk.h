#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#ifdef __linux__
#include <sys/mount.h>
#endif

/// A disk of its own of a few megabytes, mounted on a folder. Needs rights that not every
/// user has: ask Mounted, and skip the test without it.
class SmallDisk {
public:
    SmallDisk(const std::filesystem::path& folder, int kilobytes) : m_folder(folder)
    {
        std::filesystem::create_directories(folder);
#ifdef __linux__
        const std::string options = "size=" + std::to_string(kilobytes) + "k";
        m_mounted = mount("none", folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
#else
        static_cast<void>(kilobytes);
#endif
    }
    ~SmallDisk()
    {
#ifdef __linux__
        if (m_mounted)
            umount2(m_folder.c_str(), MNT_DETACH);
#endif
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    [[nodiscard]] bool Mounted() const
    {
        return m_mounted;
    }

    /// Leaves so many bytes free, rounded down to whole pages.
    void FillUpTo(std::uintmax_t freeBytes) const
    {
        const auto available = std::filesystem::space(m_folder).available;
        if (available <= freeBytes)
            return;
        std::ofstream filler(m_folder / "vulling", std::ios::binary | std::ios::app);
        filler << std::string(available - freeBytes, '\0');
    }
    void Free() const
    {
        std::filesystem::remove(m_folder / "vulling");
    }

private:
    std::filesystem::path m_folder;
    bool m_mounted = false;
};
