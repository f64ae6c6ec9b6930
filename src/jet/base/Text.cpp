#include "jet/base/Text.h"

#include "jet/base/Error.h"

#include <array>
#include <cstdint>

namespace jet {
namespace {

// The characters of 0x80 to 0x9F; all other bytes are their own character.
constexpr std::array<char16_t, 32> kHigh1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendUtf8(std::string& out, char32_t c)
{
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

bool IsHighSurrogate(char32_t c)
{
    return c >= 0xD800 && c < 0xDC00;
}

bool IsLowSurrogate(char32_t c)
{
    return c >= 0xDC00 && c < 0xE000;
}

/// Turns units into UTF-8 one by one; holds a high surrogate back until its
/// partner has been seen.
class Utf8Writer {
public:
    explicit Utf8Writer(std::size_t units) { m_out.reserve(units); }

    void Add(char16_t unit)
    {
        if (m_high != 0 && IsLowSurrogate(unit)) {
            AppendUtf8(m_out, 0x10000 + ((m_high - 0xD800) << 10) + (unit - 0xDC00));
            m_high = 0;
            return;
        }
        FlushHigh();
        if (IsHighSurrogate(unit))
            m_high = unit;
        else
            AppendUtf8(m_out, unit);
    }

    std::string Take()
    {
        FlushHigh();
        return std::move(m_out);
    }

private:
    void FlushHigh()
    {
        if (m_high != 0)
            AppendUtf8(m_out, m_high);
        m_high = 0;
    }

    std::string m_out;
    char32_t m_high = 0;
};

[[noreturn]] void ThrowNotUtf8()
{
    throw Error(ErrorKind::BadValue, "De tekst is geen geldige UTF-8.");
}

/// Decodes the character at `at` and moves `at` behind it.
char32_t NextCharacter(std::string_view text, std::size_t& at)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byteAt(at);
    if (lead < 0x80) {
        ++at;
        return lead;
    }
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || at + static_cast<std::size_t>(more) >= text.size())
        ThrowNotUtf8();
    char32_t c = lead & (0x3F >> more);
    for (int i = 1; i <= more; ++i) {
        const unsigned char next = byteAt(at + static_cast<std::size_t>(i));
        if ((next & 0xC0) != 0x80)
            ThrowNotUtf8();
        c = c << 6 | (next & 0x3F);
    }
    constexpr std::array<char32_t, 4> kSmallest = {0, 0x80, 0x800, 0x10000};
    if (c < kSmallest[static_cast<std::size_t>(more)] || c > 0x10FFFF)
        ThrowNotUtf8();
    at += static_cast<std::size_t>(more) + 1;
    return c;
}

/// Upper case to lower case for ASCII and for what code page 1252 has.
char16_t FoldCharacter(char16_t c)
{
    if ((c >= u'A' && c <= u'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7))
        return static_cast<char16_t>(c + 0x20);
    switch (c) {
    case 0x0160:
    case 0x0152:
    case 0x017D:
        return static_cast<char16_t>(c + 1);
    case 0x0178:
        return 0xFF;
    default:
        return c;
    }
}

} // namespace

std::string Utf8FromUtf16(std::u16string_view text)
{
    Utf8Writer writer(text.size());
    for (const char16_t unit : text)
        writer.Add(unit);
    return writer.Take();
}

std::string Utf8FromUtf16Bytes(std::span<const std::byte> bytes)
{
    Utf8Writer writer(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        writer.Add(static_cast<char16_t>(std::to_integer<unsigned>(bytes[i]) |
                                         std::to_integer<unsigned>(bytes[i + 1]) << 8));
    return writer.Take();
}

std::u16string Utf16FromUtf8(std::string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = NextCharacter(text, at);
        if (c < 0x10000) {
            out += static_cast<char16_t>(c);
        } else {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    return out;
}

char16_t CharacterFromCodePage1252(unsigned char byte)
{
    return byte >= 0x80 && byte < 0xA0 ? kHigh1252[byte - 0x80u] : byte;
}

std::optional<unsigned char> CodePage1252FromCharacter(char16_t character)
{
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
        return static_cast<unsigned char>(character);
    for (std::size_t i = 0; i < kHigh1252.size(); ++i) {
        if (kHigh1252[i] == character)
            return static_cast<unsigned char>(0x80 + i);
    }
    return std::nullopt;
}

std::string Utf8FromCodePage1252(std::span<const std::byte> bytes)
{
    std::string out;
    out.reserve(bytes.size());
    for (const std::byte b : bytes)
        AppendUtf8(out, CharacterFromCodePage1252(std::to_integer<unsigned char>(b)));
    return out;
}

std::string CodePage1252FromUtf8(std::string_view text, char substitute)
{
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = NextCharacter(text, at);
        const auto byte = c < 0x10000 ? CodePage1252FromCharacter(static_cast<char16_t>(c))
                                      : std::optional<unsigned char>();
        out += byte ? static_cast<char>(*byte) : substitute;
    }
    return out;
}

std::string Utf8FromPath(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::string FoldName(std::string_view name)
{
    std::string out;
    out.reserve(name.size());
    for (std::size_t at = 0; at < name.size();) {
        const char32_t c = NextCharacter(name, at);
        AppendUtf8(out, c < 0x10000 ? FoldCharacter(static_cast<char16_t>(c)) : c);
    }
    return out;
}

bool NamesEqual(std::string_view a, std::string_view b)
{
    return a == b || FoldName(a) == FoldName(b);
}

} // namespace jet
