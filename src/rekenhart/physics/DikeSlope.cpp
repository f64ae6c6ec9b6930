#include "rekenhart/physics/DikeSlope.h"

#include "rekenhart/Constants.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace rekenhart {

namespace {

constexpr int kSlopePasses = 3; // fixed, so that every implementation agrees

double RoughnessOfSegment(double r, bool gras, double waveHeight)
{
    return std::clamp(gras ? 1.15 * std::sqrt(waveHeight) : r, 0.5, 1.0);
}

} // namespace

DikeSlope::DikeSlope(const Profiel& profiel)
{
    const auto& points = profiel.punten;
    for (std::size_t i = static_cast<std::size_t>(profiel.ToeIndex()); i + 1 < points.size(); ++i) {
        const double dx = points[i + 1].x - points[i].x;
        const double dy = points[i + 1].y - points[i].y;
        m_segments.push_back(
            {points[i].x, points[i].y, dx, dy, std::hypot(dx, dy), points[i].r, points[i].gras});
    }
    m_lastX = points.back().x;
    m_lastY = points.back().y;
}

bool DikeSlope::IsGeschikt(const Profiel& profiel)
{
    const auto& points = profiel.punten;
    const auto toe = static_cast<std::size_t>(profiel.ToeIndex());
    if (toe + 2 > points.size())
        return false;
    for (std::size_t i = toe; i + 1 < points.size(); ++i)
        if (points[i + 1].y < points[i].y || points[i + 1].x < points[i].x)
            return false;
    return points[points.size() - 1].y > points[points.size() - 2].y;
}

double DikeSlope::HighestX(double level) const
{
    const Segment& last = m_segments.back();
    if (level >= m_lastY)
        return m_lastX + (level - m_lastY) * last.dx / last.dy;
    for (auto segment = m_segments.rbegin(); segment != m_segments.rend(); ++segment)
        if (segment->yBegin <= level)
            return segment->xBegin + (level - segment->yBegin) / segment->dy * segment->dx;
    return m_segments.front().xBegin;
}

double DikeSlope::LowestX(double level) const
{
    if (level <= m_segments.front().yBegin)
        return m_segments.front().xBegin;
    for (const Segment& segment : m_segments)
        if (segment.yBegin + segment.dy >= level)
            return segment.xBegin + (level - segment.yBegin) / segment.dy * segment.dx;
    const Segment& last = m_segments.back();
    return m_lastX + (level - m_lastY) * last.dx / last.dy;
}

double DikeSlope::Roughness(double low, double high, double waveHeight) const
{
    double weights = 0;
    double weighted = 0;
    const auto add = [&](const Segment& segment, double weight) {
        weights += weight;
        weighted += weight * RoughnessOfSegment(segment.r, segment.gras, waveHeight);
    };
    for (const Segment& segment : m_segments) {
        const double end = segment.yBegin + segment.dy;
        if (segment.dy > 0)
            add(segment, segment.length / segment.dy *
                             std::max(0.0, std::min(high, end) - std::max(low, segment.yBegin)));
        else if (segment.yBegin >= low && segment.yBegin <= high)
            add(segment, segment.length);
    }
    const Segment& last = m_segments.back();
    add(last, last.length / last.dy * std::max(0.0, high - std::max(low, m_lastY)));
    return weights > 0 ? weighted / weights : 1;
}

SlopeLoad DikeSlope::Schematise(double waterLevel, const WavesAtDike& waves) const
{
    const double toe = ToeLevel();
    const double low = std::max(waterLevel - 1.5 * waves.height, toe);
    const double xLow = HighestX(low);
    const double steepness =
        2 * std::numbers::pi * waves.height / (kGravity * waves.period * waves.period);
    const double rootOfSteepness = std::sqrt(steepness);

    SlopeLoad load;
    double above = 1.5 * waves.height;
    for (int pass = 0; pass < kSlopePasses; ++pass) {
        const double high = std::max(waterLevel, toe) + above;
        load.tanAlpha = std::clamp((high - low) / std::max(LowestX(high) - xLow, 1e-6), 0.02, 1.0);
        load.breaker = load.tanAlpha / rootOfSteepness;
        load.smoothRunUp = waves.height * RelativeRunUp(load.breaker);
        above = load.smoothRunUp;
    }

    load.roughness = Roughness(std::max(waterLevel - 0.25 * load.smoothRunUp, toe),
                               waterLevel + 0.5 * load.smoothRunUp, waves.height);
    if (load.breaker > 1.8)
        load.roughness += (1 - load.roughness) * (std::min(load.breaker, 10.0) - 1.8) / 8.2;
    return load;
}

bool DikeSlope::HasBerm() const
{
    return std::any_of(m_segments.begin(), m_segments.end(),
                       [](const Segment& s) { return s.dx > 0 && s.dy * 8 < s.dx; });
}

bool DikeSlope::IsSteep() const
{
    return std::any_of(m_segments.begin(), m_segments.end(),
                       [](const Segment& s) { return s.dy * 2 > s.dx; });
}

double RelativeRunUp(double breaker)
{
    if (breaker <= 1)
        return 1.65 * breaker;
    return std::min(1.65 * breaker, 4.0 - 1.5 / std::sqrt(breaker));
}

} // namespace rekenhart
