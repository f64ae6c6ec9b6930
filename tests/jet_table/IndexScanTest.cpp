#include "ScratchTable.h"

#include "jet/base/Error.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace jet;

namespace {

/// A table with a text, two numbers and indexes on them, and 600 rows.
class ScanTable {
public:
    ScanTable()
    {
        TableSketch sketch;
        sketch.Add("Tekst", ColumnType::Text, 20);
        sketch.Add("A", ColumnType::Long);
        sketch.Add("B", ColumnType::Long);
        sketch.Index({{1, true}, {2, true}});
        sketch.Index({{1, false}});
        sketch.Index({{0, true}});
        m_table = OpenTable(m_file, MakeTable(m_file, sketch).page);
        std::mt19937 random(3);
        for (int i = 0; i < 600; ++i) {
            Row row{std::string(1, static_cast<char>('a' + random() % 26)),
                    static_cast<std::int32_t>(random() % 30),
                    static_cast<std::int32_t>(random() % 10)};
            if (i % 20 == 0)
                row[1] = Value();
            m_table->Insert(row);
        }
    }

    jet::Table& Table() { return *m_table; }
    ScratchFile& File() { return m_file; }

    /// Rows of the scan as A x 100 + B; null as -1 x 100.
    std::vector<int> Rows(int index, const IndexRange& range, bool backwards = false)
    {
        std::vector<int> rows;
        for (IndexScan scan(*m_table, index, range, backwards); scan.Next();)
            rows.push_back(Number(scan.Id()));
        return rows;
    }

    /// Those rows of a table scan that `choose` takes, in rising order.
    template <typename Choose>
    std::vector<int> Chosen(Choose choose)
    {
        std::vector<int> rows;
        for (TableScan scan(*m_table); scan.Next();) {
            if (choose(scan.Get(1), scan.Get(2)))
                rows.push_back(Number(scan.Id()));
        }
        std::ranges::sort(rows);
        return rows;
    }

private:
    int Number(RowId row)
    {
        return m_table->Get(row, 1).AsIntOr(-1) * 100 + m_table->Get(row, 2).AsInt();
    }

    ScratchFile m_file;
    std::unique_ptr<jet::Table> m_table;
};

IndexRange Between(std::optional<Row> lower, std::optional<Row> upper, bool lowerInclusive = true,
                   bool upperInclusive = true)
{
    return {std::move(lower), std::move(upper), lowerInclusive, upperInclusive};
}

Row Key(int a)
{
    return {std::int32_t{a}};
}

Row Key(int a, int b)
{
    return {std::int32_t{a}, std::int32_t{b}};
}

std::vector<int> Reversed(std::vector<int> rows)
{
    std::ranges::reverse(rows);
    return rows;
}

} // namespace

TEST(IndexScanTest, WithoutBoundsEveryRowComesInKeyOrderNullsFirst)
{
    ScanTable t;
    const auto all = t.Chosen([](const Value&, const Value&) { return true; });
    EXPECT_EQ(all.size(), 600u);
    EXPECT_EQ(t.Rows(0, {}), all);
    EXPECT_EQ(t.Rows(0, {}, true), Reversed(all));
    EXPECT_LT(all.front(), 0) << "a null";
}

TEST(IndexScanTest, BoundsOnAPrefixTakeAllThatBeginsWithIt)
{
    ScanTable t;
    const auto equal = t.Chosen([](const Value& a, const Value&) { return a.AsIntOr(-1) == 7; });
    EXPECT_FALSE(equal.empty());
    EXPECT_EQ(t.Rows(0, IndexRange::Equal(Key(7))), equal);
    EXPECT_EQ(t.Rows(0, IndexRange::Equal(Key(7)), true), Reversed(equal));
    EXPECT_EQ(t.Rows(1, IndexRange::Equal(Key(7))).size(), equal.size());
    EXPECT_TRUE(t.Rows(0, IndexRange::Equal(Key(99))).empty());
    const auto null = t.Chosen([](const Value& a, const Value&) { return a.IsNull(); });
    EXPECT_EQ(t.Rows(0, IndexRange::Equal({Value()})), null);
}

TEST(IndexScanTest, BoundsMayBeInclusiveOrExclusive)
{
    ScanTable t;
    for (const bool lowerIn : {true, false}) {
        for (const bool upperIn : {true, false}) {
            const auto inside = [&](int v, int low, int high) {
                return (lowerIn ? v >= low : v > low) && (upperIn ? v <= high : v < high);
            };
            const auto onA =
                t.Chosen([&](const Value& a, const Value&) { return inside(a.AsIntOr(-1), 5, 9); });
            const auto range = Between(Key(5), Key(9), lowerIn, upperIn);
            EXPECT_EQ(t.Rows(0, range), onA);
            EXPECT_EQ(t.Rows(0, range, true), Reversed(onA));

            const auto onBoth = t.Chosen([&](const Value& a, const Value& b) {
                return inside(a.AsIntOr(-1) * 100 + b.AsInt(), 503, 906);
            });
            const auto both = Between(Key(5, 3), Key(9, 6), lowerIn, upperIn);
            EXPECT_EQ(t.Rows(0, both), onBoth);
            EXPECT_EQ(t.Rows(0, both, true), Reversed(onBoth));

            // In a descending index the lower bound is the larger value.
            auto descending = t.Rows(1, Between(Key(9), Key(5), upperIn, lowerIn));
            EXPECT_TRUE(std::ranges::is_sorted(descending, std::greater<>{},
                                               [](int n) { return n / 100; }));
            std::ranges::sort(descending);
            EXPECT_EQ(descending, onA);
        }
    }
}

TEST(IndexScanTest, OneBoundLeavesTheOtherEndOpen)
{
    ScanTable t;
    EXPECT_EQ(t.Rows(0, Between(Key(20), std::nullopt)),
              t.Chosen([](const Value& a, const Value&) { return a.AsIntOr(-1) >= 20; }));
    EXPECT_EQ(t.Rows(0, Between(std::nullopt, Key(3), true, false)),
              t.Chosen([](const Value& a, const Value&) { return a.AsIntOr(-1) < 3; }));
    EXPECT_TRUE(t.Rows(0, Between(Key(9), Key(5))).empty()) << "a range that is turned round";
}

TEST(IndexScanTest, TextIsFoundWithoutRegardToCase)
{
    ScanTable t;
    EXPECT_EQ(t.Rows(2, IndexRange::Equal({"Q"})), t.Rows(2, IndexRange::Equal({"q"})));
    EXPECT_FALSE(t.Rows(2, IndexRange::Equal({"Q"})).empty());
}

TEST(IndexScanTest, ATextWithoutAKeyCannotBeSoughtInAnIndex)
{
    ScanTable t;
    try {
        t.Rows(2, IndexRange::Equal({"\xE3\x81\x82"}));
        ADD_FAILURE() << "sought";
    } catch (const Error& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::TextNotIndexable);
        EXPECT_NE(std::string(error.what()).find("Tekst"), std::string::npos);
    }
}

TEST(IndexScanTest, AWalkBearsThatItsRowsAreDeletedAndOthersInserted)
{
    ScanTable t;
    const std::size_t all = 600;
    std::size_t met = 0;
    for (IndexScan scan(t.Table(), 0, {}); scan.Next(); ++met) {
        t.Table().Delete(scan.Id());
        if (met % 3 == 0) { // before the walk: not met again
            Row row{"z", Value(), std::int32_t{0}};
            t.Table().Insert(row);
        }
    }
    EXPECT_GE(met, all);
    for (IndexScan scan(t.Table(), 0, {}, true); scan.Next();)
        t.Table().Delete(scan.Id());
    EXPECT_EQ(t.Table().RowCount(), 0u);
}

TEST(IndexScanTest, AWalkBearsThatTheKeyItStandsOnMovesOn)
{
    ScanTable t;
    std::size_t met = 0;
    for (IndexScan scan(t.Table(), 0, Between(Key(0), Key(29))); scan.Next(); ++met) {
        const std::vector<Table::Change> change{{1, std::int32_t{1000}}}; // out of the range
        t.Table().Update(scan.Id(), change);
    }
    EXPECT_EQ(met, 570u) << "each row once";
}

TEST(IndexScanTest, TheBestFittingIndexIsFound)
{
    ScanTable t;
    EXPECT_EQ(t.Table().FindPhysicalIndex(std::vector<int>{1}), 1) << "fewest other columns";
    EXPECT_EQ(t.Table().FindPhysicalIndex(std::vector<int>{1, 2}), 0);
    EXPECT_EQ(t.Table().FindPhysicalIndex(std::vector<int>{2, 1}), -1);
    EXPECT_EQ(t.Table().FindPhysicalIndex(std::vector<int>{0}), 2);
    EXPECT_EQ(t.Table().FindPhysicalIndex(std::vector<int>{2}), -1);
    EXPECT_EQ(t.Table().FindPhysicalIndex(std::vector<int>{}), -1);
}
