#pragma once

#include "rekenhart/calculation/DeterministischeBerekening.h"
#include "rekenhart/calculation/DijkringBerekening.h"
#include "rekenhart/calculation/LocatieBerekening.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rekenhart {

/// A crest level and how often the load exceeds it.
struct KruinResultaat {
    double kruinhoogte = 0;
    double frequency = 0;
};

/// All that the report of a location tells.
struct LocatieRapport {
    const Instellingen& settings;
    const Locatie& locatie;
    const Profiel* profiel; ///< null without one
    const LoadModel& model;
    std::vector<std::string> warnings;
    std::vector<PeriodResult> results;
    std::vector<KruinResultaat> kruinen;
    std::vector<FreqlijnPunt> lijn;
};

struct DetermRapport {
    const Instellingen& settings;
    const Locatie& locatie;
    const Profiel* profiel;
    const LoadModel& model;
    std::vector<std::string> warnings;
    DetermResultaat result;
};

struct RingRapport {
    const Instellingen& settings;
    std::vector<std::string> warnings;
    const RingResultaat& result;
};

/// "Rekenhart (open referentie) versie 1.0.0"
std::string ProgramLine();

// The content of `uitvoer.txt`, UTF-8 with "\n".
std::string WriteReport(const LocatieRapport& rapport);
std::string WriteReport(const DetermRapport& rapport);
std::string WriteReport(const RingRapport& rapport);
/// For a run that failed: the heading and what went wrong. Without `settings`
/// when the input file itself was wrong.
std::string WriteErrorReport(const Instellingen* settings, std::string_view error,
                             std::string_view advice);

/// The content of `freqlijn.txt`.
std::string WriteFreqlijn(const std::vector<FreqlijnPunt>& lijn);

/// One line per return period of the overview file, tab-separated.
std::string OverviewHeading();
std::string OverviewLines(const LocatieRapport& rapport);

} // namespace rekenhart
