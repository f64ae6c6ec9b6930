#pragma once

#include "geometry/CRect.h"
#include "geometry/ShapeCollection.h"

/// One part of a polyline or polygon: a row of points and its bounds. It is
/// no `IShape`: it has neither a null state nor a distance.
class CPart : public ShapeObject {
public:
    QString TypeName() const override { return QStringLiteral("CPart"); }

    double Left() const { return m_bounds.Left(); }
    double Right() const { return m_bounds.Right(); }
    double Top() const { return m_bounds.Top(); }
    double Bottom() const { return m_bounds.Bottom(); }
    void setLeft(double left) { m_bounds.setLeft(left); }
    void setRight(double right) { m_bounds.setRight(right); }
    void setTop(double top) { m_bounds.setTop(top); }
    void setBottom(double bottom) { m_bounds.setBottom(bottom); }

    /// Only a `CPoint`: anything else raises 0x8004020F and changes nothing.
    void Add(const std::shared_ptr<ShapeObject>& object);
    /// Works out the bounds again from the points that remain; those of a
    /// part without points are 0.
    void Remove(int index);

    int Count() const { return m_points.Count(); }
    const std::shared_ptr<CPoint>& Item(int index) const { return m_points.Item(index); }
    auto begin() const { return m_points.begin(); }
    auto end() const { return m_points.end(); }

private:
    CRect m_bounds;
    ShapeCollection<CPoint> m_points;
};
