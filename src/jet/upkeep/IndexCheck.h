#pragma once

#include "jet/index/IndexPage.h"
#include "jet/table/Table.h"
#include "jet/upkeep/PageLedger.h"

namespace jet {

/// Examines one index of a table: its tree page by page (owner, order, free
/// count, the node entries that name each child's last entry, the chain of
/// leaves) and its entries against keys computed from the rows.
class IndexCheck {
public:
    IndexCheck(Table& table, int physical, PageLedger& ledger, Findings& findings);

    void Examine();

private:
    std::string Where() const;
    /// Visits `page` and what is below; appends the leaf entries to m_entries.
    /// `lastEntry` gets the last entry below it, for the parent to compare.
    bool ExaminePage(PageNumber page, int depth, Bytes& lastEntry);
    void ExamineChain();
    void ExamineMap();
    void CompareWithRows();

    Table& m_table;
    Pager& m_pager;
    const PhysicalIndex& m_index;
    int m_physical;
    PageLedger& m_ledger;
    Findings& m_findings;

    struct Leaf {
        PageNumber page, previous, next;
    };
    std::vector<Leaf> m_leaves; ///< from left to right
    std::vector<PageNumber> m_treePages;
    Bytes m_bytes; ///< all leaf entries, one after another
    std::vector<std::size_t> m_ends;
    bool m_sound = true;
};

} // namespace jet
