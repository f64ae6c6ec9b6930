#pragma once

#include "rekenhart/Fout.h"
#include "rekenhart/Gegevensbron.h"
#include "rekenhart/Instellingen.h"
#include "rekenhart/run/Console.h"

#include <filesystem>
#include <optional>

namespace rekenhart {

/// One run of the program on one input file: reads the data in one short visit
/// to the database, calculates with the database closed, writes the files, and
/// fills the waiting rows in a last short visit. When anything fails no row is
/// changed, `uitvoer.txt` tells what went wrong and there is no `freqlijn.txt`.
class Rekenrun {
public:
    Rekenrun(OpenGegevensbron open, Console& console);

    /// Never throws.
    ExitCode Run(const std::filesystem::path& inputFile) noexcept;

private:
    void RunOrThrow(const std::filesystem::path& inputFile);
    void RunDijkvak(const Instellingen& settings);
    void RunDijkring(const Instellingen& settings);
    void RunDeterm(const Instellingen& settings);
    ExitCode Report(const Fout& fout) noexcept;
    void RemoveFrequencyLine() const;
    std::filesystem::path InOutputFolder(const char* name) const;

    OpenGegevensbron m_open;
    Console& m_console;
    std::filesystem::path m_outputFolder;   // empty until known to exist
    std::optional<Instellingen> m_settings; // for the heading of an error report
};

} // namespace rekenhart
