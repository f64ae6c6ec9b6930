#pragma once

#include "jet/storage/Pager.h"
#include "jet/storage/UsageMap.h"

namespace jet {

/// Hands out pages of one file and takes them back; keeps the global map of
/// free pages true. Also hands out the rows in which usage maps live.
class PageAllocator {
public:
    /// Reads the place of the global map from the file's header; `pager` must outlive this.
    explicit PageAllocator(Pager& pager);

    /// A free page (zeros), taken from the global map or from the end of the file.
    PageEdit Allocate();
    /// The page must be in no map any more. Throws Damaged when it is free already.
    void Free(PageNumber page);

    /// A new, empty usage map. `tryFirst` is a page with other maps that is looked
    /// at for room before a fresh one is taken (0 = the page used last).
    RowId AllocateMap(PageNumber tryFirst = 0);
    void FreeMap(RowId map);

    /// The global map: a member is a free page.
    const UsageMap& FreePages() const { return m_free; }

private:
    void SetFree(PageNumber page, bool isFree);
    void NoticeRollbacks();

    Pager& m_pager;
    UsageMap m_free;
    PageNumber m_lowestFree = 0;   // no free page below it
    PageNumber m_mapPage = 0;      // where the last map went
    std::uint64_t m_rollbacks = 0; // the two above are void when the pager counts on
};

} // namespace jet
