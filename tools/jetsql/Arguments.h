#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace jetsql {

/// The call itself is wrong; `what()` says how, in Dutch.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class Command {
    Statements, ///< run the statements, or read them from standard input
    Tables,
    Schema,
    Check,
    Compact,
    Create,
    Import,
    Export,
    Version,
    Help,
};

/// What a call asks for. Options may stand before and behind the file.
struct Arguments {
    Command command = Command::Statements;
    std::filesystem::path file;
    std::string table;         ///< of Schema (optional), Import and Export
    std::filesystem::path csv; ///< of Import; "-" = standard input
    std::optional<std::string> statements;
    bool json = false;
    bool readOnly = false;
    bool withSystemTables = false;

    /// `words` is the command line without the program's name. Throws UsageError.
    static Arguments Parse(const std::vector<std::string>& words);
};

const char* HelpText();

} // namespace jetsql
