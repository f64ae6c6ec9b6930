#include "jet/catalog/PropertyMap.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/catalog/Catalog.h"

#include <gtest/gtest.h>

namespace {

using jet::Bytes;
using jet::FileVersion;
using jet::PropertyMap;
using jet::Value;

const std::filesystem::path kSamples = std::filesystem::path(TEST_DATA_FOLDER) / "jet" / "samples";

/// All property blobs of a sample file.
std::vector<Bytes> BlobsOf(const std::filesystem::path& path, FileVersion& version)
{
    const auto pager =
        jet::Pager::Open(jet::FileSystem::System(), path,
                         {.access = jet::Access::ReadOnly, .sharing = jet::Sharing::Shared});
    version = pager->Version();
    jet::Catalog catalog(*pager);
    const auto objects = catalog.Open("MSysObjects");
    const int column = objects->Definition().FindColumn("LvProp");
    std::vector<Bytes> blobs;
    for (jet::TableScan scan(*objects); scan.Next();)
        if (const Value blob = scan.Get(column); !blob.IsNull())
            blobs.push_back(blob.AsBytes());
    return blobs;
}

TEST(PropertyMap, WritesBackWhatOtherProgramsWrote)
{
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSamples)) {
        if (entry.path().extension() != ".mdb")
            continue;
        FileVersion version;
        for (const Bytes& blob : BlobsOf(entry.path(), version)) {
            EXPECT_EQ(PropertyMap::Parse(blob, version).Serialise(), blob) << entry.path();
            ++count;
        }
    }
    EXPECT_GT(count, 10u);
}

TEST(PropertyMap, StoresTheBytesThatTheFormatAsksFor)
{
    PropertyMap map;
    map.Set("ab", "Required", true);
    const Bytes blob = map.Serialise();
    // mark; names block with one name of 16 bytes; column block with one value
    const unsigned char expected[] = {
        'M', 'R', '2', 0,          //
        24,  0,   0,   0, 0x80, 0, // names block: 6 + 2 + 16
        16,  0,   'R', 0, 'e',  0, 'q', 0, 'u', 0, 'i', 0, 'r', 0, 'e', 0, 'd', 0, //
        25,  0,   0,   0, 1,    0,                 // column block: 6 + 10 + 9
        10,  0,   0,   0, 4,    0, 'a', 0, 'b', 0, // its header
        9,   0,   1,   1, 0,    0, 1,   0, 1,      // value: length, flag, type, name, data
    };
    ASSERT_EQ(blob.size(), sizeof expected);
    for (std::size_t i = 0; i < blob.size(); ++i)
        EXPECT_EQ(std::to_integer<int>(blob[i]), expected[i]) << "byte " << i;
}

TEST(PropertyMap, FindsWithoutRegardToCase)
{
    PropertyMap map;
    map.Set("Veld", "DefaultValue", "-999");
    EXPECT_EQ(map.Find("VELD", "defaultvalue"), Value("-999"));
    EXPECT_TRUE(map.Find("Veld", "Required").IsNull());
    EXPECT_TRUE(map.Find("", "DefaultValue").IsNull());
    EXPECT_TRUE(map.Find("ander", "DefaultValue").IsNull());
}

TEST(PropertyMap, KeepsTheKindOfAPropertyThatIsThere)
{
    PropertyMap map;
    map.Set("v", "Iets", std::int16_t{5});
    map.Set("v", "Iets", 7);
    EXPECT_EQ(map.Find("v", "Iets"), Value(std::int16_t{7}));
}

TEST(PropertyMap, IsEmptyOnceTheLastPropertyIsGone)
{
    PropertyMap map;
    EXPECT_TRUE(map.Serialise().empty());
    map.Set("", "Description", "tabel");
    map.Set("v", "Caption", "kop");
    EXPECT_EQ(map.All("").size(), 1u);
    map.Set("", "Description", {});
    map.RemoveOwner("V");
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_TRUE(map.Serialise().empty());
}

TEST(PropertyMap, KeepsEveryTypeOfValue)
{
    const std::pair<const char*, Value> values[] = {
        {"a", true},
        {"b", std::uint8_t{255}},
        {"c", std::int16_t{-2}},
        {"d", std::int32_t{123456}},
        {"e", 2.5f},
        {"f", -1e300},
        {"g", jet::DateTime{38000.25}},
        {"h", "met é en €"},
        {"i", Bytes{std::byte{0}, std::byte{255}}},
        {"j", jet::Currency{12345}},
    };
    PropertyMap map;
    for (const auto& [name, value] : values)
        map.Set("veld", name, value);
    const PropertyMap again = PropertyMap::Parse(map.Serialise(), FileVersion::Jet4);
    for (const auto& [name, value] : values)
        EXPECT_EQ(again.Find("veld", name), value) << name;
}

TEST(PropertyMap, KeepsBlocksOfUnknownKinds)
{
    PropertyMap map;
    map.Set("v", "Required", true);
    Bytes blob = map.Serialise();
    const Bytes strange = {std::byte{8}, {}, {}, {}, std::byte{7}, {}, std::byte{1}, std::byte{2}};
    blob.insert(blob.end(), strange.begin(), strange.end());
    EXPECT_EQ(PropertyMap::Parse(blob, FileVersion::Jet4).Serialise(), blob);
}

TEST(PropertyMap, RefusesBrokenBlobs)
{
    PropertyMap map;
    map.Set("veld", "DefaultValue", "\"abc\"");
    const Bytes good = map.Serialise();
    const auto expectDamaged = [](const Bytes& blob, const std::string& what) {
        try {
            PropertyMap::Parse(blob, FileVersion::Jet4);
            ADD_FAILURE() << what;
        } catch (const jet::Error& error) {
            EXPECT_EQ(error.Kind(), jet::ErrorKind::Damaged) << what;
        }
    };
    // Cut off at a block's border a blob is a shorter one.
    const std::size_t namesEnd = 4 + jet::GetU32(good, 4);
    for (std::size_t length = 1; length < good.size(); ++length)
        if (length != 4 && length != namesEnd)
            expectDamaged(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)),
                          "cut at " + std::to_string(length));
    Bytes wrongMark = good;
    wrongMark[0] = std::byte{'X'};
    expectDamaged(wrongMark, "mark");
    Bytes wrongName = good;
    wrongName[namesEnd + 6 + 14 + 4] = std::byte{9};
    expectDamaged(wrongName, "name index");
}

} // namespace
