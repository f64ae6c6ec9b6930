#pragma once

#include "rekenhart/Gegevens.h"
#include "rekenhart/Instellingen.h"

namespace rekenhart {

/// Throws OnvolledigeLocatie when anything that a calculation needs is unknown.
/// The crest height is needed only by a dike ring.
void CheckLocatie(const Locatie& locatie, const Belastinginstellingen& settings,
                  bool needsKruinhoogte);

/// Throws OngeschiktProfiel unless the mechanism can be calculated for it.
void CheckProfiel(const Profiel& profiel, Faalmechanisme mechanism);

} // namespace rekenhart
