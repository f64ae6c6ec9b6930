#include "SampleFile.h"
#include "ScratchTable.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"

#include <gtest/gtest.h>

using namespace jet;

namespace {

/// Everything but `length` and the page.
void ExpectEqual(const TableDefinition& a, const TableDefinition& b)
{
    EXPECT_EQ(a.system, b.system);
    EXPECT_EQ(a.rowCount, b.rowCount);
    EXPECT_EQ(a.lastAutoNumber, b.lastAutoNumber);
    EXPECT_EQ(a.maxColumns, b.maxColumns);
    EXPECT_EQ(a.variableColumns, b.variableColumns);
    EXPECT_EQ(a.ownedMap, b.ownedMap);
    EXPECT_EQ(a.freeMap, b.freeMap);
    ASSERT_EQ(a.columns.size(), b.columns.size());
    for (std::size_t i = 0; i < a.columns.size(); ++i) {
        const Column &x = a.columns[i], &y = b.columns[i];
        SCOPED_TRACE(x.name);
        EXPECT_EQ(x.name, y.name);
        EXPECT_EQ(x.type, y.type);
        EXPECT_EQ(x.rawType, y.rawType);
        EXPECT_EQ(x.number, y.number);
        EXPECT_EQ(x.fixed, y.fixed);
        EXPECT_EQ(x.position, y.position);
        EXPECT_EQ(x.lengthBytes, y.lengthBytes);
        EXPECT_EQ(x.precision, y.precision);
        EXPECT_EQ(x.scale, y.scale);
        EXPECT_EQ(x.autoNumber, y.autoNumber);
        EXPECT_EQ(x.compress, y.compress);
        EXPECT_EQ(x.hyperlink, y.hyperlink);
        EXPECT_EQ(x.rawFlags, y.rawFlags);
        EXPECT_EQ(x.rawExtraFlags, y.rawExtraFlags);
        EXPECT_EQ(x.rawOrdinal, y.rawOrdinal);
        EXPECT_EQ(x.sortOrder, y.sortOrder);
        EXPECT_EQ(x.ownedMap, y.ownedMap);
        EXPECT_EQ(x.freeMap, y.freeMap);
    }
    ASSERT_EQ(a.physicalIndexes.size(), b.physicalIndexes.size());
    for (std::size_t i = 0; i < a.physicalIndexes.size(); ++i) {
        const PhysicalIndex &x = a.physicalIndexes[i], &y = b.physicalIndexes[i];
        EXPECT_EQ(x.columns, y.columns);
        EXPECT_EQ(x.ownedMap, y.ownedMap);
        EXPECT_EQ(x.root, y.root);
        EXPECT_EQ(x.rawFlags, y.rawFlags);
        EXPECT_EQ(x.rowsCounted, y.rowsCounted);
        EXPECT_EQ(x.distinctCount, y.distinctCount);
    }
    ASSERT_EQ(a.logicalIndexes.size(), b.logicalIndexes.size());
    for (std::size_t i = 0; i < a.logicalIndexes.size(); ++i) {
        const LogicalIndex &x = a.logicalIndexes[i], &y = b.logicalIndexes[i];
        EXPECT_EQ(x.name, y.name);
        EXPECT_EQ(x.number, y.number);
        EXPECT_EQ(x.physical, y.physical);
        EXPECT_EQ(x.kind, y.kind);
        EXPECT_EQ(x.side, y.side);
        EXPECT_EQ(x.otherIndex, y.otherIndex);
        EXPECT_EQ(x.otherTable, y.otherTable);
        EXPECT_EQ(x.cascadeUpdates, y.cascadeUpdates);
        EXPECT_EQ(x.cascadeDeletes, y.cascadeDeletes);
    }
}

Bytes PageBytes(Pager& pager, PageNumber page)
{
    const PageView view = pager.Read(page);
    return Bytes(view.Data().begin(), view.Data().end());
}

} // namespace

TEST(DefinitionTest, RewrittenDefinitionsSayTheSame)
{
    for (const std::string& name : SampleFile::WritableNames()) {
        const SampleFile original(name);
        ScratchFile copy(name);
        copy.Pager().Begin();
        for (const auto& [table, page] : original.Tables()) {
            SCOPED_TRACE(name + " " + table);
            const TableDefinition before = ReadTableDefinition(copy.Pager(), page);
            const Bytes pageBefore = PageBytes(copy.Pager(), page);
            TableDefinition written = before;
            WriteTableDefinition(copy.Pager(), copy.Pages(), written);
            EXPECT_EQ(written.length, before.length);
            const TableDefinition after = ReadTableDefinition(copy.Pager(), page);
            ExpectEqual(before, after);
            // free count, next page, length
            const Bytes pageAfter = PageBytes(copy.Pager(), page);
            EXPECT_TRUE(std::equal(pageAfter.begin(), pageAfter.begin() + 16, pageBefore.begin()));
        }
    }
}

TEST(DefinitionTest, ADefinitionGrowsAndShrinksOverItsPages)
{
    ScratchFile file;
    const std::size_t pagesBefore = CountPagesInUse(file);
    TableSketch sketch;
    for (int i = 0; i < 255; ++i)
        sketch.Add("Veld met een lange naam, nummer " + std::to_string(1000 + i),
                   i % 2 == 0 ? ColumnType::Text : ColumnType::Long);
    const PageNumber page = MakeTable(file, sketch).page;
    const TableDefinition wide = ReadTableDefinition(file.Pager(), page);
    // 63 + 255 x (25 + 2 + 72) + 2 bytes: seven pages
    EXPECT_EQ(wide.length, 63u + 255u * (25 + 2 + 2 * 36) + 2);
    EXPECT_EQ(CountPagesInUse(file), pagesBefore + 7 + 1) << "the other one is for maps";
    file.Reopen();
    ExpectEqual(wide, ReadTableDefinition(file.Pager(), wide.page));

    file.Pager().Begin();
    TableDefinition narrow = wide;
    narrow.columns.resize(3);
    WriteTableDefinition(file.Pager(), file.Pages(), narrow);
    EXPECT_EQ(CountPagesInUse(file), pagesBefore + 1 + 1);
    ExpectEqual(narrow, ReadTableDefinition(file.Pager(), wide.page));
    TableDefinition again = wide;
    WriteTableDefinition(file.Pager(), file.Pages(), again);
    ExpectEqual(wide, ReadTableDefinition(file.Pager(), wide.page));
    FreeTableDefinition(file.Pager(), file.Pages(), wide.page);
    EXPECT_EQ(CountPagesInUse(file), pagesBefore + 1);
    file.Pager().Commit(Flush::No);
}

TEST(DefinitionTest, NamesAreFoundWithoutRegardToCase)
{
    SampleFile file("indexPropertiesV2000");
    for (const auto& [name, page] : file.Tables()) {
        const TableDefinition definition = ReadTableDefinition(file.Pager(), page);
        if (name != "TableIgnoreNulls1")
            continue;
        EXPECT_EQ(definition.FindColumn("DATA"), definition.FindColumn("data"));
        EXPECT_GE(definition.FindColumn("Row"), 0);
        EXPECT_EQ(definition.FindColumn("geen"), -1);
        EXPECT_EQ(definition.FindIndex("primarykey"), definition.PrimaryKey());
        EXPECT_EQ(definition.FindIndex("geen"), -1);
        return;
    }
    ADD_FAILURE() << "the table was not found";
}

TEST(DefinitionTest, AChainOfPagesThatRunsInACircleIsDamage)
{
    ScratchFile file("common2V2000");
    PageNumber page = 0;
    const SampleFile original("common2V2000");
    for (const auto& [name, at] : original.Tables()) {
        if (GetU32(PageBytes(file.Pager(), at), 4) != 0)
            page = at;
    }
    ASSERT_NE(page, 0u) << "no definition of two pages";
    file.Pager().Begin();
    {
        const PageEdit edit = file.Pager().Write(page);
        PutU32(edit.Data(), 4, page);
        PutU32(edit.Data(), 8, 200000);
    }
    try {
        (void)ReadTableDefinition(file.Pager(), page);
        ADD_FAILURE() << "not noticed";
    } catch (const Error& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::Damaged);
        EXPECT_NE(std::string(error.what()).find("scratch.mdb"), std::string::npos);
    }
    file.Pager().Rollback();
}

TEST(DefinitionTest, APageThatIsNoDefinitionIsDamage)
{
    SampleFile file("delV2000");
    for (const PageNumber page : {1u, 7u, 100000u}) {
        try {
            (void)ReadTableDefinition(file.Pager(), page);
            ADD_FAILURE() << page;
        } catch (const Error& error) {
            EXPECT_EQ(error.Kind(), ErrorKind::Damaged);
        }
    }
}
