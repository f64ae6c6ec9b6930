#include "MemoryFileSystem.h"
#include "MinimalDatabase.h"
#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/storage/MapPage.h"
#include "jet/storage/PageAllocator.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

using namespace jet_testing;
using jet::PageAllocator;
using jet::PageNumber;
using jet::Pager;
using jet::RowId;
using jet::UsageMap;

namespace {

const std::filesystem::path kFile = "boezem.mdb";

/// A file with an open transaction, and room for page numbers up to `pages`.
struct OpenFile {
    explicit OpenFile(PageNumber pages = 8)
    {
        files.Put(kFile, MinimalDatabase(pages));
        pager = Pager::Open(files, kFile, {});
        pager->Begin();
    }
    ~OpenFile() { pager->Rollback(); }
    MemoryFileSystem files;
    std::unique_ptr<Pager> pager;
};

std::set<PageNumber> Members(const UsageMap& map)
{
    std::set<PageNumber> members;
    for (PageNumber page = map.NextFrom(0); page != 0; page = map.NextFrom(page + 1))
        members.insert(page);
    return members;
}

std::size_t RowLength(Pager& pager, RowId where)
{
    const jet::PageView view = pager.Read(where.page);
    return jet::MapPage(pager, where.page, view.Data()).At(where.slot).length;
}

/// Puts a row into a fresh map page, to be read as a map.
RowId PutRow(Pager& pager, const Bytes& row)
{
    PageAllocator pages(pager);
    const RowId where = pages.AllocateMap();
    jet::MapPage::SetRow(pager, where.page, where.slot, row);
    return where;
}

Bytes InlineRow(PageNumber first, std::size_t bitmapBytes,
                std::initializer_list<PageNumber> members)
{
    Bytes row(5 + bitmapBytes);
    jet::PutU32(row, 1, first);
    for (const PageNumber page : members)
        row[5 + (page - first) / 8] |=
            std::byte{static_cast<unsigned char>(1u << ((page - first) % 8))};
    return row;
}

} // namespace

TEST(UsageMap, BeginsInlineAndEmpty)
{
    OpenFile open;
    const UsageMap map(*open.pager, PageAllocator(*open.pager).AllocateMap());
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(RowLength(*open.pager, map.Where()), 69u);
    EXPECT_FALSE(map.Contains(3));
    EXPECT_EQ(map.NextFrom(0), 0u);
}

TEST(UsageMap, AgreesWithASetUnderRandomChanges)
{
    for (const PageNumber range : {300u, 3000u, 40000u}) {
        SCOPED_TRACE(range);
        OpenFile open(range + 100);
        PageAllocator pages(*open.pager);
        std::vector<UsageMap> maps;
        std::vector<std::set<PageNumber>> expected(5);
        for (std::size_t i = 0; i < expected.size(); ++i)
            maps.emplace_back(*open.pager, pages.AllocateMap());
        std::mt19937 random(range);
        for (int step = 0; step < 6000; ++step) {
            const std::size_t which = random() % maps.size();
            // Maps of different spread: the first everywhere, the last in one corner.
            const PageNumber page = static_cast<PageNumber>(2 + (range >> which) * which / 5 +
                                                            random() % (range >> which));
            if (random() % 3 != 0) {
                maps[which].Add(page);
                expected[which].insert(page);
            } else {
                maps[which].Remove(page);
                expected[which].erase(page);
            }
            ASSERT_EQ(maps[which].Contains(page), expected[which].contains(page));
            const PageNumber from = static_cast<PageNumber>(random() % range);
            const auto next = expected[which].lower_bound(from);
            ASSERT_EQ(maps[which].NextFrom(from), next == expected[which].end() ? 0 : *next);
        }
        for (std::size_t i = 0; i < maps.size(); ++i)
            EXPECT_EQ(Members(maps[i]), expected[i]);
    }
}

TEST(UsageMap, GrowsFromInlineByALongerRowToReferences)
{
    OpenFile open(40000);
    UsageMap map(*open.pager, PageAllocator(*open.pager).AllocateMap());
    std::set<PageNumber> expected;
    std::set<std::size_t> lengths;
    std::size_t references = 0;
    for (PageNumber page = 10; page < 36000; page += 7) {
        map.Add(page);
        expected.insert(page);
        lengths.insert(RowLength(*open.pager, map.Where()));
        references = map.BitmapPages().size();
        if (page % 101 == 3) {
            ASSERT_EQ(Members(map), expected);
        }
    }
    EXPECT_EQ(Members(map), expected);
    EXPECT_GT(lengths.size(), 10u) << "lengthened in steps";
    for (const std::size_t length : lengths)
        EXPECT_EQ((length - 69) % 4, 0u);
    EXPECT_EQ(references, 2u) << "one bitmap page per 32736 pages";
    EXPECT_EQ(open.pager->Read(map.BitmapPages()[0]).Data()[0], std::byte{5});
}

TEST(UsageMap, FarFromTheStartOfTheFileItBeginsThere)
{
    OpenFile open(30000);
    UsageMap map(*open.pager, PageAllocator(*open.pager).AllocateMap());
    map.Add(29000);
    map.Add(29400);
    map.Add(28950);
    EXPECT_EQ(Members(map), (std::set<PageNumber>{28950, 29000, 29400}));
    EXPECT_EQ(RowLength(*open.pager, map.Where()), 69u);
    EXPECT_TRUE(map.BitmapPages().empty());
}

TEST(UsageMap, AFullMapPageMakesForReferencesAtOnce)
{
    OpenFile open(10000);
    PageAllocator pages(*open.pager);
    std::vector<UsageMap> maps;
    const RowId first = pages.AllocateMap();
    maps.emplace_back(*open.pager, first);
    for (;;) {
        const RowId where = pages.AllocateMap();
        if (where.page != first.page)
            break;
        maps.emplace_back(*open.pager, where);
    }
    EXPECT_EQ(maps.size(), 57u) << "rows of 69 bytes and a slot each, behind a head of 14";
    for (std::size_t i = 0; i < maps.size(); ++i) {
        maps[i].Add(20);
        maps[i].Add(static_cast<PageNumber>(2000 + i));
    }
    for (std::size_t i = 0; i < maps.size(); ++i)
        EXPECT_EQ(Members(maps[i]), (std::set<PageNumber>{20, static_cast<PageNumber>(2000 + i)}));
}

TEST(UsageMap, FormsOfTheOriginalEngineAreRead)
{
    OpenFile open(3000);
    // Lengthened, and with a start page above 0.
    EXPECT_EQ(Members(UsageMap(*open.pager, PutRow(*open.pager, InlineRow(0, 92, {9, 735})))),
              (std::set<PageNumber>{9, 735}));
    EXPECT_EQ(
        Members(UsageMap(*open.pager, PutRow(*open.pager, InlineRow(1003, 64, {1003, 1514})))),
        (std::set<PageNumber>{1003, 1514}));
    UsageMap map(*open.pager, PutRow(*open.pager, InlineRow(1003, 64, {1003, 1514})));
    map.Add(1000);
    map.Add(1600);
    EXPECT_EQ(Members(map), (std::set<PageNumber>{1000, 1003, 1514, 1600}));
}

TEST(UsageMap, MembersBehindTheEndOfTheFileAreNotGiven)
{
    OpenFile open(100);
    const UsageMap map(*open.pager, PutRow(*open.pager, InlineRow(0, 64, {50, 200})));
    EXPECT_EQ(Members(map), (std::set<PageNumber>{50}));
    const UsageMap far(*open.pager, PutRow(*open.pager, InlineRow(0xFFFFFFF0, 64, {0xFFFFFFFF})));
    EXPECT_TRUE(far.IsEmpty());
}

TEST(UsageMap, DamageIsToldNotFollowed)
{
    OpenFile open(100);
    const auto expectDamaged = [&](const RowId where) {
        const UsageMap map(*open.pager, where);
        EXPECT_THROW(map.NextFrom(1), jet::Error);
        EXPECT_THROW(map.Contains(50), jet::Error);
    };
    expectDamaged({2, 0});                                       // no page of rows
    expectDamaged({1, 2});                                       // no such row
    expectDamaged({500, 0});                                     // no such page
    expectDamaged(PutRow(*open.pager, Bytes(69, std::byte{2}))); // no such form
    expectDamaged(PutRow(*open.pager, Bytes(3)));                // too short
    Bytes wild(69);
    wild[0] = std::byte{1};
    jet::PutU32(wild, 1, 7); // a page that is no bitmap
    expectDamaged(PutRow(*open.pager, wild));
    jet::PutU32(wild, 1, 0xFFFFFF); // behind the end
    expectDamaged(PutRow(*open.pager, wild));
    const RowId erased = PageAllocator(*open.pager).AllocateMap();
    jet::DataPageEdit(*open.pager, erased.page).Erase(erased.slot);
    expectDamaged(erased);
}

TEST(UsageMap, OnAPageOfRandomBytesNeverCrashes)
{
    OpenFile open(100);
    std::mt19937 random(31);
    for (int i = 0; i < 3000; ++i) {
        {
            const jet::PageEdit edit = open.pager->Write(10);
            for (std::byte& b : edit.Data())
                b = static_cast<std::byte>(random());
            edit.Data()[0] = std::byte{1};
            jet::PutU16(edit.Data(), 12, static_cast<std::uint16_t>(random() % 20));
        }
        UsageMap map(*open.pager, {10, static_cast<std::uint8_t>(random() % 20)});
        try {
            map.NextFrom(static_cast<PageNumber>(random() % 100));
            map.Add(static_cast<PageNumber>(random() % 100));
            map.Remove(static_cast<PageNumber>(random() % 100));
        } catch (const jet::Error&) {
        }
    }
}

TEST(MapPage, RowsGrowAndShrinkWithoutTouchingTheOthers)
{
    OpenFile open;
    std::mt19937 random(17);
    const jet::PageEdit edit = open.pager->Append();
    jet::DataPageEdit::Format(edit, jet::MapPage::kOwner);
    std::vector<Bytes> rows; // what each row should hold; empty = erased
    const auto rowBytes = [&](std::size_t i) {
        const auto row =
            jet::MapPage(*open.pager, edit.Number(), edit.Data()).At(static_cast<int>(i));
        return edit.Data().subspan(row.start, row.length);
    };
    for (int step = 0; step < 3000; ++step) {
        const std::size_t i = random() % (rows.size() + 1);
        const jet::MapPage page(*open.pager, edit.Number(), edit.Data());
        const std::size_t length = random() % 300;
        const std::size_t old = i < rows.size() ? rows[i].size() : 0;
        if (page.Free() + old < length + 2)
            continue;
        if (i == rows.size())
            rows.emplace_back();
        if (random() % 5 == 0 && i < rows.size() && i + 1 != rows.size()) {
            jet::DataPageEdit(*open.pager, edit.Number()).Erase(static_cast<int>(i));
            rows[i].clear();
        } else {
            jet::MapPage::Resize(*open.pager, edit.Number(), static_cast<int>(i), length);
            const std::size_t kept = std::min(length, rows[i].size());
            rows[i].resize(length);
            ASSERT_TRUE(std::equal(rows[i].begin(), rows[i].end(), rowBytes(i).begin()))
                << "old bytes stay, new ones are zero";
            for (std::size_t at = kept; at < length; ++at)
                rowBytes(i)[at] = rows[i][at] = static_cast<std::byte>(random());
        }
        std::size_t used = 14 + 2 * rows.size();
        for (std::size_t r = 0; r < rows.size(); ++r) {
            ASSERT_TRUE(
                std::equal(rows[r].begin(), rows[r].end(), rowBytes(r).begin(), rowBytes(r).end()));
            used += rows[r].size();
        }
        ASSERT_EQ(jet::GetU16(edit.Data(), 2), 4096 - used) << "the free count of the page";
    }
}
