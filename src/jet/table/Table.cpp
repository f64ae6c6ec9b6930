#include "jet/table/TableInternals.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/table/DefinitionLayout.h"
#include "jet/table/LongValues.h"
#include "jet/table/TableChange.h"
#include "jet/table/TextCodec.h"

#include <algorithm>

namespace jet {

TableParts::TableParts(Pager& p, PageAllocator& a, std::string n, TableDefinition d)
    : pager(p), pages(a), name(std::move(n))
{
    SetDefinition(std::move(d));
}

TableParts::~TableParts() = default;

void TableParts::SetDefinition(TableDefinition changed)
{
    definition = std::move(changed);
    rollbacks = pager.RollbackCount();
    rowCount.reset();
    rows = std::make_unique<RowStore>(pager, pages, definition.page, definition.ownedMap,
                                      definition.freeMap, RowStore::Slots::Append);
    longValues.clear();
    for (const Column& column : definition.columns) {
        std::unique_ptr<RowStore> store;
        if (column.IsLongValue() && column.ownedMap.page != 0) {
            const RowId freeMap = IsUsageMap(pager, column.freeMap) ? column.freeMap : RowId{};
            store = std::make_unique<RowStore>(pager, pages, kLongValueOwner, column.ownedMap,
                                               freeMap, RowStore::Slots::Reuse);
        }
        longValues.push_back(std::move(store));
    }
    trees.clear();
    for (const PhysicalIndex& index : definition.physicalIndexes)
        trees.emplace_back(pager, pages, definition.page, index.root, index.ownedMap);
    change = std::make_unique<TableChange>(*this);
}

bool TableParts::IsUnique(int physicalIndex) const
{
    if (definition.physicalIndexes[static_cast<std::size_t>(physicalIndex)].unique)
        return true;
    return std::ranges::any_of(definition.logicalIndexes, [&](const LogicalIndex& logical) {
        return logical.physical == physicalIndex && logical.kind == LogicalIndex::Kind::Primary;
    });
}

bool TableParts::RefusesNulls(int physicalIndex) const
{
    if (definition.physicalIndexes[static_cast<std::size_t>(physicalIndex)].required)
        return true;
    return std::ranges::any_of(definition.logicalIndexes, [&](const LogicalIndex& logical) {
        return logical.physical == physicalIndex && logical.kind == LogicalIndex::Kind::Primary;
    });
}

Value TableParts::Decode(const RowView& row, PageNumber page, int column) const
{
    const Column& c = definition.columns[static_cast<std::size_t>(column)];
    const bool present = row.HasValue(c);
    if (c.type == ColumnType::Boolean)
        return present;
    if (!present)
        return {};
    const std::span<const std::byte> stored = row.Bytes(c);
    if (!c.IsLongValue())
        return DecodeValue(c, stored, row.Version());
    if (stored.empty())
        return {}; // some writers leave nothing at all of a null
    Bytes bytes = ReadLongValue(pager, page, stored);
    if (c.type == ColumnType::Memo)
        return DecodeText(bytes, row.Version());
    return bytes;
}

std::string TableParts::FieldText(int column) const
{
    return "Veld \"" + definition.columns[static_cast<std::size_t>(column)].name +
           "\" van tabel \"" + name + "\"";
}

void TableParts::Refresh()
{
    if (rollbacks == pager.RollbackCount())
        return;
    rollbacks = pager.RollbackCount();
    rowCount.reset();
    if (definition.page >= pager.PageCount())
        return; // the table itself was rolled back; whoever opened it will notice
    const PageView view = pager.Read(definition.page);
    const auto data = view.Data();
    const DefinitionLayout& layout = DefinitionLayoutOf(pager.Version());
    if (GetU16(data, 0) != 0x0102)
        return;
    definition.rowCount = GetU32(data, layout.rowCount);
    definition.lastAutoNumber = GetU32(data, layout.autoNumber);
    for (std::size_t i = 0; i < definition.physicalIndexes.size(); ++i) {
        definition.physicalIndexes[i].distinctCount =
            GetU32(data, layout.counters + i * layout.counterSize + layout.counterDistinct);
    }
}

Table::Table(Pager& pager, PageAllocator& pages, std::string name, TableDefinition definition)
    : m_parts(std::make_unique<Parts>(pager, pages, std::move(name), std::move(definition)))
{}

Table::~Table() = default;

const std::string& Table::Name() const
{
    return m_parts->name;
}

const TableDefinition& Table::Definition() const
{
    return m_parts->definition;
}

Pager& Table::File() const
{
    return m_parts->pager;
}

std::uint32_t Table::RowCount() const
{
    Parts& parts = *m_parts;
    parts.Refresh();
    if (parts.rowCount)
        return *parts.rowCount;
    std::uint32_t count = 0;
    const UsageMap& owned = parts.rows->Owned();
    for (PageNumber number = owned.NextFrom(1); number != 0; number = owned.NextFrom(number + 1)) {
        const PageView view = parts.pager.Read(number);
        const DataPage page(parts.pager, number, view.Data());
        if (!page.BelongsTo(parts.definition.page))
            continue;
        for (int slot = 0; slot < page.SlotCount(); ++slot)
            count += page.At(slot).IsHidden() ? 0 : 1;
    }
    parts.rowCount = count;
    return count;
}

bool Table::Exists(RowId row) const
{
    return FindRow(m_parts->pager, m_parts->definition.page, row).has_value();
}

Value Table::Get(RowId row, int column) const
{
    RowReader reader(*this);
    reader.MoveTo(row);
    return reader.Get(column);
}

Row Table::GetRow(RowId row) const
{
    RowReader reader(*this);
    reader.MoveTo(row);
    return reader.GetRow();
}

int Table::FindPhysicalIndex(std::span<const int> columns) const
{
    const TableDefinition& definition = m_parts->definition;
    int best = -1;
    for (std::size_t i = 0; i < definition.physicalIndexes.size(); ++i) {
        const auto& parts = definition.physicalIndexes[i].columns;
        if (columns.empty() || parts.size() < columns.size())
            continue;
        bool fits = true;
        for (std::size_t k = 0; k < parts.size(); ++k) {
            const Column& column = definition.columns[static_cast<std::size_t>(parts[k].column)];
            // Descending decimals stand in an order that is not that of their values.
            const bool usable = column.HasKnownOrder() &&
                                (parts[k].ascending || column.type != ColumnType::Decimal);
            fits = fits && usable && (k >= columns.size() || parts[k].column == columns[k]);
        }
        if (!fits)
            continue;
        const auto rank = [&](int index) {
            const auto size =
                definition.physicalIndexes[static_cast<std::size_t>(index)].columns.size();
            return 2 * size - (m_parts->IsUnique(index) ? 1 : 0);
        };
        if (best < 0 || rank(static_cast<int>(i)) < rank(best))
            best = static_cast<int>(i);
    }
    return best;
}

} // namespace jet
