#include "jet/base/Error.h"
#include "jet/index/IndexTree.h"
#include "jet/table/TableChange.h"

namespace jet {

struct IndexScan::State {
    explicit State(const IndexTree& tree) : cursor(tree) {}

    IndexCursor cursor;
    bool backwards = false;
    bool started = false;
    bool ended = false;
    Bytes from;              ///< forwards: the first entry is not less than this
    std::optional<Bytes> to; ///< forwards: the scan ends before this
    bool fromLast = false;   ///< backwards: from the very last entry
    RowId id;
};

namespace {

/// The first key bytes for a bound; keys that begin with other bytes lie before or behind it.
Bytes EncodeBound(const TableParts& parts, int physicalIndex, const Row& values)
{
    const auto& columns =
        parts.definition.physicalIndexes[static_cast<std::size_t>(physicalIndex)].columns;
    Bytes key;
    for (std::size_t i = 0; i < values.size() && i < columns.size(); ++i) {
        const Column& column =
            parts.definition.columns[static_cast<std::size_t>(columns[i].column)];
        if (!column.HasKnownOrder() ||
            !AppendColumnKey(values[i], column, columns[i].ascending, parts.pager.Version(), key))
            throw Error(ErrorKind::TextNotIndexable,
                        parts.FieldText(columns[i].column) +
                            ": de plaats van de gezochte tekst in de index is niet bekend.");
    }
    return key;
}

/// The smallest bytes behind everything that begins with `key`; nothing when there are none.
std::optional<Bytes> Behind(Bytes key)
{
    while (!key.empty() && key.back() == std::byte{0xFF})
        key.pop_back();
    if (key.empty())
        return std::nullopt;
    key.back() = static_cast<std::byte>(std::to_integer<unsigned>(key.back()) + 1);
    return key;
}

} // namespace

IndexScan::IndexScan(const Table& table, int physicalIndex, const IndexRange& range, bool backwards)
{
    const TableParts& parts = table.Internals();
    m_state = std::make_unique<State>(parts.trees[static_cast<std::size_t>(physicalIndex)]);
    State& state = *m_state;
    state.backwards = backwards;
    Bytes lower; // nothing lies before the empty key
    std::optional<Bytes> upper;
    if (range.lower) {
        lower = EncodeBound(parts, physicalIndex, *range.lower);
        if (!range.lowerInclusive) {
            auto behind = Behind(std::move(lower));
            state.ended = !behind;
            lower = behind ? std::move(*behind) : Bytes();
        }
    }
    if (range.upper) {
        upper = EncodeBound(parts, physicalIndex, *range.upper);
        if (range.upperInclusive)
            upper = Behind(std::move(*upper));
    }
    if (backwards) {
        state.fromLast = !upper;
        if (upper)
            state.from = std::move(*upper);
        state.to = std::move(lower);
    } else {
        state.from = std::move(lower);
        state.to = std::move(upper);
    }
}

IndexScan::~IndexScan() = default;
IndexScan::IndexScan(IndexScan&&) noexcept = default;
IndexScan& IndexScan::operator=(IndexScan&&) noexcept = default;

bool IndexScan::Next()
{
    State& state = *m_state;
    if (state.ended)
        return false;
    bool found = false;
    if (state.started)
        found = state.backwards ? state.cursor.Previous() : state.cursor.Next();
    else if (!state.backwards)
        found = state.cursor.SeekFirst(state.from);
    else
        found = state.fromLast ? state.cursor.SeekLast() : state.cursor.SeekBefore(state.from);
    state.started = true;
    if (found && state.to) {
        const int order = CompareBytes(state.cursor.Entry(), *state.to);
        found = state.backwards ? order >= 0 : order < 0;
    }
    state.ended = !found;
    if (found)
        state.id = state.cursor.Row();
    return found;
}

RowId IndexScan::Id() const
{
    return m_state->id;
}

} // namespace jet
