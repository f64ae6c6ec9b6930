#pragma once

#include "jet/base/Value.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace jet {

enum class FileVersion { Jet3, Jet4 };

/// What page 0 of a database file says about the rest.
struct FileHeader {
    FileVersion version = FileVersion::Jet4;
    std::uint16_t codePage = 1252;
    std::uint16_t sortOrder = 0x0409; ///< language of the text order
    std::uint8_t sortOrderVersion = 0;
    DateTime created; ///< Jet 4 only

    std::size_t PageSize() const { return version == FileVersion::Jet3 ? 2048 : 4096; }
    /// The Dutch reason why we only read files of this kind; empty when we write
    /// them too. `path` is named in it.
    std::string WhyReadOnly(const std::filesystem::path& path) const;
};

/// The bytes of page 0 that have to be at hand for ReadFileHeader, if the file
/// has that many.
inline constexpr std::size_t kFileHeaderBytes = 4096;

/// Throws NotADatabase, or Unsupported with the reason (newer format, password,
/// encryption). `start` is the beginning of the file.
FileHeader ReadFileHeader(std::span<const std::byte> start, const std::filesystem::path& path);

/// Masks or unmasks the obfuscated part of page 0 (the same operation).
void ToggleHeaderMask(std::span<std::byte> page, FileVersion version);

/// Where the 256 commit words stand in page 0. Word 0 belongs to whoever has
/// the file exclusively: it grows with every commit and is never 0.
std::size_t CommitWordsOffset(FileVersion version);
std::uint16_t NextCommitWord(std::uint16_t word);

} // namespace jet
