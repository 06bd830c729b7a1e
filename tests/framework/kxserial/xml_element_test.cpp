#include "xml_helpers.hpp"

#include <kx/xml_element.hpp>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <stdexcept>
#include <vector>

using namespace KX::testing;
using KX::XmlElement;
using ElementPtr = boost::shared_ptr<XmlElement>;

namespace {

ElementPtr make(const std::string& tag)
{
    return boost::make_shared<XmlElement>(tag);
}

std::string textOf(const XmlElement& element)
{
    const auto text = element.text();
    return text ? "\"" + *text + "\"" : "none";
}

std::vector<std::string> tags(const std::list<boost::shared_ptr<const XmlElement>>& elements)
{
    std::vector<std::string> found;
    for (const auto& element : elements) {
        found.push_back(element->beacon());
    }
    return found;
}

TEST(XmlElement, KnowsItsTag)
{
    EXPECT_EQ(make("Box")->beacon(), "Box");
    EXPECT_EQ(element("<x:a-b.c/>")->beacon(), "x:a-b.c");
}

class BadName : public ::testing::TestWithParam<std::string>
{
};

TEST_P(BadName, IsRefusedForElementsAndAttributes)
{
    EXPECT_THROW(make(GetParam()), std::invalid_argument);
    const ElementPtr a = make("a");
    EXPECT_THROW(a->setAttribute(GetParam(), std::string("x"), false), std::invalid_argument);
    EXPECT_EQ(written(a), "<a />");
}

INSTANTIATE_TEST_SUITE_P(Names, BadName,
                         ::testing::Values("", " ", "a b", "9", "<a>", "a\n", "a=", "\xFF",
                                           std::string("a\0", 2)));

class BadText : public ::testing::TestWithParam<std::string>
{
};

TEST_P(BadText, IsRefusedAndChangesNothing)
{
    const ElementPtr a = element("<a b='old'>text</a>");
    EXPECT_THROW(a->setAttribute("b", GetParam(), false), std::invalid_argument);
    EXPECT_THROW(a->setAttribute("c", GetParam(), false), std::invalid_argument);
    EXPECT_THROW(a->setText(GetParam(), false), std::invalid_argument);
    EXPECT_THROW(a->setText(GetParam(), true), std::invalid_argument);
    EXPECT_EQ(written(a), "<a b=\"old\">text</a>");
}

INSTANTIATE_TEST_SUITE_P(Texts, BadText,
                         ::testing::Values(std::string(1, '\0'), "a\x01", "\x1F", "\xFF",
                                           "\xC0\x80", "\xED\xA0\x80", "\xEF\xBF\xBE",
                                           "\xEF\xBF\xBF", "a\xC3"));

TEST(XmlElement, ReadsAttributesThroughSerial)
{
    const ElementPtr a = element("<a s=' 3' i='3' b='true' q='\xC3\xA9' empty=''/>");
    for (const bool visited : {false, true}) {
        if (visited) {
            visit(*a);
        }
        std::string text = "before";
        EXPECT_TRUE(a->getAttribute("s", text));
        EXPECT_EQ(text, " 3");
        EXPECT_TRUE(a->getAttribute("empty", text));
        EXPECT_EQ(text, "");
        int number = 7;
        EXPECT_FALSE(a->getAttribute("s", number));
        EXPECT_EQ(number, 7);
        EXPECT_TRUE(a->getAttribute("i", number));
        EXPECT_EQ(number, 3);
        bool flag = false;
        EXPECT_TRUE(a->getAttribute("b", flag));
        EXPECT_TRUE(flag);
        QString string;
        EXPECT_TRUE(a->getAttribute("q", string));
        EXPECT_EQ(string, QString(QChar(0xE9)));
        text = "before";
        EXPECT_FALSE(a->getAttribute("missing", text));
        EXPECT_EQ(text, "before");
    }
}

TEST(XmlElement, GivesADefaultForAMissingOrBadAttribute)
{
    const ElementPtr a = element("<a i='3' bad='x' empty=''/>");
    EXPECT_EQ(a->attribute("i", 9), 3);
    EXPECT_EQ(a->attribute("bad", 9), 9);
    EXPECT_EQ(a->attribute("missing", 9), 9);
    EXPECT_EQ(a->attribute("bad", true), true);
    EXPECT_EQ(a->attribute<std::string>("empty", "d"), "");
    EXPECT_EQ(a->attribute<std::string>("missing", "d"), "d");
}

TEST(XmlElement, PutsNewAttributesFirstOrLastAndLeavesOldOnesInPlace)
{
    const ElementPtr a = element("<a b='1' c='2'/>");
    a->setAttribute("d", 3, false);
    a->setAttribute("e", true, true);
    a->setAttribute("c", QStringLiteral("4"), true);
    a->setAttribute("b", std::string("5"), false);
    a->setAttribute("f", "literal", false);
    EXPECT_EQ(written(a), R"(<a e="true" b="5" c="4" d="3" f="literal" />)");
}

struct TextCase
{
    const char* xml;
    const char* text;
};

class XmlElementText : public ::testing::TestWithParam<TextCase>
{
};

TEST_P(XmlElementText, JoinsTextsAndSections)
{
    const ElementPtr root = element(GetParam().xml);
    EXPECT_EQ(textOf(*root), GetParam().text);
    visit(*root);
    EXPECT_EQ(textOf(*root), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Contents, XmlElementText,
                         ::testing::Values(TextCase{"<a/>", "none"}, TextCase{"<a></a>", "none"},
                                           TextCase{"<a>x</a>", "\"x\""},
                                           TextCase{"<a> </a>", "\" \""},
                                           TextCase{"<a><![CDATA[]]></a>", "\"\""},
                                           TextCase{"<a>x<![CDATA[<y>]]>z</a>", "\"x<y>z\""},
                                           TextCase{"<a> x<b>no</b> y </a>", "\" x y \""},
                                           TextCase{"<a>\n <b/>\n</a>", "none"},
                                           TextCase{"<a> <!--c--></a>", "none"},
                                           TextCase{"<a xml:space='preserve'> <b/></a>", "\" \""},
                                           TextCase{"<a>&amp;&#13;</a>", "\"&\r\""}));

TEST(XmlElement, ReplacesAllTextInPlace)
{
    const ElementPtr a = element("<a><b/>x<c/>y<![CDATA[z]]><!--d--></a>");
    a->setText("n", false);
    EXPECT_EQ(textOf(*a), "\"n\"");
    EXPECT_EQ(written(a), "<a><b />n<c /><!--d--></a>");
    a->setText("m", true);
    EXPECT_EQ(written(a), "<a><b /><![CDATA[m]]><c /><!--d--></a>");
    a->setText("", false);
    EXPECT_EQ(textOf(*a), "none");
    EXPECT_EQ(written(a), "<a>\n  <b />\n  <c />\n  <!--d-->\n</a>");
    a->setText("first", false);
    EXPECT_EQ(written(a), "<a>first<b /><c /><!--d--></a>");
}

TEST(XmlElement, TellsAnEmptySectionFromNoText)
{
    const ElementPtr a = make("a");
    EXPECT_EQ(textOf(*a), "none");
    a->setText("", true);
    EXPECT_EQ(textOf(*a), "\"\"");
    EXPECT_EQ(written(a), "<a><![CDATA[]]></a>");
    a->setText("", false);
    EXPECT_EQ(written(a), "<a />");
}

TEST(XmlElement, FindsChildren)
{
    const ElementPtr root =
        element("<r><n i='1'/>x<m/><n i='2'/><c><n i='3'/></c><c><n i='4'/></c></r>");
    const boost::shared_ptr<const XmlElement> constRoot = root;
    EXPECT_EQ(root->firstChild("n")->attribute("i", 0), 1);
    EXPECT_EQ(constRoot->firstChild("n"), root->firstChild("n"));
    EXPECT_EQ(root->firstChild("none"), nullptr);
    EXPECT_EQ(root->children("n", "").size(), 2U);
    EXPECT_EQ(root->children("n", "").back()->attribute("i", 0), 2);
    ASSERT_EQ(root->children("n", "c").size(), 1U);
    EXPECT_EQ(root->children("n", "c").front()->attribute("i", 0), 3);
    EXPECT_TRUE(root->children("n", "none").empty());
    EXPECT_TRUE(root->children("none", "").empty());
    EXPECT_EQ(tags(root->mixedChildren()), (std::vector<std::string>{"n", "m", "n", "c", "c"}));
}

TEST(XmlElement, GivesTheSameObjectEveryTime)
{
    const ElementPtr root = element("<r><a><b/></a></r>");
    const ElementPtr b = root->firstChild("a")->firstChild("b");
    EXPECT_EQ(root->firstChild("a")->firstChild("b"), b);
    EXPECT_EQ(root->children("b", "a").front(), b);
    b->setAttribute("seen", true, false);
    EXPECT_EQ(written(root), "<r>\n  <a>\n    <b seen=\"true\" />\n  </a>\n</r>");
}

TEST(XmlElement, TakesTheChildItselfAndNotACopy)
{
    const ElementPtr parent = make("p");
    const ElementPtr child = make("c");
    parent->addChild(child);
    child->setAttribute("later", 1, false);
    EXPECT_EQ(parent->firstChild("c"), child);
    EXPECT_EQ(written(parent), "<p>\n  <c later=\"1\" />\n</p>");
}

TEST(XmlElement, LeavesAChildToWhoeverHoldsIt)
{
    ElementPtr root = element("<r><a><b i='1'>t</b></a></r>");
    const ElementPtr b = root->firstChild("a")->firstChild("b");
    const boost::weak_ptr<XmlElement> a = root->firstChild("a");
    root.reset();
    EXPECT_TRUE(a.expired());
    EXPECT_EQ(written(b), "<b i=\"1\">t</b>");
}

TEST(XmlElement, CanHaveSeveralParents)
{
    const ElementPtr child = make("c");
    ElementPtr first = make("p");
    const ElementPtr second = make("q");
    first->addChild(child);
    second->addChild(child);
    child->setText("t", false);
    EXPECT_EQ(written(first), "<p>\n  <c>t</c>\n</p>");
    EXPECT_EQ(written(second), "<q>\n  <c>t</c>\n</q>");
    first.reset();
    EXPECT_EQ(second->firstChild("c"), child);
}

TEST(XmlElement, IsNeverBelowItself)
{
    const ElementPtr root = element("<r><a><b><c/></b></a></r>");
    const ElementPtr a = root->firstChild("a");
    const ElementPtr b = a->firstChild("b");
    const ElementPtr c = b->firstChild("c");
    EXPECT_THROW(a->addChild(a), std::invalid_argument);
    EXPECT_THROW(b->addChild(a), std::invalid_argument);
    EXPECT_THROW(c->addChild(root), std::invalid_argument);
    EXPECT_THROW(c->addChildren({make("good"), root}, ""), std::invalid_argument);
    EXPECT_THROW(a->addChildren({a}, "b"), std::invalid_argument);
    EXPECT_THROW(a->addChildren({a}, "new"), std::invalid_argument);
    EXPECT_EQ(written(root), written(element("<r><a><b><c/></b></a></r>")));
}

TEST(XmlElement, CanGoBackOnceItsParentsAreGone)
{
    ElementPtr parent = make("p");
    const ElementPtr child = make("c");
    parent->addChild(child);
    EXPECT_THROW(child->addChild(parent), std::invalid_argument);
    parent->removeChildren("c", "");
    EXPECT_NO_THROW(child->addChild(parent));
    EXPECT_EQ(written(child), "<c>\n  <p />\n</c>");
}

TEST(XmlElement, FindsItselfBelowSharedElementsQuickly)
{
    // Each level is twice the child of the one above: as many paths as 2 to the 60th.
    const ElementPtr bottom = make("bottom");
    ElementPtr top = bottom;
    for (int level = 0; level < 60; ++level) {
        const ElementPtr next = make("level");
        next->addChild(top);
        next->addChild(top);
        top = next;
    }
    EXPECT_THROW(bottom->addChild(top), std::invalid_argument);
    const ElementPtr elsewhere = make("elsewhere");
    make("holder")->addChild(elsewhere);
    EXPECT_NO_THROW(elsewhere->addChild(top));
}

TEST(XmlElement, RefusesNull)
{
    const ElementPtr a = make("a");
    EXPECT_THROW(a->addChild(nullptr), std::invalid_argument);
    EXPECT_THROW(a->addChildren({make("b"), nullptr}, "c"), std::invalid_argument);
    EXPECT_EQ(written(a), "<a />");
}

TEST(XmlElement, AddsToAndRemovesFromContainers)
{
    const ElementPtr box = element("<Box><Input/></Box>");
    box->addChildren({make("bitmap"), make("bitmap")}, "Bitmaps");
    box->addChildren({make("bitmap")}, "Bitmaps");
    box->addChildren({make("Output")}, "");
    EXPECT_EQ(tags(box->mixedChildren()), (std::vector<std::string>{"Input", "Bitmaps", "Output"}));
    EXPECT_EQ(box->children("bitmap", "Bitmaps").size(), 3U);
    box->firstChild("Bitmaps")->addChild(make("other"));
    box->removeChildren("bitmap", "Bitmaps");
    EXPECT_EQ(tags(box->firstChild("Bitmaps")->mixedChildren()), std::vector<std::string>{"other"});
    box->removeChildren("other", "Bitmaps");
    box->removeChildren("none", "nowhere");
    box->removeChildren("Input", "");
    EXPECT_EQ(written(box), "<Box>\n  <Bitmaps />\n  <Output />\n</Box>");
    EXPECT_THROW(box->addChildren({make("a")}, "no name"), std::invalid_argument);
}

TEST(XmlElement, ShowsItsChildrenAsTheyAreListed)
{
    for (const bool visited : {false, true}) {
        const ElementPtr root =
            element("<a>t<b c='1'><d/><e>f</e></b><!--x--><g xml:space='preserve'> </g></a>");
        if (visited) {
            visit(*root);
        }
        std::vector<std::string> shown;
        const auto show = [&](const XmlElement& child) {
            shown.push_back(child.beacon() + child.attribute("c", std::string("-")) +
                            (child.text() ? *child.text() : "-"));
        };
        root->visitChildren([&](const XmlElement& child) {
            show(child);
            child.visitChildren(show);
            EXPECT_EQ(child.mixedChildren().size(), child.beacon() == "b" ? 2U : 0U);
            child.visitChildren(show);
            EXPECT_EQ(root->mixedChildren().size(), 2U);
        });
        EXPECT_EQ(shown, (std::vector<std::string>{"b1-", "d--", "e-f", "d--", "e-f", "g- "}));
    }
}

TEST(XmlElement, MakesAContainerEvenForNothing)
{
    const ElementPtr box = make("Box");
    box->addChildren({}, "Bitmaps");
    EXPECT_EQ(written(box), "<Box>\n  <Bitmaps />\n</Box>");
}

TEST(XmlElement, ClonesDeeply)
{
    const char* const xml = "<a b='1'><!--c--><d><e/>x</d></a>";
    for (const bool visited : {false, true}) {
        const ElementPtr original = element(xml);
        if (visited) {
            visit(*original);
        }
        const ElementPtr copy = original->clone();
        copy->setAttribute("b", 2, false);
        copy->firstChild("d")->firstChild("e")->setText("changed", false);
        EXPECT_NE(copy->firstChild("d"), original->firstChild("d"));
        EXPECT_EQ(written(original), written(element(xml)));
        EXPECT_EQ(written(copy), "<a b=\"2\">\n  <!--c-->\n  <d><e>changed</e>x</d>\n</a>");
    }
}

TEST(XmlElement, ClonesOutliveAndMayHoldTheirOriginal)
{
    ElementPtr original = element("<a><b><c/></b></a>");
    const ElementPtr copy = original->clone();
    const ElementPtr b = original->firstChild("b");
    const ElementPtr bCopy = b->clone();
    bCopy->firstChild("c")->addChild(b);
    original.reset();
    EXPECT_EQ(written(copy), "<a>\n  <b>\n    <c />\n  </b>\n</a>");
    EXPECT_THROW(b->addChild(bCopy), std::invalid_argument);
}

// Deep enough to run out of stack with a frame per level.
constexpr int a_manyLevels = 300000;

TEST(XmlElement, BuildsClonesAndDestroysAnyDepth)
{
    ElementPtr top = make("a");
    for (int level = 1; level < a_manyLevels; ++level) {
        const ElementPtr next = make("a");
        next->addChild(top);
        top = next;
    }
    ElementPtr copy = top->clone();
    top.reset();
    ElementPtr last = copy;
    int levels = 1;
    for (ElementPtr next = last->firstChild("a"); next; next = last->firstChild("a")) {
        last = next;
        ++levels;
    }
    EXPECT_EQ(levels, a_manyLevels);
    copy.reset();
    EXPECT_EQ(written(last), "<a />");
}

TEST(XmlElement, BuildsAnyDepthFromItsRoot)
{
    const ElementPtr top = make("a");
    ElementPtr last = top;
    for (int level = 1; level < a_manyLevels; ++level) {
        const ElementPtr next = make("a");
        last->addChild(next);
        last = next;
    }
    EXPECT_THROW(last->addChild(top), std::invalid_argument);
}

} // namespace
