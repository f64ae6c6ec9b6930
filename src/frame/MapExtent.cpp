#include "frame/MapExtent.h"

#include "frame/Globals.h"
#include "frame/Numbers.h"
#include "frame/QLMIniFile.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kSmallestView = 25000; // metres
constexpr double kLargestBound = 2147483647;
constexpr double kMargin = 0.05; // of the view, on each side

MapRectangle DefaultExtent()
{
    QStringList bounds =
        gIniFile().GetString("Shapes", "extent", "-7000|629000|300000|289000").split('|');
    bounds.resize(4);
    const auto bound = [&bounds](int i) {
        const double number = RoundToEven(ParseNumber(bounds[i]).value_or(0));
        return std::fabs(number) <= kLargestBound ? number : 0;
    };
    return {bound(0), bound(1), bound(2), bound(3)};
}

} // namespace

MapRectangle FullExtent(const MapRectangle& layerExtent)
{
    const double width = layerExtent.right - layerExtent.left;
    if (width == 0)
        return DefaultExtent();
    const double height = layerExtent.top - layerExtent.bottom;
    const double aside = kMargin * std::max(width, kSmallestView);
    const double above = kMargin * std::max(height, kSmallestView);
    return {layerExtent.left - aside, layerExtent.top + above, layerExtent.right + aside,
            layerExtent.bottom - above};
}

void SetMapFullExtent(ExtentMap& map, const MapRectangle& layerExtent)
{
    map.SetExtent(FullExtent(layerExtent));
    map.Refresh();
}
