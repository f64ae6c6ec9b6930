#pragma once

#include "geometry/Punt.h"
#include "geometry/RingIndex.h"

#include <array>

/// The geometry of fetches and dike normals.
///
/// Plain IEEE doubles in a fixed order of operations, so that a value has the
/// same bits on every machine: these files are compiled without fused
/// multiply-add and never with fast-math. A value that is not finite ends the
/// routine with `Fout` (`RuntimeFout::Overflow`), as an overflow always did.
///
/// Directions are nautical bearings in degrees (0 north, clockwise), unless a
/// mathematical angle (0 along +x, anticlockwise) is named.

inline constexpr int kSectoren = 16;
inline constexpr int kRaaien = 65;                  ///< bearings 0, 5.625, ... 360
inline constexpr double kRaaiStap = 360.0 / 16 / 4; ///< degrees
inline constexpr double kRaaiLengte = 100000;       ///< metres; of perpendiculars, too
inline constexpr double kGeenWaarde = 1e38;         ///< "no hit", and where parallel lines meet

/// One ray. It is read as the distance to the nearest hit: `kGeenWaarde` when
/// there is none within the length of a ray. That is not clamped.
struct Raai {
    double Richting = 0;
    double Lengte = kGeenWaarde;
    double X = 0;
    double Y = 0;
};
using Raaien = std::array<Raai, kRaaien>;

/// One wind sector, and what its central ray has hit.
struct Sector {
    double Richting = 0;
    double Strijklengte = 0; ///< metres, weighted over the rays within 45 degrees
    double Centraal = 0;
    double X = 0;
    double Y = 0;
};
using Sectoren = std::array<Sector, kSectoren>;

/// The shore point that is nearest so far. `punt` is the foot of the
/// perpendicular on the edge's line, also where that lies beyond the edge, and
/// (1E+38, 1E+38) on an edge without length.
struct DichtstbijzijndeOever {
    double afstand = kGeenWaarde;
    geometry::Punt punt;
    geometry::Lijn edge;
};

/// A bearing as a mathematical angle in degrees, or the other way round; from
/// 0 up to 360, which rounding may reach.
double NautischNaarWiskundig(double bearing);
double Deg2Rad(double degrees);

/// Where two lines meet, endlessly long; (1E+38, 1E+38) if they do not. On an
/// axis-parallel B the point lies exactly on B.
geometry::Punt Snijpunt(const geometry::Lijn& a, const geometry::Lijn& b);

/// Whether a point of the line's own lies between its ends, give or take 1E-10
/// square metres.
bool LigtBinnenBox(const geometry::Lijn& line, geometry::Punt p);

bool PuntInRing(const geometry::RingIndex& ring, geometry::Punt p);

/// Shortens each ray to its nearest hit on the ring. The rays are kept over all
/// rings of a polygon.
void BerekenRaaien(const geometry::RingIndex& ring, double x, double y, Raaien& raaien);

/// The effective fetch after Saville: over the rays to 45 degrees on either
/// side, the lengths weighted with the square of the cosine, divided by the sum
/// of the cosines.
Sectoren BerekenSectoren(const Raaien& raaien);

/// Moves `nearest` to this ring where the ring comes nearer.
void DichtstbijzijndPunt(const geometry::RingIndex& ring, double x, double y,
                         DichtstbijzijndeOever& nearest);

/// The bearing from a shore point to the location, from 0 to 360. Raises when
/// both have the same x: the division has no result then, and a location due
/// north or south of its shore point has no dike normal.
double DijknormaalVanuit(geometry::Punt oever, double x, double y);

/// The distance from a point to the ring's edges, closed. Not part of the
/// computation proper: it only tells a location on the shore line.
double DistanceTo(const geometry::RingIndex& ring, geometry::Punt p);
