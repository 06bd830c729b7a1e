#include "parsed_xml.hpp"
#include "xml_helpers.hpp"
#include "xml_scanner.hpp"
#include "xml_text.hpp"

#include <ostream>
#include <utility>
#include <vector>

using namespace std::string_literals;
using namespace KX::testing;
using KX::xml::Fault;
using KX::xml::Scanner;

namespace {

struct Refused
{
    std::string document;
    std::string where;
    std::string reason;
};

std::ostream& operator<<(std::ostream& out, const Refused& refused)
{
    return out << refused.document.substr(0, 100);
}

class ScannerRefuses : public ::testing::TestWithParam<Refused>
{
};

TEST_P(ScannerRefuses, WithPlaceAndReason)
{
    const std::string& document = GetParam().document;
    try {
        Scanner::scan(document);
        FAIL() << "accepted";
    } catch (const Fault& fault) {
        EXPECT_EQ(KX::xml::position(document, fault.offset()), GetParam().where);
        EXPECT_EQ(std::string(fault.what()), GetParam().reason);
    }
}

std::string at(int line, int column)
{
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

const char* const a_notAllowed = "a character that is not allowed";
const char* const a_badReference = "a reference to a character that is not allowed";
const char* const a_notUtf8 = "bytes that are not UTF-8";
const char* const a_entity = "an unknown entity or an \"&\" on its own";
const char* const a_element = "the name of an element expected";

INSTANTIATE_TEST_SUITE_P(
    Encodings, ScannerRefuses,
    ::testing::Values(Refused{"\xFF\xFE<\0a\0/\0>\0"s, at(1, 1), "not UTF-8 but another encoding"},
                      Refused{"\xFE\xFF\0<\0a\0/\0>"s, at(1, 1), "not UTF-8 but another encoding"},
                      Refused{"<\0a\0/\0>\0"s, at(1, 1), "not UTF-8 but another encoding"},
                      Refused{"\0<\0a\0/\0>"s, at(1, 1), "not UTF-8 but another encoding"},
                      Refused{"\xFF\xFE\0\0<\0\0\0"s, at(1, 1), "not UTF-8 but another encoding"},
                      Refused{"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>", at(1, 21),
                              "an encoding other than UTF-8"},
                      Refused{"<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>", at(1, 21),
                              "an encoding other than UTF-8"},
                      Refused{"<?xml version='1.0' encoding='us-ascii'?><a>\xC3\xA9</a>", at(1, 45),
                              "a byte that is not US-ASCII, as the XML declaration promises"},
                      Refused{"<?xml version='1.0' encoding='us-ascii'?><\xC3\xA9/>", at(1, 43),
                              "a byte that is not US-ASCII, as the XML declaration promises"},
                      Refused{"<a>\n\xC3\xA9\xFF</a>", at(2, 2), a_notUtf8},
                      Refused{"<a b='\xC0\x80'/>", at(1, 7), a_notUtf8},
                      Refused{"<a><!--\xED\xA0\x80--></a>", at(1, 8), a_notUtf8},
                      Refused{"<a><![CDATA[\xF4\x90\x80\x80]]></a>", at(1, 13), a_notUtf8},
                      Refused{"<a><?p \xE2\x82?></a>", at(1, 8), a_notUtf8},
                      Refused{"<a>\xE2\x82", at(1, 4), a_notUtf8},
                      Refused{"\xEF\xBB\xBF\xEF\xBB\xBF<a/>", at(1, 2),
                              "text outside the root element"}));

INSTANTIATE_TEST_SUITE_P(
    Characters, ScannerRefuses,
    ::testing::Values(Refused{"<a>\x01</a>", at(1, 4), a_notAllowed},
                      Refused{"<a>x\0y</a>"s, at(1, 5), a_notAllowed},
                      Refused{"<a/>\0"s, at(1, 5), "text outside the root element"},
                      Refused{"<a b='\x1F'/>", at(1, 7), a_notAllowed},
                      Refused{"<a b='\0'/>"s, at(1, 7), a_notAllowed},
                      Refused{"<a>\xEF\xBF\xBE</a>", at(1, 4), a_notAllowed},
                      Refused{"<a>\xEF\xBF\xBF</a>", at(1, 4), a_notAllowed},
                      Refused{"<a><!--\x0C--></a>", at(1, 8), a_notAllowed},
                      Refused{"<a><![CDATA[\x1B]]></a>", at(1, 13), a_notAllowed},
                      Refused{"<a><?p \x08?></a>", at(1, 8), a_notAllowed},
                      Refused{"<!DOCTYPE a SYSTEM '\x02'><a/>", at(1, 21), a_notAllowed},
                      Refused{"<a>&#0;</a>", at(1, 4), a_badReference},
                      Refused{"<a>&#8;</a>", at(1, 4), a_badReference},
                      Refused{"<a>&#x1F;</a>", at(1, 4), a_badReference},
                      Refused{"<a>&#xD800;</a>", at(1, 4), a_badReference},
                      Refused{"<a b='&#xDFFF;'/>", at(1, 7), a_badReference},
                      Refused{"<a>&#xFFFE;</a>", at(1, 4), a_badReference},
                      Refused{"<a>&#x110000;</a>", at(1, 4), a_badReference},
                      Refused{"<a>&#99999999999999999999;</a>", at(1, 4), a_badReference},
                      Refused{"<a>&#x100000041;</a>", at(1, 4), a_badReference}));

INSTANTIATE_TEST_SUITE_P(
    References, ScannerRefuses,
    ::testing::Values(
        Refused{"<a>&nbsp;</a>", at(1, 4), a_entity}, Refused{"<a>a & b</a>", at(1, 6), a_entity},
        Refused{"<a>&lt</a>", at(1, 4), a_entity}, Refused{"<a>&;</a>", at(1, 4), a_entity},
        Refused{"<a>&AMP;</a>", at(1, 4), a_entity}, Refused{"<a b='&foo;'/>", at(1, 7), a_entity},
        Refused{"<a b='x&'/>", at(1, 8), a_entity},
        Refused{"<a>&#;</a>", at(1, 4), "a character reference that is not complete"},
        Refused{"<a>&#x;</a>", at(1, 4), "a character reference that is not complete"},
        Refused{"<a>&#65</a>", at(1, 4), "a character reference that is not complete"},
        Refused{"<a>&#6A;</a>", at(1, 4), "a character reference that is not complete"},
        Refused{"<a>&#X41;</a>", at(1, 4), "a character reference that is not complete"},
        Refused{"<a>&# 65;</a>", at(1, 4), "a character reference that is not complete"}));

INSTANTIATE_TEST_SUITE_P(
    Attributes, ScannerRefuses,
    ::testing::Values(
        Refused{"<a b='1' b='2'/>", at(1, 10), "attribute \"b\" repeated"},
        Refused{"<a b='1'\nc='2'\nb='3'/>", at(3, 1), "attribute \"b\" repeated"},
        Refused{"<a b='<'/>", at(1, 7), "\"<\" in the value of attribute \"b\""},
        Refused{"<a b='1'c='2'/>", at(1, 9),
                "white space, \">\" or \"/>\" expected in the tag of element \"a\""},
        Refused{"<a b/>", at(1, 5), "\"=\" expected"},
        Refused{"<a b=1/>", at(1, 6), "a quote expected before the value of attribute \"b\""},
        Refused{"<a 9='1'/>", at(1, 4), "the name of an attribute expected"},
        Refused{"<a b='1/>", at(1, 10), "the file ends inside the value of attribute \"b\""},
        Refused{"<a ='1'/>", at(1, 4), "the name of an attribute expected"},
        Refused{"<a \xC3\x97='1'/>", at(1, 4), "the name of an attribute expected"}));

INSTANTIATE_TEST_SUITE_P(
    Structure, ScannerRefuses,
    ::testing::Values(
        Refused{"", at(1, 1), "no root element"}, Refused{" \r\n\t", at(2, 2), "no root element"},
        Refused{"<!-- x -->", at(1, 11), "no root element"},
        Refused{"x<a/>", at(1, 1), "text outside the root element"},
        Refused{"<a/>x", at(1, 5), "text outside the root element"},
        Refused{"<a/>&#32;", at(1, 5), "text outside the root element"},
        Refused{"<a/>\n<b/>", at(2, 1), "a second element outside the root"},
        Refused{"<a/></a>", at(1, 5), "a second element outside the root"},
        Refused{"<![CDATA[x]]><a/>", at(1, 1), "markup that is not allowed here"},
        Refused{"<a/><![CDATA[x]]>", at(1, 5), "a second element outside the root"},
        Refused{"<a>", at(1, 4), "the file ends inside element \"a\""},
        Refused{"<a><b></b>", at(1, 11), "the file ends inside element \"a\""},
        Refused{"<a", at(1, 3), "the file ends inside the tag of element \"a\""},
        Refused{"<a b='1'", at(1, 9), "the file ends inside the tag of element \"a\""},
        Refused{"<a></b>", at(1, 4), "end tag \"b\" without its start tag"},
        Refused{"<a><b></a></b>", at(1, 7), "end tag \"a\" without its start tag"},
        Refused{"</a>", at(1, 1), "end tag \"a\" without its start tag"},
        Refused{"<a></A>", at(1, 4), "end tag \"A\" without its start tag"},
        Refused{"<a></a b='1'>", at(1, 8), "\">\" expected at the end of an end tag"},
        Refused{"<a></ a>", at(1, 6), a_element}, Refused{"< a/>", at(1, 2), a_element},
        Refused{"<9/>", at(1, 2), a_element}, Refused{"<", at(1, 2), a_element},
        Refused{"<>", at(1, 2), a_element}, Refused{"<a>x < y</a>", at(1, 7), a_element},
        Refused{"<a / >", at(1, 4), "\"/>\" expected"},
        Refused{"<a>x ]]> y</a>", at(1, 6), "\"]]>\" in text"},
        Refused{"<a>]]]></a>", at(1, 5), "\"]]>\" in text"},
        Refused{"<a><!ELEMENT b ANY></a>", at(1, 4), "markup that is not allowed here"},
        Refused{"<a><![cdata[x]]></a>", at(1, 4), "markup that is not allowed here"},
        Refused{"<a><![CDATA[x", at(1, 14), "the file ends inside a CDATA section"},
        Refused{"<a><![CDATA[x]]", at(1, 16), "the file ends inside a CDATA section"},
        Refused{"<a><!--x", at(1, 9), "the file ends inside a comment"},
        Refused{"<a><!--x--", at(1, 9), "\"--\" in a comment"},
        Refused{"<a><!-- x -- y --></a>", at(1, 11), "\"--\" in a comment"},
        Refused{"<a><!-- x ---></a>", at(1, 11), "\"--\" in a comment"},
        Refused{"<a><!--></a>", at(1, 13), "the file ends inside a comment"},
        Refused{"<!-x--><a/>", at(1, 1), "markup that is not allowed here"}));

INSTANTIATE_TEST_SUITE_P(
    Instructions, ScannerRefuses,
    ::testing::Values(
        Refused{" <?xml version=\"1.0\"?><a/>", at(1, 2),
                "an XML declaration that is not at the start"},
        Refused{"<a><?xml version=\"1.0\"?></a>", at(1, 4),
                "an XML declaration that is not at the start"},
        Refused{"<?XML version=\"1.0\"?><a/>", at(1, 1),
                "an XML declaration that is not at the start"},
        Refused{"<a><?xMl?></a>", at(1, 4), "an XML declaration that is not at the start"},
        Refused{"<?xml?><a/>", at(1, 1), "an XML declaration that is not at the start"},
        Refused{"<?xml version=\"1.1\"?><a/>", at(1, 7),
                "the XML declaration does not begin with version 1.0"},
        Refused{"<?xml encoding=\"UTF-8\"?><a/>", at(1, 7),
                "\"version\" expected in the XML declaration"},
        Refused{"<?xml version=\"1.0\" standalone=\"maybe\"?><a/>", at(1, 21),
                "standalone is neither \"yes\" nor \"no\""},
        Refused{"<?xml version=\"1.0\" standalone=\"no\" encoding=\"UTF-8\"?><a/>", at(1, 37),
                "\"?>\" expected at the end of the XML declaration"},
        Refused{"<?xml version=\"1.0\"encoding=\"UTF-8\"?><a/>", at(1, 20),
                "\"?>\" expected at the end of the XML declaration"},
        Refused{"<?xml version=\"1.0", at(1, 19), "the file ends inside a quoted text"},
        Refused{"<?xml version=1.0?><a/>", at(1, 15), "a quoted text expected"},
        Refused{"<? p?><a/>", at(1, 3), "the name of a processing instruction expected"},
        Refused{"<?p!?><a/>", at(1, 4),
                "white space expected after the name of a processing instruction"},
        Refused{"<a><?p x", at(1, 9), "the file ends inside a processing instruction"}));

INSTANTIATE_TEST_SUITE_P(
    DocumentTypes, ScannerRefuses,
    ::testing::Values(
        Refused{"<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>", at(1, 13),
                "a document type with declarations of its own"},
        Refused{"<!DOCTYPE a SYSTEM 'a.dtd' []><a/>", at(1, 28),
                "a document type with declarations of its own"},
        Refused{"<!DOCTYPE a[]><a/>", at(1, 12), "a document type with declarations of its own"},
        Refused{"<a/><!DOCTYPE a>", at(1, 5), "a document type here"},
        Refused{"<!DOCTYPE a><!DOCTYPE a><a/>", at(1, 13), "a document type here"},
        Refused{"<a><!DOCTYPE a></a>", at(1, 4), "markup that is not allowed here"},
        Refused{"<!DOCTYPE><a/>", at(1, 10), "white space expected after \"<!DOCTYPE\""},
        Refused{"<!doctype a><a/>", at(1, 1), "markup that is not allowed here"},
        Refused{"<!DOCTYPE a SYSTEM><a/>", at(1, 19), "white space expected before an identifier"},
        Refused{"<!DOCTYPE a SYSTEM a><a/>", at(1, 20), "a quoted text expected"},
        Refused{"<!DOCTYPE a PUBLIC 'p'><a/>", at(1, 23),
                "white space expected between two identifiers"},
        Refused{"<!DOCTYPE a PUBLIC '{' 's'><a/>", at(1, 21),
                "a character that a public identifier cannot have"},
        Refused{"<!DOCTYPE a b><a/>", at(1, 13), "\">\" expected at the end of the document type"},
        Refused{"<!DOCTYPE a", at(1, 12), "\">\" expected at the end of the document type"}));

INSTANTIATE_TEST_SUITE_P(
    Depths, ScannerRefuses,
    ::testing::Values(Refused{nested(257), at(1, 769), "elements nested deeper than 256 levels"},
                      Refused{nested(100000), at(1, 769), "elements nested deeper than 256 levels"},
                      Refused{repeated("<a>", 256) + "<b/>" + repeated("</a>", 256), at(1, 769),
                              "elements nested deeper than 256 levels"}));

// Bounds of the number of nodes

struct Crowd
{
    const char* name;
    std::string head;
    std::string unit;
    std::string tail;
    std::size_t nodes; ///< of a unit
    std::size_t others = 1;
};

class ScannerCounts : public ::testing::TestWithParam<Crowd>
{
protected:
    static std::string with(std::size_t units)
    {
        return GetParam().head + repeated(GetParam().unit, units) + GetParam().tail;
    }
};

TEST_P(ScannerCounts, WhatTakesMemory)
{
    const std::size_t most = (KX::xml::a_maxNodes - GetParam().others) / GetParam().nodes;
    EXPECT_NO_THROW(Scanner::scan(with(most)));
    try {
        Scanner::scan(with(most + 1));
        FAIL() << "accepted one more";
    } catch (const Fault& fault) {
        EXPECT_STREQ(fault.what(), "more than 600000 elements, attributes, texts, comments and "
                                   "processing instructions");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Nodes, ScannerCounts,
    ::testing::Values(Crowd{"Elements", "<a>", "<a/>", "</a>", 1},
                      Crowd{"IndentedElements", "<a>", "\n<a/>", "</a>", 1},
                      Crowd{"Attributes", "<a>", "<a a='' b='' c=''/>", "</a>", 4},
                      Crowd{"Texts", "<a>", "x<a/>", "</a>", 2},
                      Crowd{"BlankTexts", "<a>", "<a> </a>", "</a>", 2},
                      Crowd{"BlanksWithAMeaning", "<a>x", "<a/> ", "</a>", 2, 2},
                      Crowd{"BlanksThatArePreserved", "<a xml:space='preserve'>", " <a/>", "</a>",
                            2, 2},
                      Crowd{"Sections", "<a>", "<![CDATA[]]>", "</a>", 1},
                      Crowd{"Comments", "<a>", "<!---->", "</a>", 1},
                      Crowd{"CommentsInFront", "", "<!---->", "<a/>", 1},
                      Crowd{"Instructions", "<a>", "<?a?>", "</a>", 1}),
    [](const auto& crowd) { return std::string(crowd.param.name); });

class ScannerAccepts : public ::testing::TestWithParam<std::string>
{
};

TEST_P(ScannerAccepts, WellFormedDocuments)
{
    EXPECT_NO_THROW(Scanner::scan(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Documents, ScannerAccepts,
    ::testing::Values(
        "<a/>", "<a></a >", "<a\t\r\n/>", " \r\n\t<a/>\r\n ", "\xEF\xBB\xBF<a/>",
        "\xEF\xBB\xBF<?xml version='1.0'?><a/>", "<?xml version = \"1.0\" ?><a/>",
        "<?xml version=\"1.0\" encoding=\"utf-8\" standalone='no' ?><a/>",
        "<?xml version=\"1.0\" encoding='Us-Ascii'?><a>&#233;</a>", "<!DOCTYPE a><a/>",
        "<!DOCTYPE  a \n><a/>", "<!DOCTYPE a SYSTEM \"x'>y\"><a/>",
        "<!DOCTYPE a PUBLIC '-//W3C//DTD' \"x<&\" ><a/>", "<!--c--><?p?><!DOCTYPE a><!--d--><a/>",
        "<a/><!--c--><?p d?>\n", "<a b=\"'\" c='\"' d='>'/>", "<a b = '1'\nc\t=\n'2'/>",
        "<a b=''>]] ></a>", "<a>]]&gt; &lt;&amp;&quot;&apos;&#x9;&#xa;&#13;&#x10FFFF;</a>",
        "<a><![CDATA[]]]]><![CDATA[>]]></a>", "<a><![CDATA[<b>&x;--?>]]></a>",
        "<a><!----><!-- - ]]> ?> --></a>", "<a><?p ? > ?\?></a>", "<a><?xml-stylesheet x?></a>",
        "<a><?xmlx?></a>", "<x:a x:b='1' y:b='2'/>", "<\xC3\x89 \xE6\xBC\xA2='1'/>", nested(256),
        "<a>\xC2\x85\xC2\x80\x7F</a>", "<a b='&#00000000000000000065;'/>"));

TEST(Scanner, ReportsWhatTheParserHasToKnow)
{
    EXPECT_TRUE(Scanner::scan("<?xml version='1.0' standalone='yes'?><a/>").standalone);
    EXPECT_FALSE(Scanner::scan("<?xml version='1.0' standalone='no'?><a/>").standalone);
    for (const char* document : {"<a>\r</a>", "<a b='\r'/>", "<a\r/>", "\r<a/>", "<a/>\r",
                                 "<a><!--\r--></a>", "<a><![CDATA[\r]]></a>", "<a><?p \r?></a>"}) {
        EXPECT_TRUE(Scanner::scan(document).carriageReturns) << document;
    }
    EXPECT_FALSE(Scanner::scan("<a>&#13;\n</a>").carriageReturns);
}

TEST(Scanner, TellsMeaningfulBlanksFromIndentation)
{
    for (const char* plain :
         {"<a>\n <b/>\n</a>", "<a> </a>", "<a><b> x </b> <c><![CDATA[ ]]></c></a>",
          "<a>x<![CDATA[y]]>z</a>", "<a> <!-- c --> <?p?> </a>"}) {
        EXPECT_FALSE(Scanner::scan(plain).meaningfulBlanks) << plain;
    }
    for (const char* mixed :
         {"<a>x<b/></a>", "<a><b/> x</a>", "<a> <![CDATA[x]]></a>", "<a>x<!--c--></a>",
          "<a xml:space='preserve'> <b/> </a>", "<a><b/>&#32;</a>", "<a><![CDATA[]]><?p?></a>"}) {
        EXPECT_TRUE(Scanner::scan(mixed).meaningfulBlanks) << mixed;
    }
}

std::string manyAttributes(int count)
{
    std::string tag = "<a";
    for (int i = 0; i < count; ++i) {
        tag += " n" + std::to_string(i) + "=''";
    }
    return tag;
}

TEST(Scanner, FindsARepetitionAmongManyAttributes)
{
    for (const int count : {11, 12, 13, 200000}) {
        const std::string tag = manyAttributes(count);
        EXPECT_NO_THROW(Scanner::scan(tag + "/>")) << count;
        try {
            Scanner::scan(tag + " n7='' n8=''/>");
            FAIL() << count;
        } catch (const Fault& fault) {
            EXPECT_EQ(std::string(fault.what()), "attribute \"n7\" repeated");
            EXPECT_EQ(fault.offset(), tag.size() + 1);
        }
    }
}

bool isAccepted(const std::string& document)
{
    try {
        Scanner::scan(document);
    } catch (const Fault&) {
        return false;
    }
    return true;
}

TEST(Scanner, JudgesAByteAlikeWhereverItStands)
{
    const std::vector<std::pair<std::string, std::string>> places{
        {"<a>", "</a>"},     {"<a b='", "'/>"}, {"<a b=\"", "\"/>"}, {"<a><![CDATA[", "]]></a>"},
        {"<!--", "--><a/>"}, {"<?p ", "?><a/>"}};
    constexpr std::size_t length = 40;
    for (const auto& [front, back] : places) {
        // With `byte` behind so many others and in front of so many.
        const auto document = [&front = front, &back = back](int byte, std::size_t before,
                                                             std::size_t behind) {
            std::string text = front;
            text.append(before, 'x').append(1, static_cast<char>(byte)).append(behind, 'x');
            return text += back;
        };
        for (int byte = 0; byte < 256; ++byte) {
            const bool expected = isAccepted(document(byte, 0, 1));
            for (std::size_t before = 0; before < length; ++before) {
                EXPECT_EQ(isAccepted(document(byte, before, length - before)), expected)
                    << byte << " behind " << before << " in " << front;
            }
        }
    }
}

TEST(Scanner, ReadsNothingBehindADocumentCutAnywhere)
{
    const std::string document =
        "<?xml version='1.0' encoding='UTF-8' standalone='yes'?><!DOCTYPE a PUBLIC 'p' 's'>"
        "<a b='&#x41;&lt;\xC3\xA9'><!--c--><?p d?><![CDATA[]]]]>&#65;&amp;\xE6\xBC\xA2<b "
        "c=\"1\"/></a>";
    for (std::size_t size = 0; size < document.size(); ++size) {
        const std::string cut = document.substr(0, size);
        EXPECT_THROW(Scanner::scan(cut), Fault) << cut;
    }
    EXPECT_NO_THROW(Scanner::scan(document));
}

} // namespace
