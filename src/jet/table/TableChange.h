#pragma once

#include "jet/table/TableInternals.h"

#include <functional>

namespace jet {

/// AppendKey for a column as it is: decimals count at the column's own scale.
bool AppendColumnKey(const Value& value, const Column& column, bool ascending, FileVersion version,
                     Bytes& key);

/// Carries out one insert, update or delete: everything is converted, checked
/// and laid out before the first page is touched. Kept with its table, so that
/// its buffers are used again.
class TableChange {
public:
    explicit TableChange(TableParts& parts);

    RowId Insert(Row& row);
    void Update(RowId row, std::span<const Table::Change> changes);
    void Delete(RowId row);

private:
    /// How a row stands in one index.
    struct IndexKey {
        enum class State {
            Absent,  ///< no entry: ignored nulls
            Known,   ///< `entry` is the key, later with the row pointer
            Unknown, ///< the text has no key that we know
        };
        State state = State::Absent;
        Bytes entry;
        int unknownColumn = -1;
        int nullColumn = -1; ///< one that is null
        bool allNull = false;
    };
    using ValueOf = std::function<const Value&(int column)>;

    void RequireWritable() const;
    void Prepare(int column, Value& value) const;
    void FillAutoNumber(int column, Value& value);
    void MakeKey(std::size_t index, const ValueOf& valueOf, IndexKey& key) const;
    void CheckKey(std::size_t index, const IndexKey& key, RowId except) const;
    void BuildRow();
    void WriteOutside();
    void WriteCounters() const;
    void EraseEntry(std::size_t index, IndexKey& key, RowId row);
    const Value& OldValue(int column);
    void TakeOldRow(RowId row);

    TableParts& m_parts;
    RowBuilder m_builder;
    std::vector<bool> m_unique, m_nullsRefused; // by physical index
    std::vector<IndexKey> m_keys, m_oldKeys;    // by physical index
    std::uint32_t m_autoNumber = 0;
    // the row that is changed or deleted, copied off its page
    Bytes m_oldRow;
    PageNumber m_oldPage = 0;
    std::optional<RowView> m_oldView;
    std::vector<std::optional<Value>> m_oldValues; // decoded so far
};

} // namespace jet
