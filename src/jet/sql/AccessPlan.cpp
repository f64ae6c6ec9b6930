#include "jet/sql/KeyBounds.h"
#include "jet/sql/VirtualTable.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace jet::sql {

namespace {

/// The constraints on one column that a plan may use, as positions in aConstraint.
struct OnColumn {
    int equal = -1, in = -1, lower = -1, upper = -1;
};

bool HasRightOrder(const Column& column, sqlite3_index_info& info, int constraint)
{
    if (!column.IsText() && column.type != ColumnType::Guid)
        return true;
    return std::strcmp(sqlite3_vtab_collation(&info, constraint), "JET") == 0;
}

struct Candidate {
    AccessPlan plan;
    std::vector<int> constraints; ///< in the order of the arguments
    double rows = 0, cost = 0;
    bool unique = false;
};

class Planner {
public:
    Planner(const Table& table, sqlite3_index_info& info)
        : m_definition(table.Definition()),
          m_info(info),
          m_rows(std::max<double>(1, m_definition.rowCount)),
          m_columns(m_definition.columns.size())
    {
        Gather();
    }

    AccessPlan Choose()
    {
        Candidate best;
        best.rows = m_rows;
        best.cost = m_rows + 5;
        if (m_rowId >= 0) {
            best.plan.how = AccessPlan::How::Row;
            best.constraints = {m_rowId};
            best.rows = best.cost = 1;
            best.unique = true;
        } else {
            bool found = false;
            for (std::size_t i = 0; i < m_definition.physicalIndexes.size(); ++i)
                found |= TryIndex(static_cast<int>(i), best);
            if (!found || best.plan.columns.empty())
                TryHash(best);
        }
        for (std::size_t i = 0; i < best.constraints.size(); ++i)
            m_info.aConstraintUsage[best.constraints[i]].argvIndex = static_cast<int>(i) + 1;
        m_info.estimatedCost = best.cost;
        m_info.estimatedRows = static_cast<sqlite3_int64>(std::max(1.0, best.rows));
        if (best.unique)
            m_info.idxFlags |= SQLITE_INDEX_SCAN_UNIQUE;
        return best.plan;
    }

private:
    void Gather()
    {
        for (int i = 0; i < m_info.nConstraint; ++i) {
            const auto& constraint = m_info.aConstraint[i];
            if (constraint.usable == 0)
                continue;
            if (constraint.iColumn < 0) {
                if (constraint.op == SQLITE_INDEX_CONSTRAINT_EQ)
                    m_rowId = i;
                continue;
            }
            const auto at = static_cast<std::size_t>(constraint.iColumn);
            if (at >= m_columns.size() || !HasRightOrder(m_definition.columns[at], m_info, i))
                continue;
            OnColumn& column = m_columns[at];
            switch (constraint.op) {
            case SQLITE_INDEX_CONSTRAINT_EQ:
                (sqlite3_vtab_in(&m_info, i, -1) != 0 ? column.in : column.equal) = i;
                break;
            case SQLITE_INDEX_CONSTRAINT_GT:
            case SQLITE_INDEX_CONSTRAINT_GE:
                column.lower = i;
                break;
            case SQLITE_INDEX_CONSTRAINT_LT:
            case SQLITE_INDEX_CONSTRAINT_LE:
                column.upper = i;
                break;
            default:
                break;
            }
        }
    }

    bool IsUsable(const PhysicalIndex& index) const
    {
        return std::all_of(
            index.columns.begin(), index.columns.end(), [&](const IndexColumn& part) {
                return HasUsableKey(m_definition.columns[static_cast<std::size_t>(part.column)]);
            });
    }

    bool TryIndex(int number, Candidate& best)
    {
        const PhysicalIndex& index = m_definition.physicalIndexes[static_cast<std::size_t>(number)];
        if (!IsUsable(index))
            return false;
        Candidate candidate;
        candidate.plan.how = AccessPlan::How::Index;
        candidate.plan.index = number;
        int lists = 0;
        std::size_t prefix = 0;
        for (; prefix < index.columns.size(); ++prefix) {
            const OnColumn& column =
                m_columns[static_cast<std::size_t>(index.columns[prefix].column)];
            const int constraint = column.equal >= 0 ? column.equal : column.in;
            if (constraint < 0)
                break;
            lists += column.equal < 0 ? 1 : 0;
            candidate.plan.columns.push_back(index.columns[prefix].column);
            candidate.constraints.push_back(constraint);
        }
        const bool whole = prefix == index.columns.size();
        double rows = m_rows;
        if (whole) {
            const double keys =
                index.unique ? m_rows : std::clamp<double>(index.distinctCount, 1, m_rows);
            rows = m_rows / keys;
        } else if (prefix > 0) {
            rows = std::sqrt(m_rows);
        }
        if (!whole) {
            const auto next = static_cast<std::size_t>(index.columns[prefix].column);
            const Column& definition = m_definition.columns[next];
            const bool ranges =
                definition.type != ColumnType::Boolean && definition.type != ColumnType::Guid;
            candidate.plan.lower = ranges && m_columns[next].lower >= 0;
            candidate.plan.upper = ranges && m_columns[next].upper >= 0;
            if (candidate.plan.lower) {
                candidate.constraints.push_back(m_columns[next].lower);
                rows /= 4;
            }
            if (candidate.plan.upper) {
                candidate.constraints.push_back(m_columns[next].upper);
                rows /= 4;
            }
        }
        if (candidate.constraints.empty())
            return false;
        // Such an index leaves out rows whose columns are null: all must be given.
        if (index.ignoreNulls && !whole)
            return false;
        candidate.rows = std::max(1.0, rows);
        candidate.cost = 4 + 2 * candidate.rows;
        candidate.unique = whole && index.unique && lists == 0;
        for (int i = 0; i < lists; ++i) {
            candidate.cost *= 8;
            candidate.rows = std::min(candidate.rows * 8, m_rows);
        }
        if (candidate.cost >= best.cost)
            return false;
        best = std::move(candidate);
        return true;
    }

    void TryHash(Candidate& best)
    {
        Candidate candidate;
        candidate.plan.how = AccessPlan::How::Hash;
        for (const bool lists : {false, true}) {
            for (std::size_t i = 0; i < m_columns.size(); ++i) {
                const int constraint = lists ? m_columns[i].in : m_columns[i].equal;
                if (constraint < 0)
                    continue;
                candidate.plan.columns.push_back(static_cast<int>(i));
                candidate.constraints.push_back(constraint);
            }
            if (!candidate.constraints.empty())
                break;
        }
        if (candidate.constraints.empty())
            return;
        candidate.rows = std::max(1.0, std::sqrt(m_rows) / 2);
        candidate.cost = std::min(best.cost - 1, 10 + candidate.rows);
        if (candidate.cost < best.cost)
            best = std::move(candidate);
    }

    const TableDefinition& m_definition;
    sqlite3_index_info& m_info;
    double m_rows;
    std::vector<OnColumn> m_columns;
    int m_rowId = -1;
};

} // namespace

AccessPlan ChoosePlan(const Table& table, sqlite3_index_info& info)
{
    return Planner(table, info).Choose();
}

} // namespace jet::sql
