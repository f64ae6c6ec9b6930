#include "jet/dao/Definitions.h"

namespace jet {

FieldDef FieldFrom(const Column& column)
{
    FieldDef field;
    field.name = column.name;
    field.type = column.type;
    field.size = column.Size();
    field.autoNumber = column.autoNumber;
    field.required = column.required;
    field.allowZeroLength = column.allowZeroLength;
    field.defaultValue = column.defaultValue;
    field.description = column.description;
    field.precision = column.precision;
    field.scale = column.scale;
    field.fixedLength = column.fixed;
    return field;
}

std::vector<FieldDef> FieldsFrom(const TableDefinition& definition)
{
    std::vector<FieldDef> fields;
    for (const Column& column : definition.columns)
        fields.push_back(FieldFrom(column));
    return fields;
}

IndexDef IndexFrom(const TableDefinition& definition, const LogicalIndex& index)
{
    const PhysicalIndex& physical = definition.physicalIndexes[index.physical];
    IndexDef result;
    result.name = index.name;
    for (const IndexColumn& part : physical.columns)
        result.fields.push_back({definition.columns[part.column].name, !part.ascending});
    result.primary = index.kind == LogicalIndex::Kind::Primary;
    result.unique = physical.unique || result.primary;
    result.required = physical.required || result.primary;
    result.ignoreNulls = physical.ignoreNulls;
    result.foreign = index.kind == LogicalIndex::Kind::Relationship;
    return result;
}

ColumnSpec SpecFrom(const FieldDef& field)
{
    ColumnSpec spec;
    spec.name = field.name;
    spec.type = field.type;
    spec.size = field.size;
    spec.autoNumber = field.autoNumber;
    spec.required = field.required;
    spec.allowZeroLength = field.allowZeroLength;
    spec.defaultValue = field.defaultValue;
    spec.description = field.description;
    spec.precision = field.precision;
    spec.scale = field.scale;
    return spec;
}

IndexSpec SpecFrom(const IndexDef& index)
{
    IndexSpec spec;
    spec.name = index.name;
    for (const IndexDef::Part& part : index.fields)
        spec.columns.push_back({part.field, !part.descending});
    spec.primary = index.primary;
    spec.unique = index.unique;
    spec.required = index.required;
    spec.ignoreNulls = index.ignoreNulls;
    return spec;
}

TableSpec SpecFrom(const TableDef& table)
{
    TableSpec spec;
    spec.name = table.name;
    for (const FieldDef& field : table.fields)
        spec.columns.push_back(SpecFrom(field));
    for (const IndexDef& index : table.indexes)
        if (!index.foreign)
            spec.indexes.push_back(SpecFrom(index));
    return spec;
}

} // namespace jet
