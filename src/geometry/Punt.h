#pragma once

#include <span>

namespace geometry {

/// A point on the map's plane, in metres, y upwards.
struct Punt {
    double x = 0;
    double y = 0;
};

/// A line through two points, or the segment between them.
struct Lijn {
    Punt p1;
    Punt p2;
};

/// The points of one shore line. It is treated as closed: edge i runs from
/// point i - 1 to point i, and edge 0 from the last point to the first. The
/// closing point that shape files carry makes edge 0 a zero-length edge; it
/// is left in.
using RingPunten = std::span<const Punt>;

inline Lijn RingEdge(RingPunten ring, std::size_t i)
{
    return {ring[i == 0 ? ring.size() - 1 : i - 1], ring[i]};
}

} // namespace geometry
