#pragma once

#include "jet/sql/Engine.h"

#include <functional>

namespace jet::sql {

/// The rows of a recordset, as a criterion over them sees them.
struct FilterRows {
    std::string name; ///< of the table that fields may be written with; may be empty
    std::vector<FieldShape> fields;
    int count = 0;
    /// All fields of row `i`, or nothing when the row is gone.
    std::function<std::optional<Row>(int i)> row;
};

/// The first row from `from` on for which the criterion (the text of a WHERE)
/// holds; -1 when there is none.
int FindRow(Engine& engine, const FilterRows& rows, std::string_view criterion, int from);

} // namespace jet::sql
