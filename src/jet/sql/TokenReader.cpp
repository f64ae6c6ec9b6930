#include "jet/base/Text.h"
#include "jet/sql/Parser.h"
#include "jet/sql/StatementError.h"

#include <algorithm>
#include <array>

namespace jet::sql {

namespace {

// Words that end a name: a table or a field so called needs its brackets.
constexpr std::array<std::string_view, 34> kReserved = {
    "ALL",   "AND",    "AS",   "BETWEEN", "BY",     "DELETE", "DISTINCT", "DISTINCTROW", "DROP",
    "EQV",   "EXISTS", "FROM", "GROUP",   "HAVING", "IMP",    "IN",       "INNER",       "INSERT",
    "INTO",  "IS",     "JOIN", "LIKE",    "MOD",    "NOT",    "NULL",     "ON",          "OR",
    "ORDER", "SELECT", "SET",  "UNION",   "UPDATE", "WHERE",  "XOR"};

// Each level of parentheses costs a dozen nested calls of the parser.
constexpr int kMaxNesting = 100;

bool IsReserved(const Token& token)
{
    return token.kind == TokenKind::Word &&
           std::any_of(kReserved.begin(), kReserved.end(),
                       [&](std::string_view word) { return token.IsWord(word); });
}

} // namespace

TokenReader::TokenReader(std::string_view statement)
    : m_statement(statement), m_tokens(Tokenise(statement))
{}

const Token& TokenReader::Peek(std::size_t ahead) const
{
    return m_tokens[std::min(m_at + ahead, m_tokens.size() - 1)];
}

Token TokenReader::Take()
{
    Token token = Peek();
    if (token.kind != TokenKind::End)
        ++m_at;
    return token;
}

bool TokenReader::AtWord(std::string_view keyword, std::size_t ahead) const
{
    return Peek(ahead).IsWord(keyword);
}

bool TokenReader::AtSymbol(std::string_view symbol, std::size_t ahead) const
{
    return Peek(ahead).IsSymbol(symbol);
}

bool TokenReader::TakeWord(std::string_view keyword)
{
    const bool there = AtWord(keyword);
    m_at += there ? 1 : 0;
    return there;
}

bool TokenReader::TakeSymbol(std::string_view symbol)
{
    const bool there = AtSymbol(symbol);
    m_at += there ? 1 : 0;
    return there;
}

void TokenReader::ExpectWord(std::string_view keyword)
{
    if (!TakeWord(keyword))
        Unexpected(std::string(keyword));
}

void TokenReader::ExpectSymbol(std::string_view symbol)
{
    if (!TakeSymbol(symbol))
        Unexpected("'" + std::string(symbol) + "'");
}

bool TokenReader::AtName(std::size_t ahead) const
{
    const Token& token = Peek(ahead);
    return token.kind == TokenKind::Name || (token.kind == TokenKind::Word && !IsReserved(token));
}

std::string TokenReader::ExpectName(std::string_view what)
{
    if (!AtName())
        Unexpected(std::string(what));
    return Take().text;
}

void TokenReader::Fail(const std::string& problem) const
{
    FailAt(Position(), ErrorKind::Syntax, problem);
}

void TokenReader::FailAt(std::size_t position, ErrorKind kind, const std::string& problem) const
{
    throw StatementError(kind, problem, m_statement, position);
}

void TokenReader::Unexpected(const std::string& expected) const
{
    const Token& token = Peek();
    if (token.kind == TokenKind::End)
        Fail("De opdracht houdt te vroeg op; hier wordt " + expected + " verwacht");
    Fail("Onverwacht '" +
         std::string(m_statement.substr(token.position,
                                        std::min<std::size_t>(token.end - token.position, 40))) +
         "'; hier wordt " + expected + " verwacht");
}

TokenReader::Level::Level(TokenReader& tokens) : m_tokens(tokens)
{
    if (tokens.m_depth >= kMaxNesting)
        tokens.Fail("De opdracht is te diep genest");
    ++tokens.m_depth;
}

} // namespace jet::sql
