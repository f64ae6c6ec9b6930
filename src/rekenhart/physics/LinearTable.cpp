#include "rekenhart/physics/LinearTable.h"

#include <algorithm>
#include <utility>

namespace rekenhart {

LinearTable::LinearTable(std::vector<double> x, std::vector<double> y)
    : m_x(std::move(x)), m_y(std::move(y))
{}

double LinearTable::operator()(double x) const
{
    // The first point at or above x: with equal abscissas that is the earlier one.
    const auto above = std::lower_bound(m_x.begin(), m_x.end(), x);
    if (above == m_x.begin())
        return m_y.front();
    if (above == m_x.end())
        return m_y.back();
    const auto i = above - m_x.begin();
    if (*above == x)
        return m_y[i];
    return m_y[i - 1] + (m_y[i] - m_y[i - 1]) * (x - m_x[i - 1]) / (m_x[i] - m_x[i - 1]);
}

} // namespace rekenhart
