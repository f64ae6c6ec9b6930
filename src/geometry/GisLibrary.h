#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace geometry {

/// The grid object of the GIS library: one grid and the means along its lines.
/// Failures are raised as `Fout` with the library's own description.
class GisObject {
public:
    virtual ~GisObject() = default;

    virtual void LoadRaster(const QString& file) = 0;
    /// The mean of the grid's values at `count` points along a line, both ends
    /// included. A point outside the grid is a failure with the description
    /// `kPointOutsideGrid`.
    virtual double CalculateMean(double x1, double y1, double x2, double y2, qint16 count) = 0;
};

/// The description by which a point outside the grid is told from any other
/// failure; spelled exactly so.
inline constexpr char kPointOutsideGrid[] = "Index was outside the bounds of the array.";

/// Makes an object of the library in the file `library`; raises a `Fout` if
/// that is not possible.
using GisObjectMaker = std::function<std::unique_ptr<GisObject>(const QString& library)>;

/// The maker that loads the native library. It stays loaded for the rest of
/// the program: it finds a grid again that it has read before.
std::unique_ptr<GisObject> LoadGisObject(const QString& library);

} // namespace geometry
