#pragma once

#include "rekenhart/integration/ExceedanceLine.h"

#include <vector>

namespace rekenhart {

/// A representative event at a load level: the mean, weighted with the
/// contributions, of all events that exceed it from one sector, on the limit
/// state. It is smooth in all inputs; it is not the most probable point.
struct DesignPoint {
    int sector = 0;
    double share = 0; ///< of the exceedance frequency
    double basinLevel = 0;
    double wind = 0; ///< potential wind of the tables, m/s
    LoadDetails details;
};

/// The design point of `sector` at `level`.
DesignPoint FindDesignPoint(const Contributions& contributions, int sector, double level,
                            const LoadTable& table, const BasinLevel& levels,
                            const LoadModel& model, const IntegrationGrid& grid);

} // namespace rekenhart
