#include "qlmgis/RasterCache.h"

namespace qlmgis {

std::shared_ptr<Raster> RasterCache::Find(const std::string& file)
{
    const std::filesystem::path path = std::u8string(file.begin(), file.end());
    const auto size = std::filesystem::file_size(path);
    const auto changed = std::filesystem::last_write_time(path);
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        if (entry->file != file)
            continue;
        if (entry->size == size && entry->changed == changed) {
            m_entries.splice(m_entries.begin(), m_entries, entry);
            return entry->raster;
        }
        m_entries.erase(entry);
        break;
    }
    ++m_parses;
    m_entries.push_front({file, size, changed, std::make_shared<Raster>(file)});
    DropOldest();
    return m_entries.front().raster;
}

void RasterCache::DropOldest()
{
    std::size_t total = 0;
    for (auto entry = m_entries.begin(); entry != m_entries.end();) {
        total += entry->raster->MemoryUse();
        if (total > kMemoryLimit && entry != m_entries.begin())
            entry = m_entries.erase(entry);
        else
            ++entry;
    }
}

} // namespace qlmgis
