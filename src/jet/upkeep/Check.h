#pragma once

#include "jet/storage/Pager.h"
#include "jet/upkeep/CheckReport.h"

namespace jet {

/// Examines every page of an open file: who owns it, the slots and rows of data
/// pages, long values, definitions, the order and entries of every index against
/// the rows, usage maps, the commit words of the header. Lists what is wrong in
/// Dutch sentences that name table, index, page and row.
///
/// Changes nothing and never throws for what it finds. Memory: a few bytes a
/// page, and the entries of one index at a time.
CheckReport CheckFile(Pager& pager);

} // namespace jet
