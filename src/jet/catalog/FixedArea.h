#pragma once

#include "jet/table/TableDefinition.h"

namespace jet {

/// The first byte behind the fixed columns of a Jet 4 table, those that were
/// dropped included: where the next fixed column goes.
std::size_t EndOfFixedArea(Pager& pager, const TableDefinition& definition);

} // namespace jet
