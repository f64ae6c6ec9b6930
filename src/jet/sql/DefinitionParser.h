#pragma once

#include "jet/sql/Parser.h"

namespace jet::sql {

/// CREATE TABLE, CREATE INDEX, ALTER TABLE, DROP TABLE, DROP INDEX.
Statement ParseDefinition(TokenReader& tokens);

} // namespace jet::sql
