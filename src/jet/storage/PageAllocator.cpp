#include "jet/storage/PageAllocator.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/storage/MapPage.h"

#include <algorithm>
#include <vector>

namespace jet {
namespace {

constexpr PageNumber kFirstFloatingPage = 6; // the pages below have fixed roles

/// The header says where the global map stands.
RowId GlobalMap(Pager& pager)
{
    const PageView header = pager.Read(0);
    Bytes page(header.Data().begin(), header.Data().end());
    ToggleHeaderMask(page, pager.Version());
    return RowIdFromPointer(GetU32(page, 0x18));
}

} // namespace

PageAllocator::PageAllocator(Pager& pager)
    : m_pager(pager), m_free(pager, GlobalMap(pager)), m_rollbacks(pager.RollbackCount())
{}

void PageAllocator::NoticeRollbacks()
{
    if (m_rollbacks == m_pager.RollbackCount())
        return;
    m_rollbacks = m_pager.RollbackCount();
    m_lowestFree = 0;
    m_mapPage = 0;
}

void PageAllocator::SetFree(PageNumber page, bool isFree)
{
    // The map's own pages come from the end of the file, so that growing the map
    // never asks the map; they are marked as taken when all is in place.
    std::vector<PageNumber> taken;
    const auto append = [&] {
        PageEdit edit = m_pager.Append();
        taken.push_back(edit.Number());
        return edit;
    };
    const UsageMap::Growth growth{true, m_pager.PageSize(), append};
    m_free.Set(page, isFree, growth);
    for (std::size_t i = 0; i < taken.size(); ++i)
        m_free.Set(taken[i], false, growth);
}

PageEdit PageAllocator::Allocate()
{
    NoticeRollbacks();
    const PageNumber page = m_free.NextFrom(std::max(m_lowestFree, kFirstFloatingPage));
    if (page != 0) {
        PageEdit edit = m_pager.Write(page);
        SetFree(page, false);
        m_lowestFree = page + 1;
        std::fill(edit.Data().begin(), edit.Data().end(), std::byte{0});
        return edit;
    }
    PageEdit edit = m_pager.Append();
    SetFree(edit.Number(), false);
    m_lowestFree = edit.Number() + 1;
    return edit;
}

void PageAllocator::Free(PageNumber page)
{
    NoticeRollbacks();
    if (page < kFirstFloatingPage || page >= m_pager.PageCount() || m_free.Contains(page))
        throw Error(ErrorKind::Damaged, "De database " + Utf8FromPath(m_pager.Path()) +
                                            " is beschadigd: pagina " + std::to_string(page) +
                                            " wordt vrijgegeven maar is niet in gebruik.");
    PutU32(m_pager.Write(page).Data(), 0, 0); // whoever still points here finds no page of his kind
    SetFree(page, true);
    m_lowestFree = std::min(m_lowestFree, page);
}

RowId PageAllocator::AllocateMap(PageNumber tryFirst)
{
    NoticeRollbacks();
    constexpr std::size_t length = MapPage::kNewRowLength;
    const auto slotOn = [&](PageNumber number) -> std::optional<int> {
        if (number < 2 || number >= m_pager.PageCount())
            return std::nullopt;
        const PageView view = m_pager.Read(number);
        if (GetU8(view.Data(), 0) != 0x01)
            return std::nullopt;
        const MapPage page(m_pager, number, view.Data());
        return page.IsForNewMaps() ? page.RoomFor(length) : std::nullopt;
    };
    PageNumber number = tryFirst;
    std::optional<int> slot = slotOn(number);
    if (!slot) {
        number = m_mapPage;
        slot = slotOn(number);
    }
    if (!slot) {
        const PageEdit edit = Allocate();
        DataPageEdit::Format(edit, MapPage::kOwner);
        number = edit.Number();
        slot = 0;
    }
    m_mapPage = number;
    const std::vector<std::byte> empty(length);
    MapPage::SetRow(m_pager, number, *slot, empty);
    return {number, static_cast<std::uint8_t>(*slot)};
}

void PageAllocator::FreeMap(RowId map)
{
    NoticeRollbacks();
    for (const PageNumber page : UsageMap(m_pager, map).BitmapPages())
        Free(page);
    DataPageEdit edit(m_pager, map.page);
    edit.Erase(map.slot);
    if (map.page >= kFirstFloatingPage && edit.View().IsEmpty()) {
        Free(map.page);
        if (m_mapPage == map.page)
            m_mapPage = 0;
    }
}

} // namespace jet
