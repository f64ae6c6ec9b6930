#include "rekenhart/integration/ExceedanceLine.h"

#include <algorithm>
#include <cmath>

namespace rekenhart {

namespace {

constexpr double kQuantileCell = 1e-4; // m; within it ln F is straight
constexpr double kSeasonShare = 0.5;

/// The probability that at least one of the fast blocks within a slow one
/// exceeds: 1 - (1 - p)^4, written so that a small p keeps its digits.
double InSlowBlock(double p)
{
    static_assert(kFastBlocksPerSlowBlock == 4);
    p = std::min(p, 1.0);
    return p * (4 + p * (-6 + p * (4 - p)));
}

} // namespace

int Contributions::DominantSector() const
{
    const auto rounded = [&](int sector) { return std::round(share[sector] * 1e9); };
    int dominant = 0;
    for (int sector = 1; sector < kSectors; ++sector)
        if (rounded(sector) > rounded(dominant))
            dominant = sector;
    return dominant;
}

ExceedanceLine::ExceedanceLine(LoadField field, const WindStatistics& wind)
    : m_field(std::move(field)),
      m_seasons{Season{&wind.winter, {}}, Season{&wind.zomer, {}}},
      m_lowest(m_field.LowestAtFirstNode() - 0.01),
      m_highest(m_field.Highest() + 0.01)
{
    const auto& x = m_field.LevelNodes();
    const std::size_t nodes = x.size();
    for (const double node : x)
        m_frequency.push_back(kSlowBlocksPerYear * std::exp(-node));
    m_weight.assign(nodes, 0);
    for (std::size_t k = 0; k + 1 < nodes; ++k) {
        const double half = 0.5 * (m_frequency[k] - m_frequency[k + 1]);
        m_weight[k] += half;
        m_weight[k + 1] += half;
    }
    m_weight.back() += m_frequency.back(); // all rarer levels count as the last

    for (std::size_t k = 0; k < nodes; ++k) {
        double lowest = m_field.Row(0, k)[0];
        for (int sector = 1; sector < kSectors; ++sector)
            lowest = std::min(lowest, m_field.Row(sector, k)[0]);
        m_withoutWind.push_back(lowest);
    }
    for (Season& season : m_seasons) {
        const auto& speeds = season.wind->Speeds();
        for (int cell = 0; cell < m_field.WindNodes(); ++cell) {
            const auto above =
                std::upper_bound(speeds.begin(), speeds.end(), cell * m_field.WindStep());
            season.segmentOfCell.push_back(static_cast<int>(above - speeds.begin()) - 1);
        }
    }
    for (int s = 0; s < kSeasons; ++s) {
        m_probability[s].resize(nodes);
        m_sectorProbability[s].resize(nodes * kSectors);
    }
}

double ExceedanceLine::Exceedance(const Season& season, int sector, double u, int cell) const
{
    const auto& speeds = season.wind->Speeds();
    auto segment = static_cast<std::size_t>(season.segmentOfCell[cell]);
    while (segment + 1 < speeds.size() && speeds[segment + 1] <= u)
        ++segment;
    const SeasonWind::Segment& line = season.wind->Segments(sector)[segment];
    return std::min(1.0, std::exp(line.offset + line.slope * u));
}

bool ExceedanceLine::Crossing(std::span<const double> row, double level, int& hint,
                              double& wind) const
{
    const int count = m_field.WindNodes();
    int j = hint; // the first node above the level
    while (j > 0 && row[j - 1] > level)
        --j;
    while (j < count && !(row[j] > level))
        ++j;
    hint = j;
    if (j == count)
        return false;
    wind = j == 0 ? 0 : (j - 1 + (level - row[j - 1]) / (row[j] - row[j - 1])) * m_field.WindStep();
    return true;
}

void ExceedanceLine::CollectProbabilities(double level, bool perSector)
{
    const std::size_t nodes = m_field.LevelNodes().size();
    for (int s = 0; s < kSeasons; ++s)
        std::fill(m_probability[s].begin(), m_probability[s].end(), 0.0);
    for (int sector = 0; sector < kSectors; ++sector) {
        int hint = m_field.WindNodes();
        for (std::size_t k = 0; k < nodes; ++k) {
            double wind = 0;
            const bool crosses = Crossing(m_field.Row(sector, k), level, hint, wind);
            for (int s = 0; s < kSeasons; ++s) {
                double p = 0;
                if (crosses)
                    p = m_seasons[s].wind->DirectionProbability(sector) *
                        (hint == 0 ? 1 : Exceedance(m_seasons[s], sector, wind, hint - 1));
                m_probability[s][k] += p;
                if (perSector)
                    m_sectorProbability[s][sector * nodes + k] = p;
            }
        }
    }
}

std::array<double, ExceedanceLine::kSeasons>
ExceedanceLine::ProbabilityInside(std::size_t node, double part, double level) const
{
    std::array<double, kSeasons> probability{};
    for (int sector = 0; sector < kSectors; ++sector) {
        const auto low = m_field.Row(sector, node);
        const auto high = m_field.Row(sector, node + 1);
        const auto load = [&](int j) { return low[j] + part * (high[j] - low[j]); };
        int j = 0;
        while (j < m_field.WindNodes() && !(load(j) > level))
            ++j;
        if (j == m_field.WindNodes())
            continue;
        const double wind =
            j == 0 ? 0
                   : (j - 1 + (level - load(j - 1)) / (load(j) - load(j - 1))) * m_field.WindStep();
        for (int s = 0; s < kSeasons; ++s)
            probability[s] += m_seasons[s].wind->DirectionProbability(sector) *
                              (j == 0 ? 1 : Exceedance(m_seasons[s], sector, wind, j - 1));
    }
    return probability;
}

double ExceedanceLine::Frequency(double level)
{
    CollectProbabilities(level, false);
    const std::size_t nodes = m_weight.size();
    std::array<double, kSeasons> sum{};
    for (int s = 0; s < kSeasons; ++s)
        for (std::size_t k = 0; k < nodes; ++k)
            sum[s] += m_weight[k] * InSlowBlock(m_probability[s][k]);

    // Where the level itself, without any wind, passes `level`, the probability
    // jumps to 1 inside a cell; the trapezoid there is replaced by the exact
    // place of the jump. Without wind effect the result is then exact.
    std::size_t jump = nodes;
    if (WithoutWind(0) <= level)
        for (std::size_t k = 0; k + 1 < nodes; ++k)
            if (WithoutWind(k) <= level && WithoutWind(k + 1) > level)
                jump = k;
    if (jump < nodes) {
        const auto& x = m_field.LevelNodes();
        const double part =
            (level - WithoutWind(jump)) / (WithoutWind(jump + 1) - WithoutWind(jump));
        const double before = m_frequency[jump];
        const double after = m_frequency[jump + 1];
        const double at =
            kSlowBlocksPerYear * std::exp(-(x[jump] + part * (x[jump + 1] - x[jump])));
        const auto inside = ProbabilityInside(jump, part * (1 - 1e-9), level);
        for (int s = 0; s < kSeasons; ++s) {
            const double first = InSlowBlock(m_probability[s][jump]);
            const double second = InSlowBlock(m_probability[s][jump + 1]);
            sum[s] += 0.5 * (first + InSlowBlock(inside[s])) * (before - at) + (at - after) -
                      0.5 * (first + second) * (before - after);
        }
    }
    return kSeasonShare * (sum[0] + sum[1]);
}

double ExceedanceLine::Quantile(double years)
{
    // The bracket is cut in 2^n equal cells of at most 0.1 mm, as halving it would
    // do, and the cell that holds the root is looked for by secants in ln F, which
    // takes about half the evaluations. Every third step halves, because F jumps
    // where there is no wind effect.
    const double wanted = 1 / years;
    double cells = 1;
    while ((m_highest - m_lowest) / cells > kQuantileCell)
        cells *= 2;
    const auto level = [&](double cell) {
        return m_lowest + (m_highest - m_lowest) * (cell / cells);
    };

    double low = 0, high = cells;
    double atLow = Frequency(m_lowest), atHigh = Frequency(m_highest);
    for (int step = 1; high - low > 1; ++step) {
        double middle = std::floor(0.5 * (low + high));
        if (step % 3 != 0 && atHigh > 0 && atLow > atHigh) {
            const double secant =
                low + (high - low) * std::log(atLow / wanted) / std::log(atLow / atHigh);
            middle = std::clamp(std::floor(secant), low + 1, high - 1);
        }
        const double frequency = Frequency(level(middle));
        if (frequency > wanted) {
            low = middle;
            atLow = frequency;
        } else {
            high = middle;
            atHigh = frequency;
        }
    }
    if (atHigh <= 0 || atLow <= atHigh)
        return 0.5 * (level(low) + level(high));
    return level(low) +
           (level(high) - level(low)) * std::log(atLow / wanted) / std::log(atLow / atHigh);
}

Contributions ExceedanceLine::ContributionsAt(double level)
{
    CollectProbabilities(level, true);
    const auto& x = m_field.LevelNodes();
    const std::size_t nodes = x.size();
    Contributions result;
    double total = 0;
    for (int sector = 0; sector < kSectors; ++sector) {
        double cross = x.back(); // where the level is exceeded without wind
        if (m_field.Row(sector, 0)[0] > level)
            cross = 0;
        else
            for (std::size_t k = 1; k < nodes; ++k) {
                const double before = m_field.Row(sector, k - 1)[0];
                const double here = m_field.Row(sector, k)[0];
                if (here > level) {
                    cross = x[k - 1] + (x[k] - x[k - 1]) * (level - before) / (here - before);
                    break;
                }
            }
        double sum = 0, moment = 0;
        for (std::size_t k = 0; k < nodes; ++k) {
            double contribution = 0;
            for (int s = 0; s < kSeasons; ++s) {
                const double p = std::min(m_probability[s][k], 1.0);
                if (p > 0)
                    contribution += kSeasonShare * m_weight[k] * InSlowBlock(p) *
                                    m_sectorProbability[s][sector * nodes + k] / p;
            }
            sum += contribution;
            moment += contribution * std::min(x[k], cross);
        }
        result.share[sector] = sum;
        result.meanX[sector] = sum > 0 ? moment / sum : cross;
        total += sum;
    }
    if (total > 0)
        for (double& share : result.share)
            share /= total;
    return result;
}

} // namespace rekenhart
