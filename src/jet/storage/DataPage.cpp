#include "jet/storage/DataPage.h"

#include "jet/base/ByteOrder.h"
#include "jet/storage/Faults.h"

#include <algorithm>
#include <cstring>

namespace jet {

namespace {

constexpr std::size_t kFreeAt = 2, kOwnerAt = 4;
constexpr std::size_t kSlotCountJet3 = 8, kSlotCountJet4 = 12;
constexpr std::uint16_t kStartMask = 0x1FFF;

} // namespace

DataPage::DataPage(const Pager& pager, PageNumber number, std::span<const std::byte> data)
    : m_pager(pager), m_number(number), m_data(data)
{
    const std::size_t countAt =
        pager.Version() == FileVersion::Jet3 ? kSlotCountJet3 : kSlotCountJet4;
    m_slots = countAt + 2;
    m_slotCount = GetU16(data, countAt);
    if (m_slots + 2u * static_cast<unsigned>(m_slotCount) > data.size())
        ThrowDamaged(pager, number, "het aantal rijen is onmogelijk");
}

bool DataPage::BelongsTo(std::uint32_t owner) const
{
    return GetU8(m_data, 0) == 1 && GetU32(m_data, kOwnerAt) == owner;
}

Slot DataPage::At(int slot) const
{
    if (slot < 0 || slot >= m_slotCount)
        ThrowDamaged(m_pager, m_number, "een verwijzing noemt een rij die er niet is");
    const std::size_t at = m_slots + 2u * static_cast<unsigned>(slot);
    const std::uint16_t raw = GetU16(m_data, at);
    const std::size_t start = raw & kStartMask;
    const std::size_t end =
        slot == 0 ? m_data.size() : static_cast<std::size_t>(GetU16(m_data, at - 2) & kStartMask);
    if (start > end || end > m_data.size() ||
        start < m_slots + 2u * static_cast<unsigned>(m_slotCount))
        ThrowDamaged(m_pager, m_number, "een rij ligt buiten de pagina");
    return {static_cast<std::uint16_t>(raw & ~kStartMask & Slot::kDeleted),
            static_cast<std::uint16_t>(start), static_cast<std::uint16_t>(end - start)};
}

std::size_t DataPage::Free() const
{
    const std::size_t slotsEnd = m_slots + 2u * static_cast<unsigned>(m_slotCount);
    const std::size_t rows =
        m_slotCount == 0 ? m_data.size() : GetU16(m_data, slotsEnd - 2) & kStartMask;
    if (rows < slotsEnd || rows > m_data.size())
        ThrowDamaged(m_pager, m_number, "een rij ligt buiten de pagina");
    return rows - slotsEnd;
}

bool DataPage::IsEmpty() const
{
    for (int slot = m_slotCount - 1; slot >= 0; --slot) {
        const std::uint16_t raw = GetU16(m_data, m_slots + 2u * static_cast<unsigned>(slot));
        if ((raw & Slot::kDeleted) != Slot::kDeleted)
            return false;
    }
    return true;
}

void DataPageEdit::Format(const PageEdit& edit, std::uint32_t owner)
{
    const auto data = edit.Data();
    std::fill(data.begin(), data.end(), std::byte{0});
    PutU16(data, 0, 0x0101);
    PutU16(data, kFreeAt, static_cast<std::uint16_t>(data.size() - kSlotCountJet4 - 2));
    PutU32(data, kOwnerAt, owner);
}

int DataPageEdit::Append(std::span<const std::byte> row, std::uint16_t flags)
{
    const auto data = m_edit.Data();
    const DataPage view = View();
    const std::size_t free = view.Free();
    const int slot = view.SlotCount();
    const std::size_t slotAt = kSlotCountJet4 + 2 + 2u * static_cast<unsigned>(slot);
    const std::size_t start = slotAt + free - row.size();
    std::memcpy(data.data() + start, row.data(), row.size());
    PutU16(data, slotAt, static_cast<std::uint16_t>(start | flags));
    PutU16(data, kSlotCountJet4, static_cast<std::uint16_t>(slot + 1));
    PutU16(data, kFreeAt, static_cast<std::uint16_t>(free - row.size() - 2));
    return slot;
}

void DataPageEdit::Replace(int slot, std::span<const std::byte> row, std::uint16_t flags)
{
    const auto data = m_edit.Data();
    const DataPage view = View();
    const int slots = view.SlotCount();
    const Slot old = view.At(slot);
    for (int later = slot + 1; later < slots; ++later)
        view.At(later); // all rows must be where they can be moved
    const std::size_t free = view.Free();

    const std::size_t lowest = kSlotCountJet4 + 2 + 2u * static_cast<unsigned>(slots) + free;
    const std::ptrdiff_t shift = old.length - static_cast<std::ptrdiff_t>(row.size());
    if (shift != 0) {
        std::memmove(data.data() + lowest + shift, data.data() + lowest, old.start - lowest);
        for (int later = slot; later < slots; ++later) {
            const std::size_t at = kSlotCountJet4 + 2 + 2u * static_cast<unsigned>(later);
            const std::uint16_t raw = GetU16(data, at);
            PutU16(
                data, at,
                static_cast<std::uint16_t>((raw & Slot::kDeleted) | ((raw & kStartMask) + shift)));
        }
    }
    const std::size_t start = static_cast<std::size_t>(old.start + shift);
    if (!row.empty())
        std::memcpy(data.data() + start, row.data(), row.size());
    PutU16(data, kSlotCountJet4 + 2 + 2u * static_cast<unsigned>(slot),
           static_cast<std::uint16_t>(start | flags));
    PutU16(data, kFreeAt, static_cast<std::uint16_t>(static_cast<std::ptrdiff_t>(free) + shift));
}

} // namespace jet
