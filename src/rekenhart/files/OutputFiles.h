#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace rekenhart {

// Text goes out in Windows-1252 with CR LF; it comes in as UTF-8 with "\n".

/// The bytes of a file; nothing when it cannot be read.
std::optional<std::string> ReadBytes(const std::filesystem::path& path);

/// Replaces the file. Throws OnschrijfbaarBestand.
void WriteTextFile(const std::filesystem::path& path, std::string_view text);

/// Adds `lines` to a file, after `heading` when it is new or empty. What was
/// added can be taken back as long as the object lives.
class Appended {
public:
    /// Throws OnschrijfbaarBestand; the file is then as it was.
    Appended(const std::filesystem::path& path, std::string_view heading, std::string_view lines);
    void TakeBack() noexcept;

private:
    std::filesystem::path m_path;
    bool m_isNew = false;
    std::uintmax_t m_formerSize = 0;
};

} // namespace rekenhart
