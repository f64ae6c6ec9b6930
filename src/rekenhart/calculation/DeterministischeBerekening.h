#pragma once

#include "rekenhart/integration/LoadModel.h"
#include "rekenhart/statistics/BasinLevel.h"
#include "rekenhart/statistics/WindStatistics.h"

#include <array>

namespace rekenhart {

/// One sector of a deterministic calculation.
struct DetermRichting {
    double basinLevel = 0;
    double wind = 0; ///< potential wind of the tables, m/s
    LoadDetails details;
};

struct DetermResultaat {
    std::array<DetermRichting, kSectors> richtingen;
    int maatgevend = 0; ///< sector with the largest load; the first of equals
};

/// The load of all sectors for a given combination of basin level and wind.
/// `normPeriod` (years) is what "extreme" means, not used for HANDMATIG. An extreme level together
/// with an extreme wind is far rarer than that.
DetermResultaat CalculateDeterministic(const LoadModel& model, const BasinLevel& levels,
                                       const WindStatistics& wind, const Instellingen& settings,
                                       double normPeriod);

} // namespace rekenhart
