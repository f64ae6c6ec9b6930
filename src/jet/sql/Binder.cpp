#include "jet/sql/Binder.h"

#include "jet/base/Text.h"
#include "jet/sql/FunctionTable.h"
#include "jet/sql/StatementError.h"
#include "jet/sql/Types.h"

#include <algorithm>
#include <map>

namespace jet::sql {

namespace {

constexpr std::size_t kMaxFields = 255;
constexpr std::size_t kMaxSources = 60;

} // namespace

int BoundSource::FieldCount() const
{
    return static_cast<int>(table ? table->fields.size() : select->output.size());
}

const std::string& BoundSource::FieldName(int field) const
{
    const auto at = static_cast<std::size_t>(field);
    return table ? table->fields[at].name : select->output[at].name;
}

ExprType BoundSource::FieldType(int field) const
{
    const auto at = static_cast<std::size_t>(field);
    return table ? ExprType(table->fields[at].type) : select->output[at].type;
}

int BoundSource::FindField(std::string_view field) const
{
    for (int i = 0; i < FieldCount(); ++i) {
        if (NamesEqual(FieldName(i), field))
            return i;
    }
    return -1;
}

namespace {

// Names of select items make one expression stand in many places, so that a
// comparison could take for ever: it gets a number of steps and then gives up.
bool SameMeaning(const Expr& first, const Expr& second, int& steps)
{
    const Expr& a = first.meaning ? *first.meaning : first;
    const Expr& b = second.meaning ? *second.meaning : second;
    if (&a == &b)
        return true;
    if (--steps < 0 || a.kind != b.kind || a.operands.size() != b.operands.size() || a.select ||
        b.select)
        return false;
    bool same = true;
    switch (a.kind) {
    case ExprKind::Field:
        return a.source == b.source && a.column == b.column;
    case ExprKind::Text:
        return a.name == b.name;
    case ExprKind::Integer:
    case ExprKind::Boolean:
        return a.integer == b.integer;
    case ExprKind::Real:
    case ExprKind::Date:
        return a.number == b.number;
    case ExprKind::Operation:
        same = a.op == b.op;
        break;
    case ExprKind::Call:
        same = a.function == b.function;
        break;
    case ExprKind::Aggregate:
        same = a.aggregate == b.aggregate && a.star == b.star;
        break;
    default:
        same = a.negated == b.negated;
        break;
    }
    for (std::size_t i = 0; same && i < a.operands.size(); ++i)
        same = SameMeaning(*a.operands[i], *b.operands[i], steps);
    return same;
}

} // namespace

bool SameMeaning(const Expr& a, const Expr& b)
{
    int steps = 10000;
    return SameMeaning(a, b, steps);
}

void Binder::Fail(ErrorKind kind, std::size_t position, const std::string& problem) const
{
    throw StatementError(kind, problem, m_statement, position);
}

void Binder::Bind(Select& select)
{
    BindSelect(select, nullptr);
}

void Binder::Bind(Update& update)
{
    Scope scope;
    BindTables(update.from, scope, nullptr);
    for (Assignment& assignment : update.assignments) {
        BindExpr(*assignment.field, scope, Place::Plain);
        const BoundSource& source = m_sources[static_cast<std::size_t>(assignment.field->source)];
        if (!source.table)
            Fail(ErrorKind::ReadOnly, assignment.field->position,
                 "Het veld '" + assignment.field->name + "' kan niet worden veranderd");
        BindExpr(*assignment.value, scope, Place::Plain);
    }
    BindCondition(update.where.get(), scope, Place::Plain);
}

void Binder::Bind(Delete& statement)
{
    Scope scope;
    BindTables(statement.from, scope, nullptr);
    BindCondition(statement.where.get(), scope, Place::Plain);
    for (const int source : scope.sources) {
        if (statement.table.empty()
                ? scope.sources.size() == 1
                : NamesEqual(m_sources[static_cast<std::size_t>(source)].name, statement.table))
            m_deleteSource = source;
    }
    if (m_deleteSource < 0 && !statement.table.empty())
        Fail(ErrorKind::UnknownTable, statement.position,
             "Onbekende tabel '" + statement.table + "'");
    if (m_deleteSource < 0)
        Fail(ErrorKind::Query, statement.position,
             "Zeg met tabel.* uit welke tabel rijen worden verwijderd");
    if (!m_sources[static_cast<std::size_t>(m_deleteSource)].table)
        Fail(ErrorKind::ReadOnly, statement.position, "Uit een SELECT kan niets worden verwijderd");
}

void Binder::BindValues(std::vector<ExprPtr>& values)
{
    const Scope scope;
    for (ExprPtr& value : values)
        BindExpr(*value, scope, Place::Plain);
}

void Binder::BindCriterion(Expr& criterion, std::shared_ptr<const TableShape> table)
{
    Scope scope;
    BoundSource source;
    source.name = table->name;
    source.table = std::move(table);
    scope.sources.push_back(static_cast<int>(m_sources.size()));
    m_sources.push_back(std::move(source));
    BindCondition(&criterion, scope, Place::Plain);
}

void Binder::BindSelect(Select& select, const Scope* outer)
{
    if (select.unions.empty()) {
        BindBranch(select, outer, &select.orderBy);
        return;
    }
    BindBranch(select, outer, nullptr);
    for (Select::Branch& branch : select.unions) {
        BindBranch(*branch.select, outer, nullptr);
        if (branch.select->output.size() != select.output.size())
            Fail(ErrorKind::Query, branch.select->position,
                 "De delen van een UNION hebben niet evenveel velden");
        for (std::size_t i = 0; i < select.output.size(); ++i)
            select.output[i].type =
                CommonType(select.output[i].type, branch.select->output[i].type);
    }
    BindUnionOrder(select);
}

void Binder::BindUnionOrder(Select& select)
{
    for (OrderTerm& term : select.orderBy) {
        const Expr& expr = *term.expr;
        for (std::size_t i = 0; i < select.output.size() && term.item < 0; ++i) {
            if (expr.kind == ExprKind::Field && NamesEqual(select.output[i].name, expr.name))
                term.item = static_cast<int>(i);
        }
        if (expr.kind == ExprKind::Integer && expr.integer >= 1 &&
            expr.integer <= static_cast<std::int64_t>(select.output.size()))
            term.item = static_cast<int>(expr.integer) - 1;
        if (term.item < 0)
            Fail(ErrorKind::UnknownField, expr.position,
                 "Een UNION wordt gesorteerd op een van zijn velden");
    }
}

void Binder::BindBranch(Select& select, const Scope* outer, std::vector<OrderTerm>* order)
{
    Scope scope;
    scope.outer = outer;
    BindTables(select.from, scope, outer);
    BindCondition(select.where.get(), scope, Place::Plain);
    scope.select = &select;
    BindItems(select, scope);
    for (ExprPtr& expr : select.groupBy) {
        BindExpr(*expr, scope, Place::Plain);
        if (expr->hasAggregate)
            Fail(ErrorKind::Query, expr->position, "GROUP BY op een totaal kan niet");
    }
    BindCondition(select.having.get(), scope, Place::Aggregated);
    MakeOutput(select, scope);
    if (order != nullptr)
        BindOrder(select, *order, scope);

    bool totals = select.having && select.having->hasAggregate;
    for (const SelectItem& item : select.items)
        totals = totals || (item.expr && item.expr->hasAggregate);
    for (std::size_t i = 0; order != nullptr && i < order->size(); ++i)
        totals = totals || ((*order)[i].item < 0 && (*order)[i].expr->hasAggregate);
    if (select.having && select.groupBy.empty() && !totals)
        Fail(ErrorKind::Query, select.having->position,
             "HAVING kan niet zonder GROUP BY of een totaal");
    select.grouped = totals || !select.groupBy.empty();
    if (!select.grouped)
        return;
    for (const SelectItem& item : select.items) {
        if (!item.expr)
            Fail(ErrorKind::Query, item.position, "Een * kan niet samen met totalen of GROUP BY");
        CheckGrouped(select, *item.expr, scope);
    }
    if (select.having)
        CheckGrouped(select, *select.having, scope);
    if (order != nullptr) {
        for (const OrderTerm& term : *order) {
            if (term.item < 0)
                CheckGrouped(select, *term.expr, scope);
        }
    }
}

void Binder::CheckGrouped(const Select& select, const Expr& expr, const Scope& scope) const
{
    for (const ExprPtr& group : select.groupBy) {
        if (SameMeaning(*group, expr))
            return;
    }
    if (expr.kind == ExprKind::Aggregate)
        return;
    if (expr.meaning) // an item of the select list, which is checked for itself
        return;
    const bool own =
        std::find(scope.sources.begin(), scope.sources.end(), expr.source) != scope.sources.end();
    if (expr.kind == ExprKind::Field && own)
        Fail(ErrorKind::Query, expr.position,
             "Het veld '" + expr.name + "' staat niet in GROUP BY en niet in een totaal");
    for (const ExprPtr& operand : expr.operands)
        CheckGrouped(select, *operand, scope);
}

void Binder::BindTables(std::vector<TableRef>& from, Scope& scope, const Scope* outer)
{
    for (TableRef& table : from)
        BindTable(table, scope, outer);
    for (std::size_t i = 0; i < scope.sources.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            const std::string& name = m_sources[static_cast<std::size_t>(scope.sources[i])].name;
            if (!name.empty() &&
                NamesEqual(name, m_sources[static_cast<std::size_t>(scope.sources[k])].name))
                Fail(ErrorKind::Query, from.front().position,
                     "De tabelnaam '" + name + "' komt meer dan eens voor");
        }
    }
}

void Binder::BindTable(TableRef& table, Scope& scope, const Scope* outer)
{
    if (table.IsJoin()) {
        Scope joined;
        joined.outer = outer;
        BindTable(*table.left, joined, outer);
        BindTable(*table.right, joined, outer);
        BindCondition(table.on.get(), joined, Place::Plain);
        scope.sources.insert(scope.sources.end(), joined.sources.begin(), joined.sources.end());
        return;
    }
    if (m_sources.size() >= kMaxSources)
        Fail(ErrorKind::Query, table.position, "De opdracht noemt te veel tabellen");
    BoundSource source;
    source.name = table.alias.empty() ? table.name : table.alias;
    if (table.select) {
        BindSelect(*table.select, outer);
        if (table.select->into)
            Fail(ErrorKind::Syntax, table.select->into->position,
                 "INTO hoort in de buitenste SELECT");
        source.select = table.select.get();
    } else {
        if (!table.file.empty())
            Fail(ErrorKind::NotSupported, table.position,
                 "Lezen uit een ander bestand wordt niet ondersteund");
        source.table = m_schema.FindTable(table.name);
        if (!source.table)
            Fail(ErrorKind::UnknownTable, table.position, "Onbekende tabel '" + table.name + "'");
    }
    table.source = static_cast<int>(m_sources.size());
    scope.sources.push_back(table.source);
    m_sources.push_back(std::move(source));
}

void Binder::BindItems(Select& select, const Scope& scope)
{
    for (SelectItem& item : select.items) {
        if (item.expr)
            BindItem(item, scope);
    }
}

void Binder::BindItem(SelectItem& item, const Scope& scope)
{
    if (item.bound)
        return;
    if (item.binding)
        Fail(ErrorKind::Query, item.position,
             "De naam '" + item.alias + "' verwijst naar zichzelf");
    item.binding = true;
    BindExpr(*item.expr, scope, Place::Aggregated);
    item.bound = true;
}

void Binder::BindOrder(Select& select, std::vector<OrderTerm>& order, const Scope& scope)
{
    for (OrderTerm& term : order) {
        Expr& expr = *term.expr;
        if (expr.kind == ExprKind::Integer) {
            if (expr.integer < 1 || expr.integer > static_cast<std::int64_t>(select.output.size()))
                Fail(ErrorKind::Query, expr.position, "Er is geen veld met dit volgnummer");
            term.item = static_cast<int>(expr.integer) - 1;
            continue;
        }
        BindExpr(expr, scope, Place::Aggregated);
        if (!select.distinct)
            continue;
        for (std::size_t i = 0; i < select.output.size() && term.item < 0; ++i) {
            const OutputColumn& column = select.output[i];
            if (column.expr ? SameMeaning(*column.expr, expr)
                            : expr.kind == ExprKind::Field && column.source == expr.source &&
                                  column.column == expr.column)
                term.item = static_cast<int>(i);
        }
        if (term.item < 0)
            Fail(ErrorKind::Query, expr.position,
                 "Na DISTINCT wordt gesorteerd op wat in de SELECT staat");
    }
}

void Binder::AddStar(Select& select, const SelectItem& item, const Scope& scope)
{
    bool found = false;
    for (const int at : scope.sources) {
        const BoundSource& source = m_sources[static_cast<std::size_t>(at)];
        if (!item.starTable.empty() && !NamesEqual(item.starTable, source.name))
            continue;
        found = true;
        for (int field = 0; field < source.FieldCount(); ++field)
            select.output.push_back(
                {source.FieldName(field), source.FieldType(field), nullptr, at, field});
    }
    if (!found && !item.starTable.empty())
        Fail(ErrorKind::UnknownTable, item.position, "Onbekende tabel '" + item.starTable + "'");
    if (!found)
        Fail(ErrorKind::Query, item.position, "Een * kan niet zonder FROM");
}

void Binder::MakeOutput(Select& select, const Scope& scope)
{
    select.output.clear();
    for (const SelectItem& item : select.items) {
        if (!item.expr) {
            AddStar(select, item, scope);
            continue;
        }
        OutputColumn column;
        column.type = item.expr->type;
        column.expr = item.expr.get();
        const Expr& expr = item.expr->meaning ? *item.expr->meaning : *item.expr;
        if (expr.kind == ExprKind::Field) {
            column.source = expr.source;
            column.column = expr.column;
        }
        if (!item.alias.empty())
            column.name = item.alias;
        else if (item.expr->kind == ExprKind::Field)
            column.name =
                item.expr->meaning
                    ? item.expr->name
                    : m_sources[static_cast<std::size_t>(expr.source)].FieldName(expr.column);
        else
            column.name = "Expr" + std::to_string(1000 + select.output.size());
        select.output.push_back(std::move(column));
    }
    if (select.output.size() > kMaxFields)
        Fail(ErrorKind::Query, select.position, "Een SELECT geeft hoogstens 255 velden");
    NameOutput(select);
}

// Fields of the same name get their table's name in front.
void Binder::NameOutput(Select& select)
{
    std::map<std::string, int> count;
    for (const OutputColumn& column : select.output)
        ++count[FoldName(column.name)];
    if (count.size() == select.output.size())
        return;
    for (OutputColumn& column : select.output) {
        if (count[FoldName(column.name)] < 2 || column.source < 0)
            continue;
        const BoundSource& source = m_sources[static_cast<std::size_t>(column.source)];
        const bool named = column.expr == nullptr || column.expr->kind == ExprKind::Field;
        if (named && !source.name.empty() &&
            NamesEqual(source.FieldName(column.column), column.name))
            column.name = source.name + "." + column.name;
    }
}

} // namespace jet::sql
