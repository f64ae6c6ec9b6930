#pragma once

#include "jet/dao/Database.h"

#include <string>

namespace jetsql {

/// A type as users know it: Long, Text(50), Decimal(18,4).
std::string TypeText(const jet::FieldDef& field);

/// A table's fields and indexes, a line each.
std::string SchemaAsText(const jet::TableDef& table);
/// The same as one JSON object on one line.
std::string SchemaAsJson(const jet::TableDef& table);

} // namespace jetsql
