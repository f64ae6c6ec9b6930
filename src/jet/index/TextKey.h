#pragma once

#include "jet/base/Value.h"

#include <string>
#include <string_view>

namespace jet {

/// Appends the index key of a text (without the flag byte that every column's
/// key begins with) in the order "General legacy" of Jet 4 files. Case never
/// matters, trailing blanks do not either, accents do; hyphens and apostrophes
/// only break ties. No more than 255 UTF-16 units count.
/// Returns false, with `key` in an unfinished state, when a character has no
/// known key: such a text must not be indexed, and no key is ever guessed.
bool AppendTextKey(std::string_view utf8, bool ascending, Bytes& key);

/// The same for the order "General" of Jet 3 files, whose texts are code page 1252.
bool AppendTextKey97(std::string_view utf8, bool ascending, Bytes& key);

/// Compares two UTF-8 texts in the engine's order (General legacy): negative,
/// zero or positive. Total: characters outside the key tables compare by code
/// point, behind all known ones.
int CompareText(std::string_view a, std::string_view b);

/// Bytes that are equal exactly when CompareText says 0, in the same order.
std::string TextSortKey(std::string_view text);

} // namespace jet
