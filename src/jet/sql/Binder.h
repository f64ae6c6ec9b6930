#pragma once

#include "jet/base/Error.h"
#include "jet/sql/Syntax.h"

#include <memory>
#include <string_view>

namespace jet::sql {

/// What a statement has to know of a field.
struct FieldShape {
    std::string name;
    ColumnType type = ColumnType::Long;
    int size = 0; ///< characters of a text, bytes of a binary
    bool autoNumber = false;
    int precision = 18, scale = 0;
};

/// What a statement has to know of a table.
struct TableShape {
    std::string name;
    std::string module; ///< by which SQLite knows it
    std::vector<FieldShape> fields;
};

/// Where the binder looks tables up.
class Schema {
public:
    virtual ~Schema() = default;
    /// nullptr when there is no such table.
    virtual std::shared_ptr<const TableShape> FindTable(std::string_view name) = 0;
};

/// One occurrence of a table, or of a sub-select, in FROM.
struct BoundSource {
    std::string name;                        ///< by which the statement speaks of it; may be empty
    std::shared_ptr<const TableShape> table; ///< empty: a sub-select
    const Select* select = nullptr;

    int FieldCount() const;
    const std::string& FieldName(int field) const;
    ExprType FieldType(int field) const;
    int FindField(std::string_view field) const; ///< -1 when there is none
};

/// Finds out what the names in a statement mean and which types its
/// expressions have, and refuses what Jet refuses: unknown and ambiguous
/// names, comparisons of texts with numbers, fields beside aggregates.
///
/// A name is a field of the select's own tables first, then an item of its
/// select list, then a field of the selects around it.
class Binder {
public:
    /// Both must outlive the binder.
    Binder(Schema& schema, std::string_view statement) : m_schema(schema), m_statement(statement) {}

    void Bind(Select& select);
    void Bind(Update& update);
    void Bind(Delete& statement);
    /// Values of INSERT: expressions without tables.
    void BindValues(std::vector<ExprPtr>& values);
    /// A criterion over the fields of one table.
    void BindCriterion(Expr& criterion, std::shared_ptr<const TableShape> table);

    /// All occurrences of tables, in the order in which Expr::source counts.
    const std::vector<BoundSource>& Sources() const { return m_sources; }
    std::string_view Text() const { return m_statement; }

    /// Position in Sources() of the table that rows are deleted from.
    int DeleteSource() const { return m_deleteSource; }

    [[noreturn]] void Fail(ErrorKind kind, std::size_t position, const std::string& problem) const;

private:
    struct Scope {
        std::vector<int> sources;
        Select* select = nullptr; ///< whose items may be named
        const Scope* outer = nullptr;
    };
    /// Where an expression stands decides whether aggregates may.
    enum class Place { Plain, Aggregated, InAggregate };

    void BindSelect(Select& select, const Scope* outer);
    void BindBranch(Select& select, const Scope* outer, std::vector<OrderTerm>* order);
    void BindTables(std::vector<TableRef>& from, Scope& scope, const Scope* outer);
    void BindTable(TableRef& table, Scope& scope, const Scope* outer);
    void BindCondition(Expr* condition, const Scope& scope, Place place);
    void BindItems(Select& select, const Scope& scope);
    void BindItem(SelectItem& item, const Scope& scope);
    void BindOrder(Select& select, std::vector<OrderTerm>& order, const Scope& scope);
    void BindUnionOrder(Select& select);
    void MakeOutput(Select& select, const Scope& scope);
    void NameOutput(Select& select);
    void AddStar(Select& select, const SelectItem& item, const Scope& scope);

    void BindExpr(Expr& expr, const Scope& scope, Place place);
    void BindNode(Expr& expr, const Scope& scope, Place place);
    void BindField(Expr& expr, const Scope& scope, Place place);
    bool FindInSources(Expr& expr, const Scope& scope) const;
    bool FindInItems(Expr& expr, const Scope& scope);
    void BindOperation(Expr& expr);
    void BindIn(Expr& expr, const Scope& scope);
    void BindCall(Expr& expr, const Scope& scope, Place place);
    void BindAggregate(Expr& expr, const Scope& scope, Place place);
    void RequireComparable(const Expr& a, const Expr& b, std::size_t position) const;
    void RequireNumber(const Expr& expr) const;
    void RequireCondition(const Expr& expr) const;

    void CheckGrouped(const Select& select, const Expr& expr, const Scope& scope) const;

    Schema& m_schema;
    std::string_view m_statement;
    std::vector<BoundSource> m_sources;
    int m_deleteSource = -1;
};

/// True when two bound expressions mean the same; for very large ones false.
bool SameMeaning(const Expr& a, const Expr& b);

} // namespace jet::sql
