#pragma once

#include "frame/Fouten.h"

#include <memory>
#include <vector>

/// An ordered collection with indices from 1. It shares its elements with
/// whoever added them.
template <typename Element>
class ShapeCollection {
public:
    int Count() const { return static_cast<int>(m_elements.size()); }
    void Add(std::shared_ptr<Element> element) { m_elements.push_back(std::move(element)); }

    /// An index outside 1 to `Count` is a run-time failure, here and below.
    const std::shared_ptr<Element>& Item(int index) const { return m_elements[Place(index)]; }
    void Remove(int index)
    {
        m_elements.erase(m_elements.begin() + static_cast<std::ptrdiff_t>(Place(index)));
    }

    auto begin() const { return m_elements.begin(); }
    auto end() const { return m_elements.end(); }

private:
    std::size_t Place(int index) const
    {
        if (index < 1 || index > Count())
            RaiseRuntimeFout(
                RuntimeFout::OutOfRange,
                QStringLiteral("Element %1 bestaat niet; er zijn er %2.").arg(index).arg(Count()));
        return static_cast<std::size_t>(index - 1);
    }

    std::vector<std::shared_ptr<Element>> m_elements;
};
