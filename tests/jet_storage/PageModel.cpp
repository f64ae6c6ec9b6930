#include "PageModel.h"

#include "jet/base/ByteOrder.h"

#include <gtest/gtest.h>

void Stamp(std::span<std::byte> page, std::uint64_t stamp)
{
    for (std::size_t at = 0; at < page.size(); at += 8)
        jet::PutU64(page, at, stamp == 0 ? 0 : stamp ^ (at << 40));
}

std::uint64_t StampOf(std::span<const std::byte> page)
{
    const std::uint64_t stamp = jet::GetU64(page, 0);
    for (std::size_t at = 0; at < page.size(); at += 8) {
        if (jet::GetU64(page, at) != (stamp == 0 ? 0 : stamp ^ (at << 40))) {
            ADD_FAILURE() << "a page of mixed content, from byte " << at;
            return ~std::uint64_t{0};
        }
    }
    return stamp;
}

PageModel::Pages Stamps(jet::Pager& pager)
{
    PageModel::Pages stamps(pager.PageCount(), 0);
    for (jet::PageNumber page = 2; page < pager.PageCount(); ++page)
        stamps[page] = StampOf(pager.Read(page).Data());
    return stamps;
}

PageModel::Pages RunTransaction(jet::Pager& pager, PageModel::Pages before, std::uint32_t seed,
                                jet::Flush flush, int changes)
{
    std::mt19937 random(seed);
    PageModel::Pages now = std::move(before);
    const auto change = [&] {
        const std::uint64_t stamp = (std::uint64_t{seed} << 32) + random() + 1;
        if (random() % 4 == 0) {
            Stamp(pager.Append().Data(), stamp);
            now.push_back(stamp);
        } else {
            const auto page = static_cast<jet::PageNumber>(2 + random() % (now.size() - 2));
            Stamp(pager.Write(page).Data(), stamp);
            now[page] = stamp;
        }
    };
    pager.Begin();
    for (int i = 0; i < changes; ++i) {
        change();
        if (i % 8 == 7) {
            const PageModel::Pages kept = now;
            pager.Begin();
            change();
            pager.Begin();
            change();
            change();
            pager.Commit(jet::Flush::No);
            if (random() % 2 == 0) {
                pager.Commit(jet::Flush::No);
            } else {
                pager.Rollback();
                now = kept;
            }
        }
    }
    pager.Commit(flush);
    return now;
}
