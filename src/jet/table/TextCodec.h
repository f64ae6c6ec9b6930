#pragma once

#include "jet/base/Value.h"
#include "jet/storage/Pager.h"

#include <span>

namespace jet {

/// Text as rows and long values hold it: code page 1252 in Jet 3; in Jet 4
/// UTF-16, or, behind the mark FF FE, one byte a character where possible.
std::string DecodeText(std::span<const std::byte> bytes, FileVersion version);

/// Appends the Jet 4 form. Compressed when `compress` and the text has 3 to
/// 1024 characters, all below U+0100. Throws BadValue when `utf8` is not UTF-8.
void AppendText(std::string_view utf8, bool compress, Bytes& out);

/// Number of UTF-16 units, by which the length of a text is counted.
std::size_t TextUnits(std::string_view utf8);

} // namespace jet
