#include "maps/ui/LabelPlaces.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace {

constexpr double kGap = 3;   // pixels between symbol and name
constexpr double kFar = 1E9; // no point worth a name lies farther, in squares

/// Rectangles that lie apart, found by the squares of the plane they touch.
class TakenRoom {
public:
    explicit TakenRoom(double square) : m_square(square) {}

    void Take(const QRectF& room)
    {
        ForEachSquare(room, [&](quint64 key) {
            m_taken[key].push_back(room);
            return true;
        });
    }
    bool IsFree(const QRectF& room) const
    {
        return ForEachSquare(room, [&](quint64 key) {
            const auto taken = m_taken.constFind(key);
            return taken == m_taken.cend() ||
                   std::none_of(taken->begin(), taken->end(),
                                [&](const QRectF& other) { return other.intersects(room); });
        });
    }

private:
    /// Until `visit` gives false; false then.
    template <typename Visit>
    bool ForEachSquare(const QRectF& room, Visit&& visit) const
    {
        const auto square = [this](double at) {
            return static_cast<qint32>(std::floor(std::clamp(at / m_square, -kFar, kFar)));
        };
        for (qint32 x = square(room.left()); x <= square(room.right()); ++x) {
            for (qint32 y = square(room.top()); y <= square(room.bottom()); ++y) {
                if (!visit(quint64(quint32(x)) << 32 | quint32(y)))
                    return false;
            }
        }
        return true;
    }

    double m_square;
    QHash<quint64, std::vector<QRectF>> m_taken;
};

/// Places of a name of this size around a symbol, the best first.
std::array<QRectF, 8> Candidates(QPointF centre, double radius, QSizeF size)
{
    const double side = radius + kGap;
    const double right = centre.x() + side;
    const double left = centre.x() - side - size.width();
    const double middle = centre.x() - size.width() / 2;
    const double level = centre.y() - size.height() / 2;
    const double above = centre.y() - radius - size.height();
    const double below = centre.y() + radius;
    const auto at = [&](double x, double y) { return QRectF(QPointF(x, y), size); };
    return {at(right, level), at(left, level),  at(middle, above), at(middle, below),
            at(right, above), at(right, below), at(left, above),   at(left, below)};
}

} // namespace

std::vector<QStaticText> LayOutNames(const std::vector<MapPoint>& points, const MapLook& look)
{
    std::vector<QStaticText> names;
    names.reserve(points.size());
    for (const MapPoint& point : points) {
        QStaticText& name = names.emplace_back(point.name);
        name.setTextFormat(Qt::PlainText);
        name.prepare(QTransform(), look.labelFont);
    }
    return names;
}

std::vector<PlacedLabel> PlaceLabels(const std::vector<MapPoint>& points,
                                     const std::vector<QStaticText>& names,
                                     const QSet<QString>& selected, double metresPerPixel,
                                     const MapLook& look)
{
    const auto radiusOf = [&](const MapPoint& point) {
        const bool isSelected = selected.contains(point.name.toLower());
        return look.symbolSize / 2.0 + (isSelected ? look.selectionRim : 0);
    };
    const auto centre = [&](const MapPoint& point) {
        return QPointF(point.x, -point.y) / metresPerPixel;
    };
    TakenRoom taken(4 * QFontMetricsF(look.labelFont).height());
    for (const MapPoint& point : points) {
        const double radius = radiusOf(point);
        if (std::isfinite(point.x) && std::isfinite(point.y))
            taken.Take({centre(point) - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius)});
    }

    std::vector<std::size_t> order(points.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_partition(order.begin(), order.end(), [&](std::size_t index) {
        return selected.contains(points[index].name.toLower());
    });
    std::vector<PlacedLabel> labels;
    for (const std::size_t index : order) {
        const MapPoint& point = points[index];
        if (!std::isfinite(point.x) || !std::isfinite(point.y))
            continue;
        const QPointF place = centre(point);
        for (const QRectF& room : Candidates(place, radiusOf(point), names[index].size())) {
            if (!taken.IsFree(room))
                continue;
            taken.Take(room);
            labels.push_back({index, room.translated(-place)});
            break;
        }
    }
    return labels;
}
