#pragma once

namespace jet {

/// The version of the engine, which is that of the whole product: "1.0.0".
const char* VersionText();

} // namespace jet
