#include "MemoryFileSystem.h"
#include "MinimalDatabase.h"
#include "PageModel.h"
#include "TemporaryFolder.h"
#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"

#include <fstream>
#include <gtest/gtest.h>

using namespace jet_testing;
using jet::Error;
using jet::ErrorKind;
using jet::Flush;
using jet::PageNumber;
using jet::Pager;

namespace {

const std::filesystem::path kFile = "boezem.mdb";

template <typename Operation>
ErrorKind KindOf(Operation operation)
{
    try {
        operation();
    } catch (const Error& error) {
        EXPECT_NE(std::string(error.what()).find("boezem"), std::string::npos)
            << "the message names the file: " << error.what();
        return error.Kind();
    }
    ADD_FAILURE() << "no error";
    return ErrorKind::Query;
}

struct OpenFile {
    explicit OpenFile(PageNumber pages = 8, jet::PagerOptions options = {})
    {
        files.Put(kFile, MinimalDatabase(pages));
        pager = Pager::Open(files, kFile, options);
    }
    std::uint16_t CommitWord() const
    {
        return jet::GetU16(files.Get(kFile), jet::CommitWordsOffset(jet::FileVersion::Jet4));
    }
    MemoryFileSystem files;
    std::unique_ptr<Pager> pager;
};

} // namespace

TEST(Pager, AChangeNeedsATransaction)
{
    OpenFile open;
    EXPECT_EQ(KindOf([&] { open.pager->Write(3); }), ErrorKind::NoTransaction);
    EXPECT_EQ(KindOf([&] { open.pager->Append(); }), ErrorKind::NoTransaction);
    EXPECT_EQ(KindOf([&] { open.pager->Commit(Flush::No); }), ErrorKind::NoTransaction);
    EXPECT_EQ(KindOf([&] { open.pager->Rollback(); }), ErrorKind::NoTransaction);
}

TEST(Pager, APageBehindTheEndIsDamage)
{
    OpenFile open;
    EXPECT_EQ(KindOf([&] { open.pager->Read(8); }), ErrorKind::Damaged);
    open.pager->Begin();
    EXPECT_EQ(KindOf([&] { open.pager->Write(0xFFFFFFFF); }), ErrorKind::Damaged);
}

TEST(Pager, ACommitRaisesTheFirstCommitWordAndLeavesTheOthers)
{
    OpenFile open;
    const Bytes before = open.files.Get(kFile);
    open.pager->Begin();
    Stamp(open.pager->Write(3).Data(), 1);
    open.pager->Commit(Flush::No);
    Bytes after = open.files.Get(kFile);
    EXPECT_EQ(open.CommitWord(), 0x0102);
    jet::PutU16(after, 0xE00, 0x0101);
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + 4096, after.begin()))
        << "nothing else in the header changes";
}

TEST(Pager, TheCommitWordIsNeverZeroNorBelow0x100)
{
    EXPECT_EQ(jet::NextCommitWord(0), 0x0101);
    EXPECT_EQ(jet::NextCommitWord(0x0042), 0x0101);
    EXPECT_EQ(jet::NextCommitWord(0x0100), 0x0101);
    EXPECT_EQ(jet::NextCommitWord(0xFFFE), 0xFFFF);
    EXPECT_EQ(jet::NextCommitWord(0xFFFF), 0x0101);
}

TEST(Pager, ATransactionWithoutAChangeWritesNothing)
{
    OpenFile open;
    const Bytes before = open.files.Get(kFile);
    open.pager->Begin();
    open.pager->Read(4);
    open.pager->Begin();
    open.pager->Commit(Flush::Yes);
    open.pager->Commit(Flush::Yes);
    EXPECT_EQ(open.files.Get(kFile), before);
    EXPECT_EQ(open.files.Names().size(), 1u) << "not even a journal is made";
}

TEST(Pager, ARolledBackTransactionLeavesTheFileByteForByte)
{
    OpenFile open;
    const Bytes before = open.files.Get(kFile);
    open.pager->Begin();
    Stamp(open.pager->Write(4).Data(), 9);
    Stamp(open.pager->Append().Data(), 9);
    open.pager->Rollback();
    EXPECT_EQ(open.files.Get(kFile), before);
    EXPECT_EQ(open.pager->PageCount(), 8u);
}

TEST(Pager, ClosingRollsBackWhatIsOpenAndRemovesTheJournal)
{
    OpenFile open(200, {.cacheBytes = 16 * 4096});
    const Bytes before = open.files.Get(kFile);
    open.pager->Begin();
    open.pager->Begin();
    for (PageNumber page = 2; page < 200; ++page)
        Stamp(open.pager->Write(page).Data(), page);
    EXPECT_NE(open.files.Get(kFile), before) << "the cache is too small to keep all this";
    open.pager.reset();
    EXPECT_EQ(open.files.Get(kFile), before);
    EXPECT_EQ(open.files.Names().size(), 1u);
}

TEST(Pager, TheCacheStaysWithinItsBytesWhateverTheTransaction)
{
    constexpr std::size_t kCache = 64 * 4096;
    OpenFile open(8, {.cacheBytes = kCache});
    open.pager->Begin();
    for (int i = 0; i < 5000; ++i)
        Stamp(open.pager->Append().Data(), static_cast<std::uint64_t>(i + 1));
    EXPECT_LE(open.pager->CachedBytes(), kCache);
    std::mt19937 random(4);
    for (int i = 0; i < 5000; ++i)
        Stamp(open.pager->Write(static_cast<PageNumber>(8 + random() % 5000)).Data(), 77);
    EXPECT_LE(open.pager->CachedBytes(), kCache);
    open.pager->Commit(Flush::No);
    for (PageNumber page = 2; page < open.pager->PageCount(); ++page)
        StampOf(open.pager->Read(page).Data());
    EXPECT_LE(open.pager->CachedBytes(), kCache);
}

TEST(Pager, PinnedPagesStayEvenWhenThereAreMoreThanTheCacheHolds)
{
    OpenFile open(100, {.cacheBytes = 16 * 4096});
    open.pager->Begin();
    std::vector<jet::PageEdit> edits;
    for (PageNumber page = 2; page < 60; ++page)
        edits.push_back(open.pager->Write(page));
    for (PageNumber page = 60; page < 100; ++page)
        open.pager->Read(page);
    for (jet::PageEdit& edit : edits)
        Stamp(edit.Data(), edit.Number());
    edits.clear();
    open.pager->Commit(Flush::No);
    open.pager.reset();
    open.pager = Pager::Open(open.files, kFile, {});
    for (PageNumber page = 2; page < 60; ++page)
        EXPECT_EQ(StampOf(open.pager->Read(page).Data()), page);
    for (PageNumber page = 60; page < 100; ++page)
        EXPECT_EQ(StampOf(open.pager->Read(page).Data()), 0u);
}

TEST(Pager, CountersTellOfChangesAndRollbacks)
{
    OpenFile open;
    const auto changes = open.pager->ChangeCount();
    const auto rollbacks = open.pager->RollbackCount();
    open.pager->Begin();
    EXPECT_EQ(open.pager->ChangeCount(), changes);
    open.pager->Write(3);
    EXPECT_GT(open.pager->ChangeCount(), changes);
    open.pager->Begin();
    open.pager->Rollback();
    EXPECT_EQ(open.pager->RollbackCount(), rollbacks + 1);
    open.pager->Rollback();
    EXPECT_EQ(open.pager->RollbackCount(), rollbacks + 2);
}

TEST(Pager, AFileThatWouldReach2GBIsFull)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    {
        const Bytes start = MinimalDatabase(2);
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(start.data()),
                   static_cast<std::streamsize>(start.size()));
    }
    constexpr std::uint64_t kMost = (std::uint64_t{1} << 31) - 4096;
    std::filesystem::resize_file(path, kMost - 2 * 4096); // sparse
    const auto pager = Pager::Open(jet::FileSystem::System(), path, {});
    pager->Begin();
    Stamp(pager->Append().Data(), 1);
    Stamp(pager->Append().Data(), 2);
    EXPECT_EQ(KindOf([&] { pager->Append(); }), ErrorKind::FileFull);
    pager->Commit(Flush::No);
    EXPECT_EQ(std::filesystem::file_size(path), kMost);
    EXPECT_EQ(StampOf(pager->Read(pager->PageCount() - 1).Data()), 2u);
}

TEST(ChangeScope, OutsideATransactionIsOneOfItsOwn)
{
    OpenFile open;
    {
        jet::ChangeScope scope(*open.pager);
        Stamp(open.pager->Write(3).Data(), 1);
        scope.Done();
    }
    EXPECT_EQ(open.pager->Depth(), 0);
    {
        jet::ChangeScope scope(*open.pager);
        Stamp(open.pager->Write(3).Data(), 2);
    }
    EXPECT_EQ(open.pager->Depth(), 0);
    EXPECT_EQ(StampOf(open.pager->Read(3).Data()), 1u);
}

TEST(ChangeScope, ThatBreaksOffInsideATransactionMarksItFailed)
{
    OpenFile open;
    open.pager->Begin();
    {
        jet::ChangeScope scope(*open.pager);
        Stamp(open.pager->Write(3).Data(), 1);
    }
    EXPECT_EQ(KindOf([&] { open.pager->Read(3); }), ErrorKind::TransactionFailed);
    EXPECT_EQ(KindOf([&] { open.pager->Write(3); }), ErrorKind::TransactionFailed);
    EXPECT_EQ(KindOf([&] { open.pager->Begin(); }), ErrorKind::TransactionFailed);
    EXPECT_EQ(KindOf([&] { open.pager->Commit(Flush::No); }), ErrorKind::TransactionFailed);
    open.pager->Rollback();
    EXPECT_EQ(StampOf(open.pager->Read(3).Data()), 0u);
}

TEST(ChangeScope, ThatBreaksOffBeforeItsFirstChangeDoesNoHarm)
{
    OpenFile open;
    open.pager->Begin();
    Stamp(open.pager->Write(3).Data(), 1);
    {
        jet::ChangeScope scope(*open.pager);
    }
    open.pager->Commit(Flush::No);
    EXPECT_EQ(StampOf(open.pager->Read(3).Data()), 1u);
}

TEST(ChangeScope, AFailureInAnInnerLevelIsMendedByRollingThatLevelBack)
{
    OpenFile open;
    open.pager->Begin();
    Stamp(open.pager->Write(3).Data(), 1);
    open.pager->Begin();
    {
        jet::ChangeScope scope(*open.pager);
        Stamp(open.pager->Write(3).Data(), 2);
    }
    open.pager->Rollback();
    EXPECT_EQ(StampOf(open.pager->Read(3).Data()), 1u);
    open.pager->Commit(Flush::No);
}

TEST(ChangeScope, AFailureInAnOuterLevelOutlivesTheRollbackOfAnInnerOne)
{
    OpenFile open;
    open.pager->Begin();
    open.pager->Begin();
    open.pager->Begin();
    open.pager->Rollback();
    open.pager->Fail(); // at depth 2
    open.pager->Rollback();
    open.pager->Fail(); // at depth 1
    EXPECT_EQ(KindOf([&] { open.pager->Commit(Flush::No); }), ErrorKind::TransactionFailed);
    open.pager->Rollback();
    EXPECT_EQ(open.pager->Depth(), 0);
    open.pager->Begin();
    open.pager->Commit(Flush::No);
}
