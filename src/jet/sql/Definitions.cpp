#include "jet/sql/Definitions.h"

namespace jet::sql {

namespace {

ColumnSpec SpecOf(const FieldDefinition& field)
{
    ColumnSpec spec;
    spec.name = field.name;
    spec.type = field.type;
    spec.size = field.size;
    spec.autoNumber = field.autoNumber;
    spec.required = field.required;
    spec.defaultValue = field.defaultValue;
    spec.precision = field.precision;
    spec.scale = field.scale;
    return spec;
}

IndexSpec SpecOf(const IndexDefinition& index)
{
    IndexSpec spec;
    spec.name = index.name;
    for (const IndexDefinition::Part& part : index.fields)
        spec.columns.push_back({part.field, !part.descending});
    spec.primary = index.primary;
    spec.unique = index.unique;
    spec.required = index.required;
    spec.ignoreNulls = index.ignoreNulls;
    return spec;
}

} // namespace

void ExecuteDefinition(Engine& engine, const CreateTable& statement)
{
    TableSpec spec;
    spec.name = statement.table;
    for (const FieldDefinition& field : statement.fields)
        spec.columns.push_back(SpecOf(field));
    for (const IndexDefinition& index : statement.indexes)
        spec.indexes.push_back(SpecOf(index));
    engine.ForgetTables();
    engine.Tables().Create(spec);
}

void ExecuteDefinition(Engine& engine, const AlterTable& statement)
{
    engine.ForgetTables();
    Catalog& catalog = engine.Tables();
    if (!statement.drop.empty() || !statement.dropIndex.empty())
        engine.File().RefuseWhileInUse(statement.table);
    AllOrNothing scope(engine.File().File());
    for (const std::string& field : statement.drop)
        catalog.DropColumn(statement.table, field);
    if (!statement.dropIndex.empty())
        catalog.DropIndex(statement.table, statement.dropIndex);
    std::vector<ColumnSpec> columns;
    for (const FieldDefinition& field : statement.add)
        columns.push_back(SpecOf(field));
    if (!columns.empty())
        catalog.AddColumns(statement.table, columns);
    if (statement.addIndex)
        catalog.CreateIndex(statement.table, SpecOf(*statement.addIndex));
    scope.Done();
}

void ExecuteDefinition(Engine& engine, const CreateIndex& statement)
{
    engine.ForgetTables();
    engine.Tables().CreateIndex(statement.table, SpecOf(statement.index));
}

void ExecuteDefinition(Engine& engine, const DropTable& statement)
{
    engine.ForgetTables();
    engine.File().RefuseWhileInUse(statement.table);
    engine.Tables().Drop(statement.table);
}

void ExecuteDefinition(Engine& engine, const DropIndex& statement)
{
    engine.ForgetTables();
    engine.File().RefuseWhileInUse(statement.table);
    engine.Tables().DropIndex(statement.table, statement.index);
}

} // namespace jet::sql
