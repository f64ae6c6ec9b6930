#include "MinimalDatabase.h"
#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"

#include <cstring>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>

using namespace jet_testing;
using jet::ErrorKind;
using jet::FileVersion;

namespace {

const std::filesystem::path kFile = "boezem.mdb";

/// The header of a sound file after `change` was made to its unmasked bytes.
Bytes Header(FileVersion version, const std::function<void(std::span<std::byte>)>& change = {})
{
    Bytes page = MinimalDatabase(1, version);
    jet::ToggleHeaderMask(page, version);
    if (change)
        change(page);
    jet::ToggleHeaderMask(page, version);
    return page;
}

void ExpectRefused(const Bytes& start, ErrorKind kind, const std::string& reason)
{
    try {
        jet::ReadFileHeader(start, kFile);
        ADD_FAILURE() << "accepted";
    } catch (const jet::Error& error) {
        EXPECT_TRUE(error.Kind() == kind) << error.what();
        EXPECT_NE(std::string(error.what()).find(reason), std::string::npos) << error.what();
        EXPECT_NE(std::string(error.what()).find("boezem.mdb"), std::string::npos);
    }
}

Bytes Sample(const std::string& name)
{
    std::ifstream file(std::string(TEST_DATA_FOLDER) + "/jet/samples/" + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    Bytes bytes(4096);
    file.read(reinterpret_cast<char*>(bytes.data()), 4096);
    return bytes;
}

} // namespace

TEST(FileHeader, OfAccess2000IsReadWithItsDate)
{
    const auto header = jet::ReadFileHeader(Header(FileVersion::Jet4), kFile);
    EXPECT_EQ(header.version, FileVersion::Jet4);
    EXPECT_EQ(header.PageSize(), 4096u);
    EXPECT_EQ(header.codePage, 1252);
    EXPECT_EQ(header.sortOrder, 0x0409);
    EXPECT_EQ(header.created.days, 38000.25);
    EXPECT_EQ(header.WhyReadOnly(kFile), "");
}

TEST(FileHeader, OfAccess97CanOnlyBeRead)
{
    const auto header = jet::ReadFileHeader(Header(FileVersion::Jet3), kFile);
    EXPECT_EQ(header.version, FileVersion::Jet3);
    EXPECT_EQ(header.PageSize(), 2048u);
    EXPECT_NE(header.WhyReadOnly(kFile).find("Access 97"), std::string::npos);
}

TEST(FileHeader, OfOriginalFilesIsAccepted)
{
    const auto jet4 = jet::ReadFileHeader(Sample("delV2000.mdb"), kFile);
    EXPECT_EQ(jet4.version, FileVersion::Jet4);
    EXPECT_EQ(jet4.WhyReadOnly(kFile), "");
    EXPECT_GT(jet4.created.days, 36526) << "made after 1999";
    EXPECT_LT(jet4.created.days, 43831) << "and before 2020";
    const auto jet3 = jet::ReadFileHeader(Sample("indexV1997.mdb"), kFile);
    EXPECT_EQ(jet3.version, FileVersion::Jet3);
    EXPECT_EQ(jet3.codePage, 1252);
    EXPECT_EQ(jet3.sortOrder, 0x0409);
}

TEST(FileHeader, MaskIsTheTabulatedOne)
{
    Bytes page(4096);
    jet::ToggleHeaderMask(page, FileVersion::Jet4);
    constexpr unsigned char kStart[] = {0xB5, 0x6F, 0x03, 0x62, 0x61, 0x08, 0xC2, 0x55,
                                        0xEB, 0xA9, 0x67, 0x72, 0x43, 0x3F, 0x00, 0x9C};
    EXPECT_EQ(std::memcmp(page.data() + 0x18, kStart, sizeof kStart), 0);
    EXPECT_EQ(page[0x17], std::byte{0});
    EXPECT_EQ(page[0x18 + 128], std::byte{0});
    jet::ToggleHeaderMask(page, FileVersion::Jet4);
    EXPECT_EQ(page, Bytes(4096));
}

TEST(FileHeader, OfOtherTextOrdersCanOnlyBeRead)
{
    for (const auto& change : {+[](std::span<std::byte> page) { jet::PutU16(page, 0x6E, 0x0413); },
                               +[](std::span<std::byte> page) { jet::PutU8(page, 0x71, 1); }}) {
        const auto header = jet::ReadFileHeader(Header(FileVersion::Jet4, change), kFile);
        EXPECT_NE(header.WhyReadOnly(kFile).find("volgorde"), std::string::npos);
    }
}

TEST(FileHeader, RefusesAPasswordWithTheReason)
{
    ExpectRefused(
        Header(FileVersion::Jet4, [](std::span<std::byte> page) { page[0x42] ^= std::byte{'g'}; }),
        ErrorKind::Unsupported, "wachtwoord");
    ExpectRefused(
        Header(FileVersion::Jet3, [](std::span<std::byte> page) { page[0x55] = std::byte{'g'}; }),
        ErrorKind::Unsupported, "wachtwoord");
}

TEST(FileHeader, RefusesEncryptionWithTheReason)
{
    for (const FileVersion version : {FileVersion::Jet3, FileVersion::Jet4})
        ExpectRefused(
            Header(version, [](std::span<std::byte> page) { jet::PutU32(page, 0x3E, 0x1234); }),
            ErrorKind::Unsupported, "versleuteld");
}

TEST(FileHeader, RefusesOtherEnginesWithTheReason)
{
    Bytes ace = Header(FileVersion::Jet4);
    std::memcpy(ace.data() + 4, "Standard ACE DB", 15);
    jet::PutU8(ace, 0x14, 2);
    ExpectRefused(ace, ErrorKind::Unsupported, ".accdb");
    Bytes money = Header(FileVersion::Jet4);
    std::memcpy(money.data() + 4, "MSISAM Database", 15);
    ExpectRefused(money, ErrorKind::Unsupported, "MSISAM");
    Bytes newer = Header(FileVersion::Jet4);
    jet::PutU8(newer, 0x14, 3);
    ExpectRefused(newer, ErrorKind::Unsupported, "nieuwere versie");
}

TEST(FileHeader, RefusesWhatIsNoDatabase)
{
    ExpectRefused({}, ErrorKind::NotADatabase, "geen Access-database");
    Bytes text(2000, std::byte{'a'});
    ExpectRefused(text, ErrorKind::NotADatabase, "geen Access-database");
    const Bytes whole = Header(FileVersion::Jet4);
    for (std::size_t size : {1u, 4u, 19u, 20u, 21u, 2048u, 4095u})
        ExpectRefused(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)),
                      ErrorKind::NotADatabase, "geen Access-database");
}

TEST(FileHeader, OfRandomBytesBehindAValidStartNeverCrashes)
{
    std::mt19937 random(9);
    for (int i = 0; i < 2000; ++i) {
        Bytes page = Header(i % 2 == 0 ? FileVersion::Jet4 : FileVersion::Jet3);
        for (std::size_t at = 0x15; at < page.size(); ++at)
            page[at] = static_cast<std::byte>(random());
        try {
            jet::ReadFileHeader(page, kFile);
        } catch (const jet::Error&) {
        }
    }
}
