#pragma once

#include "rekenhart/Instellingen.h"
#include "rekenhart/files/InputFile.h"

namespace rekenhart {

/// The settings that an input file holds. Throws OntbrekendeSleutel or
/// OngeldigeSleutel, naming the first key that is wrong. Unknown keys are
/// collected, so that the report can tell that they were ignored.
Instellingen ReadInstellingen(const InputFile& file);

} // namespace rekenhart
