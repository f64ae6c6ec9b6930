#include "jet/sql/FunctionTable.h"
#include "jet/sql/Rewriter.h"
#include "jet/sql/Types.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace jet::sql {

namespace {

// SQLite's own parser has a stack of 100 entries and bears 32,766 parameters;
// beyond these, lists are halved and literals written out.
constexpr std::size_t kFlatTerms = 60;
constexpr std::size_t kMaxParameters = 100;

bool IsPredicate(const Expr& expr)
{
    switch (expr.kind) {
    case ExprKind::Between:
    case ExprKind::In:
    case ExprKind::Like:
    case ExprKind::IsNull:
    case ExprKind::Exists:
        return true;
    case ExprKind::Call:
        return expr.function != nullptr && expr.function->form == FunctionForm::IsNull;
    case ExprKind::Operation:
        switch (expr.op) {
        case Op::Add:
        case Op::Subtract:
        case Op::Multiply:
        case Op::Divide:
        case Op::IntegerDivide:
        case Op::Modulo:
        case Op::Power:
        case Op::Concatenate:
        case Op::Negate:
            return false;
        default:
            return true;
        }
    default:
        return false;
    }
}

} // namespace

bool Rewriter::TakesParameter()
{
    if (m_out.parameters.size() >= kMaxParameters)
        return false;
    m_out.sql += '?' + std::to_string(m_out.parameters.size() + 1);
    return true;
}

void Rewriter::EmitInteger(std::int64_t value)
{
    if (TakesParameter())
        m_out.parameters.emplace_back(value);
    else
        m_out.sql += '(' + std::to_string(value) + ')';
}

void Rewriter::EmitDouble(double value)
{
    if (TakesParameter()) {
        m_out.parameters.emplace_back(value);
        return;
    }
    char text[40];
    const auto result =
        std::to_chars(text, text + sizeof text, value, std::chars_format::scientific);
    m_out.sql += '(' + std::string(text, result.ptr) + ')'; // 1e+00: a REAL to SQLite
}

void Rewriter::EmitLiteral(const std::string& text)
{
    const bool writable = text.find('\0') == text.npos;
    if (!writable && m_out.parameters.size() >= kMaxParameters)
        m_binder.Fail(ErrorKind::Syntax, 0, "Een tekst bevat een onbruikbaar teken");
    if (TakesParameter()) {
        m_out.parameters.emplace_back(text);
        return;
    }
    m_out.sql += '\'';
    for (const char c : text) {
        if (c == '\'')
            m_out.sql += '\'';
        m_out.sql += c;
    }
    m_out.sql += '\'';
}

// Everything written here holds together without parentheses around it.
void Rewriter::EmitValue(const Expr& expr)
{
    CheckLength();
    if (IsPredicate(expr)) { // SQLite's 1 is Jet's -1
        m_out.sql += "(-(";
        EmitPredicate(expr);
        m_out.sql += "))";
        return;
    }
    switch (expr.kind) {
    case ExprKind::Null:
        m_out.sql += "NULL";
        break;
    case ExprKind::Boolean:
        m_out.sql += expr.integer != 0 ? "(-1)" : "0";
        break;
    case ExprKind::Integer:
        if (expr.type == ColumnType::Double)
            EmitDouble(expr.number);
        else
            EmitInteger(expr.integer);
        break;
    case ExprKind::Real:
    case ExprKind::Date:
        EmitDouble(expr.number);
        break;
    case ExprKind::Text:
        EmitLiteral(expr.name);
        break;
    case ExprKind::Field:
        if (expr.meaning != nullptr)
            EmitValue(*expr.meaning);
        else
            m_out.sql += 't' + std::to_string(expr.source) + ".c" + std::to_string(expr.column);
        break;
    case ExprKind::Operation:
        EmitOperation(expr);
        break;
    case ExprKind::Call:
        EmitCall(expr);
        break;
    case ExprKind::Aggregate:
        EmitAggregate(expr);
        break;
    case ExprKind::Subquery:
        m_out.sql += '(';
        SelectText(*expr.select);
        m_out.sql += ')';
        break;
    default:
        break;
    }
}

// Something that SQLite takes for true or false, at the level of a comparison.
void Rewriter::EmitPredicate(const Expr& expr)
{
    CheckLength();
    if (!IsPredicate(expr)) {
        const Expr& meant = expr.kind == ExprKind::Field && expr.meaning ? *expr.meaning : expr;
        if (IsPredicate(meant)) {
            EmitPredicate(meant);
            return;
        }
        EmitNumber(meant);
        m_out.sql += "<>0";
        return;
    }
    switch (expr.kind) {
    case ExprKind::Between:
        if (expr.negated)
            m_out.sql += "NOT ";
        m_out.sql += '(';
        EmitCollated(*expr.operands[0]);
        m_out.sql += " BETWEEN ";
        EmitValue(*expr.operands[1]);
        m_out.sql += " AND ";
        EmitValue(*expr.operands[2]);
        m_out.sql += ')';
        break;
    case ExprKind::In:
        EmitIn(expr);
        break;
    case ExprKind::Like:
        EmitLike(expr);
        break;
    case ExprKind::IsNull:
    case ExprKind::Call:
        EmitValue(*expr.operands[0]);
        m_out.sql += expr.negated ? " IS NOT NULL" : " IS NULL";
        break;
    case ExprKind::Exists:
        m_out.sql += "EXISTS (";
        SelectText(*expr.select);
        m_out.sql += ')';
        break;
    default:
        EmitOperation(expr);
        break;
    }
}

void Rewriter::EmitText(const Expr& expr)
{
    const Family family = FamilyOf(expr.type);
    if (family != Family::Number) {
        EmitValue(expr);
        return;
    }
    m_out.sql += "jet_text(";
    EmitValue(expr);
    m_out.sql += ',' + std::to_string(static_cast<int>(*expr.type)) + ')';
}

void Rewriter::EmitNumber(const Expr& expr)
{
    if (!IsText(expr.type)) {
        EmitValue(expr);
        return;
    }
    m_out.sql += "jet_num(";
    EmitValue(expr);
    m_out.sql += ')';
}

bool Rewriter::YieldsReal(const Expr& expr) const
{
    if (expr.yieldsReal < 0)
        expr.yieldsReal = FindsReal(expr) ? 1 : 0;
    return expr.yieldsReal == 1;
}

bool Rewriter::FindsReal(const Expr& expr) const
{
    switch (expr.kind) {
    case ExprKind::Real:
    case ExprKind::Date:
        return true;
    case ExprKind::Field:
        return expr.meaning != nullptr
                   ? YieldsReal(*expr.meaning)
                   : m_binder.Sources()[static_cast<std::size_t>(expr.source)].table &&
                         FamilyOf(expr.type) == Family::Number && !IsWhole(expr.type);
    case ExprKind::Operation:
        switch (expr.op) {
        case Op::Divide:
        case Op::Power:
            return true;
        case Op::Add:
        case Op::Subtract:
        case Op::Multiply:
        case Op::Negate:
            return std::any_of(expr.operands.begin(), expr.operands.end(),
                               [&](const ExprPtr& operand) { return YieldsReal(*operand); });
        default:
            return false;
        }
    default:
        return false;
    }
}

void Rewriter::EmitReal(const Expr& expr)
{
    if (YieldsReal(expr)) {
        EmitNumber(expr);
        return;
    }
    m_out.sql += "CAST(";
    EmitNumber(expr);
    m_out.sql += " AS REAL)";
}

void Rewriter::EmitAs(const Expr& expr, ExprType wanted)
{
    if (IsText(wanted))
        EmitText(expr);
    else
        EmitValue(expr);
}

void Rewriter::EmitCollated(const Expr& expr)
{
    EmitValue(expr);
    const Family family = FamilyOf(expr.type);
    if (family == Family::Text || family == Family::Guid)
        m_out.sql += " COLLATE JET";
}

void Rewriter::EmitOperation(const Expr& expr)
{
    const bool whole = std::all_of(expr.operands.begin(), expr.operands.end(),
                                   [](const ExprPtr& operand) { return IsWhole(operand->type); });
    switch (expr.op) {
    case Op::Add:
        if (IsText(expr.type))
            EmitBinary(expr, "||", &Rewriter::EmitText);
        else
            EmitBinary(expr, "+", &Rewriter::EmitNumber);
        break;
    case Op::Subtract:
        EmitBinary(expr, "-", &Rewriter::EmitNumber);
        break;
    case Op::Multiply:
        EmitBinary(expr, "*", &Rewriter::EmitNumber);
        break;
    case Op::Divide:
        m_out.sql += '(';
        EmitReal(*expr.operands[0]);
        m_out.sql += '/';
        EmitNumber(*expr.operands[1]);
        m_out.sql += ')';
        break;
    case Op::IntegerDivide:
        if (whole)
            EmitBinary(expr, "/", &Rewriter::EmitNumber);
        else
            EmitFunction("jet_idiv", expr);
        break;
    case Op::Modulo:
        if (whole)
            EmitBinary(expr, "%", &Rewriter::EmitNumber);
        else
            EmitFunction("jet_mod", expr);
        break;
    case Op::Power:
        EmitFunction("jet_pow", expr);
        break;
    case Op::Negate:
        m_out.sql += "(-";
        EmitNumber(*expr.operands[0]);
        m_out.sql += ')';
        break;
    case Op::Concatenate:
        m_out.sql += "jet_join(";
        EmitText(*expr.operands[0]);
        m_out.sql += ',';
        EmitText(*expr.operands[1]);
        m_out.sql += ')';
        break;
    case Op::Equal:
        EmitComparison(expr, "=");
        break;
    case Op::NotEqual:
        EmitComparison(expr, "<>");
        break;
    case Op::Less:
        EmitComparison(expr, "<");
        break;
    case Op::LessOrEqual:
        EmitComparison(expr, "<=");
        break;
    case Op::Greater:
        EmitComparison(expr, ">");
        break;
    case Op::GreaterOrEqual:
        EmitComparison(expr, ">=");
        break;
    default:
        EmitLogic(expr);
        break;
    }
}

void Rewriter::EmitBinary(const Expr& expr, const char* op, Emitter emit)
{
    m_out.sql += '(';
    EmitBare(expr, op, emit);
    m_out.sql += ')';
}

// Sums and products read from the left, so one on the left goes without
// parentheses: long chains would fill the stack of SQLite's parser.
void Rewriter::EmitBare(const Expr& expr, const char* op, Emitter emit)
{
    const Expr& left = *expr.operands[0];
    const auto isSum = [](Op o) { return o == Op::Add || o == Op::Subtract; };
    const bool goesOn =
        left.kind == ExprKind::Operation && IsText(left.type) == IsText(expr.type) &&
        (isSum(left.op) ? isSum(expr.op) : left.op == Op::Multiply && expr.op == Op::Multiply);
    if (!goesOn)
        (this->*emit)(left);
    else if (left.op == Op::Add)
        EmitBare(left, IsText(left.type) ? "||" : "+", emit);
    else
        EmitBare(left, left.op == Op::Subtract ? "-" : "*", emit);
    m_out.sql += op;
    (this->*emit)(*expr.operands[1]);
}

void Rewriter::EmitFunction(const char* name, const Expr& expr)
{
    m_out.sql += name;
    m_out.sql += '(';
    EmitNumber(*expr.operands[0]);
    m_out.sql += ',';
    EmitNumber(*expr.operands[1]);
    m_out.sql += ')';
}

void Rewriter::EmitComparison(const Expr& expr, const char* op)
{
    const Family left = FamilyOf(expr.operands[0]->type), right = FamilyOf(expr.operands[1]->type);
    const auto ordered = [](Family family) {
        return family == Family::Text || family == Family::Guid;
    };
    EmitValue(*expr.operands[0]);
    if (ordered(left) || ordered(right))
        m_out.sql += " COLLATE JET";
    m_out.sql += op;
    EmitValue(*expr.operands[1]);
}

void Rewriter::EmitLogic(const Expr& expr)
{
    switch (expr.op) {
    case Op::And:
    case Op::Or:
        m_out.sql += '(';
        EmitTerms(expr, 0, expr.operands.size());
        m_out.sql += ')';
        break;
    case Op::Not:
        m_out.sql += "NOT (";
        EmitPredicate(*expr.operands[0]);
        m_out.sql += ')';
        break;
    case Op::Imp:
        m_out.sql += "(NOT (";
        EmitPredicate(*expr.operands[0]);
        m_out.sql += ") OR (";
        EmitPredicate(*expr.operands[1]);
        m_out.sql += "))";
        break;
    default: // both sides are 1, 0 or null
        m_out.sql += '(';
        EmitPredicate(*expr.operands[0]);
        m_out.sql += expr.op == Op::Xor ? ")<>(" : ")=(";
        EmitPredicate(*expr.operands[1]);
        m_out.sql += ')';
        break;
    }
}

// SQLite bears trees of 1,000 levels: thousands of terms are halved.
void Rewriter::EmitTerms(const Expr& expr, std::size_t first, std::size_t last)
{
    const char* word = expr.op == Op::And ? " AND " : " OR ";
    if (last - first > kFlatTerms) {
        const std::size_t middle = first + (last - first) / 2;
        m_out.sql += '(';
        EmitTerms(expr, first, middle);
        m_out.sql += ')';
        m_out.sql += word;
        m_out.sql += '(';
        EmitTerms(expr, middle, last);
        m_out.sql += ')';
        return;
    }
    for (std::size_t i = first; i < last; ++i) {
        if (i > first)
            m_out.sql += word;
        EmitPredicate(*expr.operands[i]);
    }
}

} // namespace jet::sql
