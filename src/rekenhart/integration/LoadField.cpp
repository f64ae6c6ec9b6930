#include "rekenhart/integration/LoadField.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace rekenhart {

LoadField::LoadField(std::vector<double> levelNodes, const IntegrationGrid& grid)
    : m_x(std::move(levelNodes)),
      m_windNodes(grid.WindNodes()),
      m_windStep(grid.windStep),
      m_loads(kSectors * m_x.size() * m_windNodes, -std::numeric_limits<double>::infinity())
{}

LoadField::LoadField(const LoadTable& table, const BasinLevel& levels,
                     std::vector<double> levelNodes, const IntegrationGrid& grid)
    : LoadField(std::move(levelNodes), grid)
{
    for (std::size_t node = 0; node < m_x.size(); ++node) {
        const double level = levels(m_x[node]);
        for (int sector = 0; sector < kSectors; ++sector)
            table.Interpolate(level, sector, Row(sector, node));
    }
}

void LoadField::RaiseTo(const LoadField& other, double shift)
{
    for (std::size_t i = 0; i < m_loads.size(); ++i)
        m_loads[i] = std::max(m_loads[i], other.m_loads[i] + shift);
}

double LoadField::LowestAtFirstNode() const
{
    double lowest = Row(0, 0)[0];
    for (int sector = 1; sector < kSectors; ++sector)
        lowest = std::min(lowest, Row(sector, 0)[0]);
    return lowest;
}

double LoadField::Highest() const
{
    return *std::max_element(m_loads.begin(), m_loads.end());
}

bool LoadField::IsFinite() const
{
    return std::all_of(m_loads.begin(), m_loads.end(), [](double v) { return std::isfinite(v); });
}

} // namespace rekenhart
