#pragma once

#include "jet/storage/DataPage.h"

#include <optional>

namespace jet {

/// A page whose rows are usage maps: an ordinary page of rows with owner 0 (page
/// 1: owner 1).
class MapPage : public DataPage {
public:
    static constexpr std::uint32_t kOwner = 0;
    /// Length of a new map's row: enough for references to all pages of the largest file.
    static constexpr std::size_t kNewRowLength = 69;

    /// Throws Damaged when `data` is no page of rows.
    MapPage(const Pager& pager, PageNumber number, std::span<const std::byte> data);

    /// Whether new maps may be put here.
    bool IsForNewMaps() const { return BelongsTo(kOwner); }
    /// A slot that can be given to a new row of `length` bytes.
    std::optional<int> RoomFor(std::size_t length) const;

    /// Gives row `slot` (which may be deleted, or the next one behind the last)
    /// these bytes. Throws Damaged when there is no room for them.
    static void SetRow(Pager& pager, PageNumber page, int slot, std::span<const std::byte> row);
    /// The same with the row's own bytes, cut off or with zeros behind them.
    static void Resize(Pager& pager, PageNumber page, int slot, std::size_t length);
};

} // namespace jet
