#include "Terminal.h"

#include <unistd.h>

#ifdef JETSQL_LINE_EDITING
#include <editline/readline.h>

#include <cstdlib>
#else
#include <iostream>
#endif

namespace jetsql {

bool IsTerminal()
{
    return isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
}

#ifdef JETSQL_LINE_EDITING

std::optional<std::string> ReadTypedLine(const std::string& prompt)
{
    char* typed = readline(prompt.c_str());
    if (typed == nullptr)
        return std::nullopt;
    std::string line(typed);
    if (!line.empty())
        add_history(typed);
    std::free(typed); // NOLINT: made by the library with malloc
    return line;
}

#else

std::optional<std::string> ReadTypedLine(const std::string& prompt)
{
    std::cout << prompt << std::flush;
    std::string line;
    if (!std::getline(std::cin, line))
        return std::nullopt;
    return line;
}

#endif

} // namespace jetsql
