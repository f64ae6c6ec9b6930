#include "MdbInput.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const auto bytes = std::as_bytes(std::span(data, size));
    if (!bytes.empty() && ReadEverything(bytes)) // an empty file has a test of its own
        ChangeEverything(bytes);
    return 0;
}
