#pragma once

#include "geometry/IShape.h"

/// A point; its bounds are its own coordinates.
class CPoint : public IShape {
public:
    CPoint() = default;
    CPoint(double x, double y) : m_x(x), m_y(y) {}

    QString TypeName() const override { return QStringLiteral("CPoint"); }

    double X() const { return m_x; }
    double Y() const { return m_y; }
    void setX(double x) { m_x = x; }
    void setY(double y) { m_y = y; }

    double Top() const override { return m_y; }
    double Bottom() const override { return m_y; }
    double Left() const override { return m_x; }
    double Right() const override { return m_x; }
    bool IsNull() const override { return m_null; }
    void MakeNull(bool isNull) override { m_null = isNull; }

    /// To a point, or to the vertices of a polyline or polygon and the edges
    /// at each part's nearest vertex. Raises 0x80040212 when either shape is
    /// null, and a run-time failure when such an edge has no length.
    double Distance(const IShape& shape) const override;

private:
    double m_x = 0;
    double m_y = 0;
    bool m_null = false;
};
