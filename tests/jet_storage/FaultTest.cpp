#include "FaultyFileSystem.h"
#include "MemoryFileSystem.h"
#include "MinimalDatabase.h"
#include "PageModel.h"
#include "jet/base/Error.h"

#include <gtest/gtest.h>

using namespace jet_testing;
using Effect = FaultyFileSystem::Effect;
using jet::Flush;
using jet::Pager;

namespace {

const std::filesystem::path kFile = "boezem.mdb";
constexpr std::size_t kSmallCache = 16 * 4096;

/// A fault at each operation in turn: the error comes up, rolling back brings
/// the pager to the state before, and so is the file for the next opener.
void FailEverywhere(unsigned operations, Effect effect, jet::ErrorKind kind)
{
    PageModel::Pages expectedAfter;
    {
        MemoryFileSystem files;
        files.Put(kFile, MinimalDatabase(60));
        const auto pager = Pager::Open(files, kFile, {.cacheBytes = kSmallCache});
        expectedAfter = RunTransaction(
            *pager, RunTransaction(*pager, Stamps(*pager), 5, Flush::Yes), 6, Flush::Yes);
    }
    int errors = 0;
    for (int n = 1;; ++n) {
        SCOPED_TRACE(n);
        MemoryFileSystem files;
        files.Put(kFile, MinimalDatabase(60));
        FaultyFileSystem faulty(files);
        PageModel::Pages before, after;
        bool committed = false;
        bool struck = false;
        {
            const auto pager = Pager::Open(faulty, kFile, {.cacheBytes = kSmallCache});
            before = RunTransaction(*pager, Stamps(*pager), 5, Flush::Yes);
            faulty.Arm({operations, n, effect});
            try {
                after = RunTransaction(*pager, before, 6, Flush::Yes);
                committed = true;
            } catch (const jet::Error& error) {
                ++errors;
                EXPECT_TRUE(error.Kind() == kind) << error.what();
            }
            struck = faulty.HasStruck();
            const bool canMend = effect != Effect::FailForGood;
            if (!committed && canMend) {
                while (pager->Depth() > 0)
                    pager->Rollback();
                EXPECT_TRUE(Stamps(*pager) == before);
                // Nothing of it is left: the pager goes on as if it had not been.
                faulty.Disarm();
                after = RunTransaction(*pager, before, 6, Flush::Yes);
                committed = true;
                EXPECT_TRUE(Stamps(*pager) == after);
            }
        }
        faulty.Disarm();
        const auto pager = Pager::Open(files, kFile, {});
        const PageModel::Pages now = Stamps(*pager);
        // A disk that dies in the last flush of a commit leaves either state.
        const bool mayBeAfter = effect == Effect::FailForGood;
        EXPECT_TRUE(now == (committed ? after : before) || (mayBeAfter && now == expectedAfter));
        if (testing::Test::HasFailure() || !struck)
            break;
    }
    EXPECT_GT(errors, 1) << "the fault must have been met";
}

} // namespace

TEST(Fault, AFailingReadComesUpAndLeavesTheFileAsBefore)
{
    FailEverywhere(FaultyFileSystem::kRead, Effect::Fail, jet::ErrorKind::Io);
}

TEST(Fault, AFailingWriteComesUpAndLeavesTheFileAsBefore)
{
    FailEverywhere(FaultyFileSystem::kWrite, Effect::Fail, jet::ErrorKind::Io);
}

TEST(Fault, AFailingFlushComesUpAndLeavesTheFileAsBefore)
{
    FailEverywhere(FaultyFileSystem::kSync, Effect::Fail, jet::ErrorKind::Io);
}

TEST(Fault, AFullDiskComesUpAndLeavesTheFileAsBefore)
{
    FailEverywhere(FaultyFileSystem::kWrite, Effect::DiskFull, jet::ErrorKind::DiskFull);
}

TEST(Fault, ADiskThatDiesForWritingIsMendedByTheNextOpener)
{
    FailEverywhere(FaultyFileSystem::kWrite | FaultyFileSystem::kSync, Effect::FailForGood,
                   jet::ErrorKind::Io);
}

TEST(Fault, APagerThatCannotRollBackSaysSoAndLeavesTheJournal)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(60));
    FaultyFileSystem faulty(files);
    auto pager = Pager::Open(faulty, kFile, {.cacheBytes = kSmallCache});
    pager->Begin();
    for (jet::PageNumber page = 2; page < 60; ++page)
        Stamp(pager->Write(page).Data(), page);
    faulty.Arm({FaultyFileSystem::kWrite, 1, Effect::FailForGood});
    EXPECT_THROW(pager->Rollback(), jet::Error);
    faulty.Disarm();
    EXPECT_THROW(pager->Read(3), jet::Error);
    EXPECT_THROW(pager->Begin(), jet::Error);
    pager.reset();
    EXPECT_TRUE(files.Exists("boezem.mdb-journal"));
    pager = Pager::Open(files, kFile, {});
    EXPECT_EQ(Stamps(*pager), PageModel::Pages(60, 0));
}

TEST(Fault, CreatingOnAFullDiskLeavesNoFile)
{
    MemoryFileSystem files;
    FaultyFileSystem faulty(files);
    faulty.Arm({FaultyFileSystem::kWrite, 1, Effect::DiskFull});
    EXPECT_THROW(Pager::Create(faulty, kFile, MinimalDatabase(10), {}), jet::Error);
    EXPECT_TRUE(files.Names().empty());
}
