// Fuzz target: open, read everything, examine.

#include "ReadEverything.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0; // the case of a test of its own
    ReadEverything({reinterpret_cast<const std::byte*>(data), size});
    return 0;
}
