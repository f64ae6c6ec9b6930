#pragma once

#include "jet/dao/Database.h"

#include <iosfwd>

namespace jetsql {

/// Adds the rows of a CSV file, whose first line names fields, to a table.
/// Fields that are not named get their default values, an empty field is null.
/// Returns the number of rows. Throws std::runtime_error naming the line; rows
/// added before it are the caller's transaction to undo.
int ImportCsv(std::istream& in, jet::Database& database, const std::string& table);

} // namespace jetsql
