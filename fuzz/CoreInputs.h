#pragma once

#include <cstddef>
#include <span>

namespace fuzz {

/// An input file of the calculation core: its lines, and the settings they hold.
void ReadCoreInput(std::span<const std::byte> input);

} // namespace fuzz
