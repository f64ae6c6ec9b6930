#pragma once

#include "Arguments.h"

#include "jet/dao/Workspace.h"

#include <iosfwd>

namespace jetsql {

/// One run of the tool, apart from the process around it.
class Program {
public:
    Program(std::istream& in, std::ostream& out, std::ostream& errors);

    /// Returns the exit code: 0, or 1 after a message on `errors` (and for a
    /// file that --check finds unsound).
    int Run(const std::vector<std::string>& words);

private:
    int RunCommand(const Arguments& arguments);
    void RunStatements(jet::Workspace& workspace, jet::Database& database,
                       const Arguments& arguments);
    void PrintTables(const jet::Database& database, const Arguments& arguments);
    void PrintSchema(const jet::Database& database, const Arguments& arguments);
    int PrintCheck(jet::Database& database, const Arguments& arguments);
    void Import(jet::Workspace& workspace, jet::Database& database, const Arguments& arguments);

    std::istream& m_in;
    std::ostream& m_out;
    std::ostream& m_errors;
};

} // namespace jetsql
