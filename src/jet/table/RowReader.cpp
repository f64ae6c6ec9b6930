#include "jet/table/RowReader.h"

#include "jet/base/Error.h"
#include "jet/storage/Faults.h"

namespace jet {

void RowReader::State::Point(FoundRow&& row)
{
    page = std::move(row.page);
    at = row.at.page;
    view.emplace(parts->pager, at, parts->definition, row.bytes);
    changes = parts->pager.ChangeCount();
}

bool RowReader::State::Find()
{
    auto found = FindRow(parts->pager, parts->definition.page, id);
    if (!found) {
        view.reset();
        page = PageView();
        return false;
    }
    Point(std::move(*found));
    return true;
}

const RowView& RowReader::State::Row()
{
    if (view && changes == parts->pager.ChangeCount())
        return *view;
    if (id.page == 0 || !Find())
        throw Error(ErrorKind::NoCurrentRow,
                    "De rij staat niet (meer) in tabel \"" + parts->name + "\".");
    return *view;
}

RowReader::RowReader(const Table& table) : m_state(std::make_unique<State>())
{
    m_state->parts = table.m_parts.get();
}

RowReader::~RowReader() = default;
RowReader::RowReader(RowReader&&) noexcept = default;
RowReader& RowReader::operator=(RowReader&&) noexcept = default;

bool RowReader::MoveTo(RowId row)
{
    m_state->id = row;
    return m_state->Find();
}

RowId RowReader::Id() const
{
    return m_state->id;
}

Value RowReader::Get(int column) const
{
    const RowView& row = m_state->Row();
    return m_state->parts->Decode(row, m_state->at, column);
}

bool RowReader::IsNull(int column) const
{
    const Column& c = m_state->parts->definition.columns[static_cast<std::size_t>(column)];
    return !m_state->Row().HasValue(c) && c.type != ColumnType::Boolean;
}

jet::Row RowReader::GetRow() const
{
    jet::Row row;
    GetRow(m_state->parts->definition.columns.size(), row);
    return row;
}

void RowReader::GetRow(std::size_t count, jet::Row& row) const
{
    const RowView& view = m_state->Row();
    const TableParts& parts = *m_state->parts;
    row.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        row[i] = parts.Decode(view, m_state->at, static_cast<int>(i));
}

} // namespace jet
