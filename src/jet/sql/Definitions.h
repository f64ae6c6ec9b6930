#pragma once

#include "jet/sql/Engine.h"

namespace jet::sql {

// Statements that define tables. The catalog does the work, never SQLite; each
// is all or nothing.

void ExecuteDefinition(Engine& engine, const CreateTable& statement);
void ExecuteDefinition(Engine& engine, const AlterTable& statement);
void ExecuteDefinition(Engine& engine, const CreateIndex& statement);
void ExecuteDefinition(Engine& engine, const DropTable& statement);
void ExecuteDefinition(Engine& engine, const DropIndex& statement);

} // namespace jet::sql
