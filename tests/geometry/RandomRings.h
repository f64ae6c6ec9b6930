#pragma once

#include "ShapeBytes.h"

#include <array>
#include <cmath>
#include <numbers>
#include <random>

/// Shore lines for tests and measurements, the same for the same seed on every
/// platform (the distributions of the standard library are not).
class RandomRings {
public:
    explicit RandomRings(std::uint64_t seed) : m_engine(seed) {}

    /// 0 up to 1.
    double Unit() { return double(m_engine() >> 11) * 0x1p-53; }
    double Between(double low, double high) { return low + (high - low) * Unit(); }
    int Whole(int low, int high)
    {
        return low + static_cast<int>(m_engine() % static_cast<std::uint64_t>(high - low + 1));
    }

    /// A shore as on maps, closed: bays within bays, each smaller and shallower,
    /// down to a few points wide.
    TestRing Coast(double x, double y, double radius, int points)
    {
        std::vector<std::array<double, 3>> waves; // count, depth, phase
        for (double count = 3; count < points / 6.0; count *= 2)
            waves.push_back({std::floor(count * Between(1, 1.5)), 0.25 / count, Unit() * 6});
        TestRing ring;
        for (int i = 0; i < points; ++i) {
            const double angle = 2 * std::numbers::pi * i / points;
            double r = 1;
            for (const auto& [count, depth, phase] : waves)
                r += depth * std::sin(count * angle + phase);
            ring.push_back({x + radius * r * std::cos(angle), y + radius * r * std::sin(angle)});
        }
        ring.push_back(ring.front());
        return ring;
    }

    /// A wrinkled, closed shore around (x, y): the distance to the shore wanders
    /// by up to `roughness` of the radius, with bays that cross a ray often.
    TestRing Shore(double x, double y, double radius, int points, double roughness)
    {
        TestRing ring;
        const int waves = Whole(3, 9);
        const double phase = Unit() * 6;
        for (int i = 0; i < points; ++i) {
            const double angle = 2 * std::numbers::pi * i / points;
            const double r = radius * (1 + roughness * 0.5 * std::sin(waves * angle + phase) +
                                       roughness * 0.5 * (Unit() - 0.5));
            const double aside = roughness * (Unit() - 0.5) * 4 * std::numbers::pi / points;
            ring.push_back({x + r * std::cos(angle + aside), y + r * std::sin(angle + aside)});
        }
        ring.push_back(ring.front());
        return ring;
    }

    /// A ring on whole coordinates: axis-parallel and diagonal edges, points
    /// that stand twice, edges that touch and cross.
    TestRing Lattice(int points, int size)
    {
        TestRing ring;
        int x = Whole(-size, size);
        int y = Whole(-size, size);
        for (int i = 0; i < points; ++i) {
            switch (Whole(0, 4)) {
            case 0:
                x = Whole(-size, size);
                break;
            case 1:
                y = Whole(-size, size);
                break;
            case 2: {
                const int step = Whole(-size / 2, size / 2);
                x += step;
                y += step;
                break;
            }
            case 3:
                x = Whole(-size, size);
                y = Whole(-size, size);
                break;
            default:
                break; // the same point again
            }
            ring.push_back({double(x), double(y)});
        }
        if (Whole(0, 1))
            ring.push_back(ring.front());
        return ring;
    }

private:
    std::mt19937_64 m_engine;
};
