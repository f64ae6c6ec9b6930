#include "Program.h"

#include "Csv.h"
#include "CsvImport.h"
#include "RowPrinter.h"
#include "SchemaText.h"
#include "StatementRunner.h"
#include "Terminal.h"
#include "jet/base/Text.h"
#include "jet/dao/Version.h"

#include <fstream>
#include <iostream>
#include <ostream>

namespace jetsql {

Program::Program(std::istream& in, std::ostream& out, std::ostream& errors)
    : m_in(in), m_out(out), m_errors(errors)
{}

int Program::Run(const std::vector<std::string>& words)
{
    try {
        const int code = RunCommand(Arguments::Parse(words));
        m_out.flush();
        if (!m_out)
            throw std::runtime_error("De uitvoer kan niet worden geschreven.");
        return code;
    } catch (const UsageError& error) {
        m_errors << "jetsql: " << error.what() << "\nZie jetsql --help.\n";
    } catch (const std::exception& error) {
        m_out.flush();
        m_errors << "jetsql: " << error.what() << '\n';
    }
    return 1;
}

int Program::RunCommand(const Arguments& arguments)
{
    switch (arguments.command) {
    case Command::Help:
        m_out << HelpText();
        return 0;
    case Command::Version:
        m_out << "jetsql " << jet::VersionText() << '\n';
        return 0;
    case Command::Compact:
        jet::CompactDatabase(arguments.file);
        return 0;
    default:
        break;
    }

    jet::Workspace workspace;
    if (arguments.command == Command::Create) {
        workspace.CreateDatabase(arguments.file);
        return 0;
    }
    const auto database = workspace.OpenDatabase(arguments.file, {.exclusive = !arguments.readOnly,
                                                                  .readOnly = arguments.readOnly,
                                                                  .fallBackToReadOnly = true});
    switch (arguments.command) {
    case Command::Tables:
        PrintTables(*database, arguments);
        break;
    case Command::Schema:
        PrintSchema(*database, arguments);
        break;
    case Command::Check:
        return PrintCheck(*database, arguments);
    case Command::Export: {
        const auto rows =
            database->OpenRecordset(arguments.table, jet::RecordsetType::Table, {.readOnly = true});
        PrintRows(*rows, arguments.json ? RowFormat::Json : RowFormat::Csv, m_out);
        break;
    }
    case Command::Import:
        Import(workspace, *database, arguments);
        break;
    default:
        RunStatements(workspace, *database, arguments);
    }
    return 0;
}

void Program::RunStatements(jet::Workspace& workspace, jet::Database& database,
                            const Arguments& arguments)
{
    StatementRunner runner(workspace, database, arguments.json ? RowFormat::Json : RowFormat::Csv,
                           m_out);
    if (arguments.statements)
        runner.RunScript(*arguments.statements);
    else if (&m_in == &std::cin && IsTerminal())
        runner.Talk(
            [](bool continued) { return ReadTypedLine(continued ? "   ...> " : "jetsql> "); },
            m_errors);
    else
        runner.RunScript(m_in);
}

void Program::PrintTables(const jet::Database& database, const Arguments& arguments)
{
    for (const std::string& name : database.TableNames(arguments.withSystemTables)) {
        if (!arguments.json) {
            m_out << name << '\n';
            continue;
        }
        std::string line = "{\"table\":";
        AppendJsonText(line, name);
        m_out << line << "}\n";
    }
}

void Program::PrintSchema(const jet::Database& database, const Arguments& arguments)
{
    std::vector<std::string> names = {arguments.table};
    if (arguments.table.empty())
        names = database.TableNames(arguments.withSystemTables);
    bool first = true;
    for (const std::string& name : names) {
        const jet::TableDef table = database.GetTableDef(name);
        if (!arguments.json && !first)
            m_out << '\n';
        first = false;
        m_out << (arguments.json ? SchemaAsJson(table) : SchemaAsText(table));
    }
}

int Program::PrintCheck(jet::Database& database, const Arguments& arguments)
{
    const jet::CheckReport report = database.Check();
    const auto print = [&](const char* kind, const std::string& text) {
        if (!arguments.json) {
            m_out << kind << ": " << text << '\n';
            return;
        }
        std::string line = std::string("{\"soort\":\"") + kind + "\",\"tekst\":";
        AppendJsonText(line, text);
        m_out << line << "}\n";
    };
    for (const std::string& fault : report.faults)
        print("fout", fault);
    for (const std::string& remark : report.remarks)
        print("opmerking", remark);
    if (!arguments.json)
        m_out << (report.IsSound() ? "Het bestand is in orde.\n" : "Het bestand is beschadigd.\n");
    return report.IsSound() ? 0 : 1;
}

void Program::Import(jet::Workspace& workspace, jet::Database& database, const Arguments& arguments)
{
    std::ifstream file;
    const bool fromInput = arguments.csv == "-";
    if (!fromInput) {
        file.open(arguments.csv, std::ios::binary);
        if (!file)
            throw std::runtime_error("Het bestand " + jet::Utf8FromPath(arguments.csv) +
                                     " kan niet worden gelezen.");
    }
    workspace.BeginTrans(); // leaving by an error rolls back
    ImportCsv(fromInput ? m_in : file, database, arguments.table);
    workspace.CommitTrans(jet::Flush::Yes);
}

} // namespace jetsql
