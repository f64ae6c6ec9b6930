#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace jet::sql {

enum class TokenKind {
    End,
    Word,    ///< a bare word: keyword or name, as written
    Name,    ///< [name] or `name`: never a keyword
    Text,    ///< "..." or '...', the doubled quotes undone
    Integer, ///< a whole number that fits 64 bits
    Real,
    Date,   ///< #...#; `number` = days since 1899-12-30
    Symbol, ///< an operator or a punctuation mark
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::size_t position = 0; ///< of its first byte in the statement
    std::size_t end = 0;      ///< behind its last byte
    std::string text;         ///< word, name, content of a text, symbol
    std::int64_t integer = 0;
    double number = 0;

    bool IsSymbol(std::string_view symbol) const
    {
        return kind == TokenKind::Symbol && text == symbol;
    }
    /// A bare word, compared without regard to case; `keyword` in capitals.
    bool IsWord(std::string_view keyword) const;
};

/// Cuts a statement into tokens, the last of kind End. Words and numbers end
/// where they cannot go on, so that `-999AND` is three tokens.
/// Throws StatementError (Syntax) for a text, name or date without its end and
/// for a character that begins nothing.
std::vector<Token> Tokenise(std::string_view statement);

/// Days since 1899-12-30 of what stands between the # signs: month/day/year,
/// year-month-day, a time of day, or both. Returns false when it is no date.
bool ParseDateText(std::string_view text, double& days);

/// The byte behind the first statement of `script`, its semicolon not counted;
/// a semicolon in a text or a bracketed name ends nothing.
std::size_t EndOfFirstStatement(std::string_view script);

} // namespace jet::sql
