#pragma once

#include "geometry/CPart.h"

/// What `CMultiPoint`, `CPolyLine` and `CPolygon` have in common: bounds, a
/// collection and a null flag.
///
/// Removing an element leaves the bounds as they were, also when it is the one
/// that set them. That is meant: whoever needs tight bounds builds the shape
/// anew. (`CPart::Remove` does work them out again.)
template <typename Element>
class CollectedShape : public IShape {
public:
    double Top() const override { return m_bounds.Top(); }
    double Bottom() const override { return m_bounds.Bottom(); }
    double Left() const override { return m_bounds.Left(); }
    double Right() const override { return m_bounds.Right(); }
    bool IsNull() const override { return m_null; }
    void MakeNull(bool isNull) override { m_null = isNull; }
    double Distance(const IShape&) const override { return DistanceNotImplemented(); }

    /// Only an object of the element's type: anything else raises 0x8004020F
    /// and changes nothing. The first element sets the bounds, the others
    /// widen them.
    void Add(const std::shared_ptr<ShapeObject>& object)
    {
        const auto element = std::dynamic_pointer_cast<Element>(object);
        if (!element)
            throw WrongElement();
        if (m_elements.Count() == 0)
            m_bounds.MakeBoundsOf(*element);
        else
            m_bounds.Widen(*element);
        m_elements.Add(element);
    }
    void Remove(int index) { m_elements.Remove(index); }

    int Count() const { return m_elements.Count(); }
    const std::shared_ptr<Element>& Item(int index) const { return m_elements.Item(index); }
    auto begin() const { return m_elements.begin(); }
    auto end() const { return m_elements.end(); }

protected:
    virtual Fout WrongElement() const = 0;

private:
    friend class CShapeFile; // sets the bounds that it reads from a record

    CRect m_bounds;
    ShapeCollection<Element> m_elements;
    bool m_null = false;
};

class CMultiPoint : public CollectedShape<CPoint> {
public:
    QString TypeName() const override { return QStringLiteral("CMultiPoint"); }

protected:
    Fout WrongElement() const override;
};

class CPolyLine : public CollectedShape<CPart> {
public:
    QString TypeName() const override { return QStringLiteral("CPolyLine"); }

protected:
    Fout WrongElement() const override;
};

class CPolygon : public CollectedShape<CPart> {
public:
    QString TypeName() const override { return QStringLiteral("CPolygon"); }

protected:
    Fout WrongElement() const override;
};
