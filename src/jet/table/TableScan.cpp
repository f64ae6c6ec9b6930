#include "jet/table/RowReader.h"

#include "jet/storage/Faults.h"

#include <algorithm>
#include <limits>

namespace jet {

namespace {
constexpr PageNumber kBehindLast = std::numeric_limits<PageNumber>::max();
}

struct TableScan::State {
    PageNumber page = 0; // 0 = before the first, kBehindLast
    int slot = -1;
    PageView view; // of `page`
    std::optional<DataPage> data;
    std::uint64_t changes = 0;
};

TableScan::TableScan(const Table& table, Start start)
    : m_parts(table.m_parts.get()), m_reader(table), m_state(std::make_unique<State>())
{
    if (start == Start::BehindLast)
        m_state->page = kBehindLast;
}

TableScan::~TableScan() = default;
TableScan::TableScan(TableScan&&) noexcept = default;
TableScan& TableScan::operator=(TableScan&&) noexcept = default;

void TableScan::StandOn(RowId row)
{
    m_state->data.reset();
    m_state->page = row.page;
    m_state->slot = row.slot;
}

/// Makes the page of the walk readable; false when it is no page of the table (any more).
bool TableScan::OpenPage(PageNumber number)
{
    State& state = *m_state;
    state.data.reset();
    state.page = number;
    if (number == 0 || number >= m_parts->pager.PageCount())
        return false;
    state.view = m_parts->pager.Read(number);
    state.data.emplace(m_parts->pager, number, state.view.Data());
    state.changes = m_parts->pager.ChangeCount();
    if (state.data->BelongsTo(m_parts->definition.page))
        return true;
    state.data.reset();
    return false;
}

bool TableScan::PageIsOpen()
{
    if (m_state->data && m_state->changes == m_parts->pager.ChangeCount())
        return true;
    return OpenPage(m_state->page);
}

/// Points the reader at the row in the slot of the walk; false when there is none of its own.
bool TableScan::TakeSlot()
{
    State& state = *m_state;
    const Slot slot = state.data->At(state.slot);
    if (slot.IsHidden())
        return false;
    RowReader::State& reader = *m_reader.m_state;
    reader.id = {state.page, static_cast<std::uint8_t>(state.slot)};
    if (slot.IsPointer())
        return reader.Find();
    // The walk keeps the page pinned; the reader needs no pin of its own.
    reader.at = state.page;
    reader.view.emplace(m_parts->pager, state.page, m_parts->definition, state.data->Row(slot));
    reader.changes = state.changes;
    return true;
}

bool TableScan::Next()
{
    State& state = *m_state;
    if (state.page == kBehindLast)
        return false;
    while (true) {
        if (state.page != 0 && PageIsOpen()) {
            while (++state.slot < state.data->SlotCount() && state.slot < kMostSlots) {
                if (TakeSlot())
                    return true;
            }
        }
        const PageNumber next = m_parts->rows->Owned().NextFrom(state.page + 1);
        if (next == 0) {
            state.page = kBehindLast;
            LeaveRow();
            return false;
        }
        state.slot = -1;
        if (!OpenPage(next))
            ThrowDamaged(m_parts->pager, next, "dit is geen pagina met rijen van de tabel");
    }
}

bool TableScan::Previous()
{
    State& state = *m_state;
    if (state.page == kBehindLast) {
        state.data.reset();
        state.page = m_parts->pager.PageCount();
    }
    while (state.page != 0) {
        if (PageIsOpen()) {
            state.slot = std::min(state.slot, state.data->SlotCount());
            while (--state.slot >= 0) {
                if (TakeSlot())
                    return true;
            }
        }
        PageNumber before = state.page - 1;
        while (before != 0 && !m_parts->rows->Owned().Contains(before))
            --before;
        state.data.reset();
        state.page = before;
        state.slot = kMostSlots;
        if (before != 0 && !OpenPage(before))
            ThrowDamaged(m_parts->pager, before, "dit is geen pagina met rijen van de tabel");
    }
    state.slot = -1;
    LeaveRow();
    return false;
}

/// There is no current row, and no page is kept pinned.
void TableScan::LeaveRow()
{
    m_state->data.reset();
    m_state->view = PageView();
    m_reader.m_state->id = {};
    m_reader.m_state->view.reset();
}

} // namespace jet
