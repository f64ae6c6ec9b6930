#pragma once

#include "jet/catalog/Session.h"
#include "jet/dao/Recordset.h"

namespace jet {

/// Runs one statement that gives no rows, all of it or nothing; returns the
/// number of rows touched.
int ExecuteStatement(const std::shared_ptr<Session>& session, std::string_view sql);

/// The recordset kinds that stand on a statement: Dynaset and Snapshot.
/// `source` is a SELECT statement or the name of a table.
std::unique_ptr<Recordset> OpenStatement(const std::shared_ptr<Session>& session,
                                         std::string_view source, RecordsetType type,
                                         RecordsetOptions options);

} // namespace jet
