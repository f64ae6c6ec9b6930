#include "rekenhart/calculation/LocatieBerekening.h"

#include "rekenhart/Fout.h"
#include "rekenhart/files/Numbers.h"

#include <algorithm>
#include <cmath>

namespace rekenhart {

namespace {

constexpr double kShareWorthAPoint = 0.01;

bool NeverNegative(const Locatie& locatie)
{
    for (const SectorGegevens& sector : locatie.sectoren)
        for (const ScheefstandRij& row : sector.scheefstand)
            if (row.scheefstand < 0)
                return false;
    return true;
}

ExceedanceLine MakeLine(LoadField field, const WindStatistics& wind)
{
    if (!field.IsFinite())
        throw GeenEindigeWaarde("alle");
    return {std::move(field), wind};
}

} // namespace

LocatieBerekening::LocatieBerekening(const Locatie& locatie, const Profiel* profiel,
                                     const Belastinginstellingen& instellingen,
                                     const WindStatistics& wind, bool shares,
                                     const std::function<void()>& onStep,
                                     const IntegrationGrid& grid)
    : m_grid(grid),
      m_levels(locatie.streefpeil, locatie.peilen, instellingen.toeslagWs),
      m_model(locatie, profiel, instellingen, wind.transformation),
      m_table(m_model, LoadKind::Full, m_levels, grid, onStep),
      m_full(MakeLine({m_table, m_levels, grid.LevelNodes(m_levels.Knots()), grid}, wind)),
      m_streefpeil(locatie.streefpeil),
      m_setUpsNeverNegative(NeverNegative(locatie))
{
    if (shares)
        m_overflow.emplace(Overflow{MakeLine(MakeField(LoadKind::OverflowMo, onStep), wind),
                                    MakeLine(MakeField(LoadKind::OverflowZo, onStep), wind)});
}

int LocatieBerekening::Steps(bool shares, const IntegrationGrid& grid)
{
    return (grid.levelIntervals + 1) * (shares ? 3 : 1);
}

LoadField LocatieBerekening::MakeField(LoadKind kind, const std::function<void()>& onStep) const
{
    const LoadTable table(m_model, kind, m_levels, m_grid, onStep);
    return {table, m_levels, m_full.Field().LevelNodes(), m_grid};
}

double LocatieBerekening::LevelAt(double years)
{
    const double level = m_full.Quantile(years);
    if (!std::isfinite(level))
        throw GeenEindigeWaarde(Period(years));
    return level;
}

PeriodResult LocatieBerekening::Calculate(double years)
{
    PeriodResult result;
    const double hbn = LevelAt(years);
    ResultaatRij& row = result.rij;
    row.herhalingstijd = years;
    row.hbn = hbn;
    if (m_overflow) {
        row.streefpeil = m_streefpeil;
        row.boezempeil = m_levels.AtPeriod(years);
        row.overloopZo = m_overflow->zo.Quantile(years);
        row.overloopMo = m_overflow->mo.Quantile(years);
        // The order holds in theory; the integration may miss it by its rounding.
        if (m_setUpsNeverNegative) {
            row.overloopZo = std::max(row.overloopZo, row.boezempeil);
            row.overloopMo = std::max(row.overloopMo, row.overloopZo);
            row.hbn = std::max(row.hbn, row.overloopMo + m_model.Settings().toeslagHbn);
        }
    }

    const Contributions contributions = m_full.ContributionsAt(hbn);
    result.shares = contributions.share;
    const auto point = [&](int sector) {
        return FindDesignPoint(contributions, sector, hbn, m_table, m_levels, m_model, m_grid);
    };
    result.governing = point(contributions.DominantSector());
    for (int sector = 0; sector < kSectors; ++sector)
        if (contributions.share[sector] >= kShareWorthAPoint)
            result.perSector.push_back(point(sector));

    const LoadDetails& details = result.governing.details;
    row.dominanteWindrichting = SectorBearing(result.governing.sector);
    row.waterstand = details.level;
    if (m_model.Settings().HasWaves()) {
        row.golfhoogte = details.waveHeight;
        row.piekperiode = details.waveHeight > 0 ? details.peakPeriod : 0;
        row.golfrichting = SectorBearing(result.governing.sector);
    }
    for (const double value : {row.hbn, row.overloopMo, row.overloopZo, row.boezempeil,
                               row.waterstand, row.golfhoogte, row.piekperiode})
        if (!std::isfinite(value))
            throw GeenEindigeWaarde(Period(years));
    return result;
}

const std::vector<double>& FrequencyLinePeriods()
{
    static const std::vector<double> periods{5,   10,   20,   30,   50,   100,   200,  300,
                                             500, 1000, 2000, 3000, 5000, 10000, 20000};
    return periods;
}

} // namespace rekenhart
