#include "jet/catalog/Clock.h"
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

double Moment(std::string_view function)
{
    const double days = LocalNow().days;
    switch (function.front()) {
    case 'D':
        return std::floor(days);
    case 'T':
        return days - std::floor(days);
    default:
        return days;
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

void Rewriter::EmitIn(const Expr& expr)
{
    const Expr& value = *expr.operands[0];
    const bool text = IsText(value.type) || FamilyOf(value.type) == Family::Guid;
    EmitValue(value);
    if (text)
        m_out.sql += " COLLATE JET";
    if (expr.select) {
        m_out.sql += expr.negated ? " NOT IN (" : " IN (";
        SelectText(*expr.select);
        m_out.sql += ')';
        return;
    }
    if (expr.operands.size() == 2) { // a list of one is a plain comparison to a planner
        m_out.sql += expr.negated ? "<>" : "=";
        EmitValue(*expr.operands[1]);
        return;
    }
    m_out.sql += expr.negated ? " NOT IN (" : " IN (";
    for (std::size_t i = 1; i < expr.operands.size(); ++i) {
        if (i > 1)
            m_out.sql += ',';
        EmitValue(*expr.operands[i]);
    }
    m_out.sql += ')';
}

void Rewriter::EmitLike(const Expr& expr)
{
    if (expr.negated)
        m_out.sql += "NOT ";
    m_out.sql += expr.percentWildcards ? "jet_alike(" : "jet_like(";
    EmitText(*expr.operands[1]);
    m_out.sql += ',';
    EmitText(*expr.operands[0]);
    m_out.sql += ')';
}

void Rewriter::EmitCases(const Expr& expr)
{
    const std::vector<ExprPtr>& operands = expr.operands;
    const FunctionForm form = expr.function->form;
    m_out.sql += "(CASE";
    if (form == FunctionForm::Choose) {
        m_out.sql += " jet_fix(";
        EmitNumber(*operands[0]);
        m_out.sql += ')';
        for (std::size_t i = 1; i < operands.size(); ++i) {
            m_out.sql += " WHEN " + std::to_string(i) + " THEN ";
            EmitAs(*operands[i], expr.type);
        }
    } else {
        for (std::size_t i = 0; i + 1 < operands.size(); i += 2) {
            m_out.sql += " WHEN ";
            EmitPredicate(*operands[i]);
            m_out.sql += " THEN ";
            EmitAs(*operands[i + 1], expr.type);
        }
        if (form == FunctionForm::IIf) {
            m_out.sql += " ELSE ";
            EmitAs(*operands[2], expr.type);
        }
    }
    m_out.sql += " END)";
}

void Rewriter::EmitCall(const Expr& expr)
{
    const FunctionInfo& function = *expr.function;
    switch (function.form) {
    case FunctionForm::IIf:
    case FunctionForm::Switch:
    case FunctionForm::Choose:
        EmitCases(expr);
        break;
    case FunctionForm::Nz:
        m_out.sql += "coalesce(";
        EmitAs(*expr.operands[0], expr.type);
        m_out.sql += ',';
        if (expr.operands.size() > 1)
            EmitAs(*expr.operands[1], expr.type);
        else
            m_out.sql += IsText(expr.type) ? "''" : "0";
        m_out.sql += ')';
        break;
    case FunctionForm::Moment:
        EmitDouble(Moment(function.name));
        break;
    case FunctionForm::ToText:
        EmitText(*expr.operands[0]);
        break;
    case FunctionForm::ToDouble:
        EmitReal(*expr.operands[0]);
        break;
    default:
        m_out.sql += function.sqlName;
        m_out.sql += '(';
        EmitArguments(expr);
        m_out.sql += ')';
        break;
    }
}

void Rewriter::EmitArguments(const Expr& expr)
{
    const FunctionInfo& function = *expr.function;
    std::string_view kinds = function.arguments;
    if (function.name == "InStr") // the start comes first, and may be left out
        kinds = expr.operands.size() == 2 ? "TT" : "NTTN";
    for (std::size_t i = 0; i < expr.operands.size(); ++i) {
        const Expr& operand = *expr.operands[i];
        const char kind = kinds[std::min(i, kinds.size() - 1)];
        if (i > 0)
            m_out.sql += ',';
        if (kind == 'N')
            EmitNumber(operand);
        else if (kind == 'T' || (function.name == "IsDate" && operand.type == ColumnType::DateTime))
            EmitText(operand);
        else
            EmitValue(operand);
    }
}

void Rewriter::EmitAggregate(const Expr& expr)
{
    static constexpr const char* kNames[] = {"count",      "sum",       "avg",      "min",
                                             "max",        "jet_first", "jet_last", "jet_stdev",
                                             "jet_stdevp", "jet_var",   "jet_varp"};
    m_out.sql += kNames[static_cast<int>(expr.aggregate)];
    m_out.sql += '(';
    if (expr.star)
        m_out.sql += '*';
    else
        EmitCollated(*expr.operands[0]);
    m_out.sql += ')';
}

} // namespace jet::sql
