#include "jet/dao/SqlPort.h"

namespace jet {

namespace {

[[noreturn]] void RefuseStatements()
{
    throw Error(ErrorKind::NotSupported, "Deze versie voert nog geen SQL-opdrachten uit.");
}

} // namespace

int ExecuteStatement(const std::shared_ptr<Session>&, std::string_view)
{
    RefuseStatements();
}

std::unique_ptr<Recordset> OpenStatement(const std::shared_ptr<Session>&, std::string_view,
                                         RecordsetType, RecordsetOptions)
{
    RefuseStatements();
}

} // namespace jet
