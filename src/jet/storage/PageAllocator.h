#pragma once

#include "jet/storage/Pager.h"

#include <functional>
#include <memory>

namespace jet {

/// Where a row stands: its page and its slot there.
struct RowId {
    PageNumber page = 0;
    std::uint8_t slot = 0;
    auto operator<=>(const RowId&) const = default;
};

/// A set of page numbers kept in a row of a data page (inline bitmap, or
/// references to bitmap pages), as section 3 of docs/jet-format.md tells.
class UsageMap {
public:
    UsageMap(Pager& pager, RowId where) : m_pager(pager), m_where(where) {}

    RowId Where() const { return m_where; }
    bool Contains(PageNumber page) const;
    void Add(PageNumber page);    ///< lengthens or converts the map when needed
    void Remove(PageNumber page); ///< no effect when absent
    /// The smallest member >= `from`, or 0 when there is none.
    PageNumber NextFrom(PageNumber from) const;
    bool IsEmpty() const { return NextFrom(1) == 0; }

private:
    Pager& m_pager;
    RowId m_where;
};

/// Hands out pages of one file and takes them back; keeps the global map of
/// free pages true. Also hands out the rows in which usage maps live.
class PageAllocator {
public:
    explicit PageAllocator(Pager& pager);

    /// A free page (zeros), taken from the global map or from the end of the file.
    PageEdit Allocate();
    void Free(PageNumber page);

    /// A new, empty usage map.
    RowId AllocateMap();
    void FreeMap(RowId map);

private:
    Pager& m_pager;
};

} // namespace jet
