#pragma once

namespace jet {

struct OpenOptions {
    bool exclusive = true;
    bool readOnly = false;
    /// Open for reading when the file cannot be written (Jet 3, another text
    /// order, no permission) instead of refusing.
    bool fallBackToReadOnly = false;
};

} // namespace jet
