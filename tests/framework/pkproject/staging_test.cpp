#include "resource_limit.hpp"
#include "staging.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pk::project::test {

class AStaging : public testing::Test
{
protected:
    TemporaryFiles m_files;
};

TEST_F(AStaging, MakesNothingUntilSomethingIsWritten)
{
    const auto staging = Staging::make();
    EXPECT_TRUE(m_files.tree().empty());
}

TEST_F(AStaging, IsPrivate)
{
    const auto staging = Staging::make();
    const auto file = staging->write("name.xar", "text", 4);
    const std::string root =
        QDir(m_files.path()).entryList({q("kxproject-*")}).value(0).toStdString();
    const std::string name = file->name();
    EXPECT_EQ(m_files.tree(), (Tree{{root + "/", std::to_string(0700)},
                                    {root + "/lock", std::to_string(0600) + ":"},
                                    {root + "/1/", std::to_string(0700)},
                                    {root + "/1/" + name, std::to_string(0600) + ":text"}}));
    EXPECT_TRUE(QString::fromStdString(name).endsWith(q("name.xar")));
    EXPECT_TRUE(file->isSealed());
}

TEST_F(AStaging, IsRemovedWithItsLastOwner)
{
    auto staging = Staging::make();
    auto file = staging->write("a", "1", 1);
    const auto other = staging->write("a", "2", 1);
    staging.reset();
    file.reset();
    EXPECT_EQ(m_files.tree().size(), 5U); // the file is there for the next
    EXPECT_EQ(readAll(other->open()), "2");
}

TEST_F(AStaging, HasADirectoryOfItsOwnInTheOneOfTheProcess)
{
    const auto one = Staging::make();
    const auto other = Staging::make();
    EXPECT_NE(one->directory(), other->directory());
    EXPECT_EQ(QFileInfo(QString::fromStdString(one->directory())).path(),
              QFileInfo(QString::fromStdString(other->directory())).path());
}

TEST_F(AStaging, OfAForkedProcessIsInAnotherDirectory)
{
    const auto mine = Staging::make();
    const std::string directory = mine->directory();
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const bool isOther =
            QFileInfo(QString::fromStdString(Staging::make()->directory())).path() !=
            QFileInfo(QString::fromStdString(directory)).path();
        ::_exit(isOther ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(AStaging, GivesTheFileOfAnotherASecondName)
{
    auto one = Staging::make();
    auto file = one->write("a", "1", 1);
    const auto other = Staging::make();
    const auto linked = other->link("a", file->path());
    EXPECT_EQ(statOf(linked->path())->st_ino, statOf(file->path())->st_ino);
    EXPECT_TRUE(linked->isIn(*other));
    EXPECT_TRUE(linked->isSealed());
    file.reset();
    EXPECT_EQ(readAll(linked->open()), "1");
}

TEST_F(AStaging, LeavesNothing)
{
    {
        const auto staging = Staging::make();
        const auto file = staging->write("a", "1", 1);
        staging->write("b", "2", 1);
    }
    EXPECT_TRUE(m_files.tree().empty());
}

namespace {

ino_t inodeOf(const StagedFile& file)
{
    return statOf(file.path())->st_ino;
}

} // namespace

TEST_F(AStaging, WritesIntoTheFileThatNobodyNeedsAnyMore)
{
    const auto staging = Staging::make();
    auto file = staging->write("a", "more text", 9);
    const ino_t inode = inodeOf(*file);
    const std::string path = file->path();
    file.reset();
    file = staging->write("b", "text", 4);
    EXPECT_EQ(inodeOf(*file), inode);
    EXPECT_EQ(readAll(file->open()), "text");
    EXPECT_EQ(QFileInfo(QString::fromStdString(file->path())).fileName().right(2), q("-b"));
    EXPECT_FALSE(statOf(path));
    EXPECT_EQ(m_files.tree().size(), 4U);
}

TEST_F(AStaging, WritesIntoNoFileThatSomebodyHas)
{
    const auto staging = Staging::make();
    const auto other = Staging::make();
    auto file = staging->write("a", "old", 3);
    const Fd reader = file->open();
    file.reset();
    file = staging->write("b", "new", 3);
    EXPECT_EQ(readAll(reader), "old");
    EXPECT_EQ(readAll(file->open()), "new");

    const auto linked = other->link("c", file->path());
    file.reset();
    file = staging->write("d", "newer", 5);
    EXPECT_EQ(readAll(linked->open()), "new");
    EXPECT_EQ(readAll(file->open()), "newer");
    EXPECT_EQ(m_files.tree().size(), 6U);
}

TEST_F(AStaging, KeepsNoBytesAndNoPathThatSomebodyWasTold)
{
    const auto staging = Staging::make();
    auto file = staging->write("a", "a", 1);
    file->keepPath();
    file.reset();
    EXPECT_EQ(m_files.tree().size(), 3U);
    file = staging->write("b", "some bytes", 10);
    const std::string path = file->path();
    file.reset();
    EXPECT_EQ(statOf(path)->st_size, 0);
}

TEST_F(AStaging, KeepsWhatIsNotedWhileItIsHeld)
{
    const auto staging = Staging::make();
    auto noted = staging->write("a", "noted", 5);
    noted->note();
    const std::string path = noted->path();
    auto other = staging->write("b", "other", 5);
    const std::string otherPath = other->path();
    staging->hold();
    noted.reset();
    other.reset();
    EXPECT_EQ(statOf(path)->st_size, 5);
    EXPECT_EQ(statOf(otherPath)->st_size, 0);
    staging->release();
    EXPECT_FALSE(statOf(path));
}

TEST_F(AStaging, HasNothingOpenForTheFileThatNobodyNeeds)
{
    const auto open = [] { return QDir(q("/proc/self/fd")).entryList().size(); };
    std::vector<std::shared_ptr<Staging>> others{Staging::make()};
    others.back()->write("a", "x", 1);
    const int before = open();
    for (int i = 0; i < 20; ++i) {
        others.push_back(Staging::make());
        others.back()->write("a", "x", 1);
        ASSERT_EQ(
            QDir(QString::fromStdString(others.back()->directory())).entryList(QDir::Files).size(),
            1);
    }
    EXPECT_EQ(open(), before);
}

TEST_F(AStaging, LeavesNothingWhereAFileCanNotBeGivenAnotherName)
{
    {
        const auto staging = Staging::make();
        auto file = staging->write("a", "1", 1);
        const std::string path = file->path();
        file.reset();
        ASSERT_EQ(::mkdir((staging->directory() + "/2-b").c_str(), 0777), 0);
        EXPECT_THROW(staging->write("b", "2", 1), IoError);
        EXPECT_FALSE(statOf(path));
        ASSERT_EQ(::rmdir((staging->directory() + "/2-b").c_str()), 0);
    }
    EXPECT_TRUE(m_files.tree().empty());
}

// It may read what it knows of.
TEST_F(AStaging, WritesIntoNoFileThatAForkedProcessKnows)
{
    const auto staging = Staging::make();
    auto file = staging->write("a", "1", 1);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    const std::string path = file->path();
    file.reset();
    EXPECT_FALSE(statOf(path));
    file = staging->write("b", "2", 1);
    const std::string younger = file->path();
    file.reset();
    EXPECT_TRUE(statOf(younger));
}

TEST_F(AStaging, OfAForkedProcessLeavesTheFileThatNobodyNeeds)
{
    const auto staging = Staging::make();
    const ino_t inode = inodeOf(*staging->write("a", "1", 1));
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const auto file = staging->write("b", "2", 1);
        ::_exit(inodeOf(*file) != inode && readAll(file->open()) == "2" ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(inodeOf(*staging->write("c", "3", 1)), inode);
}

TEST_F(AStaging, TakesTheLongestName)
{
    const auto staging = Staging::make();
    const std::string name(255, 'n');
    EXPECT_EQ(readAll(staging->write(name, "1", 1)->open()), "1");
}

TEST_F(AStaging, CopiesAFile)
{
    putLocal(m_files.path() + q("/source"), "text");
    const auto staging = Staging::make();
    const Fd source = openPath((m_files.path() + q("/source")).toStdString(), O_RDONLY);
    const auto file = staging->copy("a", source);
    EXPECT_EQ(readAll(file->open()), "text");
    EXPECT_TRUE(file->isSealed());
}

TEST_F(AStaging, KnowsWhetherAStreamCanStillChangeAFile)
{
    const auto staging = Staging::make();
    const auto file = staging->newFile("a");
    FILE* const stream = std::fopen(file->path().c_str(), "wb");
    ASSERT_NE(stream, nullptr);
    file->unseal();
    EXPECT_FALSE(file->isSealed());
    {
        const temporary::ResourceLimit none(RLIMIT_NOFILE, 0);
        EXPECT_FALSE(file->isSealed());
    }
    close(stream);
    EXPECT_TRUE(file->isSealed());
}

TEST_F(AStaging, WithoutAPlaceIsAnError)
{
    qputenv("TMPDIR", "/proc");
    const auto staging = Staging::make();
    const std::string message = messageOf<IoError>([&] { staging->write("a", "1", 1); });
    EXPECT_NE(message.find("/proc/kxproject-"), std::string::npos) << message;
}

} // namespace pk::project::test
