#pragma once

#include "rekenhart/integration/LoadTable.h"

#include <span>
#include <vector>

namespace rekenhart {

/// Loads at every node of the level axis, per sector and wind: what the
/// integration runs over. Of one location, or of a dike ring as one.
class LoadField {
public:
    LoadField(std::vector<double> levelNodes, const IntegrationGrid& grid);
    LoadField(const LoadTable& table, const BasinLevel& levels, std::vector<double> levelNodes,
              const IntegrationGrid& grid);

    /// Takes the larger of both everywhere, `other` shifted by `shift`.
    void RaiseTo(const LoadField& other, double shift);

    const std::vector<double>& LevelNodes() const { return m_x; }
    int WindNodes() const { return m_windNodes; }
    double WindStep() const { return m_windStep; }

    std::span<const double> Row(int sector, std::size_t node) const
    {
        return {&m_loads[Offset(sector, node)], static_cast<std::size_t>(m_windNodes)};
    }
    std::span<double> Row(int sector, std::size_t node)
    {
        return {&m_loads[Offset(sector, node)], static_cast<std::size_t>(m_windNodes)};
    }

    double LowestAtFirstNode() const;
    double Highest() const;
    bool IsFinite() const;

private:
    std::size_t Offset(int sector, std::size_t node) const
    {
        return (sector * m_x.size() + node) * m_windNodes;
    }

    std::vector<double> m_x;
    int m_windNodes;
    double m_windStep;
    std::vector<double> m_loads; // sector, level node, wind: the order of the walk
};

} // namespace rekenhart
