#include "geometry/modStrijklengte.h"

#include "frame/Fouten.h"
#include "geometry/PortableTrig.h"

#include <QString>

#include <algorithm>
#include <cmath>

#ifdef __FAST_MATH__
#error "fetches and dike normals need plain IEEE arithmetic"
#endif

using geometry::Lijn;
using geometry::Punt;
using geometry::RingEdge;
using geometry::RingIndex;

namespace {

// 4 x Atn(1)
constexpr double kPi = 0x1.921fb54442d18p+1;

double Finite(double value)
{
    if (!std::isfinite(value))
        RaiseRuntimeFout(RuntimeFout::Overflow,
                         QStringLiteral("Een coördinaat is geen getal of veel te groot."));
    return value;
}

double Distance(Punt p, double x, double y)
{
    return Finite(std::sqrt((p.x - x) * (p.x - x) + (p.y - y) * (p.y - y)));
}

// The edges of a ring that are in the boxes that `keep` keeps; all of them
// where leaving out is not safe.
template <typename Keep, typename Visit>
void VisitEdges(const RingIndex& ring, Punt p, Keep&& keep, Visit&& visit)
{
    const auto points = ring.Points();
    const auto visitRun = [&](std::size_t first, std::size_t end) {
        for (std::size_t i = first; i < end; ++i)
            visit(RingEdge(points, i));
    };
    if (ring.CanSkip(p))
        ring.Walk(keep, visitRun);
    else
        visitRun(0, points.size());
}

double BoxDistance(const RingIndex::Box& box, Punt p)
{
    const double dx = std::max(std::abs(p.x - box.cx) - box.hx, 0.0);
    const double dy = std::max(std::abs(p.y - box.cy) - box.hy, 0.0);
    return std::sqrt(dx * dx + dy * dy);
}

// Runs `visit(edge)` over the edges that can be nearer to `p` than `smallest`,
// which `visit` lowers. `distance(edge)` bounds that from the start: the
// edges of one likely box are measured beforehand.
template <typename EdgeDistance, typename Visit>
void VisitNearEdges(const RingIndex& ring, Punt p, const double& smallest, EdgeDistance&& distance,
                    Visit&& visit)
{
    if (ring.IsEmpty())
        return;
    double bound = kGeenWaarde;
    if (ring.CanSkip(p)) {
        const auto [first, end] =
            ring.Descend([p](const RingIndex::Box& box) { return BoxDistance(box, p); });
        for (std::size_t i = first; i < end; ++i)
            bound = std::min(bound, distance(RingEdge(ring.Points(), i)));
    }
    const double margin = ring.Margin(p);
    VisitEdges(
        ring, p,
        [&](const RingIndex::Box& box) {
            return BoxDistance(box, p) - margin <= std::min(smallest, bound);
        },
        visit);
}

struct RayDirection {
    double bearing;
    double cos;
    double sin;
};

// The directions are the same for all locations.
const std::array<RayDirection, kRaaien>& RayDirections()
{
    static const auto directions = [] {
        std::array<RayDirection, kRaaien> result{};
        double bearing = 0;
        for (RayDirection& direction : result) {
            const auto [sin, cos] =
                geometry::PortableSinCos(Deg2Rad(NautischNaarWiskundig(bearing)));
            direction = {bearing, cos, sin};
            bearing += kRaaiStap;
        }
        return result;
    }();
    return directions;
}

// Rays to each side of a sector's centre.
constexpr double kHalfWidth = 45;
constexpr int kHalfRays = static_cast<int>(kHalfWidth / kRaaiStap);

// The cosines of the angles from a sector's centre.
std::array<double, 2 * kHalfRays + 1> SectorWeights()
{
    std::array<double, 2 * kHalfRays + 1> weights{};
    for (int j = -kHalfRays; j <= kHalfRays; ++j)
        weights[static_cast<std::size_t>(j + kHalfRays)] =
            geometry::PortableSinCos(Deg2Rad(j * kRaaiStap)).cos;
    return weights;
}

struct Foot {
    Punt foot;
    double distance;
};

// The distance from (x, y) to an edge: to the foot of the perpendicular if that
// lies on the edge, but not more than to the edge's second point.
Foot FootOnEdge(const Lijn& edge, double x, double y)
{
    const double dx = edge.p2.x - edge.p1.x;
    const double dy = edge.p2.y - edge.p1.y;
    const Lijn perpendicular{{x - dy * kRaaiLengte, y + dx * kRaaiLengte},
                             {x + dy * kRaaiLengte, y - dx * kRaaiLengte}};
    const Punt foot = Snijpunt(perpendicular, edge);
    double d = kGeenWaarde;
    if (LigtBinnenBox(edge, foot))
        d = Distance(foot, x, y);
    return {foot, std::min(d, Distance(edge.p2, x, y))};
}

double EdgeDistance(const Lijn& edge, Punt p)
{
    const double dx = edge.p2.x - edge.p1.x;
    const double dy = edge.p2.y - edge.p1.y;
    const double square = Finite(dx * dx + dy * dy);
    if (square == 0)
        return Distance(edge.p2, p.x, p.y);
    const double along = Finite((p.x - edge.p1.x) * dx + (p.y - edge.p1.y) * dy) / square;
    const double t = std::clamp(along, 0.0, 1.0);
    return Distance({edge.p1.x + t * dx, edge.p1.y + t * dy}, p.x, p.y);
}

} // namespace

double NautischNaarWiskundig(double bearing)
{
    const double a = 90 - bearing;
    return a - std::floor(a / 360) * 360;
}

double Deg2Rad(double degrees)
{
    return kPi * degrees / 180;
}

Punt Snijpunt(const Lijn& a, const Lijn& b)
{
    const double dxA = a.p2.x - a.p1.x;
    const double dyA = a.p2.y - a.p1.y;
    const double dxB = b.p2.x - b.p1.x;
    const double dyB = b.p2.y - b.p1.y;
    const double determinant = Finite(dyA * dxB - dxA * dyB);
    const double numerator = Finite((a.p1.x - b.p1.x) * dyB + (b.p1.y - a.p1.y) * dxB);
    if (determinant == 0)
        return {kGeenWaarde, kGeenWaarde};
    const double t = Finite(numerator / determinant);
    if (dxB != 0 && dyB != 0)
        return {Finite(a.p1.x + t * dxA), Finite(a.p1.y + t * dyA)};
    const double s = Finite(((b.p1.x - a.p1.x) * dyA + (a.p1.y - b.p1.y) * dxA) / -determinant);
    return {Finite(b.p1.x + s * dxB), Finite(b.p1.y + s * dyB)};
}

bool LigtBinnenBox(const Lijn& line, Punt p)
{
    constexpr double kTolerance = -1e-10;
    const double inX = Finite((p.x - line.p2.x) * (line.p1.x - p.x));
    const double inY = Finite((p.y - line.p2.y) * (line.p1.y - p.y));
    return inX > kTolerance && inY > kTolerance;
}

bool PuntInRing(const RingIndex& ring, Punt p)
{
    bool inside = false;
    const double margin = ring.Margin(p);
    VisitEdges(
        ring, p,
        // Only edges at the height of the point, and not wholly to the right of it.
        [&](const RingIndex::Box& box) {
            return std::abs(p.y - box.cy) <= box.hy + margin && box.cx - box.hx <= p.x + margin;
        },
        [&](const Lijn& edge) {
            const Punt& prev = edge.p1;
            const Punt& cur = edge.p2;
            if (!((prev.y < p.y && cur.y >= p.y) || (cur.y < p.y && prev.y >= p.y)))
                return;
            const double share = (p.y - prev.y) / Finite(cur.y - prev.y);
            const double xs = Finite(share * (cur.x - prev.x) + prev.x);
            if (xs < p.x)
                inside = !inside;
        });
    return inside;
}

void BerekenRaaien(const RingIndex& ring, double x, double y, Raaien& raaien)
{
    const Punt p{x, y};
    const double margin = ring.Margin(p);
    for (std::size_t i = 0; i < raaien.size(); ++i) {
        const RayDirection& direction = RayDirections()[i];
        Raai& raai = raaien[i];
        raai.Richting = direction.bearing;
        const Lijn ray{p, {x + kRaaiLengte * direction.cos, y + kRaaiLengte * direction.sin}};
        // In the ray's own frame a box reaches `along` and `across` from its centre.
        const double absCos = std::abs(direction.cos);
        const double absSin = std::abs(direction.sin);
        const auto canBeHit = [&](const RingIndex::Box& box) {
            const double cx = box.cx - x;
            const double cy = box.cy - y;
            const double across = absCos * box.hy + absSin * box.hx + margin;
            if (std::abs(direction.cos * cy - direction.sin * cx) > across)
                return false;
            const double centre = direction.cos * cx + direction.sin * cy;
            const double along = absCos * box.hx + absSin * box.hy + margin;
            return centre + along >= 0 && centre - along <= std::min(raai.Lengte, kRaaiLengte);
        };
        VisitEdges(ring, p, canBeHit, [&](const Lijn& edge) {
            const Punt hit = Snijpunt(ray, edge);
            if (!LigtBinnenBox(edge, hit) || !LigtBinnenBox(ray, hit))
                return;
            const double d = Distance(hit, x, y);
            if (d < raai.Lengte) {
                raai.Lengte = d;
                raai.X = hit.x;
                raai.Y = hit.y;
            }
        });
    }
}

Sectoren BerekenSectoren(const Raaien& raaien)
{
    static const auto weights = SectorWeights();
    const auto rayAt = [&](double bearing) -> const Raai& {
        return raaien[static_cast<std::size_t>(std::nearbyint(bearing / kRaaiStap))];
    };
    Sectoren sectoren;
    for (int i = 0; i < kSectoren; ++i) {
        Sector& sector = sectoren[static_cast<std::size_t>(i)];
        const double centre = i * (360.0 / kSectoren);
        double numerator = 0;
        double denominator = 0;
        for (int j = -kHalfRays; j <= kHalfRays; ++j) {
            const double alpha = j * kRaaiStap;
            double bearing = centre + alpha;
            bearing = bearing - std::floor(bearing / 360) * 360;
            const double w = weights[static_cast<std::size_t>(j + kHalfRays)];
            numerator += w * w * rayAt(bearing).Lengte;
            denominator += w;
        }
        const Raai& central = rayAt(centre);
        sector = {centre, Finite(numerator / denominator), central.Lengte, central.X, central.Y};
    }
    return sectoren;
}

void DichtstbijzijndPunt(const RingIndex& ring, double x, double y, DichtstbijzijndeOever& nearest)
{
    VisitNearEdges(
        ring, {x, y}, nearest.afstand,
        [&](const Lijn& edge) { return FootOnEdge(edge, x, y).distance; },
        [&](const Lijn& edge) {
            const auto [foot, d] = FootOnEdge(edge, x, y);
            if (d < nearest.afstand)
                nearest = {d, foot, edge};
        });
}

double DijknormaalVanuit(Punt oever, double x, double y)
{
    const double ratio = Finite((oever.y - y) / Finite(oever.x - x)); // 0 / 0, x / 0: not finite
    double a = geometry::PortableAtan(ratio) * 180 / kPi;
    if (x - oever.x < 0)
        a = a + 180;
    return NautischNaarWiskundig(a);
}

double DistanceTo(const RingIndex& ring, Punt p)
{
    double smallest = kGeenWaarde;
    const auto distance = [p](const Lijn& edge) { return EdgeDistance(edge, p); };
    VisitNearEdges(ring, p, smallest, distance,
                   [&](const Lijn& edge) { smallest = std::min(smallest, distance(edge)); });
    return smallest;
}
