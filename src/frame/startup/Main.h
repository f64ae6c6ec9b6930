#pragma once

/// Runs the program from the first check to the release of the last global
/// object; the exit code of the process. Needs an application object.
int Main();

/// False in a finished build.
bool IsInDevelopment();
