#pragma once

#include "jet/sql/Engine.h"

namespace jet::sql {

/// Runs one statement that gives no rows; all of it happens or nothing. Returns
/// the number of rows touched.
int Execute(Engine& engine, std::string_view text);

/// A SELECT that can be run, sorted otherwise and run again.
class Query {
public:
    /// `source` is a SELECT statement or the name of a table.
    Query(std::shared_ptr<Engine> engine, std::string_view source);
    ~Query();

    const std::string& Text() const { return m_text; }
    /// The order for the next Run, as in ORDER BY; over fields of the result
    /// first, then of its tables. Empty = as the statement says.
    void SetSort(std::string_view fields) { m_sort = fields; }
    const std::string& Sort() const { return m_sort; }

    /// Starts the statement; the row ids of its one table come with the rows when
    /// IsUpdatable().
    std::unique_ptr<Rows> Run();

    // known after Run:
    const std::vector<ResultColumn>& Columns() const { return m_columns; }
    /// Its rows are those of one table, at least one field as it stands there.
    bool IsUpdatable() const { return m_table != nullptr; }
    const std::shared_ptr<Table>& UpdatableTable() const { return m_table; }
    /// The fields that are calculated, of one row of the table: null values for
    /// the plain ones.
    Row Calculated(RowId row);
    bool HasCalculated() const { return !m_calculated.sql.empty(); }

private:
    std::shared_ptr<Engine> m_engine;
    std::string m_text;
    std::string m_sort;
    std::vector<ResultColumn> m_columns;
    std::shared_ptr<Table> m_table;
    std::vector<int> m_calculatedFields;
    Rewritten m_calculated; ///< all fields of one row: ... WHERE rowid = its last parameter
};

} // namespace jet::sql
