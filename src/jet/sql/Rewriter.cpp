#include "jet/sql/Rewriter.h"

#include "jet/sql/Types.h"

#include <algorithm>

namespace jet::sql {

namespace {

// An alias may stand for an expression that names aliases again: what is
// written can double with each. A statement of a megabyte still fits.
constexpr std::size_t kMaxLength = 16u << 20;

bool IsPlain(const Select& select)
{
    return !select.distinct && !select.grouped && select.unions.empty() && !select.top;
}

} // namespace

void Rewriter::CheckLength() const
{
    if (m_out.sql.size() > kMaxLength)
        m_binder.Fail(ErrorKind::Query, 0, "De opdracht is te lang");
}

Rewritten Rewriter::Rewrite(const Select& select, const std::vector<int>& rowIdsOf)
{
    m_rowIdsOf = rowIdsOf;
    m_out.rowIds = static_cast<int>(rowIdsOf.size());
    const bool plain = IsPlain(select);
    m_outermost = &select;
    m_exact = plain;
    for (std::size_t i = 0; i < select.output.size(); ++i)
        m_out.columns.push_back(ColumnOf(select, i, plain));
    SelectText(select);
    CheckLength();
    return std::move(m_out);
}

Rewritten Rewriter::RewriteRows(const std::vector<TableRef>& from, const Expr* where,
                                const std::vector<const Expr*>& values,
                                const std::vector<int>& rowIdsOf)
{
    m_rowIdsOf = rowIdsOf;
    m_out.rowIds = static_cast<int>(rowIdsOf.size());
    m_out.sql = "SELECT ";
    for (const Expr* value : values) {
        ResultColumn column;
        column.type = value->type;
        m_out.columns.push_back(column);
        EmitValue(*value);
        m_out.sql += ',';
    }
    RowIds();
    m_out.sql.pop_back();
    FromText(from);
    WhereText(where);
    CheckLength();
    return std::move(m_out);
}

Rewritten Rewriter::RewriteValues(const std::vector<ExprPtr>& values)
{
    m_out.sql = "SELECT ";
    for (const ExprPtr& value : values) {
        ResultColumn column;
        column.type = value->type;
        m_out.columns.push_back(column);
        EmitValue(*value);
        m_out.sql += ',';
    }
    m_out.sql.pop_back();
    CheckLength();
    return std::move(m_out);
}

Rewritten Rewriter::RewriteCriterion(const Expr& criterion, const std::string& module)
{
    m_out.sql = "SELECT t0.rowid FROM " + module + " AS t0 WHERE ";
    EmitPredicate(criterion);
    m_out.rowIds = 1;
    return std::move(m_out);
}

ResultColumn Rewriter::ColumnOf(const Select& select, std::size_t at, bool plain) const
{
    const OutputColumn& output = select.output[at];
    ResultColumn column;
    column.name = output.name;
    column.type = output.type;
    if (output.source < 0)
        return column;
    const BoundSource& source = m_binder.Sources()[static_cast<std::size_t>(output.source)];
    column.sourceName = source.name;
    if (!source.table)
        return column;
    const FieldShape& field = source.table->fields[static_cast<std::size_t>(output.column)];
    column.size = field.size;
    column.precision = field.precision;
    column.scale = field.scale;
    column.autoNumber = field.autoNumber;
    column.sourceTable = source.table->name;
    column.source = output.source;
    column.sourceColumn = output.column;
    column.exact =
        plain && (field.type == ColumnType::Currency || field.type == ColumnType::Decimal);
    return column;
}

void Rewriter::RowIds()
{
    for (std::size_t i = 0; i < m_rowIdsOf.size(); ++i)
        m_out.sql += 't' + std::to_string(m_rowIdsOf[i]) + ".r AS r" + std::to_string(i) + ',';
}

void Rewriter::SelectText(const Select& select)
{
    CheckLength();
    if (select.top) {
        TopText(select);
        return;
    }
    CompoundText(select);
    if (!select.orderBy.empty())
        OrderText(select, select.distinct || !select.unions.empty());
}

void Rewriter::CompoundText(const Select& select)
{
    BranchText(select, select.output, select.distinct || !select.unions.empty());
    for (const Select::Branch& branch : select.unions) {
        m_out.sql += branch.all ? " UNION ALL " : " UNION ";
        BranchText(*branch.select, select.output, true);
    }
}

void Rewriter::BranchText(const Select& select, const std::vector<OutputColumn>& wanted,
                          bool collated, const std::function<void()>& extra)
{
    m_out.sql += select.distinct ? "SELECT DISTINCT " : "SELECT ";
    for (std::size_t i = 0; i < select.output.size(); ++i) {
        OutputText(select, i, wanted[i].type);
        if (collated && IsText(wanted[i].type))
            m_out.sql += " COLLATE JET";
        m_out.sql += " AS c" + std::to_string(i) + ',';
    }
    if (&select == m_outermost)
        RowIds();
    if (extra)
        extra();
    else
        m_out.sql.pop_back();
    FromText(select.from);
    WhereText(select.where.get());
    const char* separator = " GROUP BY ";
    for (const ExprPtr& expr : select.groupBy) {
        m_out.sql += separator;
        EmitCollated(*expr);
        separator = ",";
    }
    if (select.having) {
        m_out.sql += " HAVING ";
        EmitPredicate(*select.having);
    }
}

// TOP n gives every row that ties with the n-th: those of rank n at most.
void Rewriter::TopText(const Select& select)
{
    const bool compound = select.distinct || !select.unions.empty();
    const std::string number = std::to_string(*select.top);
    const bool ranked = !select.orderBy.empty() || select.topPercent;
    if (!ranked && !compound) {
        BranchText(select, select.output, false, [&] { m_out.sql += "0"; });
        m_out.sql += " LIMIT " + number;
        return;
    }
    m_out.sql += "SELECT ";
    for (std::size_t i = 0; i < select.output.size(); ++i)
        m_out.sql += (i > 0 ? ",c" : "c") + std::to_string(i);
    for (std::size_t i = 0; &select == m_outermost && i < m_rowIdsOf.size(); ++i)
        m_out.sql += ",r" + std::to_string(i);
    m_out.sql += " FROM (";
    if (compound) {
        m_out.sql += "SELECT *,";
        RankText(select, true);
        m_out.sql += " FROM (";
        CompoundText(select);
        m_out.sql += ')';
    } else {
        BranchText(select, select.output, false, [&] { RankText(select, false); });
    }
    m_out.sql += ") WHERE k<=";
    m_out.sql += select.topPercent ? "(n*" + number + "+99)/100" : number;
    m_out.sql += " ORDER BY k";
}

void Rewriter::RankText(const Select& select, bool compound)
{
    if (select.orderBy.empty()) {
        m_out.sql += "row_number() OVER () AS k";
    } else {
        m_out.sql += "rank() OVER (";
        OrderText(select, compound);
        m_out.sql += ") AS k";
    }
    if (select.topPercent)
        m_out.sql += ",count(*) OVER () AS n";
}

void Rewriter::OutputText(const Select& select, std::size_t at, ExprType wanted)
{
    const OutputColumn& output = select.output[at];
    if (output.source >= 0 && output.type == wanted) {
        const bool exact = m_exact && &select == m_outermost && ColumnOf(select, at, true).exact;
        m_out.sql += 't' + std::to_string(output.source) + (exact ? ".x" : ".c") +
                     std::to_string(output.column);
    } else if (output.expr != nullptr) {
        EmitAs(*output.expr, wanted);
    } else {
        Expr field;
        field.kind = ExprKind::Field;
        field.source = output.source;
        field.column = output.column;
        field.type = output.type;
        EmitAs(field, wanted);
    }
}

void Rewriter::OrderText(const Select& select, bool byColumn)
{
    const char* separator = " ORDER BY ";
    for (const OrderTerm& term : select.orderBy) {
        m_out.sql += separator;
        separator = ",";
        if (term.item < 0) {
            EmitCollated(*term.expr);
        } else {
            const auto item = static_cast<std::size_t>(term.item);
            const ExprType type = select.output[item].type;
            if (byColumn)
                m_out.sql += 'c' + std::to_string(term.item);
            else
                OutputText(select, item, type);
            if (IsText(type))
                m_out.sql += " COLLATE JET";
        }
        if (term.descending)
            m_out.sql += " DESC";
    }
}

// --- FROM -----------------------------------------------------------------

// A right join is a left join the other way round; inner joins in parentheses
// are freed, so that SQLite may choose their order.
std::vector<Rewriter::Piece> Rewriter::Flatten(const TableRef& table) const
{
    if (!table.IsJoin()) {
        Piece piece;
        piece.table = &table;
        return {piece};
    }
    std::vector<Piece> left = Flatten(*table.left), right = Flatten(*table.right);
    if (table.join == JoinKind::Inner)
        return Joined(std::move(left), std::move(right), table.on.get());
    if (table.join == JoinKind::Right)
        std::swap(left, right);
    Piece piece;
    if (right.size() == 1)
        piece = std::move(right.front());
    else
        piece.nested = std::move(right);
    piece.left = true;
    piece.on = {table.on.get()};
    left.push_back(std::move(piece));
    return left;
}

std::vector<Rewriter::Piece> Rewriter::Joined(std::vector<Piece> a, std::vector<Piece> b,
                                              const Expr* on)
{
    const auto inner = [](const std::vector<Piece>& pieces) {
        return std::none_of(pieces.begin(), pieces.end(), [](const Piece& p) { return p.left; });
    };
    if (!inner(b) && inner(a))
        std::swap(a, b);
    if (inner(b)) {
        std::move(b.begin(), b.end(), std::back_inserter(a));
    } else {
        Piece piece;
        piece.nested = std::move(b);
        a.push_back(std::move(piece));
    }
    if (on != nullptr)
        a.back().on.push_back(on);
    return a;
}

void Rewriter::FromText(const std::vector<TableRef>& from)
{
    if (from.empty())
        return;
    std::vector<Piece> pieces = Flatten(from.front());
    for (std::size_t i = 1; i < from.size(); ++i)
        pieces = Joined(std::move(pieces), Flatten(from[i]), nullptr);
    m_out.sql += " FROM ";
    PieceTexts(pieces);
}

void Rewriter::PieceTexts(const std::vector<Piece>& pieces)
{
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Piece& piece = pieces[i];
        if (i > 0)
            m_out.sql += piece.left ? " LEFT JOIN " : " JOIN ";
        SourceText(piece);
        const char* separator = " ON ";
        for (const Expr* on : piece.on) {
            m_out.sql += separator;
            EmitPredicate(*on);
            separator = " AND ";
        }
    }
}

void Rewriter::SourceText(const Piece& piece)
{
    if (piece.table == nullptr) {
        m_out.sql += '(';
        PieceTexts(piece.nested);
        m_out.sql += ')';
        return;
    }
    const int at = piece.table->source;
    const BoundSource& source = m_binder.Sources()[static_cast<std::size_t>(at)];
    if (source.table) {
        m_out.sql += source.table->module;
        m_out.tables.push_back(source.table);
    } else {
        m_out.sql += '(';
        SelectText(*source.select);
        m_out.sql += ')';
    }
    m_out.sql += " AS t" + std::to_string(at);
}

void Rewriter::WhereText(const Expr* where)
{
    if (where == nullptr)
        return;
    m_out.sql += " WHERE ";
    EmitPredicate(*where);
}

} // namespace jet::sql
