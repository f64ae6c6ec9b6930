#include "SampleFile.h"
#include "TableCheck.h"
#include "TestTable.h"
#include "TreeCheck.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/base/Numbers.h"

#include <gtest/gtest.h>

#include <limits>

using namespace jet;

namespace {

Slot SlotOf(Pager& pager, RowId row)
{
    const PageView view = pager.Read(row.page);
    return DataPage(pager, row.page, view.Data()).At(row.slot);
}

} // namespace

// --- values -----------------------------------------------------------------

TEST(TableChangeTest, ValuesOfEveryTypeComeBack)
{
    for (const bool fixed : {true, false}) {
        TableSketch sketch;
        sketch.Add("Ja", ColumnType::Boolean);
        sketch.Add("Byte", ColumnType::Byte, 0, fixed);
        sketch.Add("Integer", ColumnType::Integer, 0, fixed);
        sketch.Add("Long", ColumnType::Long, 0, fixed);
        sketch.Add("Geld", ColumnType::Currency, 0, fixed);
        sketch.Add("Enkel", ColumnType::Single, 0, fixed);
        sketch.Add("Dubbel", ColumnType::Double, 0, fixed);
        sketch.Add("Datum", ColumnType::DateTime, 0, fixed);
        sketch.Add("Binair", ColumnType::Binary, 20);
        sketch.Add("Tekst", ColumnType::Text, 20);
        sketch.Add("Ole", ColumnType::Ole);
        sketch.Add("Memo", ColumnType::Memo);
        sketch.Add("Guid", ColumnType::Guid, 0, fixed);
        sketch.Add("Decimaal", ColumnType::Decimal, 0, fixed);
        sketch.columns.back().scale = 2;
        TestTable t(sketch);
        Decimal decimal = DecimalFromText("-12345678901234567890.25").value();
        t.ColumnAt(13).precision = 28;
        const Row row{true,
                      std::uint8_t{255},
                      std::int16_t{-32768},
                      std::numeric_limits<std::int32_t>::min(),
                      Currency{-123456789},
                      1.5f,
                      -1e300,
                      DateTime{-1.25},
                      Pattern(20),
                      "d\xC3\xA9gr\xC3\xA9",
                      Pattern(100),
                      "memo",
                      GuidFromText("{626B4607-6100-921E-D02E-5132E714CFF9}").value(),
                      decimal};
        const Row nulls(row.size());
        const RowId first = t.Insert(row), second = t.Insert(nulls);
        Row nullsRead = nulls;
        nullsRead[0] = false;
        const PageNumber page = t.table->Definition().page;
        t.file.Reopen();
        t.table = OpenTable(t.file, page);
        EXPECT_EQ(t.table->GetRow(first), row);
        EXPECT_EQ(t.table->GetRow(second), nullsRead) << "a yes/no field knows no null";
        ExpectSoundTable(*t.table);
    }
}

TEST(TableChangeTest, ValuesAreConvertedToTheirFieldsAndGivenBackAsStored)
{
    TableSketch sketch;
    sketch.Add("Byte", ColumnType::Byte);
    sketch.Add("Tekst", ColumnType::Text, 10);
    sketch.Add("Ja", ColumnType::Boolean);
    sketch.Add("Decimaal", ColumnType::Decimal);
    sketch.columns.back().scale = 1;
    TestTable t(sketch);
    Row row{2.5, std::int32_t{12}, std::int16_t{-1}, "7.25"};
    const RowId id = t.table->Insert(row);
    Decimal rounded = DecimalFromText("7.2").value(); // halves to even
    const Row stored{std::uint8_t{2}, "12", true, rounded};
    EXPECT_EQ(row, stored);
    EXPECT_EQ(t.table->GetRow(id), stored);
}

TEST(TableChangeTest, WhatDoesNotConvertIsRefusedByTheNameOfTheField)
{
    TableSketch sketch = NumberAndText();
    sketch.Add("Decimaal", ColumnType::Decimal);
    sketch.columns.back().precision = 4;
    sketch.columns.back().scale = 1;
    TestTable t(sketch);
    t.ExpectInsertRefused(ErrorKind::BadValue, {"Nummer", "Proef"}, {"geen getal", "a", Value()});
    t.ExpectInsertRefused(ErrorKind::Overflow, {"Nummer", "Proef"}, {1e12, "a", Value()});
    t.ExpectInsertRefused(ErrorKind::Overflow, {"Decimaal", "Proef"}, {Value(), "a", 1234.5});
    t.ExpectInsertRefused(ErrorKind::BadValue, {}, {std::int32_t{1}, "\xC3", Value()});
    t.ExpectInsertRefused(ErrorKind::BadValue, {"Proef"}, {std::int32_t{1}});
    EXPECT_EQ(t.table->RowCount(), 0u);
}

TEST(TableChangeTest, TooLongTextAndBinaryAreRefused)
{
    TableSketch sketch;
    sketch.Add("Naam", ColumnType::Text, 5);
    sketch.Add("Binair", ColumnType::Binary, 3);
    TestTable t(sketch);
    t.Insert(
        {"\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", Pattern(3)}); // five characters, ten bytes
    t.ExpectInsertRefused(ErrorKind::TooLong, {"Naam", "Proef"}, {"abcdef", Value()});
    t.ExpectInsertRefused(ErrorKind::TooLong, {"Naam", "Proef"}, {"abcd\xF0\x9F\x98\x80", Value()});
    t.ExpectInsertRefused(ErrorKind::TooLong, {"Binair", "Proef"}, {Value(), Pattern(4)});
    const RowId id = t.Insert({"a", Value()});
    t.ExpectRefused(ErrorKind::TooLong, {"Naam"}, [&] { t.Update(id, {{0, "abcdef"}}); });
    EXPECT_EQ(t.table->Get(id, 0), Value("a"));
}

TEST(TableChangeTest, RequiredFieldsAndThoseWithoutEmptyTextsAreKept)
{
    TestTable t(NumberAndText());
    t.ColumnAt(0).required = true;
    t.ColumnAt(1).allowZeroLength = false;
    t.ExpectInsertRefused(ErrorKind::NullNotAllowed, {"Nummer", "Proef"}, {Value(), "a"});
    t.ExpectInsertRefused(ErrorKind::EmptyNotAllowed, {"Naam", "Proef"}, {std::int32_t{1}, ""});
    const RowId id = t.Insert({std::int32_t{1}, Value()});
    t.ExpectRefused(ErrorKind::NullNotAllowed, {"Nummer"}, [&] { t.Update(id, {{0, Value()}}); });
    t.ExpectRefused(ErrorKind::EmptyNotAllowed, {"Naam"}, [&] { t.Update(id, {{1, ""}}); });
}

// --- autonumber -------------------------------------------------------------

TEST(TableChangeTest, AutoNumbersGoOnFromTheHighestAndFromGivenOnes)
{
    TableSketch sketch = NumberAndText();
    sketch.columns[0].autoNumber = true;
    TestTable t(sketch);
    const auto insert = [&](Value number) {
        Row row{std::move(number), "x"};
        t.table->Insert(row);
        return row[0].AsInt();
    };
    EXPECT_EQ(insert({}), 1);
    EXPECT_EQ(insert({}), 2);
    EXPECT_EQ(insert(std::int32_t{10}), 10);
    EXPECT_EQ(insert({}), 11);
    EXPECT_EQ(insert(std::int32_t{-5}), -5);
    EXPECT_EQ(insert({}), 12);
    const PageNumber page = t.table->Definition().page;
    t.file.Reopen();
    t.table = OpenTable(t.file, page);
    EXPECT_EQ(insert({}), 13);
    insert(std::numeric_limits<std::int32_t>::max());
    t.ExpectInsertRefused(ErrorKind::Overflow, {"Nummer", "Proef"}, {Value(), "x"});
}

TEST(TableChangeTest, ANumberOfARolledBackInsertIsGivenOutAgain)
{
    TableSketch sketch = NumberAndText();
    sketch.columns[0].autoNumber = true;
    sketch.Index({{0, true}});
    TestTable t(sketch);
    t.Insert({Value(), "a"});
    t.file.Pager().Begin();
    t.Insert({Value(), "b"});
    t.file.Pager().Begin();
    t.Insert({Value(), "c"});
    t.file.Pager().Rollback();
    Row row{Value(), "d"};
    t.table->Insert(row);
    EXPECT_EQ(row[0].AsInt(), 3);
    t.file.Pager().Rollback();
    EXPECT_EQ(t.table->RowCount(), 1u);
    t.table->Insert(row = {Value(), "e"});
    EXPECT_EQ(row[0].AsInt(), 2);
    EXPECT_EQ(t.table->Definition().rowCount, 2u);
    ExpectSoundTable(*t.table);
}

TEST(TableChangeTest, AutoGuidsAreMadeAndDiffer)
{
    TableSketch sketch;
    sketch.Add("Sleutel", ColumnType::Guid);
    sketch.columns[0].autoNumber = true;
    TestTable t(sketch);
    Row one{Value()}, two{Value()};
    t.table->Insert(one);
    t.table->Insert(two);
    EXPECT_FALSE(one[0].IsNull());
    EXPECT_NE(one, two);
}

// --- indexes ----------------------------------------------------------------

TEST(TableChangeTest, ASecondEqualKeyIsRefusedWithTheNameOfTheIndex)
{
    TableSketch sketch = NumberAndText();
    sketch.firstIsPrimary = true;
    sketch.Index({{0, true}});
    sketch.Index({{1, false}, {0, true}}, true);
    sketch.Index({{1, true}}, true);
    TestTable t(sketch);
    const RowId one = t.Insert({std::int32_t{1}, "Een"});
    t.Insert({std::int32_t{2}, "Twee"});
    t.ExpectInsertRefused(ErrorKind::Duplicate, {"Index0", "Proef"}, {std::int32_t{1}, "Drie"});
    t.ExpectInsertRefused(ErrorKind::Duplicate, {"Index2", "Proef"}, {std::int32_t{3}, "EEN "});
    t.ExpectRefused(ErrorKind::Duplicate, {"Index0"}, [&] {
        t.Update(one, {{0, std::int32_t{2}}});
    });
    t.Update(one, {{0, std::int32_t{1}}, {1, "een"}}); // equal to itself alone
    EXPECT_EQ(t.table->Get(one, 1), Value("een"));
    ExpectSoundTable(*t.table);
}

TEST(TableChangeTest, APrimaryKeyRefusesNullsAndAUniqueIndexTakesRowsOfNulls)
{
    TableSketch sketch = NumberAndText();
    sketch.Add("Extra", ColumnType::Long);
    sketch.firstIsPrimary = true;
    sketch.Index({{0, true}});
    sketch.Index({{1, true}, {2, true}}, true);
    TestTable t(sketch);
    t.ExpectInsertRefused(ErrorKind::NullNotAllowed, {"Nummer", "Index0", "Proef"},
                          {Value(), "a", Value()});
    t.Insert({std::int32_t{1}, Value(), Value()});
    t.Insert({std::int32_t{2}, Value(), Value()});
    t.Insert({std::int32_t{3}, "a", Value()});
    t.ExpectInsertRefused(ErrorKind::Duplicate, {"Index1"}, {std::int32_t{4}, "a", Value()});
    ExpectSoundTable(*t.table);
}

TEST(TableChangeTest, AnIndexThatIgnoresNullsLeavesOutRowsOfNullsOnly)
{
    TableSketch sketch = NumberAndText();
    sketch.Index({{0, true}, {1, true}}, false, true);
    TestTable t(sketch);
    const RowId id = t.Insert({Value(), Value()});
    t.Insert({std::int32_t{1}, Value()});
    t.Insert({Value(), "a"});
    const auto entries = [&] { return ExpectSoundTree(t.table->Internals().trees[0]).size(); };
    EXPECT_EQ(entries(), 2u);
    t.Update(id, {{0, std::int32_t{5}}});
    EXPECT_EQ(entries(), 3u);
    t.Update(id, {{0, Value()}});
    EXPECT_EQ(entries(), 2u);
    t.table->Delete(id);
    EXPECT_EQ(entries(), 2u);
    ExpectSoundTable(*t.table);
}

TEST(TableChangeTest, ATextWhosePlaceIsUnknownIsRefusedInAnIndexedFieldOnly)
{
    TableSketch sketch = NumberAndText();
    sketch.Add("Vrij", ColumnType::Text);
    sketch.Index({{1, true}});
    TestTable t(sketch);
    const std::string hiragana = "\xE3\x81\x82";
    t.ExpectInsertRefused(ErrorKind::TextNotIndexable, {"Naam", "Index0", "Proef"},
                          {Value(), hiragana, Value()});
    const RowId id = t.Insert({Value(), "a", hiragana});
    EXPECT_EQ(t.table->Get(id, 2), Value(hiragana));
    t.ExpectRefused(ErrorKind::TextNotIndexable, {"Naam"}, [&] { t.Update(id, {{1, hiragana}}); });
}

TEST(TableChangeTest, AKeyThatIsTooLongForAPageIsRefused)
{
    TableSketch sketch;
    for (int i = 0; i < 10; ++i)
        sketch.Add("Tekst" + std::to_string(i), ColumnType::Text, 255);
    std::vector<IndexColumn> all;
    for (int i = 0; i < 10; ++i)
        all.push_back({i, true});
    sketch.Index(all);
    TestTable t(sketch);
    t.ExpectInsertRefused(ErrorKind::TooLong, {"Index0", "Proef"}, Row(10, std::string(250, 'x')));
    t.Insert(Row(10, std::string(150, 'x')));
    ExpectSoundTable(*t.table);
}

TEST(TableChangeTest, DistinctKeysAreCounted)
{
    TableSketch sketch = NumberAndText();
    sketch.Index({{0, true}});
    TestTable t(sketch);
    for (int i = 0; i < 50; ++i)
        t.Insert({std::int32_t{i % 5}, "x"});
    const auto read = ReadTableDefinition(t.file.Pager(), t.table->Definition().page);
    EXPECT_EQ(read.physicalIndexes[0].distinctCount, 5u);
    EXPECT_EQ(read.rowCount, 50u);
}

// --- where rows stand -------------------------------------------------------

TEST(TableChangeTest, DeletedRowsLeaveAnEmptySlotAndTheirRoom)
{
    TestTable t(NumberAndText());
    std::vector<RowId> rows;
    for (int i = 0; i < 3; ++i)
        rows.push_back(t.Insert({std::int32_t{i}, "rij"}));
    t.table->Delete(rows[1]);
    const Slot slot = SlotOf(t.file.Pager(), rows[1]);
    EXPECT_TRUE(slot.IsDeleted());
    EXPECT_EQ(slot.length, 0);
    EXPECT_FALSE(t.table->Exists(rows[1]));
    EXPECT_EQ(t.table->Get(rows[2], 0).AsInt(), 2);
    EXPECT_THROW(t.table->Delete(rows[1]), Error);
    EXPECT_THROW((void)t.table->Get(rows[1], 0), Error);
    EXPECT_THROW(t.Update(rows[1], {{0, Value()}}), Error);
    EXPECT_NE(t.Insert({std::int32_t{9}, "nieuw"}), rows[1]) << "the id is not used again";
    ExpectSoundTable(*t.table);
}

TEST(TableChangeTest, RoomOfDeletedRowsIsUsedAgain)
{
    TestTable t(NumberAndText());
    std::vector<RowId> rows;
    for (int i = 0; i < 400; ++i)
        rows.push_back(t.Insert({std::int32_t{i}, std::string(200, 'x')}));
    const std::size_t pages = CountPagesInUse(t.file);
    for (int round = 0; round < 5; ++round) {
        for (std::size_t i = 0; i < rows.size(); i += 2) {
            t.table->Delete(rows[i]);
            rows[i] = t.Insert({std::int32_t{0}, std::string(200, 'y')});
        }
    }
    EXPECT_LE(CountPagesInUse(t.file), pages + 3);
    ExpectSoundTable(*t.table);
}

TEST(TableChangeTest, APageWithoutRowsIsGivenBack)
{
    TestTable t(NumberAndText());
    const std::size_t before = CountPagesInUse(t.file);
    std::vector<RowId> rows;
    for (int i = 0; i < 300; ++i)
        rows.push_back(t.Insert({std::int32_t{i}, std::string(200, 'x')}));
    EXPECT_GT(CountPagesInUse(t.file), before + 10);
    for (const RowId row : rows)
        t.table->Delete(row);
    EXPECT_EQ(CountPagesInUse(t.file), before);
    EXPECT_EQ(t.table->RowCount(), 0u);
}

TEST(TableChangeTest, ARowThatOutgrowsItsPageMovesBehindAPointerAndKeepsItsId)
{
    TableSketch sketch = NumberAndText();
    sketch.Index({{0, true}});
    TestTable t(sketch);
    std::vector<RowId> rows;
    for (int i = 0; i < 100; ++i)
        rows.push_back(t.Insert({std::int32_t{i}, "\xCE\xB1"}));
    const std::string large(240, 'G');
    for (const RowId row : rows)
        t.Update(row, {{1, large}});
    int moved = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(t.table->Get(rows[i], 0).AsInt(), static_cast<int>(i));
        EXPECT_EQ(t.table->Get(rows[i], 1), Value(large));
        moved += SlotOf(t.file.Pager(), rows[i]).IsPointer() ? 1 : 0;
    }
    EXPECT_GT(moved, 50);
    EXPECT_EQ(ExpectSoundTable(*t.table), static_cast<std::size_t>(moved));

    // Grown again: the pointer leads to the new place in one step.
    const std::string larger = "\xCE\xB1" + std::string(245, 'G');
    for (const RowId row : rows)
        t.Update(row, {{1, larger}});
    EXPECT_GT(ExpectSoundTable(*t.table), 50u); // one pointer to each hidden row
    for (const RowId row : rows)
        EXPECT_EQ(t.table->Get(row, 1), Value(larger));

    for (const RowId row : rows)
        t.Update(row, {{1, Value()}});
    ExpectSoundTable(*t.table);
    for (const RowId row : rows)
        t.table->Delete(row);
    EXPECT_EQ(t.table->RowCount(), 0u);
    ExpectSoundTable(*t.table);
}

TEST(TableChangeTest, ARowThatIsTooLongIsRefused)
{
    TableSketch sketch;
    for (int i = 0; i < 10; ++i)
        sketch.Add("Tekst" + std::to_string(i), ColumnType::Text, 255);
    TestTable t(sketch);
    const std::string alphas = [] {
        std::string text;
        for (int i = 0; i < 255; ++i)
            text += "\xCE\xB1"; // two bytes each in the row
        return text;
    }();
    t.ExpectInsertRefused(ErrorKind::RowTooLarge, {"Proef"}, Row(10, alphas));
    Row fits(10);
    for (std::size_t i = 0; i < 7; ++i)
        fits[i] = alphas;
    const RowId id = t.Insert(fits);
    EXPECT_EQ(t.table->GetRow(id), fits);
    t.ExpectRefused(ErrorKind::RowTooLarge, {"Proef"}, [&] { t.Update(id, {{9, alphas}}); });
    EXPECT_EQ(t.table->GetRow(id), fits);
}

// --- tables that were changed -----------------------------------------------

TEST(TableChangeTest, RowsWrittenBeforeAColumnWasAddedReadNullThereAndCanBeChanged)
{
    TableSketch sketch;
    sketch.Add("Nummer", ColumnType::Long); // no variable column at all at first
    TestTable t(sketch);
    const RowId old = t.Insert({std::int32_t{7}});
    t.file.Pager().Begin();
    TableDefinition wider = t.table->Definition();
    Column text;
    text.name = "Later";
    text.type = ColumnType::Text;
    text.fixed = false;
    text.lengthBytes = 100;
    text.number = 1;
    text.position = wider.variableColumns++;
    Column yes;
    yes.name = "Ja";
    yes.type = ColumnType::Boolean;
    yes.lengthBytes = 1;
    yes.number = 2;
    wider.maxColumns = 3;
    wider.columns.push_back(text);
    wider.columns.push_back(yes);
    WriteTableDefinition(t.file.Pager(), t.file.Pages(), wider);
    t.file.Pager().Commit(Flush::No);
    t.table->Internals().SetDefinition(ReadTableDefinition(t.file.Pager(), wider.page));
    EXPECT_EQ(t.table->GetRow(old), (Row{std::int32_t{7}, Value(), false}));
    t.Insert({std::int32_t{8}, "nieuw", true});
    t.Update(old, {{1, "aangevuld"}});
    EXPECT_EQ(t.table->GetRow(old), (Row{std::int32_t{7}, "aangevuld", false}));
    ExpectSoundTable(*t.table);
}

TEST(TableChangeTest, GapsOfDroppedColumnsAreKept)
{
    const auto tables = SampleFile("delColV2000").Tables();
    ScratchFile file("delColV2000");
    for (const auto& [name, page] : tables) {
        if (name != "Table1")
            continue;
        const auto table = OpenTable(file, page, name);
        std::vector<Row> before;
        for (TableScan scan(*table); scan.Next();)
            before.push_back(scan.GetRow());
        Row row = before.at(0);
        row[static_cast<std::size_t>(table->Definition().FindColumn("id"))] = std::int32_t{91};
        row[static_cast<std::size_t>(table->Definition().FindColumn("id2"))] = std::int32_t{92};
        row[static_cast<std::size_t>(table->Definition().FindColumn("data2"))] = "tweede";
        const RowId id = table->Insert(row);
        EXPECT_EQ(table->GetRow(id), row);
        const auto found = FindRow(file.Pager(), page, id);
        EXPECT_EQ(GetU16(found->bytes, 0), 6) << "all columns ever used";
        EXPECT_EQ(GetI32(found->bytes, 2), 91);
        EXPECT_EQ(GetI32(found->bytes, 10), 92) << "behind the dropped column's four bytes";
        ExpectIndexesMatchRows(*table);
        return;
    }
    ADD_FAILURE() << "the table was not found";
}

// Rows of other writers: changed, deleted, inserted, and everything still agrees.
TEST(TableChangeTest, TablesOfTheSamplesCanBeChanged)
{
    for (const std::string& name : SampleFile::WritableNames()) {
        const auto tables = SampleFile(name).Tables();
        ScratchFile file(name);
        file.Pager().Begin();
        for (const auto& [tableName, page] : tables) {
            SCOPED_TRACE(name + " " + tableName);
            const auto table = OpenTable(file, page, tableName);
            std::vector<std::pair<RowId, Row>> rows;
            for (TableScan scan(*table); scan.Next();)
                rows.emplace_back(scan.Id(), scan.GetRow());
            // Every second row goes and comes back, the others are written anew.
            for (std::size_t i = 0; i < rows.size(); ++i) {
                auto& [id, row] = rows[i];
                if (i % 2 == 0) {
                    table->Delete(id);
                    id = table->Insert(row);
                } else {
                    std::vector<Table::Change> changes;
                    for (std::size_t c = 0; c < row.size(); ++c)
                        changes.push_back({static_cast<int>(c), row[c]});
                    table->Update(id, changes);
                }
            }
            for (const auto& [id, row] : rows)
                EXPECT_EQ(table->GetRow(id), row);
            EXPECT_EQ(table->RowCount(), rows.size());
            ExpectIndexesMatchRows(*table);
        }
        file.Pager().Rollback();
    }
}

TEST(TableChangeTest, AFileThatIsReadOnlySaysWhy)
{
    SampleFile file("indexV1997");
    const auto table = file.Open(file.Tables().back().second);
    Row row(table->Definition().columns.size());
    try {
        table->Insert(row);
        ADD_FAILURE() << "written";
    } catch (const Error& error) {
        EXPECT_EQ(error.Kind(), ErrorKind::ReadOnly);
        EXPECT_EQ(error.what(), file.Pager().WhyReadOnly());
    }
}

TEST(TableChangeTest, ATextOrderThatIsUnknownMakesATableReadOnly)
{
    TableSketch sketch = NumberAndText();
    sketch.columns[1].sortVersion = 1;
    sketch.Index({{1, true}});
    TestTable t(sketch);
    t.ExpectInsertRefused(ErrorKind::ReadOnly, {"Proef", "Naam"}, {std::int32_t{1}, "a"});
    EXPECT_EQ(t.table->FindPhysicalIndex(std::vector<int>{1}), -1);
}
