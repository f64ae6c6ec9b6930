#pragma once

#include "geometry/FetchChart.h"
#include "geometry/GisLibrary.h"
#include "geometry/MapLayer.h"
#include "geometry/modStrijklengte.h"

#include <array>
#include <functional>
#include <span>

/// How a computation of fetches or of a dike normal ended. The forms show the
/// text under `StatusKey` of their own ini.
enum class FetchStatus : qint32 {
    NoError = 0,
    Unspecified = 1,      ///< a run-time failure inside the computation
    TooCloseToPoly = 2,   ///< never leaves a computation, see `CalcFetch`
    PointInNoPoly = 3,    ///< in no polygon, in several, or in none of its rings
    PointInMultiPolys = 4 ///< inside more than one ring
};
QString StatusKey(FetchStatus status);
QString StatusDefaultText(FetchStatus status);

/// How a computation of bed levels ended.
enum class BodemhoogteStatus : qint32 {
    NoError = 0,
    DllError = 1,        ///< the GIS library cannot be used
    Unspecified = 2,     ///< any other failure
    PointOutsideGrid = 3 ///< a fetch runs past the edge of the grid
};
QString StatusKey(BodemhoogteStatus status);
QString StatusDefaultText(BodemhoogteStatus status);

struct FetchResultaat {
    FetchStatus status = FetchStatus::Unspecified;
    /// Metres, per wind sector from north on, clockwise. Meant for status 0
    /// only: what was computed stays here with status 3 and 4, too.
    std::array<double, kSectoren> fetches{};
};

struct DijknormaalResultaat {
    FetchStatus status = FetchStatus::Unspecified;
    double dijknormaal = 0; ///< bearing from the nearest shore point to the location
};

struct BodemhoogteResultaat {
    BodemhoogteStatus status = BodemhoogteStatus::Unspecified;
    /// Metres, one per direction; 0 from where the computation failed.
    std::vector<double> levels;
};

/// Fetches, dike normals and bed levels of a location, from a map of the water
/// body and a grid of its bed.
///
/// The water body is a polygon shape file in which each polygon is a basin and
/// each of its parts one ring of shore line, islands included. It is read once,
/// and again when the file has changed.
///
/// The computations never raise: they end with a status.
class Strijklengte {
public:
    /// Finds the polygons that hold a point; tests give results of their own.
    using PolygonSearch =
        std::function<std::vector<std::size_t>(const MapLayer& layer, geometry::Punt p)>;

    Strijklengte();
    Strijklengte(PolygonSearch search, geometry::GisObjectMaker makeGisObject);

    /// The shore layer, or null.
    const MapLayer* layerFile() const { return m_layer.get(); }
    /// The layer's path; "" without a layer.
    QString file() const;
    /// Whether the file is a usable polygon layer; if not, there is no layer
    /// any more.
    bool setShapefile(const QString& path);

    DijknormaalResultaat CalcDijknormaal(double x, double y);
    /// A location less than 0.01 from the shore gets `PointInNoPoly`: its rings
    /// are not counted, and the count has the last word.
    FetchResultaat CalcFetch(double x, double y);

    /// The mean level under each fetch. Lengths in metres, one per direction.
    BodemhoogteResultaat berekenBodemhoogtes(const QString& gridFile, double x, double y,
                                             std::span<const double> directions,
                                             std::span<const double> lengths);
    /// Whether the GIS library can be used. Its file is looked for once per
    /// installation, which is marked in the program's ini; without the file
    /// message 201 is shown.
    bool INITGISDLL();

    /// Draws the rings of the basin that holds the location, as the series
    /// "POLYGOON0", "POLYGOON1", ...
    void PlotPolygonen(geometry::FetchChart& chart, double x, double y);
    /// Draws the fetches as rays from the location, as the series
    /// "STRIJKLENGTE0", ..., and fits the axes around their ends.
    void PlotStrijklengtes(geometry::FetchChart& chart, double x, double y,
                           std::span<const double> directions, std::span<const double> lengths);
    void KeepAspectRatio(geometry::FetchChart& chart) { chart.KeepAspectRatio(); }
    void RemoveAllSeriesWithName(geometry::FetchChart& chart, const QString& name)
    {
        chart.RemoveAllSeriesWithName(name);
    }

private:
    struct Basin;

    Basin FindBasin(geometry::Punt p);

    PolygonSearch m_search;
    geometry::GisObjectMaker m_makeGisObject;
    std::unique_ptr<MapLayer> m_layer;
};
