#include "ScratchTable.h"

#include "jet/base/Error.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace jet;

namespace {

class ScanTable {
public:
    explicit ScanTable(int rows)
    {
        TableSketch sketch;
        sketch.Add("Nummer", ColumnType::Long);
        sketch.Add("Tekst", ColumnType::Text);
        m_table = OpenTable(m_file, MakeTable(m_file, sketch).page);
        for (int i = 0; i < rows; ++i)
            Insert(i);
    }

    RowId Insert(int number)
    {
        Row row{std::int32_t{number}, std::string(100, 'x')};
        return m_table->Insert(row);
    }

    jet::Table& Table() { return *m_table; }
    ScratchFile& File() { return m_file; }

private:
    ScratchFile m_file;
    std::unique_ptr<jet::Table> m_table;
};

} // namespace

TEST(TableScanTest, AnEmptyTableHasNoRows)
{
    ScanTable t(0);
    TableScan scan(t.Table());
    EXPECT_FALSE(scan.Next());
    EXPECT_FALSE(scan.Next());
    EXPECT_FALSE(scan.Previous());
    EXPECT_EQ(t.Table().RowCount(), 0u);
}

TEST(TableScanTest, GoesBothWaysFromAnywhere)
{
    ScanTable t(200);
    TableScan scan(t.Table());
    ASSERT_TRUE(scan.Next());
    ASSERT_TRUE(scan.Next());
    EXPECT_EQ(scan.Get(0).AsInt(), 1);
    ASSERT_TRUE(scan.Previous());
    EXPECT_EQ(scan.Get(0).AsInt(), 0);
    EXPECT_FALSE(scan.Previous());
    ASSERT_TRUE(scan.Next());
    EXPECT_EQ(scan.Get(0).AsInt(), 0);
    while (scan.Next()) {
    }
    ASSERT_TRUE(scan.Previous());
    EXPECT_EQ(scan.Get(0).AsInt(), 199);
    const RowId last = scan.Id();
    for (int i = 198; i >= 0; --i) {
        ASSERT_TRUE(scan.Previous());
        EXPECT_EQ(scan.Get(0).AsInt(), i);
    }
    scan.StandOn(last);
    EXPECT_FALSE(scan.Next());
    scan.StandOn(last);
    ASSERT_TRUE(scan.Previous());
    EXPECT_EQ(scan.Get(0).AsInt(), 198);
}

TEST(TableScanTest, BehindTheLastRowThereIsNoCurrentRow)
{
    ScanTable t(1);
    TableScan scan(t.Table());
    ASSERT_TRUE(scan.Next());
    ASSERT_FALSE(scan.Next());
    EXPECT_THROW((void)scan.Get(0), Error);
}

TEST(TableScanTest, PassesOverRowsThatAreDeletedUnderway)
{
    ScanTable t(300);
    std::set<int> met;
    TableScan scan(t.Table());
    while (scan.Next()) {
        const int number = scan.Get(0).AsInt();
        met.insert(number);
        RowReader reader(t.Table());
        const RowId next{scan.Id().page, static_cast<std::uint8_t>(scan.Id().slot + 1)};
        if (reader.MoveTo(next))
            t.Table().Delete(next);
        EXPECT_EQ(scan.Get(0).AsInt(), number) << "the page has moved under the row";
    }
    EXPECT_GE(met.size(), 150u);
    EXPECT_EQ(t.Table().RowCount(), met.size());
}

TEST(TableScanTest, ARowDeletedUnderTheScanCannotBeRead)
{
    ScanTable t(10);
    TableScan scan(t.Table());
    scan.Next();
    t.Table().Delete(scan.Id());
    try {
        (void)scan.Get(0);
        ADD_FAILURE() << "read";
    } catch (const Error& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::NoCurrentRow);
        EXPECT_NE(std::string(error.what()).find("Proef"), std::string::npos);
    }
    ASSERT_TRUE(scan.Next());
    EXPECT_EQ(scan.Get(0).AsInt(), 1);
}

TEST(TableScanTest, BearsThatAllPagesAreGivenBackUnderway)
{
    ScanTable t(500);
    TableScan scan(t.Table());
    int met = 0;
    while (scan.Next()) {
        ++met;
        if (met == 100) {
            std::vector<RowId> rows;
            for (TableScan all(t.Table()); all.Next();)
                rows.push_back(all.Id());
            for (const RowId row : rows)
                t.Table().Delete(row);
        }
    }
    EXPECT_EQ(met, 100);
    EXPECT_FALSE(scan.Previous());
}

TEST(TableScanTest, BearsARollBackThatTakesItsPagesAway)
{
    ScanTable t(3);
    t.File().Pager().Begin();
    for (int i = 3; i < 500; ++i)
        t.Insert(i);
    TableScan scan(t.Table());
    for (int i = 0; i < 400; ++i)
        ASSERT_TRUE(scan.Next());
    t.File().Pager().Rollback();
    EXPECT_THROW((void)scan.Get(0), Error);
    EXPECT_FALSE(scan.Next());
    EXPECT_TRUE(scan.Previous());
    EXPECT_EQ(scan.Get(0).AsInt(), 2);
    EXPECT_EQ(t.Table().RowCount(), 3u);
}

TEST(TableScanTest, ReadersSeeTheRowAsItIsNow)
{
    ScanTable t(5);
    RowReader reader(t.Table());
    TableScan scan(t.Table());
    scan.Next();
    ASSERT_TRUE(reader.MoveTo(scan.Id()));
    EXPECT_EQ(reader.Get(0).AsInt(), 0);
    const std::vector<Table::Change> change{{0, std::int32_t{77}}, {1, Value()}};
    t.Table().Update(scan.Id(), change);
    EXPECT_EQ(reader.Get(0).AsInt(), 77);
    EXPECT_TRUE(reader.IsNull(1));
    EXPECT_EQ(scan.GetRow(), (Row{std::int32_t{77}, Value()}));
    EXPECT_FALSE(reader.MoveTo({scan.Id().page, 200}));
    EXPECT_FALSE(reader.MoveTo({1, 0})) << "a page of something else";
    EXPECT_FALSE(reader.MoveTo({900000, 0}));
}
