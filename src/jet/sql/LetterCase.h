#pragma once

#include <string>

namespace jet::sql {

/// One letter in the other case, for the Latin, Greek and Cyrillic letters of
/// the code pages that Jet files are made in; other characters stay as they are.
char16_t LowerCase(char16_t letter);
char16_t UpperCase(char16_t letter);

std::u16string LowerCase(std::u16string text);
std::u16string UpperCase(std::u16string text);

} // namespace jet::sql
