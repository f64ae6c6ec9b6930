#pragma once

#include "rekenhart/Gegevens.h"
#include "rekenhart/Instellingen.h"
#include "rekenhart/physics/DikeSlope.h"
#include "rekenhart/physics/LinearTable.h"
#include "rekenhart/physics/RunUpOvertopping.h"
#include "rekenhart/physics/Wind.h"

#include <array>
#include <optional>

namespace rekenhart {

/// Which load is asked for: that of the mechanism, or the overflow level with
/// (MO) or without (ZO) the local set-up over the fetch.
enum class LoadKind { Full, OverflowMo, OverflowZo };

/// All that happens on the way from basin level and wind to a load. Levels and
/// heights in m, periods in s, winds in m/s.
struct LoadDetails {
    double potentialWind = 0; ///< with the increase of the settings
    double waterWind = 0;
    double scheefstand = 0;
    double depth = 0; ///< over the fetch
    double opwaaiing = 0;
    double level = 0; ///< local water level, both set-ups included
    double grownHeight = 0;
    double peakPeriod = 0;
    double damFactor = 1, pileFactor = 1, reedFactor = 1;
    double toeDepth = 0;   ///< negative when the toe is dry
    double waveHeight = 0; ///< Hm0 at the toe
    double angle = 0;      ///< between wave and dike normal, degrees
    bool wavesArrive = false;
    SlopeLoad slope;           ///< only for a slope that waves reach
    FreeboardResult freeboard; ///< only when waves arrive
    double load = 0;
};

/// The load level at one location as a function of basin level, wind sector and
/// wind. Order of the steps: growth, correction factor, dam, piles, reed, depth
/// limit, obliqueness, run-up or overtopping. Immutable; evaluates without
/// allocation.
class LoadModel {
public:
    /// The location must be complete and the profile fit for the mechanism (see
    /// Controle.h). `profiel` may be null for overflow.
    LoadModel(const Locatie& locatie, const Profiel* profiel,
              const Belastinginstellingen& instellingen, LinearTable transformation);

    /// `basinLevel` includes TOESLAGWS; `wind` is the potential wind of the tables.
    LoadDetails Evaluate(double basinLevel, int sector, double wind, LoadKind kind) const;
    double Load(double basinLevel, int sector, double wind, LoadKind kind) const
    {
        return Evaluate(basinLevel, sector, wind, kind).load;
    }

    const Belastinginstellingen& Settings() const { return m_settings; }
    double Fetch(int sector) const { return m_sectors[sector].fetch; }
    double HighestScheefstandWind(int sector) const
    {
        return m_sectors[sector].scheefstand.HighestWind();
    }
    bool HasSlope() const { return m_slope.has_value(); }
    bool HasProfiel() const { return m_hasProfiel; }
    const Profiel& GetProfiel() const { return m_profiel; }

private:
    struct Sector {
        double bed = 0, fetch = 0, angle = 0;
        ScheefstandLine scheefstand;
    };

    void AddWaves(LoadDetails& details, const Sector& sector) const;
    double ToeLevel(const Sector& sector) const;

    Belastinginstellingen m_settings;
    bool m_hasProfiel = false;
    Profiel m_profiel;
    std::optional<DikeSlope> m_slope;
    LinearTable m_transformation;
    double m_windFactor = 1;    // TOENAMEWIND
    double m_windReduction = 1; // rough land
    double m_discharge = 0;     // m3/s per m
    std::array<Sector, kSectors> m_sectors;
};

} // namespace rekenhart
