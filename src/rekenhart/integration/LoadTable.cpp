#include "rekenhart/integration/LoadTable.h"

#include <algorithm>
#include <cmath>

namespace rekenhart {

double IntegrationGrid::HighestX() const
{
    return std::log(kSlowBlocksPerYear / smallestFrequency);
}

IntegrationGrid IntegrationGrid::Refined(int times) const
{
    IntegrationGrid grid = *this;
    grid.levelStep /= times;
    grid.levelIntervals *= times;
    grid.windStep /= times;
    return grid;
}

std::vector<double> IntegrationGrid::LevelNodes(const std::vector<double>& knots) const
{
    const double end = HighestX();
    const int steps = static_cast<int>(std::ceil(end / levelStep));
    std::vector<double> nodes;
    for (int i = 0; i <= steps; ++i)
        nodes.push_back(end * i / steps);
    for (const double knot : knots)
        if (knot > 0 && knot < end)
            nodes.push_back(knot);
    std::sort(nodes.begin(), nodes.end());
    const auto same = [](double a, double b) { return b - a < 1e-9; };
    nodes.erase(std::unique(nodes.begin(), nodes.end(), same), nodes.end());
    return nodes;
}

LoadTable::LoadTable(const LoadModel& model, LoadKind kind, const BasinLevel& levels,
                     const IntegrationGrid& grid, const std::function<void()>& onLevel)
    : m_windNodes(grid.WindNodes()),
      m_intervals(grid.levelIntervals),
      m_lowest(levels(0)),
      m_step(std::max(levels(grid.HighestX()) - m_lowest, 1e-6) / m_intervals)
{
    m_loads.reserve(static_cast<std::size_t>(m_intervals + 1) * kSectors * m_windNodes);
    for (int i = 0; i <= m_intervals; ++i) {
        for (int sector = 0; sector < kSectors; ++sector) {
            double highest = 0;
            for (int j = 0; j < m_windNodes; ++j) {
                const double load =
                    model.Load(m_lowest + i * m_step, sector, j * grid.windStep, kind);
                // A load that is no number must not vanish in the maximum.
                highest = j == 0 || !(load <= highest) ? load : highest;
                m_loads.push_back(highest);
            }
        }
        if (onLevel)
            onLevel();
    }
}

void LoadTable::Interpolate(double basinLevel, int sector, std::span<double> loads) const
{
    const double position = std::clamp((basinLevel - m_lowest) / m_step, 0.0, double(m_intervals));
    const int below = std::min(static_cast<int>(position), m_intervals - 1);
    const double part = position - below;
    const double* low = Row(below, sector);
    const double* high = Row(below + 1, sector);
    for (int j = 0; j < m_windNodes; ++j)
        loads[j] = low[j] + part * (high[j] - low[j]);
}

} // namespace rekenhart
