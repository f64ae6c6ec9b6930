#pragma once

#include "jet/storage/RowId.h"

#include <span>

namespace jet {

inline constexpr std::size_t kLargestPage = 4096;

/// Owner field of the pages that hold long values: the letters "LVAL".
inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C;

inline constexpr int kMostSlots = 255; // a row number is one byte, and 255 stays unused

/// One slot of a data page. Both marks together say "deleted".
struct Slot {
    static constexpr std::uint16_t kHidden = 0x8000;  ///< reached through a pointer only
    static constexpr std::uint16_t kPointer = 0x4000; ///< holds the place of a row that moved
    static constexpr std::uint16_t kDeleted = kHidden | kPointer;

    std::uint16_t flags = 0;
    std::uint16_t start = 0;
    std::uint16_t length = 0;

    bool IsDeleted() const { return flags == kDeleted; }
    bool IsHidden() const { return (flags & kHidden) != 0; }
    bool IsPointer() const { return flags == kPointer; }
};

/// Reads a page of rows: `slots` grow from the front, rows are stacked from the
/// back in slot order without gaps. Every access is checked.
class DataPage {
public:
    DataPage(const Pager& pager, PageNumber number, std::span<const std::byte> data);

    /// Whether this is a page of rows of `owner` at all.
    bool BelongsTo(std::uint32_t owner) const;
    int SlotCount() const { return m_slotCount; }
    /// Throws Damaged when there is no such slot, or its row lies outside the page.
    Slot At(int slot) const;
    std::span<const std::byte> Row(const Slot& slot) const
    {
        return m_data.subspan(slot.start, slot.length);
    }
    /// Bytes between the slots and the rows.
    std::size_t Free() const;
    bool HasRoomFor(std::size_t rowLength) const
    {
        return m_slotCount < kMostSlots && Free() >= rowLength + 2;
    }
    bool IsEmpty() const; ///< every slot is deleted

private:
    const Pager& m_pager;
    PageNumber m_number;
    std::span<const std::byte> m_data;
    std::size_t m_slots; // offset of the first slot
    int m_slotCount;
};

/// Changes a page of rows of a Jet 4 file.
class DataPageEdit {
public:
    DataPageEdit(Pager& pager, PageNumber page)
        : m_pager(pager), m_edit(pager.Write(page)), m_page(page)
    {}

    /// Makes `edit` an empty page of `owner`.
    static void Format(const PageEdit& edit, std::uint32_t owner);

    DataPage View() const { return DataPage(m_pager, m_page, m_edit.Data()); }
    /// REQUIRES: HasRoomFor. Returns the new slot's number.
    int Append(std::span<const std::byte> row, std::uint16_t flags);
    /// Gives slot `slot` a new row and flags; the rows behind it are moved so that no gap is left.
    /// REQUIRES: Free() + old length >= new length.
    void Replace(int slot, std::span<const std::byte> row, std::uint16_t flags);
    void Erase(int slot) { Replace(slot, {}, Slot::kDeleted); }

private:
    Pager& m_pager;
    PageEdit m_edit;
    PageNumber m_page;
};

} // namespace jet
