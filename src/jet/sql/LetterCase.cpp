#include "jet/sql/LetterCase.h"

#include <algorithm>

namespace jet::sql {

char16_t LowerCase(char16_t c)
{
    if (c < 0x80)
        return c >= 'A' && c <= 'Z' ? static_cast<char16_t>(c + 32) : c;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7)
        return static_cast<char16_t>(c + 32);
    if (c == 0x178)
        return 0xFF;
    if (c >= 0x100 && c <= 0x17F) {
        // Pairs of capital and small letter; their parity changes twice.
        const bool oddCapital = (c >= 0x139 && c <= 0x148) || c >= 0x179;
        if (c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149 || c == 0x17F)
            return c;
        return (c & 1u) == (oddCapital ? 1u : 0u) ? static_cast<char16_t>(c + 1) : c;
    }
    if (c >= 0x391 && c <= 0x3AB && c != 0x3A2)
        return static_cast<char16_t>(c + 32);
    if (c == 0x386)
        return 0x3AC;
    if (c >= 0x388 && c <= 0x38A)
        return static_cast<char16_t>(c + 37);
    if (c == 0x38C)
        return 0x3CC;
    if (c == 0x38E || c == 0x38F)
        return static_cast<char16_t>(c + 63);
    if (c >= 0x410 && c <= 0x42F)
        return static_cast<char16_t>(c + 32);
    if (c >= 0x400 && c <= 0x40F)
        return static_cast<char16_t>(c + 80);
    return c;
}

char16_t UpperCase(char16_t c)
{
    if (c < 0x80)
        return c >= 'a' && c <= 'z' ? static_cast<char16_t>(c - 32) : c;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7)
        return static_cast<char16_t>(c - 32);
    if (c == 0xFF)
        return 0x178;
    if (c >= 0x100 && c <= 0x17F) {
        const auto before = static_cast<char16_t>(c - 1);
        return before >= 0x100 && LowerCase(before) == c ? before : c;
    }
    if (c >= 0x3B1 && c <= 0x3CB && c != 0x3C2)
        return static_cast<char16_t>(c - 32);
    if (c == 0x3C2)
        return 0x3A3;
    if (c == 0x3AC)
        return 0x386;
    if (c >= 0x3AD && c <= 0x3AF)
        return static_cast<char16_t>(c - 37);
    if (c == 0x3CC)
        return 0x38C;
    if (c == 0x3CD || c == 0x3CE)
        return static_cast<char16_t>(c - 63);
    if (c >= 0x430 && c <= 0x44F)
        return static_cast<char16_t>(c - 32);
    if (c >= 0x450 && c <= 0x45F)
        return static_cast<char16_t>(c - 80);
    return c;
}

std::u16string LowerCase(std::u16string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char16_t c) { return LowerCase(c); });
    return text;
}

std::u16string UpperCase(std::u16string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char16_t c) { return UpperCase(c); });
    return text;
}

} // namespace jet::sql
