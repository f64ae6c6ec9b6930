#pragma once

#include <optional>
#include <string>

namespace jetsql {

/// Standard input is a terminal: somebody types.
bool IsTerminal();

/// One line typed behind a prompt, with editing and the lines typed before at
/// hand; nothing at the end of the input.
std::optional<std::string> ReadTypedLine(const std::string& prompt);

} // namespace jetsql
