#include "jet/upkeep/PageLedger.h"

#include <algorithm>

namespace jet {

std::uint32_t PageLedger::IdOf(const std::string& owner)
{
    // Pages of one owner come together: the search mostly ends at the first look.
    const auto at = std::find(m_names.rbegin(), m_names.rend(), owner);
    if (at != m_names.rend())
        return static_cast<std::uint32_t>(m_names.rend() - at);
    m_names.push_back(owner);
    return static_cast<std::uint32_t>(m_names.size());
}

bool PageLedger::Claim(PageNumber page, const std::string& owner)
{
    if (page >= m_owners.size()) {
        m_findings.Fault("Pagina " + std::to_string(page) + " van " + owner +
                         " ligt buiten het bestand.");
        return false;
    }
    std::uint32_t& known = m_owners[page];
    if (known != 0) {
        m_findings.Fault("Pagina " + std::to_string(page) + " hoort bij " + m_names[known - 1] +
                         " en ook bij " + owner + '.');
        return false;
    }
    known = IdOf(owner);
    return true;
}

bool PageLedger::ClaimShared(PageNumber page, const std::string& owner)
{
    return Belongs(page, owner) || Claim(page, owner);
}

bool PageLedger::Belongs(PageNumber page, const std::string& owner) const
{
    return IsClaimed(page) && m_names[m_owners[page] - 1] == owner;
}

void PageLedger::CompareWithFree(const UsageMap& free)
{
    std::size_t lost = 0;
    PageNumber firstLost = 0;
    for (PageNumber page = 0; page < m_owners.size(); ++page) {
        const bool isFree = free.Contains(page);
        if (isFree && m_owners[page] != 0)
            m_findings.Fault("Pagina " + std::to_string(page) + " van " +
                             m_names[m_owners[page] - 1] + " staat te boek als vrij.");
        if (!isFree && m_owners[page] == 0 && lost++ == 0)
            firstLost = page;
    }
    if (lost > 0)
        m_findings.Remark(
            std::to_string(lost) +
            " pagina's zijn verloren ruimte: niet in gebruik en niet vrij (de eerste is " +
            std::to_string(firstLost) + ").");
}

} // namespace jet
