#include "SampleFile.h"
#include "TreeCheck.h"

#include "jet/base/Numbers.h"
#include "jet/table/TableInternals.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>

using namespace jet;
using Json = nlohmann::json;

namespace {

std::string Hex(const Bytes& bytes)
{
    std::string hex;
    for (const std::byte b : bytes) {
        static constexpr char digits[] = "0123456789ABCDEF";
        hex += digits[std::to_integer<unsigned>(b) >> 4];
        hex += digits[std::to_integer<unsigned>(b) & 15];
    }
    return hex;
}

/// yyyy-MM-ddTHH:mm:ss.SSS
double DaysOf(const std::string& text)
{
    int y, mo, d, h, mi, s, ms;
    EXPECT_EQ(std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d.%d", &y, &mo, &d, &h, &mi, &s, &ms), 7);
    const double days = DateTime::FromCivil(y, mo, d, h, mi, s).days;
    return days + (days < 0 ? -ms : ms) / 86'400'000.0;
}

/// The dumps show the five bytes without a character as U+FFFD.
std::string WithoutUndefined(std::string text)
{
    for (const char* undefined : {"\xC2\x81", "\xC2\x8D", "\xC2\x8F", "\xC2\x90", "\xC2\x9D"}) {
        for (std::size_t at; (at = text.find(undefined)) != std::string::npos;)
            text.replace(at, 2, "\xEF\xBF\xBD");
    }
    return text;
}

void ExpectEqual(const Value& value, const Json& expected, ColumnType type, bool jet3)
{
    if (expected.is_null()) {
        EXPECT_TRUE(value.IsNull());
        return;
    }
    ASSERT_FALSE(value.IsNull());
    switch (type) {
    case ColumnType::Boolean:
        EXPECT_EQ(value, Value(expected.get<bool>()));
        break;
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
    case ColumnType::Single:
    case ColumnType::Double:
        EXPECT_EQ(value.AsDouble(), expected.get<double>());
        break;
    case ColumnType::Currency:
        EXPECT_EQ(value, Value(CurrencyFromText(expected.get<std::string>()).value()));
        break;
    case ColumnType::Decimal: {
        const Decimal decimal = std::get<Decimal>(value.Raw());
        const auto wanted =
            RescaleDecimal(DecimalFromText(expected.get<std::string>()).value(), decimal.scale);
        EXPECT_EQ(decimal, wanted.value());
        break;
    }
    case ColumnType::DateTime:
        EXPECT_NEAR(value.AsDateTime().days, DaysOf(expected.get<std::string>()),
                    1.1e-8); // a millisecond
        break;
    case ColumnType::Text:
    case ColumnType::Memo:
        EXPECT_EQ(jet3 ? WithoutUndefined(value.AsText()) : value.AsText(),
                  expected.get<std::string>());
        break;
    case ColumnType::Guid:
        EXPECT_EQ(TextFromGuid(std::get<Guid>(value.Raw())), expected.get<std::string>());
        break;
    case ColumnType::Binary:
    case ColumnType::Ole:
        EXPECT_EQ(Hex(value.AsBytes()), expected["hex"].get<std::string>());
        break;
    }
}

void CompareDefinition(const TableDefinition& definition, const Json& table, bool jet3)
{
    EXPECT_EQ(definition.maxColumns, table["maxColumns"].get<int>());
    const auto& columns = table["columns"];
    ASSERT_EQ(definition.columns.size(), columns.size());
    for (const Json& expected : columns) {
        SCOPED_TRACE(expected["name"].get<std::string>());
        const int at = definition.FindColumn(expected["name"].get<std::string>());
        ASSERT_EQ(at, expected["display"].get<int>());
        const Column& column = definition.columns[static_cast<std::size_t>(at)];
        EXPECT_EQ(column.name, expected["name"].get<std::string>());
        EXPECT_EQ(static_cast<int>(column.type), expected["code"].get<int>());
        EXPECT_EQ(column.number, expected["number"].get<int>());
        EXPECT_EQ(column.fixed, !expected["variable"].get<bool>());
        if (column.fixed) {
            if (column.type != ColumnType::Boolean) {
                EXPECT_EQ(column.position, expected["fixedOffset"].get<int>());
            }
        } else {
            EXPECT_EQ(column.position, expected["varIndex"].get<int>());
        }
        const int size =
            column.type == ColumnType::Text && jet3 ? column.Size() : column.lengthBytes;
        EXPECT_EQ(size, expected["length"].get<int>());
        EXPECT_EQ(column.autoNumber, expected["auto"].get<bool>());
        EXPECT_EQ(column.compress, expected["compressed"].get<bool>());
    }
    const auto& indexes = table["indexes"];
    EXPECT_EQ(definition.logicalIndexes.size(), indexes.size());
    for (const Json& expected : indexes) {
        SCOPED_TRACE(expected["name"].get<std::string>());
        const int at = definition.FindIndex(expected["name"].get<std::string>());
        ASSERT_GE(at, 0);
        const LogicalIndex& logical = definition.logicalIndexes[static_cast<std::size_t>(at)];
        EXPECT_EQ(static_cast<int>(logical.number), expected["number"].get<int>());
        EXPECT_EQ(logical.kind == LogicalIndex::Kind::Primary, expected["primary"].get<bool>());
        EXPECT_EQ(logical.kind == LogicalIndex::Kind::Relationship,
                  expected["foreign"].get<bool>());
        const PhysicalIndex& physical =
            definition.physicalIndexes[static_cast<std::size_t>(logical.physical)];
        EXPECT_EQ(physical.rawFlags, expected["flags"].get<int>());
        EXPECT_EQ(static_cast<int>(physical.distinctCount), expected["uniqueEntries"].get<int>());
        std::vector<std::string> parts;
        for (const IndexColumn& part : physical.columns)
            parts.push_back(definition.columns[static_cast<std::size_t>(part.column)].name +
                            (part.ascending ? " asc" : " desc"));
        std::vector<std::string> wanted;
        for (const Json& part : expected["columns"])
            wanted.push_back(part[0].get<std::string>() + " " + part[1].get<std::string>());
        EXPECT_EQ(parts, wanted);
    }
}

} // namespace

// Every table of every sample: definition, row ids and all values as in the dump.
TEST(SampleReadingTest, RowsAndDefinitionsAreAsInTheDumps)
{
    int compared = 0;
    for (const std::string& name : SampleFile::Names()) {
        SCOPED_TRACE(name);
        SampleFile file(name);
        const bool jet3 = file.Pager().Version() == FileVersion::Jet3;
        std::unique_ptr<Table> table;
        std::vector<std::pair<std::string, Row>> rows;
        std::size_t next = 0;
        std::vector<int> byNumber;
        std::ifstream dump(SampleFile::Folder() / (name + ".json"));
        for (std::string text; std::getline(dump, text);) {
            const Json line = Json::parse(text);
            if (line.contains("table")) {
                EXPECT_EQ(next, rows.size());
                SCOPED_TRACE(line["table"].get<std::string>());
                table = file.Open(static_cast<PageNumber>(line["tdefPage"].get<int>()));
                CompareDefinition(table->Definition(), line, jet3);
                rows.clear();
                next = 0;
                for (TableScan scan(*table); scan.Next();)
                    rows.emplace_back(std::to_string(scan.Id().page) + ":" +
                                          std::to_string(scan.Id().slot),
                                      scan.GetRow());
                byNumber.clear();
                for (int number = 0; number < table->Definition().maxColumns; ++number) {
                    const int at =
                        table->Definition().FindColumnNumber(static_cast<std::uint16_t>(number));
                    if (at >= 0)
                        byNumber.push_back(at);
                }
                EXPECT_EQ(table->RowCount(), rows.size());
            } else if (line.contains("t")) {
                SCOPED_TRACE(line["t"].get<std::string>() + " " + line["id"].get<std::string>());
                ASSERT_LT(next, rows.size());
                EXPECT_EQ(rows[next].first, line["id"].get<std::string>());
                const auto& values = line["v"];
                ASSERT_EQ(values.size(), byNumber.size());
                for (std::size_t i = 0; i < values.size(); ++i) {
                    const auto at = static_cast<std::size_t>(byNumber[i]);
                    const Column& column = table->Definition().columns[at];
                    SCOPED_TRACE(column.name);
                    ExpectEqual(rows[next].second[at], values[i], column.type, jet3);
                    ++compared;
                }
                ++next;
            }
        }
        EXPECT_EQ(next, rows.size());
    }
    EXPECT_EQ(compared, 7984);
}

// The entries that stand in each tree are the keys that we compute of the rows.
TEST(SampleReadingTest, IndexEntriesAreTheKeysOfTheRows)
{
    int entries = 0;
    for (const std::string& name : SampleFile::Names()) {
        SampleFile file(name);
        for (const auto& [tableName, page] : file.Tables()) {
            SCOPED_TRACE(name + " " + tableName);
            const std::unique_ptr<Table> table = file.Open(page, tableName);
            entries += ExpectIndexesMatchRows(*table);
        }
    }
    EXPECT_GT(entries, 5000);
}

TEST(SampleReadingTest, ScansBackwardsGiveTheSameRows)
{
    for (const std::string& name : SampleFile::Names()) {
        SampleFile file(name);
        for (const auto& [tableName, page] : file.Tables()) {
            SCOPED_TRACE(name + " " + tableName);
            const std::unique_ptr<Table> table = file.Open(page, tableName);
            std::vector<RowId> forwards, backwards;
            for (TableScan scan(*table); scan.Next();)
                forwards.push_back(scan.Id());
            for (TableScan scan(*table, TableScan::Start::BehindLast); scan.Previous();)
                backwards.push_back(scan.Id());
            std::ranges::reverse(backwards);
            EXPECT_EQ(forwards, backwards);
        }
    }
}
