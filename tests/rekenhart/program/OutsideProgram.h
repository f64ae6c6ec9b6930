#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// A program run as an outside program would: through its command line, with a
/// pipe on its output.
struct ProgramRun {
    int exitCode = -1; ///< -1 when it was killed
    std::string output;
    long afterMarker = 0; ///< microseconds from the marker to the end
};

/// When to kill it: `microseconds` after `marker` has stood on its output.
struct KillMoment {
    std::string marker;
    long microseconds = -1; ///< below 0: only the time is taken, nothing is killed
};

ProgramRun RunProgram(const std::filesystem::path& program,
                      const std::vector<std::string>& arguments,
                      const std::filesystem::path& workingFolder, const KillMoment& kill = {});
