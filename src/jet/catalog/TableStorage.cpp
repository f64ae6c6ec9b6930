#include "jet/catalog/TableStorage.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/index/IndexTree.h"
#include "jet/index/KeyEncoder.h"
#include "jet/table/RowStore.h"

#include <algorithm>

namespace jet {

namespace {

IndexTree TreeOf(Pager& pager, PageAllocator& pages, PageNumber owner,
                 const PhysicalIndex& physical)
{
    return {pager, pages, owner, physical.root, physical.ownedMap};
}

std::string Where(const Table& table, std::string_view index)
{
    return "De index \"" + std::string(index) + "\" van de tabel \"" + table.Name() + "\" ";
}

} // namespace

void MakeEmptyTree(Pager& pager, PageAllocator& pages, PageNumber owner, PhysicalIndex& physical)
{
    const PageEdit root = pages.Allocate();
    FormatLeaf(root, owner);
    physical.root = root.Number();
    if (physical.ownedMap.page == 0)
        physical.ownedMap = pages.AllocateMap();
    UsageMap(pager, physical.ownedMap).Add(physical.root);
}

void FreeTree(Pager& pager, PageAllocator& pages, PageNumber owner, const PhysicalIndex& physical)
{
    TreeOf(pager, pages, owner, physical).Clear();
    UsageMap(pager, physical.ownedMap).Remove(physical.root);
    pages.Free(physical.root);
    pages.FreeMap(physical.ownedMap);
}

std::uint32_t FillTree(Table& table, PageAllocator& pages, const PhysicalIndex& physical,
                       std::string_view name)
{
    const auto& columns = table.Definition().columns;
    const FileVersion version = table.File().Version();

    // All entries in one block of bytes: an index of a million rows is sorted in memory.
    Bytes bytes;
    std::vector<std::pair<std::size_t, std::size_t>> places;
    for (TableScan scan(table); scan.Next();) {
        const std::size_t start = bytes.size();
        std::size_t nulls = 0;
        for (const IndexColumn& part : physical.columns) {
            const Column& column = columns[part.column];
            const Value value = scan.Get(part.column);
            if (value.IsNull() && physical.required)
                throw Error(ErrorKind::NullNotAllowed,
                            Where(table, name) + "kan niet worden gemaakt: het veld \"" +
                                column.name + "\" is niet in elke rij ingevuld.");
            nulls += value.IsNull() ? 1 : 0;
            if (!AppendKey(value, column.type, part.ascending, version, bytes))
                throw Error(ErrorKind::TextNotIndexable,
                            Where(table, name) +
                                "kan niet worden gemaakt: een tekst in het veld \"" + column.name +
                                "\" bevat een teken waarvan de plaats in de volgorde onbekend is.");
        }
        if (physical.ignoreNulls && nulls == physical.columns.size()) {
            bytes.resize(start);
            continue;
        }
        AppendRowPointer(scan.Id(), bytes);
        if (bytes.size() - start > IndexTree::kLongestEntry)
            throw Error(ErrorKind::TooLong,
                        Where(table, name) + "kan niet worden gemaakt: een sleutel is te lang.");
        // Rows of nulls alone may stand in a unique index more than once.
        const bool mayRepeat = nulls == physical.columns.size();
        places.emplace_back(start, (bytes.size() - start) << 1 | (mayRepeat ? 1 : 0));
    }
    const auto entryOf = [&](const auto& place) {
        return ByteSpan(bytes).subspan(place.first, place.second >> 1);
    };
    std::ranges::sort(places, [&](const auto& a, const auto& b) {
        return CompareBytes(entryOf(a), entryOf(b)) < 0;
    });

    std::vector<ByteSpan> entries;
    entries.reserve(places.size());
    std::uint32_t distinct = 0;
    const auto keyOf = [](ByteSpan entry) { return entry.first(entry.size() - kRowPointerSize); };
    for (const auto& place : places) {
        const ByteSpan entry = entryOf(place);
        const bool repeats =
            !entries.empty() && std::ranges::equal(keyOf(entries.back()), keyOf(entry));
        if (repeats && physical.unique && (place.second & 1) == 0)
            throw Error(ErrorKind::Duplicate,
                        Where(table, name) +
                            "kan niet worden gemaakt: er zijn rijen met dezelfde sleutel.");
        distinct += repeats ? 0 : 1;
        entries.push_back(entry);
    }
    TreeOf(table.File(), pages, table.Definition().page, physical).Build(entries);
    return distinct;
}

void FreeLongValues(Pager& pager, PageAllocator& pages, const Column& column)
{
    if (column.ownedMap.page == 0)
        return;
    RowStore(pager, pages, kLongValueOwner, column.ownedMap, column.freeMap, RowStore::Slots::Reuse)
        .FreeAll();
    pages.FreeMap(column.ownedMap);
    if (column.freeMap.page != 0)
        pages.FreeMap(column.freeMap);
}

void FreeTable(Pager& pager, PageAllocator& pages, const TableDefinition& definition)
{
    for (const PhysicalIndex& physical : definition.physicalIndexes)
        FreeTree(pager, pages, definition.page, physical);
    for (const Column& column : definition.columns)
        if (column.IsLongValue())
            FreeLongValues(pager, pages, column);
    RowStore(pager, pages, definition.page, definition.ownedMap, definition.freeMap,
             RowStore::Slots::Append)
        .FreeAll();
    pages.FreeMap(definition.ownedMap);
    pages.FreeMap(definition.freeMap);
    FreeTableDefinition(pager, pages, definition.page);
}

std::size_t EndOfFixedArea(Pager& pager, const TableDefinition& definition)
{
    std::size_t end = 0;
    for (const Column& column : definition.columns)
        if (column.fixed && column.type != ColumnType::Boolean)
            end = std::max<std::size_t>(end, column.position + column.lengthBytes);
    if (definition.columns.size() == definition.maxColumns)
        return end;

    // Columns were dropped; only the rows still tell how far theirs reached.
    const UsageMap owned(pager, definition.ownedMap);
    for (PageNumber number = owned.NextFrom(1); number != 0; number = owned.NextFrom(number + 1)) {
        const PageView view = pager.Read(number);
        const DataPage page(pager, number, view.Data());
        if (!page.BelongsTo(definition.page))
            continue;
        for (int i = 0; i < page.SlotCount(); ++i) {
            const Slot slot = page.At(i);
            if (slot.IsDeleted() || slot.IsPointer())
                continue;
            const auto row = page.Row(slot);
            const std::size_t mask = (GetU16(row, 0) + 7u) / 8u;
            if (row.size() < 2 + mask)
                continue;
            std::size_t fixedEnd = row.size() - mask;
            if (definition.variableColumns > 0 && row.size() >= mask + 6)
                fixedEnd = GetU16(row, row.size() - mask - 4); // where variable value 0 starts
            if (fixedEnd >= 2)
                end = std::max(end, fixedEnd - 2);
        }
    }
    return end;
}

} // namespace jet
