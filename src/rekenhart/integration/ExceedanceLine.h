#pragma once

#include "rekenhart/integration/LoadField.h"
#include "rekenhart/statistics/WindStatistics.h"

#include <array>
#include <vector>

namespace rekenhart {

/// Where the exceedance of one level comes from.
struct Contributions {
    /// Part of the exceedance frequency per sector; their sum is 1, or 0 when
    /// the level is never exceeded.
    std::array<double, kSectors> share{};
    /// The mean of x = ln(N/F) over the contributions of a sector, not beyond the
    /// place where the level is exceeded without wind.
    std::array<double, kSectors> meanX{};

    /// The sector with the largest share, compared to 9 decimals; the first of equals.
    int DominantSector() const;
};

/// How often a load is exceeded: the integral over the slow basin level of the
/// probability that one of the fast wind blocks within it takes the load above
/// (Ferry Borges and Castanheta 1971). Basin level and wind are independent,
/// the two seasons weigh the same.
///
/// All memory is taken at construction; the operations use it as scratch, so
/// that an object serves one thread.
class ExceedanceLine {
public:
    /// `wind` must outlive the object.
    ExceedanceLine(LoadField field, const WindStatistics& wind);

    /// Times per year that the load is above `level`. Never rises with `level`.
    double Frequency(double level);
    /// The load exceeded on average once in `years`.
    double Quantile(double years);
    Contributions ContributionsAt(double level);

    const LoadField& Field() const { return m_field; }

private:
    static constexpr int kSeasons = 2;

    struct Season {
        const SeasonWind* wind;
        std::vector<int> segmentOfCell; // first wind-table segment per cell of the wind axis
    };

    double Exceedance(const Season& season, int sector, double u, int cell) const;
    /// The cell (node before) and wind at which a row passes `level`; false when
    /// it never does. `hint` is where the search starts, and ends.
    bool Crossing(std::span<const double> row, double level, int& hint, double& wind) const;
    void CollectProbabilities(double level, bool perSector);
    double WithoutWind(std::size_t node) const { return m_withoutWind[node]; }
    std::array<double, kSeasons> ProbabilityInside(std::size_t node, double part,
                                                   double level) const;

    LoadField m_field;
    std::array<Season, kSeasons> m_seasons;
    std::vector<double> m_frequency;                               // F at the nodes, per year
    std::vector<double> m_weight;                                  // trapezoid weights in F
    std::vector<double> m_withoutWind;                             // lowest load at wind 0
    double m_lowest, m_highest;                                    // bracket of all quantiles
    std::array<std::vector<double>, kSeasons> m_probability;       // per node
    std::array<std::vector<double>, kSeasons> m_sectorProbability; // per sector and node
};

} // namespace rekenhart
