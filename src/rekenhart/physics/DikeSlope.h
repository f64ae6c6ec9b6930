#pragma once

#include "rekenhart/Profiel.h"

#include <vector>

namespace rekenhart {

/// What reaches the dike: wave height reduced for oblique attack, and the
/// period T(m-1,0) that run-up and overtopping use.
struct WavesAtDike {
    double height = 0; ///< m
    double period = 0; ///< s
};

/// The slope as one wave meets it.
struct SlopeLoad {
    double tanAlpha = 0;    ///< mean slope
    double breaker = 0;     ///< breaker parameter
    double smoothRunUp = 0; ///< 2 % run-up on a smooth slope, m
    double roughness = 1;   ///< factor, already raised towards 1 for long waves
};

/// The outer slope of a dike, from its toe upwards; above the last point the
/// last segment goes on. Needs at least two points with levels that do not
/// fall, the last segment rising (see IsGeschikt).
class DikeSlope {
public:
    explicit DikeSlope(const Profiel& profiel);

    static bool IsGeschikt(const Profiel& profiel);

    double ToeLevel() const { return m_segments.front().yBegin; }
    double LastPointLevel() const { return m_lastY; }

    /// Mean slope between 1.5 wave heights below the water and the run-up level,
    /// in three fixed passes, and the roughness of the part that the waves use
    /// (TAW 2002; small waves on grass: EurOtop 2007).
    SlopeLoad Schematise(double waterLevel, const WavesAtDike& waves) const;

    bool HasBerm() const; ///< a segment flatter than 1:8
    bool IsSteep() const; ///< a segment steeper than 1:2

private:
    struct Segment {
        double xBegin, yBegin, dx, dy;
        double length;
        double r;
        bool gras;
    };

    double HighestX(double level) const; ///< the last place at or below `level`
    double LowestX(double level) const;  ///< the first place at or above `level`
    double Roughness(double low, double high, double waveHeight) const;

    std::vector<Segment> m_segments;
    double m_lastX = 0, m_lastY = 0;
};

/// 2 % run-up over wave height on a smooth slope under normal attack, mean
/// values (TAW 2002, EurOtop 2007).
double RelativeRunUp(double breaker);

} // namespace rekenhart
