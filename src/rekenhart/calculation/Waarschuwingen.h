#pragma once

#include "rekenhart/calculation/DeterministischeBerekening.h"
#include "rekenhart/calculation/LocatieBerekening.h"

#include <string>
#include <vector>

namespace rekenhart {

// What the outcome does not take into account, or only roughly. Each is one
// Dutch line; none stops the run.

/// About the profile and the location, before the calculation. `model` was made
/// of the same location.
std::vector<std::string> InputWarnings(const LoadModel& model, const BasinLevel& levels);

/// About the asked return period and its design point.
std::vector<std::string> ResultWarnings(const PeriodResult& result, const LoadModel& model,
                                        const BasinLevel& levels);
/// About the governing sector of a deterministic calculation.
std::vector<std::string> ResultWarnings(const DetermResultaat& result, const LoadModel& model);
/// When the basin level of `years` lies beyond the known ones.
std::vector<std::string> PeriodWarnings(double years, const BasinLevel& levels);

std::string NoRowWarning(double years);                ///< no row in `Resultaat`
std::string UnknownKeyWarning(const std::string& key); ///< in the input file
std::string OverviewWarning(const std::string& path);  ///< could not be written

/// N, NNO, NO, ... of the sector.
std::string_view SectorName(int sector);

} // namespace rekenhart
