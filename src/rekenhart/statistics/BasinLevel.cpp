#include "rekenhart/statistics/BasinLevel.h"

#include <algorithm>
#include <cmath>

namespace rekenhart {

BasinLevel::BasinLevel(double streefpeil, std::vector<PeilRij> rows, double surcharge)
    : m_x{0}, m_level{streefpeil}
{
    for (const PeilRij& row : KnownRows(rows)) {
        m_wasRaised = m_wasRaised || row.boezempeil < m_level.back();
        m_x.push_back(XOfPeriod(row.herhalingstijd));
        m_level.push_back(std::max(row.boezempeil, m_level.back()));
    }
    for (double& level : m_level)
        level += surcharge;
}

std::vector<PeilRij> BasinLevel::KnownRows(const std::vector<PeilRij>& rows)
{
    std::vector<PeilRij> known;
    for (const PeilRij& row : rows)
        if (IsBekend(row.boezempeil) && row.herhalingstijd * kSlowBlocksPerYear > 1)
            known.push_back(row);
    std::stable_sort(known.begin(), known.end(), [](const PeilRij& a, const PeilRij& b) {
        return a.herhalingstijd < b.herhalingstijd;
    });
    const auto same = [](const PeilRij& a, const PeilRij& b) {
        return a.herhalingstijd == b.herhalingstijd;
    };
    known.erase(std::unique(known.begin(), known.end(), same), known.end());
    return known;
}

double BasinLevel::XOfPeriod(double years)
{
    return std::log(kSlowBlocksPerYear * years);
}

double BasinLevel::operator()(double x) const
{
    const auto above = std::lower_bound(m_x.begin() + 1, m_x.end() - 1, x);
    const auto i = above - m_x.begin(); // the segment that ends here, the last one for all beyond
    return m_level[i - 1] +
           (m_level[i] - m_level[i - 1]) * (x - m_x[i - 1]) / (m_x[i] - m_x[i - 1]);
}

bool BasinLevel::Covers(double years) const
{
    const double x = XOfPeriod(years);
    const double slack = 1e-9;
    return x >= m_x[1] - slack && x <= m_x.back() + slack;
}

} // namespace rekenhart
