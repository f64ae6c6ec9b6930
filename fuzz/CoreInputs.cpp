#include "CoreInputs.h"

#include "rekenhart/Fout.h"
#include "rekenhart/files/InvoerLezer.h"

namespace fuzz {

void ReadCoreInput(std::span<const std::byte> input)
{
    const std::string_view bytes(reinterpret_cast<const char*>(input.data()), input.size());
    const rekenhart::InputFile file(bytes);
    try {
        (void)rekenhart::ReadInstellingen(file);
    } catch (const rekenhart::Fout&) { // a told failure
    }
}

} // namespace fuzz
