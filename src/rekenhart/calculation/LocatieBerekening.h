#pragma once

#include "rekenhart/integration/DesignPoint.h"

#include <functional>
#include <optional>
#include <vector>

namespace rekenhart {

/// What a calculation yields for one return period.
struct PeriodResult {
    ResultaatRij rij; ///< the values for the database
    DesignPoint governing;
    std::array<double, kSectors> shares{};
    std::vector<DesignPoint> perSector; ///< sectors with a share of at least 1 %
};

/// The probabilistic calculation of one location: three load tables (full, and
/// unless the shares are left out, overflow with and without local set-up) and
/// the exceedance lines over them.
class LocatieBerekening {
public:
    /// `onStep` is called `Steps(shares)` times while the tables are made.
    /// `wind` must outlive the object. Throws GeenEindigeWaarde.
    LocatieBerekening(const Locatie& locatie, const Profiel* profiel,
                      const Belastinginstellingen& instellingen, const WindStatistics& wind,
                      bool shares, const std::function<void()>& onStep = {},
                      const IntegrationGrid& grid = {});
    static int Steps(bool shares, const IntegrationGrid& grid = {});

    /// Throws GeenEindigeWaarde.
    PeriodResult Calculate(double years);
    /// The HBN alone.
    double LevelAt(double years);
    double FrequencyOf(double level) { return m_full.Frequency(level); }

    const BasinLevel& Levels() const { return m_levels; }
    const LoadModel& Model() const { return m_model; }

private:
    /// Overflow with (MO) and without (ZO) local set-up.
    struct Overflow {
        ExceedanceLine mo, zo;
    };
    LoadField MakeField(LoadKind kind, const std::function<void()>& onStep) const;

    IntegrationGrid m_grid;
    BasinLevel m_levels;
    LoadModel m_model;
    LoadTable m_table; // full
    ExceedanceLine m_full;
    std::optional<Overflow> m_overflow;
    double m_streefpeil;
    bool m_setUpsNeverNegative;
};

/// The return periods of `freqlijn.txt`, years.
const std::vector<double>& FrequencyLinePeriods();

/// Below this frequency (per year) the grid says nothing more.
inline constexpr double kSmallestFrequency = 1e-7;

} // namespace rekenhart
