#include "FaultyFileSystem.h"
#include "MemoryFileSystem.h"
#include "MinimalDatabase.h"
#include "PageModel.h"
#include "TemporaryFolder.h"
#include "jet/base/Error.h"

#include <fstream>
#include <gtest/gtest.h>

using namespace jet_testing;
using jet::Access;
using jet::ErrorKind;
using jet::FileSystem;
using jet::Pager;
using jet::Sharing;

namespace {

void WriteFile(const std::filesystem::path& path, const Bytes& content)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(content.data()),
               static_cast<std::streamsize>(content.size()));
}

Bytes ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    Bytes bytes(text.size());
    std::transform(text.begin(), text.end(), bytes.begin(),
                   [](char c) { return static_cast<std::byte>(c); });
    return bytes;
}

ErrorKind KindOfOpening(const std::filesystem::path& path, const jet::PagerOptions& options = {})
{
    try {
        Pager::Open(FileSystem::System(), path, options);
    } catch (const jet::Error& error) {
        return error.Kind();
    }
    ADD_FAILURE() << "opened";
    return ErrorKind::Query;
}

/// Refused with this kind in every mode, nothing changed, nothing left open.
void ExpectRefused(const Bytes& content, ErrorKind kind)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    WriteFile(path, content);
    for (const Access access : {Access::ReadWrite, Access::ReadOnly}) {
        for (const Sharing sharing : {Sharing::Exclusive, Sharing::Shared})
            EXPECT_TRUE(KindOfOpening(path, {access, sharing}) == kind);
    }
    EXPECT_EQ(ReadFile(path), content);
    EXPECT_TRUE(std::filesystem::remove(path));
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

} // namespace

TEST(Opening, RefusesAMissingFile)
{
    TemporaryFolder folder;
    EXPECT_EQ(KindOfOpening(folder / "boezem.mdb"), ErrorKind::FileNotFound);
    EXPECT_EQ(KindOfOpening(folder / "geen" / "boezem.mdb"), ErrorKind::FileNotFound);
}

TEST(Opening, RefusesAFolder)
{
    TemporaryFolder folder;
    EXPECT_EQ(KindOfOpening(folder.Path()), ErrorKind::NotADatabase);
    EXPECT_EQ(KindOfOpening(folder.Path(), {Access::ReadOnly}), ErrorKind::NotADatabase);
}

TEST(Opening, RefusesAnEmptyFile)
{
    ExpectRefused({}, ErrorKind::NotADatabase);
}

TEST(Opening, RefusesAText)
{
    ExpectRefused(Bytes(5000, std::byte{'x'}), ErrorKind::NotADatabase);
}

TEST(Opening, RefusesAHeaderAlone)
{
    ExpectRefused(MinimalDatabase(1), ErrorKind::NotADatabase);
    ExpectRefused(MinimalDatabase(1, jet::FileVersion::Jet3), ErrorKind::NotADatabase);
}

TEST(Opening, RefusesAFileThatEndsWithinAPage)
{
    Bytes cut = MinimalDatabase(10);
    cut.resize(cut.size() - 100);
    ExpectRefused(cut, ErrorKind::Damaged);
}

TEST(Opening, RefusesAFileThatNeedsAPassword)
{
    Bytes file = MinimalDatabase(10);
    file[0x42] ^= std::byte{1};
    ExpectRefused(file, ErrorKind::Unsupported);
}

TEST(Opening, TellsWhyAFileCanOnlyBeRead)
{
    MemoryFileSystem files;
    files.Put("oud.mdb", MinimalDatabase(10, jet::FileVersion::Jet3));
    const auto pager = Pager::Open(files, "oud.mdb", {});
    EXPECT_TRUE(pager->IsReadOnly());
    EXPECT_EQ(pager->PageSize(), 2048u);
    EXPECT_NE(pager->WhyReadOnly().find("Access 97"), std::string::npos);
    pager->Begin();
    try {
        pager->Write(3);
        ADD_FAILURE() << "written";
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::ReadOnly);
        EXPECT_EQ(error.what(), pager->WhyReadOnly());
    }
}

TEST(Opening, ForReadingNeverWritesAByteNorMakesAFile)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    WriteFile(path, MinimalDatabase(10));
    const auto time = std::filesystem::last_write_time(path);
    {
        FaultyFileSystem counting(FileSystem::System());
        const auto pager = Pager::Open(counting, path, {Access::ReadOnly});
        Stamps(*pager);
        pager->Begin();
        EXPECT_THROW(pager->Write(3), jet::Error);
        EXPECT_THROW(pager->Append(), jet::Error);
        pager->Commit(jet::Flush::Yes);
        EXPECT_EQ(counting.Count(FaultyFileSystem::kChange), 0);
    }
    EXPECT_EQ(std::filesystem::last_write_time(path), time);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST(Opening, ForWritingAloneChangesNothing)
{
    MemoryFileSystem files;
    files.Put("boezem.mdb", MinimalDatabase(10));
    FaultyFileSystem counting(files);
    Stamps(*Pager::Open(counting, "boezem.mdb", {}));
    EXPECT_EQ(counting.Count(FaultyFileSystem::kWrite | FaultyFileSystem::kSync), 0);
}

TEST(Opening, ExclusivelyKeepsASecondOpenerInThisProcessOut)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    WriteFile(path, MinimalDatabase(10));
    auto first = Pager::Open(FileSystem::System(), path, {});
    for (const Access access : {Access::ReadWrite, Access::ReadOnly}) {
        for (const Sharing sharing : {Sharing::Exclusive, Sharing::Shared})
            EXPECT_EQ(KindOfOpening(path, {access, sharing}), ErrorKind::Locked);
    }
    first.reset();
    Pager::Open(FileSystem::System(), path, {});
}

TEST(Opening, SharedLetsOthersReadAndKeepsAnExclusiveOneOut)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    WriteFile(path, MinimalDatabase(10));
    const auto one = Pager::Open(FileSystem::System(), path, {Access::ReadOnly, Sharing::Shared});
    const auto two = Pager::Open(FileSystem::System(), path, {Access::ReadWrite, Sharing::Shared});
    EXPECT_EQ(Stamps(*one), Stamps(*two));
    EXPECT_EQ(KindOfOpening(path), ErrorKind::Locked);
}

TEST(Opening, SharedWritesOnlyWhileNobodyElseHasTheFile)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    WriteFile(path, MinimalDatabase(10));
    const auto writer =
        Pager::Open(FileSystem::System(), path, {Access::ReadWrite, Sharing::Shared});
    auto reader = Pager::Open(FileSystem::System(), path, {Access::ReadOnly, Sharing::Shared});
    writer->Begin();
    try {
        writer->Write(4);
        ADD_FAILURE() << "written beside a reader";
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::Locked);
    }
    EXPECT_EQ(StampOf(writer->Read(4).Data()), 0u) << "reading goes on";
    reader.reset();
    Stamp(writer->Write(4).Data(), 6);
    EXPECT_EQ(KindOfOpening(path, {Access::ReadOnly, Sharing::Shared}), ErrorKind::Locked)
        << "nobody looks into a transaction";
    writer->Commit(jet::Flush::No);
    EXPECT_FALSE(std::filesystem::exists(jet::JournalPath(path)))
        << "an opener must not take it for one left behind";
    reader = Pager::Open(FileSystem::System(), path, {Access::ReadOnly, Sharing::Shared});
    EXPECT_EQ(StampOf(reader->Read(4).Data()), 6u);
}

TEST(Opening, SharedWriterThatIsRefusedStillKeepsAnExclusiveOneOut)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    WriteFile(path, MinimalDatabase(10));
    const auto writer =
        Pager::Open(FileSystem::System(), path, {Access::ReadWrite, Sharing::Shared});
    {
        const auto reader =
            Pager::Open(FileSystem::System(), path, {Access::ReadOnly, Sharing::Shared});
        writer->Begin();
        EXPECT_THROW(writer->Write(4), jet::Error);
        writer->Rollback();
    }
    EXPECT_EQ(KindOfOpening(path), ErrorKind::Locked);
    for (int i = 0; i < 3; ++i) {
        writer->Begin();
        Stamp(writer->Write(4).Data(), 8);
        writer->Commit(jet::Flush::No);
        EXPECT_EQ(KindOfOpening(path), ErrorKind::Locked);
        Pager::Open(FileSystem::System(), path, {Access::ReadOnly, Sharing::Shared});
    }
}

TEST(Opening, ExclusivelyIsRefusedWhileOthersShareTheFile)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    WriteFile(path, MinimalDatabase(10));
    WriteFile(folder / "boezem.ldb", Bytes(64));
    Pager::Open(FileSystem::System(), path, {}); // left behind by a program that crashed
    const auto user = FileSystem::System().Open(folder / "boezem.ldb", FileSystem::Mode::ReadWrite,
                                                Sharing::Shared);
    EXPECT_EQ(KindOfOpening(path), ErrorKind::Locked);
    const auto shared =
        Pager::Open(FileSystem::System(), path, {Access::ReadWrite, Sharing::Shared});
    shared->Begin();
    EXPECT_THROW(shared->Write(4), jet::Error);
}

TEST(Opening, ThroughALinkFindsTheSameJournal)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    WriteFile(path, MinimalDatabase(10));
    std::error_code error;
    std::filesystem::create_symlink(path, folder / "andere naam.mdb", error);
    if (error)
        GTEST_SKIP() << "no links here";
    const auto pager = Pager::Open(FileSystem::System(), folder / "andere naam.mdb", {});
    EXPECT_EQ(KindOfOpening(path), ErrorKind::Locked);
    EXPECT_EQ(pager->Path().filename(), "boezem.mdb");
}

TEST(Opening, AFileWithAnOddNameWorks)
{
    TemporaryFolder folder;
    const auto path = folder.Path() / std::filesystem::path(u8"Boezem é met spaties.mdb");
    WriteFile(path, MinimalDatabase(10));
    {
        const auto pager = Pager::Open(FileSystem::System(), path, {});
        pager->Begin();
        Stamp(pager->Write(4).Data(), 6);
        pager->Commit(jet::Flush::Yes);
    }
    EXPECT_EQ(StampOf(Pager::Open(FileSystem::System(), path, {})->Read(4).Data()), 6u);
}

TEST(Creating, RefusesAnExistingFile)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    WriteFile(path, Bytes(10));
    try {
        Pager::Create(FileSystem::System(), path, MinimalDatabase(10), {});
        ADD_FAILURE() << "overwritten";
    } catch (const jet::Error& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::AlreadyExists);
    }
    EXPECT_EQ(ReadFile(path), Bytes(10));
}

TEST(Creating, GivesAnExclusivelyOpenFile)
{
    TemporaryFolder folder;
    const auto path = folder / "boezem.mdb";
    const auto pager = Pager::Create(FileSystem::System(), path, MinimalDatabase(10), {});
    EXPECT_EQ(pager->PageCount(), 10u);
    EXPECT_EQ(KindOfOpening(path), ErrorKind::Locked);
}

TEST(Creating, InAMissingFolderSaysSo)
{
    TemporaryFolder folder;
    EXPECT_THROW(
        Pager::Create(FileSystem::System(), folder / "weg" / "b.mdb", MinimalDatabase(10), {}),
        jet::Error);
}
