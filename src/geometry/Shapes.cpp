#include "frame/Globals.h"
#include "frame/Ports.h"
#include "geometry/CollectedShapes.h"
#include "geometry/Punt.h"

#include <cmath>

namespace {

using geometry::Punt;

constexpr int kWrongElement = static_cast<int>(0x8004020F);
constexpr int kNullDistance = static_cast<int>(0x80040212);

Punt PuntOf(const CPoint& point)
{
    return {point.X(), point.Y()};
}

double Length(double dx, double dy)
{
    return std::sqrt(dx * dx + dy * dy);
}

double DistanceBetween(Punt a, Punt b)
{
    return Length(a.x - b.x, a.y - b.y);
}

// Replaces `smallest` when the foot of the perpendicular from `p` lies on the
// edge, past `a` and before `b`, and is nearer. Two equal points in a row make
// an edge without length, and the division fails as it comes.
void TryEdge(Punt p, Punt a, Punt b, double& smallest)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = Length(dx, dy);
    if (length == 0)
        RaiseRuntimeFout(RuntimeFout::DivisionByZero, QStringLiteral("Deling door nul."));
    const double t = ((p.x - a.x) * dx + (p.y - a.y) * dy) / length;
    if (!(t > 0))
        return;
    const double qx = dx * t / length;
    const double qy = dy * t / length;
    if (!(Length(qx, qy) < length))
        return;
    const double d = Length((p.x - a.x) - qx, (p.y - a.y) - qy);
    if (d < smallest)
        smallest = d;
}

double DistanceToParts(Punt p, const CollectedShape<CPart>& shape)
{
    constexpr double kFar = 1e38;
    double smallest = kFar;
    std::vector<int> nearest; // of each part, from 1
    for (const auto& part : shape) {
        int& index = nearest.emplace_back(1);
        for (int i = 1; i <= part->Count(); ++i) {
            const double d = DistanceBetween(p, PuntOf(*part->Item(i)));
            if (d < smallest) {
                smallest = d;
                index = i;
            }
        }
    }
    for (int k = 1; k <= shape.Count(); ++k) {
        const CPart& part = *shape.Item(k);
        const int index = nearest[static_cast<std::size_t>(k - 1)];
        if (part.Count() < 2)
            continue;
        const Punt a = PuntOf(*part.Item(index));
        if (index > 1)
            TryEdge(p, a, PuntOf(*part.Item(index - 1)), smallest);
        if (index < part.Count())
            TryEdge(p, a, PuntOf(*part.Item(index + 1)), smallest);
    }
    return smallest;
}

} // namespace

double DistanceNotImplemented()
{
    if (gBoxes.Exists())
        gBoxes().ReportError(Fout(0, QStringLiteral("NOT IMPLEMENTED")));
    return 0;
}

void CRect::MakeXY(double x1, double y1, double x2, double y2)
{
    m_upperLeft.setX(x1);
    m_upperLeft.setY(y1);
    m_lowerRight.setX(x2);
    m_lowerRight.setY(y2);
}

double CPoint::Distance(const IShape& shape) const
{
    if (IsNull() || shape.IsNull())
        throw Fout(kNullDistance, QStringLiteral("Cannot compute distance to a null shape"),
                   QStringLiteral("CPoint::IShape_Distance"));
    const Punt p{m_x, m_y};
    if (const auto* point = dynamic_cast<const CPoint*>(&shape))
        return DistanceBetween(p, PuntOf(*point));
    if (const auto* parts = dynamic_cast<const CollectedShape<CPart>*>(&shape))
        return DistanceToParts(p, *parts);
    return DistanceNotImplemented();
}

void CPart::Add(const std::shared_ptr<ShapeObject>& object)
{
    const auto point = std::dynamic_pointer_cast<CPoint>(object);
    if (!point)
        throw Fout(kWrongElement, QStringLiteral("CPart can only accept objects of type CPoint"),
                   QStringLiteral("CPart::Add"));
    if (m_points.Count() == 0)
        m_bounds.MakeBoundsOf(*point);
    else
        m_bounds.Widen(*point);
    m_points.Add(point);
}

void CPart::Remove(int index)
{
    m_points.Remove(index);
    m_bounds.MakeEmpty();
    bool first = true;
    for (const auto& point : m_points) {
        if (first)
            m_bounds.MakeBoundsOf(*point);
        else
            m_bounds.Widen(*point);
        first = false;
    }
}

Fout CMultiPoint::WrongElement() const
{
    return {kWrongElement,
            QStringLiteral("CMultiPoint Add can only accept objects of type CPoints"),
            QStringLiteral("CMultiPoint::Add")};
}

Fout CPolyLine::WrongElement() const
{
    return {kWrongElement, QStringLiteral("CPolyLine Add can only accept objects of type CPart"),
            QStringLiteral("CPolyLine::Add")};
}

Fout CPolygon::WrongElement() const
{
    return {kWrongElement, QStringLiteral("CPolygon Add can only accept objects of type CPart"),
            QStringLiteral("CPolygon::Add")};
}
