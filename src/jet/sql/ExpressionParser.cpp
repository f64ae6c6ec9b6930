#include "jet/base/Text.h"
#include "jet/sql/Parser.h"
#include "jet/sql/StatementError.h"

#include <algorithm>
#include <array>

namespace jet::sql {

namespace {

struct Comparator {
    std::string_view symbol;
    Op op;
};
constexpr std::array<Comparator, 6> kComparators = {{{"=", Op::Equal},
                                                     {"<>", Op::NotEqual},
                                                     {"<=", Op::LessOrEqual},
                                                     {">=", Op::GreaterOrEqual},
                                                     {"<", Op::Less},
                                                     {">", Op::Greater}}};

struct AggregateName {
    std::string_view name;
    AggregateKind kind;
};
constexpr std::array<AggregateName, 11> kAggregates = {{{"COUNT", AggregateKind::Count},
                                                        {"SUM", AggregateKind::Sum},
                                                        {"AVG", AggregateKind::Avg},
                                                        {"MIN", AggregateKind::Min},
                                                        {"MAX", AggregateKind::Max},
                                                        {"FIRST", AggregateKind::First},
                                                        {"LAST", AggregateKind::Last},
                                                        {"STDEV", AggregateKind::StDev},
                                                        {"STDEVP", AggregateKind::StDevP},
                                                        {"VAR", AggregateKind::Var},
                                                        {"VARP", AggregateKind::VarP}}};

} // namespace

ExprPtr ExpressionParser::Make(ExprKind kind, std::size_t position) const
{
    auto expr = std::make_unique<Expr>();
    expr->kind = kind;
    expr->position = position;
    return expr;
}

void ExpressionParser::Adopt(Expr& parent, ExprPtr child) const
{
    if (child->height >= kMaxHeight)
        m_tokens.FailAt(child->position, ErrorKind::Syntax,
                        "De uitdrukking is te lang of te diep genest");
    parent.height = std::max(parent.height, child->height + 1);
    parent.operands.push_back(std::move(child));
}

ExprPtr ExpressionParser::Operation(Op op, std::size_t position, ExprPtr left, ExprPtr right) const
{
    ExprPtr expr = Make(ExprKind::Operation, position);
    expr->op = op;
    Adopt(*expr, std::move(left));
    if (right)
        Adopt(*expr, std::move(right));
    return expr;
}

ExprPtr ExpressionParser::Parse()
{
    const TokenReader::Level level(m_tokens);
    return Imp();
}

ExprPtr ExpressionParser::Imp()
{
    ExprPtr left = Eqv();
    while (m_tokens.AtWord("IMP")) {
        const std::size_t position = m_tokens.Take().position;
        left = Operation(Op::Imp, position, std::move(left), Eqv());
    }
    return left;
}

ExprPtr ExpressionParser::Eqv()
{
    ExprPtr left = Xor();
    while (m_tokens.AtWord("EQV")) {
        const std::size_t position = m_tokens.Take().position;
        left = Operation(Op::Eqv, position, std::move(left), Xor());
    }
    return left;
}

ExprPtr ExpressionParser::Xor()
{
    ExprPtr left = Or();
    while (m_tokens.AtWord("XOR")) {
        const std::size_t position = m_tokens.Take().position;
        left = Operation(Op::Xor, position, std::move(left), Or());
    }
    return left;
}

// Thousands of terms joined by Or are one node with thousands of operands.
ExprPtr ExpressionParser::Chain(Op op, std::string_view keyword,
                                ExprPtr (ExpressionParser::*next)())
{
    ExprPtr first = (this->*next)();
    if (!m_tokens.AtWord(keyword))
        return first;
    ExprPtr chain = Make(ExprKind::Operation, m_tokens.Position());
    chain->op = op;
    Adopt(*chain, std::move(first));
    while (m_tokens.TakeWord(keyword))
        Adopt(*chain, (this->*next)());
    return chain;
}

ExprPtr ExpressionParser::Or()
{
    return Chain(Op::Or, "OR", &ExpressionParser::And);
}

ExprPtr ExpressionParser::And()
{
    return Chain(Op::And, "AND", &ExpressionParser::Not);
}

ExprPtr ExpressionParser::Not()
{
    if (!m_tokens.AtWord("NOT"))
        return Comparison();
    const TokenReader::Level level(m_tokens);
    const std::size_t position = m_tokens.Take().position;
    return Operation(Op::Not, position, Not());
}

ExprPtr ExpressionParser::Comparison()
{
    ExprPtr left = Concatenation();
    for (;;) {
        bool found = false;
        for (const Comparator& comparator : kComparators) {
            if (!m_tokens.AtSymbol(comparator.symbol))
                continue;
            const std::size_t position = m_tokens.Take().position;
            if (m_tokens.AtWord("ANY") || m_tokens.AtWord("SOME") || m_tokens.AtWord("ALL"))
                m_tokens.FailAt(m_tokens.Position(), ErrorKind::NotSupported,
                                "Een vergelijking met Any, Some of All wordt niet ondersteund");
            left = Operation(comparator.op, position, std::move(left), Concatenation());
            found = true;
            break;
        }
        if (found)
            continue;
        const bool negated = m_tokens.AtWord("NOT");
        const std::size_t ahead = negated ? 1 : 0;
        if (m_tokens.AtWord("LIKE", ahead) || m_tokens.AtWord("ALIKE", ahead) ||
            m_tokens.AtWord("IN", ahead) || m_tokens.AtWord("BETWEEN", ahead) ||
            (!negated && m_tokens.AtWord("IS"))) {
            if (negated)
                m_tokens.Take();
            left = Predicate(std::move(left), negated);
            continue;
        }
        return left;
    }
}

ExprPtr ExpressionParser::Predicate(ExprPtr left, bool negated)
{
    const Token word = m_tokens.Take();
    if (word.IsWord("IS")) {
        ExprPtr expr = Make(ExprKind::IsNull, word.position);
        expr->negated = m_tokens.TakeWord("NOT");
        m_tokens.ExpectWord("NULL");
        Adopt(*expr, std::move(left));
        return expr;
    }
    if (word.IsWord("BETWEEN")) {
        ExprPtr expr = Make(ExprKind::Between, word.position);
        expr->negated = negated;
        Adopt(*expr, std::move(left));
        Adopt(*expr, Concatenation());
        m_tokens.ExpectWord("AND");
        Adopt(*expr, Concatenation());
        return expr;
    }
    if (word.IsWord("IN")) {
        ExprPtr expr = Make(ExprKind::In, word.position);
        expr->negated = negated;
        Adopt(*expr, std::move(left));
        m_tokens.ExpectSymbol("(");
        if (m_tokens.AtWord("SELECT")) {
            expr->select = parseSelect(m_tokens, *this);
            expr->height = std::max(expr->height, expr->select->height + 1);
        } else {
            do {
                Adopt(*expr, Parse());
            } while (m_tokens.TakeSymbol(","));
        }
        m_tokens.ExpectSymbol(")");
        return expr;
    }
    ExprPtr expr = Make(ExprKind::Like, word.position);
    expr->negated = negated;
    expr->percentWildcards = word.IsWord("ALIKE");
    Adopt(*expr, std::move(left));
    Adopt(*expr, Concatenation());
    return expr;
}

ExprPtr ExpressionParser::Concatenation()
{
    ExprPtr left = Sum();
    while (m_tokens.AtSymbol("&")) {
        const std::size_t position = m_tokens.Take().position;
        left = Operation(Op::Concatenate, position, std::move(left), Sum());
    }
    return left;
}

ExprPtr ExpressionParser::Sum()
{
    ExprPtr left = Modulo();
    while (m_tokens.AtSymbol("+") || m_tokens.AtSymbol("-")) {
        const Token sign = m_tokens.Take();
        left = Operation(sign.text == "+" ? Op::Add : Op::Subtract, sign.position, std::move(left),
                         Modulo());
    }
    return left;
}

ExprPtr ExpressionParser::Modulo()
{
    ExprPtr left = IntegerDivision();
    while (m_tokens.AtWord("MOD")) {
        const std::size_t position = m_tokens.Take().position;
        left = Operation(Op::Modulo, position, std::move(left), IntegerDivision());
    }
    return left;
}

ExprPtr ExpressionParser::IntegerDivision()
{
    ExprPtr left = Product();
    while (m_tokens.AtSymbol("\\")) {
        const std::size_t position = m_tokens.Take().position;
        left = Operation(Op::IntegerDivide, position, std::move(left), Product());
    }
    return left;
}

ExprPtr ExpressionParser::Product()
{
    ExprPtr left = Negation();
    while (m_tokens.AtSymbol("*") || m_tokens.AtSymbol("/")) {
        const Token sign = m_tokens.Take();
        left = Operation(sign.text == "*" ? Op::Multiply : Op::Divide, sign.position,
                         std::move(left), Negation());
    }
    return left;
}

ExprPtr ExpressionParser::Negation()
{
    if (!m_tokens.AtSymbol("-") && !m_tokens.AtSymbol("+"))
        return Power();
    const TokenReader::Level level(m_tokens);
    const Token sign = m_tokens.Take();
    ExprPtr operand = Negation();
    if (sign.text == "+")
        return operand;
    if (operand->kind == ExprKind::Integer || operand->kind == ExprKind::Real) {
        operand->integer = -operand->integer;
        operand->number = -operand->number;
        operand->position = sign.position;
        return operand;
    }
    return Operation(Op::Negate, sign.position, std::move(operand));
}

// Binds more tightly than the sign before it and less than the one behind it:
// -2^2 is -4, 2^-1 is 0.5.
ExprPtr ExpressionParser::Power()
{
    ExprPtr left = Primary();
    while (m_tokens.AtSymbol("^")) {
        const std::size_t position = m_tokens.Take().position;
        ExprPtr right = m_tokens.AtSymbol("-") || m_tokens.AtSymbol("+") ? Negation() : Primary();
        left = Operation(Op::Power, position, std::move(left), std::move(right));
    }
    return left;
}

ExprPtr ExpressionParser::Primary()
{
    const Token& token = m_tokens.Peek();
    const std::size_t position = token.position;
    switch (token.kind) {
    case TokenKind::Integer:
    case TokenKind::Real: {
        ExprPtr expr =
            Make(token.kind == TokenKind::Integer ? ExprKind::Integer : ExprKind::Real, position);
        expr->integer = token.integer;
        expr->number = token.number;
        m_tokens.Take();
        return expr;
    }
    case TokenKind::Text: {
        ExprPtr expr = Make(ExprKind::Text, position);
        expr->name = m_tokens.Take().text;
        return expr;
    }
    case TokenKind::Date: {
        ExprPtr expr = Make(ExprKind::Date, position);
        expr->number = m_tokens.Take().number;
        return expr;
    }
    case TokenKind::Name:
        return FieldName();
    case TokenKind::Word:
        return Word();
    case TokenKind::Symbol:
        if (m_tokens.TakeSymbol("(")) {
            ExprPtr expr;
            if (m_tokens.AtWord("SELECT")) {
                expr = Make(ExprKind::Subquery, position);
                expr->select = parseSelect(m_tokens, *this);
                expr->height = std::max(expr->height, expr->select->height + 1);
            } else {
                expr = Parse();
            }
            m_tokens.ExpectSymbol(")");
            return expr;
        }
        break;
    case TokenKind::End:
        break;
    }
    m_tokens.Unexpected("een uitdrukking");
}

ExprPtr ExpressionParser::Word()
{
    const std::size_t position = m_tokens.Position();
    if (m_tokens.TakeWord("NULL"))
        return Make(ExprKind::Null, position);
    const bool call = m_tokens.AtSymbol("(", 1);
    if (!call && !m_tokens.AtSymbol(".", 1)) {
        const bool yes = m_tokens.AtWord("TRUE") || m_tokens.AtWord("YES");
        if (yes || m_tokens.AtWord("FALSE") || m_tokens.AtWord("NO")) {
            m_tokens.Take();
            ExprPtr expr = Make(ExprKind::Boolean, position);
            expr->integer = yes ? -1 : 0;
            return expr;
        }
    }
    if (m_tokens.AtWord("EXISTS") && call) {
        m_tokens.Take();
        m_tokens.Take();
        ExprPtr expr = Make(ExprKind::Exists, position);
        expr->select = parseSelect(m_tokens, *this);
        expr->height = std::max(expr->height, expr->select->height + 1);
        m_tokens.ExpectSymbol(")");
        return expr;
    }
    if (!m_tokens.AtName())
        m_tokens.Unexpected("een uitdrukking");
    if (call)
        return Call(m_tokens.Take().text, position);
    return FieldName();
}

ExprPtr ExpressionParser::FieldName()
{
    ExprPtr expr = Make(ExprKind::Field, m_tokens.Position());
    expr->name = m_tokens.ExpectName("een veldnaam");
    if (m_tokens.AtSymbol(".") || m_tokens.AtSymbol("!")) {
        m_tokens.Take();
        expr->table = std::move(expr->name);
        const Token& token = m_tokens.Peek();
        // Behind a point no word is reserved.
        if (token.kind != TokenKind::Name && token.kind != TokenKind::Word)
            m_tokens.Unexpected("een veldnaam");
        expr->name = m_tokens.Take().text;
    }
    return expr;
}

ExprPtr ExpressionParser::Call(std::string name, std::size_t position)
{
    m_tokens.ExpectSymbol("(");
    ExprPtr expr;
    for (const AggregateName& aggregate : kAggregates) {
        if (NamesEqual(name, aggregate.name)) {
            expr = Make(ExprKind::Aggregate, position);
            expr->aggregate = aggregate.kind;
        }
    }
    if (!expr)
        expr = Make(ExprKind::Call, position);
    expr->name = std::move(name);
    if (expr->kind == ExprKind::Aggregate && expr->aggregate == AggregateKind::Count &&
        m_tokens.AtSymbol("*")) {
        m_tokens.Take();
        expr->star = true;
    } else if (!m_tokens.AtSymbol(")")) {
        do {
            Adopt(*expr, Parse());
        } while (m_tokens.TakeSymbol(","));
    }
    m_tokens.ExpectSymbol(")");
    return expr;
}

} // namespace jet::sql
