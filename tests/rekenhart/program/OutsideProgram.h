#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// Runs a program as an outside program would: through its command line, with a
/// pipe on its output.
struct ProgramRun {
    int exitCode = -1; ///< -1 when it was killed
    std::string output;
};
ProgramRun RunProgram(const std::filesystem::path& program,
                      const std::vector<std::string>& arguments,
                      const std::filesystem::path& workingFolder);
/// Starts the program and kills it after `microseconds`, or lets it end before.
ProgramRun RunAndKill(const std::filesystem::path& program,
                      const std::vector<std::string>& arguments,
                      const std::filesystem::path& workingFolder, long microseconds);
