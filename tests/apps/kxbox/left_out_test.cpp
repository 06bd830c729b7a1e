#include "left_out.hpp"
#include "temporary_files.hpp"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace kxbox::test {

namespace {

using pk::project::ArchiveFormat;
using pk::project::ProjectModel;
using temporary::putLocal;
using temporary::q;

class WhatIsLeftOut : public testing::Test
{
protected:
    void SetUp() override
    {
        putLocal(path("a/b/c"), "c");
        putLocal(path("a/d"), "d");
        ASSERT_EQ(::symlink("b", path("a/link").toStdString().c_str()), 0);
        ASSERT_EQ(::symlink("nowhere", path("dangling").toStdString().c_str()), 0);
        ASSERT_EQ(::mkfifo(path("pipe").toStdString().c_str(), 0600), 0);
    }
    QString path(const std::string& name) const { return m_directory.path("lib/" + name); }

private:
    const temporary::TemporaryDirectory m_directory;
};

} // namespace

TEST_F(WhatIsLeftOut, IsThereButNotInTheProject)
{
    const ProjectModel model(path(""));
    const LeftOut leftOut(model);
    for (const char* const name :
         {"a/link", "a/link/c", "a/link/none", "dangling", "dangling/x", "pipe"}) {
        EXPECT_TRUE(leftOut.has(q(name))) << name;
    }
    for (const char* const name : {"a", "a/b", "a/b/c", "a/d", "none", "a/none", "none/c"}) {
        EXPECT_FALSE(leftOut.has(q(name))) << name;
    }
    EXPECT_TRUE(leftOut.hasBoxAt(q("a/link")));
    EXPECT_FALSE(leftOut.hasBoxAt(q("a/b")));
    EXPECT_TRUE(leftOut.hasAnyIn(q("a")));
    EXPECT_FALSE(leftOut.hasAnyIn(q("a/b")));
    EXPECT_TRUE(leftOut.hasAnyIn(q("dangling")));
    EXPECT_FALSE(leftOut.hasAnyIn(q("none")));
}

TEST_F(WhatIsLeftOut, IsFoundFarBelowAndWithNamesThatAreNoText)
{
    putLocal(path("deep/e/f"), "f");
    putLocal(path("bytes/g"), "g");
    const auto isAnyIn = [this](const char* directory) {
        const ProjectModel model(path(""));
        return LeftOut(model).hasAnyIn(q(directory));
    };
    EXPECT_FALSE(isAnyIn("deep"));
    EXPECT_FALSE(isAnyIn("bytes"));
    ASSERT_EQ(::symlink("f", path("deep/e/link").toStdString().c_str()), 0);
    ASSERT_EQ(::mkdir((path("bytes/").toStdString() + "h\xff").c_str(), 0777), 0);
    EXPECT_TRUE(isAnyIn("deep"));
    EXPECT_TRUE(isAnyIn("bytes"));
}

TEST_F(WhatIsLeftOut, IsABoxWhoseFileIs)
{
    putLocal(path("box/icon.png"), "png");
    ASSERT_EQ(::symlink("icon.png", path("box/box.bhx").toStdString().c_str()), 0);
    const ProjectModel model(path(""));
    const LeftOut leftOut(model);
    EXPECT_FALSE(leftOut.has(q("box")));
    EXPECT_TRUE(leftOut.hasBoxAt(q("box")));
}

TEST_F(WhatIsLeftOut, IsNothingOfAnArchive)
{
    ProjectModel model(path(""));
    model.save(path("../archive"), ArchiveFormat::Zip, false);
    const LeftOut leftOut(model);
    EXPECT_FALSE(leftOut.has(q("a/link")));
    EXPECT_FALSE(leftOut.hasAnyIn(q("a")));
}

} // namespace kxbox::test
