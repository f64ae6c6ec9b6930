#pragma once

#include "jet/storage/Pager.h"

#include <map>
#include <random>
#include <vector>

/// The pages of a file as a plain map, with transactions as plain copies: what
/// the pager's contents are compared with.
class PageModel {
public:
    using Pages = std::vector<std::uint64_t>; // the stamp that fills each page; page 0 left out

    explicit PageModel(jet::Pager& pager) : m_pages(pager.PageCount(), 0) {}

    void Begin() { m_levels.push_back(m_pages); }
    void Commit() { m_levels.pop_back(); }
    void Rollback()
    {
        m_pages = m_levels.back();
        m_levels.pop_back();
    }
    void Write(jet::PageNumber page, std::uint64_t stamp) { m_pages[page] = stamp; }
    void Append(std::uint64_t stamp) { m_pages.push_back(stamp); }

    const Pages& Now() const { return m_pages; }
    std::size_t Depth() const { return m_levels.size(); }

private:
    Pages m_pages;
    std::vector<Pages> m_levels;
};

/// Fills a page with a stamp, different at every place.
void Stamp(std::span<std::byte> page, std::uint64_t stamp);
/// The stamp of a page, and a failure when the page is not wholly of one stamp.
std::uint64_t StampOf(std::span<const std::byte> page);
/// The stamps of all pages from page 2 on (0 for pages 0 and 1).
PageModel::Pages Stamps(jet::Pager& pager);

/// One transaction of middling size, the same for the same seed: overwrites,
/// appends, inner levels of which some are rolled back. The pages it leaves are
/// the return value. Page 1 is not touched.
PageModel::Pages RunTransaction(jet::Pager& pager, PageModel::Pages before, std::uint32_t seed,
                                jet::Flush flush, int changes = 40);
