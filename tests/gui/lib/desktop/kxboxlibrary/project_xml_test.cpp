#include "project_xml.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <boost/make_shared.hpp>

#include <cerrno>
#include <cstdio>
#include <string_view>
#include <utility>

namespace KX::test {
namespace {

const QString a_file = QStringLiteral("a.xml");

TEST(ProjectXml, ReadsNothingWhereThereIsNoFile)
{
    ProjectModel model = project({{"directory/", {}}});
    for (const QString& path : {a_file, q("directory")}) {
        const auto reading = project_xml::read(model, path);
        EXPECT_FALSE(reading.stream);
        EXPECT_FALSE(reading.root);
        EXPECT_FALSE(reading.isUnread);
    }
}

TEST(ProjectXml, SaysWhenAFileCanNotBeUnpacked)
{
    const TemporaryDirectory directory;
    project({{"a.xml", QByteArray("<A>").append(QByteArray(50'000, ' ')).append("</A>")},
             {"small.xml", "<A/>"}})
        .save(directory.path("p.zip"), pk::project::ArchiveFormat::Zip, false);
    ProjectModel model(directory.path("p.zip"));
    {
        const FileSizeLimit limit(20'000);
        EXPECT_THROW(project_xml::read(model, a_file), pk::project::IoError);
        EXPECT_TRUE(project_xml::read(model, q("small.xml")).root);
    }
    EXPECT_TRUE(project_xml::read(model, a_file).root);
}

TEST(ProjectXml, ReadsTheRootElement)
{
    ProjectModel model = project({{"a.xml", R"(<!-- c --><A b="1"/>)"}});
    const auto reading = project_xml::read(model, a_file);
    ASSERT_TRUE(reading.root);
    EXPECT_EQ(reading.root->beacon(), "A");
    EXPECT_EQ(reading.root->attribute("b", 0), 1);
    EXPECT_EQ(project_xml::bytes(reading.stream), R"(<!-- c --><A b="1"/>)");
}

TEST(ProjectXml, ReadsNothingFromNoStream)
{
    const project_xml::Stream none(nullptr, &std::fclose);
    EXPECT_FALSE(project_xml::readDocument(none));
}

TEST(ProjectXml, ReadsNothingFromWhatIsNoDocument)
{
    for (const char* const bytes : {"", "no document", "<A>", "<A/><B/>"}) {
        ProjectModel model = project({{"a.xml", bytes}});
        const auto reading = project_xml::read(model, a_file);
        EXPECT_FALSE(reading.root) << bytes;
        EXPECT_FALSE(reading.isUnread) << bytes;
    }
}

TEST(ProjectXml, KnowsNothingOfAFileThatFailsInItsMiddle)
{
    // A whole document, and then what a bad sector gives.
    cookie_io_functions_t functions{};
    functions.read = [](void* isRead, char* buffer, std::size_t /*size*/) -> ssize_t {
        if (std::exchange(*static_cast<bool*>(isRead), true)) {
            errno = EIO;
            return -1;
        }
        const std::string_view document("<A/>");
        return static_cast<ssize_t>(document.copy(buffer, document.size()));
    };
    bool isRead = false;
    const LogRecords log;
    const auto reading =
        project_xml::read({::fopencookie(&isRead, "rb", functions), &std::fclose}, a_file);
    EXPECT_FALSE(reading.root);
    EXPECT_TRUE(reading.isUnread);
    ASSERT_EQ(log.all().size(), 1U);
    EXPECT_EQ(log.all().front().message, "'a.xml': cannot read the document: Input/output error");
}

TEST(ProjectXml, GivesTheBytesOfADocument)
{
    EXPECT_EQ(project_xml::toBytes(element("<A><B c='&lt;'/></A>")).toStdString(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<A>\n"
              "  <B c=\"&lt;\" />\n"
              "</A>\n");
}

TEST(ProjectXml, ThrowsForADocumentThatCannotBeWritten)
{
    auto root = boost::make_shared<XmlElement>("A");
    for (int depth = 0; depth < 256; ++depth) {
        const auto parent = boost::make_shared<XmlElement>("A");
        parent->addChild(root);
        root = parent;
    }
    EXPECT_THROW(project_xml::toBytes(root), std::runtime_error);
    EXPECT_THROW(project_xml::toBytes(nullptr), std::runtime_error);
}

TEST(ProjectXml, WritesAllBytes)
{
    const TemporaryDirectory directory;
    const std::string path = directory.path("a.xml").toStdString();
    const QByteArray bytes("with \0 inside", 13);
    project_xml::write({std::fopen(path.c_str(), "wb"), &std::fclose}, bytes, a_file);
    EXPECT_EQ(getLocal(q(path)), bytes);
}

// What fits the stream's buffer fails when it is closed, what does not when it is written.
TEST(ProjectXml, NamesTheFileThatCannotBeWrittenWhole)
{
    for (const int size : {1, 1'000'000}) {
        const QByteArray bytes(size, 'x');
        try {
            project_xml::write({std::fopen("/dev/full", "wb"), &std::fclose}, bytes, a_file);
            ADD_FAILURE() << size;
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "could not write 'a.xml': No space left on device");
        }
    }
}

} // namespace
} // namespace KX::test
