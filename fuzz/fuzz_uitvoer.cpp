#include "TextInputs.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::ReadCoreOutput(std::as_bytes(std::span(data, size)));
    return 0;
}
