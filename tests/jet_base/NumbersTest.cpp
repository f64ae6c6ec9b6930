#include "jet/base/Numbers.h"
#include "jet/base/Error.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace jet;

TEST(Numbers, AreReadWithAPoint)
{
    EXPECT_EQ(DoubleFromText("1.5"), 1.5);
    EXPECT_EQ(DoubleFromText(" -999 "), -999.0);
    EXPECT_EQ(DoubleFromText("+2"), 2.0);
    EXPECT_EQ(DoubleFromText(".5"), 0.5);
    EXPECT_EQ(DoubleFromText("5."), 5.0);
    EXPECT_EQ(DoubleFromText("1E+3"), 1000.0);
    EXPECT_EQ(DoubleFromText("1e-400"), 0.0);
}

TEST(Numbers, AreNotGuessedFromOtherText)
{
    for (const char* text : {"", " ", "1,5", "1.2.3", "12a", "a12", "1 2", "inf", "nan", "+-1",
                             "--1", "0x10", "e5", ".", "1e", "1E+"})
        EXPECT_FALSE(DoubleFromText(text)) << text;
}

TEST(Numbers, AreWrittenWithFifteenDigits)
{
    EXPECT_EQ(TextFromDouble(0.1), "0.1");
    EXPECT_EQ(TextFromDouble(-999), "-999");
    EXPECT_EQ(TextFromDouble(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(TextFromDouble(0.1 + 0.2), "0.3");
    EXPECT_EQ(TextFromDouble(123456789012345.0), "123456789012345");
    EXPECT_EQ(TextFromDouble(1e20), "1E+20");
    EXPECT_EQ(TextFromDouble(-0.0), "0");
}

TEST(Numbers, HalvesAreRoundedToEven)
{
    EXPECT_EQ(RoundHalfToEven(0.5), 0);
    EXPECT_EQ(RoundHalfToEven(1.5), 2);
    EXPECT_EQ(RoundHalfToEven(2.5), 2);
    EXPECT_EQ(RoundHalfToEven(-0.5), 0);
    EXPECT_EQ(RoundHalfToEven(-1.5), -2);
    EXPECT_EQ(RoundHalfToEven(-2.5), -2);
    EXPECT_EQ(RoundHalfToEven(2.4999), 2);
    EXPECT_EQ(RoundHalfToEven(2.5001), 3);
}

TEST(Decimals, SurviveTheWayThroughText)
{
    for (const char* text : {"0", "1", "-1", "0.5", "-0.0001", "1234567890123456789012345678",
                             "0.1234567890123456789012345678", "-99999999999999.99999999999999",
                             "18446744073709551616", "4294967296", "4294967295.5"})
        EXPECT_EQ(TextFromDecimal(DecimalFromText(text).value()), text);
}

TEST(Decimals, OfTextDropZerosAndExponents)
{
    EXPECT_EQ(TextFromDecimal(*DecimalFromText("007.500")), "7.5");
    EXPECT_EQ(TextFromDecimal(*DecimalFromText("1.5e3")), "1500");
    EXPECT_EQ(TextFromDecimal(*DecimalFromText("15E-3")), "0.015");
    EXPECT_EQ(TextFromDecimal(*DecimalFromText("-0")), "0");
    EXPECT_EQ(TextFromDecimal(*DecimalFromText("0e999")), "0");
}

TEST(Decimals, HaveAtMost28Digits)
{
    EXPECT_FALSE(DecimalFromText("12345678901234567890123456789"));
    EXPECT_FALSE(DecimalFromText("1e28"));
    EXPECT_TRUE(DecimalFromText("1e27"));
    EXPECT_FALSE(DecimalFromText("1e-29"));
    EXPECT_FALSE(DecimalFromText("1,5"));
    EXPECT_FALSE(DecimalFromText("."));
    EXPECT_FALSE(DecimalFromText(""));
    EXPECT_FALSE(DecimalFromText("1e"));
}

TEST(Decimals, GroupsAreOfThirtyTwoBits)
{
    const Decimal value = *DecimalFromText("18446744073709551617.5"); // 2^64 + 1.5
    EXPECT_EQ(value.scale, 1);
    EXPECT_EQ(value.magnitude, (std::array<std::uint32_t, 4>{0, 10, 0, 15}));
}

TEST(Decimals, RescaleRoundsHalvesToEven)
{
    const auto rescaled = [](const char* text, std::uint8_t scale) {
        return TextFromDecimal(*RescaleDecimal(*DecimalFromText(text), scale));
    };
    EXPECT_EQ(rescaled("1.25", 1), "1.2");
    EXPECT_EQ(rescaled("1.35", 1), "1.4");
    EXPECT_EQ(rescaled("1.2501", 1), "1.3");
    EXPECT_EQ(rescaled("-0.5", 0), "0");
    EXPECT_EQ(rescaled("-1.5", 0), "-2");
    EXPECT_EQ(rescaled("9.99", 1), "10");
    EXPECT_EQ(rescaled("0.004", 1), "0");
    EXPECT_EQ(rescaled("0.0004", 1), "0");
    EXPECT_EQ(rescaled("0.06", 1), "0.1");
    EXPECT_EQ(rescaled("5", 3), "5");
    EXPECT_EQ(RescaleDecimal(*DecimalFromText("5"), 3)->magnitude[3], 5000u);
    EXPECT_FALSE(RescaleDecimal(*DecimalFromText("123.4"), 2, 4)) << "five digits asked for";
    EXPECT_TRUE(RescaleDecimal(*DecimalFromText("12.34"), 2, 4));
    EXPECT_FALSE(RescaleDecimal(*DecimalFromText("1234567890123456789012345678"), 1));
}

TEST(Decimals, OfIntegersAreExact)
{
    for (const std::int64_t value : {INT64_MIN, INT64_MIN + 1, std::int64_t{-1}, std::int64_t{0},
                                     std::int64_t{1}, INT64_MAX}) {
        EXPECT_EQ(TextFromDecimal(DecimalFromInteger(value)), std::to_string(value));
        EXPECT_EQ(IntegerFromDecimal(DecimalFromInteger(value)), value);
    }
    EXPECT_FALSE(IntegerFromDecimal(*DecimalFromText("9223372036854775808")));
    EXPECT_TRUE(IntegerFromDecimal(*DecimalFromText("-9223372036854775808")));
    EXPECT_FALSE(IntegerFromDecimal(*DecimalFromText("-9223372036854775809")));
    EXPECT_FALSE(IntegerFromDecimal(*DecimalFromText("79228162514264337593543950336e-1")));
}

TEST(Decimals, AsDoublesAreTheNearest)
{
    std::mt19937_64 random(8);
    for (int i = 0; i < 2000; ++i) {
        const auto whole = static_cast<std::int64_t>(random() >> (random() % 60));
        const auto scale = static_cast<std::uint8_t>(random() % 10);
        const Decimal value = DecimalFromInteger(whole, scale);
        const long double exact =
            static_cast<long double>(whole) / std::pow(10.0L, static_cast<long double>(scale));
        EXPECT_NEAR(DoubleFromDecimal(value), static_cast<double>(exact),
                    std::abs(static_cast<double>(exact)) * 2.3e-16);
    }
}

TEST(Money, HasFourDecimals)
{
    EXPECT_EQ(TextFromCurrency({12345}), "1.2345");
    EXPECT_EQ(TextFromCurrency({-5}), "-0.0005");
    EXPECT_EQ(TextFromCurrency({10000}), "1");
    EXPECT_EQ(TextFromCurrency({INT64_MIN}), "-922337203685477.5808");
    EXPECT_EQ(CurrencyFromText("1.23455")->scaled, 12346) << "half to even";
    EXPECT_EQ(CurrencyFromText("1.23465")->scaled, 12346);
    EXPECT_EQ(CurrencyFromText("922337203685477.5807")->scaled, INT64_MAX);
    EXPECT_EQ(CurrencyFromText("0.12345678901234567890123456789012")->scaled, 1235);
    EXPECT_FALSE(CurrencyFromText("tien"));
    EXPECT_THROW(CurrencyFromText("922337203685477.5808"), Error);
    EXPECT_THROW(CurrencyFromText("1e30"), Error);
}

TEST(Guids, AreWrittenInBracesAndReadWithOrWithout)
{
    const std::string text = "{00112233-4455-6677-8899-AABBCCDDEEFF}";
    const Guid value = GuidFromText(text).value();
    EXPECT_EQ(value.bytes[0], std::byte{0x00});
    EXPECT_EQ(value.bytes[15], std::byte{0xFF});
    EXPECT_EQ(TextFromGuid(value), text);
    EXPECT_EQ(GuidFromText("00112233-4455-6677-8899-aabbccddeeff"), value);
    for (const char* bad :
         {"", "{}", "{00112233-4455-6677-8899-AABBCCDDEEFF", "00112233x4455-6677-8899-AABBCCDDEEFF",
          "0011223g-4455-6677-8899-AABBCCDDEEFF"})
        EXPECT_FALSE(GuidFromText(bad)) << bad;
}
