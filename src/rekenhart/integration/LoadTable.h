#pragma once

#include "rekenhart/integration/LoadModel.h"
#include "rekenhart/statistics/BasinLevel.h"

#include <functional>
#include <span>
#include <vector>

namespace rekenhart {

/// The steps of the integration. The defaults are the program's; a test refines
/// them to show the error (about 1 mm, with a berm 1 cm).
struct IntegrationGrid {
    double levelStep = 0.05;         ///< in x = ln(N/F)
    double smallestFrequency = 1e-7; ///< per year, where the level axis ends
    int levelIntervals = 40;         ///< of the load table
    double windStep = 0.5;           ///< m/s
    double highestWind = 50;         ///< m/s

    int WindNodes() const { return static_cast<int>(highestWind / windStep + 0.5) + 1; }
    double HighestX() const;
    IntegrationGrid Refined(int times) const;

    /// The nodes of the level axis: equal steps and the knots that lie inside.
    std::vector<double> LevelNodes(const std::vector<double>& knots) const;
};

/// Loads at a location on a grid of basin levels, sectors and winds. Over the
/// wind they never fall (running maximum).
class LoadTable {
public:
    /// `onLevel` is called after each basin level is done.
    LoadTable(const LoadModel& model, LoadKind kind, const BasinLevel& levels,
              const IntegrationGrid& grid, const std::function<void()>& onLevel = {});

    /// The loads over the wind at a basin level, linear between the grid's levels.
    void Interpolate(double basinLevel, int sector, std::span<double> loads) const;
    int WindNodes() const { return m_windNodes; }

private:
    const double* Row(int level, int sector) const
    {
        return &m_loads[static_cast<std::size_t>(level * kSectors + sector) * m_windNodes];
    }

    int m_windNodes;
    int m_intervals;
    double m_lowest, m_step; // of the basin level
    std::vector<double> m_loads;
};

} // namespace rekenhart
