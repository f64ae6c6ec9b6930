#include "FaultyFileSystem.h"
#include "KilledChild.h"
#include "MinimalDatabase.h"
#include "PageModel.h"
#include "TemporaryFolder.h"
#include "jet/base/ByteOrder.h"

#include <fstream>
#include <gtest/gtest.h>

using namespace jet_testing;
using jet::FileSystem;
using jet::Flush;
using jet::PageNumber;
using jet::Pager;

namespace {

constexpr std::size_t kSmallCache = 16 * 4096;
constexpr PageNumber kPages = 200;

/// Transaction n, always the same, on a file in which n - 1 are done: page 2
/// counts them. Some end in a roll-back.
void DoTransaction(Pager& pager, std::uint64_t n)
{
    std::mt19937 random(static_cast<std::uint32_t>(n));
    const int changes = static_cast<int>(1 + random() % 120);
    pager.Begin();
    Stamp(pager.Write(2).Data(), n);
    for (int i = 0; i < changes; ++i)
        Stamp(pager.Write(static_cast<PageNumber>(3 + random() % (kPages - 3))).Data(), n);
    pager.Begin();
    Stamp(pager.Write(3).Data(), ~n);
    Stamp(pager.Append().Data(), ~n);
    pager.Rollback();
    if (n % 3 == 0 && pager.PageCount() < 400)
        Stamp(pager.Append().Data(), n);
    pager.Commit(n % 2 == 0 ? Flush::Yes : Flush::No);
}

/// What the file holds after n transactions.
PageModel::Pages Expected(std::uint64_t n)
{
    PageModel::Pages pages(kPages, 0);
    for (std::uint64_t i = 1; i <= n; ++i) {
        std::mt19937 random(static_cast<std::uint32_t>(i));
        const int changes = static_cast<int>(1 + random() % 120);
        pages[2] = i;
        for (int c = 0; c < changes; ++c)
            pages[3 + random() % (kPages - 3)] = i;
        if (i % 3 == 0 && pages.size() < 400)
            pages.push_back(i);
    }
    return pages;
}

class Killed : public testing::Test {
protected:
    Killed()
    {
        const Bytes start = MinimalDatabase(kPages);
        std::ofstream file(m_path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(start.data()),
                   static_cast<std::streamsize>(start.size()));
    }

    void Work(FileSystem& files, Reporter& parent) const
    {
        const auto pager = Pager::Open(files, m_path, {.cacheBytes = kSmallCache});
        std::uint64_t n = StampOf(pager->Read(2).Data());
        parent.Report(n + 1'000'000); // ready
        for (;;) {
            DoTransaction(*pager, ++n);
            parent.Report(n + 1'000'000);
        }
    }

    /// The file is as after the last reported transaction or the one after that.
    void ExpectWhole(const ChildOutcome& outcome)
    {
        const auto pager = Pager::Open(FileSystem::System(), m_path, {});
        const std::uint64_t n = StampOf(pager->Read(2).Data());
        if (outcome.lastReport != 0) {
            EXPECT_GE(n, outcome.lastReport - 1'000'000) << "a committed transaction is lost";
            EXPECT_LE(n, outcome.lastReport - 1'000'000 + 1);
        }
        EXPECT_TRUE(Stamps(*pager) == Expected(n)) << "mixed content after transaction " << n;
        EXPECT_GE(jet::GetU16(pager->Read(0).Data(), 0xE00), 0x0100);
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder / "boezem.mdb";
};

} // namespace

TEST_F(Killed, AtARandomMomentTheFileIsAsAfterOneTransaction)
{
    // The moments are spread over about two transactions, however slow the disk is.
    const auto start = std::chrono::steady_clock::now();
    RunAndKill([&](Reporter& parent) { Work(FileSystem::System(), parent); },
               std::chrono::microseconds(0), 11);
    const auto spread = std::chrono::duration_cast<std::chrono::microseconds>(
                            (std::chrono::steady_clock::now() - start) / 5)
                            .count();
    std::mt19937 random(6);
    int kills = 0;
    for (int i = 0; i < 200 && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const auto outcome = RunAndKill(
            [&](Reporter& parent) { Work(FileSystem::System(), parent); },
            std::chrono::microseconds(random() % spread), 1 + static_cast<int>(random() % 2));
        kills += outcome.killed ? 1 : 0;
        ExpectWhole(outcome);
    }
    EXPECT_EQ(kills, 200);
    const auto pager = Pager::Open(FileSystem::System(), m_path, {});
    EXPECT_GT(StampOf(pager->Read(2).Data()), 50u) << "between the kills it got on";
}

TEST_F(Killed, AtTheNthChangeOfTheDiskTheFileIsAsAfterOneTransaction)
{
    for (int n = 1; n <= 150 && !HasFailure(); ++n) {
        SCOPED_TRACE(n);
        const auto outcome = RunToItsEnd([&](Reporter& parent) {
            FaultyFileSystem faulty(FileSystem::System());
            faulty.OnDeath([] { EndProcessAtOnce(7); });
            faulty.Arm(
                {FaultyFileSystem::kChange, n,
                 n % 2 == 0 ? FaultyFileSystem::Effect::Die : FaultyFileSystem::Effect::DieTorn});
            Work(faulty, parent);
        });
        EXPECT_EQ(outcome.exitCode, 7);
        ExpectWhole(outcome);
    }
}

TEST_F(Killed, TheFileIsFreeForOthersAtOnce)
{
    const auto outcome = RunAndKill([&](Reporter& parent) { Work(FileSystem::System(), parent); },
                                    std::chrono::milliseconds(2));
    EXPECT_TRUE(outcome.killed);
    Pager::Open(FileSystem::System(), m_path, {});
}
