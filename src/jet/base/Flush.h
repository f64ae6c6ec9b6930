#pragma once

namespace jet {

/// Whether a commit waits until the disk has everything.
enum class Flush { No, Yes };

} // namespace jet
