#pragma once

#include "RowPrinter.h"

#include "jet/dao/Workspace.h"

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace jetsql {

/// Runs statements on a database and prints the rows of those that give some.
class StatementRunner {
public:
    /// All must outlive the runner.
    StatementRunner(jet::Workspace& workspace, jet::Database& database, RowFormat format,
                    std::ostream& out);

    /// All statements of a script in one transaction: the first that fails throws,
    /// and nothing of the script stays.
    void RunScript(std::string_view script);
    /// The same, read as it comes.
    void RunScript(std::istream& script);

    /// Statement by statement, each for itself: what fails is told on `errors`,
    /// and the talk goes on. `readLine` gives nothing at the end of the input.
    void Talk(const std::function<std::optional<std::string>(bool continued)>& readLine,
              std::ostream& errors);

private:
    void RunOne(std::string_view statement);
    /// Runs the complete statements that `text` begins with, and takes them away.
    void RunComplete(std::string& text);

    jet::Workspace& m_workspace;
    jet::Database& m_database;
    RowFormat m_format;
    std::ostream& m_out;
};

} // namespace jetsql
