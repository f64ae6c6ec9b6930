#include "FaultyFileSystem.h"
#include "MemoryFileSystem.h"
#include "MinimalDatabase.h"
#include "PageModel.h"
#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"

#include <gtest/gtest.h>
#include <optional>

using namespace jet_testing;
using Effect = FaultyFileSystem::Effect;
using jet::Flush;
using jet::Pager;

namespace {

const std::filesystem::path kFile = "boezem.mdb";
const std::filesystem::path kJournal = "boezem.mdb-journal";
constexpr std::size_t kSmallCache = 16 * 4096;
constexpr std::size_t kLargeCache = 64u << 20;
constexpr std::uint32_t kSeed = 11;

/// Two transactions, of which the second one meets the fault: then the journal
/// of the first is still there, as it is in daily use.
struct Course {
    PageModel::Pages before, after;
    bool committed = false; ///< Commit has returned
};

Course RunOn(jet::FileSystem& files, std::size_t cacheBytes, Flush flush,
             const std::function<void()>& beforeSecond = {})
{
    Course run;
    const auto pager = Pager::Open(files, kFile, {.cacheBytes = cacheBytes});
    run.before = RunTransaction(*pager, Stamps(*pager), kSeed, Flush::Yes);
    if (beforeSecond)
        beforeSecond();
    try {
        run.after = RunTransaction(*pager, run.before, kSeed + 1, flush);
        run.committed = true;
    } catch (const jet::Error&) {
    }
    return run;
}

/// What the second transaction leaves when nothing goes wrong.
PageModel::Pages ExpectedAfter(std::size_t cacheBytes)
{
    MemoryFileSystem files;
    files.Put(kFile, MinimalDatabase(60));
    return RunOn(files, cacheBytes, Flush::Yes).after;
}

/// Opens the file as the next process would and compares.
void ExpectBeforeOrAfter(MemoryFileSystem& files, const Course& run, const PageModel::Pages& after,
                         bool mustBeAfter)
{
    {
        const auto pager = Pager::Open(files, kFile, {});
        const PageModel::Pages now = Stamps(*pager);
        if (mustBeAfter) {
            EXPECT_TRUE(now == after) << "a committed transaction was lost";
        } else {
            EXPECT_TRUE(now == run.before || now == after) << "the file is between two states";
        }
    }
    EXPECT_EQ(files.Names(), std::vector<std::string>{kFile.string()});
    EXPECT_EQ(files.Get(kFile).size() % 4096, 0u);
    EXPECT_GE(jet::GetU16(files.Get(kFile), 0xE00), 0x0100);
}

/// The process dies at each of its changes in turn, in memory that outlives it.
int DieEverywhere(std::size_t cacheBytes, Flush flush, Effect effect)
{
    const PageModel::Pages after = ExpectedAfter(cacheBytes);
    for (int n = 1;; ++n) {
        SCOPED_TRACE(n);
        MemoryFileSystem files;
        files.Put(kFile, MinimalDatabase(60));
        FaultyFileSystem faulty(files);
        const Course run = RunOn(faulty, cacheBytes, flush, [&] {
            faulty.Arm({FaultyFileSystem::kChange, n, effect});
        });
        if (!faulty.HasStruck())
            return n - 1;
        ExpectBeforeOrAfter(files, run, after, run.committed);
        if (testing::Test::HasFailure())
            return n;
    }
}

} // namespace

TEST(Crash, AtAnyChangeLeavesTheStateBeforeOrAfter)
{
    for (const Flush flush : {Flush::No, Flush::Yes}) {
        const int places = DieEverywhere(kLargeCache, flush, Effect::Die);
        EXPECT_GT(places, 5);
    }
}

TEST(Crash, AtAnyChangeWithTheLastWriteTornLeavesTheStateBeforeOrAfter)
{
    EXPECT_GT(DieEverywhere(kLargeCache, Flush::Yes, Effect::DieTorn), 5);
}

TEST(Crash, WhilePagesAreSpilledLeavesTheStateBeforeOrAfter)
{
    for (const Effect effect : {Effect::Die, Effect::DieTorn}) {
        const int places = DieEverywhere(kSmallCache, Flush::No, effect);
        EXPECT_GT(places, 40) << "the small cache should make for many writes";
    }
}

TEST(Crash, WhileACrashIsBeingMendedLeavesTheStateBeforeOrAfter)
{
    const PageModel::Pages after = ExpectedAfter(kSmallCache);
    // A file in the middle of a transaction: most pages written, journal hot.
    MemoryFileSystem crashed;
    crashed.Put(kFile, MinimalDatabase(60));
    Course run;
    {
        FaultyFileSystem faulty(crashed);
        run = RunOn(faulty, kSmallCache, Flush::No, [&] {
            faulty.Arm({FaultyFileSystem::kWrite, 30, Effect::Die});
        });
        ASSERT_TRUE(faulty.HasStruck());
    }
    const Bytes file = crashed.Get(kFile);
    const Bytes journal = crashed.Get(kJournal);
    for (const Effect effect : {Effect::Die, Effect::DieTorn}) {
        for (int n = 1;; ++n) {
            SCOPED_TRACE(n);
            MemoryFileSystem files;
            files.Put(kFile, file);
            files.Put(kJournal, journal);
            FaultyFileSystem faulty(files);
            faulty.Arm({FaultyFileSystem::kChange, n, effect});
            try {
                Pager::Open(faulty, kFile, {});
            } catch (const jet::Error&) {
            }
            if (!faulty.HasStruck()) {
                EXPECT_GT(n, 10);
                break;
            }
            ExpectBeforeOrAfter(files, run, after, false);
            const auto pager = Pager::Open(files, kFile, {});
            ASSERT_TRUE(Stamps(*pager) == run.before);
        }
    }
}

TEST(Crash, OfThePowerAtAnyChangeLeavesTheStateBeforeOrAfter)
{
    std::mt19937 random(2024);
    for (const std::size_t cacheBytes : {kLargeCache, kSmallCache}) {
        const PageModel::Pages after = ExpectedAfter(cacheBytes);
        for (const Flush flush : {Flush::No, Flush::Yes}) {
            for (int n = 1;; ++n) {
                bool struck = false;
                for (int luck = 0; luck < 6; ++luck) {
                    SCOPED_TRACE(testing::Message() << "change " << n << ", luck " << luck);
                    MemoryFileSystem files;
                    files.Put(kFile, MinimalDatabase(60));
                    FaultyFileSystem faulty(files);
                    const Course run = RunOn(faulty, cacheBytes, flush, [&] {
                        faulty.Arm({FaultyFileSystem::kChange, n, Effect::Die});
                    });
                    struck = faulty.HasStruck();
                    files.PowerLoss(random);
                    ExpectBeforeOrAfter(files, run, after, run.committed && flush == Flush::Yes);
                    ASSERT_FALSE(testing::Test::HasFailure());
                }
                if (!struck)
                    break;
            }
        }
    }
}

TEST(Crash, OfThePowerInALaterTransactionNeverMixesTwo)
{
    // Unflushed commits follow each other; whichever is cut short, the file must
    // be as after one of them, and not before the last flushed one.
    std::mt19937 random(77);
    std::vector<PageModel::Pages> states;
    const auto run = [&states](jet::FileSystem& files) {
        states.assign(1, PageModel::Pages(60, 0));
        const auto pager = Pager::Open(files, kFile, {.cacheBytes = kSmallCache});
        PageModel::Pages now = Stamps(*pager);
        for (std::uint32_t i = 0; i < 5; ++i) {
            now = RunTransaction(*pager, now, 300 + i, i == 2 ? Flush::Yes : Flush::No, 10);
            states.push_back(now);
        }
    };
    MemoryFileSystem reference;
    reference.Put(kFile, MinimalDatabase(60));
    run(reference);
    const std::vector<PageModel::Pages> expected = states;
    for (int n = 1;; ++n) {
        SCOPED_TRACE(n);
        MemoryFileSystem files;
        files.Put(kFile, MinimalDatabase(60));
        FaultyFileSystem faulty(files);
        faulty.Arm({FaultyFileSystem::kChange, n, Effect::Die});
        try {
            run(faulty);
        } catch (const jet::Error&) {
        }
        const std::size_t done = states.size() - 1;
        if (!faulty.HasStruck()) {
            EXPECT_GT(n, 30);
            break;
        }
        files.PowerLoss(random);
        const auto pager = Pager::Open(files, kFile, {});
        const PageModel::Pages now = Stamps(*pager);
        const auto found = std::find(expected.begin(), expected.end(), now);
        ASSERT_NE(found, expected.end()) << "a state that never was";
        const auto state = static_cast<std::size_t>(found - expected.begin());
        EXPECT_LE(state, done + 1);
        if (done >= 3) {
            EXPECT_GE(state, 3u) << "the flushed commit is lost";
        }
    }
}

namespace {

/// A file in the middle of a transaction, with its hot journal.
struct Interrupted {
    Interrupted()
    {
        files.Put(kFile, MinimalDatabase(60));
        FaultyFileSystem faulty(files);
        run = RunOn(faulty, kSmallCache, Flush::No, [&] {
            faulty.Arm({FaultyFileSystem::kWrite, 30, Effect::Die});
        });
        EXPECT_TRUE(faulty.HasStruck());
    }
    MemoryFileSystem files;
    Course run;
};

} // namespace

TEST(LeftJournal, IsReadThroughByAReaderThatWritesNothing)
{
    Interrupted left;
    const Bytes file = left.files.Get(kFile);
    const Bytes journal = left.files.Get(kJournal);
    {
        const auto pager = Pager::Open(
            left.files, kFile, {.access = jet::Access::ReadOnly, .cacheBytes = kSmallCache});
        EXPECT_TRUE(pager->IsReadOnly());
        EXPECT_TRUE(Stamps(*pager) == left.run.before);
    }
    EXPECT_EQ(left.files.Get(kFile), file);
    EXPECT_EQ(left.files.Get(kJournal), journal);
    const auto pager = Pager::Open(left.files, kFile, {});
    EXPECT_TRUE(Stamps(*pager) == left.run.before);
}

TEST(LeftJournal, OfAnotherFileIsSetAsideAndNotPlayedBack)
{
    Interrupted left;
    const Bytes journal = left.files.Get(kJournal);
    Bytes other = MinimalDatabase(70);
    jet::ToggleHeaderMask(std::span(other).first(4096), jet::FileVersion::Jet4);
    jet::PutU16(other, 0x6A, 0x1234); // what differs from file to file
    jet::ToggleHeaderMask(std::span(other).first(4096), jet::FileVersion::Jet4);
    left.files.Put(kFile, other);
    Pager::Open(left.files, kFile, {});
    EXPECT_EQ(left.files.Get(kFile), other);
    EXPECT_FALSE(left.files.Exists(kJournal));
    EXPECT_EQ(left.files.Get("boezem.mdb-journal-vreemd"), journal);
}

TEST(LeftJournal, OfAnotherStateOfTheFileIsNotPlayedBack)
{
    Interrupted left;
    Bytes backup = left.files.Get(kFile);
    jet::PutU16(backup, 0xE00, 0x01FF); // another program has gone on with it
    left.files.Put(kFile, backup);
    Pager::Open(left.files, kFile, {});
    EXPECT_EQ(left.files.Get(kFile), backup);
    EXPECT_FALSE(left.files.Exists(kJournal));
}

TEST(LeftJournal, OfALongerFileIsNotPlayedBack)
{
    Interrupted left;
    Bytes cut = left.files.Get(kFile);
    cut.resize(20 * 4096);
    left.files.Put(kFile, cut);
    Pager::Open(left.files, kFile, {});
    EXPECT_EQ(left.files.Get(kFile), cut);
}

TEST(LeftJournal, ThatIsForeignIsIgnoredByAReader)
{
    Interrupted left;
    Bytes backup = left.files.Get(kFile);
    jet::PutU16(backup, 0xE00, 0x01FF);
    left.files.Put(kFile, backup);
    Pager::Open(left.files, kFile, {.access = jet::Access::ReadOnly});
    EXPECT_TRUE(left.files.Exists(kJournal));
}

TEST(LeftJournal, IsNotPlayedIntoANewFileOfTheSameName)
{
    Interrupted left;
    left.files.Remove(kFile);
    EXPECT_THROW(Pager::Open(left.files, kFile, {}), jet::Error);
    const Bytes first = MinimalDatabase(10);
    const auto pager = Pager::Create(left.files, kFile, first, {});
    EXPECT_EQ(left.files.Get(kFile), first);
    EXPECT_FALSE(left.files.Exists(kJournal));
    EXPECT_TRUE(left.files.Exists("boezem.mdb-journal-vreemd"));
}

TEST(LeftJournal, OfRandomOrCutOffBytesDoesNoHarm)
{
    std::mt19937 random(5);
    const Bytes database = MinimalDatabase(20);
    for (const std::size_t size : {0u, 1u, 511u, 512u, 513u, 5000u, 40000u}) {
        MemoryFileSystem files;
        files.Put(kFile, database);
        Bytes noise(size);
        for (std::byte& b : noise)
            b = static_cast<std::byte>(random());
        files.Put(kJournal, noise);
        Pager::Open(files, kFile, {});
        EXPECT_EQ(files.Get(kFile), database);
        EXPECT_FALSE(files.Exists(kJournal));
    }
}

TEST(LeftJournal, WithADamagedRecordIsPlayedBackUpToIt)
{
    // Damage in a record can only mean that it was never flushed: what follows it
    // was not overwritten in the file either.
    Interrupted left;
    Bytes journal = left.files.Get(kJournal);
    for (std::size_t at = 512; at < journal.size(); at += 4096 + 16) {
        Bytes damaged = journal;
        damaged[at + 1000] ^= std::byte{1};
        MemoryFileSystem files;
        files.Put(kFile, left.files.Get(kFile));
        files.Put(kJournal, damaged);
        const auto pager = Pager::Open(files, kFile, {});
        EXPECT_EQ(pager->PageCount(), left.run.before.size());
    }
}
