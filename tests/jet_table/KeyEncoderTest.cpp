#include "jet/index/KeyEncoder.h"
#include "jet/index/IndexPage.h"
#include "jet/index/TextKey.h"

#include "jet/base/Numbers.h"
#include "jet/base/Text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <limits>

using namespace jet;

namespace {

Bytes FromHex(const std::string& hex)
{
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<std::byte>(std::stoul(hex.substr(i, 2), nullptr, 16)));
    return bytes;
}

std::string Hex(const std::optional<Bytes>& bytes)
{
    if (!bytes)
        return "unknown";
    std::string hex;
    for (const std::byte b : *bytes) {
        static constexpr char digits[] = "0123456789ABCDEF";
        hex += digits[std::to_integer<unsigned>(b) >> 4];
        hex += digits[std::to_integer<unsigned>(b) & 15];
    }
    return hex;
}

std::string Key(const Value& value, ColumnType type, bool ascending = true)
{
    const bool directions[] = {ascending};
    return Hex(EncodeKey({&value, 1}, {&type, 1}, directions));
}

std::string Key97(const Value& value, bool ascending = true)
{
    Bytes key;
    return AppendKey(value, ColumnType::Text, ascending, FileVersion::Jet3, key) ? Hex(key)
                                                                                 : "unknown";
}

Decimal Dec(const char* text, std::uint8_t scale = 0)
{
    return RescaleDecimal(DecimalFromText(text).value(), scale).value();
}

/// The keys of `values`, which rise, rise too, and fall in a descending index.
void ExpectRising(const std::vector<Value>& values, ColumnType type)
{
    const bool up[] = {true}, down[] = {false};
    for (std::size_t i = 1; i < values.size(); ++i) {
        const Bytes a = *EncodeKey({&values[i - 1], 1}, {&type, 1}, up);
        const Bytes b = *EncodeKey({&values[i], 1}, {&type, 1}, up);
        EXPECT_LT(CompareBytes(a, b), 0) << i;
        const Bytes c = *EncodeKey({&values[i - 1], 1}, {&type, 1}, down);
        const Bytes d = *EncodeKey({&values[i], 1}, {&type, 1}, down);
        EXPECT_GT(CompareBytes(c, d), 0) << i;
    }
}

} // namespace

// Keys that were read from index pages of existing files.
TEST(KeyEncoderTest, AllMeasuredTextKeysAreMet)
{
    std::ifstream file(std::string(TEST_DATA_FOLDER) + "/jet/general-legacy-vectors.tsv");
    int compared = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        const std::size_t tab = line.find('\t'), tab2 = line.find('\t', tab + 1);
        const Value text = Utf8FromUtf16Bytes(FromHex(line.substr(0, tab)));
        const bool ascending = line[tab + 1] == '1';
        std::string wanted = line.substr(tab2 + 1);
        if (!wanted.empty() && wanted.back() == '\r')
            wanted.pop_back();
        EXPECT_EQ(Key(text, ColumnType::Text, ascending), wanted) << line;
        ++compared;
    }
    EXPECT_EQ(compared, 823);
}

TEST(KeyEncoderTest, NullsStandBeforeValuesAndBehindThemWhenDescending)
{
    EXPECT_EQ(Key({}, ColumnType::Long), "00");
    EXPECT_EQ(Key({}, ColumnType::Long, false), "FF");
    EXPECT_EQ(Key({}, ColumnType::Text), "00");
}

TEST(KeyEncoderTest, BooleansHaveAFlagByteAndNoNull)
{
    EXPECT_EQ(Key(true, ColumnType::Boolean), "7F00");
    EXPECT_EQ(Key(false, ColumnType::Boolean), "7FFF");
    EXPECT_EQ(Key(true, ColumnType::Boolean, false), "80FF");
    EXPECT_EQ(Key(false, ColumnType::Boolean, false), "8000");
    EXPECT_EQ(Key({}, ColumnType::Boolean), "7FFF");
}

TEST(KeyEncoderTest, IntegersAreBigEndianWithTheSignTurned)
{
    EXPECT_EQ(Key(std::uint8_t{200}, ColumnType::Byte), "7FC8");
    EXPECT_EQ(Key(std::uint8_t{200}, ColumnType::Byte, false), "8037");
    EXPECT_EQ(Key(std::int16_t{-2}, ColumnType::Integer), "7F7FFE");
    EXPECT_EQ(Key(std::int32_t{4813}, ColumnType::Long, false), "807FFFED32");
    EXPECT_EQ(Key(Currency{-1}, ColumnType::Currency), "7F7FFFFFFFFFFFFFFF");
    using Limits = std::numeric_limits<std::int32_t>;
    ExpectRising({Limits::min(), -1, 0, 1, 256, Limits::max()}, ColumnType::Long);
    ExpectRising({Currency{-70000}, Currency{-1}, Currency{0}, Currency{1}, Currency{1LL << 40}},
                 ColumnType::Currency);
}

TEST(KeyEncoderTest, FloatingPointNumbersSortByValue)
{
    EXPECT_EQ(Key(1.0, ColumnType::Double), "7FBFF0000000000000");
    EXPECT_EQ(Key(-1.0, ColumnType::Double), "7F400FFFFFFFFFFFFF");
    EXPECT_EQ(Key(-1.0, ColumnType::Double, false), "80BFF0000000000000");
    EXPECT_EQ(Key(1.0f, ColumnType::Single), "7FBF800000");
    ExpectRising({-1e300, -1.5, -1e-300, 0.0, 1e-300, 1.0, 1.5, 1e300}, ColumnType::Double);
    ExpectRising({-3e38f, -1.5f, 0.0f, 1e-30f, 2.0f}, ColumnType::Single);
    ExpectRising({DateTime{-10}, DateTime{0}, DateTime{0.5}, DateTime{40000.25}},
                 ColumnType::DateTime);
}

TEST(KeyEncoderTest, BinariesAreCutInEightsWithAMarkBehindEach)
{
    const auto bytes = [](const char* hex) { return Value(FromHex(hex)); };
    EXPECT_EQ(Key(bytes("0102"), ColumnType::Binary), "7F010200000000000002");
    EXPECT_EQ(Key(bytes("0102030405060708"), ColumnType::Binary), "7F010203040506070808");
    EXPECT_EQ(Key(bytes("010203040506070809"), ColumnType::Binary),
              "7F010203040506070809090000000000000001");
    EXPECT_EQ(Key(bytes("010203040506070809"), ColumnType::Binary, false),
              "80FEFDFCFBFAF9F8F709F6FFFFFFFFFFFFFFFE");
    EXPECT_EQ(Key(Value(Bytes()), ColumnType::Binary), "7F");
    Guid guid = GuidFromText("{626B4607-6100-921E-D02E-5132E714CFF9}").value();
    EXPECT_EQ(Key(guid, ColumnType::Guid), "7F626B46076100921E09D02E5132E714CFF908");
}

TEST(KeyEncoderTest, DecimalsOfOneScaleSortByValueAscending)
{
    EXPECT_EQ(Key(Dec("1"), ColumnType::Decimal), "7FFF00000000000000000000000000000001");
    EXPECT_EQ(Key(Dec("-1"), ColumnType::Decimal), "7F00FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFE");
    // The sign byte of a descending key is not complemented.
    EXPECT_EQ(Key(Dec("1"), ColumnType::Decimal, false), "80FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFE");
    EXPECT_EQ(Key(Dec("-1"), ColumnType::Decimal, false), "800000000000000000000000000000000001");
    const ColumnType type = ColumnType::Decimal;
    const bool up[] = {true};
    const Value rising[] = {Dec("-99.5", 2), Dec("-0.01", 2), Dec("0", 2), Dec("0.25", 2),
                            Dec("12345678901234567890", 2)};
    for (std::size_t i = 1; i < std::size(rising); ++i)
        EXPECT_LT(CompareBytes(*EncodeKey({&rising[i - 1], 1}, {&type, 1}, up),
                               *EncodeKey({&rising[i], 1}, {&type, 1}, up)),
                  0);
}

TEST(KeyEncoderTest, ValuesAreConvertedToTheColumn)
{
    EXPECT_EQ(Key(std::int16_t{7}, ColumnType::Long), Key(std::int32_t{7}, ColumnType::Long));
    EXPECT_EQ(Key("7", ColumnType::Long), Key(std::int32_t{7}, ColumnType::Long));
}

TEST(KeyEncoderTest, KeysOfSeveralColumnsFollowEachOther)
{
    const Value values[] = {std::int32_t{1}, Value(), "a"};
    const ColumnType types[] = {ColumnType::Long, ColumnType::Long, ColumnType::Text};
    const bool ascending[] = {true, false, true};
    EXPECT_EQ(Hex(EncodeKey(values, types, ascending)), "7F80000001"
                                                        "FF"
                                                        "7F4A0100");
}

TEST(KeyEncoderTest, AnUnknownCharacterHasNoKey)
{
    EXPECT_EQ(Key("\xE3\x81\x82", ColumnType::Text), "unknown");      // hiragana
    EXPECT_EQ(Key("a\xF0\x9F\x98\x80", ColumnType::Memo), "unknown"); // beyond the first plane
    EXPECT_EQ(Key("\xED\xA0\x80", ColumnType::Text), "unknown");      // a lone surrogate
    EXPECT_EQ(Key97("\xCE\xB1"), "unknown");                          // alpha, not in the code page
}

TEST(KeyEncoderTest, CaseAndTrailingBlanksDoNotCountAndAccentsDo)
{
    EXPECT_EQ(Key("Dijk  ", ColumnType::Text), Key("dIJK", ColumnType::Text));
    EXPECT_NE(Key("caf\xC3\xA9", ColumnType::Text), Key("cafe", ColumnType::Text));
    EXPECT_EQ(Key("a\xC3\xA9", ColumnType::Text), "7F4A5101020E00");
    EXPECT_EQ(Key("", ColumnType::Text), "7F0100");
    EXPECT_EQ(Key("   ", ColumnType::Text), "7F0100");
}

TEST(KeyEncoderTest, OnlyTheFirst255CharactersCount)
{
    const std::string text(255, 'a');
    EXPECT_EQ(Key(text, ColumnType::Memo), Key(text + "bcd", ColumnType::Memo));
    EXPECT_NE(Key(text, ColumnType::Memo), Key(text.substr(1), ColumnType::Memo));
}

TEST(KeyEncoderTest, Jet3TextsHaveNibblesForTheirAccents)
{
    EXPECT_EQ(Key97("ab"), "7F606100");
    EXPECT_EQ(Key97("AB  "), "7F606100");
    EXPECT_EQ(Key97(""), "7F00");
    // a owes one placeholder before the accent of the e: nibbles 0 2 4 0
    EXPECT_EQ(Key97("a\xC3\xA9"), "7F60660240");
    EXPECT_EQ(Key97("ab", false), "809F9EFF");
}

TEST(TextOrderTest, IsTheOrderOfTheKeys)
{
    EXPECT_EQ(CompareText("Dijk", "dIJK  "), 0);
    EXPECT_LT(CompareText("dijk", "dijken"), 0);
    EXPECT_GT(CompareText("b", "A"), 0);
    EXPECT_LT(CompareText("cafe", "caf\xC3\xA9"), 0);
    EXPECT_LT(CompareText("caf\xC3\xA9", "cafz"), 0);
    EXPECT_LT(CompareText("coop", "co-op"), 0);
    EXPECT_LT(CompareText("co-op", "coops"), 0);
    EXPECT_LT(CompareText("", "a"), 0);
}

TEST(TextOrderTest, CharactersWithoutAKeyComeBehindAllOthersByCodePoint)
{
    const std::string a = "\xE3\x81\x82", i = "\xE3\x81\x84", smile = "\xF0\x9F\x98\x80";
    EXPECT_LT(CompareText("z", a), 0);
    EXPECT_LT(CompareText(a, i), 0);
    EXPECT_LT(CompareText(i, smile), 0);
    EXPECT_EQ(CompareText(a, a), 0);
    EXPECT_NE(CompareText("\xFF", "\xFE"), 0) << "bytes that are no text have their place as well";
}

TEST(TextOrderTest, SortKeysAgreeWithTheComparison)
{
    const std::vector<std::string> texts = {
        "",         "a",     "A ", "a b", "ab",          "a-b",  "a'b",
        "\xC3\xA9", "e",     "f",  "_",   "1",           "10",   "\xE3\x81\x82",
        "\x01",     "a\x01", "2",  "-",   "caf\xC3\xA9", "cafe", "CAFE "};
    const auto sign = [](int v) { return (v > 0) - (v < 0); };
    for (const std::string& a : texts) {
        for (const std::string& b : texts) {
            EXPECT_EQ(CompareText(a, b), sign(TextSortKey(a).compare(TextSortKey(b))))
                << a << " | " << b;
            EXPECT_EQ(CompareText(a, b), -CompareText(b, a));
        }
    }
}
