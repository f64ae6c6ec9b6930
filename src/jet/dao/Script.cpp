#include "jet/dao/Script.h"

#include "jet/base/Error.h"
#include "jet/sql/Tokeniser.h"

namespace jet {

StatementEnd EndOfStatement(std::string_view script)
{
    const std::size_t end = sql::EndOfFirstStatement(script);
    return {end, end < script.size()};
}

bool GivesRows(std::string_view statement)
{
    try {
        int depth = 0;
        bool first = true;
        for (const sql::Token& token : sql::Tokenise(statement)) {
            if (first && !token.IsSymbol("(") && !token.IsWord("SELECT"))
                return false;
            first = first && token.IsSymbol("(");
            depth += token.IsSymbol("(") ? 1 : token.IsSymbol(")") ? -1 : 0;
            if (depth == 0 && token.IsWord("INTO"))
                return false;
        }
        return true;
    } catch (const Error&) {
        return false; // executing it tells what is wrong
    }
}

} // namespace jet
