#pragma once

#include "rekenhart/physics/DikeSlope.h"

namespace rekenhart {

// The freeboard Rc (m) between water level and crest that just meets the
// mechanism. The formulas are explicit in Rc, so nothing is iterated. All
// constants are the sources' mean values. `angle` is that between wave and dike
// normal, 0..180 degrees.

/// Influence of oblique attack: at most this part of the height and period.
/// From 80 degrees the waves fade out, beyond 110 none reach the dike (TAW 2002).
WavesAtDike ReduceForAngle(const WavesAtDike& waves, double angle);

/// The angle between two bearings, folded to 0..180.
double AngleBetween(double bearingOne, double bearingTwo);

struct FreeboardResult {
    double freeboard = 0;
    double angleFactor = 1;
    double factor = 1;      ///< all reductions together, as used
    double breaking = 0;    ///< overtopping: freeboard by breaking waves
    double nonBreaking = 0; ///< overtopping: by waves that do not break
};

/// 2 % run-up on a slope (TAW 2002, EurOtop 2007).
FreeboardResult RunUpFreeboard(const SlopeLoad& slope, double angle);

/// Mean overtopping of `discharge` m3/s per m over a slope (TAW 2002, EurOtop
/// 2007). 0 when the waves never reach that discharge.
FreeboardResult OvertoppingFreeboard(const WavesAtDike& waves, const SlopeLoad& slope, double angle,
                                     double discharge);

/// The same over a vertical wall under non-impulsive waves (EurOtop 2018); a
/// nose takes 30 % off.
FreeboardResult WallFreeboard(const WavesAtDike& waves, bool nose, double angle, double discharge);

} // namespace rekenhart
