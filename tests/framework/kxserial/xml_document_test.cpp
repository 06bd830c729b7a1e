#include "stream.hpp"
#include "xml_helpers.hpp"
#include "xml_text.hpp"

#include <kx/xml_document.hpp>

#include <boost/make_shared.hpp>

#include <array>
#include <unistd.h>

using namespace KX::testing;
using KX::XmlDocument;
using KX::XmlElement;

namespace {

const std::string a_head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

TEST(XmlDocument, HasNoRootAtFirst)
{
    XmlDocument document;
    EXPECT_EQ(document.root(), nullptr);
    const auto root = boost::make_shared<XmlElement>("a");
    document.setRoot(root);
    EXPECT_EQ(document.root(), root);
    document.setRoot(nullptr);
    EXPECT_EQ(document.root(), nullptr);
}

TEST(XmlDocument, WritesItsDeclarationAndOneLineFeedAtTheEnd)
{
    XmlDocument document;
    document.setRoot(boost::make_shared<XmlElement>("Folder"));
    EXPECT_EQ(save(document), a_head + "<Folder />\n");
}

TEST(XmlDocument, ReadsWhatItWrites)
{
    const std::string bytes = a_head + "<KinestraBox bhx_version=\"3\">\n"
                                       "  <Box name=\"root\">\n"
                                       "    <bitmap>a.png</bitmap>\n"
                                       "    <script><![CDATA[if a < b:\n\tpass]]></script>\n"
                                       "  </Box>\n"
                                       "</KinestraBox>\n";
    const auto document = mustLoad(bytes);
    EXPECT_EQ(document->root()->attribute("bhx_version", 0), 3);
    EXPECT_EQ(*document->root()->firstChild("Box")->firstChild("bitmap")->text(), "a.png");
    EXPECT_EQ(save(*document), bytes);
}

TEST(XmlDocument, KeepsWhatIsOutsideTheRoot)
{
    const auto document =
        mustLoad("\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8' standalone='yes'?>\r\n\r\n"
                 "<!-- licence -->   <!DOCTYPE a\n PUBLIC \"p\" 's>'><?p  d?><a/>\r\n\n"
                 "<!--end\r\n--><?q?>\n\n");
    const std::string canonical =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<!-- licence -->\n"
        "<!DOCTYPE a\n PUBLIC \"p\" 's>'>\n<?p d?>\n<a />\n<!--end\n-->\n<?q?>\n";
    EXPECT_EQ(save(*document), canonical);
    EXPECT_EQ(save(*mustLoad(canonical)), canonical);
    document->setRoot(boost::make_shared<XmlElement>("b"));
    EXPECT_NE(save(*document).find("<?p d?>\n<b />\n<!--end"), std::string::npos);
}

TEST(XmlDocument, ReportsLineColumnAndReason)
{
    std::string error = "before";
    EXPECT_EQ(load("<a>\n  <b></c>\n</a>", &error), nullptr);
    EXPECT_EQ(error, "line 2, column 6: end tag \"c\" without its start tag");
    EXPECT_EQ(load("", &error), nullptr);
    EXPECT_EQ(error, "line 1, column 1: no root element");
    EXPECT_NE(load("<a/>", &error), nullptr);
    EXPECT_EQ(error, "");
}

TEST(XmlDocument, IsTheSameFromBytesInMemory)
{
    std::string error = "before";
    std::string warning = "before";
    const std::string text = "<a>\n  <b/>\n</a>";
    const auto document = XmlDocument::loadFromXmlBytes(text.data(), text.size(), &error, &warning);
    ASSERT_TRUE(document);
    EXPECT_EQ(error, "");
    EXPECT_EQ(warning, "");
    EXPECT_EQ(save(*document), save(*load(text)));
    EXPECT_FALSE(XmlDocument::loadFromXmlBytes(text.data(), text.size() - 1, &error, nullptr));
    EXPECT_EQ(error.find("line 3, column "), 0U) << error;
}

TEST(XmlDocument, EmptiesTheWarning)
{
    std::string warning = "before";
    const auto document = XmlDocument::loadFromXmlFile(fileWith("<a/>").get(), nullptr, &warning);
    EXPECT_EQ(warning, "");
    warning = "before";
    EXPECT_TRUE(document->saveToXmlFile(fileWith({}).get(), nullptr, &warning));
    EXPECT_EQ(warning, "");
}

TEST(XmlDocument, LoadsWithoutPlacesForMessages)
{
    EXPECT_EQ(XmlDocument::loadFromXmlFile(fileWith("<a>").get(), nullptr, nullptr), nullptr);
    EXPECT_EQ(XmlDocument::loadFromXmlFile(nullptr, nullptr, nullptr), nullptr);
    EXPECT_FALSE(XmlDocument().saveToXmlFile(fileWith({}).get(), nullptr, nullptr));
}

TEST(XmlDocument, LoadsFromThePositionOfAPipe)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const FilePtr reader = own(fdopen(ends[0], "rb"));
    {
        const FilePtr writer = own(fdopen(ends[1], "wb"));
        ASSERT_GE(std::fputs("#<a b='1'/>", writer.get()), 0);
    }
    EXPECT_EQ(std::fgetc(reader.get()), '#');
    const auto document = XmlDocument::loadFromXmlFile(reader.get(), nullptr, nullptr);
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->root()->attribute("b", 0), 1);
}

TEST(XmlDocument, LeavesTheStreamsOpen)
{
    const FilePtr file = fileWith("<a/>");
    const auto document = XmlDocument::loadFromXmlFile(file.get(), nullptr, nullptr);
    ASSERT_NE(document, nullptr);
    EXPECT_TRUE(document->saveToXmlFile(file.get(), nullptr, nullptr));
    EXPECT_EQ(contentOf(file.get()), "<a/>" + a_head + "<a />\n");
}

TEST(XmlDocument, ReportsAStreamThatCannotBeRead)
{
    std::string error;
    const FilePtr directory = own(std::fopen("/", "rb"));
    EXPECT_EQ(XmlDocument::loadFromXmlFile(directory.get(), &error, nullptr), nullptr);
    EXPECT_EQ(error, "cannot read the document: Is a directory");
}

TEST(XmlDocument, ReportsAFullDisk)
{
    const auto document = mustLoad("<a>" + std::string(100, 'x') + "</a>");
    const FilePtr full = own(std::fopen("/dev/full", "wb"));
    std::string error;
    EXPECT_FALSE(document->saveToXmlFile(full.get(), &error, nullptr));
    EXPECT_EQ(error, "cannot write the document: No space left on device");
}

TEST(XmlDocument, WritesNothingOfATreeThatNoFileCanHold)
{
    XmlDocument document;
    const FilePtr file = fileWith({});
    std::string error;
    EXPECT_FALSE(document.saveToXmlFile(file.get(), &error, nullptr));
    EXPECT_EQ(error, "no root element");
    const auto top = boost::make_shared<XmlElement>("top");
    top->addChild(mustLoad(nested(256))->root());
    document.setRoot(top);
    EXPECT_FALSE(document.saveToXmlFile(file.get(), &error, nullptr));
    EXPECT_EQ(error, "element \"a\" is nested deeper than 256 levels");
    EXPECT_EQ(contentOf(file.get()), "");
}

// A tree that was read is full; one more and it would not be read again.
TEST(XmlDocument, WritesNothingThatHasMoreInItThanIsRead)
{
    const auto document = mustLoad("<a>" + repeated("<b/>", KX::xml::a_maxNodes - 1) + "</a>");
    const std::string full = save(*document);
    EXPECT_TRUE(load(full));
    document->root()->addChild(boost::make_shared<XmlElement>("c"));
    const FilePtr file = fileWith({});
    std::string error;
    EXPECT_FALSE(document->saveToXmlFile(file.get(), &error, nullptr));
    EXPECT_EQ(error, "more than 600000 elements, attributes, texts, comments and processing "
                     "instructions");
    document->root()->setAttribute("c", std::string(KX::xml::a_maxSize, 'x'), false);
    EXPECT_FALSE(document->saveToXmlFile(file.get(), &error, nullptr));
    EXPECT_EQ(error, "longer than what is read again");
    EXPECT_EQ(contentOf(file.get()), "");
}

TEST(XmlDocument, SaysWhereThereIsTooMuch)
{
    std::string error;
    EXPECT_FALSE(load("<a>\n" + repeated("<b/>", KX::xml::a_maxNodes) + "</a>", &error));
    EXPECT_EQ(error, "line 2, column " + std::to_string(4 * KX::xml::a_maxNodes - 1) +
                         ": more than 600000 elements, attributes, texts, comments and processing "
                         "instructions");
}

TEST(XmlDocument, TakesAndWritesTheDeepestNestingAllowed)
{
    const auto document = mustLoad(nested(256));
    const std::string bytes = save(*document);
    EXPECT_EQ(visit(*document->root()), 256U);
    EXPECT_EQ(save(*document), bytes);
    EXPECT_EQ(save(*mustLoad(bytes)), bytes);
    EXPECT_EQ(load(nested(257)), nullptr);
    EXPECT_EQ(load(nested(1000000)), nullptr);
}

TEST(XmlDocument, KeepsItsElementsValidWhenItIsGone)
{
    const auto root = mustLoad("<a><b c='1'>x</b></a>")->root();
    EXPECT_EQ(root->firstChild("b")->attribute("c", 0), 1);
    EXPECT_EQ(*root->firstChild("b")->text(), "x");
}

struct Hostile
{
    const char* name;
    std::string bytes;
    bool accepted;
};

std::ostream& operator<<(std::ostream& out, const Hostile& hostile)
{
    return out << hostile.name;
}

class HostileDocument : public ::testing::TestWithParam<Hostile>
{
};

TEST_P(HostileDocument, CostsNoMoreThanItsSize)
{
    std::string error;
    const auto document = load(GetParam().bytes, &error);
    EXPECT_EQ(document != nullptr, GetParam().accepted) << error;
    if (document) {
        const std::string bytes = save(*document);
        visit(*document->root());
        EXPECT_EQ(save(*document), bytes);
        EXPECT_EQ(save(*mustLoad(bytes)), bytes);
    }
}

constexpr std::size_t a_many = 100000;

INSTANTIATE_TEST_SUITE_P(
    Sizes, HostileDocument,
    ::testing::Values(
        Hostile{"children", "<a>" + repeated("<b/>", a_many) + "</a>", true},
        Hostile{"text pieces", "<a>" + repeated("x<b/>", a_many) + "</a>", true},
        Hostile{"references", "<a>" + repeated("&amp;", a_many) + "</a>", true},
        Hostile{"sections", "<a>" + repeated("<![CDATA[]]]]>", a_many) + "</a>", true},
        Hostile{"brackets", "<a>" + repeated("]", a_many) + "</a>", true},
        Hostile{"carriage returns", "<a>" + repeated("\r", a_many) + "</a>", true},
        Hostile{"comments", repeated("<!---->", a_many) + "<a/>", true},
        Hostile{"opened quotes", "<a b='" + repeated("'<a b=", a_many), false},
        Hostile{"doctypes", repeated("<!DOCTYPE a [", a_many), false},
        Hostile{"open comments", "<a>" + repeated("<!-", a_many), false},
        Hostile{"long name", "<" + std::string(a_many, 'n') + "/>", true},
        Hostile{"long blanks", "<a>" + std::string(a_many, ' ') + "<b/></a>", true},
        Hostile{"entity bomb", "<!DOCTYPE a [<!ENTITY b 'bbbb'><!ENTITY c '&b;&b;&b;'>]><a>&c;</a>",
                false}));

} // namespace
