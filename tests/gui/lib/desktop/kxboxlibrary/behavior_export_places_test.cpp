#include "support.hpp"

#include <QDirIterator>

#include <fcntl.h>
#include <map>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace KX::test {
namespace {

/// Makes another directory the current one while it lives.
class CurrentDirectory
{
public:
    explicit CurrentDirectory(const QString& path) : m_before(QDir::currentPath())
    {
        EXPECT_TRUE(QDir::setCurrent(path));
    }
    ~CurrentDirectory() { EXPECT_TRUE(QDir::setCurrent(m_before)); }
    CurrentDirectory(const CurrentDirectory&) = delete;
    CurrentDirectory& operator=(const CurrentDirectory&) = delete;
    CurrentDirectory(CurrentDirectory&&) = delete;
    CurrentDirectory& operator=(CurrentDirectory&&) = delete;

private:
    QString m_before;
};

TEST(BehaviorExportPlaces, ADestinationCanBeRelative)
{
    const TemporaryDirectory directory;
    const CurrentDirectory current(directory.path());
    ASSERT_TRUE(QDir().mkdir(q("out")));
    const Library library = open(project({{"A/Good/box.bhx", behaviorBox("Good")}}));
    library->exportBehaviors(q("out"));
    EXPECT_TRUE(QFileInfo::exists(directory.path("out/A/Good/behavior.bhx")));
}

TEST(BehaviorExportPlaces, WhatFailedLeavesNothingInARelativeDestination)
{
    const TemporaryDirectory directory;
    const CurrentDirectory current(directory.path());
    ASSERT_TRUE(QDir().mkpath(q("out/out/A")));
    const Library library = open(project({{"A/Bad/box.bhx", behaviorBox("Bad")}}));
    library->projectModel().writeFile(q("A/Bad/box.bhx"), "no XML");
    library->exportBehaviors(q("out"));
    EXPECT_FALSE(QFileInfo::exists(directory.path("out/A")));
    EXPECT_TRUE(QFileInfo::exists(directory.path("out/out/A")));
}

// Every file below a local directory, by its path.
std::map<QString, QByteArray> localFiles(const QString& directory)
{
    std::map<QString, QByteArray> files;
    QDirIterator it(directory, QDir::Files | QDir::Hidden | QDir::System,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        files.emplace(QDir(directory).relativeFilePath(path), getLocal(path));
    }
    return files;
}

TEST(BehaviorExportPlaces, TwoProgramsCanExportToOneDestination)
{
    const TemporaryDirectory directory;
    std::vector<std::pair<std::string, QByteArray>> files;
    for (const char* const name : {"A", "B", "C", "D", "E", "F", "G", "H"}) {
        const std::string prefix = "Folder/" + std::string(name) + "/";
        files.emplace_back(prefix + "box.bhx", behaviorBox(name));
        files.emplace_back(prefix + "icon.png", QByteArray(20'000, name[0]));
        files.emplace_back(prefix + "sounds/a.wav", QByteArray(50'000, name[0]));
    }
    const Library library = open(project(files));
    const auto exportTo = [&](const std::string& place) {
        library->exportBehaviors(directory.path(place));
    };
    ASSERT_TRUE(QDir().mkdir(directory.path("alone")));
    exportTo("alone");
    const auto expected = localFiles(directory.path("alone"));
    ASSERT_EQ(expected.size(), 4U * 8);
    for (int round = 0; round < 30; ++round) {
        const std::string place = std::to_string(round);
        ASSERT_TRUE(QDir().mkdir(directory.path(place)));
        const pid_t other = ::fork();
        if (other == 0) {
            exportTo(place);
            ::_exit(0);
        }
        exportTo(place);
        ASSERT_EQ(::waitpid(other, nullptr, 0), other);
        ASSERT_TRUE(localFiles(directory.path(place)) == expected) << "round " << round;
    }
}

TEST(BehaviorExportPlaces, WhoeverExportsThereIsNotWaitedForWithoutEnd)
{
    const TemporaryDirectory directory;
    ASSERT_TRUE(QDir().mkdir(directory.path("out")));
    const int held = ::open(directory.path("out").toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    const Library library = open(project({{"A/box.bhx", behaviorBox("A")}}));
    library->exportBehaviors(directory.path("out"));
    EXPECT_FALSE(QFileInfo::exists(directory.path("out/A")));
    ::close(held);
    library->exportBehaviors(directory.path("out"));
    EXPECT_TRUE(QFileInfo::exists(directory.path("out/A")));
}

} // namespace
} // namespace KX::test
