#pragma once

#include "jet/storage/RowId.h"

#include <functional>
#include <vector>

namespace jet {

/// A set of page numbers kept in a row of a data page:
///
///     u8 0, u32 first page, bitmap           inline
///     u8 1, n x u32 bitmap page (0 = none)   by reference
///
/// Maps begin inline. One that outgrows its row is moved along the file or
/// lengthened; when that does not do it goes over to references, which fit in
/// any row. Throws Damaged when the row is not a map.
class UsageMap {
public:
    UsageMap(Pager& pager, RowId where) : m_pager(&pager), m_where(where) {}

    RowId Where() const { return m_where; }
    bool Contains(PageNumber page) const;
    void Add(PageNumber page);
    void Remove(PageNumber page); ///< no effect when absent
    /// The smallest member >= `from` that the file has, or 0 when there is none.
    PageNumber NextFrom(PageNumber from) const;
    bool IsEmpty() const { return NextFrom(1) == 0; }
    /// The bitmap pages of a map by reference; empty for one inline.
    std::vector<PageNumber> BitmapPages() const;

private:
    friend class PageAllocator;

    /// What the global map of free pages has different: pages behind its end
    /// count as members, and its own bitmap pages come straight from the file's end.
    struct Growth {
        bool membersBehindEnd = false;
        std::size_t longestRow = 0;
        std::function<PageEdit()> newPage;
    };
    void Set(PageNumber page, bool member, const Growth& growth);
    bool SetInline(PageNumber page, bool member, const Growth& growth);
    void GoOverToReferences(const Growth& growth);
    void SetReferenced(PageNumber page, bool member, const Growth& growth);

    Pager* m_pager;
    RowId m_where;
};

} // namespace jet
