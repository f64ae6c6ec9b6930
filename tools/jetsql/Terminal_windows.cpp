#include "Terminal.h"

#include <iostream>

#include <io.h>
#include <stdio.h>

namespace jetsql {

bool IsTerminal()
{
    return _isatty(_fileno(stdin)) != 0 && _isatty(_fileno(stdout)) != 0;
}

// The console itself edits lines and keeps those typed before.
std::optional<std::string> ReadTypedLine(const std::string& prompt)
{
    std::cout << prompt << std::flush;
    std::string line;
    if (!std::getline(std::cin, line))
        return std::nullopt;
    return line;
}

} // namespace jetsql
