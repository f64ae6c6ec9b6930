#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"

#include <array>
#include <gtest/gtest.h>

using namespace jet;

TEST(ByteOrder, NumbersAreLittleEndian)
{
    std::array<std::byte, 12> bytes{};
    PutU32(bytes, 2, 0x11223344);
    EXPECT_EQ(bytes[2], std::byte{0x44});
    EXPECT_EQ(bytes[5], std::byte{0x11});
    EXPECT_EQ(GetU32(bytes, 2), 0x11223344u);
    EXPECT_EQ(GetU16(bytes, 3), 0x2233u);
    EXPECT_EQ(GetU8(bytes, 5), 0x11u);
    PutI16(bytes, 0, -2);
    EXPECT_EQ(GetU16(bytes, 0), 0xFFFEu);
    EXPECT_EQ(GetI16(bytes, 0), -2);
    PutF64(bytes, 4, 1.0);
    EXPECT_EQ(GetU64(bytes, 4), 0x3FF0000000000000u);
    EXPECT_EQ(GetF64(bytes, 4), 1.0);
    PutI64(bytes, 1, -3);
    EXPECT_EQ(GetI64(bytes, 1), -3);
    PutI32(bytes, 1, -4);
    EXPECT_EQ(GetI32(bytes, 1), -4);
    PutF32(bytes, 8, 0.5f);
    EXPECT_EQ(GetF32(bytes, 8), 0.5f);
}

TEST(ByteOrder, PageNumbersOfIndexEntriesAreBigEndian)
{
    std::array<std::byte, 4> bytes{};
    PutU24BigEndian(bytes, 1, 0x000A0B0C);
    EXPECT_EQ(bytes[1], std::byte{0x0A});
    EXPECT_EQ(bytes[3], std::byte{0x0C});
    EXPECT_EQ(GetU24BigEndian(bytes, 1), 0x0A0B0Cu);
    PutU32BigEndian(bytes, 0, 0x01020304);
    EXPECT_EQ(bytes[0], std::byte{1});
    EXPECT_EQ(GetU32BigEndian(bytes, 0), 0x01020304u);
}

TEST(ByteOrder, AFieldOutsideItsBytesIsDamage)
{
    std::array<std::byte, 4> bytes{};
    EXPECT_EQ(GetU32(bytes, 0), 0u);
    for (const std::size_t offset : {std::size_t{1}, std::size_t{4}, ~std::size_t{0}}) {
        try {
            GetU32(bytes, offset);
            ADD_FAILURE() << offset;
        } catch (const Error& error) {
            EXPECT_EQ(error.Kind(), ErrorKind::Damaged);
        }
        EXPECT_THROW(PutU32(bytes, offset, 1), Error);
    }
    EXPECT_THROW(GetU8({}, 0), Error);
}
