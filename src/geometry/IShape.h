#pragma once

#include <QString>

/// Anything of the shape family. The operations that accept "an object" look
/// at its type name, as `CPolygon::Add` does.
class ShapeObject {
public:
    virtual ~ShapeObject() = default;
    virtual QString TypeName() const = 0;
};

/// What `CShapeFile` asks of a shape, whatever its kind. y grows upwards:
/// `Top` is the largest y, `Bottom` the smallest.
class IShape : public ShapeObject {
public:
    virtual double Top() const = 0;
    virtual double Bottom() const = 0;
    virtual double Left() const = 0;
    virtual double Right() const = 0;
    virtual bool IsNull() const = 0;
    virtual void MakeNull(bool isNull) = 0;
    /// The distance in metres. Only `CPoint` computes one; the others show
    /// "NOT IMPLEMENTED" and give 0.
    virtual double Distance(const IShape& shape) const = 0;
};

/// Shows "NOT IMPLEMENTED" in a box, where there are boxes, and gives 0.
double DistanceNotImplemented();
