#include "jet/table/TextCodec.h"

#include "jet/base/Error.h"
#include "jet/base/Text.h"

#include <algorithm>

namespace jet {

namespace {

constexpr std::size_t kShortestCompressed = 3, kLongestCompressed = 1024;

std::uint8_t ByteAt(std::span<const std::byte> bytes, std::size_t i)
{
    return std::to_integer<std::uint8_t>(bytes[i]);
}

/// The first index from `from` on whose byte is zero.
std::size_t FindZero(std::span<const std::byte> bytes, std::size_t from)
{
    return static_cast<std::size_t>(
        std::find(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.end(), std::byte{0}) -
        bytes.begin());
}

void AppendLatin1(std::span<const std::byte> bytes, std::string& out)
{
    for (const std::byte b : bytes) {
        const auto c = std::to_integer<std::uint8_t>(b);
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else {
            out.push_back(static_cast<char>(0xC0 | c >> 6));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
}

/// `bytes` without the mark. Zero bytes switch between the two codings.
std::string DecodeCompressed(std::span<const std::byte> bytes)
{
    const auto plain = [](std::byte b) { return b != std::byte{0} && (b >> 7) == std::byte{0}; };
    if (std::all_of(bytes.begin(), bytes.end(), plain))
        return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    std::string text;
    bool compressed = true;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t zero = FindZero(bytes, at);
        const auto part = bytes.subspan(at, zero - at);
        if (compressed)
            AppendLatin1(part, text);
        else
            text += Utf8FromUtf16Bytes(part);
        compressed = !compressed;
        at = zero + 1;
    }
    return text;
}

/// Whether all characters are U+0001 to U+00FF.
bool IsCompressible(std::string_view utf8)
{
    return std::all_of(utf8.begin(), utf8.end(), [](char c) {
        const auto byte = static_cast<std::uint8_t>(c);
        return byte != 0 && byte < 0xC4;
    });
}

/// A text that begins with U+FEFF would be read as compressed if it stood there
/// plainly; between the switches of the compressed form it is safe.
void AppendMixed(std::u16string_view units, Bytes& out)
{
    out.push_back(std::byte{0xFF});
    out.push_back(std::byte{0xFE});
    bool compressed = true;
    for (const char16_t unit : units) {
        const auto low = static_cast<std::byte>(unit & 0xFF);
        const auto high = static_cast<std::byte>(unit >> 8);
        if (low == std::byte{0})
            throw Error(ErrorKind::BadValue, "De tekst is niet op te slaan: een byte-volgordeteken "
                                             "vooraan gaat niet samen met de overige tekens.");
        if (compressed != (high == std::byte{0})) {
            out.push_back(std::byte{0});
            compressed = !compressed;
        }
        out.push_back(low);
        if (!compressed)
            out.push_back(high);
    }
}

} // namespace

std::string DecodeText(std::span<const std::byte> bytes, FileVersion version)
{
    if (version == FileVersion::Jet3)
        return Utf8FromCodePage1252(bytes);
    if (bytes.size() >= 2 && ByteAt(bytes, 0) == 0xFF && ByteAt(bytes, 1) == 0xFE)
        return DecodeCompressed(bytes.subspan(2));
    return Utf8FromUtf16Bytes(bytes);
}

void AppendText(std::string_view utf8, bool compress, Bytes& out)
{
    if (compress && utf8.size() >= kShortestCompressed && utf8.size() <= 2 * kLongestCompressed &&
        IsCompressible(utf8)) {
        const std::size_t units = TextUnits(utf8); // two-byte sequences at most
        if (units >= kShortestCompressed && units <= kLongestCompressed) {
            out.push_back(std::byte{0xFF});
            out.push_back(std::byte{0xFE});
            for (std::size_t i = 0; i < utf8.size(); ++i) {
                const auto byte = static_cast<std::uint8_t>(utf8[i]);
                if (byte < 0x80) {
                    out.push_back(std::byte{byte});
                    continue;
                }
                const bool pair = byte >= 0xC2 && i + 1 < utf8.size() &&
                                  (static_cast<std::uint8_t>(utf8[i + 1]) & 0xC0) == 0x80;
                if (!pair)
                    throw Error(ErrorKind::BadValue, "De tekst is geen geldige UTF-8.");
                ++i;
                out.push_back(static_cast<std::byte>((byte & 0x03) << 6 |
                                                     (static_cast<std::uint8_t>(utf8[i]) & 0x3F)));
            }
            return;
        }
    }
    const std::u16string units = Utf16FromUtf8(utf8);
    if (!units.empty() && units.front() == 0xFEFF) {
        AppendMixed(units, out);
        return;
    }
    for (const char16_t unit : units) {
        out.push_back(static_cast<std::byte>(unit & 0xFF));
        out.push_back(static_cast<std::byte>(unit >> 8));
    }
}

std::size_t TextUnits(std::string_view utf8)
{
    std::size_t units = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<std::uint8_t>(c);
        if ((byte & 0xC0) != 0x80)
            units += byte >= 0xF0 ? 2 : 1;
    }
    return units;
}

} // namespace jet
