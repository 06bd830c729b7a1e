#include "project_xml.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <boost/make_shared.hpp>

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace KX::test {
namespace {

const QString a_file = QStringLiteral("a.xml");

TEST(ProjectXml, ReadsNothingWhereThereIsNoFile)
{
    ProjectModel model = project({{"directory/", {}}});
    for (const QString& path : {a_file, q("directory")}) {
        const auto reading = project_xml::read(model, path);
        EXPECT_TRUE(reading.bytes.isEmpty());
        EXPECT_FALSE(reading.root);
        EXPECT_FALSE(reading.isUnread);
    }
}

TEST(ProjectXml, IsReadFromAnArchiveWithoutAPlaceToUnpackIt)
{
    const TemporaryDirectory directory;
    project({{"a.xml", QByteArray("<A>").append(QByteArray(50'000, ' ')).append("</A>")}})
        .save(directory.path("p.zip"), pk::project::ArchiveFormat::Zip, false);
    ProjectModel model(directory.path("p.zip"));
    const FileSizeLimit limit(20'000);
    EXPECT_THROW(model.getFileLocalPath(a_file), pk::project::IoError);
    EXPECT_TRUE(project_xml::read(model, a_file).root);
}

TEST(ProjectXml, ReadsTheRootElement)
{
    ProjectModel model = project({{"a.xml", R"(<!-- c --><A b="1"/>)"}});
    const auto reading = project_xml::read(model, a_file);
    ASSERT_TRUE(reading.root);
    EXPECT_EQ(reading.root->beacon(), "A");
    EXPECT_EQ(reading.root->attribute("b", 0), 1);
    EXPECT_EQ(reading.bytes, R"(<!-- c --><A b="1"/>)");
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

TEST(ProjectXml, KnowsNothingOfAFileThatCannotBeRead)
{
    const TemporaryDirectory directory;
    project({{"a.xml", "<A/>"}})
        .save(directory.path("p"), pk::project::ArchiveFormat::Directory, false);
    const ProjectModel model(directory.path("p"));
    const std::string file = directory.path("p/a.xml").toStdString();
    ASSERT_EQ(::unlink(file.c_str()), 0);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    const LogRecords log;
    const auto reading = project_xml::read(model, a_file);
    EXPECT_FALSE(reading.root);
    EXPECT_TRUE(reading.isUnread);
    ASSERT_EQ(log.all().size(), 1U);
    EXPECT_EQ(log.all().front().message,
              file + ": replaced by someone else since the project was opened");
}

TEST(ProjectXml, KnowsNothingOfAFileThatIsGoneJustNow)
{
    const TemporaryDirectory directory;
    project({{"a.xml", "<A/>"}})
        .save(directory.path("p"), pk::project::ArchiveFormat::Directory, false);
    const ProjectModel model(directory.path("p"));
    ASSERT_TRUE(QFile::remove(directory.path("p/a.xml")));
    EXPECT_TRUE(project_xml::read(model, a_file).isUnread);
}

TEST(ProjectXml, ReadsNoMoreThanADocumentHas)
{
    ProjectModel model;
    model.writeFile(a_file, "<A/>");
    const QString local = model.getFileLocalPath(a_file);
    ASSERT_EQ(::truncate(local.toStdString().c_str(), (32 << 20) + 1), 0);
    const LogRecords log;
    const auto reading = project_xml::read(model, a_file);
    EXPECT_FALSE(reading.root);
    EXPECT_FALSE(reading.isUnread);
    EXPECT_TRUE(reading.bytes.isEmpty());
    ASSERT_EQ(log.all().size(), 1U);
    EXPECT_EQ(log.all().front().message,
              local.toStdString() + ": it has more than the 33554432 bytes that are read");
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
