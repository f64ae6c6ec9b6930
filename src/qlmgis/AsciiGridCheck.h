#pragma once

#include <string>

namespace qlmgis {

/// Whether every cell of an ARC/INFO ASCII grid is a number, and the cells are
/// as many as its header says. GDAL takes text for 0 and a comma for a decimal
/// point; a bed level made of that would be wrong without a word.
/// Throws std::runtime_error if not.
void CheckAsciiGrid(const std::string& file, std::size_t columns, std::size_t rows);

} // namespace qlmgis
