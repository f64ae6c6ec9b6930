#pragma once

#include "geometry/Punt.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace geometry {

/// A ring and a tree of boxes over its edges, so that a search looks only at
/// edges that can matter.
///
/// A leaf box encloses eight edges that follow each other, a higher box four
/// boxes that follow each other: walking the tree meets the edges in the
/// ring's own order, which decides between equal distances. The boxes only
/// leave edges out; everything that decides a result is computed per edge, so
/// that every value has the bits of the search over all edges.
///
/// The boxes take a third of the room of the points and are built in one pass.
class RingIndex {
public:
    /// Half the width and height around a centre, in metres.
    struct Box {
        double cx;
        double cy;
        double hx;
        double hy;
    };

    /// The points must outlive the index and stay where they are.
    explicit RingIndex(RingPunten points);

    RingPunten Points() const { return m_points; }

    /// How far a computed hit or foot, and a box itself, may lie from where
    /// exact arithmetic would put it, for a location at `p`: the tolerance of
    /// `LigtBinnenBox` lets a hit lie 1E-5 beside its edge, the rest is rounding.
    double Margin(Punt p) const;

    /// Whether leaving edges out is safe for a location at `p`: none of the
    /// intermediate values can overflow. Rings with coordinates that are no
    /// numbers, or beyond all maps, are searched edge by edge.
    bool CanSkip(Punt p) const;

    /// Calls `visit(first, end)` for runs of edges, in the ring's order. Boxes
    /// for which `keep(box)` is false are left out with all their edges.
    template <typename Keep, typename Visit>
    void Walk(Keep&& keep, Visit&& visit) const
    {
        if (!m_levels.empty())
            WalkLevel(m_levels.size() - 1, 0, 1, keep, visit);
    }

    /// The leaf that is reached from the top by the smallest `distance(box)` at
    /// every step: a run of edges to start a search with.
    template <typename Distance>
    std::pair<std::size_t, std::size_t> Descend(Distance&& distance) const
    {
        std::size_t best = 0;
        for (std::size_t level = m_levels.size() - 1; level > 0; --level) {
            const std::size_t first = best * kFanOut;
            const std::size_t end = std::min(first + kFanOut, LevelSize(level - 1));
            best = first;
            double smallest = distance(BoxAt(level - 1, first));
            for (std::size_t i = first + 1; i < end; ++i) {
                const double d = distance(BoxAt(level - 1, i));
                if (d < smallest) {
                    smallest = d;
                    best = i;
                }
            }
        }
        return Run(best);
    }

    bool IsEmpty() const { return m_points.empty(); }
    /// Bytes of the boxes, without the points.
    std::size_t MemoryUse() const
    {
        return m_boxes.capacity() * sizeof(Box) + m_levels.capacity() * sizeof(std::uint32_t);
    }

private:
    static constexpr std::size_t kEdgesPerLeaf = 8;
    static constexpr std::size_t kFanOut = 4;

    const Box& BoxAt(std::size_t level, std::size_t i) const
    {
        return m_boxes[m_levels[level] + i];
    }
    std::size_t LevelSize(std::size_t level) const
    {
        const std::size_t end = level + 1 < m_levels.size() ? m_levels[level + 1] : m_boxes.size();
        return end - m_levels[level];
    }
    std::pair<std::size_t, std::size_t> Run(std::size_t leaf) const
    {
        return {leaf * kEdgesPerLeaf, std::min((leaf + 1) * kEdgesPerLeaf, m_points.size())};
    }

    template <typename Keep, typename Visit>
    void WalkLevel(std::size_t level, std::size_t first, std::size_t end, Keep& keep,
                   Visit& visit) const
    {
        for (std::size_t i = first; i < end; ++i) {
            if (!keep(BoxAt(level, i)))
                continue;
            if (level == 0) {
                const auto [from, to] = Run(i);
                visit(from, to);
            } else {
                WalkLevel(level - 1, i * kFanOut, std::min((i + 1) * kFanOut, LevelSize(level - 1)),
                          keep, visit);
            }
        }
    }

    RingPunten m_points;
    std::vector<Box> m_boxes;            // the leaves first, the top last
    std::vector<std::uint32_t> m_levels; // where each level starts
    double m_largest = 0;                // of all coordinates, without sign
    bool m_tame = true;
};

} // namespace geometry
