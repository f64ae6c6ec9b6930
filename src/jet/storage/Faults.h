#pragma once

#include "jet/base/Error.h"
#include "jet/storage/Pager.h"

#include <string_view>

namespace jet {

/// Throws Error (Damaged) that names the file, the page and `what` is wrong
/// there (a clause without a capital and without a full stop).
[[noreturn]] void ThrowDamaged(const Pager& pager, PageNumber page, std::string_view what);

} // namespace jet
