#include "support.hpp"

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

} // namespace
} // namespace KX::test
