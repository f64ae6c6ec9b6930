#include "jet/sql/Definitions.h"

namespace jet::sql {

void ExecuteDefinition(Engine& engine, const CreateTable& statement)
{
    engine.ForgetTables();
    engine.Tables().Create(statement.table);
}

void ExecuteDefinition(Engine& engine, const AlterTable& statement)
{
    engine.ForgetTables();
    Catalog& catalog = engine.Tables();
    if (!statement.drop.empty() || !statement.dropIndex.empty() || statement.change)
        engine.File().RefuseWhileInUse(statement.table);
    AllOrNothing scope(engine.File().File());
    for (const std::string& field : statement.drop)
        catalog.DropColumn(statement.table, field);
    if (!statement.dropIndex.empty())
        catalog.DropIndex(statement.table, statement.dropIndex);
    if (statement.change)
        catalog.ChangeColumn(statement.table, *statement.change);
    if (!statement.add.empty())
        catalog.AddColumns(statement.table, statement.add);
    if (statement.addIndex)
        catalog.CreateIndex(statement.table, *statement.addIndex);
    scope.Done();
}

void ExecuteDefinition(Engine& engine, const CreateIndex& statement)
{
    engine.ForgetTables();
    engine.Tables().CreateIndex(statement.table, statement.index);
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
