#pragma once

#include <string>
#include <vector>

namespace jet {

/// The outcome of a whole-file examination; see Database::Check.
struct CheckReport {
    std::vector<std::string> faults;  ///< empty = the file is sound
    std::vector<std::string> remarks; ///< harmless: stale counters, leaked pages
    bool IsSound() const { return faults.empty(); }
};

} // namespace jet
