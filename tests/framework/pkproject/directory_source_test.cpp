#include "directory_source.hpp"
#include "log_records.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <array>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace pk::project::test {

class ADirectorySource : public testing::Test
{
protected:
    ADirectorySource()
    {
        putLocal(local("a"), "1");
        putLocal(local("d/b"), "22");
        putLocal(local("d/e/c"), "333");
    }
    QString path() const { return m_directory.path("p"); }
    QString local(const char* name) const { return path() + q("/") + q(name); }
    std::string text(const char* name) const { return local(name).toStdString(); }
    // Opens and loads the directory.
    void load()
    {
        const Place place = Place::of(path().toStdString());
        m_index = std::make_unique<Index>();
        m_source =
            std::make_unique<DirectorySource>(place, openPath(place.path, O_RDONLY | O_DIRECTORY));
        m_source->load(*m_index);
    }
    std::string conflict() const
    {
        return messageOf<ConflictError>([&] { m_source->checkUnchanged(*m_index); });
    }

    TemporaryDirectory m_directory;
    std::unique_ptr<Index> m_index;
    std::unique_ptr<DirectorySource> m_source;
};

TEST_F(ADirectorySource, LoadsFilesAndDirectoriesWithModesAndSizes)
{
    ASSERT_EQ(::chmod(text("d/b").c_str(), 0750), 0);
    load();
    EXPECT_EQ(m_source->size(), 5U);
    EXPECT_EQ(m_index->get({"d", "b"}).mode, 0750);
    EXPECT_EQ(m_index->get({"d", "e", "c"}).stamp.bytes, 3);
    EXPECT_TRUE(m_index->get({"d", "e"}).isDirectory());
    EXPECT_EQ(readAll(m_source->open(m_index->get({"d", "b"}))), "22");
    EXPECT_NO_THROW(m_source->checkUnchanged(*m_index));
    EXPECT_FALSE(m_source->mayHaveChanged());
}

TEST_F(ADirectorySource, HasNoVersionControlEntriesAtItsTop)
{
    putLocal(local(".git"), "gitdir: elsewhere");
    putLocal(local(".hg/store"), "1");
    putLocal(local(".svn/\xff name"), "1");
    putLocal(local("d/.git/HEAD"), "1");
    load();
    EXPECT_EQ(m_source->size(), 7U);
    EXPECT_EQ(m_index->find({".git"}), nullptr);
    EXPECT_NE(m_index->find({"d", ".git", "HEAD"}), nullptr);
    putLocal(local(".hg/other"), "1");
    ASSERT_TRUE(QFile::remove(local(".git")));
    EXPECT_NO_THROW(m_source->checkUnchanged(*m_index));
}

TEST_F(ADirectorySource, HasNoLinksOrSpecialFiles)
{
    ASSERT_EQ(::symlink("a", text("link").c_str()), 0);
    ASSERT_EQ(::symlink("/etc", text("d/etc").c_str()), 0);
    ASSERT_EQ(::symlink("..", text("d/loop").c_str()), 0);
    ASSERT_EQ(::mkfifo(text("pipe").c_str(), 0644), 0);
    load();
    EXPECT_EQ(m_source->size(), 5U);
}

TEST_F(ADirectorySource, ReadsNoMetadataWithoutBounds)
{
    load();
    putLocal(local(".kxproject"), R"({"a": ")" + QByteArray(4'200'000, 'x') + "\"}");
    EXPECT_THROW(m_source->loadMetadata(), LimitError);
    putLocal(local(".kxproject"), R"({"a": ")" + QByteArray(4'100'000, 'x') + "\"}");
    EXPECT_EQ(m_source->loadMetadata().size(), 1);
}

TEST_F(ADirectorySource, LeavesOutANameWithAMarkInFront)
{
    const std::string path = text("d/") + "\xef\xbb\xbf" + "a";
    const Fd file = Disk::instance().create(path, 0644);
    const LogRecords records;
    load();
    EXPECT_EQ(m_source->size(), 5U);
    EXPECT_EQ(records.messages(),
              std::vector<std::string>({text("d/") + "\\xef\\xbb\\xbfa: left out of the project, "
                                                     "because its name begins with a byte order "
                                                     "mark"}));
    EXPECT_NO_THROW(m_source->checkUnchanged(*m_index));
    Disk::instance().unlink(path); // or Qt could not remove it
}

TEST_F(ADirectorySource, DoesNotReadThroughALinkThatTookAFilesPlace)
{
    putLocal(m_directory.path("secret"), "secret");
    load();
    ASSERT_TRUE(QFile::remove(local("d/b")));
    ASSERT_EQ(::symlink("../../secret", text("d/b").c_str()), 0);
    EXPECT_THROW(m_source->open(m_index->get({"d", "b"})), IoError);
    EXPECT_TRUE(m_source->stat("d/b"));
    EXPECT_EQ(conflict(), path().toStdString() +
                              ": changed by someone else since it was opened: 'd/b' was removed");
}

TEST_F(ADirectorySource, SaysThatAFileWasRemoved)
{
    load();
    ASSERT_TRUE(QFile::remove(local("d/b")));
    EXPECT_EQ(messageOf<PathNotFound>([&] {
                  m_source->open(m_index->get({"d", "b"}));
              }),
              text("d/b") + ": removed by someone else since the project was opened");
}

TEST_F(ADirectorySource, FindsEditsAdditionsRemovalsAndReplacements)
{
    load();
    putLocal(local("a"), "one");
    putLocal(local("new"), "1");
    ASSERT_TRUE(QFile::remove(local("d/b")));
    QDir(local("d")).mkdir(q("b"));
    removeTree(text("d/e"));
    const std::string message = conflict();
    for (const char* const part :
         {"'a' was changed", "'new' was added", "'d/b' was replaced", "'d/e' was removed"}) {
        EXPECT_NE(message.find(part), std::string::npos) << message;
    }
}

TEST_F(ADirectorySource, NoticesAFileOfTheSameSizeAndTime)
{
    load();
    const auto time = modificationTime(*statOf(text("a")));
    putLocal(local("other"), "2");
    Disk::instance().setTime(text("other"), time);
    Disk::instance().rename(text("other"), text("a"));
    EXPECT_NE(conflict().find("'a' was changed"), std::string::npos);
}

TEST_F(ADirectorySource, ListsNoMoreChangesThanCanBeRead)
{
    load();
    for (int i = 0; i < 100; ++i) {
        putLocal(local(("n" + std::to_string(i)).c_str()), "1");
    }
    EXPECT_NE(conflict().find("and 80 more"), std::string::npos) << conflict();
}

TEST_F(ADirectorySource, NoticesChangedMetadata)
{
    putLocal(local(".kxproject"), R"({"a": "1"})");
    load();
    EXPECT_TRUE(m_source->metadataFile().has_value());
    EXPECT_EQ(m_source->loadMetadata(), (Metadata{{q("a"), q("1")}}));
    putLocal(local(".kxproject"), R"({"a": "other"})");
    EXPECT_TRUE(m_source->mayHaveChanged());
    EXPECT_NE(conflict().find("the project's metadata"), std::string::npos);
}

TEST_F(ADirectorySource, WithMetadataThatIsNoFileIsRefused)
{
    QDir(path()).mkdir(q(".kxproject"));
    load();
    EXPECT_THROW(m_source->loadMetadata(), FormatError);
}

TEST_F(ADirectorySource, SeesCheaplyThatItsTopChangedOrWasReplaced)
{
    load();
    Disk::instance().setTime(path().toStdString(), 1);
    EXPECT_TRUE(m_source->mayHaveChanged());
    m_source->remember(m_source->metadataFile());
    EXPECT_FALSE(m_source->mayHaveChanged());
    Disk::instance().rename(path().toStdString(), m_directory.path("away").toStdString());
    EXPECT_THROW(m_source->mayHaveChanged(), ConflictError);
    QDir(m_directory.path()).mkdir(q("p"));
    EXPECT_NE(messageOf<ConflictError>([&] {
                  m_source->mayHaveChanged();
              }).find("moved or replaced by someone else"),
              std::string::npos);
}

TEST_F(ADirectorySource, TakesNothingFromAPipeInAFilesPlace)
{
    load();
    for (const char* const waiting : {"x", "xy"}) { // as many bytes as the file had, and others
        ASSERT_TRUE(QFile::remove(local("a")));
        ASSERT_EQ(::mkfifo(text("a").c_str(), 0600), 0);
        const Fd pipe = openPath(text("a"), O_RDWR | O_NONBLOCK);
        const auto size = static_cast<ssize_t>(std::strlen(waiting));
        ASSERT_EQ(::write(pipe.get(), waiting, std::strlen(waiting)), size);
        EXPECT_NE(messageOf<IoError>([&] {
                      m_source->read(m_index->get({"a"}), a_largestArray);
                  }).find("replaced by someone else"),
                  std::string::npos);
        std::array<char, 4> bytes{};
        EXPECT_EQ(::read(pipe.get(), bytes.data(), bytes.size()), size);
    }
}

TEST_F(ADirectorySource, ComparesWhatWasMovedAtItsOldPlace)
{
    load();
    m_index->move(m_index->get({"d"}), m_index->root(), "moved");
    m_index->remove(m_index->get({"a"}));
    EXPECT_NO_THROW(m_source->checkUnchanged(*m_index));
    putLocal(local("d/e/c"), "x");
    EXPECT_NE(conflict().find("'d/e/c' was changed"), std::string::npos);
    EXPECT_EQ(m_source->changesBelow(m_index->get({"moved", "e"})),
              (std::vector<std::string>{"'d/e/c' was changed"}));
}

} // namespace pk::project::test
