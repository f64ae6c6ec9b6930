#pragma once

#include "jet/table/TableInternals.h"

/// Examines everything of a table that the engine wrote itself: row slots and free counts, moved
/// rows, usage maps, long values and who refers to them, trees, entries against rows, counters in
/// the definition. Failures are test failures. Returns how many rows
/// stand behind a pointer.
std::size_t ExpectSoundTable(const jet::Table& table);
