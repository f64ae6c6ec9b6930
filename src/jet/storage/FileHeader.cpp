#include "jet/storage/FileHeader.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/base/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <string_view>
#include <utility>

namespace jet {
namespace {

constexpr std::size_t kMaskStart = 0x18;

std::size_t MaskLength(FileVersion version)
{
    return version == FileVersion::Jet3 ? 126 : 128;
}

/// The constant stream that page 0 is obfuscated with: RC4 of a fixed key.
const std::array<std::uint8_t, 128>& MaskBytes()
{
    static const auto mask = [] {
        constexpr std::array<std::uint8_t, 4> kKey = {0xC7, 0xDA, 0x39, 0x6B};
        std::array<std::uint8_t, 256> state{};
        std::iota(state.begin(), state.end(), std::uint8_t{0});
        std::uint8_t j = 0;
        for (std::size_t i = 0; i < 256; ++i) {
            j = static_cast<std::uint8_t>(j + state[i] + kKey[i % 4]);
            std::swap(state[i], state[j]);
        }
        std::array<std::uint8_t, 128> bytes{};
        j = 0;
        for (std::size_t n = 0; n < bytes.size(); ++n) {
            const std::size_t i = n + 1;
            j = static_cast<std::uint8_t>(j + state[i]);
            std::swap(state[i], state[j]);
            bytes[n] = state[static_cast<std::uint8_t>(state[i] + state[j])];
        }
        return bytes;
    }();
    return mask;
}

bool StartsWith(std::span<const std::byte> bytes, std::size_t offset, std::string_view text)
{
    return bytes.size() >= offset + text.size() &&
           std::memcmp(bytes.data() + offset, text.data(), text.size()) == 0;
}

[[noreturn]] void ThrowUnsupported(const std::filesystem::path& path, const std::string& reason)
{
    throw Error(ErrorKind::Unsupported,
                "Het bestand " + Utf8FromPath(path) + " kan niet worden geopend: " + reason + ".");
}

bool HasPassword(std::span<const std::byte> page, FileVersion version)
{
    constexpr std::size_t kPassword = 0x42;
    if (version == FileVersion::Jet3) {
        const auto field = page.subspan(kPassword, 20);
        return std::any_of(field.begin(), field.end(),
                           [](std::byte b) { return b != std::byte{}; });
    }
    // Jet 4 masks the field once more, with the whole days of the creation date.
    const double created = GetF64(page, 0x72);
    std::array<std::byte, 4> dateMask{};
    if (created > -2e9 && created < 2e9)
        PutI32(dateMask, 0, static_cast<std::int32_t>(created));
    for (std::size_t i = 0; i < 40; ++i) {
        if (page[kPassword + i] != dateMask[i % 4])
            return true;
    }
    return false;
}

} // namespace

void ToggleHeaderMask(std::span<std::byte> page, FileVersion version)
{
    const auto& mask = MaskBytes();
    for (std::size_t i = 0; i < MaskLength(version); ++i)
        page[kMaskStart + i] ^= std::byte{mask[i]};
}

std::size_t CommitWordsOffset(FileVersion version)
{
    return version == FileVersion::Jet3 ? 0x600 : 0xE00;
}

std::uint16_t NextCommitWord(std::uint16_t word)
{
    return word < 0x0100 || word == 0xFFFF ? 0x0101 : static_cast<std::uint16_t>(word + 1);
}

std::string FileHeader::WhyReadOnly(const std::filesystem::path& path) const
{
    const std::string file = "Het bestand " + Utf8FromPath(path);
    if (version == FileVersion::Jet3)
        return file +
               " is van Access 97 (Jet 3) en kan alleen worden gelezen; zet het eerst om naar"
               " Access 2000-2003.";
    if (sortOrder != 0x0409 || sortOrderVersion != 0)
        return file +
               " sorteert teksten niet in de volgorde Algemeen (verouderd) en kan daarom alleen"
               " worden gelezen.";
    return {};
}

FileHeader ReadFileHeader(std::span<const std::byte> start, const std::filesystem::path& path)
{
    using namespace std::string_view_literals;
    const bool pageStart = StartsWith(start, 0, "\0\1\0\0"sv);
    if (pageStart && StartsWith(start, 4, "Standard ACE DB"sv))
        ThrowUnsupported(path, "het is een ACE-database (.accdb, Access 2007 of later); alleen"
                               " .mdb-bestanden worden ondersteund");
    if (pageStart && StartsWith(start, 4, "MSISAM Database"sv))
        ThrowUnsupported(path, "het is een MSISAM-database; alleen .mdb-bestanden van Access worden"
                               " ondersteund");
    if (!pageStart || !StartsWith(start, 4, "Standard Jet DB\0"sv) || start.size() < 0x15)
        throw Error(ErrorKind::NotADatabase,
                    "Het bestand " + Utf8FromPath(path) + " is geen Access-database.");
    const std::uint8_t version = GetU8(start, 0x14);
    if (version > 1)
        ThrowUnsupported(path, "het is van een nieuwere versie (" + std::to_string(version) +
                                   ") dan Access 2003");
    FileHeader header;
    header.version = version == 0 ? FileVersion::Jet3 : FileVersion::Jet4;
    if (start.size() < header.PageSize())
        throw Error(ErrorKind::NotADatabase,
                    "Het bestand " + Utf8FromPath(path) +
                        " is geen Access-database: het houdt op in de eerste pagina.");

    Bytes page(start.begin(), start.begin() + static_cast<std::ptrdiff_t>(header.PageSize()));
    ToggleHeaderMask(page, header.version);
    if (GetU32(page, 0x3E) != 0)
        ThrowUnsupported(path, "het is versleuteld");
    if (HasPassword(page, header.version))
        ThrowUnsupported(path, "het is met een wachtwoord beveiligd");
    header.codePage = GetU16(page, 0x3C);
    if (header.version == FileVersion::Jet3) {
        header.sortOrder = GetU16(page, 0x3A);
    } else {
        header.sortOrder = GetU16(page, 0x6E);
        header.sortOrderVersion = GetU8(page, 0x71);
        header.created = {GetF64(page, 0x72)};
    }
    return header;
}

} // namespace jet
