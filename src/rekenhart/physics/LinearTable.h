#pragma once

#include <vector>

namespace rekenhart {

/// A piecewise linear function through points with rising abscissa. Outside its
/// ends it keeps the end values; callers that continue it do so themselves.
///
/// Two equal neighbouring abscissas make a segment of zero width: it is skipped,
/// and at that very abscissa the earlier point counts.
class LinearTable {
public:
    LinearTable() = default;
    LinearTable(std::vector<double> x, std::vector<double> y);

    bool IsEmpty() const { return m_x.empty(); }
    double operator()(double x) const;

    double FirstX() const { return m_x.front(); }
    double FirstY() const { return m_y.front(); }
    double LastX() const { return m_x.back(); }
    double LastY() const { return m_y.back(); }

private:
    std::vector<double> m_x, m_y;
};

} // namespace rekenhart
