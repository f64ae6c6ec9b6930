#pragma once

#include <cstddef>
#include <span>

namespace fuzz {

/// A legend file (.zlb).
void ReadLegend(std::span<const std::byte> input);

/// The core's frequency line, read, clipped and scaled.
void ReadFrequencyLine(std::span<const std::byte> input);

/// What the core printed or wrote, as the viewers and the batch read it.
void ReadCoreOutput(std::span<const std::byte> input);

/// An ini file: reads, changes and removals; the text must stay one that reads again.
void ReadIni(std::span<const std::byte> input);

} // namespace fuzz
