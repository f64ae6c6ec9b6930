#include "MinimalDatabase.h"

#include "jet/base/ByteOrder.h"

#include <cstring>
#include <string_view>

namespace jet_testing {

Bytes MinimalDatabase(jet::PageNumber pages, jet::FileVersion version)
{
    using namespace jet;
    const bool jet4 = version == FileVersion::Jet4;
    const std::size_t pageSize = jet4 ? 4096 : 2048;
    Bytes file(pages * pageSize);
    const std::span<std::byte> header = std::span(file).first(pageSize);
    PutU8(header, 1, 1);
    constexpr std::string_view kName = "Standard Jet DB";
    std::memcpy(header.data() + 4, kName.data(), kName.size());
    PutU8(header, 0x14, jet4 ? 1 : 0);
    PutU32(header, 0x18, 0x100);
    PutU32(header, 0x1C, 0x101);
    PutU16(header, 0x3C, 1252);
    PutU16(header, jet4 ? 0x6E : 0x3A, 0x0409);
    if (jet4) {
        const double created = 38000.25;
        PutF64(header, 0x72, created);
        for (std::size_t i = 0; i < 10; ++i) // an empty password
            PutI32(header, 0x42 + 4 * i, static_cast<std::int32_t>(created));
    }
    for (std::size_t i = 0; i < 256; ++i)
        PutU16(header, CommitWordsOffset(version) + 2 * i, i == 0 ? 0x0101 : 0x0100);
    ToggleHeaderMask(header, version);

    if (pages < 2)
        return file;
    // Page 1: two maps inline from page 0; in the first all pages behind the end are free.
    const std::span<std::byte> maps = std::span(file).subspan(pageSize, pageSize);
    const std::size_t length = jet4 ? 69 : 133;
    const std::size_t count = jet4 ? 12 : 8;
    PutU16(maps, 0, 0x0101);
    PutU32(maps, 4, 1);
    PutU16(maps, count, 2);
    PutU16(maps, count + 2, static_cast<std::uint16_t>(pageSize - length));
    PutU16(maps, count + 4, static_cast<std::uint16_t>(pageSize - 2 * length));
    PutU16(maps, 2, static_cast<std::uint16_t>(pageSize - 2 * length - count - 6));
    for (std::size_t page = pages; page < (length - 5) * 8; ++page)
        maps[pageSize - length + 5 + page / 8] |=
            std::byte{static_cast<unsigned char>(1u << (page % 8))};
    return file;
}

} // namespace jet_testing
