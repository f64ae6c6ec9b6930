#pragma once

#include "jet/catalog/Catalog.h"
#include "jet/dao/TableDef.h"

namespace jet {

// Between the catalog's descriptions and those of the face.

FieldDef FieldFrom(const Column& column);
std::vector<FieldDef> FieldsFrom(const TableDefinition& definition);
IndexDef IndexFrom(const TableDefinition& definition, const LogicalIndex& index);
ColumnSpec SpecFrom(const FieldDef& field);
IndexSpec SpecFrom(const IndexDef& index);
TableSpec SpecFrom(const TableDef& table);

} // namespace jet
