#pragma once

#include <filesystem>

namespace voorbeeld {

/// Writes into `map`: the shore polygons voorbeeldboezem.shp (with .shx and
/// .dbf), the bed-level grid bodem.asc, and the background layers wegen.shp
/// and plaatsen.shp. Throws std::runtime_error when a file cannot be written.
void MaakKaarten(const std::filesystem::path& map);

} // namespace voorbeeld
