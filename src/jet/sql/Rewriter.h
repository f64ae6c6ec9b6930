#pragma once

#include "jet/sql/Binder.h"

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace jet::sql {

using Parameter = std::variant<std::int64_t, double, std::string>;

/// One column of the rows that a rewritten statement gives.
struct ResultColumn {
    std::string name;
    ExprType type; ///< nothing = only nulls
    int size = 0;  ///< characters or bytes, of a plain field
    int precision = 18, scale = 0;
    bool autoNumber = false;
    /// SQLite calculates with doubles; a plain Currency or Decimal field comes
    /// out in full: as its scaled integer, as text.
    bool exact = false;
    std::string sourceTable; ///< of a plain field
    std::string sourceName;  ///< by which the statement calls that table
    int source = -1;         ///< which occurrence of the table
    int sourceColumn = -1;
};

/// What SQLite is given to run.
struct Rewritten {
    std::string sql;
    std::vector<Parameter> parameters; ///< ?1 is the first
    std::vector<ResultColumn> columns;
    int rowIds = 0;                                        ///< columns with row ids behind them
    std::vector<std::shared_ptr<const TableShape>> tables; ///< that it reads
};

/// Writes a bound statement as SQLite's SQL: Jet's operators and functions by
/// SQLite's or by ours, the engine's text order on every comparison, group and
/// sort of texts, names by position (t1.c0), literals as parameters, so that
/// statements that differ in their literals alone are prepared once.
class Rewriter {
public:
    /// `binder` has bound what is rewritten, and must outlive the rewriter.
    explicit Rewriter(const Binder& binder) : m_binder(binder) {}

    /// With the row ids of these sources behind the columns (only for a select
    /// without DISTINCT, groups and UNION).
    Rewritten Rewrite(const Select& select, const std::vector<int>& rowIdsOf = {});
    /// The rows that `from` and `where` give: the values, then the row ids.
    Rewritten RewriteRows(const std::vector<TableRef>& from, const Expr* where,
                          const std::vector<const Expr*>& values, const std::vector<int>& rowIdsOf);
    /// The row ids of the module's rows for which the criterion holds.
    Rewritten RewriteCriterion(const Expr& criterion, const std::string& module);
    /// SELECT of values without tables.
    Rewritten RewriteValues(const std::vector<ExprPtr>& values);

private:
    /// A table in a list of joins, or a list in parentheses.
    struct Piece {
        const TableRef* table = nullptr;
        std::vector<Piece> nested;
        bool left = false;
        std::vector<const Expr*> on;
    };

    void SelectText(const Select& select);
    void CompoundText(const Select& select);
    void BranchText(const Select& select, const std::vector<OutputColumn>& wanted, bool collated,
                    const std::function<void()>& extra = {});
    void TopText(const Select& select);
    void RankText(const Select& select, bool compound);
    void OutputText(const Select& select, std::size_t column, ExprType wanted);
    void OrderText(const Select& select, bool byColumn);
    void RowIds();
    ResultColumn ColumnOf(const Select& select, std::size_t column, bool plain) const;

    std::vector<Piece> Flatten(const TableRef& table) const;
    static std::vector<Piece> Joined(std::vector<Piece> a, std::vector<Piece> b, const Expr* on);
    void FromText(const std::vector<TableRef>& from);
    void PieceTexts(const std::vector<Piece>& pieces);
    void SourceText(const Piece& piece);
    void WhereText(const Expr* where);

    void EmitValue(const Expr& expr);
    void EmitPredicate(const Expr& expr);
    void EmitText(const Expr& expr);
    void EmitNumber(const Expr& expr);
    void EmitReal(const Expr& expr);
    void EmitAs(const Expr& expr, ExprType wanted);
    void EmitCollated(const Expr& expr);
    void EmitOperation(const Expr& expr);
    using Emitter = void (Rewriter::*)(const Expr&);
    void EmitBinary(const Expr& expr, const char* op, Emitter emit);
    void EmitBare(const Expr& expr, const char* op, Emitter emit);
    void EmitFunction(const char* name, const Expr& expr);
    void EmitComparison(const Expr& expr, const char* op);
    void EmitLogic(const Expr& expr);
    void EmitTerms(const Expr& expr, std::size_t first, std::size_t last);
    void EmitIn(const Expr& expr);
    void EmitLike(const Expr& expr);
    void EmitCall(const Expr& expr);
    void EmitArguments(const Expr& expr);
    void EmitCases(const Expr& expr);
    void EmitAggregate(const Expr& expr);
    void EmitInteger(std::int64_t value);
    void EmitDouble(double value);
    void EmitLiteral(const std::string& text);
    bool TakesParameter();
    bool YieldsReal(const Expr& expr) const;
    bool FindsReal(const Expr& expr) const;
    void CheckLength() const;

    const Binder& m_binder;
    Rewritten m_out;
    std::vector<int> m_rowIdsOf;
    const Select* m_outermost = nullptr;
    bool m_exact = false; ///< the outermost gives money and decimals in full
};

} // namespace jet::sql
