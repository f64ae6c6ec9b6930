#include "KilledChild.h"
#include "MinimalDatabase.h"
#include "TemporaryFolder.h"
#include "jet/base/Error.h"

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace jet_testing;
using jet::Access;
using jet::FileSystem;
using jet::Pager;
using jet::Sharing;

namespace {

class AmongProcesses : public testing::Test {
protected:
    AmongProcesses()
    {
        const Bytes start = MinimalDatabase(10);
        std::ofstream file(m_path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(start.data()),
                   static_cast<std::streamsize>(start.size()));
    }

    /// What another process meets that opens the file: 0 = opened, else the kind + 1.
    int KindForAnother(const jet::PagerOptions& options) const
    {
        return RunToItsEnd([&](Reporter&) {
                   try {
                       Pager::Open(FileSystem::System(), m_path, options);
                   } catch (const jet::Error& error) {
                       EndProcessAtOnce(static_cast<int>(error.Kind()) + 1);
                   }
               })
            .exitCode;
    }

    static constexpr int kLocked = static_cast<int>(jet::ErrorKind::Locked) + 1;
    TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder / "boezem.mdb";
};

} // namespace

TEST_F(AmongProcesses, AnExclusiveFileIsRefusedToAnother)
{
    auto pager = Pager::Open(FileSystem::System(), m_path, {});
    EXPECT_EQ(KindForAnother({}), kLocked);
    EXPECT_EQ(KindForAnother({Access::ReadOnly, Sharing::Shared}), kLocked);
    pager.reset();
    EXPECT_EQ(KindForAnother({}), 0) << "free the moment it is closed";
}

TEST_F(AmongProcesses, AFileOpenedForReadingExclusivelyIsRefusedToAnother)
{
    const auto pager = Pager::Open(FileSystem::System(), m_path, {Access::ReadOnly});
    EXPECT_EQ(KindForAnother({}), kLocked);
}

TEST_F(AmongProcesses, ASharedFileIsSharedButNotGivenExclusively)
{
    const auto pager =
        Pager::Open(FileSystem::System(), m_path, {Access::ReadOnly, Sharing::Shared});
    EXPECT_EQ(KindForAnother({Access::ReadOnly, Sharing::Shared}), 0);
    EXPECT_EQ(KindForAnother({}), kLocked);
}

TEST_F(AmongProcesses, ALockFileThatAnotherProgramHoldsByteLocksInMeansSharedUsers)
{
    const auto lockFile = m_folder / "boezem.ldb";
    std::ofstream(lockFile) << std::string(64, 'x');
    EXPECT_EQ(KindForAnother({}), 0) << "left behind: nobody holds it";
    const int descriptor = ::open(lockFile.c_str(), O_RDWR | O_CLOEXEC);
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = 0x10000001;
    range.l_len = 1;
    ASSERT_EQ(::fcntl(descriptor, F_SETLK, &range), 0);
    EXPECT_EQ(KindForAnother({}), kLocked);
    EXPECT_EQ(KindForAnother({Access::ReadOnly, Sharing::Shared}), 0);
    ::close(descriptor);
    EXPECT_EQ(KindForAnother({}), 0);
}

TEST_F(AmongProcesses, AFileWithoutPermissionIsRefusedForWritingAndReadOtherwise)
{
    if (::geteuid() == 0) {
        // Root may write anything; the child gives that up first.
        ::chmod(m_folder.Path().c_str(), 0777);
        ::chmod(m_path.c_str(), 0444);
    } else {
        ::chmod(m_path.c_str(), 0444);
    }
    const auto kindAsUser = [&](const jet::PagerOptions& options) {
        return RunToItsEnd([&](Reporter&) {
                   if (::geteuid() == 0 && ::seteuid(65534) != 0)
                       EndProcessAtOnce(90);
                   try {
                       Pager::Open(FileSystem::System(), m_path, options);
                   } catch (const jet::Error& error) {
                       EndProcessAtOnce(static_cast<int>(error.Kind()) + 1);
                   }
               })
            .exitCode;
    };
    EXPECT_EQ(kindAsUser({}), static_cast<int>(jet::ErrorKind::AccessDenied) + 1);
    EXPECT_EQ(kindAsUser({Access::ReadOnly}), 0);
}

TEST_F(AmongProcesses, AFolderThatTakesNoJournalIsToldAndNothingChanges)
{
    ::chmod(m_path.c_str(), 0666);
    ::chmod(m_folder.Path().c_str(), 0555);
    const int kind = RunToItsEnd([&](Reporter&) {
                         if (::geteuid() == 0 && ::seteuid(65534) != 0)
                             EndProcessAtOnce(90);
                         const auto pager = Pager::Open(FileSystem::System(), m_path, {});
                         pager->Begin();
                         pager->Write(3).Data()[0] = std::byte{1};
                         try {
                             pager->Commit(jet::Flush::Yes);
                         } catch (const jet::Error& error) {
                             EndProcessAtOnce(static_cast<int>(error.Kind()) + 1);
                         }
                     }).exitCode;
    ::chmod(m_folder.Path().c_str(), 0777);
    EXPECT_EQ(kind, static_cast<int>(jet::ErrorKind::AccessDenied) + 1);
    const auto pager = Pager::Open(FileSystem::System(), m_path, {});
    EXPECT_EQ(pager->Read(3).Data()[0], std::byte{0});
}
