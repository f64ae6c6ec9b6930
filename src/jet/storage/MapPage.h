#pragma once

#include "jet/storage/UsageMap.h"

#include <optional>
#include <span>

namespace jet {

/// A page whose rows are usage maps: an ordinary page of rows with owner 0 (page
/// 1: owner 1). Rows are stacked from the end of the page in slot order without
/// gaps; all that is read is checked.
class MapPage {
public:
    /// Throws Damaged when `data` is no page of rows.
    MapPage(const Pager& pager, PageNumber number, std::span<const std::byte> data);

    struct Row {
        std::size_t start = 0;
        std::size_t length = 0;
        bool deleted = false;
    };
    int RowCount() const { return m_rowCount; }
    /// Throws Damaged when the row is not there or lies outside the page.
    Row At(int slot) const;
    std::size_t FreeBytes() const;
    /// Whether new maps may be put here.
    bool IsForNewMaps() const;
    bool HasLiveRows() const;
    /// A slot that can be given to a new row of `length` bytes.
    std::optional<int> RoomFor(std::size_t length) const;

    static void Format(std::span<std::byte> page, FileVersion version);
    /// Changes the length of row `slot` (which may be deleted, or the next one
    /// behind the last); new bytes at its end are zero. REQUIRES: the room.
    static void Resize(const Pager& pager, PageEdit& edit, int slot, std::size_t length);
    /// Marks a row deleted and closes the gap.
    static void Erase(const Pager& pager, PageEdit& edit, int slot);

    /// Length of a new map's row: enough for references to all pages of the largest file.
    static std::size_t NewRowLength(FileVersion version);

private:
    [[noreturn]] void ThrowDamaged(const std::string& what) const;
    std::size_t SlotsEnd() const { return m_slots + 2u * static_cast<std::size_t>(m_rowCount); }

    const Pager& m_pager;
    PageNumber m_number;
    std::span<const std::byte> m_data;
    std::size_t m_slots; // offset of the first slot
    int m_rowCount;
};

} // namespace jet
