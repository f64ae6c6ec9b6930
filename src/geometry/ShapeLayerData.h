#pragma once

#include "geometry/Punt.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace geometry {

/// All shapes of a shape file in flat arrays: shape i has the parts from
/// shapeStarts[i] to shapeStarts[i + 1], part k the points from partStarts[k]
/// to partStarts[k + 1]. A null shape has no parts.
struct ShapeLayerData {
    enum class Kind { Point, MultiPoint, Line, Polygon };

    Kind kind = Kind::Point;
    std::vector<Punt> points;
    std::vector<std::uint32_t> partStarts{0};
    std::vector<std::uint32_t> shapeStarts{0};

    std::size_t ShapeCount() const { return shapeStarts.size() - 1; }
    std::size_t PartCount() const { return partStarts.size() - 1; }
    RingPunten Part(std::size_t k) const
    {
        return RingPunten(points).subspan(partStarts[k], partStarts[k + 1] - partStarts[k]);
    }
};

/// Reads the bytes of a main file and, if there is one, its index, which says
/// where the records are: a file that was edited may hold records that no
/// longer count. Heights and measures of the Z and M types are passed over.
///
/// Nothing, with a reason in `error`, when anything is out of order: a record
/// or its index beyond the file, counts that do not fit in their record, parts
/// that do not rise. Half a shore line would give wrong fetches.
/// Coordinates may be anything; see `Strijklengte`.
std::optional<ShapeLayerData> ReadShapeLayer(std::span<const std::byte> shp,
                                             std::span<const std::byte> shx, QString& error);

} // namespace geometry
