#include "rekenhart/integration/LoadModel.h"

#include "rekenhart/physics/WaveObstacles.h"

#include <algorithm>
#include <utility>

namespace rekenhart {

namespace {

constexpr double kSmallestDepth = 0.10;       // m; a dry bed counts as this
constexpr double kSmallestWave = 0.005;       // m; below it there is no wave load
constexpr double kPeakToMeanPeriod = 1 / 1.1; // T(m-1,0) over Tp

ScheefstandLine MakeScheefstand(const std::vector<ScheefstandRij>& rows)
{
    std::vector<double> speeds, values;
    for (const ScheefstandRij& row : rows) {
        speeds.push_back(row.windsnelheid);
        values.push_back(row.scheefstand);
    }
    return ScheefstandLine(LinearTable(std::move(speeds), std::move(values)));
}

} // namespace

LoadModel::LoadModel(const Locatie& locatie, const Profiel* profiel,
                     const Belastinginstellingen& instellingen, LinearTable transformation)
    : m_settings(instellingen),
      m_transformation(std::move(transformation)),
      m_windFactor(1 + instellingen.toenameWind / 100),
      m_windReduction(instellingen.windreductie ? WindReduction(locatie.ruwheidslengte) : 1),
      m_discharge(instellingen.overslagdebiet / 1000)
{
    if (profiel && m_settings.HasWaves()) {
        m_hasProfiel = true;
        m_profiel = *profiel;
        if (!profiel->IsWand())
            m_slope.emplace(*profiel);
    }
    for (int i = 0; i < kSectors; ++i) {
        const SectorGegevens& data = locatie.sectoren[i];
        m_sectors[i] = {data.bodemhoogte, data.strijklengte,
                        AngleBetween(SectorBearing(i), locatie.dijknormaal),
                        MakeScheefstand(data.scheefstand)};
    }
}

double LoadModel::ToeLevel(const Sector& sector) const
{
    if (m_slope)
        return m_slope->ToeLevel();
    return m_profiel.punten.empty() ? sector.bed : m_profiel.punten.back().y;
}

LoadDetails LoadModel::Evaluate(double basinLevel, int sectorIndex, double wind,
                                LoadKind kind) const
{
    const Sector& sector = m_sectors[sectorIndex];
    LoadDetails details;
    details.potentialWind = wind * m_windFactor;
    details.waterWind =
        details.potentialWind * m_transformation(details.potentialWind) * m_windReduction;
    details.scheefstand = sector.scheefstand(details.potentialWind);
    details.depth = std::max(basinLevel + details.scheefstand - sector.bed, kSmallestDepth);
    if (kind != LoadKind::OverflowZo)
        details.opwaaiing = Opwaaiing(details.waterWind, sector.fetch, details.depth);
    details.level = basinLevel + details.scheefstand + details.opwaaiing;
    details.load = details.level;
    if (kind != LoadKind::Full)
        return details;
    if (m_hasProfiel)
        AddWaves(details, sector);
    details.load = details.level + details.freeboard.freeboard + m_settings.toeslagHbn;
    return details;
}

void LoadModel::AddWaves(LoadDetails& details, const Sector& sector) const
{
    details.angle = sector.angle;
    const double toe = ToeLevel(sector);
    details.toeDepth = details.level - toe;

    Waves waves =
        GrowWaves(m_settings.golfgroeimodule, details.waterWind, sector.fetch, details.depth);
    details.grownHeight = waves.height;
    details.peakPeriod = waves.peakPeriod;
    if (waves.height <= 0)
        return;
    waves.height *= m_settings.golfCorrFactor;
    if (m_profiel.damtype >= 1)
        waves.height *= details.damFactor = DamTransmission(m_profiel, details.level, waves);
    if (m_profiel.palenrij && waves.height > 0) {
        const double bed = m_profiel.punten.empty() ? sector.bed : m_profiel.punten.front().y;
        const double depth = std::max(details.level - bed, kSmallestDepth);
        waves.height *= details.pileFactor = PileTransmission(m_profiel, depth, waves);
    }
    if (m_profiel.rietkraag && waves.height > 0)
        waves.height *= details.reedFactor =
            ReedTransmission(m_profiel, std::max(details.toeDepth, kSmallestDepth), waves);
    details.waveHeight = DepthLimited(waves.height, details.toeDepth);

    const WavesAtDike atDike =
        ReduceForAngle({details.waveHeight, details.peakPeriod * kPeakToMeanPeriod}, details.angle);
    if (atDike.height < kSmallestWave)
        return;
    details.wavesArrive = true;
    if (!m_slope) {
        details.freeboard =
            WallFreeboard(atDike, m_profiel.damwandmodule == 1, details.angle, m_discharge);
        return;
    }
    details.slope = m_slope->Schematise(details.level, atDike);
    details.freeboard =
        m_settings.faalmechanisme == Faalmechanisme::Golfoploop
            ? RunUpFreeboard(details.slope, details.angle)
            : OvertoppingFreeboard(atDike, details.slope, details.angle, m_discharge);
}

} // namespace rekenhart
