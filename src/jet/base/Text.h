#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace jet {

// Text inside the engine is UTF-8. A lone surrogate, which Jet files may hold,
// is kept as its three bytes, so that every UTF-16 text survives the way there
// and back.

std::string Utf8FromUtf16(std::u16string_view text);
/// `bytes` as UTF-16LE; an odd last byte is left out.
std::string Utf8FromUtf16Bytes(std::span<const std::byte> bytes);
/// Throws BadValue when `text` is not UTF-8.
std::u16string Utf16FromUtf8(std::string_view text);

/// Code page 1252. The five bytes without a character become U+0081 and so on,
/// as the platform does, so that they survive too.
std::string Utf8FromCodePage1252(std::span<const std::byte> bytes);
/// The character of a byte in code page 1252.
char16_t CharacterFromCodePage1252(unsigned char byte);
/// Nothing when the code page lacks the character.
std::optional<unsigned char> CodePage1252FromCharacter(char16_t character);
/// A character that the code page lacks is replaced by `substitute`.
std::string CodePage1252FromUtf8(std::string_view text, char substitute = '?');

/// A path as it is shown in messages.
std::string Utf8FromPath(const std::filesystem::path& path);

/// Equal without regard to the case of ASCII letters and of the Latin letters
/// of code page 1252: how names of tables, fields and indexes compare.
bool NamesEqual(std::string_view a, std::string_view b);
/// Names that compare equal fold to the same text.
std::string FoldName(std::string_view name);

} // namespace jet
