#include "jet/base/Text.h"
#include "jet/base/Error.h"

#include <gtest/gtest.h>

using namespace jet;

namespace {

std::vector<std::byte> BytesOf(std::initializer_list<int> values)
{
    std::vector<std::byte> bytes;
    for (const int value : values)
        bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

} // namespace

TEST(Text, GoesBetweenUtf8AndUtf16)
{
    EXPECT_EQ(Utf16FromUtf8("aé€😀"), u"aé€😀");
    EXPECT_EQ(Utf8FromUtf16(u"aé€😀"), "aé€😀");
    EXPECT_EQ(Utf8FromUtf16(u""), "");
    EXPECT_EQ(Utf8FromUtf16Bytes(BytesOf({0x61, 0, 0xAC, 0x20, 0x99})), "a€");
}

TEST(Text, EveryUnitSurvivesLoneSurrogatesToo)
{
    for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
        const std::u16string text{u'x', static_cast<char16_t>(unit), u'y'};
        ASSERT_EQ(Utf16FromUtf8(Utf8FromUtf16(text)), text) << static_cast<unsigned>(unit);
    }
    const std::u16string wrongOrder{0xDC00, 0xD800, 0xD800, 0xDC00, 0xD801};
    EXPECT_EQ(Utf16FromUtf8(Utf8FromUtf16(wrongOrder)), wrongOrder);
}

TEST(Text, ThatIsNotUtf8IsRefused)
{
    for (const std::string bad :
         {"\x80", "\xC3", "\xC0\x80", "\xE2\x82", "\xE0\x80\x80", "\xF0\x80\x80\x80",
          "\xF4\x90\x80\x80", "\xFF", "a\xC3(", "\xF5"}) {
        EXPECT_THROW(Utf16FromUtf8(bad), Error);
        EXPECT_THROW(CodePage1252FromUtf8(bad), Error);
    }
}

TEST(Text, EveryByteOfCodePage1252Survives)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text = Utf8FromCodePage1252(BytesOf({byte}));
        ASSERT_EQ(CodePage1252FromUtf8(text), std::string(1, static_cast<char>(byte))) << byte;
    }
    EXPECT_EQ(Utf8FromCodePage1252(BytesOf({0x80, 0x8A, 0x92, 0xE9, 0x9F})), "€Š’éŸ");
}

TEST(Text, WhatCodePage1252LacksIsSubstituted)
{
    EXPECT_EQ(CodePage1252FromUtf8("a→b😀"), "a?b?");
    EXPECT_FALSE(CodePage1252FromCharacter(u'→'));
}

TEST(Text, NamesCompareWithoutRegardToCase)
{
    EXPECT_TRUE(NamesEqual("Locatie_ID", "LOCATIE_id"));
    EXPECT_TRUE(NamesEqual("Één", "éÉN"));
    EXPECT_TRUE(NamesEqual("Š", "š"));
    EXPECT_FALSE(NamesEqual("Locatie", "Locaties"));
    EXPECT_FALSE(NamesEqual("een", "één"));
    EXPECT_FALSE(NamesEqual("×", "÷")) << "signs have no case";
}

TEST(Text, PathsAreShownAsUtf8)
{
    EXPECT_EQ(Utf8FromPath(std::filesystem::path(u8"map/boezem é.mdb")), "map/boezem é.mdb");
}
