#pragma once

#include "jet/table/RowStore.h"
#include "jet/table/TableDefinition.h"

#include <array>

namespace jet {

/// Memos and OLE objects. A row holds a reference of twelve bytes: the length and
/// the form (inline: the data follows it; single: one row of a long-value page;
/// chain: parts that each name the next one), and where the data is.
struct LongValueReference {
    static constexpr std::size_t kSize = 12;
    static constexpr std::size_t kLongestInline = 64;
    static constexpr std::size_t kLongest = (1u << 30) - 1;

    enum class Form { Chain, Single, Inline };
    Form form = Form::Inline;
    std::uint32_t length = 0;
    RowId first;

    /// Throws Damaged when `bytes` is no reference.
    static LongValueReference Parse(const Pager& pager, PageNumber page,
                                    std::span<const std::byte> bytes);
    std::array<std::byte, kSize> ToBytes() const;
};

/// The whole value behind the bytes that a row of page `page` holds. Every part is checked.
Bytes ReadLongValue(Pager& pager, PageNumber page, std::span<const std::byte> stored);

/// Stores `data` outside the row, the last part first, so that each part names one that exists.
LongValueReference WriteLongValue(RowStore& store, std::span<const std::byte> data);

/// Erases the parts behind a reference; nothing for an inline value.
void FreeLongValue(Pager& pager, PageNumber page, RowStore& store,
                   std::span<const std::byte> stored);

/// Whether `where` holds a usage map: the free map of a memo field may be missing
/// or point at something else.
bool IsUsageMap(Pager& pager, RowId where);

} // namespace jet
