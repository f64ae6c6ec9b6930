#include "ScratchCatalog.h"

#include "jet/base/ByteOrder.h"
#include "jet/storage/FileHeader.h"

#include <algorithm>
#include <fstream>

namespace {

using jet::Bytes;
using jet::Value;

constexpr std::size_t kPage = 4096;

/// An empty database as another engine made it.
Bytes Reference()
{
    std::ifstream file(std::filesystem::path(TEST_DATA_FOLDER) / "jet/samples/adox_jet4.mdb",
                       std::ios::binary);
    std::vector<char> chars{std::istreambuf_iterator<char>(file), {}};
    Bytes bytes(chars.size());
    std::ranges::transform(chars, bytes.begin(), [](char c) { return static_cast<std::byte>(c); });
    return bytes;
}

Bytes PageOf(const Bytes& file, std::size_t page)
{
    const auto start = file.begin() + static_cast<std::ptrdiff_t>(page * kPage);
    return Bytes(start, start + kPage);
}

Bytes HeaderOf(const Bytes& file)
{
    Bytes header = PageOf(file, 0);
    jet::ToggleHeaderMask(header, jet::FileVersion::Jet4);
    return header;
}

TEST(EmptyFile, HasSixteenPages)
{
    EXPECT_EQ(jet::Catalog::EmptyFile({40000}).size(), 16 * kPage);
    EXPECT_EQ(Reference().size(), 16 * kPage);
}

TEST(EmptyFile, HasTheHeaderOfTheReference)
{
    const Bytes reference = HeaderOf(Reference());
    const jet::DateTime created{jet::GetF64(reference, 0x72)};
    Bytes ours = HeaderOf(jet::Catalog::EmptyFile(created));
    // A word whose meaning nobody knows differs from file to file.
    jet::PutU16(ours, 0x6A, jet::GetU16(reference, 0x6A));
    for (std::size_t i = 0; i < kPage; ++i)
        EXPECT_EQ(ours[i], reference[i]) << "byte " << i;
}

TEST(EmptyFile, HasTheFreePagesOfTheReference)
{
    EXPECT_EQ(PageOf(jet::Catalog::EmptyFile({40000}), 1), PageOf(Reference(), 1));
}

TEST(EmptyFile, HasTheMapsOfTheReference)
{
    EXPECT_EQ(PageOf(jet::Catalog::EmptyFile({40000}), 6), PageOf(Reference(), 6));
}

TEST(EmptyFile, HasTheSystemTablesOfTheReference)
{
    ScratchCatalog ours;
    jet_testing::MemoryFileSystem files;
    files.Put("adox.mdb", Reference());
    const auto reference = jet::Pager::Open(files, "adox.mdb", {});
    for (jet::PageNumber page = 2; page <= 5; ++page) {
        const auto a = jet::ReadTableDefinition(ours.Pager(), page);
        const auto b = jet::ReadTableDefinition(*reference, page);
        EXPECT_EQ(a.length, b.length) << page;
        EXPECT_EQ(a.system, b.system);
        EXPECT_EQ(a.rowCount, b.rowCount);
        EXPECT_EQ(a.maxColumns, b.maxColumns);
        EXPECT_EQ(a.variableColumns, b.variableColumns);
        EXPECT_EQ(a.ownedMap, b.ownedMap);
        EXPECT_EQ(a.freeMap, b.freeMap);
        ASSERT_EQ(a.columns.size(), b.columns.size());
        for (std::size_t i = 0; i < a.columns.size(); ++i) {
            const jet::Column &x = a.columns[i], &y = b.columns[i];
            EXPECT_EQ(x.name, y.name);
            EXPECT_EQ(x.type, y.type) << x.name;
            EXPECT_EQ(x.number, y.number) << x.name;
            EXPECT_EQ(x.fixed, y.fixed) << x.name;
            EXPECT_EQ(x.rawFlags, y.rawFlags) << x.name;
            EXPECT_EQ(x.rawOrdinal, y.rawOrdinal) << x.name;
            EXPECT_EQ(x.lengthBytes, y.lengthBytes) << x.name;
            if (x.type != jet::ColumnType::Boolean) {
                EXPECT_EQ(x.position, y.position) << x.name;
            }
            EXPECT_EQ(x.ownedMap, y.ownedMap) << x.name;
            EXPECT_EQ(x.freeMap, y.freeMap) << x.name;
        }
        ASSERT_EQ(a.physicalIndexes.size(), b.physicalIndexes.size());
        for (std::size_t i = 0; i < a.physicalIndexes.size(); ++i) {
            EXPECT_EQ(a.physicalIndexes[i].columns, b.physicalIndexes[i].columns);
            EXPECT_EQ(a.physicalIndexes[i].root, b.physicalIndexes[i].root);
            EXPECT_EQ(a.physicalIndexes[i].ownedMap, b.physicalIndexes[i].ownedMap);
            EXPECT_EQ(a.physicalIndexes[i].rawFlags, b.physicalIndexes[i].rawFlags);
            EXPECT_EQ(a.physicalIndexes[i].distinctCount, b.physicalIndexes[i].distinctCount);
        }
        ASSERT_EQ(a.logicalIndexes.size(), b.logicalIndexes.size());
        for (std::size_t i = 0; i < a.logicalIndexes.size(); ++i) {
            EXPECT_EQ(a.logicalIndexes[i].name, b.logicalIndexes[i].name);
            EXPECT_EQ(a.logicalIndexes[i].number, b.logicalIndexes[i].number);
            EXPECT_EQ(a.logicalIndexes[i].physical, b.logicalIndexes[i].physical);
            EXPECT_EQ(a.logicalIndexes[i].kind, b.logicalIndexes[i].kind);
        }
    }
}

TEST(EmptyFile, HasTheRowsOfTheReference)
{
    ScratchCatalog ours;
    jet_testing::MemoryFileSystem files;
    files.Put("adox.mdb", Reference());
    const auto pager = jet::Pager::Open(files, "adox.mdb", {});
    jet::Catalog reference(*pager);
    for (const char* name : {"MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"}) {
        const auto theirs = reference.Open(name);
        std::vector<jet::Row> expected;
        for (jet::TableScan scan(*theirs); scan.Next();)
            expected.push_back(scan.GetRow());
        std::vector<jet::Row> rows = ours.Rows(name);
        ASSERT_EQ(rows.size(), expected.size()) << name;
        for (std::size_t i = 0; i < rows.size(); ++i)
            for (std::size_t c = 0; c < rows[i].size(); ++c) {
                const std::string& column = theirs->Definition().columns[c].name;
                if (column != "DateCreate" && column != "DateUpdate") {
                    EXPECT_EQ(rows[i][c], expected[i][c]) << name << ' ' << i << ' ' << column;
                }
            }
    }
}

TEST(EmptyFile, IsSpotless)
{
    ScratchCatalog catalog;
    catalog.ExpectSpotless();
    EXPECT_EQ(catalog->Tables().size(), 4u);
}

} // namespace
