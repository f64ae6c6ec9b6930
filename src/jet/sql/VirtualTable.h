#pragma once

#include "jet/sql/Binder.h"
#include "jet/sql/HashLookup.h"
#include "jet/sql/SqliteSupport.h"

#include <deque>
#include <memory>
#include <string>

namespace jet::sql {

/// How the rows for one use of a table are found. Made while SQLite plans, used
/// while it runs.
struct AccessPlan {
    enum class How { Scan, Row, Index, Hash };
    How how = How::Scan;
    int index = -1;                    ///< physical index
    std::vector<int> columns;          ///< compared by =, one argument each
    bool lower = false, upper = false; ///< bounds on the next index column, one argument each
    bool operator==(const AccessPlan&) const = default;
};

/// A Jet table as SQLite sees it: read-only, its fields c0, c1, ..., texts in
/// the collation JET, numbers as integers or doubles, booleans -1 and 0, GUIDs
/// as texts. Behind the fields: money as its scaled integer and decimals as
/// text, x<number of the field>; and r, the row's id. (The rowid itself and
/// hidden columns are lost where SQLite takes joins in parentheses together.)
///
/// Each is a module of its own that can be used under its name without being
/// created, so that SQLite's schema never changes.
class VirtualTable {
public:
    /// All must outlive the object, and it the statements that use it. `name` is
    /// unique in the connection.
    VirtualTable(sqlite3* handle, std::string name, std::shared_ptr<Table> table,
                 LookupCache& lookups, PendingError& errors);
    ~VirtualTable();
    VirtualTable(const VirtualTable&) = delete;
    VirtualTable& operator=(const VirtualTable&) = delete;

    const std::shared_ptr<const TableShape>& Shape() const { return m_shape; }
    const std::shared_ptr<Table>& Rows() const { return m_table; }
    LookupCache& Lookups() const { return m_lookups; }
    PendingError& Errors() const { return m_errors; }

    std::string Declaration() const;
    int ExactFields() const { return static_cast<int>(m_exact.size()); }
    /// The field of an x column.
    int ExactField(int column) const { return m_exact[static_cast<std::size_t>(column)]; }

    int AddPlan(const AccessPlan& plan);
    const AccessPlan& Plan(int number) const { return m_plans[static_cast<std::size_t>(number)]; }

private:
    sqlite3* m_handle;
    std::shared_ptr<Table> m_table;
    std::shared_ptr<const TableShape> m_shape;
    LookupCache& m_lookups;
    PendingError& m_errors;
    std::vector<int> m_exact;
    std::deque<AccessPlan> m_plans;
};

/// Chooses the plan for the constraints that SQLite offers, and says what it costs.
AccessPlan ChoosePlan(const Table& table, sqlite3_index_info& info);

std::int64_t PackRowId(RowId row);
RowId UnpackRowId(std::int64_t number);

/// Hands a stored value to SQLite. `exact`: see VirtualTable.
void ReturnValue(sqlite3_context* context, const Value& value, bool exact);

} // namespace jet::sql
