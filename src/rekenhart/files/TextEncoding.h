#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace rekenhart {

// In memory text is UTF-8; files and standard output are Windows-1252.

std::string FromWindows1252(std::string_view bytes);
/// A character that the code page lacks becomes "?".
std::string ToWindows1252(std::string_view utf8);

/// The number of characters, for columns.
std::size_t CharacterCount(std::string_view utf8);

std::filesystem::path ToPath(std::string_view utf8);
std::string ToUtf8(const std::filesystem::path& path);

} // namespace rekenhart
