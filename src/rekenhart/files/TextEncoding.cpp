#include "rekenhart/files/TextEncoding.h"

#include <algorithm>
#include <array>

namespace rekenhart {

namespace {

// Bytes 0x80 to 0x9F of the code page; the five that it leaves open stand for
// the control characters of the same number. All others equal Latin-1.
constexpr std::array<char32_t, 32> kSpecial = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void AppendUtf8(std::string& text, char32_t c)
{
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 | (c >> 6));
        text += static_cast<char>(0x80 | (c & 0x3F));
    } else { // the code page has nothing above U+FFFF
        text += static_cast<char>(0xE0 | (c >> 12));
        text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (c & 0x3F));
    }
}

bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Takes the first character off `text`.
char32_t NextCharacter(std::string_view& text)
{
    const auto first = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    char32_t c = first < 0x80   ? first
                 : first < 0xE0 ? first & 0x1F
                 : first < 0xF0 ? first & 0x0F
                                : first & 0x07;
    while (!text.empty() && IsContinuation(text.front())) {
        c = (c << 6) | (static_cast<unsigned char>(text.front()) & 0x3F);
        text.remove_prefix(1);
    }
    return c;
}

} // namespace

std::string FromWindows1252(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        AppendUtf8(text, code >= 0x80 && code < 0xA0 ? kSpecial[code - 0x80] : code);
    }
    return text;
}

std::string ToWindows1252(std::string_view utf8)
{
    std::string bytes;
    bytes.reserve(utf8.size());
    while (!utf8.empty()) {
        const char32_t c = NextCharacter(utf8);
        const auto special = std::find(kSpecial.begin(), kSpecial.end(), c);
        if (special != kSpecial.end())
            bytes += static_cast<char>(0x80 + (special - kSpecial.begin()));
        else
            bytes += c < 0x100 ? static_cast<char>(c) : '?';
    }
    return bytes;
}

std::size_t CharacterCount(std::string_view utf8)
{
    return utf8.size() - std::count_if(utf8.begin(), utf8.end(), IsContinuation);
}

std::filesystem::path ToPath(std::string_view utf8)
{
    return std::u8string(utf8.begin(), utf8.end());
}

std::string ToUtf8(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace rekenhart
