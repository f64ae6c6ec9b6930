#include "jet/table/TextCodec.h"
#include "jet/base/Error.h"

#include <gtest/gtest.h>

using namespace jet;

namespace {

Bytes BytesOf(std::string_view raw)
{
    Bytes bytes;
    for (const char c : raw)
        bytes.push_back(static_cast<std::byte>(c));
    return bytes;
}

std::string Decode(std::string_view raw, FileVersion version = FileVersion::Jet4)
{
    return DecodeText(BytesOf(raw), version);
}

Bytes Encode(std::string_view text, bool compress = true)
{
    Bytes bytes;
    AppendText(text, compress, bytes);
    return bytes;
}

using namespace std::string_literals;

} // namespace

TEST(TextCodecTest, PlainTextIsUtf16)
{
    EXPECT_EQ(Decode("a\0\xE9\0\xAC\x20"s), "a\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(Encode("a\xC3\xA9\xE2\x82\xAC"), BytesOf("a\0\xE9\0\xAC\x20"s));
    EXPECT_EQ(Decode(""), "");
    EXPECT_EQ(Encode(""), Bytes());
}

TEST(TextCodecTest, CompressedTextHasOneByteACharacter)
{
    EXPECT_EQ(Decode("\xFF\xFE"
                     "foo"),
              "foo");
    EXPECT_EQ(Decode("\xFF\xFE"
                     "caf\xE9"),
              "caf\xC3\xA9");
    EXPECT_EQ(Encode("caf\xC3\xA9"), BytesOf("\xFF\xFE"
                                             "caf\xE9"));
}

TEST(TextCodecTest, AZeroByteSwitchesBetweenTheCodings)
{
    EXPECT_EQ(Decode("\xFF\xFE"
                     "ab\0\xB1\x03\xB2\x03\0cd"s),
              "ab\xCE\xB1\xCE\xB2"
              "cd");
    EXPECT_EQ(Decode("\xFF\xFE\0\xB1\x03"s), "\xCE\xB1");
}

TEST(TextCodecTest, OnlyTextOf3To1024CharactersBelowU0100IsCompressed)
{
    EXPECT_EQ(Encode("ab"), BytesOf("a\0b\0"s));
    EXPECT_EQ(Encode("abc"), BytesOf("\xFF\xFE"
                                     "abc"));
    EXPECT_EQ(Encode("abc", false), BytesOf("a\0b\0c\0"s));
    EXPECT_EQ(Encode(std::string(1024, 'x')).size(), 1026u);
    EXPECT_EQ(Encode(std::string(1025, 'x')).size(), 2050u);
    std::string accents;
    for (int i = 0; i < 1024; ++i)
        accents += "\xC3\xA9";
    EXPECT_EQ(Encode(accents).size(), 1026u) << "characters count, not bytes";
    EXPECT_EQ(Encode("ab\xC4\x80").size(), 6u) << "U+0100";
    EXPECT_EQ(Encode("ab\0"s).size(), 6u) << "U+0000 would be a switch";
}

TEST(TextCodecTest, EveryTextSurvivesTheWayThereAndBack)
{
    for (const std::string& text :
         {"abc"s, "caf\xC3\xA9"s, "\xF0\x9F\x98\x80 smile"s, "\xED\xA0\x80 lone surrogate"s,
          "\xEF\xBB\xBFmark in front"s, "\xEF\xBB\xBF"s, "\xEF\xBB\xBF\xCE\xB1\xCE\xB2 abc"s,
          "zero\0inside"s, std::string(5000, 'm'), "\xC3\xBF\xC3\xBE"s}) {
        EXPECT_EQ(DecodeText(Encode(text), FileVersion::Jet4), text);
        EXPECT_EQ(DecodeText(Encode(text, false), FileVersion::Jet4), text);
    }
}

TEST(TextCodecTest, Jet3TextIsCodePage1252)
{
    EXPECT_EQ(Decode("caf\xE9 \x80", FileVersion::Jet3), "caf\xC3\xA9 \xE2\x82\xAC");
}

TEST(TextCodecTest, BytesThatAreNoUtf8AreRefused)
{
    EXPECT_THROW(Encode("abc\xC3"), Error);
    EXPECT_THROW(Encode("abc\x80"), Error);
    EXPECT_THROW(Encode("\xE2\x82"), Error);
}

TEST(TextCodecTest, LengthsCountUtf16Units)
{
    EXPECT_EQ(TextUnits("abc"), 3u);
    EXPECT_EQ(TextUnits("\xC3\xA9\xE2\x82\xAC"), 2u);
    EXPECT_EQ(TextUnits("\xF0\x9F\x98\x80"), 2u);
}
