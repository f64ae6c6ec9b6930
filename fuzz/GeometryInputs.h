#pragma once

#include <cstddef>
#include <span>
#include <string>

/// What the fuzz targets do with their bytes; the tests call the same functions
/// with damaged files. They may throw nothing and must end.
namespace fuzz {

/// The main file and, behind it, the index; the first two bytes say where the
/// main file ends (in units of four bytes, little-endian).
void ReadShapeFile(std::span<const std::byte> input);

/// A dBASE table, as the map's layers read it.
void ReadDbaseTable(std::span<const std::byte> input);

/// An ARC/INFO ASCII grid: the dialogs' header reader and the GIS library.
void ReadAsciiGrid(std::span<const std::byte> input);

} // namespace fuzz
