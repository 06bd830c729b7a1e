#include "parsed_xml.hpp"
#include "xml_helpers.hpp"
#include "xml_scanner.hpp"

#include <algorithm>

using namespace KX::testing;
using KX::xml::Bytes;
using KX::xml::Fault;
using KX::xml::ParsedXml;
using KX::xml::position;

namespace {

Bytes bytesOf(const std::string& text)
{
    Bytes bytes;
    bytes.size = text.size();
    bytes.data.reset(new char[text.size() + 1]);
    std::copy_n(text.c_str(), text.size() + 1, bytes.data.get());
    return bytes;
}

boost::shared_ptr<const ParsedXml> parse(const std::string& text)
{
    Bytes bytes = bytesOf(text);
    return ParsedXml::parse(bytes);
}

TEST(ParsedXml, NormalisesLineEndsEverywhere)
{
    const auto parsed = parse("<a b='1\r\n2\r3'>x\r\ny\rz\r\r\n<!--c\r\nd--><?p e\rf?>"
                              "<![CDATA[g\r\nh]]>&#13;\n</a>\r\n");
    pugi::xml_node node = parsed->root().first_child();
    EXPECT_STREQ(parsed->root().attribute("b").value(), "1 2 3");
    EXPECT_STREQ(node.value(), "x\ny\nz\n\n");
    node = node.next_sibling();
    EXPECT_STREQ(node.value(), "c\nd");
    node = node.next_sibling();
    EXPECT_STREQ(node.value(), "e\nf");
    node = node.next_sibling();
    EXPECT_STREQ(node.value(), "g\nh");
    node = node.next_sibling();
    EXPECT_STREQ(node.value(), "\r\n");
}

TEST(ParsedXml, KeepsReferencesInValuesFromNormalisation)
{
    EXPECT_STREQ(parse("<a b='&#9;&#10;&#13;\t\n'/>")->root().attribute("b").value(), "\t\n\r  ");
}

TEST(ParsedXml, KeepsBlankTextOnlyWhereItMayMean)
{
    const auto plain = parse("<a>\n  <b> </b>\n</a>");
    EXPECT_FALSE(plain->mixed());
    EXPECT_EQ(plain->root().first_child().type(), pugi::node_element);
    EXPECT_STREQ(plain->root().child_value("b"), " ");
    const auto mixed = parse("<a> <b>x<c/></b></a>");
    EXPECT_TRUE(mixed->mixed());
    EXPECT_EQ(mixed->root().first_child().type(), pugi::node_pcdata);
}

TEST(ParsedXml, LeavesRefusedBytesWhereTheyAre)
{
    Bytes bytes = bytesOf("<a>\r\n</b>");
    EXPECT_THROW(ParsedXml::parse(bytes), Fault);
    EXPECT_EQ(std::string(bytes.data.get(), bytes.size), "<a>\r\n</b>");
}

struct PositionCase
{
    std::string document;
    std::size_t offset;
    std::string position;
};

class Position : public ::testing::TestWithParam<PositionCase>
{
};

TEST_P(Position, CountsLinesAndCharacters)
{
    EXPECT_EQ(position(GetParam().document, GetParam().offset), GetParam().position);
}

INSTANTIATE_TEST_SUITE_P(Offsets, Position,
                         ::testing::Values(PositionCase{"", 0, "line 1, column 1"},
                                           PositionCase{"abc", 2, "line 1, column 3"},
                                           PositionCase{"a\nb", 2, "line 2, column 1"},
                                           PositionCase{"a\r\nb", 3, "line 2, column 1"},
                                           PositionCase{"a\rb\rc", 4, "line 3, column 1"},
                                           PositionCase{"\n\r\n\r\r", 5, "line 5, column 1"},
                                           PositionCase{"\xC3\xA9\xE6\xBC\xA2x", 5,
                                                        "line 1, column 3"}));

} // namespace
