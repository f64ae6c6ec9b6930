#pragma once

#include "jet/base/Error.h"
#include "jet/sql/Syntax.h"
#include "jet/sql/Tokeniser.h"

#include <string_view>

namespace jet::sql {

/// Whoever walks a syntax tree does so by recursion; a program's stack bears
/// a tree of this height.
inline constexpr int kMaxHeight = 900;

/// Reads Jet's dialect into a syntax tree by recursive descent. Nothing is
/// looked up: names are checked by the binder.
/// All throw StatementError (Syntax; NotSupported for what Jet has and we not).
Statement ParseStatement(std::string_view statement);
/// The text of a WHERE, as a recordset's find takes it.
ExprPtr ParseCriterion(std::string_view criterion);
/// The text of an ORDER BY.
std::vector<OrderTerm> ParseSort(std::string_view fields);
/// True when the text begins as a SELECT statement does, and is no table's name.
bool IsSelect(std::string_view text);

/// One token after the other, with the questions that a grammar asks.
class TokenReader {
public:
    explicit TokenReader(std::string_view statement);

    const Token& Peek(std::size_t ahead = 0) const;
    Token Take();
    bool AtWord(std::string_view keyword, std::size_t ahead = 0) const;
    bool AtSymbol(std::string_view symbol, std::size_t ahead = 0) const;
    bool TakeWord(std::string_view keyword);
    bool TakeSymbol(std::string_view symbol);
    void ExpectWord(std::string_view keyword);
    void ExpectSymbol(std::string_view symbol);
    /// A bracketed name, or a bare word that is no reserved one.
    std::string ExpectName(std::string_view what);
    bool AtName(std::size_t ahead = 0) const;
    std::size_t Position() const { return Peek().position; }

    [[noreturn]] void Fail(const std::string& problem) const;
    [[noreturn]] void FailAt(std::size_t position, ErrorKind kind,
                             const std::string& problem) const;
    /// "Onverwacht 'x'; ... verwacht"
    [[noreturn]] void Unexpected(const std::string& expected) const;

    /// One level deeper into the grammar, for as long as the object lives.
    /// Fails when the nesting threatens the stack.
    class Level {
    public:
        explicit Level(TokenReader& tokens);
        ~Level() { --m_tokens.m_depth; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        TokenReader& m_tokens;
    };

private:
    std::string_view m_statement;
    std::vector<Token> m_tokens;
    std::size_t m_at = 0;
    int m_depth = 0;
};

/// Expressions, in the order of precedence of Visual Basic.
class ExpressionParser {
public:
    explicit ExpressionParser(TokenReader& tokens) : m_tokens(tokens) {}
    ExprPtr Parse();

    /// A SELECT in parentheses, its opening parenthesis taken; set by the
    /// statement parser, since the two grammars call each other.
    std::unique_ptr<Select> (*parseSelect)(TokenReader&, ExpressionParser&) = nullptr;

private:
    ExprPtr Imp();
    ExprPtr Eqv();
    ExprPtr Xor();
    ExprPtr Or();
    ExprPtr And();
    ExprPtr Not();
    ExprPtr Comparison();
    ExprPtr Predicate(ExprPtr left, bool negated);
    ExprPtr Concatenation();
    ExprPtr Sum();
    ExprPtr Modulo();
    ExprPtr IntegerDivision();
    ExprPtr Product();
    ExprPtr Negation();
    ExprPtr Power();
    ExprPtr Primary();
    ExprPtr Word();
    ExprPtr FieldName();
    ExprPtr Call(std::string name, std::size_t position);

    ExprPtr Make(ExprKind kind, std::size_t position) const;
    ExprPtr Operation(Op op, std::size_t position, ExprPtr left, ExprPtr right = nullptr) const;
    ExprPtr Chain(Op op, std::string_view keyword, ExprPtr (ExpressionParser::*next)());
    void Adopt(Expr& parent, ExprPtr child) const;

    TokenReader& m_tokens;
};

} // namespace jet::sql
