#pragma once

#include "jet/dao/Recordset.h"

#include <iosfwd>

namespace jetsql {

enum class RowFormat {
    Csv,  ///< a line with the names first
    Json, ///< one object a line, keys in the order of the fields
};

/// Prints all rows from the current one on.
void PrintRows(jet::Recordset& rows, RowFormat format, std::ostream& out);

} // namespace jetsql
