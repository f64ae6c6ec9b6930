#pragma once

#include "jet/storage/Pager.h"

#include <compare>

namespace jet {

/// Where a row stands: its page and its slot there.
struct RowId {
    PageNumber page = 0;
    std::uint8_t slot = 0;
    auto operator<=>(const RowId&) const = default;
};

/// A row pointer as it stands in the file: the page in the upper 24 bits.
inline RowId RowIdFromPointer(std::uint32_t pointer)
{
    return {pointer >> 8, static_cast<std::uint8_t>(pointer)};
}
inline std::uint32_t PointerFromRowId(RowId row)
{
    return row.page << 8 | row.slot;
}

} // namespace jet
