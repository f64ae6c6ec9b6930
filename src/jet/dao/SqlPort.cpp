#include "jet/dao/SqlPort.h"

#include "jet/dao/StatementRecordset.h"
#include "jet/sql/Statements.h"

namespace jet {

int ExecuteStatement(const std::shared_ptr<Session>& session, std::string_view statement)
{
    const std::shared_ptr<sql::Engine> engine = sql::Engine::Of(*session);
    return sql::Execute(*engine, statement);
}

std::unique_ptr<Recordset> OpenStatement(const std::shared_ptr<Session>& session,
                                         std::string_view source, RecordsetType type,
                                         RecordsetOptions options)
{
    return std::make_unique<StatementRecordset>(session, source, type, options);
}

} // namespace jet
