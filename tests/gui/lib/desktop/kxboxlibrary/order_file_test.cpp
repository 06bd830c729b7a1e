#include "order_file.hpp"
#include "project_xml.hpp"
#include "support.hpp"

#include <boost/make_shared.hpp>

#include <ostream>

namespace KX::test {
namespace {

Names orderFrom(const QByteArray& bytes)
{
    ProjectModel model = project({{"bxlinfo", bytes}});
    return order_file::read(model, QString()).names;
}

TEST(OrderFile, GivesTheNamesInDocumentOrder)
{
    EXPECT_EQ(orderFrom(orderFile({"B", "A", "B"})), (Names{"B", "A", "B"}));
}

TEST(OrderFile, IsThatOfTheDirectory)
{
    ProjectModel model = project({{"bxlinfo", orderFile({"A"})}, {"A/bxlinfo", orderFile({"B"})}});
    EXPECT_EQ(order_file::read(model, QString()).names, Names{"A"});
    EXPECT_EQ(order_file::read(model, q("A/")).names, Names{"B"});
}

TEST(OrderFile, GivesNoNamesWhereThereIsNone)
{
    ProjectModel model = project({{"A/bxlinfo/", {}}});
    EXPECT_EQ(order_file::read(model, QString()).names, Names{});
    EXPECT_EQ(order_file::read(model, q("A/")).names, Names{});
}

// 300,000 elements with an attribute each are as many as are read.
TEST(OrderFile, OfMoreNodesThanAreReadStaysAsItWas)
{
    ProjectModel model = project({{"bxlinfo", orderFile({"A"})}});
    std::vector<std::string> numbers(300'001);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = std::to_string(i);
    }
    const LogRecords records;
    order_file::write(model, QString(), {numbers.begin(), numbers.end()});
    EXPECT_EQ(records.all().size(), 1U);
    EXPECT_EQ(order_file::read(model, QString()).names, Names{"A"});
}

struct OrderFileText
{
    const char* bytes;
    Names names;
};

std::ostream& operator<<(std::ostream& stream, const OrderFileText& text)
{
    return stream << text.bytes;
}

class ReadOrderFile : public testing::TestWithParam<OrderFileText>
{
};

TEST_P(ReadOrderFile, GivesTheNames)
{
    EXPECT_EQ(orderFrom(GetParam().bytes), GetParam().names);
}

INSTANTIATE_TEST_SUITE_P(
    NoOrderFile, ReadOrderFile,
    testing::Values(OrderFileText{"", {}}, OrderFileText{R"(<Folder><Node name="A"/>)", {}},
                    OrderFileText{R"(<folder><Node name="A"/></folder>)", {}},
                    OrderFileText{R"(<Folders><Node name="A"/></Folders>)", {}},
                    OrderFileText{R"(<x:Folder><Node name="A"/></x:Folder>)", {}},
                    OrderFileText{R"(<A><Folder><Node name="A"/></Folder></A>)", {}}));

INSTANTIATE_TEST_SUITE_P(
    Content, ReadOrderFile,
    testing::Values(
        OrderFileText{"<Folder/>", {}},
        OrderFileText{R"(<Folder><Node/><Node Name="A"/><Node name="B"/></Folder>)", {"B"}},
        OrderFileText{R"(<Folder><node name="A"/><Box name="B"/><Node name="C"/></Folder>)", {"C"}},
        OrderFileText{R"(<Folder><Node name="A"><Node name="B"/></Node></Folder>)", {"A"}},
        OrderFileText{R"(<Folder a="b">text<!-- c --><Node x="y" name="A">text</Node></Folder>)",
                      {"A"}},
        OrderFileText{R"(<Folder><Node name=""/><Node name="&lt;&#10;&#252;"/></Folder>)",
                      {"", "<\n\xc3\xbc"}}));

TEST(OrderFile, IsACanonicalDocument)
{
    ProjectModel model;
    order_file::write(model, QString(), {"B", "A/B"});
    EXPECT_EQ(model.readFile(q("bxlinfo")).toStdString(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<Folder>\n"
              "  <Node name=\"B\" />\n"
              "  <Node name=\"A/B\" />\n"
              "</Folder>\n");
}

// The file is made without a tree of elements.
TEST(OrderFile, IsWhatADocumentOfItsElementsIs)
{
    const std::vector<std::string> names{"plain", R"(<&>"')", "\t\n\r", "\xc3\xbc", ""};
    for (std::size_t count = 0; count <= names.size(); ++count) {
        const auto folder = boost::make_shared<XmlElement>("Folder");
        for (std::size_t i = 0; i < count; ++i) {
            const auto node = boost::make_shared<XmlElement>("Node");
            node->setAttribute("name", names[i], false);
            folder->addChild(node);
        }
        ProjectModel model;
        order_file::write(model, QString(),
                          {names.begin(), names.begin() + static_cast<int>(count)});
        EXPECT_EQ(model.readFile(q("bxlinfo")), project_xml::toBytes(folder));
    }
}

TEST(OrderFile, ReplacesTheOneBefore)
{
    ProjectModel model = project({{"A/bxlinfo", orderFile({"B", "C", "D"})}});
    order_file::write(model, q("A/"), {"D"});
    EXPECT_EQ(orderIn(model, "A"), Names{"D"});
    EXPECT_EQ(filesOf(model), Names{"A/bxlinfo"});
}

TEST(OrderFile, KeepsEveryNameThatXmlCanHold)
{
    const Names names{R"(<&>"')", " spaces ",         "tab\there", "line\nfeed", "carriage\rreturn",
                      "\xc3\xbc", "\xf0\x9f\x98\x80", "A",         "A",          ""};
    ProjectModel model;
    order_file::write(model, QString(), {names.begin(), names.end()});
    EXPECT_EQ(order_file::read(model, QString()).names, names);
}

TEST(OrderFile, LeavesOutWhatXmlCannotHoldWithAWarning)
{
    const LogRecords log;
    ProjectModel model = project({{"A/", {}}});
    order_file::write(model, q("A/"), {"B", "C\x01", "D", "\xef\xbf\xbf"});
    EXPECT_EQ(orderIn(model, "A"), (Names{"B", "D"}));
    const auto records = log.of("kxboxlibrary");
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].level, pk::log::Warning);
    EXPECT_EQ(records[0].file, "gui/lib/desktop/kxboxlibrary/src/box_library_node");
    EXPECT_EQ(records[0].message.rfind(
                  "Could not write the place of 'C\x01' into 'A/bxlinfo', reason: ", 0),
              0U)
        << records[0].message;
    EXPECT_NE(records[1].message.find("'\xef\xbf\xbf'"), std::string::npos);
}

TEST(OrderFile, IsNotWrittenWhereItCannotBeCreated)
{
    const LogRecords log;
    ProjectModel model = project({{"A/bxlinfo/", {}}, {"file", "x"}});
    const auto before = contentsOf(model);
    for (const QString& prefix : {q("A/"), q("missing/"), q("missing/too/"), q("file/"), q(".git/"),
                                  q("../"), q("a/").repeated(255)}) {
        order_file::write(model, prefix, {"B"});
    }
    EXPECT_EQ(contentsOf(model), before);
    EXPECT_TRUE(log.all().empty());
}

// Neither the one before nor the directory is touched.
TEST(OrderFile, ThatCannotBeWrittenWholeIsNotWritten)
{
    ProjectModel model = project({{"A/", {}}, {"C/bxlinfo", orderFile({"D"})}});
    const auto before = contentsOf(model);
    for (const std::string folder : {"A", "C"}) {
        const FileSizeLimit limit(4);
        try {
            order_file::write(model, q(folder + "/"), {"B"});
            ADD_FAILURE();
        } catch (const pk::project::IoError& error) {
            const std::string message = error.what();
            EXPECT_EQ(message.find("could not write '" + folder + "/bxlinfo': "), 0U) << message;
            EXPECT_NE(message.find(": File too large"), std::string::npos) << message;
        }
    }
    EXPECT_EQ(contentsOf(model), before);
}

} // namespace
} // namespace KX::test
