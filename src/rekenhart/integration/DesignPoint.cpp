#include "rekenhart/integration/DesignPoint.h"

namespace rekenhart {

namespace {

/// The wind at which the loads pass `level`: 0 when they are there without wind,
/// the end of the axis when they never are.
double WindAtLevel(const std::vector<double>& loads, double level, const IntegrationGrid& grid)
{
    if (loads[0] >= level - 1e-4)
        return 0;
    for (std::size_t j = 1; j < loads.size(); ++j)
        if (loads[j] > level)
            return (static_cast<double>(j - 1) +
                    (level - loads[j - 1]) / (loads[j] - loads[j - 1])) *
                   grid.windStep;
    return grid.highestWind;
}

} // namespace

DesignPoint FindDesignPoint(const Contributions& contributions, int sector, double level,
                            const LoadTable& table, const BasinLevel& levels,
                            const LoadModel& model, const IntegrationGrid& grid)
{
    DesignPoint point;
    point.sector = sector;
    point.share = contributions.share[sector];
    point.basinLevel = levels(contributions.meanX[sector]);
    std::vector<double> loads(table.WindNodes());
    table.Interpolate(point.basinLevel, sector, loads);
    point.wind = WindAtLevel(loads, level, grid);
    point.details = model.Evaluate(point.basinLevel, sector, point.wind, LoadKind::Full);
    return point;
}

} // namespace rekenhart
