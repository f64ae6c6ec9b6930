#include "geometry/RingIndex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace geometry {
namespace {

// Between these sizes the determinants of lines are 0 or above 1E-50, their
// quotients below 1E+100, and no square overflows.
constexpr double kLargestTame = 1e20;
constexpr double kSmallestTame = 1e-20;

struct Bounds {
    double left = std::numeric_limits<double>::infinity();
    double right = -std::numeric_limits<double>::infinity();
    double bottom = std::numeric_limits<double>::infinity();
    double top = -std::numeric_limits<double>::infinity();

    void Add(Punt p)
    {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        bottom = std::min(bottom, p.y);
        top = std::max(top, p.y);
    }
    void Add(const Bounds& other)
    {
        Add(Punt{other.left, other.bottom});
        Add(Punt{other.right, other.top});
    }
    RingIndex::Box Box() const
    {
        const double cx = left + (right - left) / 2;
        const double cy = bottom + (top - bottom) / 2;
        return {cx, cy, std::max(right - cx, cx - left), std::max(top - cy, cy - bottom)};
    }
};

bool IsTame(double difference)
{
    return difference == 0 || std::abs(difference) >= kSmallestTame;
}

} // namespace

RingIndex::RingIndex(RingPunten points) : m_points(points)
{
    if (points.empty())
        return;
    const std::size_t leaves = (points.size() + kEdgesPerLeaf - 1) / kEdgesPerLeaf;
    std::vector<Bounds> level(leaves);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Lijn edge = RingEdge(points, i);
        Bounds& leaf = level[i / kEdgesPerLeaf];
        leaf.Add(edge.p1);
        leaf.Add(edge.p2);
        const double size = std::max(std::abs(edge.p2.x), std::abs(edge.p2.y));
        m_largest = std::max(m_largest, size);
        m_tame = m_tame && std::isfinite(edge.p2.x) && std::isfinite(edge.p2.y) &&
                 IsTame(edge.p2.x - edge.p1.x) && IsTame(edge.p2.y - edge.p1.y);
    }
    m_tame = m_tame && m_largest <= kLargestTame;

    m_boxes.reserve(leaves + leaves / (kFanOut - 1) + 16); // 16: the levels' last boxes
    for (;;) {
        m_levels.push_back(static_cast<std::uint32_t>(m_boxes.size()));
        for (const Bounds& bounds : level)
            m_boxes.push_back(bounds.Box());
        if (level.size() == 1)
            break;
        std::vector<Bounds> higher((level.size() + kFanOut - 1) / kFanOut);
        for (std::size_t i = 0; i < level.size(); ++i)
            higher[i / kFanOut].Add(level[i]);
        level = std::move(higher);
    }
    m_boxes.shrink_to_fit();
    m_levels.shrink_to_fit();
}

double RingIndex::Margin(Punt p) const
{
    constexpr double kHitBesideEdge = 1e-4; // 1E-5 in each direction, and to spare
    constexpr double kRayLength = 1e5;
    constexpr double kRounding = 256 * std::numeric_limits<double>::epsilon();
    const double largest = std::max({m_largest, std::abs(p.x), std::abs(p.y)});
    return kHitBesideEdge + kRounding * (largest + 3 * kRayLength);
}

bool RingIndex::CanSkip(Punt p) const
{
    return m_tame && std::abs(p.x) <= kLargestTame && std::abs(p.y) <= kLargestTame;
}

} // namespace geometry
