#pragma once

#include "jet/catalog/Catalog.h"

namespace jet {

// What a table, a column or an index may be, and how it comes into a definition.

/// Throws BadName: 1 to 64 characters, none of . ! [ ] ` and no control
/// characters, no blank at the start.
void CheckName(std::string_view name);

/// A new table's definition but for its pages and maps, and without the indexes
/// of relationships. Throws BadName,
/// BadSchema, UnknownField, NameInUse.
TableDefinition DefinitionFrom(const TableDef& spec);

/// Adds columns behind those that are there. Fixed ones are placed from
/// `endOfFixedArea` on.
void AppendColumns(TableDefinition& definition, std::string_view table,
                   const std::vector<FieldDef>& columns, std::size_t endOfFixedArea);
/// Adds an index with a tree of its own, still without pages.
void AppendIndex(TableDefinition& definition, std::string_view table, const IndexDef& spec);

// And the way back: a definition as its users see it.

FieldDef FieldFrom(const Column& column);
std::vector<FieldDef> FieldsFrom(const TableDefinition& definition);
IndexDef IndexFrom(const TableDefinition& definition, const LogicalIndex& index);

} // namespace jet
