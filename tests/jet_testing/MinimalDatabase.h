#pragma once

#include "MemoryFileSystem.h"
#include "jet/storage/Pager.h"

namespace jet_testing {

/// The smallest file that a pager takes for a database: a header, a page with the
/// global maps, and pages of zeros. No tables.
Bytes MinimalDatabase(jet::PageNumber pages = 8, jet::FileVersion version = jet::FileVersion::Jet4);

} // namespace jet_testing
