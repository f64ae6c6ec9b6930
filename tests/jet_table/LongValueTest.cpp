#include "TableCheck.h"
#include "TestTable.h"

#include "jet/table/LongValues.h"

#include <map>

using namespace jet;

namespace {

TableSketch NumberAndMemo()
{
    TableSketch sketch;
    sketch.Add("Nummer", ColumnType::Long);
    sketch.Add("Memo", ColumnType::Memo);
    sketch.Add("Ole", ColumnType::Ole);
    return sketch;
}

} // namespace

TEST(LongValueTest, LongValuesOfEveryLengthComeBack)
{
    TestTable t(NumberAndMemo());
    std::map<std::size_t, RowId> rows;
    for (const std::size_t length :
         {0u, 1u, 2u, 63u, 64u, 65u, 1000u, 1025u, 4076u, 4077u, 8144u, 8145u, 100000u, 3000000u})
        rows[length] = t.Insert(
            {static_cast<std::int32_t>(length), std::string(length, 'm'), Pattern(length)});
    const PageNumber page = t.table->Definition().page;
    t.file.Reopen();
    t.table = OpenTable(t.file, page);
    for (const auto& [length, row] : rows) {
        EXPECT_TRUE(t.table->Get(row, 1) == Value(std::string(length, 'm'))) << length;
        EXPECT_TRUE(t.table->Get(row, 2) == Value(Pattern(length))) << length;
        EXPECT_FALSE(t.table->Get(row, 1).IsNull()) << "an empty memo is not null";
    }
    ExpectSoundTable(*t.table);
}

TEST(LongValueTest, PagesOfReplacedAndDeletedLongValuesAreUsedAgain)
{
    TestTable t(NumberAndMemo());
    const std::size_t before = CountPagesInUse(t.file);
    const RowId row = t.Insert({std::int32_t{1}, std::string(50000, 'a'), Pattern(50000)});
    const std::size_t with = CountPagesInUse(t.file);
    const PageNumber pagesOfFile = t.file.Pager().PageCount();
    for (int i = 0; i < 10; ++i)
        t.Update(row, {{1, std::string(50000, 'b')}, {2, Pattern(50000, i)}});
    EXPECT_LE(CountPagesInUse(t.file), with + 2);
    EXPECT_LE(t.file.Pager().PageCount(), 2 * pagesOfFile);
    t.Update(row, {{1, Value()}, {2, Pattern(5)}});
    ExpectSoundTable(*t.table);
    EXPECT_EQ(CountPagesInUse(t.file), before + 1);
    t.table->Delete(row);
    EXPECT_EQ(CountPagesInUse(t.file), before);
}

TEST(LongValueTest, AnUpdateThatLeavesALongValueAloneKeepsItsReference)
{
    TestTable t(NumberAndMemo());
    const RowId row = t.Insert({std::int32_t{1}, std::string(9000, 'a'), Pattern(30)});
    const auto reference = [&](int column) {
        const auto found = FindRow(t.file.Pager(), t.table->Definition().page, row);
        const RowView view(t.file.Pager(), row.page, t.table->Definition(), found->bytes);
        const auto bytes = view.Bytes(t.ColumnAt(column));
        return Bytes(bytes.begin(), bytes.end());
    };
    const Bytes memo = reference(1), ole = reference(2);
    t.Update(row, {{0, std::int32_t{2}}});
    EXPECT_EQ(reference(1), memo);
    EXPECT_EQ(reference(2), ole);
    EXPECT_EQ(memo.size(), 12u);
    EXPECT_EQ(ole.size(), 12u + 30u) << "inline";
    ExpectSoundTable(*t.table);
}

TEST(LongValueTest, ShortLongValuesLeaveARowThatWouldBecomeTooLong)
{
    TableSketch sketch;
    for (int i = 0; i < 100; ++i)
        sketch.Add("Memo" + std::to_string(i), ColumnType::Memo);
    TestTable t(sketch);
    Row row(100);
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = std::string(40 + i % 20, 'k');
    const RowId id = t.Insert(row); // 100 x (12 + 50) bytes inline would be far too long
    EXPECT_EQ(t.table->GetRow(id), row);
    std::vector<Table::Change> changes;
    for (int i = 0; i < 100; i += 3) {
        row[static_cast<std::size_t>(i)] = "kort";
        changes.push_back({i, "kort"});
    }
    t.Update(id, changes);
    EXPECT_EQ(t.table->GetRow(id), row);
    ExpectSoundTable(*t.table);
}

TEST(LongValueTest, ManySmallLongValuesShareAPage)
{
    TestTable t(NumberAndMemo());
    const std::size_t before = CountPagesInUse(t.file);
    std::vector<RowId> rows;
    for (int i = 0; i < 100; ++i)
        rows.push_back(t.Insert({std::int32_t{i}, Value(), Pattern(200, i)}));
    EXPECT_LE(CountPagesInUse(t.file), before + 1 + 6 + 1); // 100 x 202 bytes, and the rows
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 100; i += 7)
            t.Update(rows[static_cast<std::size_t>(i)],
                     {{2, Pattern(200 + static_cast<std::size_t>(round), i)}});
    }
    ExpectSoundTable(*t.table);
    EXPECT_LE(CountPagesInUse(t.file), before + 1 + 6 + 3);
}
