#pragma once

#include "qlmgis/Raster.h"

#include <filesystem>
#include <list>
#include <memory>
#include <string>

namespace qlmgis {

/// The grids of this run of the program, by path, size and time.
class RasterCache {
public:
    std::shared_ptr<Raster> Find(const std::string& file);
    std::size_t Parses() const { return m_parses; }

    static constexpr std::size_t kMemoryLimit = std::size_t(1024) * 1024 * 1024;

private:
    struct Entry {
        std::string file;
        std::uintmax_t size;
        std::filesystem::file_time_type changed;
        std::shared_ptr<Raster> raster;
    };

    void DropOldest();

    std::list<Entry> m_entries; // the one used last in front
    std::size_t m_parses = 0;
};

} // namespace qlmgis
