#include "xml_source.hpp"

#include <gtest/gtest.h>

using namespace KR::Localization;

namespace {

/// Reads the text of the root element, and its attributes.
std::string readRoot(const QByteArray& bytes, bool allowComments = false)
{
    const XmlSource xml(bytes);
    std::string result;
    xml.readAttributes(xml.root(), [&result](const char* name, const QString& value) {
        result += std::string(name) + "=" + value.toStdString() + " ";
    });
    return result + xml.readText(xml.root(), allowComments).toStdString();
}

std::string failure(const QByteArray& bytes)
{
    try {
        readRoot(bytes);
    } catch (const DamagedFile& damage) {
        return damage.what();
    }
    return {};
}

} // namespace

TEST(XmlSource, ReadsAttributesInOrder)
{
    EXPECT_EQ(readRoot("<a b='1 &amp; 2' c=\"3\n4\"/>"), "b=1 & 2 c=3 4 ");
}

TEST(XmlSource, KeepsWhiteSpaceBesideBytesAndCdata)
{
    EXPECT_EQ(readRoot("<a> <byte value=\"x41\"/> <byte value='66'/>\n<![CDATA[ <c> ]]> </a>"),
              " A B\n <c>  ");
    EXPECT_EQ(readRoot("<a>\t</a>"), "\t");
    EXPECT_EQ(readRoot("\xEF\xBB\xBF<a> <byte value=\"x41\"/> </a>\n<!-- end -->\n"), " A ");
}

TEST(XmlSource, JoinsBytesThatMakeOneCharacterAndReplacesHalves)
{
    EXPECT_EQ(readRoot("<a><byte value=\"xd83d\"/><byte value=\"xde00\"/></a>"), "\U0001F600");
    EXPECT_EQ(readRoot("<a><byte value=\"xd83d\"/> <byte value=\"xde00\"/></a>"), "? ?");
}

TEST(XmlSource, LeavesCommentsOutOnlyWhereTheyAreAllowed)
{
    EXPECT_EQ(readRoot("<a>b <!-- x --> c</a>", true), "b  c");
    EXPECT_NE(failure("<a>b <!-- x --> c</a>"), "");
}

TEST(XmlSource, NamesTheLineOfAFailure)
{
    EXPECT_EQ(failure("\n\n<a>\n&b;</a>").substr(0, 7), "line 3:");
    EXPECT_EQ(failure("<a>\n\n</b>").substr(0, 7), "line 3:");
}

class RefusedXml : public testing::TestWithParam<const char*>
{
};

TEST_P(RefusedXml, HasAReason)
{
    EXPECT_NE(failure(GetParam()), "");
}

INSTANTIATE_TEST_SUITE_P(
    Files, RefusedXml,
    testing::Values("", " \n", "a", "<a>", "<a", "<a/", "</a>", "<a></b>", "<a/><b/>", "<a/>b",
                    "b<a/>", "<a/>&amp;", "<a b='1' b='2'/>", "<a b=1/>", "<a b/>", "<a b='<'/>",
                    "<a b='&c;'/>", "<a b='1'c='2'/>", "<a>]]></a>", "<a>\x01</a>", "<a>\xE9</a>",
                    "<a \xE9='1'/>", "<a><b/></a>", "<a><?b?></a>", "<a><?byte?></a>", "<?b?><a/>",
                    "<a><byte>b</byte></a>", "<a><byte><b/></byte></a>", "<a><!-- b",
                    "<!-- a -- b --><a/>", "<!-- a ---><a/>", "<a><![CDATA[b</a>",
                    " <?xml version='1.0'?><a/>", "<?xml version='2.0'?><a/>",
                    "<a/><?xml version='1.0'?>", "<?xml version='1.0' encoding='latin1'?><a/>",
                    "<!DOCTYPE a [<!ENTITY b 'c'>]><a/>", "<!DOCTYPE a><!DOCTYPE a><a/>",
                    "<a/><!DOCTYPE a>", "<!DOCTYPE a", "<a>b</a>c"));

TEST(XmlSource, RefusesANullAndWhatFollowsIt)
{
    EXPECT_NE(failure(QByteArray("<a/>\0", 5)), "");
    EXPECT_NE(failure(QByteArray("<a>\0</a>", 8)), "");
}

TEST(XmlSource, RefusesMoreAttributesThanAnElementHas)
{
    QByteArray many("<a");
    for (int i = 0; i < 100000; ++i) {
        many += " b" + QByteArray::number(i) + "=''";
    }
    EXPECT_NE(failure(many + "/>"), "");
}

TEST(XmlSource, RefusesAFileOfMoreThan128MiB)
{
    EXPECT_NE(failure("<a>" + QByteArray(128 * 1024 * 1024, ' ') + "</a>"), "");
}

TEST(XmlSource, TakesAMillionNestedElementsWithoutRecursion)
{
    constexpr int depth = 1000000;
    EXPECT_NE(failure(QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth)), "");
    EXPECT_NE(failure(QByteArray("<a>").repeated(depth)), "");
}
