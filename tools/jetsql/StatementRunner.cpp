#include "StatementRunner.h"

#include "jet/dao/Script.h"

#include <algorithm>
#include <istream>
#include <ostream>

namespace jetsql {

namespace {

bool IsBlank(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) <= 0x20; });
}

/// A transaction that is rolled back unless it is committed.
class Transaction {
public:
    explicit Transaction(jet::Workspace& workspace) : m_workspace(workspace)
    {
        workspace.BeginTrans();
    }
    ~Transaction()
    {
        if (m_open)
            m_workspace.Rollback();
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Commit()
    {
        m_workspace.CommitTrans(jet::Flush::Yes);
        m_open = false;
    }

private:
    jet::Workspace& m_workspace;
    bool m_open = true;
};

} // namespace

StatementRunner::StatementRunner(jet::Workspace& workspace, jet::Database& database,
                                 RowFormat format, std::ostream& out)
    : m_workspace(workspace), m_database(database), m_format(format), m_out(out)
{}

void StatementRunner::RunOne(std::string_view statement)
{
    if (IsBlank(statement))
        return;
    if (!jet::GivesRows(statement)) {
        m_database.Execute(statement);
        return;
    }
    const auto rows = m_database.OpenRecordset(statement, jet::RecordsetType::Snapshot,
                                               {.readOnly = true, .forwardOnly = true});
    PrintRows(*rows, m_format, m_out);
}

void StatementRunner::RunComplete(std::string& text)
{
    std::size_t done = 0;
    for (;;) {
        const std::string_view rest = std::string_view(text).substr(done);
        const jet::StatementEnd end = jet::EndOfStatement(rest);
        if (!end.complete)
            break;
        RunOne(rest.substr(0, end.position));
        done += end.position + 1;
    }
    text.erase(0, done);
}

void StatementRunner::RunScript(std::string_view script)
{
    Transaction transaction(m_workspace);
    std::string text(script);
    RunComplete(text);
    RunOne(text);
    transaction.Commit();
}

void StatementRunner::RunScript(std::istream& script)
{
    Transaction transaction(m_workspace);
    std::string text;
    for (std::string line; std::getline(script, line);) {
        text += line + '\n';
        if (line.find(';') != std::string::npos)
            RunComplete(text);
    }
    RunOne(text);
    transaction.Commit();
}

void StatementRunner::Talk(
    const std::function<std::optional<std::string>(bool continued)>& readLine, std::ostream& errors)
{
    std::string text;
    while (const std::optional<std::string> line = readLine(!IsBlank(text))) {
        text += *line + '\n';
        const jet::StatementEnd end = jet::EndOfStatement(text);
        if (!end.complete)
            continue;
        try {
            while (jet::EndOfStatement(text).complete) {
                const std::size_t length = jet::EndOfStatement(text).position;
                const std::string statement = text.substr(0, length);
                text.erase(0, length + 1);
                Transaction transaction(m_workspace);
                RunOne(statement);
                transaction.Commit();
                if (!IsBlank(statement) && !jet::GivesRows(statement))
                    m_out << m_database.RecordsAffected() << " rijen\n";
            }
        } catch (const std::exception& error) {
            errors << error.what() << '\n';
            text.clear();
        }
        if (IsBlank(text))
            text.clear();
        m_out.flush();
    }
}

} // namespace jetsql
