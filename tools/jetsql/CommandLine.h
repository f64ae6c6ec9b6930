#pragma once

#include <string>
#include <vector>

namespace jetsql {

/// The words of the command line behind the program's name, in UTF-8; also makes
/// the standard streams fit for what we write (UTF-8, line ends as given).
std::vector<std::string> CommandLine(int argc, char** argv);

} // namespace jetsql
