#pragma once

#include "geometry/CPoint.h"

/// A rectangle: its upper left and its lower right point. Nothing orders them.
class CRect : public IShape {
public:
    QString TypeName() const override { return QStringLiteral("CRect"); }

    double Top() const override { return m_upperLeft.Y(); }
    double Left() const override { return m_upperLeft.X(); }
    double Bottom() const override { return m_lowerRight.Y(); }
    double Right() const override { return m_lowerRight.X(); }
    void setTop(double top) { m_upperLeft.setY(top); }
    void setBottom(double bottom) { m_lowerRight.setY(bottom); }
    void setLeft(double left) { m_upperLeft.setX(left); }
    void setRight(double right) { m_lowerRight.setX(right); }

    /// All four become 0.
    void MakeEmpty() { MakeXY(0, 0, 0, 0); }
    /// Copies the coordinates: `point1` becomes the upper left.
    void Make(const CPoint& point1, const CPoint& point2)
    {
        MakeXY(point1.X(), point1.Y(), point2.X(), point2.Y());
    }
    void MakeXY(double x1, double y1, double x2, double y2);

    /// Takes over the bounds of `element`, a shape or a part.
    template <typename Element>
    void MakeBoundsOf(const Element& element)
    {
        MakeXY(element.Left(), element.Top(), element.Right(), element.Bottom());
    }
    /// Moves each bound that `element` lies beyond; true if any moved.
    template <typename Element>
    bool Widen(const Element& element)
    {
        bool moved = false;
        if (element.Left() < Left()) {
            setLeft(element.Left());
            moved = true;
        }
        if (element.Right() > Right()) {
            setRight(element.Right());
            moved = true;
        }
        if (element.Bottom() < Bottom()) {
            setBottom(element.Bottom());
            moved = true;
        }
        if (element.Top() > Top()) {
            setTop(element.Top());
            moved = true;
        }
        return moved;
    }

    /// A rectangle has no null state.
    bool IsNull() const override { return false; }
    void MakeNull(bool) override {}
    double Distance(const IShape&) const override { return DistanceNotImplemented(); }

private:
    CPoint m_upperLeft;
    CPoint m_lowerRight;
};
