#include "export.hpp"
#include "faulty_disk.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <fcntl.h>
#include <unistd.h>

namespace pk::project::test {

class AnExporter : public testing::Test
{
protected:
    AnExporter() { putLocal(m_directory.path("source"), "text"); }
    std::string path(const char* name) const { return m_directory.path(name).toStdString(); }
    Fd source() const { return openPath(path("source"), O_RDONLY); }
    void link(const char* to, const char* at) const
    {
        ASSERT_EQ(::symlink(to, path(at).c_str()), 0);
    }

    TemporaryDirectory m_directory;
};

TEST_F(AnExporter, MakesFilesAndDirectoriesWithTheirModes)
{
    Exporter exporter(path("target"));
    exporter.makeDirectory("", 0755);
    exporter.makeDirectory("a", 0500);
    exporter.writeFile("a/b", source(), 0640);
    exporter.finish();
    EXPECT_EQ(treeOf(m_directory.path("target")),
              (Tree{{"a/", std::to_string(0500)}, {"a/b", std::to_string(0640) + ":text"}}));
}

TEST_F(AnExporter, WritesOneFileAsTheTarget)
{
    Exporter exporter(path("target"));
    exporter.writeFile("", source(), 0644);
    EXPECT_EQ(getLocal(m_directory.path("target")), QByteArray("text"));
}

TEST_F(AnExporter, MergesWithWhatIsThere)
{
    putLocal(m_directory.path("target/a/old"), "old");
    putLocal(m_directory.path("target/a/b"), "old");
    Exporter exporter(path("target"));
    exporter.makeDirectory("", 0700);
    exporter.makeDirectory("a", 0700);
    exporter.writeFile("a/b", source(), 0644);
    exporter.finish();
    EXPECT_EQ(getLocal(m_directory.path("target/a/old")), QByteArray("old"));
    EXPECT_EQ(getLocal(m_directory.path("target/a/b")), QByteArray("text"));
}

TEST_F(AnExporter, MayReachItsTargetThroughALink)
{
    QDir(m_directory.path()).mkdir(q("real"));
    link("real", "target");
    Exporter exporter(path("target"));
    exporter.makeDirectory("", 0755);
    exporter.writeFile("a", source(), 0644);
    EXPECT_EQ(getLocal(m_directory.path("real/a")), QByteArray("text"));
}

TEST_F(AnExporter, FollowsNoLinkBelowItsTarget)
{
    QDir(m_directory.path()).mkdir(q("target"));
    putLocal(m_directory.path("outside/victim"), "victim");
    link("../outside", "target/directory");
    link("../outside/victim", "target/file");
    Exporter exporter(path("target"));
    exporter.makeDirectory("", 0755);
    const std::string message =
        messageOf<IoError>([&] { exporter.makeDirectory("directory", 0755); });
    EXPECT_NE(message.find(path("target/directory")), std::string::npos);
    exporter.writeFile("file", source(), 0644);
    EXPECT_EQ(getLocal(m_directory.path("target/file")), QByteArray("text"));
    EXPECT_FALSE(QFileInfo(m_directory.path("target/file")).isSymLink());
    EXPECT_EQ(treeOf(m_directory.path("outside")).size(), 1U);
    EXPECT_EQ(getLocal(m_directory.path("outside/victim")), QByteArray("victim"));
}

TEST_F(AnExporter, LeavesTheOldFileWhenItFails)
{
    for (const int error : {ENOSPC, EACCES}) {
        putLocal(m_directory.path("target"), "old");
        for (int number = 0; number < 3; ++number) {
            FaultyDisk disk;
            disk.failAt(number, error, false);
            Exporter exporter(path("target"));
            EXPECT_THROW(exporter.writeFile("", source(), 0644), IoError);
            EXPECT_EQ(treeOf(m_directory.path()).size(), 2U);
            EXPECT_EQ(getLocal(m_directory.path("target")), QByteArray("old"));
        }
    }
}

TEST_F(AnExporter, WritesANewFileInItsPlaceAndRemovesWhatFails)
{
    Exporter exporter(path("target"));
    exporter.makeDirectory("", 0755);
    {
        FaultyDisk disk;
        exporter.writeFile("a", source(), 0644);
        EXPECT_EQ(disk.log(), (std::vector<std::string>{"create " + path("target/a"),
                                                        "copy " + path("target/a")}));
        disk.failAt(disk.count() + 1, EIO, false);
        EXPECT_THROW(exporter.writeFile("b", source(), 0644), IoError);
    }
    EXPECT_EQ(treeOf(m_directory.path("target")).count("b"), 0U);
}

// Somebody makes a file between the look at its place and its making.
class BusyDisk : public FaultyDisk
{
public:
    Fd create(const std::string& path, mode_t mode) override
    {
        putLocal(QString::fromStdString(path), "theirs");
        return FaultyDisk::create(path, mode);
    }
};

TEST_F(AnExporter, LeavesAFileThatSomebodyMadeMeanwhile)
{
    Exporter exporter(path("target"));
    exporter.makeDirectory("", 0755);
    {
        BusyDisk disk;
        EXPECT_THROW(exporter.writeFile("a", source(), 0644), IoError);
    }
    EXPECT_EQ(getLocal(m_directory.path("target/a")), QByteArray("theirs"));
}

TEST_F(AnExporter, NeedsTheDirectoryAboveTheTarget)
{
    Exporter exporter(path("missing/target"));
    EXPECT_EQ(messageOf<IoError>([&] { exporter.makeDirectory("", 0755); }),
              path("missing/target") + ": No such file or directory");
}

} // namespace pk::project::test
