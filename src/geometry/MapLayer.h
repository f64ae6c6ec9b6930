#pragma once

#include "geometry/RingIndex.h"
#include "geometry/ShapeLayerData.h"

#include <QDateTime>
#include <QString>

#include <memory>
#include <span>
#include <vector>

/// A layer of shapes from a file, read into memory once, with an index over
/// every ring of its polygons.
class MapLayer {
public:
    /// Numbers of the map component.
    enum ShapeType { None = 0, Point = 21, Line = 22, Polygon = 23 };

    /// Reads the file; `Valid` tells whether that went well. The path may end
    /// in ".shp" or lack the extension.
    explicit MapLayer(const QString& file);
    MapLayer(const MapLayer&) = delete;
    MapLayer& operator=(const MapLayer&) = delete;

    const QString& file() const { return m_file; }
    bool Valid() const { return m_data.has_value(); }
    int shapeType() const;
    /// Why the layer is not valid: words for behind a file name.
    const QString& Error() const { return m_error; }

    /// Whether the file on the disc is still the one that was read, by size and
    /// time. False when it is gone.
    bool IsCurrent() const;
    /// Reads a file again that has changed. False if it cannot be.
    bool Refresh();

    std::size_t ShapeCount() const { return m_data ? m_data->ShapeCount() : 0; }
    /// The rings of a polygon: shore line and islands alike.
    std::span<const geometry::RingIndex> Rings(std::size_t shape) const;
    const geometry::ShapeLayerData& Data() const { return *m_data; }

    /// The polygons that hold the point: inside an odd number of their rings.
    std::vector<std::size_t> SearchPointInPolygon(geometry::Punt p) const;

    /// Memory taken by points and indexes, in bytes.
    std::size_t MemoryUse() const;

private:
    struct Stamp {
        qint64 size = -1;
        QDateTime changed;
        bool operator==(const Stamp&) const = default;
    };
    struct Files {
        QString shp;
        QString shx;
    };

    Files Paths() const;
    static Stamp StampOf(const QString& path);
    void Read();

    QString m_file;
    QString m_error;
    Stamp m_shpStamp;
    Stamp m_shxStamp;
    std::optional<geometry::ShapeLayerData> m_data;
    std::vector<geometry::RingIndex> m_rings; // one per part, into m_data
};
