#pragma once

#include "jet/storage/PageAllocator.h"
#include "jet/upkeep/Findings.h"

#include <string>
#include <vector>

namespace jet {

/// Who owns which page of a file: every page has one owner, or is free, or lost.
class PageLedger {
public:
    PageLedger(Pager& pager, Findings& findings) : m_findings(findings), m_owners(pager.PageCount())
    {}

    /// Notes `page` as belonging to `owner`, in words. A page outside the file or
    /// of another owner is a fault and gives false.
    bool Claim(PageNumber page, const std::string& owner);
    /// The same for a page that holds rows of several owners (usage maps).
    bool ClaimShared(PageNumber page, const std::string& owner);
    bool IsClaimed(PageNumber page) const { return page < m_owners.size() && m_owners[page] != 0; }
    /// Whether `page` was claimed under exactly these words.
    bool Belongs(PageNumber page, const std::string& owner) const;

    /// Compares with the map of free pages: a page in use that counts as free is
    /// a fault, one that is neither a remark.
    void CompareWithFree(const UsageMap& free);

private:
    std::uint32_t IdOf(const std::string& owner);

    Findings& m_findings;
    std::vector<std::uint32_t> m_owners; ///< by page: 0 = nobody, else position in m_names + 1
    std::vector<std::string> m_names;
};

} // namespace jet
