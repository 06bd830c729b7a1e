#include "contents.hpp"
#include "support.hpp"
#include "zip_support.hpp"

#include <pk/project/error.hpp>

#include <fcntl.h>

namespace pk::project::test {

class SourceContents : public testing::TestWithParam<Form>
{
protected:
    SourceContents()
    {
        const QString path = m_directory.path("p");
        const Place place = Place::of(path.toStdString());
        if (GetParam() == Form::Directory) {
            putLocal(path + q("/a"), "text");
            m_contents.directory = std::make_unique<DirectorySource>(
                place, openPath(place.path, O_RDONLY | O_DIRECTORY));
            m_contents.directory->load(m_index);
        } else {
            putZip(path, {{"a", "text"}});
            m_contents.archive = std::make_unique<ArchiveSource>(
                place, openPath(place.path, O_RDONLY), ArchiveLimits{});
            m_contents.archive->load(m_index);
        }
    }
    Entry& file() const { return m_index.get({"a"}); }

    TemporaryDirectory m_directory;
    Index m_index;
    Contents m_contents;
};

TEST_P(SourceContents, OpensTheBytesOfTheSource)
{
    EXPECT_EQ(readAll(m_contents.open(file())), "text");
    EXPECT_EQ(getLocal(QString::fromStdString(m_contents.localPath(file()))), QByteArray("text"));
}

TEST_P(SourceContents, OpensTheBytesOfTheSourceForACopyOfAMovedFile)
{
    const Entry& copy = m_index.putCopy(m_index.root(), "copy", file(), 0644);
    m_index.move(file(), m_index.makeDirectories({"d"}), "b");
    m_index.remove(m_index.get({"d"}));
    EXPECT_EQ(readAll(m_contents.open(m_index.get({"copy"}))), "text");
    EXPECT_TRUE(m_index.isAlive(copy));
}

TEST_P(SourceContents, PrefersStagedBytes)
{
    m_index.putFile(m_index.root(), "a", m_contents.staging()->write("a", "new", 3));
    EXPECT_EQ(readAll(m_contents.open(file())), "new");
    EXPECT_EQ(m_contents.localPath(file()), file().staged()->path());
}

TEST_P(SourceContents, SharesStagedBytesWithoutCopyingThem)
{
    m_index.putFile(m_index.root(), "a", m_contents.staging()->write("a", "new", 3));
    const auto other = Staging::make();
    const auto shared = m_contents.share(file(), *other);
    EXPECT_EQ(statOf(shared->path())->st_ino, statOf(file().staged()->path())->st_ino);
    EXPECT_TRUE(shared->isIn(*other));
    EXPECT_EQ(m_contents.share(file(), *m_contents.staging()), file().staged());
}

TEST_P(SourceContents, CopiesBytesThatCanStillChangeRatherThanSharingThem)
{
    const auto staged = m_contents.staging()->newFile("a");
    FILE* const stream = std::fopen(staged->path().c_str(), "wb");
    ASSERT_NE(stream, nullptr);
    put(stream, "before");
    m_index.putFile(m_index.root(), "a", staged);
    const auto other = Staging::make();
    const auto shared = m_contents.share(file(), *other);
    put(stream, " after");
    close(stream);
    EXPECT_NE(shared, staged);
    EXPECT_EQ(readAll(shared->open()), "before");
}

TEST_P(SourceContents, GivesACopyToChange)
{
    const auto copy = m_contents.copy(file());
    EXPECT_EQ(readAll(copy->open()), "text");
    EXPECT_NE(copy->path(), m_contents.localPath(file()));
}

TEST_P(SourceContents, UnpacksAnArchivesFileOnce)
{
    const std::string path = m_contents.localPath(file());
    EXPECT_EQ(m_contents.localPath(file()), path);
    EXPECT_EQ(file().staged() != nullptr, GetParam() == Form::Archive);
    EXPECT_FALSE(file().rewritten);
    EXPECT_EQ(originalInSource(file()), &file());
}

INSTANTIATE_TEST_SUITE_P(Both, SourceContents, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

} // namespace pk::project::test
