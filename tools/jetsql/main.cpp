#include "CommandLine.h"
#include "Program.h"

#include <iostream>

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    return jetsql::Program(std::cin, std::cout, std::cerr).Run(jetsql::CommandLine(argc, argv));
}
