#include "jet/base/Value.h"
#include "jet/base/Error.h"
#include "jet/base/Numbers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace jet;

namespace {

template <typename Operation>
ErrorKind KindOf(Operation operation)
{
    try {
        operation();
    } catch (const Error& error) {
        return error.Kind();
    }
    ADD_FAILURE() << "no error";
    return ErrorKind::Query;
}

} // namespace

TEST(Value, WithoutContentIsNull)
{
    EXPECT_TRUE(Value().IsNull());
    EXPECT_FALSE(Value("").IsNull());
    EXPECT_EQ(Value().AsIntOr(-999), -999);
    EXPECT_EQ(Value().AsTextOr("leeg"), "leeg");
    EXPECT_EQ(KindOf([] { (void)Value().AsInt(); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([] { (void)Value().AsText(); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([] { (void)Value().AsBool(); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([] { (void)Value().AsBytes(); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([] { (void)Value().AsDateTime(); }), ErrorKind::BadValue);
    EXPECT_TRUE(Value().ConvertedTo(ColumnType::Long).IsNull());
}

TEST(Value, BooleansAreMinusOneAndZero)
{
    EXPECT_EQ(Value(true).AsInt(), -1);
    EXPECT_EQ(Value(false).AsInt(), 0);
    EXPECT_EQ(Value(true).AsText(), "-1");
    EXPECT_TRUE(Value(2).AsBool());
    EXPECT_TRUE(Value("-1").AsBool());
    EXPECT_TRUE(Value("True").AsBool());
    EXPECT_FALSE(Value("Onwaar").AsBool());
    EXPECT_EQ(KindOf([] { (void)Value("misschien").AsBool(); }), ErrorKind::BadValue);
}

TEST(Value, WholeNumbersRoundHalvesToEvenAndRefuseWhatDoesNotFit)
{
    EXPECT_EQ(Value(2.5).AsInt(), 2);
    EXPECT_EQ(Value(3.5).AsInt(), 4);
    EXPECT_EQ(Value("-2.5").AsInt(), -2);
    EXPECT_EQ(Value(2147483647.4).AsInt(), 2147483647);
    EXPECT_EQ(KindOf([] { (void)Value(2147483647.5).AsInt(); }), ErrorKind::Overflow);
    EXPECT_EQ(KindOf([] { (void)Value("3000000000").AsInt(); }), ErrorKind::Overflow);
    EXPECT_EQ(KindOf([] { (void)Value("drie").AsInt(); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([] { (void)Value(std::nan("")).AsInt(); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([] { (void)Value(40000).ConvertedTo(ColumnType::Integer); }),
              ErrorKind::Overflow);
    EXPECT_EQ(KindOf([] { (void)Value(-1).ConvertedTo(ColumnType::Byte); }), ErrorKind::Overflow);
    EXPECT_EQ(Value(255.4).ConvertedTo(ColumnType::Byte), Value(std::uint8_t{255}));
    EXPECT_EQ(Value("7").ConvertedTo(ColumnType::Integer), Value(std::int16_t{7}));
}

TEST(Value, ADecimalCommaIsNoNumber)
{
    EXPECT_EQ(KindOf([] { (void)Value("1,5").AsDouble(); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([] { (void)Value("").AsDouble(); }), ErrorKind::BadValue);
}

TEST(Value, SinglesShowSevenDigits)
{
    EXPECT_EQ(Value(0.1f).AsText(), "0.1");
    EXPECT_EQ(Value(1e30).ConvertedTo(ColumnType::Single), Value(1e30f));
    EXPECT_EQ(KindOf([] { (void)Value(1e39).ConvertedTo(ColumnType::Single); }),
              ErrorKind::Overflow);
}

TEST(Value, CurrencyConvertsExactly)
{
    EXPECT_EQ(Value("0.1").ConvertedTo(ColumnType::Currency), Value(Currency{1000}));
    EXPECT_EQ(Value(0.00005).ConvertedTo(ColumnType::Currency), Value(Currency{0}));
    EXPECT_EQ(Value(Currency{15000}).AsDouble(), 1.5);
    EXPECT_EQ(Value(Currency{25000}).AsInt(), 2);
    EXPECT_EQ(KindOf([] { (void)Value(1e15).ConvertedTo(ColumnType::Currency); }),
              ErrorKind::Overflow);
    EXPECT_EQ(Value(*DecimalFromText("922337203685477.5807")).ConvertedTo(ColumnType::Currency),
              Value(Currency{INT64_MAX}));
}

TEST(Value, DecimalsConvertExactly)
{
    EXPECT_EQ(Value("0.1").ConvertedTo(ColumnType::Decimal), Value(*DecimalFromText("0.1")));
    EXPECT_EQ(Value(0.1).ConvertedTo(ColumnType::Decimal).AsText(), "0.1");
    EXPECT_EQ(Value(Currency{-5}).ConvertedTo(ColumnType::Decimal).AsText(), "-0.0005");
    EXPECT_EQ(KindOf([] { (void)Value(1e40).ConvertedTo(ColumnType::Decimal); }),
              ErrorKind::Overflow);
}

TEST(Value, DatesConvertWithNumbersAndText)
{
    EXPECT_EQ(Value(36526).AsDateTime(), DateTime{36526});
    EXPECT_EQ(Value(DateTime{36526.5}).AsDouble(), 36526.5);
    EXPECT_EQ(Value("2000-01-01").AsDateTime(), DateTime{36526});
    EXPECT_EQ(Value(DateTime{36526}).AsText(), "2000-01-01");
    EXPECT_EQ(KindOf([] { (void)Value(3e6).AsDateTime(); }), ErrorKind::Overflow);
    EXPECT_EQ(KindOf([] { (void)Value("morgen").AsDateTime(); }), ErrorKind::BadValue);
}

TEST(Value, BytesAndGuidsConvertIntoEachOther)
{
    const Guid guid = *GuidFromText("00112233-4455-6677-8899-AABBCCDDEEFF");
    const Bytes bytes(guid.bytes.begin(), guid.bytes.end());
    EXPECT_EQ(Value(bytes).ConvertedTo(ColumnType::Guid), Value(guid));
    EXPECT_EQ(Value(guid).ConvertedTo(ColumnType::Binary), Value(bytes));
    EXPECT_EQ(KindOf([&] { (void)Value(Bytes(15)).ConvertedTo(ColumnType::Guid); }),
              ErrorKind::BadValue);
    EXPECT_EQ(KindOf([&] { (void)Value(bytes).AsText(); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([&] { (void)Value(bytes).AsDouble(); }), ErrorKind::BadValue);
    EXPECT_EQ(KindOf([&] { (void)Value("abc").ConvertedTo(ColumnType::Ole); }),
              ErrorKind::BadValue);
}

TEST(Value, TextTakesEveryReadableKind)
{
    EXPECT_EQ(Value(-5).ConvertedTo(ColumnType::Text), Value("-5"));
    EXPECT_EQ(Value(1.25).ConvertedTo(ColumnType::Memo), Value("1.25"));
    EXPECT_EQ(Value(Currency{-12500}).AsText(), "-1.25");
    EXPECT_EQ(Value(std::uint8_t{9}).AsText(), "9");
}

TEST(Value, ErrorsShowTheValue)
{
    try {
        (void)Value("dijk").AsInt();
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_NE(std::string(error.what()).find("dijk"), std::string::npos);
    }
    try {
        (void)Value(std::string(1000, 'x')).AsInt();
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_LT(std::string(error.what()).size(), 200u);
    }
}

TEST(Value, OnlyNumbersAreNumbers)
{
    EXPECT_TRUE(Value(1).IsNumber());
    EXPECT_TRUE(Value(true).IsNumber());
    EXPECT_TRUE(Value(Currency{}).IsNumber());
    EXPECT_TRUE(Value(Decimal{}).IsNumber());
    EXPECT_FALSE(Value("1").IsNumber());
    EXPECT_FALSE(Value(DateTime{}).IsNumber());
    EXPECT_FALSE(Value().IsNumber());
}
