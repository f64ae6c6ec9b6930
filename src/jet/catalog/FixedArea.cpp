#include "jet/catalog/FixedArea.h"

#include "jet/base/ByteOrder.h"
#include "jet/storage/DataPage.h"

#include <algorithm>

namespace jet {

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
