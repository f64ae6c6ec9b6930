#pragma once

/// A rectangle on the map's plane, in metres, y upwards.
struct MapRectangle {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    bool operator==(const MapRectangle&) const = default;
};

/// What SetMapFullExtent needs of a map.
class ExtentMap {
public:
    virtual ~ExtentMap() = default;
    virtual void SetExtent(const MapRectangle& extent) = 0;
    virtual void Refresh() = 0;
};

/// What the whole map shows: the layer's extent with a margin of a twentieth
/// on each side (of 25 km at least), or, for a layer without width, `extent`
/// of section `Shapes` in the program's ini.
[[nodiscard]] MapRectangle FullExtent(const MapRectangle& layerExtent);
void SetMapFullExtent(ExtentMap& map, const MapRectangle& layerExtent);
