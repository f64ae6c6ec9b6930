#pragma once

#include "maps/ui/MapDrawing.h"

/// Finds each point's name a place beside its symbol where it covers no symbol
/// and no other name: right of it first, then left, above and below. A name for
/// which there is no room at this scale is left out; zooming in makes room.
/// Selected points go first.
///
/// The places depend on the scale and not on what is in view, so that names stay
/// where they are while the map is moved.
std::vector<PlacedLabel> PlaceLabels(const std::vector<MapPoint>& points,
                                     const std::vector<QStaticText>& names,
                                     const QSet<QString>& selected, double metresPerPixel,
                                     const MapLook& look);

/// The names of the points, laid out in the font of `look`: the costly part of
/// placing and writing them, done once.
std::vector<QStaticText> LayOutNames(const std::vector<MapPoint>& points, const MapLook& look);
