#pragma once

#include "rekenhart/Gegevensbron.h"

namespace rekenhart {

/// Opens a boundary-condition database (.mdb; UTF-8 path). Throws
/// OnbereikbareDatabase. Matches OpenGegevensbron.
std::unique_ptr<Gegevensbron> OpenJetGegevensbron(const std::string& path, Toegang access);

} // namespace rekenhart
