#pragma once

#include <cstddef>
#include <string_view>

namespace jet {

/// Where the first statement of `script` ends: the place of its semicolon, or
/// the length of the script. A semicolon in a text or in a bracketed name ends
/// nothing. `complete` is false when a text or name has no end yet.
struct StatementEnd {
    std::size_t position = 0;
    bool complete = false; ///< a semicolon stands there
};
StatementEnd EndOfStatement(std::string_view script);

/// Whether a statement is opened as a recordset (a SELECT without INTO) rather
/// than executed.
bool GivesRows(std::string_view statement);

} // namespace jet
