#pragma once

#include "jet/catalog/TableDef.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

// What the parser makes of a statement. The binder fills in what names mean and
// which types expressions have (the members below "set by the binder").
namespace jet::sql {

struct Select;
struct FunctionInfo;

/// Nothing known = only null, or a value of changing type.
using ExprType = std::optional<ColumnType>;

enum class ExprKind {
    Null,
    Boolean, ///< True, False: `integer` -1 or 0
    Integer,
    Real,
    Text,
    Date,
    Field,     ///< table.name
    Operation, ///< `op` on one, two or (And, Or) more operands
    Between,   ///< operands: value, low, high
    In,        ///< operands: value, items...; or `select`
    Like,      ///< operands: text, pattern
    IsNull,
    Exists,
    Call,
    Aggregate,
    Subquery,
};

enum class Op {
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Power,
    Concatenate,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    And,
    Or,
    Xor,
    Eqv,
    Imp,
    Not,
    Negate,
};

enum class AggregateKind { Count, Sum, Avg, Min, Max, First, Last, StDev, StDevP, Var, VarP };

struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

struct Expr {
    ExprKind kind = ExprKind::Null;
    std::size_t position = 0;
    int height = 1; ///< of the tree below; bounded, so that recursion is
    Op op = Op::Add;
    AggregateKind aggregate = AggregateKind::Count;
    bool negated = false;          ///< Not In, Is Not Null, ...
    bool star = false;             ///< Count(*)
    bool percentWildcards = false; ///< ALike: % and _ instead of * and ?
    std::string name;              ///< field, function; content of a text
    std::string table;             ///< field: what stands before the point
    std::int64_t integer = 0;
    double number = 0;
    std::vector<ExprPtr> operands;
    std::unique_ptr<Select> select;

    // set by the binder
    ExprType type;
    int source = -1; ///< Field: position in BoundStatement::sources
    int column = -1;
    const Expr* meaning = nullptr; ///< Field that names an item of the select list
    const FunctionInfo* function = nullptr;
    bool hasAggregate = false;   ///< here or below, sub-selects not counted
    mutable int yieldsReal = -1; ///< kept by the rewriter: 1, 0, -1 = not asked yet
};

struct OrderTerm {
    ExprPtr expr;
    bool descending = false;
    int item = -1; ///< set by the binder: position in the output, -1 = by `expr`
};

enum class JoinKind { Inner, Left, Right };

/// A table, a sub-select or a join of two such in FROM.
struct TableRef {
    std::size_t position = 0;
    std::string file; ///< [file].[table]; empty = this one
    std::string name;
    std::string alias;
    std::unique_ptr<Select> select;
    // a join:
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<TableRef> left, right;
    ExprPtr on;

    int source = -1; ///< set by the binder

    bool IsJoin() const { return left != nullptr; }
};

struct SelectItem {
    std::size_t position = 0;
    ExprPtr expr; ///< empty = a star
    std::string alias;
    std::string starTable; ///< table.*
    bool bound = false, binding = false;
};

/// One column of a select's result; made by the binder.
struct OutputColumn {
    std::string name;
    ExprType type;
    const Expr* expr = nullptr; ///< empty when it comes from a star
    int source = -1;            ///< a plain field: where from
    int column = -1;
};

struct Select {
    std::size_t position = 0;
    int height = 1; ///< of all trees in it
    bool distinct = false;
    std::optional<std::int64_t> top;
    bool topPercent = false;
    std::vector<SelectItem> items;
    std::optional<TableRef> into;
    std::vector<TableRef> from; ///< joined by commas
    ExprPtr where;
    std::vector<ExprPtr> groupBy;
    ExprPtr having;
    std::vector<OrderTerm> orderBy;
    struct Branch {
        bool all = false;
        std::unique_ptr<Select> select;
    };
    std::vector<Branch> unions; ///< further selects; orderBy belongs to the whole

    // set by the binder
    bool grouped = false;
    std::vector<OutputColumn> output;
};

struct Insert {
    TableRef target;
    std::vector<std::pair<std::string, std::size_t>> fields; ///< with their places; empty = all
    std::vector<ExprPtr> values;
    std::unique_ptr<Select> select;
};

struct Assignment {
    ExprPtr field, value;
};

struct Update {
    std::vector<TableRef> from;
    std::vector<Assignment> assignments;
    ExprPtr where;
};

struct Delete {
    std::string table; ///< of `DELETE table.* FROM ...`; empty = the only one
    std::size_t position = 0;
    std::vector<TableRef> from;
    ExprPtr where;
};

struct CreateTable {
    TableDef table;
};

struct AlterTable {
    std::string table;
    std::vector<FieldDef> add;
    std::optional<FieldDef> change;
    std::vector<std::string> drop;
    std::optional<IndexDef> addIndex;
    std::string dropIndex;
};

struct CreateIndex {
    std::string table;
    IndexDef index;
};

struct DropTable {
    std::string table;
};

struct DropIndex {
    std::string table, index;
};

using Statement = std::variant<std::unique_ptr<Select>, Insert, Update, Delete, CreateTable,
                               AlterTable, CreateIndex, DropTable, DropIndex>;

} // namespace jet::sql
