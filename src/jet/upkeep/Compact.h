#pragma once

#include "jet/storage/FileSystem.h"

#include <filesystem>

namespace jet {

/// See Workspace.h. Objects that we do not understand come along row by row.
/// Throws ReadOnly for a file that can only be read; the original is untouched
/// by any error.
void CompactFile(FileSystem& files, const std::filesystem::path& path);

} // namespace jet
