#include "jet/storage/PageAllocator.h"
#include "MemoryFileSystem.h"
#include "MinimalDatabase.h"
#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/storage/MapPage.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

using namespace jet_testing;
using jet::Flush;
using jet::PageAllocator;
using jet::PageNumber;
using jet::Pager;
using jet::RowId;

namespace {

const std::filesystem::path kFile = "boezem.mdb";

std::set<PageNumber> FreePages(const PageAllocator& pages)
{
    std::set<PageNumber> free;
    for (PageNumber page = pages.FreePages().NextFrom(1); page != 0;
         page = pages.FreePages().NextFrom(page + 1))
        free.insert(page);
    return free;
}

/// Lays another global map over the one of a sound file.
Bytes WithGlobalMap(PageNumber filePages, PageNumber first, const std::set<PageNumber>& members)
{
    Bytes file = MinimalDatabase(filePages);
    const std::size_t row = 2 * 4096 - 69;
    std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(row), 69, std::byte{0});
    jet::PutU32(file, row + 1, first);
    for (const PageNumber page : members)
        file[row + 5 + (page - first) / 8] |=
            std::byte{static_cast<unsigned char>(1u << ((page - first) % 8))};
    return file;
}

} // namespace

TEST(PageAllocator, TakesTheLowestFreePageFirstThenLengthensTheFile)
{
    MemoryFileSystem files;
    std::set<PageNumber> free{10, 13};
    for (PageNumber page = 20; page < 512; ++page)
        free.insert(page);
    files.Put(kFile, WithGlobalMap(20, 0, free));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    PageAllocator pages(*pager);
    EXPECT_EQ(pages.Allocate().Number(), 10u);
    EXPECT_EQ(pages.Allocate().Number(), 13u);
    EXPECT_EQ(pages.Allocate().Number(), 20u);
    EXPECT_EQ(pager->PageCount(), 21u);
    EXPECT_FALSE(pages.FreePages().Contains(20));
    EXPECT_TRUE(pages.FreePages().Contains(21)) << "not yet existing pages count as free";
    pager->Rollback();
}

TEST(PageAllocator, GivesPagesOfZeros)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(20));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    PageAllocator pages(*pager);
    const PageNumber page = pages.Allocate().Number();
    {
        const auto edit = pager->Write(page);
        std::fill(edit.Data().begin(), edit.Data().end(), std::byte{0xEE});
    }
    pages.Free(page);
    EXPECT_EQ(jet::GetU32(pager->Read(page).Data(), 0), 0u) << "no page of any kind any more";
    const auto again = pages.Allocate();
    EXPECT_EQ(again.Number(), page);
    EXPECT_TRUE(std::all_of(again.Data().begin(), again.Data().end(),
                            [](std::byte b) { return b == std::byte{0}; }));
}

TEST(PageAllocator, AgreesWithASetUnderRandomChanges)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(20));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    PageAllocator pages(*pager);
    std::mt19937 random(3);
    std::vector<PageNumber> taken;
    std::set<PageNumber> free;
    for (int step = 0; step < 20000; ++step) {
        if (random() % 3 != 0 || taken.empty()) {
            const PageNumber page = pages.Allocate().Number();
            if (!free.empty()) {
                ASSERT_EQ(page, *free.begin());
                free.erase(free.begin());
            }
            taken.push_back(page);
        } else {
            const std::size_t i = random() % taken.size();
            pages.Free(taken[i]);
            free.insert(taken[i]);
            taken[i] = taken.back();
            taken.pop_back();
        }
    }
    EXPECT_EQ(FreePages(pages), free);
    pager->Commit(Flush::No);
}

TEST(PageAllocator, ARollbackGivesThePagesBack)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(20));
    const auto pager = Pager::Open(files, kFile, {});
    PageAllocator pages(*pager);
    pager->Begin();
    const PageNumber first = pages.Allocate().Number();
    const RowId map = pages.AllocateMap();
    pager->Begin();
    pages.Free(first);
    pages.FreeMap(map);
    EXPECT_EQ(pages.Allocate().Number(), first);
    pager->Rollback();
    EXPECT_NE(pages.Allocate().Number(), first) << "it is in use again";
    pager->Rollback();
    pager->Begin();
    EXPECT_EQ(pages.Allocate().Number(), first);
    EXPECT_EQ(pages.AllocateMap(), map);
    pager->Rollback();
}

TEST(PageAllocator, RefusesToFreeWhatIsNotInUse)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(20));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    PageAllocator pages(*pager);
    const PageNumber page = pages.Allocate().Number();
    pages.Free(page);
    EXPECT_THROW(pages.Free(page), jet::Error) << "twice";
    EXPECT_THROW(pages.Free(3), jet::Error) << "of fixed role";
    EXPECT_THROW(pages.Free(5000), jet::Error) << "behind the end";
}

TEST(PageAllocator, AFileBeyond125MBKeepsATrueMap)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(20));
    constexpr PageNumber kPages = 34000; // 139 MB; the inline map on page 1 ends before
    {
        const auto pager = Pager::Open(files, kFile, {});
        pager->Begin();
        PageAllocator pages(*pager);
        std::set<std::size_t> forms;
        PageNumber last = 0;
        while (last < kPages) {
            last = pages.Allocate().Number();
            forms.insert(pages.FreePages().BitmapPages().size());
        }
        EXPECT_EQ(forms, (std::set<std::size_t>{0, 1, 2}));
        EXPECT_TRUE(FreePages(pages).empty());
        EXPECT_TRUE(pages.FreePages().Contains(pager->PageCount()));
        pages.Free(100);
        pages.Free(33500);
        pager->Commit(Flush::No);
    }
    const auto pager = Pager::Open(files, kFile, {});
    PageAllocator pages(*pager);
    EXPECT_EQ(FreePages(pages), (std::set<PageNumber>{100, 33500}));
    for (const PageNumber bitmap : pages.FreePages().BitmapPages())
        EXPECT_FALSE(pages.FreePages().Contains(bitmap)) << "the map's own pages are in use";
    pager->Begin();
    EXPECT_EQ(pages.Allocate().Number(), 100u);
    EXPECT_EQ(pages.Allocate().Number(), 33500u);
    const PageNumber end = pager->PageCount();
    EXPECT_EQ(pages.Allocate().Number(), end);
    pager->Rollback();
}

TEST(PageAllocator, TheGlobalMapIsLengthenedOnItsPageFirst)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(20));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    PageAllocator pages(*pager);
    while (pager->PageCount() < 2000)
        pages.Allocate();
    const jet::PageView view = pager->Read(1);
    const jet::MapPage page(*pager, 1, view.Data());
    EXPECT_EQ(page.At(0).length, 257u) << "5 + 252 bytes: whole steps of 4 that hold 2000 pages";
    EXPECT_EQ(page.At(1).length, 69u) << "the second map keeps its row";
    pager->Rollback();
}

TEST(PageAllocator, PagesBelowTheStartOfTheMapAreTakenForUsed)
{
    // Some writers move the start of the map and call everything outside it free.
    MemoryFileSystem files;
    std::set<PageNumber> free;
    for (PageNumber page = 1445; page < 1024 + 512; ++page)
        free.insert(page);
    files.Put(kFile, WithGlobalMap(1445, 1024, free));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    PageAllocator pages(*pager);
    EXPECT_TRUE(FreePages(pages).empty());
    EXPECT_EQ(pages.Allocate().Number(), 1445u);
    pages.Free(700); // below the start: now the map must reach down to it
    EXPECT_EQ(FreePages(pages), (std::set<PageNumber>{700}));
    while (pager->PageCount() < 1700)
        pages.Allocate();
    EXPECT_TRUE(FreePages(pages).empty());
    pager->Rollback();
}

TEST(PageAllocator, AWildGlobalMapNeitherHangsNorGivesUsedPages)
{
    for (const PageNumber first : {0xFFFFFFF0u, 0x80000000u, 5000u, 0xFFFFFFFFu}) {
        MemoryFileSystem files;
        Bytes file = MinimalDatabase(300);
        jet::PutU32(file, 2 * 4096 - 69 + 1, first);
        files.Put(kFile, file);
        const auto pager = Pager::Open(files, kFile, {});
        pager->Begin();
        try {
            PageAllocator pages(*pager);
            const PageNumber page = pages.Allocate().Number();
            EXPECT_GE(page, 300u);
            pages.Free(page);
            pages.Free(200);
            EXPECT_EQ(pages.Allocate().Number(), 200u);
        } catch (const jet::Error& error) {
            EXPECT_EQ(error.Kind(), jet::ErrorKind::Damaged);
        }
        pager->Rollback();
    }
}

TEST(PageAllocator, MapsShareAPageAndReuseErasedRows)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(20));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    PageAllocator pages(*pager);
    const RowId one = pages.AllocateMap();
    const RowId two = pages.AllocateMap();
    const RowId three = pages.AllocateMap();
    EXPECT_EQ(one.page, three.page);
    jet::UsageMap(*pager, three).Add(15);
    pages.FreeMap(two);
    EXPECT_EQ(pages.AllocateMap(), two);
    EXPECT_TRUE(jet::UsageMap(*pager, two).IsEmpty());
    EXPECT_TRUE(jet::UsageMap(*pager, three).Contains(15));

    PageAllocator later(*pager); // knows nothing of the page used so far
    EXPECT_EQ(later.AllocateMap(one.page).page, one.page);
    EXPECT_NE(later.AllocateMap(3).page, 3u) << "page 3 is no page of maps";
    pager->Rollback();
}

TEST(PageAllocator, FreesTheBitmapPagesOfAMapAndAnEmptyMapPage)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(9000));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    PageAllocator pages(*pager);
    const std::set<PageNumber> before = FreePages(pages);
    const RowId map = pages.AllocateMap();
    jet::UsageMap usage(*pager, map);
    usage.Add(10);
    usage.Add(8000);
    ASSERT_EQ(usage.BitmapPages().size(), 1u);
    const PageNumber bitmap = usage.BitmapPages()[0];
    pages.FreeMap(map);
    std::set<PageNumber> expected = before;
    expected.insert({map.page, bitmap});
    EXPECT_EQ(FreePages(pages), expected);
    pager->Rollback();
}
