#pragma once

#include <cstddef>
#include <span>

/// Opens `bytes` as a database, reads every field of every row of every table in
/// page order and along every index, and examines the file. Errors of the engine
/// are what is expected of rubbish; anything else, a crash or a hang is not.
/// Returns whether it could be opened at all.
bool ReadEverything(std::span<const std::byte> bytes);

/// Opens `bytes` for writing and adds, changes and deletes rows in every table,
/// adds and drops a field and a table, in transactions that end either way. The
/// same holds: errors of the engine and nothing else.
void ChangeEverything(std::span<const std::byte> bytes);
