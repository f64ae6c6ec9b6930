#pragma once

#include "geometry/CRect.h"

/// Bounds and nothing else.
class CShape : public ShapeObject {
public:
    QString TypeName() const override { return QStringLiteral("CShape"); }

    double Top() const { return m_bounds.Top(); }
    double Bottom() const { return m_bounds.Bottom(); }
    double Left() const { return m_bounds.Left(); }
    double Right() const { return m_bounds.Right(); }

private:
    CRect m_bounds;
};

/// A shape that is not there; it has no members.
class CNullShape : public ShapeObject {
public:
    QString TypeName() const override { return QStringLiteral("CNullShape"); }
};
