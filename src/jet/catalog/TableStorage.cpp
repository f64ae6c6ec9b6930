#include "jet/catalog/TableStorage.h"

#include "jet/base/Error.h"
#include "jet/index/IndexTree.h"
#include "jet/table/LongValues.h"
#include "jet/table/RowStore.h"
#include "jet/table/TableChange.h"

#include <algorithm>

namespace jet {

namespace {

IndexTree TreeOf(Pager& pager, PageAllocator& pages, PageNumber owner,
                 const PhysicalIndex& physical)
{
    return {pager, pages, owner, physical.root, physical.ownedMap};
}

ByteSpan KeyOf(ByteSpan entry)
{
    return entry.first(entry.size() - kRowPointerSize);
}

} // namespace

void MakeTree(Pager& pager, PageAllocator& pages, PageNumber owner, PhysicalIndex& physical)
{
    physical.ownedMap = pages.AllocateMap();
    const PageEdit root = pages.Allocate();
    FormatLeaf(root, owner);
    physical.root = root.Number();
    UsageMap(pager, physical.ownedMap).Add(physical.root);
}

void ReleaseTree(Pager& pager, PageAllocator& pages, PageNumber owner,
                 const PhysicalIndex& physical)
{
    TreeOf(pager, pages, owner, physical).Clear();
    pages.FreeMap(physical.ownedMap);
    pages.Free(physical.root);
}

SortedEntries::SortedEntries(Table& table, const PhysicalIndex& physical, std::string_view name)
    : m_table(table)
{
    const auto& columns = table.Definition().columns;
    const auto refuse = [&](ErrorKind kind, const std::string& why) {
        throw Error(kind, "De index \"" + std::string(name) + "\" van de tabel \"" + table.Name() +
                              "\" kan niet worden gemaakt: " + why + '.');
    };
    struct Place {
        std::size_t start, end;
        bool allNull;
    };
    std::vector<Place> places;
    for (TableScan scan(table); scan.Next();) {
        const std::size_t start = m_bytes.size();
        std::size_t nulls = 0;
        for (const IndexColumn& part : physical.columns) {
            const Column& column = columns[static_cast<std::size_t>(part.column)];
            const Value value = scan.Get(part.column);
            if (value.IsNull() && physical.required)
                refuse(ErrorKind::NullNotAllowed,
                       "het veld \"" + column.name + "\" is niet in elke rij ingevuld");
            nulls += value.IsNull() ? 1 : 0;
            if (!AppendColumnKey(value, column, part.ascending, table.File().Version(), m_bytes))
                refuse(ErrorKind::TextNotIndexable,
                       "een tekst in het veld \"" + column.name +
                           "\" bevat een teken waarvan de plaats in de volgorde onbekend is");
        }
        const bool allNull = nulls == physical.columns.size();
        if (physical.ignoreNulls && allNull) {
            m_bytes.resize(start);
            continue;
        }
        AppendRowPointer(scan.Id(), m_bytes);
        if (m_bytes.size() - start > IndexTree::kLongestEntry)
            refuse(ErrorKind::TooLong, "een sleutel is te lang");
        places.push_back({start, m_bytes.size(), allNull});
    }
    const auto entryOf = [&](const Place& place) {
        return ByteSpan(m_bytes).subspan(place.start, place.end - place.start);
    };
    std::ranges::sort(places, [&](const Place& a, const Place& b) {
        return CompareBytes(entryOf(a), entryOf(b)) < 0;
    });

    m_entries.reserve(places.size());
    for (const Place& place : places) {
        const ByteSpan entry = entryOf(place);
        const bool repeats =
            !m_entries.empty() && std::ranges::equal(KeyOf(m_entries.back()), KeyOf(entry));
        // Rows of nulls alone may stand in a unique index more than once.
        if (repeats && physical.unique && !place.allNull)
            refuse(ErrorKind::Duplicate, "er zijn rijen met dezelfde sleutel");
        m_distinct += repeats ? 0 : 1;
        m_entries.push_back(entry);
    }
}

void SortedEntries::FillTree(PageAllocator& pages, const PhysicalIndex& physical) const
{
    TreeOf(m_table.File(), pages, m_table.Definition().page, physical).Build(m_entries);
}

void MakeLongValueMaps(PageAllocator& pages, Column& column)
{
    column.ownedMap = pages.AllocateMap();
    column.freeMap = pages.AllocateMap();
}

void ReleaseLongValues(Pager& pager, PageAllocator& pages, const Column& column)
{
    if (column.ownedMap.page == 0)
        return;
    RowStore(pager, pages, kLongValueOwner, column.ownedMap, column.freeMap, RowStore::Slots::Reuse)
        .FreeAll();
    pages.FreeMap(column.ownedMap);
    if (column.freeMap.page != 0 && IsUsageMap(pager, column.freeMap))
        pages.FreeMap(column.freeMap);
}

void ReleaseTable(Pager& pager, PageAllocator& pages, const TableDefinition& definition)
{
    for (const PhysicalIndex& physical : definition.physicalIndexes)
        ReleaseTree(pager, pages, definition.page, physical);
    for (const Column& column : definition.columns)
        if (column.IsLongValue())
            ReleaseLongValues(pager, pages, column);
    RowStore(pager, pages, definition.page, definition.ownedMap, definition.freeMap,
             RowStore::Slots::Append)
        .FreeAll();
    pages.FreeMap(definition.ownedMap);
    pages.FreeMap(definition.freeMap);
    FreeTableDefinition(pager, pages, definition.page);
}

} // namespace jet
