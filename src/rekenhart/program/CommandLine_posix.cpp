#include "rekenhart/program/CommandLine.h"

std::vector<std::string> CommandLineArguments(int argc, char** argv)
{
    return {argv + (argc > 0 ? 1 : 0), argv + argc};
}
