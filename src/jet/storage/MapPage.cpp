#include "jet/storage/MapPage.h"

#include "jet/base/ByteOrder.h"
#include "jet/storage/Faults.h"

namespace jet {

MapPage::MapPage(const Pager& pager, PageNumber number, std::span<const std::byte> data)
    : DataPage(pager, number, data)
{
    if (GetU8(data, 0) != 0x01)
        ThrowDamaged(pager, number, "dit is geen pagina met paginakaarten");
    if (SlotCount() > kMostSlots + 1)
        ThrowDamaged(pager, number, "het aantal rijen is onmogelijk");
}

std::optional<int> MapPage::RoomFor(std::size_t length) const
{
    for (int slot = 0; slot < SlotCount(); ++slot) {
        const Slot row = At(slot);
        if (row.flags != 0 && row.length == 0 && Free() >= length)
            return slot;
    }
    if (HasRoomFor(length))
        return SlotCount();
    return std::nullopt;
}

void MapPage::SetRow(Pager& pager, PageNumber page, int slot, std::span<const std::byte> row)
{
    DataPageEdit edit(pager, page);
    const DataPage view = edit.View();
    const bool isNew = slot == view.SlotCount();
    const std::size_t room = isNew ? view.Free() : view.Free() + view.At(slot).length;
    if (room < row.size() + (isNew ? 2 : 0))
        ThrowDamaged(pager, page, "er is geen ruimte voor een langere paginakaart");
    if (isNew)
        edit.Append(row, 0);
    else
        edit.Replace(slot, row, 0);
}

void MapPage::Resize(Pager& pager, PageNumber page, int slot, std::size_t length)
{
    Bytes row;
    {
        const PageView view = pager.Read(page);
        const MapPage rows(pager, page, view.Data());
        if (slot < rows.SlotCount()) {
            const std::span<const std::byte> old = rows.Row(rows.At(slot));
            row.assign(old.begin(), old.end());
        }
    }
    row.resize(length);
    SetRow(pager, page, slot, row);
}

} // namespace jet
