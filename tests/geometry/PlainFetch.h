#pragma once

#include "geometry/PortableTrig.h"
#include "geometry/Punt.h"

#include <array>
#include <cmath>
#include <stdexcept>
#include <vector>

/// Fetches and dike normals the plain way: every ray against every edge of every
/// ring, in the order in which the computation is written down. The judge of the
/// indexed version; it shares nothing with it but sine, cosine and arc tangent.
namespace plain {

using geometry::Punt;
using Ring = std::vector<Punt>;
using Polygon = std::vector<Ring>;

struct Line {
    Punt p1;
    Punt p2;
};

// A value that is not finite ends the computation. Measurements leave the check
// out: it would make the plain way look slow.
inline double Num(double value)
{
#ifndef PLAIN_FETCH_WITHOUT_CHECKS
    if (!std::isfinite(value))
        throw std::overflow_error("overflow");
#endif
    return value;
}

inline double Pi()
{
    return 4 * geometry::PortableAtan(1);
}
inline double Deg2Rad(double degrees)
{
    return Pi() * degrees / 180;
}
inline double ToMath(double bearing)
{
    const double a = 90 - bearing;
    return a - std::floor(a / 360) * 360;
}

inline double Length(double dx, double dy)
{
    const double dx2 = Num(Num(dx) * dx);
    const double dy2 = Num(Num(dy) * dy);
    return std::sqrt(Num(dx2 + dy2));
}

inline Punt Intersection(const Line& a, const Line& b)
{
    const double dxA = Num(a.p2.x - a.p1.x);
    const double dyA = Num(a.p2.y - a.p1.y);
    const double dxB = Num(b.p2.x - b.p1.x);
    const double dyB = Num(b.p2.y - b.p1.y);
    const double d = Num(Num(dyA * dxB) - Num(dxA * dyB));
    const double n1 = Num(Num(a.p1.x - b.p1.x) * dyB);
    const double n2 = Num(Num(b.p1.y - a.p1.y) * dxB);
    const double n = Num(n1 + n2);
    if (d == 0)
        return {1e38, 1e38};
    const double t = Num(n / d);
    if (dxB != 0 && dyB != 0)
        return {Num(a.p1.x + Num(t * dxA)), Num(a.p1.y + Num(t * dyA))};
    const double m1 = Num(Num(b.p1.x - a.p1.x) * dyA);
    const double m2 = Num(Num(a.p1.y - b.p1.y) * dxA);
    const double s = Num(Num(m1 + m2) / -d);
    return {Num(b.p1.x + Num(s * dxB)), Num(b.p1.y + Num(s * dyB))};
}

inline bool InBox(const Line& line, Punt p)
{
    const double x = Num(Num(p.x - line.p2.x) * Num(line.p1.x - p.x));
    const double y = Num(Num(p.y - line.p2.y) * Num(line.p1.y - p.y));
    return x > -1e-10 && y > -1e-10;
}

inline bool InRing(const Ring& ring, Punt p)
{
    bool inside = false;
    if (ring.empty())
        return inside;
    Punt prev = ring.back();
    for (const Punt& cur : ring) {
        if ((prev.y < p.y && cur.y >= p.y) || (cur.y < p.y && prev.y >= p.y)) {
            const double share = Num(Num(p.y - prev.y) / Num(cur.y - prev.y));
            const double xs = Num(Num(share * Num(cur.x - prev.x)) + prev.x);
            if (xs < p.x)
                inside = !inside;
        }
        prev = cur;
    }
    return inside;
}

struct Ray {
    double length = 1e38;
    double x = 0;
    double y = 0;
};
using Rays = std::array<Ray, 65>;

inline void CastRays(const Ring& ring, double x, double y, Rays& rays)
{
    std::size_t index = 0;
    for (double bearing = 0; bearing <= 360; bearing += 5.625, ++index) {
        const auto [sin, cos] = geometry::PortableSinCos(Deg2Rad(ToMath(bearing)));
        const Line ray{{x, y}, {x + 100000 * cos, y + 100000 * sin}};
        if (ring.empty())
            continue;
        Punt prev = ring.back();
        for (const Punt& cur : ring) {
            const Line edge{prev, cur};
            prev = cur;
            const Punt hit = Intersection(ray, edge);
            if (!InBox(edge, hit))
                continue;
            if (!InBox(ray, hit))
                continue;
            const double d = Length(hit.x - x, hit.y - y);
            if (d < rays[index].length)
                rays[index] = {d, hit.x, hit.y};
        }
    }
}

inline std::array<double, 16> Sectors(const Rays& rays)
{
    std::array<double, 16> fetches{};
    for (int i = 0; i < 16; ++i) {
        double numerator = 0;
        double denominator = 0;
        for (int j = -8; j <= 8; ++j) {
            const double alpha = j * 5.625;
            double b = i * 22.5 + alpha;
            b = b - std::floor(b / 360) * 360;
            const double w = geometry::PortableSinCos(Deg2Rad(alpha)).cos;
            numerator += w * w * rays[static_cast<std::size_t>(std::lround(b / 5.625))].length;
            denominator += w;
        }
        fetches[static_cast<std::size_t>(i)] = numerator / denominator;
    }
    return fetches;
}

struct Nearest {
    double minimum = 1e38;
    Punt near;
};

inline void FindNearest(const Ring& ring, double x, double y, Nearest& nearest)
{
    if (ring.empty())
        return;
    Punt prev = ring.back();
    for (const Punt& cur : ring) {
        double d = 1e38;
        const double dx = Num(cur.x - prev.x);
        const double dy = Num(cur.y - prev.y);
        const Line perpendicular{{Num(x - Num(dy * 100000)), Num(y + Num(dx * 100000))},
                                 {Num(x + Num(dy * 100000)), Num(y - Num(dx * 100000))}};
        const Line edge{prev, cur};
        const Punt f = Intersection(perpendicular, edge);
        if (InBox(edge, f))
            d = Length(f.x - x, f.y - y);
        const double toCur = Length(cur.x - x, cur.y - y);
        if (toCur < d)
            d = toCur;
        if (d < nearest.minimum)
            nearest = {d, f};
        prev = cur;
    }
}

inline double ShoreDistance(const Ring& ring, Punt p)
{
    double smallest = 1e38;
    if (ring.empty())
        return smallest;
    Punt prev = ring.back();
    for (const Punt& cur : ring) {
        const double dx = Num(cur.x - prev.x);
        const double dy = Num(cur.y - prev.y);
        const double square = Num(Num(dx * dx) + Num(dy * dy));
        Punt q = cur;
        if (square != 0) {
            const double dot = Num(Num(p.x - prev.x) * dx) + Num(Num(p.y - prev.y) * dy);
            double t = Num(dot) / square;
            t = t < 0 ? 0 : t > 1 ? 1 : t;
            q = {prev.x + t * dx, prev.y + t * dy};
        }
        const double d = Length(q.x - p.x, q.y - p.y);
        if (d < smallest)
            smallest = d;
        prev = cur;
    }
    return smallest;
}

// The polygons around the point: inside an odd number of rings.
inline std::vector<std::size_t> Search(const std::vector<Polygon>& polygons, Punt p)
{
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        int count = 0;
        for (const Ring& ring : polygons[i])
            count += InRing(ring, p);
        if (count % 2 == 1)
            found.push_back(i);
    }
    return found;
}

// Status, and the polygon when the computation may go on.
inline int Begin(const std::vector<Polygon>& polygons, Punt p, const Polygon*& polygon)
{
    polygon = nullptr;
    const auto found = Search(polygons, p);
    if (found.size() != 1 || polygons[found[0]].empty())
        return 1;
    double shore = 1e38;
    for (const Ring& ring : polygons[found[0]]) {
        const double d = ShoreDistance(ring, p);
        if (d < shore)
            shore = d;
    }
    if (shore < 0.01)
        return 2;
    polygon = &polygons[found[0]];
    return 1;
}

inline int ByCount(int status, int count)
{
    if (count == 0)
        return 3;
    return count > 1 ? 4 : status;
}

struct FetchResult {
    int status = 1;
    std::array<double, 16> fetches{};
};

inline FetchResult CalcFetch(const std::vector<Polygon>& polygons, double x, double y)
{
    FetchResult result;
    try {
        const Polygon* polygon = nullptr;
        int status = Begin(polygons, {x, y}, polygon);
        int count = 0;
        if (polygon) {
            Rays rays;
            for (const Ring& ring : *polygon) {
                count += InRing(ring, {x, y});
                CastRays(ring, x, y, rays);
            }
            result.fetches = Sectors(rays);
            status = 0;
        }
        result.status = ByCount(status, count);
    } catch (const std::overflow_error&) {
        result.status = 1;
    }
    return result;
}

struct NormalResult {
    int status = 1;
    double normal = 0;
};

inline NormalResult CalcNormal(const std::vector<Polygon>& polygons, double x, double y)
{
    NormalResult result;
    try {
        const Polygon* polygon = nullptr;
        int status = Begin(polygons, {x, y}, polygon);
        int count = 0;
        if (polygon) {
            Nearest nearest;
            for (const Ring& ring : *polygon) {
                count += InRing(ring, {x, y});
                FindNearest(ring, x, y, nearest);
            }
            if (nearest.near.x == x)
                throw std::overflow_error("division by zero");
            const double ratio = Num(Num(nearest.near.y - y) / Num(nearest.near.x - x));
            double a = geometry::PortableAtan(ratio) * 180 / Pi();
            if (x - nearest.near.x < 0)
                a = a + 180;
            result.normal = ToMath(a);
            status = 0;
        }
        result.status = ByCount(status, count);
    } catch (const std::overflow_error&) {
        result.status = 1;
    }
    return result;
}

} // namespace plain
