#include "ScratchTable.h"
#include "TableCheck.h"

#include "jet/base/Error.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

using namespace jet;

namespace {

/// Random inserts, updates, deletes and nested transactions on a table and on a
/// map, side by side.
class Play {
public:
    explicit Play(unsigned seed) : m_random(seed)
    {
        TableSketch sketch;
        const bool fixed = seed % 2 == 0; // numbers in the fixed area, or among the variable values
        sketch.Add("Id", ColumnType::Long);
        sketch.columns.back().autoNumber = true;
        sketch.Add("Ja", ColumnType::Boolean);
        sketch.Add("Byte", ColumnType::Byte, 0, fixed);
        sketch.Add("Integer", ColumnType::Integer, 0, fixed);
        sketch.Add("Geld", ColumnType::Currency);
        sketch.Add("Enkel", ColumnType::Single, 0, fixed);
        sketch.Add("Dubbel", ColumnType::Double);
        sketch.Add("Datum", ColumnType::DateTime, 0, !fixed);
        sketch.Add("Tekst", ColumnType::Text, 255);
        sketch.Add("Binair", ColumnType::Binary, 40);
        sketch.Add("Memo", ColumnType::Memo);
        sketch.Add("Ole", ColumnType::Ole);
        sketch.Add("Guid", ColumnType::Guid);
        sketch.Add("Decimaal", ColumnType::Decimal, 0, fixed);
        sketch.columns.back().precision = 20;
        sketch.columns.back().scale = 3;
        sketch.firstIsPrimary = true;
        sketch.Index({{0, true}});
        sketch.Index({{8, true}});
        sketch.Index({{8, false}, {3, true}, {1, false}});
        sketch.Index({{2, true}, {0, false}}, true); // unique, composite
        sketch.Index({{7, true}}, false, true);      // ignores nulls
        sketch.Index({{13, true}, {4, false}});
        sketch.Index({{9, false}, {12, true}, {5, true}, {6, false}});
        m_definition = MakeTable(m_file, sketch);
        m_table = OpenTable(m_file, m_definition.page);
        m_pagesOfEmptyTable = CountPagesInUse(m_file);
    }

    void Run(int steps)
    {
        for (int step = 0; step < steps; ++step) {
            Step();
            if (step % 200 == 199) {
                Compare();
                m_moved += ExpectSoundTable(*m_table);
            }
            if (testing::Test::HasFailure())
                return;
        }
    }

    /// Moved rows met in all examinations.
    std::size_t MovedRows() const { return m_moved; }

    void DeleteAllAndLookForLeftovers()
    {
        while (!m_open.empty())
            End(true);
        m_file.Reopen();
        m_table = OpenTable(m_file, m_definition.page);
        Compare();
        for (const auto& [id, row] : m_model)
            m_table->Delete(id);
        m_model.clear();
        Compare();
        ExpectSoundTable(*m_table);
        EXPECT_EQ(CountPagesInUse(m_file), m_pagesOfEmptyTable) << "pages were lost";
    }

private:
    using Model = std::map<RowId, Row>;

    unsigned Random(unsigned below) { return static_cast<unsigned>(m_random() % below); }

    void Step()
    {
        const unsigned kind = Random(100);
        if (kind < 40 || m_model.empty())
            Insert();
        else if (kind < 70)
            Update();
        else if (kind < 90)
            Delete();
        else if (kind < 94 && m_open.size() < 4)
            Begin();
        else if (!m_open.empty())
            End(Random(3) != 0);
    }

    void Insert()
    {
        Row row;
        for (std::size_t i = 0; i < m_definition.columns.size(); ++i)
            row.push_back(i == 0 ? Value() : RandomValue(i));
        const std::uint64_t changes = m_file.Pager().ChangeCount();
        try {
            const RowId id = m_table->Insert(row);
            EXPECT_FALSE(row[0].IsNull());
            EXPECT_TRUE(m_model.emplace(id, row).second) << "a row id was given out twice";
        } catch (const Error& error) {
            ADD_FAILURE() << error.what();
            EXPECT_EQ(m_file.Pager().ChangeCount(), changes);
        }
    }

    void Update()
    {
        const auto chosen = AnyRow();
        std::vector<Table::Change> changes;
        for (std::size_t i = 1; i < m_definition.columns.size(); ++i) {
            if (Random(4) == 0)
                changes.push_back({static_cast<int>(i), RandomValue(i)});
        }
        m_table->Update(chosen->first, changes);
        for (const Table::Change& change : changes) {
            Value stored = change.value;
            if (stored.IsNull() && change.column == 1)
                stored = false;
            chosen->second[static_cast<std::size_t>(change.column)] = stored;
        }
    }

    void Delete()
    {
        const auto chosen = AnyRow();
        m_table->Delete(chosen->first);
        m_model.erase(chosen);
    }

    void Begin()
    {
        m_file.Pager().Begin();
        m_open.push_back(m_model);
    }

    void End(bool commit)
    {
        if (commit) {
            m_file.Pager().Commit(Flush::No);
        } else {
            m_file.Pager().Rollback();
            m_model = m_open.back();
        }
        m_open.pop_back();
    }

    Model::iterator AnyRow()
    {
        return std::next(m_model.begin(), static_cast<std::ptrdiff_t>(
                                              Random(static_cast<unsigned>(m_model.size()))));
    }

    Value RandomValue(std::size_t column)
    {
        if (Random(8) == 0)
            return column == 1 ? Value(false) : Value();
        switch (m_definition.columns[column].type) {
        case ColumnType::Boolean:
            return Random(2) == 1;
        case ColumnType::Byte:
            return static_cast<std::uint8_t>(Random(256));
        case ColumnType::Integer:
            return static_cast<std::int16_t>(Random(65536) - 32768);
        case ColumnType::Long:
            return static_cast<std::int32_t>(m_random());
        case ColumnType::Currency:
            return Currency{static_cast<std::int64_t>(m_random()) - 2'000'000'000};
        case ColumnType::Single:
            return static_cast<float>(Random(2000)) / 8 - 100;
        case ColumnType::Double:
            return Random(2000) / 8.0 - 100;
        case ColumnType::DateTime:
            return DateTime{Random(80000) / 16.0 - 1000};
        case ColumnType::Text:
            return RandomText(Random(3) == 0 ? 255 : 8);
        case ColumnType::Binary:
            return RandomBytes(Random(41));
        case ColumnType::Memo:
            return RandomText(RandomLength());
        case ColumnType::Ole:
            return RandomBytes(RandomLength());
        case ColumnType::Guid: {
            Guid guid;
            for (std::byte& b : guid.bytes)
                b = static_cast<std::byte>(m_random());
            return guid;
        }
        case ColumnType::Decimal: {
            Decimal decimal;
            decimal.scale = 3;
            decimal.magnitude[3] = static_cast<std::uint32_t>(m_random());
            decimal.negative = decimal.magnitude[3] != 0 && Random(2) == 1;
            return decimal;
        }
        }
        return {};
    }

    /// Inline, single and chained long values, mostly short ones.
    unsigned RandomLength()
    {
        switch (Random(12)) {
        case 0:
            return Random(30000);
        case 1:
        case 2:
            return Random(4200);
        case 3:
        case 4:
            return Random(400);
        default:
            return Random(64);
        }
    }

    std::string RandomText(unsigned longest)
    {
        static const char* const letters[] = {"a",        "b",        "C",        "d",
                                              "e",        " ",        "-",        "1",
                                              "\xC3\xA9", "\xC3\x9F", "\xCE\xB1", "\xE2\x82\xAC"};
        const unsigned kinds = Random(2) == 0 ? 8 : 12;
        std::string text;
        for (unsigned length = Random(longest + 1); length > 0; --length)
            text += letters[Random(kinds)];
        return text;
    }

    Bytes RandomBytes(unsigned length)
    {
        Bytes bytes(length);
        for (std::byte& b : bytes)
            b = static_cast<std::byte>(m_random());
        return bytes;
    }

    void Compare()
    {
        Model found;
        for (TableScan scan(*m_table); scan.Next();)
            found.emplace(scan.Id(), scan.GetRow());
        EXPECT_EQ(found.size(), m_model.size());
        EXPECT_TRUE(found == m_model);
        EXPECT_EQ(m_table->RowCount(), m_model.size());
    }

    ScratchFile m_file;
    TableDefinition m_definition;
    std::unique_ptr<Table> m_table;
    std::size_t m_pagesOfEmptyTable = 0;
    std::size_t m_moved = 0;
    std::mt19937 m_random;
    Model m_model;
    std::vector<Model> m_open; // the model before each open transaction
};

} // namespace

TEST(TableModelTest, RandomChangesOfAllTypesAgreeWithAModel)
{
    std::size_t moved = 0;
    for (unsigned seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Play play(seed);
        play.Run(3000);
        play.DeleteAllAndLookForLeftovers();
        moved += play.MovedRows();
        if (testing::Test::HasFailure())
            return;
    }
    EXPECT_GT(moved, 300u) << "the play no longer makes rows move";
}
