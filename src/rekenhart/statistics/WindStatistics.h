#pragma once

#include "rekenhart/Constants.h"
#include "rekenhart/Gegevens.h"
#include "rekenhart/physics/LinearTable.h"

#include <array>
#include <string_view>
#include <vector>

namespace rekenhart {

/// Wind of one half of the year: the probability of a direction and, given the
/// direction, of a potential wind above u in a 12-hour block.
///
/// ln P is linear in u between the speeds of the table and goes on with the last
/// slope.
class SeasonWind {
public:
    /// Throws OngeldigeTabel, naming the table of `season` ("winter", "zomer"),
    /// unless both tables are as described in docs/rekenhart.md.
    SeasonWind(const SeizoenTabellen& tables, std::string_view season);

    double DirectionProbability(int sector) const { return m_direction[sector]; }
    /// P(U > u | sector)
    double Exceedance(int sector, double u) const;
    /// The mean wind given the sector: the integral of P(U > u) by trapezoids.
    double MeanWind(int sector) const;

    /// ln P on the table's segments, for who evaluates it millions of times:
    /// ln P = offset + slope * u from `Speeds()[segment]` on.
    struct Segment {
        double offset, slope;
    };
    const std::vector<double>& Speeds() const { return m_speeds; }
    const std::vector<Segment>& Segments(int sector) const { return m_segments[sector]; }

private:
    std::array<double, kSectors> m_direction{};
    std::vector<double> m_speeds;
    std::array<std::vector<double>, kSectors> m_exceedance;
    std::array<std::vector<Segment>, kSectors> m_segments;
};

/// The statistics of the wind over the year. Each season is half of it.
struct WindStatistics {
    /// Throws OngeldigeTabel.
    explicit WindStatistics(const StatistiekTabellen& tables);

    SeasonWind winter, zomer;
    LinearTable transformation; ///< potential wind to wind over open water

    /// Mean potential wind given the sector.
    double MeanWind(int sector) const;
    /// The potential wind that is exceeded from the sector on average once in
    /// `years`; 0 when even any wind from there is rarer.
    double WindAtPeriod(int sector, double years) const;
};

} // namespace rekenhart
