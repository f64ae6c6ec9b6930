#pragma once

#include "rekenhart/Gegevens.h"

#include <vector>

namespace rekenhart {

/// How often the basin level is exceeded: the level as a function of
/// x = ln(N/F), N blocks per year and F the frequency of blocks above it.
///
/// The line is straight between the known points of `Boezempeilstatistiek` and
/// goes on with its last slope. Its first point is our own: the target level is
/// the everyday level, x = 0.
class BasinLevel {
public:
    /// Needs two known rows (see OnvolledigeLocatie). `surcharge` in m is added
    /// to all levels.
    BasinLevel(double streefpeil, std::vector<PeilRij> rows, double surcharge);

    double operator()(double x) const;
    double AtPeriod(double years) const { return (*this)(XOfPeriod(years)); }
    static double XOfPeriod(double years);

    /// The abscissas of the known points, rising.
    const std::vector<double>& Knots() const { return m_x; }
    bool WasRaised() const { return m_wasRaised; } ///< a level below its predecessor
    int KnownPoints() const { return static_cast<int>(m_x.size()) - 1; }
    bool Covers(double years) const;

    static std::vector<PeilRij> KnownRows(const std::vector<PeilRij>& rows);

private:
    std::vector<double> m_x, m_level;
    bool m_wasRaised = false;
};

} // namespace rekenhart
