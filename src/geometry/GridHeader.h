#pragma once

#include "geometry/Punt.h"

#include <QString>

#include <array>
#include <optional>

/// What an ARC/INFO ASCII grid says of its place, in metres: enough to draw its
/// outline. A key that is missing, or has no number, is 0.
struct GridHeader {
    double ncols = 0;
    double nrows = 0;
    double xllcorner = 0;
    double yllcorner = 0;
    double cellsize = 0;

    /// The outline, from the lower left corner anticlockwise and back.
    std::array<geometry::Punt, 5> Outline() const;
};

/// Reads the keys, in any case, from the first ten lines; of a key that stands
/// twice the later one counts. Nothing if the file cannot be opened.
std::optional<GridHeader> ReadGridHeader(const QString& path);
GridHeader ParseGridHeader(const QByteArray& text);
