// Fuzz target: open, read everything, examine.

#include "ReadEverything.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ReadEverything({reinterpret_cast<const std::byte*>(data), size});
    return 0;
}
