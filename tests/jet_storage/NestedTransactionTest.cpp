#include "FaultyFileSystem.h"
#include "MemoryFileSystem.h"
#include "MinimalDatabase.h"
#include "PageModel.h"
#include "jet/base/Error.h"

#include <gtest/gtest.h>

using namespace jet_testing;
using jet::Flush;
using jet::PageNumber;
using jet::Pager;

namespace {

const std::filesystem::path kFile = "boezem.mdb";
constexpr std::size_t kSmallCache = 16 * 4096; // so that changed pages are spilled

/// Random changes at random depths, compared with the model after each end of a
/// transaction, through a cache of `cacheBytes`; every now and then the file is
/// closed and opened again.
void CompareWithModel(std::uint32_t seed, std::size_t cacheBytes, int steps)
{
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(40));
    const jet::PagerOptions options{.cacheBytes = cacheBytes};
    auto pager = Pager::Open(files, kFile, options);
    PageModel model(*pager);
    std::uint64_t stamp = 0;
    for (int step = 0; step < steps; ++step) {
        const unsigned choice = random() % 100;
        if (model.Depth() == 0 || (choice < 8 && model.Depth() < 9)) {
            pager->Begin();
            model.Begin();
        } else if (choice < 12) {
            pager->Commit(Flush::No);
            model.Commit();
            ASSERT_EQ(Stamps(*pager), model.Now()) << "step " << step;
        } else if (choice < 16) {
            pager->Rollback();
            model.Rollback();
            ASSERT_EQ(Stamps(*pager), model.Now()) << "step " << step;
        } else if (choice < 30) {
            Stamp(pager->Append().Data(), ++stamp);
            model.Append(stamp);
        } else {
            const auto page = static_cast<PageNumber>(2 + random() % (model.Now().size() - 2));
            Stamp(pager->Write(page).Data(), ++stamp);
            model.Write(page, stamp);
        }
        ASSERT_EQ(pager->Depth(), static_cast<int>(model.Depth()));
        ASSERT_EQ(pager->PageCount(), model.Now().size());
        if (model.Depth() == 0 && random() % 8 == 0) {
            pager.reset();
            ASSERT_EQ(files.Names(), std::vector<std::string>{kFile.string()});
            ASSERT_EQ(files.Get(kFile).size(), model.Now().size() * 4096);
            pager = Pager::Open(files, kFile, options);
            ASSERT_EQ(Stamps(*pager), model.Now()) << "step " << step;
        }
    }
}

} // namespace

TEST(NestedTransaction, RandomChangesAgreeWithTheModel)
{
    for (std::uint32_t seed = 1; seed <= 10; ++seed)
        CompareWithModel(seed, 64u << 20, 2000);
}

TEST(NestedTransaction, RandomChangesAgreeWithTheModelWhenPagesAreSpilled)
{
    for (std::uint32_t seed = 101; seed <= 120; ++seed)
        CompareWithModel(seed, kSmallCache, 2000);
}

TEST(NestedTransaction, AnInnerRollbackUndoesTheInnerPartOnlyFiveDeep)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(12));
    const auto pager = Pager::Open(files, kFile, {});
    for (std::uint64_t depth = 1; depth <= 5; ++depth) {
        pager->Begin();
        Stamp(pager->Write(3).Data(), depth);
        Stamp(pager->Write(static_cast<PageNumber>(3 + depth)).Data(), depth);
    }
    for (std::uint64_t depth = 5; depth >= 2; --depth) {
        EXPECT_EQ(StampOf(pager->Read(3).Data()), depth);
        pager->Rollback();
        EXPECT_EQ(StampOf(pager->Read(3).Data()), depth - 1);
        EXPECT_EQ(StampOf(pager->Read(static_cast<PageNumber>(3 + depth)).Data()), 0u);
    }
    pager->Commit(Flush::Yes);
    EXPECT_EQ(Stamps(*pager), (PageModel::Pages{0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(NestedTransaction, WhatAnInnerCommitKeptIsUndoneWithTheOuterLevel)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(8));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    Stamp(pager->Write(4).Data(), 1);
    pager->Begin();
    Stamp(pager->Write(4).Data(), 2);
    pager->Begin();
    Stamp(pager->Write(4).Data(), 3);
    Stamp(pager->Write(5).Data(), 3);
    Stamp(pager->Append().Data(), 3);
    pager->Commit(Flush::No);
    pager->Rollback();
    EXPECT_EQ(Stamps(*pager), (PageModel::Pages{0, 0, 0, 0, 1, 0, 0, 0}));
    pager->Rollback();
    EXPECT_EQ(Stamps(*pager), PageModel::Pages(8, 0));
}

TEST(NestedTransaction, AViewHeldAcrossARollbackShowsTheOldContent)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(8));
    const auto pager = Pager::Open(files, kFile, {});
    for (const int depth : {1, 2}) {
        for (int i = 0; i < depth; ++i)
            pager->Begin();
        Stamp(pager->Write(4).Data(), 7);
        const jet::PageView view = pager->Read(4);
        EXPECT_EQ(StampOf(view.Data()), 7u);
        pager->Rollback();
        EXPECT_EQ(StampOf(view.Data()), 0u);
        for (int i = 1; i < depth; ++i)
            pager->Rollback();
    }
}

TEST(NestedTransaction, AViewOfAPageThatVanishesStaysReadable)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(8));
    const auto pager = Pager::Open(files, kFile, {});
    pager->Begin();
    const PageNumber added = pager->Append().Number();
    {
        const jet::PageView view = pager->Read(added);
        pager->Rollback();
        EXPECT_EQ(view.Data().size(), 4096u);
        EXPECT_THROW(pager->Read(added), jet::Error);
        pager->Begin();
        Stamp(pager->Append().Data(), 5);
        EXPECT_EQ(StampOf(view.Data()), 0u) << "the new page of that number is another one";
        pager->Commit(Flush::No);
    }
    EXPECT_EQ(StampOf(pager->Read(added).Data()), 5u);
}

TEST(NestedTransaction, ImagesOfInnerLevelsGoToAFileWhenTheyAreMany)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(400));
    const auto pager = Pager::Open(files, kFile, {.cacheBytes = kSmallCache});
    pager->Begin();
    for (PageNumber page = 2; page < 400; ++page)
        Stamp(pager->Write(page).Data(), 1000 + page);
    pager->Begin();
    for (PageNumber page = 2; page < 400; ++page)
        Stamp(pager->Write(page).Data(), 2000 + page);
    EXPECT_TRUE(files.Exists("boezem.mdb-savepoint"));
    EXPECT_LE(pager->CachedBytes(), kSmallCache + 4 * 4096);
    pager->Rollback();
    for (PageNumber page = 2; page < 400; ++page)
        ASSERT_EQ(StampOf(pager->Read(page).Data()), 1000 + page);
    pager->Commit(Flush::No);
    EXPECT_FALSE(files.Exists("boezem.mdb-savepoint"));
}

TEST(NestedTransaction, ManyInnerTransactionsDoNotHoardImages)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(40));
    const auto pager = Pager::Open(files, kFile, {.cacheBytes = kSmallCache});
    pager->Begin();
    Stamp(pager->Write(5).Data(), 1);
    pager->Begin();
    for (std::uint64_t i = 0; i < 1000; ++i) {
        pager->Begin();
        Stamp(pager->Write(5).Data(), 2 + i);
        pager->Commit(Flush::No);
    }
    EXPECT_FALSE(files.Exists("boezem.mdb-savepoint")) << "one image is enough";
    pager->Rollback();
    EXPECT_EQ(StampOf(pager->Read(5).Data()), 1u);
    pager->Rollback();
}
