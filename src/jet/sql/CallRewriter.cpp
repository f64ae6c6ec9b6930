#include "jet/catalog/Clock.h"
#include "jet/sql/FunctionTable.h"
#include "jet/sql/Rewriter.h"
#include "jet/sql/Types.h"

#include <algorithm>
#include <cmath>

// Lists, patterns, functions and totals.
namespace jet::sql {

namespace {

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
