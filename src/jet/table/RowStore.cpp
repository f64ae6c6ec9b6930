#include "jet/table/RowStore.h"

#include "jet/base/ByteOrder.h"
#include "jet/storage/Faults.h"

#include <algorithm>
#include <array>

namespace jet {

namespace {

// A page with less room than a tenth is not worth a try for the next insert.
constexpr std::size_t kWorthTrying = 410;
// So many pages with room are tried before a new one is taken.
constexpr int kPagesTried = 8;
constexpr int kMostHops = 16;
constexpr std::size_t kPointerLength = 4;

std::array<std::byte, 4> PointerBytes(RowId row)
{
    std::array<std::byte, 4> bytes;
    PutU32(bytes, 0, PointerFromRowId(row));
    return bytes;
}

} // namespace

RowStore::RowStore(Pager& pager, PageAllocator& pages, std::uint32_t owner, RowId ownedMap,
                   RowId freeMap, Slots slots)
    : m_pager(pager), m_pages(pages), m_owner(owner), m_owned(pager, ownedMap), m_slots(slots)
{
    if (freeMap.page != 0)
        m_free.emplace(pager, freeMap);
}

RowId RowStore::Insert(std::span<const std::byte> row, std::uint16_t flags)
{
    return Place(PageWithRoom(row.size()), row, flags);
}

bool RowStore::HasRoom(PageNumber page, std::size_t length)
{
    if (page == 0 || page >= m_pager.PageCount())
        return false;
    const PageView view = m_pager.Read(page);
    const DataPage data(m_pager, page, view.Data());
    return data.BelongsTo(m_owner) && data.HasRoomFor(length);
}

PageNumber RowStore::PageWithRoom(std::size_t length)
{
    if (m_rollbacks != m_pager.RollbackCount()) {
        m_rollbacks = m_pager.RollbackCount();
        m_insertPage = 0;
        m_searchFrom = 1;
    }
    if (HasRoom(m_insertPage, length))
        return m_insertPage;
    if (m_free) {
        for (int tries = 0; tries < kPagesTried; ++tries) {
            const PageNumber page = m_free->NextFrom(m_searchFrom);
            if (page == 0) {
                if (m_searchFrom == 1)
                    break;
                m_searchFrom = 1; // once around
                continue;
            }
            m_searchFrom = page + 1;
            if (HasRoom(page, length))
                return m_insertPage = page;
        }
    }
    const PageEdit edit = m_pages.Allocate();
    DataPageEdit::Format(edit, m_owner);
    m_insertPage = edit.Number();
    m_owned.Add(m_insertPage);
    if (m_free)
        m_free->Add(m_insertPage);
    return m_insertPage;
}

RowId RowStore::Place(PageNumber page, std::span<const std::byte> row, std::uint16_t flags)
{
    DataPageEdit edit(m_pager, page);
    const DataPage view = edit.View();
    const std::size_t before = view.Free();
    int slot = -1;
    if (m_slots == Slots::Reuse) {
        for (int i = 0; i < view.SlotCount() && slot < 0; ++i) {
            if (view.At(i).IsDeleted())
                slot = i;
        }
    }
    if (slot >= 0)
        edit.Replace(slot, row, flags);
    else
        slot = edit.Append(row, flags);
    NoteRoom(page, before, edit.View().Free());
    return {page, static_cast<std::uint8_t>(slot)};
}

void RowStore::NoteRoom(PageNumber page, std::size_t before, std::size_t after)
{
    if (!m_free)
        return;
    if (before >= kWorthTrying && after < kWorthTrying)
        m_free->Remove(page);
    else if (before < kWorthTrying && after >= kWorthTrying)
        m_free->Add(page);
}

void RowStore::ReplaceSlot(RowId where, std::span<const std::byte> row, std::uint16_t flags)
{
    DataPageEdit edit(m_pager, where.page);
    const std::size_t before = edit.View().Free();
    edit.Replace(where.slot, row, flags);
    NoteRoom(where.page, before, edit.View().Free());
}

void RowStore::EraseSlot(RowId where)
{
    {
        DataPageEdit edit(m_pager, where.page);
        const std::size_t before = edit.View().Free();
        edit.Erase(where.slot);
        if (!edit.View().IsEmpty()) {
            NoteRoom(where.page, before, edit.View().Free());
            return;
        }
    }
    m_owned.Remove(where.page);
    if (m_free)
        m_free->Remove(where.page);
    if (m_insertPage == where.page)
        m_insertPage = 0;
    {
        // A scan that stands on this page sees by the missing owner that it is gone.
        const PageEdit edit = m_pager.Write(where.page);
        std::fill_n(edit.Data().begin(), 16, std::byte{0});
    }
    m_pages.Free(where.page);
}

void RowStore::Replace(RowId home, std::span<const std::byte> row)
{
    const auto fitsAt = [&](RowId where, std::size_t length) {
        const PageView view = m_pager.Read(where.page);
        const DataPage data(m_pager, where.page, view.Data());
        return data.Free() + data.At(where.slot).length >= length;
    };
    const auto found = FindRow(m_pager, m_owner, home);
    if (!found)
        ThrowDamaged(m_pager, home.page, "een rij is niet te vinden");
    const RowId now = found->at;
    const bool moved = now != home;
    if (fitsAt(now, row.size())) {
        ReplaceSlot(now, row, moved ? Slot::kHidden : 0);
        return;
    }
    if (moved) {
        EraseSlot(now);
        if (fitsAt(home, row.size())) {
            ReplaceSlot(home, row, 0);
            return;
        }
    } else if (!fitsAt(home, kPointerLength)) {
        throw Error(ErrorKind::RowTooLarge, "De rij past niet meer op haar pagina.");
    }
    const RowId target = Insert(row, Slot::kHidden);
    ReplaceSlot(home, PointerBytes(target), Slot::kPointer);
}

void RowStore::Erase(RowId home)
{
    const auto found = FindRow(m_pager, m_owner, home);
    if (!found)
        ThrowDamaged(m_pager, home.page, "een rij is niet te vinden");
    const RowId at = found->at;
    if (at != home)
        EraseSlot(at);
    EraseSlot(home);
}

void RowStore::FreeAll()
{
    for (PageNumber page = m_owned.NextFrom(1); page != 0; page = m_owned.NextFrom(page + 1)) {
        {
            const PageView view = m_pager.Read(page);
            if (!DataPage(m_pager, page, view.Data()).BelongsTo(m_owner))
                ThrowDamaged(m_pager, page, "een paginakaart noemt een vreemde pagina");
        }
        m_owned.Remove(page);
        if (m_free)
            m_free->Remove(page);
        m_pages.Free(page);
    }
    m_insertPage = 0;
}

std::optional<FoundRow> FindRow(Pager& pager, std::uint32_t owner, RowId home)
{
    if (home.page == 0 || home.page >= pager.PageCount())
        return std::nullopt;
    FoundRow found{pager.Read(home.page), home, {}};
    {
        const DataPage data(pager, home.page, found.page.Data());
        if (!data.BelongsTo(owner) || home.slot >= data.SlotCount())
            return std::nullopt;
        const Slot slot = data.At(home.slot);
        if (slot.IsHidden())
            return std::nullopt;
        found.bytes = data.Row(slot);
        if (!slot.IsPointer())
            return found;
    }
    for (int hops = 0; hops < kMostHops; ++hops) {
        if (found.bytes.size() < 4)
            ThrowDamaged(pager, found.at.page,
                         "een verwijzing naar een verplaatste rij is te kort");
        found.at = RowIdFromPointer(GetU32(found.bytes, 0));
        if (found.at.page == 0)
            ThrowDamaged(pager, home.page, "een verplaatste rij is niet te vinden");
        found.page = pager.Read(found.at.page);
        const DataPage data(pager, found.at.page, found.page.Data());
        if (!data.BelongsTo(owner))
            ThrowDamaged(pager, found.at.page, "een verplaatste rij staat op een vreemde pagina");
        const Slot slot = data.At(found.at.slot);
        if (slot.IsDeleted())
            ThrowDamaged(pager, found.at.page, "een verplaatste rij is niet te vinden");
        found.bytes = data.Row(slot);
        if (!slot.IsPointer())
            return found;
    }
    ThrowDamaged(pager, home.page, "verwijzingen naar een verplaatste rij hebben geen einde");
}

} // namespace jet
