#include "TableCheck.h"

#include "TreeCheck.h"

#include "jet/base/ByteOrder.h"
#include "jet/table/LongValues.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

using namespace jet;

namespace {

std::set<PageNumber> PagesOf(const UsageMap& map)
{
    std::set<PageNumber> pages;
    for (PageNumber page = map.NextFrom(1); page != 0; page = map.NextFrom(page + 1))
        pages.insert(page);
    return pages;
}

/// Slots by id. Also checks the page itself.
void CollectSlots(Pager& pager, PageNumber number, std::uint32_t owner,
                  std::map<RowId, Slot>& slots)
{
    SCOPED_TRACE("page " + std::to_string(number));
    const PageView view = pager.Read(number);
    const DataPage page(pager, number, view.Data());
    EXPECT_TRUE(page.BelongsTo(owner));
    EXPECT_EQ(GetU16(view.Data(), 2), page.Free());
    EXPECT_FALSE(page.IsEmpty()) << "should have been given back";
    EXPECT_LE(page.SlotCount(), kMostSlots);
    for (int i = 0; i < page.SlotCount(); ++i) {
        const Slot slot = page.At(i);
        EXPECT_TRUE(!slot.IsDeleted() || slot.length == 0) << "the gap of slot " << i << " is open";
        slots[{number, static_cast<std::uint8_t>(i)}] = slot;
    }
}

/// Returns how many rows have moved.
std::size_t CheckRows(const TableParts& parts)
{
    const auto owned = PagesOf(parts.rows->Owned());
    const auto free = PagesOf(UsageMap(parts.pager, parts.definition.freeMap));
    EXPECT_TRUE(std::ranges::includes(owned, free));
    std::map<RowId, Slot> slots;
    for (const PageNumber page : owned)
        CollectSlots(parts.pager, page, parts.definition.page, slots);

    std::set<RowId> hidden, targets;
    std::uint32_t rows = 0;
    for (const auto& [id, slot] : slots) {
        if (slot.flags == Slot::kHidden)
            hidden.insert(id);
        if (slot.IsHidden())
            continue;
        ++rows;
        if (slot.IsPointer()) {
            const PageView view = parts.pager.Read(id.page);
            const DataPage page(parts.pager, id.page, view.Data());
            const RowId target = RowIdFromPointer(GetU32(page.Row(slot), 0));
            EXPECT_TRUE(targets.insert(target).second) << "two pointers to one row";
        }
    }
    EXPECT_EQ(hidden, targets) << "moved rows and pointers to them";
    const PageView view = parts.pager.Read(parts.definition.page);
    EXPECT_EQ(GetU32(view.Data(), 16), rows) << "row count in the definition";
    return targets.size();
}

void CheckLongValues(const Table& table, std::size_t column)
{
    const TableParts& parts = table.Internals();
    if (!parts.longValues[column])
        return;
    const Column& c = parts.definition.columns[column];
    SCOPED_TRACE(c.name);
    std::map<RowId, Slot> slots;
    const auto owned = PagesOf(parts.longValues[column]->Owned());
    EXPECT_TRUE(std::ranges::includes(owned, PagesOf(UsageMap(parts.pager, c.freeMap))));
    for (const PageNumber page : owned)
        CollectSlots(parts.pager, page, kLongValueOwner, slots);
    std::set<RowId> live;
    for (const auto& [id, slot] : slots) {
        if (!slot.IsDeleted())
            live.insert(id);
    }

    std::set<RowId> referred;
    for (TableScan scan(table); scan.Next();) {
        const auto row = FindRow(parts.pager, parts.definition.page, scan.Id());
        ASSERT_TRUE(row);
        const RowView view(parts.pager, row->at.page, parts.definition, row->bytes);
        if (!view.HasValue(c))
            continue;
        const auto reference = LongValueReference::Parse(parts.pager, 0, view.Bytes(c));
        for (RowId part = reference.first; part.page != 0;) {
            EXPECT_TRUE(referred.insert(part).second) << "two references to one part";
            if (reference.form != LongValueReference::Form::Chain)
                break;
            part = RowIdFromPointer(GetU32(FindRow(parts.pager, kLongValueOwner, part)->bytes, 0));
        }
    }
    EXPECT_EQ(live, referred) << "parts of long values and references to them";
}

} // namespace

std::size_t ExpectSoundTable(const Table& table)
{
    const TableParts& parts = table.Internals();
    const std::size_t moved = CheckRows(parts);
    for (std::size_t i = 0; i < parts.definition.columns.size(); ++i)
        CheckLongValues(table, i);
    for (const IndexTree& tree : parts.trees)
        ExpectSoundTree(tree);
    ExpectIndexesMatchRows(table);
    return moved;
}
