#include "rekenhart/statistics/WindStatistics.h"

#include "rekenhart/Fout.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace rekenhart {

namespace {

constexpr double kFastBlocksPerYear = kSlowBlocksPerYear * kFastBlocksPerSlowBlock;

std::string TableName(std::string_view table, std::string_view season)
{
    return "[" + std::string(table) + " " + std::string(season) + "]";
}

std::array<double, kSectors> Directions(const std::vector<KansRij>& rows, std::string_view season)
{
    const std::string table = TableName("Kanswindrichting", season);
    std::array<double, kSectors> directions{};
    std::array<bool, kSectors> seen{};
    double sum = 0;
    for (const KansRij& row : rows) {
        if (row.richting < 1 || row.richting > kSectors)
            throw OngeldigeTabel(table, "onbekende windrichting " + std::to_string(row.richting));
        if (seen[row.richting - 1])
            throw OngeldigeTabel(table, "dubbele windrichting " + std::to_string(row.richting));
        if (!(row.momentaneKans >= 0 && row.momentaneKans <= 1))
            throw OngeldigeTabel(table,
                                 "kans buiten 0 tot 1 in sector " + std::to_string(row.richting));
        seen[row.richting - 1] = true;
        directions[row.richting - 1] = row.momentaneKans;
        sum += row.momentaneKans;
    }
    if (rows.size() != kSectors)
        throw OngeldigeTabel(table, "er zijn geen 16 windrichtingen");
    if (std::abs(sum - 1) > 1e-6)
        throw OngeldigeTabel(table, "de som van de kansen is niet 1");
    return directions;
}

/// Before the rows are sorted: a value that is no number has no place in an order.
void RequireNumber(double value, const std::string& table)
{
    if (!std::isfinite(value))
        throw OngeldigeTabel(table, "een waarde is geen getal");
}

/// The rows of one sector, by rising speed.
std::vector<WindRij> RowsOfSector(const std::vector<WindRij>& rows, int richting)
{
    std::vector<WindRij> sector;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(sector),
                 [&](const WindRij& row) { return row.richting == richting; });
    std::sort(sector.begin(), sector.end(),
              [](const WindRij& a, const WindRij& b) { return a.windsnelheid < b.windsnelheid; });
    return sector;
}

void CheckSector(const std::vector<WindRij>& rows, const std::string& table)
{
    if (rows.size() < 2)
        throw OngeldigeTabel(table, "minder dan twee windsnelheden in een sector");
    const std::string sector = " in sector " + std::to_string(rows.front().richting);
    if (rows.front().windsnelheid != 0 || std::abs(rows.front().overschrijdingskans - 1) > 1e-9)
        throw OngeldigeTabel(table, "de kans bij 0 m/s is niet 1" + sector);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        if (!(rows[i].windsnelheid > rows[i - 1].windsnelheid))
            throw OngeldigeTabel(table, "de windsnelheden stijgen niet" + sector);
        if (!(rows[i].overschrijdingskans > 0 &&
              rows[i].overschrijdingskans < rows[i - 1].overschrijdingskans))
            throw OngeldigeTabel(table, "de kansen dalen niet of zijn niet positief" + sector);
    }
}

LinearTable Transformation(std::vector<TransformatieRij> rows)
{
    const std::string table = "[Transformatietabel]";
    if (rows.size() < 2)
        throw OngeldigeTabel(table, "minder dan twee rijen");
    for (const TransformatieRij& row : rows)
        RequireNumber(row.windsnelheid, table);
    std::sort(rows.begin(), rows.end(), [](const TransformatieRij& a, const TransformatieRij& b) {
        return a.windsnelheid < b.windsnelheid;
    });
    std::vector<double> speeds, factors;
    for (const TransformatieRij& row : rows) {
        if (!(row.factor > 0 && row.factor < 10))
            throw OngeldigeTabel(table, "een factor is niet positief");
        if (!speeds.empty() && !(row.windsnelheid > speeds.back()))
            throw OngeldigeTabel(table, "de windsnelheden stijgen niet");
        speeds.push_back(row.windsnelheid);
        factors.push_back(row.factor);
    }
    return {std::move(speeds), std::move(factors)};
}

} // namespace

SeasonWind::SeasonWind(const SeizoenTabellen& tables, std::string_view season)
    : m_direction(Directions(tables.kanswindrichting, season))
{
    const std::string table = TableName("Windstatistiek", season);
    for (const WindRij& row : tables.windstatistiek)
        RequireNumber(row.windsnelheid, table);
    std::size_t used = 0;
    for (int sector = 0; sector < kSectors; ++sector) {
        const auto rows = RowsOfSector(tables.windstatistiek, sector + 1);
        CheckSector(rows, table);
        used += rows.size();
        std::vector<double> speeds;
        auto& exceedance = m_exceedance[sector];
        for (const WindRij& row : rows) {
            speeds.push_back(row.windsnelheid);
            exceedance.push_back(std::min(row.overschrijdingskans, 1.0));
        }
        if (sector == 0)
            m_speeds = speeds;
        else if (speeds != m_speeds)
            throw OngeldigeTabel(table, "windsnelheden verschillen per sector");

        auto& segments = m_segments[sector];
        for (std::size_t i = 0; i + 1 < speeds.size(); ++i) {
            const double slope = (std::log(exceedance[i + 1]) - std::log(exceedance[i])) /
                                 (speeds[i + 1] - speeds[i]);
            segments.push_back({std::log(exceedance[i]) - slope * speeds[i], slope});
        }
        segments.push_back(segments.back()); // beyond the last speed
    }
    if (used != tables.windstatistiek.size())
        throw OngeldigeTabel(table, "onbekende windrichting");
}

double SeasonWind::Exceedance(int sector, double u) const
{
    if (u <= m_speeds.front())
        return 1;
    const auto above = std::upper_bound(m_speeds.begin(), m_speeds.end(), u);
    const Segment& segment = m_segments[sector][above - m_speeds.begin() - 1];
    return std::min(1.0, std::exp(segment.offset + segment.slope * u));
}

double SeasonWind::MeanWind(int sector) const
{
    const auto& p = m_exceedance[sector];
    double mean = 0;
    for (std::size_t i = 0; i + 1 < m_speeds.size(); ++i)
        mean += 0.5 * (p[i] + p[i + 1]) * (m_speeds[i + 1] - m_speeds[i]);
    return mean;
}

WindStatistics::WindStatistics(const StatistiekTabellen& tables)
    : winter(tables.winter, "winter"),
      zomer(tables.zomer, "zomer"),
      transformation(Transformation(tables.transformatie))
{}

double WindStatistics::MeanWind(int sector) const
{
    const double pWinter = winter.DirectionProbability(sector);
    const double pZomer = zomer.DirectionProbability(sector);
    if (pWinter + pZomer <= 0)
        return 0;
    return (pWinter * winter.MeanWind(sector) + pZomer * zomer.MeanWind(sector)) /
           (pWinter + pZomer);
}

double WindStatistics::WindAtPeriod(int sector, double years) const
{
    const auto frequency = [&](double u) {
        return 0.5 * kFastBlocksPerYear *
               (winter.DirectionProbability(sector) * winter.Exceedance(sector, u) +
                zomer.DirectionProbability(sector) * zomer.Exceedance(sector, u));
    };
    const double wanted = 1 / years;
    double low = 0, high = 1000; // m/s
    if (frequency(low) <= wanted)
        return 0;
    while (high - low > 1e-9) {
        const double middle = 0.5 * (low + high);
        (frequency(middle) > wanted ? low : high) = middle;
    }
    return 0.5 * (low + high);
}

} // namespace rekenhart
