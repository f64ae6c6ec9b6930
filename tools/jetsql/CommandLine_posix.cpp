#include "CommandLine.h"

namespace jetsql {

std::vector<std::string> CommandLine(int argc, char** argv)
{
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

} // namespace jetsql
