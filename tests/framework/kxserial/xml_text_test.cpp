#include "byte_class.hpp"
#include "xml_text.hpp"

#include <gtest/gtest.h>

#include <string>

using namespace KX::xml;

namespace {

struct DecodeCase
{
    std::string bytes;
    char32_t value;
    std::size_t length;
};

class Decode : public ::testing::TestWithParam<DecodeCase>
{
};

TEST_P(Decode, GivesTheCharacterOrRefuses)
{
    const CodePoint c = decode(GetParam().bytes);
    EXPECT_EQ(c.length, GetParam().length);
    EXPECT_EQ(c.value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Good, Decode,
    ::testing::Values(DecodeCase{"a\xFF", U'a', 1}, DecodeCase{std::string(1, '\0'), 0, 1},
                      DecodeCase{"\x7F", 0x7F, 1}, DecodeCase{"\xC2\x80", 0x80, 2},
                      DecodeCase{"\xDF\xBF", 0x7FF, 2}, DecodeCase{"\xE0\xA0\x80", 0x800, 3},
                      DecodeCase{"\xED\x9F\xBF", 0xD7FF, 3}, DecodeCase{"\xEE\x80\x80", 0xE000, 3},
                      DecodeCase{"\xEF\xBF\xBF", 0xFFFF, 3},
                      DecodeCase{"\xF0\x90\x80\x80", 0x10000, 4},
                      DecodeCase{"\xF4\x8F\xBF\xBF", 0x10FFFF, 4}));

INSTANTIATE_TEST_SUITE_P(
    Bad, Decode,
    ::testing::Values(DecodeCase{"", 0, 0}, DecodeCase{"\x80", 0, 0}, DecodeCase{"\xBF", 0, 0},
                      DecodeCase{"\xC2", 0, 0}, DecodeCase{"\xC2 ", 0, 0},
                      DecodeCase{"\xC0\x80", 0, 0}, DecodeCase{"\xC1\xBF", 0, 0},
                      DecodeCase{"\xE0\x9F\xBF", 0, 0}, DecodeCase{"\xE2\x82", 0, 0},
                      DecodeCase{"\xED\xA0\x80", 0, 0}, DecodeCase{"\xED\xBF\xBF", 0, 0},
                      DecodeCase{"\xF0\x8F\xBF\xBF", 0, 0}, DecodeCase{"\xF4\x90\x80\x80", 0, 0},
                      DecodeCase{"\xF5\x80\x80\x80", 0, 0}, DecodeCase{"\xFE\xFF", 0, 0}));

TEST(XmlText, HoldsTheCharactersOfXml)
{
    for (const char32_t good : {U'\t', U'\n', U'\r', U' ', char32_t(0x7F), char32_t(0x85),
                                char32_t(0xD7FF), char32_t(0xE000), char32_t(0xFFFD),
                                char32_t(0x10000), char32_t(0x1FFFE), char32_t(0x10FFFF)}) {
        EXPECT_TRUE(isXmlChar(good)) << std::hex << unsigned(good);
    }
    for (const char32_t bad :
         {char32_t(0), char32_t(8), char32_t(0xB), char32_t(0x1F), char32_t(0xD800),
          char32_t(0xDFFF), char32_t(0xFFFE), char32_t(0xFFFF), char32_t(0x110000)}) {
        EXPECT_FALSE(isXmlChar(bad)) << std::hex << unsigned(bad);
    }
}

TEST(XmlText, KnowsNames)
{
    for (const char* good : {"a", "_", ":", "a-b.c_d:e9", "\xC3\x89tat", "a\xC2\xB7", "a\xCC\x80",
                             "\xE6\xBC\xA2", "xml", "\xF0\x90\x80\x80"}) {
        EXPECT_TRUE(isName(good)) << good;
    }
    for (const char* bad : {"", "9a", "-a", ".a", "a b", "a\n", "a<", "\xC2\xB7", "\xCC\x80",
                            "\xC3\x97", "a\xC3", "\xE2\x80\x94", "a\"", "\xF3\xB0\x80\x80"}) {
        EXPECT_FALSE(isName(bad)) << bad;
    }
    EXPECT_FALSE(isName(std::string("a\0", 2)));
    EXPECT_EQ(nameLength("ab=c"), 2U);
    EXPECT_EQ(nameLength("\xC3\x89t t"), 3U);
}

TEST(XmlText, KnowsWhatADocumentCanHold)
{
    EXPECT_TRUE(isHoldable(""));
    EXPECT_TRUE(isHoldable("a<&>\"'\t\r\n\xC3\xA9\xF0\x9F\x98\x80"));
    EXPECT_FALSE(isHoldable("a\x01"));
    EXPECT_FALSE(isHoldable(std::string("a\0b", 3)));
    EXPECT_FALSE(isHoldable("a\xEF\xBF\xBE"));
    EXPECT_FALSE(isHoldable("a\xC3"));
}

TEST(XmlText, KnowsWhatCanBeIndentation)
{
    EXPECT_TRUE(isBlank(" \t\n"));
    EXPECT_FALSE(isBlank(" \r"));
    EXPECT_FALSE(isBlank(" x "));
    EXPECT_FALSE(isBlank("\xC2\xA0"));
}

TEST(XmlText, ClassifiesBytes)
{
    EXPECT_FALSE(is('\0', PlainText) || is('\0', PlainValue) || is('\0', PlainSection));
    EXPECT_FALSE(is('\r', PlainText) || is('\r', PlainValue) || is('\r', PlainSection));
    EXPECT_TRUE(is('>', PlainText) && is('>', PlainValue) && is('>', PlainSection));
    EXPECT_TRUE(is('\r', Space) && is('\t', Space) && !is('\v', Space));
    EXPECT_TRUE(is('<', PlainSection) && !is('<', PlainText) && !is('<', PlainValue));
    for (int byte = 0x80; byte < 0x100; ++byte) {
        EXPECT_EQ(a_byteClasses.at(static_cast<std::size_t>(byte)), 0);
    }
}

} // namespace
