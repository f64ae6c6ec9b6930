#pragma once

#include "rekenhart/Profiel.h"
#include "rekenhart/physics/WaveGrowth.h"

namespace rekenhart {

// Each gives the factor on the wave height behind an obstacle in front of the
// dike. `waves` are the waves that meet it; their height is above 0.

/// A dam. `waterLevel` and the dam's height in m on the same datum.
///
/// Types 1 to 3: Van der Meer (1990). Type 4, with crest width and slope:
/// d'Angremond, Van der Meer and De Jong (1996). A dam deeper than twice the
/// wave height loses its effect, linearly, until it has none at four times.
double DamTransmission(const Profiel& dam, double waterLevel, const Waves& waves);

/// A row of piles in water of `depth` m (Hayashi, Kano and Shirai 1966). 1 when
/// diameter and distance cannot be used.
double PileTransmission(const Profiel& piles, double depth, const Waves& waves);

/// A reed border in water of `depth` m: decay of wave height by drag on emergent
/// stalks (Dalrymple et al. 1984, Mendez and Losada 2004).
double ReedTransmission(const Profiel& reed, double depth, const Waves& waves);

/// Wave number k (1/m) from (2 pi/T)^2 = g k tanh(k depth).
double WaveNumber(double period, double depth);

/// `height` limited by breaking: half the depth.
double DepthLimited(double height, double depth);

} // namespace rekenhart
