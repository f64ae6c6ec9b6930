#pragma once

#include <string>
#include <vector>

/// The arguments behind the program's name, in UTF-8.
std::vector<std::string> CommandLineArguments(int argc, char** argv);
