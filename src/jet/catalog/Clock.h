#pragma once

#include "jet/base/Value.h"

namespace jet {

/// The local date and time, in whole seconds: what Now() gives and what the
/// catalog writes as a table's date of creation.
DateTime LocalNow();

} // namespace jet
