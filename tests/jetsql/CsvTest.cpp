#include "Csv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>

namespace {

using jet::Value;
using jetsql::CsvField;

std::string Csv(const Value& value)
{
    std::string line;
    jetsql::AppendCsv(line, value);
    return line;
}

std::string Json(const Value& value)
{
    std::string line;
    jetsql::AppendJson(line, value);
    return line;
}

const jet::Guid kGuid = [] {
    jet::Guid guid;
    for (std::size_t i = 0; i < 16; ++i)
        guid.bytes[i] = static_cast<std::byte>(i * 17);
    return guid;
}();

TEST(Csv, WritesEveryKindOfValue)
{
    EXPECT_EQ(Csv({}), "");
    EXPECT_EQ(Csv(true), "1");
    EXPECT_EQ(Csv(false), "0");
    EXPECT_EQ(Csv(std::uint8_t{200}), "200");
    EXPECT_EQ(Csv(std::int16_t{-5}), "-5");
    EXPECT_EQ(Csv(123456), "123456");
    EXPECT_EQ(Csv(jet::Currency{-12345}), "-1.2345");
    EXPECT_EQ(Csv(0.1f), "0.1");
    EXPECT_EQ(Csv(0.1), "0.1");
    EXPECT_EQ(Csv(-999.0), "-999");
    EXPECT_EQ(Csv(1e300), "1e+300");
    EXPECT_EQ(Csv(jet::DateTime::FromCivil(2024, 2, 29, 13, 5, 9)), "2024-02-29 13:05:09");
    EXPECT_EQ(Csv("tekst"), "tekst");
    EXPECT_EQ(Csv(jet::Bytes{std::byte{0}, std::byte{0xAB}}), "00AB");
    EXPECT_EQ(Csv(kGuid), "{00112233-4455-6677-8899-AABBCCDDEEFF}");
}

TEST(Csv, WritesNumbersThatReadBackTheSame)
{
    for (const double value :
         {1.0 / 3, 5e-324, 123456789012345678.0, -0.1, 2.2250738585072014e-308})
        EXPECT_EQ(std::strtod(Csv(value).c_str(), nullptr), value);
}

TEST(Csv, WritesPlainNumbersWithoutAnExponent)
{
    EXPECT_EQ(Csv(100000.0), "100000");
    EXPECT_EQ(Csv(0.000001), "0.000001");
    EXPECT_EQ(Csv(-0.5), "-0.5");
    EXPECT_EQ(Csv(12.25), "12.25");
    EXPECT_EQ(Csv(999999999.999999), "999999999.999999");
    EXPECT_EQ(Csv(0.0), "0");
    EXPECT_EQ(Csv(-0.0), "-0");
}

TEST(Csv, ReadsBackWhateverTheNumberOfDecimals)
{
    std::mt19937_64 random(3);
    for (int i = 0; i < 20000; ++i) {
        const int decimals = static_cast<int>(random() % 9);
        const double value =
            static_cast<double>(static_cast<std::int64_t>(random() % 2000000000) - 1000000000) /
            std::pow(10, decimals);
        const std::string text = Csv(value);
        ASSERT_EQ(std::strtod(text.c_str(), nullptr), value) << text;
        ASSERT_EQ(Json(value), text);
    }
}

TEST(Csv, QuotesWhereItMustAndTellsEmptyFromNull)
{
    EXPECT_EQ(Csv(""), "\"\"");
    EXPECT_EQ(Csv("a,b"), "\"a,b\"");
    EXPECT_EQ(Csv("zeg \"ja\""), "\"zeg \"\"ja\"\"\"");
    EXPECT_EQ(Csv("twee\nregels"), "\"twee\nregels\"");
    EXPECT_EQ(Csv(" blank"), "\" blank\"");
    EXPECT_EQ(Csv(jet::Bytes{}), "\"\"");
}

TEST(Json, WritesEveryKindOfValue)
{
    EXPECT_EQ(Json({}), "null");
    EXPECT_EQ(Json(true), "true");
    EXPECT_EQ(Json(false), "false");
    EXPECT_EQ(Json(7), "7");
    EXPECT_EQ(Json(2.5), "2.5");
    EXPECT_EQ(Json(std::numeric_limits<double>::quiet_NaN()), "null");
    EXPECT_EQ(Json(std::numeric_limits<float>::infinity()), "null");
    EXPECT_EQ(Json(jet::DateTime::FromCivil(1899, 12, 30)), "\"1899-12-30 00:00:00\"");
    EXPECT_EQ(Json("a\"b\\c\n\r\t\x01"), "\"a\\\"b\\\\c\\n\\r\\t\\u0001\"");
    EXPECT_EQ(Json("é€"), "\"é€\"");
    EXPECT_EQ(Json(jet::Bytes{std::byte{0xFF}}), "\"FF\"");
    EXPECT_EQ(Json(kGuid), "\"{00112233-4455-6677-8899-AABBCCDDEEFF}\"");
}

std::vector<std::vector<CsvField>> Read(const std::string& text)
{
    std::istringstream in(text);
    jetsql::CsvReader reader(in);
    std::vector<std::vector<CsvField>> records;
    std::vector<CsvField> record;
    while (reader.Next(record))
        records.push_back(record);
    return records;
}

using Records = std::vector<std::vector<CsvField>>;

TEST(CsvReader, ReadsFields)
{
    EXPECT_EQ(Read("a,b\n1,2\n"), (Records{{"a", "b"}, {"1", "2"}}));
    EXPECT_EQ(Read("a,b\r\n1,2"), (Records{{"a", "b"}, {"1", "2"}}));
    EXPECT_EQ(Read(""), Records{});
    EXPECT_EQ(Read("\xEF\xBB\xBF"
                   "a\n"),
              (Records{{"a"}}));
}

TEST(CsvReader, TellsEmptyTextFromNothing)
{
    EXPECT_EQ(Read(",\"\",x\n"), (Records{{std::nullopt, "", "x"}}));
    EXPECT_EQ(Read("\n"), (Records{{std::nullopt}}));
    EXPECT_EQ(Read("a,\r\n"), (Records{{"a", std::nullopt}}));
}

TEST(CsvReader, ReadsQuotedFields)
{
    EXPECT_EQ(Read("\"a,b\",\"zeg \"\"ja\"\"\",\"twee\nregels\"\r\nx,y,z\n"),
              (Records{{"a,b", "zeg \"ja\"", "twee\nregels"}, {"x", "y", "z"}}));
}

TEST(CsvReader, NamesTheLineOfAFault)
{
    for (const char* text : {"a\n\"open", "a\n\"x\"y,z\n"}) {
        std::istringstream in(text);
        jetsql::CsvReader reader(in);
        std::vector<CsvField> record;
        reader.Next(record);
        try {
            reader.Next(record);
            ADD_FAILURE() << text;
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find("Regel 2"), std::string::npos) << error.what();
        }
    }
}

TEST(CsvReader, CountsLinesInsideQuotes)
{
    std::istringstream in("a\n\"x\ny\"\nz\n");
    jetsql::CsvReader reader(in);
    std::vector<CsvField> record;
    reader.Next(record);
    reader.Next(record);
    EXPECT_EQ(reader.Line(), 2);
    reader.Next(record);
    EXPECT_EQ(reader.Line(), 4);
}

} // namespace
