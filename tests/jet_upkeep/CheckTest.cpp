#include "DamagedFile.h"

#include "jet/base/ByteOrder.h"
#include "jet/storage/FileHeader.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using jet::GetU16;
using jet::GetU32;
using jet::PutU16;
using jet::PutU32;
using jet::PutU8;
using Page = std::span<std::byte>;

std::string Joined(const std::vector<std::string>& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += text + '\n';
    return all;
}

void ExpectFault(DamagedFile& file, const std::string& part)
{
    const jet::CheckReport report = file.Check();
    EXPECT_FALSE(report.IsSound());
    EXPECT_TRUE(Mentions(report.faults, part)) << Joined(report.faults);
}

std::size_t SlotAt(int slot)
{
    return 14u + 2u * static_cast<std::size_t>(slot);
}

TEST(Check, FindsNothingInASoundFile)
{
    DamagedFile file;
    const jet::CheckReport report = file.Check();
    EXPECT_TRUE(report.faults.empty()) << Joined(report.faults);
    EXPECT_TRUE(report.remarks.empty()) << Joined(report.remarks);
}

TEST(Check, FindsNothingWorseThanRemarksInFilesOfOtherMakers)
{
    const auto folder = std::filesystem::path(TEST_DATA_FOLDER) / "jet" / "samples";
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mdb")
            continue;
        jet::Workspace workspace;
        const auto database =
            workspace.OpenDatabase(entry.path(), {.exclusive = false, .readOnly = true});
        const jet::CheckReport report = database->Check();
        EXPECT_TRUE(report.IsSound()) << entry.path() << '\n' << Joined(report.faults);
        ++files;
    }
    EXPECT_EQ(files, 12);
}

TEST(Check, FindsAnInterruptedWrite)
{
    DamagedFile file;
    file.Change(
        0, [](Page page) { PutU16(page, jet::CommitWordsOffset(jet::FileVersion::Jet4) + 6, 0); });
    ExpectFault(file, "Vastleggingswoord 3 is 0");
}

TEST(Check, FindsAWrongFreeCount)
{
    DamagedFile file;
    const auto page = file.RowPage();
    file.Change(page, [](Page p) { PutU16(p, 2, static_cast<std::uint16_t>(GetU16(p, 2) + 1)); });
    ExpectFault(file, "Pagina " + std::to_string(page) + " van de tabel \"Dijk\"");
}

TEST(Check, FindsASlotOutsideItsPage)
{
    DamagedFile file;
    file.Change(file.RowPage(), [](Page p) { PutU16(p, SlotAt(3), 5); });
    EXPECT_FALSE(file.Check().IsSound());
}

TEST(Check, FindsRowsThatOverlap)
{
    DamagedFile file;
    file.Change(file.RowPage(), [](Page p) {
        const std::uint16_t first = GetU16(p, SlotAt(1)), second = GetU16(p, SlotAt(2));
        PutU16(p, SlotAt(1), second);
        PutU16(p, SlotAt(2), first);
    });
    EXPECT_FALSE(file.Check().IsSound());
}

TEST(Check, FindsAPageOfAnotherOwner)
{
    DamagedFile file;
    const auto page = file.RowPage();
    file.Change(page, [](Page p) { PutU32(p, 4, 3); });
    ExpectFault(file, "Pagina " + std::to_string(page));
}

TEST(Check, FindsARowThatMovedToNowhere)
{
    DamagedFile file;
    const auto page = file.RowPage();
    file.Change(page, [](Page p) {
        const int slots = GetU16(p, 12);
        for (int i = 0; i < slots; ++i) {
            const std::uint16_t slot = GetU16(p, SlotAt(i));
            if ((slot & 0xC000) == 0x4000)
                PutU32(p, slot & 0x1FFF, GetU32(p, slot & 0x1FFF) + 200);
        }
    });
    ExpectFault(file, "is verplaatst naar");
}

TEST(Check, FindsARowThatIsNotInItsIndex)
{
    DamagedFile file;
    const auto page = file.RowPage();
    // The number of the first row that stands in its own place is its key.
    file.Change(page, [](Page p) {
        for (int i = 0; i < GetU16(p, 12); ++i) {
            const std::uint16_t slot = GetU16(p, SlotAt(i));
            if ((slot & 0xC000) == 0) {
                PutU32(p, (slot & 0x1FFFu) + 2, 77777);
                return;
            }
        }
    });
    ExpectFault(file, "ontbreekt in de index \"PrimaryKey\"");
    ExpectFault(file, "die niet bij een rij past");
    const auto report = file.Check();
    EXPECT_TRUE(Mentions(report.remarks, "autonummering")) << Joined(report.remarks);
}

TEST(Check, FindsIndexEntriesOutOfOrder)
{
    DamagedFile file;
    const auto root = file.Definition().physicalIndexes[0].root;
    file.Change(root, [](Page p) {
        // Key of the first two entries: 7F, number, row pointer; change the first number's high
        // byte.
        PutU8(p, 0x1E0 + 1, 0xFF);
    });
    EXPECT_FALSE(file.Check().IsSound());
}

TEST(Check, FindsAnIndexPageWithAWrongFreeCount)
{
    DamagedFile file;
    const auto root = file.Definition().physicalIndexes[1].root;
    file.Change(root, [](Page p) { PutU16(p, 2, static_cast<std::uint16_t>(GetU16(p, 2) + 7)); });
    ExpectFault(file, "van de index \"OpNaam\"");
}

TEST(Check, FindsALeafThatNamesTheWrongNeighbour)
{
    DamagedFile file;
    const auto definition = file.Definition();
    const auto root = definition.physicalIndexes[1].root;
    const auto tail = GetU32(file.Page(root), 0x14);
    ASSERT_NE(tail, 0u) << "the index has one leaf only";
    file.Change(tail, [](Page p) { PutU32(p, 0x0C, 1); });
    ExpectFault(file, "noemt niet de pagina's ernaast");
}

TEST(Check, FindsATreeThatGoesRoundInACircle)
{
    DamagedFile file;
    const auto root = file.Definition().physicalIndexes[1].root;
    file.Change(root, [root](Page p) { PutU32(p, 0x14, root); });
    ExpectFault(file, "Pagina " + std::to_string(root));
}

TEST(Check, FindsALongValueThatBreaksOff)
{
    DamagedFile file;
    const auto page = file.MemoPages().front();
    file.Change(page, [](Page p) { PutU16(p, SlotAt(0), GetU16(p, SlotAt(0)) | 0xC000); });
    ExpectFault(file, "veld \"Verhaal\"");
}

TEST(Check, FindsALongValueThatGoesRoundInACircle)
{
    DamagedFile file;
    // The parts of a chain fill pages of their own and begin with the next part's place.
    bool changed = false;
    for (const jet::PageNumber page : file.MemoPages()) {
        if (GetU16(file.Page(page), 12) != 1)
            continue;
        file.Change(page, [page](Page p) { PutU32(p, GetU16(p, 14) & 0x1FFFu, page << 8); });
        changed = true;
        break;
    }
    ASSERT_TRUE(changed);
    ExpectFault(file, "loopt rond");
}

TEST(Check, FindsAPageInUseThatCountsAsFree)
{
    DamagedFile file;
    const auto page = file.RowPage();
    file.Change(1, [page](Page p) {
        const std::size_t map = GetU16(p, 14) & 0x1FFFu;
        const std::size_t at = map + 5 + page / 8;
        PutU8(p, at, static_cast<std::uint8_t>(jet::GetU8(p, at) | 1u << (page % 8)));
    });
    ExpectFault(file, "staat te boek als vrij");
}

TEST(Check, RemarksOnLostPages)
{
    DamagedFile file;
    // One page more at the end that nobody owns and that is not free.
    auto all = file.Files().Get(DamagedFile::kName);
    const auto page = static_cast<std::uint32_t>(all.size() / 4096);
    all.resize(all.size() + 4096);
    file.Files().Put(DamagedFile::kName, all);
    file.Change(1, [page](Page p) {
        const std::size_t map = GetU16(p, 14) & 0x1FFFu;
        const std::size_t at = map + 5 + page / 8;
        PutU8(p, at, static_cast<std::uint8_t>(jet::GetU8(p, at) & ~(1u << (page % 8))));
    });
    const auto report = file.Check();
    EXPECT_TRUE(report.IsSound()) << Joined(report.faults);
    EXPECT_TRUE(Mentions(report.remarks, "verloren ruimte")) << Joined(report.remarks);
}

TEST(Check, RemarksOnAStaleCounter)
{
    DamagedFile file;
    file.Change(file.Definition().page, [](Page p) { PutU32(p, 16, 12345); });
    const auto report = file.Check();
    EXPECT_TRUE(report.IsSound()) << Joined(report.faults);
    EXPECT_TRUE(Mentions(report.remarks, "staat op 12345 rijen; het zijn er 400"))
        << Joined(report.remarks);
}

TEST(Check, FindsADefinitionThatIsNone)
{
    DamagedFile file;
    file.Change(file.Definition().page, [](Page p) { PutU8(p, 0, 9); });
    EXPECT_FALSE(file.Check().IsSound());
}

TEST(Check, GivesAReadableReportOnRubbish)
{
    DamagedFile file;
    std::mt19937 random(4);
    const auto pages = file.Files().Get(DamagedFile::kName).size() / 4096;
    for (jet::PageNumber page = 20; page < pages; ++page)
        file.Change(page, [&](Page p) {
            for (std::byte& byte : p)
                byte = static_cast<std::byte>(random());
        });
    const auto report = file.Check();
    EXPECT_FALSE(report.IsSound());
    EXPECT_LE(report.faults.size(), 201u);
}

} // namespace
