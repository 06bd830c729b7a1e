#include "xml_helpers.hpp"
#include "xml_writer.hpp"

#include <kx/xml_value.hpp>

#include <ostream>

using namespace KX::testing;

namespace {

struct Canonical
{
    std::string read;
    std::string written;
};

std::ostream& operator<<(std::ostream& out, const Canonical& c)
{
    return out << c.read;
}

class WriterIsCanonical : public ::testing::TestWithParam<Canonical>
{
};

TEST_P(WriterIsCanonical, ForWhatTheFileSays)
{
    EXPECT_EQ(written(element(GetParam().read)), GetParam().written);
}

TEST_P(WriterIsCanonical, ForObjectsMadeOfTheFile)
{
    const auto root = element(GetParam().read);
    visit(*root);
    EXPECT_EQ(written(root), GetParam().written);
}

TEST_P(WriterIsCanonical, ForClones)
{
    const auto root = element(GetParam().read);
    EXPECT_EQ(written(root->clone()), GetParam().written);
    visit(*root);
    EXPECT_EQ(written(root->clone()), GetParam().written);
}

TEST_P(WriterIsCanonical, AndStableOnASecondWrite)
{
    EXPECT_EQ(written(element(GetParam().written)), GetParam().written);
}

INSTANTIATE_TEST_SUITE_P(
    Elements, WriterIsCanonical,
    ::testing::Values(
        Canonical{"<a></a>", "<a />"}, Canonical{"<a  b = '1'\tc=\"2\" />", R"(<a b="1" c="2" />)"},
        Canonical{"<a z='1' b='2' y='3'/>", R"(<a z="1" b="2" y="3" />)"},
        Canonical{"<a b='\"&apos;&quot;&lt;&gt;&amp;'/>", R"(<a b="&quot;'&quot;&lt;>&amp;" />)"},
        Canonical{"<a b=' \t\r\n\n '/>", R"(<a b="     " />)"},
        Canonical{"<a b='&#9;&#10;&#13;&#32;'/>", R"(<a b="&#9;&#10;&#13; " />)"},
        Canonical{"<a b='&#233;&#x1F600;'/>", "<a b=\"\xC3\xA9\xF0\x9F\x98\x80\" />"},
        Canonical{"<a><b/><c><d/></c></a>", "<a>\n  <b />\n  <c>\n    <d />\n  </c>\n</a>"},
        Canonical{"<a>\n\t<b/>\r\n \n <c/> </a>", "<a>\n  <b />\n  <c />\n</a>"},
        Canonical{"<x:a xmlns:x='u'><x:b/></x:a>", "<x:a xmlns:x=\"u\">\n  <x:b />\n</x:a>"}));

INSTANTIATE_TEST_SUITE_P(
    Texts, WriterIsCanonical,
    ::testing::Values(Canonical{"<a>x</a>", "<a>x</a>"},
                      Canonical{"<a>\n  x\n</a>", "<a>\n  x\n</a>"},
                      Canonical{"<a>  </a>", "<a>  </a>"}, Canonical{"<a>\n</a>", "<a>\n</a>"},
                      Canonical{"<a>x\r\ny\rz</a>", "<a>x\ny\nz</a>"},
                      Canonical{"<a>x&#13;&#10;y&#9;</a>", "<a>x&#13;\ny\t</a>"},
                      Canonical{"<a>&#13;</a>", "<a>&#13;</a>"},
                      Canonical{"<a>&lt;&gt;&amp;&quot;&apos;</a>", "<a>&lt;&gt;&amp;\"'</a>"},
                      Canonical{"<a>]]&gt;]] ></a>", "<a>]]&gt;]] &gt;</a>"},
                      Canonical{"<a>\xC2\xA0</a>", "<a>\xC2\xA0</a>"},
                      Canonical{"<a><b> </b><c>\n</c></a>", "<a>\n  <b> </b>\n  <c>\n</c>\n</a>"}));

INSTANTIATE_TEST_SUITE_P(
    Sections, WriterIsCanonical,
    ::testing::Values(
        Canonical{"<a><![CDATA[<x> & y]]></a>", "<a><![CDATA[<x> & y]]></a>"},
        Canonical{"<a><![CDATA[]]></a>", "<a><![CDATA[]]></a>"},
        Canonical{"<a><![CDATA[ ]]></a>", "<a><![CDATA[ ]]></a>"},
        Canonical{"<a><![CDATA[x]]><![CDATA[y]]></a>", "<a><![CDATA[x]]><![CDATA[y]]></a>"},
        Canonical{"<a><![CDATA[]]]]><![CDATA[>]]></a>", "<a><![CDATA[]]]]><![CDATA[>]]></a>"},
        Canonical{"<a>x<![CDATA[y]]>z</a>", "<a>x<![CDATA[y]]>z</a>"},
        Canonical{"<a> <![CDATA[y]]>\n</a>", "<a> <![CDATA[y]]>\n</a>"},
        Canonical{"<a><![CDATA[l\r\nm\rn]]></a>", "<a><![CDATA[l\nm\nn]]></a>"}));

INSTANTIATE_TEST_SUITE_P(
    CommentsAndInstructions, WriterIsCanonical,
    ::testing::Values(Canonical{"<a><!-- c --></a>", "<a>\n  <!-- c -->\n</a>"},
                      Canonical{"<a> <!--c--> <b/><?p?></a>",
                                "<a>\n  <!--c-->\n  <b />\n  <?p?>\n</a>"},
                      Canonical{"<a><?p  d ? e ?></a>", "<a>\n  <?p d ? e ?>\n</a>"},
                      Canonical{"<a><?p ?></a>", "<a>\n  <?p?>\n</a>"},
                      Canonical{"<a><!--l\r\n  m--></a>", "<a>\n  <!--l\n  m-->\n</a>"},
                      Canonical{"<a><?p l\r\n  m?></a>", "<a>\n  <?p l\n  m?>\n</a>"},
                      Canonical{"<a>x<!--c-->y<?p?></a>", "<a>x<!--c-->y<?p?></a>"}));

INSTANTIATE_TEST_SUITE_P(
    MixedContent, WriterIsCanonical,
    ::testing::Values(
        Canonical{"<a>x<b/>y</a>", "<a>x<b />y</a>"}, Canonical{"<a><b/>y</a>", "<a><b />y</a>"},
        Canonical{"<a>x <b/> <c/></a>", "<a>x <b /> <c /></a>"},
        Canonical{"<a>x<b> <c/> </b></a>", "<a>x<b> <c /> </b></a>"},
        Canonical{"<a>\n <b>\n  <c>x<d/> </c>\n </b>\n</a>",
                  "<a>\n  <b>\n    <c>x<d /> </c>\n  </b>\n</a>"},
        Canonical{"<a>\n <![CDATA[x]]>\n <b/>\n</a>", "<a>\n <![CDATA[x]]>\n <b />\n</a>"},
        Canonical{"<a>&#13;<b/></a>", "<a>&#13;<b /></a>"},
        Canonical{"<a>&#32;<b/>&#10;</a>", "<a>\n  <b />\n</a>"},
        Canonical{"<a><b xml:space='preserve'> <c> <d/></c></b> <e/></a>",
                  "<a>\n  <b xml:space=\"preserve\"> <c> <d /></c></b>\n  <e />\n</a>"},
        Canonical{"<a xml:space='default'> <b/></a>", "<a xml:space=\"default\">\n  <b />\n</a>"}));

boost::shared_ptr<KX::XmlElement> make(const std::string& tag)
{
    return boost::shared_ptr<KX::XmlElement>(new KX::XmlElement(tag));
}

// What a reader gets of it is the same text, and writing that gives the same bytes.
void expectWritten(const boost::shared_ptr<KX::XmlElement>& root, const std::string& expected)
{
    EXPECT_EQ(written(root), expected);
    const auto read = element(expected);
    EXPECT_EQ(written(read), expected);
    const auto textOf = [](const KX::XmlElement& e) {
        const auto text = e.text();
        return text ? *text : "(none)";
    };
    EXPECT_EQ(textOf(*read), textOf(*root));
}

TEST(Writer, SplitsASectionAroundItsEndMark)
{
    const auto a = make("a");
    a->setText("x]]>y]]]>>]]", true);
    expectWritten(a, "<a><![CDATA[x]]]]><![CDATA[>y]]]]]><![CDATA[>>]]]]></a>");
}

TEST(Writer, TakesACarriageReturnOutOfASection)
{
    const auto a = make("a");
    a->setText("x\r\ny", true);
    expectWritten(a, "<a><![CDATA[x]]>&#13;<![CDATA[\ny]]></a>");
    a->setText("]]\r>", true);
    expectWritten(a, "<a><![CDATA[]]]]>&#13;<![CDATA[>]]></a>");
}

TEST(Writer, SavesBlankTextBesideChildrenFromBeingTakenForIndentation)
{
    const auto a = make("a");
    a->setText(" \n", false);
    expectWritten(a, "<a> \n</a>");
    a->addChild(make("b"));
    expectWritten(a, "<a><![CDATA[ \n]]><b /></a>");
    a->setAttribute("xml:space", std::string("preserve"), true);
    expectWritten(a, "<a xml:space=\"preserve\"> \n<b /></a>");
}

TEST(Writer, KeepsBlankTextThatLeavesItsMixedContent)
{
    const auto mixed = element("<a>x<b> <c/></b></a>");
    const auto fromFile = mixed->firstChild("b");
    expectWritten(fromFile, "<b><![CDATA[ ]]><c /></b>");
    visit(*fromFile);
    expectWritten(fromFile, "<b><![CDATA[ ]]><c /></b>");
}

TEST(Writer, RefusesTreesDeeperThanAReaderTakes)
{
    const auto top = make("a");
    auto last = top;
    for (int level = 2; level <= 256; ++level) {
        const auto next = make("a");
        last->addChild(next);
        last = next;
    }
    const std::string text = KX::xml::Writer::write(*top, nullptr);
    EXPECT_NE(load(text), nullptr);
    last->addChild(make("deepest"));
    try {
        KX::xml::Writer::write(*top, nullptr);
        FAIL() << "written";
    } catch (const KX::xml::Unwritable& reason) {
        EXPECT_STREQ(reason.what(), "element \"deepest\" is nested deeper than 256 levels");
    }
}

TEST(AppendXmlValue, WritesWhatAnElementsAttributeIs)
{
    for (const char* const value :
         {"", "plain", "<", "&", ">", "\"", "'", "\t", "\n", "\r", "\xC3\xA9 <\xF0\x9F\x98\x80"}) {
        const auto one = make("a");
        one->setAttribute("b", std::string(value), false);
        std::string text = "<a b=\"";
        EXPECT_TRUE(KX::appendXmlValue(text, value));
        EXPECT_EQ(text + "\" />", written(one));
    }
}

TEST(AppendXmlValue, AppendsNothingThatXmlCannotHold)
{
    std::string text = "<a";
    for (const char* const value : {"\x01", "a\xC3", "\xEF\xBF\xBE"}) {
        EXPECT_FALSE(KX::appendXmlValue(text, value));
    }
    EXPECT_EQ(text, "<a");
}

} // namespace
