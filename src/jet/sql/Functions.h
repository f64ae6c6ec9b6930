#pragma once

#include "jet/sql/SqliteSupport.h"

namespace jet::sql {

/// Makes the collation JET and all functions that the rewriter writes known to
/// SQLite. What they throw is kept in `errors`, which must outlive the handle.
void RegisterFunctions(sqlite3* handle, PendingError& errors);

void RegisterNumberFunctions(sqlite3* handle, PendingError& errors);
void RegisterTextFunctions(sqlite3* handle, PendingError& errors);
void RegisterDateFunctions(sqlite3* handle, PendingError& errors);
void RegisterFormatFunction(sqlite3* handle, PendingError& errors);
void RegisterAggregates(sqlite3* handle, PendingError& errors);

/// A number that a function needs whole: halves to even; Overflow beyond 32 bits.
std::int32_t WholeNumber(double number);
/// The date in an argument: days, or a text that reads as a date.
double DaysIn(const Arguments& arguments, int i);

} // namespace jet::sql
