#pragma once

#include <string_view>

/// Takes a text for a statement: cuts, parses, binds and rewrites it over a few
/// tables, and lets SQLite run what comes out. Whatever is wrong with the text
/// ends in the engine's own error; anything else is a fault.
void TakeSqlInput(std::string_view text);
