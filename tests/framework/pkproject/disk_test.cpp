#include "disk.hpp"
#include "faulty_disk.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace pk::project::test {

class ADisk : public testing::Test
{
protected:
    std::string path(const char* name) const { return m_directory.path(name).toStdString(); }
    Fd open() const { return openPath(m_directory.path().toStdString(), O_RDONLY | O_DIRECTORY); }

    TemporaryDirectory m_directory;
    Disk& m_disk = Disk::instance();
};

TEST_F(ADisk, CreatesOnlyWhatIsNotThere)
{
    const Fd file = m_disk.create(path("a"), 0640);
    m_disk.write(file, "text", 4);
    EXPECT_EQ(treeOf(m_directory.path()), (Tree{{"a", std::to_string(0640) + ":text"}}));
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.create(path("a"), 0600); }),
              path("a") + ": File exists");
}

TEST_F(ADisk, GivesModesWhateverTheUmaskIs)
{
    const mode_t before = ::umask(0077);
    m_disk.mkdir(path("d"), 0775);
    m_disk.create(path("f"), 0666);
    ::umask(before);
    EXPECT_EQ(treeOf(m_directory.path()),
              (Tree{{"d/", std::to_string(0775)}, {"f", std::to_string(0666) + ":"}}));
}

TEST_F(ADisk, CopiesWhatFollowsThePosition)
{
    const QByteArray bytes = QByteArray("0123456789").repeated(50'000);
    putLocal(m_directory.path("from"), bytes);
    const Fd from = openPath(path("from"), O_RDONLY);
    ASSERT_EQ(::lseek(from.get(), 3, SEEK_SET), 3);
    copyToNewFile(from, path("to"), 0644);
    EXPECT_EQ(getLocal(m_directory.path("to")), bytes.mid(3));
}

TEST_F(ADisk, CopiesWhatHasNoSize)
{
    const Fd from = openPath("/proc/self/status", O_RDONLY);
    copyToNewFile(from, path("to"), 0644);
    EXPECT_TRUE(getLocal(m_directory.path("to")).startsWith("Name:"));
    EXPECT_TRUE(readAll(openPath("/proc/self/status", O_RDONLY)).contains("Pid:"));
}

TEST_F(ADisk, ReadsNoMoreThanIsAskedFor)
{
    putLocal(m_directory.path("file"), "12345");
    const std::string file = path("file");
    EXPECT_EQ(readAll(openPath(file, O_RDONLY), 5), "12345");
    EXPECT_EQ(messageOf<LimitError>([&] { readAll(openPath(file, O_RDONLY), 4); }),
              file + ": it has more than the 4 bytes that are read");
    // What says that it is empty.
    EXPECT_THROW(readAll(openPath("/proc/self/status", O_RDONLY), 10), LimitError);
    EXPECT_EQ(messageOf<IoError>([&] { readAll(openPath(path(""), O_RDONLY)); }),
              path("") + ": Is a directory");
}

TEST_F(ADisk, RenamesToAFreePlaceOnly)
{
    putLocal(m_directory.path("a"), "a");
    putLocal(m_directory.path("b"), "b");
    EXPECT_EQ(messageOf<AlreadyExists>([&] { m_disk.renameNew(path("a"), path("b")); }),
              path("b") + ": it exists already");
    m_disk.renameNew(path("a"), path("c"));
    EXPECT_EQ(getLocal(m_directory.path("b")), QByteArray("b"));
    EXPECT_EQ(getLocal(m_directory.path("c")), QByteArray("a"));
}

TEST_F(ADisk, ExchangesAFileAndADirectory)
{
    putLocal(m_directory.path("file"), "f");
    putLocal(m_directory.path("directory/g"), "g");
    m_disk.exchange(path("file"), path("directory"));
    EXPECT_EQ(getLocal(m_directory.path("directory")), QByteArray("f"));
    EXPECT_EQ(getLocal(m_directory.path("file/g")), QByteArray("g"));
}

TEST_F(ADisk, SetsTimesToTheNanosecond)
{
    m_disk.mkdir(path("d"), 0755);
    m_disk.setTime(path("d"), 1'234'567'890'123'456'789);
    EXPECT_EQ(modificationTime(*statOf(path("d"))), 1'234'567'890'123'456'789);
}

TEST_F(ADisk, RemovesTreesButFollowsNoLink)
{
    putLocal(m_directory.path("outside/keep"), "1");
    putLocal(m_directory.path("tree/a/b/c"), "1");
    ASSERT_EQ(::symlink("../outside", path("tree/link").c_str()), 0);
    m_disk.chmod(path("tree/a/b"), 0);
    removeTree(path("tree"));
    EXPECT_FALSE(statOf(path("tree")));
    EXPECT_EQ(getLocal(m_directory.path("outside/keep")), QByteArray("1"));
    EXPECT_NO_THROW(removeTree(path("tree")));
    EXPECT_NO_THROW(removeTree(path("outside/keep/below a file")));
}

TEST_F(ADisk, OpensNothingThroughLinksOrOutside)
{
    putLocal(m_directory.path("in/a/b"), "1");
    putLocal(m_directory.path("out"), "2");
    ASSERT_EQ(::symlink("a", path("in/link").c_str()), 0);
    ASSERT_EQ(::symlink("../out", path("in/file").c_str()), 0);
    const Fd in = openPath(path("in"), O_RDONLY | O_DIRECTORY);
    EXPECT_TRUE(openBeneath(in, "a/b", O_RDONLY));
    EXPECT_TRUE(openBeneath(in, "", O_RDONLY | O_DIRECTORY));
    for (const char* const refused : {"link/b", "file", "../out", "a/../../out", "missing"}) {
        EXPECT_FALSE(openBeneath(in, refused, O_RDONLY)) << refused;
    }
}

TEST_F(ADisk, ListsNamesWithoutTheDots)
{
    putLocal(m_directory.path(".hidden"), "");
    putLocal(m_directory.path("a"), "");
    const Fd directory = open();
    for (int time = 0; time < 2; ++time) {
        auto names = namesIn(directory);
        std::sort(names.begin(), names.end());
        EXPECT_EQ(names, (std::vector<std::string>{".hidden", "a"}));
    }
}

TEST_F(ADisk, NamesPathAndReasonInItsErrors)
{
    const std::string missing = path("missing/x");
    const std::string reason = missing + ": No such file or directory";
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.mkdir(missing, 0755); }), reason);
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.unlink(missing); }), reason);
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.rmdir(missing); }), reason);
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.chmod(missing, 0755); }), reason);
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.setTime(missing, 0); }), reason);
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.syncFileSystem(missing); }), reason);
    const std::string renaming = missing + ", to become " + reason;
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.rename(missing, missing); }), renaming);
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.renameNew(missing, missing); }), renaming);
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.exchange(missing, missing); }), reason);
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.link(missing, missing); }), reason);
    EXPECT_EQ(messageOf<IoError>([&] { openPath(missing, O_RDONLY); }), reason);
}

TEST_F(ADisk, ReportsAWriteThatFails)
{
    const Fd file = openPath("/dev/full", O_WRONLY);
    EXPECT_EQ(messageOf<IoError>([&] { m_disk.write(file, "x", 1); }),
              "/dev/full: No space left on device");
}

TEST_F(ADisk, CanBeReplaced)
{
    {
        FaultyDisk faulty;
        EXPECT_EQ(&Disk::instance(), &faulty);
        faulty.failAt(0, EACCES, false);
        EXPECT_EQ(messageOf<IoError>([&] { syncDirectory(m_directory.path().toStdString()); }),
                  m_directory.path().toStdString() + ": Permission denied");
    }
    EXPECT_EQ(&Disk::instance(), &m_disk);
}

TEST(Fd, IsClosedOnce)
{
    Fd first = openPath("/dev/null", O_RDONLY);
    const int number = first.get();
    EXPECT_NE(::fcntl(number, F_GETFD) & FD_CLOEXEC, 0);
    Fd second(std::move(first));
    EXPECT_TRUE(second);
    EXPECT_EQ(second.path(), "/dev/null");
    second.reset();
    EXPECT_FALSE(second);
    EXPECT_EQ(::fcntl(number, F_GETFD), -1);
}

} // namespace pk::project::test
