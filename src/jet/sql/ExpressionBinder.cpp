#include "jet/base/Numbers.h"
#include "jet/base/Text.h"
#include "jet/sql/Binder.h"
#include "jet/sql/FunctionTable.h"
#include "jet/sql/Types.h"

#include <algorithm>
#include <limits>

namespace jet::sql {

namespace {

ExprType ResultType(char code)
{
    switch (code) {
    case 'T':
        return ColumnType::Text;
    case 'L':
        return ColumnType::Long;
    case 'I':
        return ColumnType::Integer;
    case 'Y':
        return ColumnType::Byte;
    case 'S':
        return ColumnType::Single;
    case 'C':
        return ColumnType::Currency;
    case 'N':
        return ColumnType::Decimal;
    case 'B':
        return ColumnType::Boolean;
    case 'M':
        return ColumnType::DateTime;
    default:
        return ColumnType::Double;
    }
}

// The operands that a function's result may come from.
bool IsBranch(FunctionForm form, std::size_t operand)
{
    switch (form) {
    case FunctionForm::IIf:
    case FunctionForm::Choose:
        return operand > 0;
    case FunctionForm::Switch:
        return operand % 2 == 1;
    default:
        return true;
    }
}

} // namespace

void Binder::BindCondition(Expr* condition, const Scope& scope, Place place)
{
    if (condition == nullptr)
        return;
    BindExpr(*condition, scope, place);
    RequireCondition(*condition);
}

void Binder::RequireCondition(const Expr& expr) const
{
    const Family family = FamilyOf(expr.type);
    if (family != Family::Number && family != Family::Unknown)
        Fail(ErrorKind::TypeMismatch, expr.position,
             std::string("Hier hoort een voorwaarde, maar er staat ") + TypeWord(expr.type));
}

void Binder::RequireNumber(const Expr& expr) const
{
    const Family family = FamilyOf(expr.type);
    const bool numberInText =
        family == Family::Text && (expr.kind != ExprKind::Text || DoubleFromText(expr.name));
    if (family != Family::Number && family != Family::Unknown && !numberInText)
        Fail(ErrorKind::TypeMismatch, expr.position,
             std::string("Hier hoort een getal, maar er staat ") + TypeWord(expr.type));
}

void Binder::RequireComparable(const Expr& a, const Expr& b, std::size_t position) const
{
    const Family first = FamilyOf(a.type), second = FamilyOf(b.type);
    if (first == Family::Unknown || second == Family::Unknown || first == second)
        return;
    const bool guidAsText = (first == Family::Guid && second == Family::Text) ||
                            (first == Family::Text && second == Family::Guid);
    if (!guidAsText)
        Fail(ErrorKind::TypeMismatch, position,
             std::string("Typen komen niet overeen: ") + TypeWord(a.type) +
                 " wordt vergeleken met " + TypeWord(b.type));
}

void Binder::BindExpr(Expr& expr, const Scope& scope, Place place)
{
    BindNode(expr, scope, place);
    expr.hasAggregate = expr.kind == ExprKind::Aggregate ||
                        (expr.meaning != nullptr && expr.meaning->hasAggregate) ||
                        std::any_of(expr.operands.begin(), expr.operands.end(),
                                    [](const ExprPtr& operand) { return operand->hasAggregate; });
}

void Binder::BindNode(Expr& expr, const Scope& scope, Place place)
{
    switch (expr.kind) {
    case ExprKind::Field:
        BindField(expr, scope, place);
        return;
    case ExprKind::Call:
        BindCall(expr, scope, place);
        return;
    case ExprKind::Aggregate:
        BindAggregate(expr, scope, place);
        return;
    default:
        break;
    }
    for (ExprPtr& operand : expr.operands)
        BindExpr(*operand, scope, place);

    switch (expr.kind) {
    case ExprKind::Null:
        expr.type = std::nullopt;
        break;
    case ExprKind::Boolean:
        expr.type = ColumnType::Boolean;
        break;
    case ExprKind::Integer:
        expr.type = expr.integer >= std::numeric_limits<std::int32_t>::min() &&
                            expr.integer <= std::numeric_limits<std::int32_t>::max()
                        ? ColumnType::Long
                        : ColumnType::Double;
        break;
    case ExprKind::Real:
        expr.type = ColumnType::Double;
        break;
    case ExprKind::Text:
        expr.type = ColumnType::Text;
        break;
    case ExprKind::Date:
        expr.type = ColumnType::DateTime;
        break;
    case ExprKind::Operation:
        BindOperation(expr);
        break;
    case ExprKind::Between:
        RequireComparable(*expr.operands[0], *expr.operands[1], expr.operands[1]->position);
        RequireComparable(*expr.operands[0], *expr.operands[2], expr.operands[2]->position);
        expr.type = ColumnType::Boolean;
        break;
    case ExprKind::In:
        BindIn(expr, scope);
        expr.type = ColumnType::Boolean;
        break;
    case ExprKind::Like:
        for (const ExprPtr& operand : expr.operands) {
            if (FamilyOf(operand->type) == Family::Binary)
                Fail(ErrorKind::TypeMismatch, operand->position, "Like vergelijkt teksten");
        }
        expr.type = ColumnType::Boolean;
        break;
    case ExprKind::IsNull:
        expr.type = ColumnType::Boolean;
        break;
    case ExprKind::Exists:
        BindSelect(*expr.select, &scope);
        expr.type = ColumnType::Boolean;
        break;
    case ExprKind::Subquery:
        BindSelect(*expr.select, &scope);
        if (expr.select->output.size() != 1)
            Fail(ErrorKind::Query, expr.position, "Een SELECT als waarde geeft precies een veld");
        expr.type = expr.select->output.front().type;
        break;
    default:
        break;
    }
    if (expr.select && expr.select->into)
        Fail(ErrorKind::Syntax, expr.select->into->position, "INTO hoort in de buitenste SELECT");
}

void Binder::BindField(Expr& expr, const Scope& scope, Place place)
{
    if (FindInSources(expr, scope))
        return;
    if (expr.table.empty() && FindInItems(expr, scope)) {
        if (place != Place::Aggregated && expr.meaning->hasAggregate)
            Fail(ErrorKind::Query, expr.position,
                 "Het totaal '" + expr.name + "' kan hier niet worden gebruikt");
        return;
    }
    for (const Scope* outer = scope.outer; outer != nullptr; outer = outer->outer) {
        if (FindInSources(expr, *outer))
            return;
    }
    // Now, Date and Time are understood without parentheses too.
    const FunctionInfo* function = expr.table.empty() ? FindFunction(expr.name) : nullptr;
    if (function != nullptr && function->form == FunctionForm::Moment) {
        expr.kind = ExprKind::Call;
        expr.function = function;
        expr.type = ColumnType::DateTime;
        return;
    }
    const std::string name = expr.table.empty() ? expr.name : expr.table + "." + expr.name;
    Fail(ErrorKind::UnknownField, expr.position, "Onbekend veld '" + name + "'");
}

bool Binder::FindInSources(Expr& expr, const Scope& scope) const
{
    int found = 0;
    for (const int at : scope.sources) {
        const BoundSource& source = m_sources[static_cast<std::size_t>(at)];
        if (!expr.table.empty() && !NamesEqual(expr.table, source.name))
            continue;
        const int field = source.FindField(expr.name);
        if (field < 0)
            continue;
        if (++found > 1)
            Fail(ErrorKind::AmbiguousField, expr.position,
                 "Het veld '" + expr.name + "' komt in meer dan een tabel voor");
        expr.source = at;
        expr.column = field;
        expr.type = source.FieldType(field);
    }
    return found == 1;
}

bool Binder::FindInItems(Expr& expr, const Scope& scope)
{
    if (scope.select == nullptr)
        return false;
    for (SelectItem& item : scope.select->items) {
        if (item.alias.empty() || !NamesEqual(item.alias, expr.name))
            continue;
        BindItem(item, scope);
        expr.meaning = item.expr->meaning ? item.expr->meaning : item.expr.get();
        expr.type = item.expr->type;
        return true;
    }
    return false;
}

void Binder::BindOperation(Expr& expr)
{
    const Expr& left = *expr.operands.front();
    const Expr& right = *expr.operands.back();
    switch (expr.op) {
    case Op::Add:
    case Op::Subtract:
    case Op::Multiply:
        expr.type = TypeOfSum(expr.op, left.type, right.type);
        if (!IsText(expr.type)) {
            RequireNumber(left);
            RequireNumber(right);
        }
        break;
    case Op::Divide:
    case Op::Power:
        RequireNumber(left);
        RequireNumber(right);
        expr.type = ColumnType::Double;
        break;
    case Op::IntegerDivide:
    case Op::Modulo:
        RequireNumber(left);
        RequireNumber(right);
        expr.type = ColumnType::Long;
        break;
    case Op::Negate:
        RequireNumber(left);
        expr.type = TypeOfSum(Op::Subtract, ColumnType::Byte, left.type);
        if (left.type == ColumnType::DateTime)
            expr.type = ColumnType::DateTime;
        break;
    case Op::Concatenate:
        for (const ExprPtr& operand : expr.operands) {
            if (FamilyOf(operand->type) == Family::Binary)
                Fail(ErrorKind::TypeMismatch, operand->position, "Hier hoort een tekst");
        }
        expr.type = ColumnType::Text;
        break;
    case Op::Equal:
    case Op::NotEqual:
    case Op::Less:
    case Op::LessOrEqual:
    case Op::Greater:
    case Op::GreaterOrEqual:
        RequireComparable(left, right, expr.position);
        expr.type = ColumnType::Boolean;
        break;
    default:
        for (const ExprPtr& operand : expr.operands)
            RequireCondition(*operand);
        expr.type = ColumnType::Boolean;
        break;
    }
}

void Binder::BindIn(Expr& expr, const Scope& scope)
{
    const Expr& value = *expr.operands.front();
    if (expr.select) {
        BindSelect(*expr.select, &scope);
        if (expr.select->output.size() != 1)
            Fail(ErrorKind::Query, expr.select->position,
                 "De SELECT achter IN geeft precies een veld");
        Expr item;
        item.type = expr.select->output.front().type;
        RequireComparable(value, item, expr.select->position);
        return;
    }
    for (std::size_t i = 1; i < expr.operands.size(); ++i)
        RequireComparable(value, *expr.operands[i], expr.operands[i]->position);
}

void Binder::BindCall(Expr& expr, const Scope& scope, Place place)
{
    const FunctionInfo* function = FindFunction(expr.name);
    if (function == nullptr)
        Fail(ErrorKind::UnknownFunction, expr.position, "Onbekende functie '" + expr.name + "'");
    const int count = static_cast<int>(expr.operands.size());
    if (count < function->minArguments || count > function->maxArguments ||
        (function->form == FunctionForm::Switch && count % 2 != 0))
        Fail(ErrorKind::Syntax, expr.position,
             "De functie '" + expr.name + "' heeft een verkeerd aantal argumenten");
    expr.function = function;
    ExprType branches;
    for (std::size_t i = 0; i < expr.operands.size(); ++i) {
        Expr& operand = *expr.operands[i];
        BindExpr(operand, scope, place);
        const char kind = function->arguments[std::min(i, function->arguments.size() - 1)];
        if (kind == 'N')
            RequireNumber(operand);
        if (FamilyOf(operand.type) == Family::Binary && function->form != FunctionForm::IsNull &&
            function->form != FunctionForm::IIf && function->form != FunctionForm::Nz)
            Fail(ErrorKind::TypeMismatch, operand.position,
                 "Binaire gegevens passen niet in de functie '" + expr.name + "'");
        if (IsBranch(function->form, i))
            branches = CommonType(branches, operand.type);
        else if (function->form != FunctionForm::Choose)
            RequireCondition(operand);
    }
    if (function->result == '*')
        expr.type = branches;
    else if (function->result == '1')
        expr.type = IsText(expr.operands[0]->type) && function->form == FunctionForm::Call
                        ? ExprType(ColumnType::Double)
                        : expr.operands[0]->type;
    else
        expr.type = ResultType(function->result);
    // -1 made positive is no truth value any more.
    if (function->result == '1' && expr.type == ColumnType::Boolean &&
        function->form == FunctionForm::Call)
        expr.type = ColumnType::Integer;
}

void Binder::BindAggregate(Expr& expr, const Scope& scope, Place place)
{
    if (place == Place::InAggregate)
        Fail(ErrorKind::Query, expr.position, "Een totaal in een totaal kan niet");
    if (place == Place::Plain)
        Fail(ErrorKind::Query, expr.position, "Het totaal '" + expr.name + "' kan hier niet staan");
    if (!expr.star && expr.operands.size() != 1)
        Fail(ErrorKind::Syntax, expr.position, "Het totaal '" + expr.name + "' heeft een argument");
    if (expr.star) {
        expr.type = ColumnType::Long;
        return;
    }
    Expr& operand = *expr.operands.front();
    BindExpr(operand, scope, Place::InAggregate);
    switch (expr.aggregate) {
    case AggregateKind::Count:
    case AggregateKind::First:
    case AggregateKind::Last:
        break;
    case AggregateKind::Min:
    case AggregateKind::Max:
        if (FamilyOf(operand.type) == Family::Binary)
            Fail(ErrorKind::TypeMismatch, operand.position,
                 "Binaire gegevens hebben geen volgorde");
        break;
    default:
        if (IsText(operand.type))
            Fail(ErrorKind::TypeMismatch, operand.position,
                 "Hier hoort een getal, maar er staat een tekst");
        RequireNumber(operand);
    }
    expr.type = TypeOfAggregate(expr.aggregate, operand.type);
}

} // namespace jet::sql
