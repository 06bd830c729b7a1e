#include "place.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <unistd.h>

namespace pk::project::test {

namespace {

std::string s(const QString& text)
{
    return text.toStdString();
}

} // namespace

TEST(Place, OfAnExistingThingIsWhereItReallyIs)
{
    const TemporaryDirectory directory;
    putLocal(directory.path("real/project/a"), "1");
    ASSERT_EQ(::symlink("real", s(directory.path("link")).c_str()), 0);
    ASSERT_EQ(::symlink("link/project", s(directory.path("other")).c_str()), 0);
    const std::string real = s(directory.path("real/project"));
    for (const char* const path : {"real/project", "link/project", "other"}) {
        const Place place = Place::of(s(directory.path(path)));
        EXPECT_EQ(place.path, real);
        EXPECT_EQ(place.parent, s(directory.path("real")));
        EXPECT_EQ(place.name, "project");
    }
}

TEST(Place, NeedNotExist)
{
    const TemporaryDirectory directory;
    QDir(directory.path()).mkdir(q("real"));
    ASSERT_EQ(::symlink("real", s(directory.path("link")).c_str()), 0);
    EXPECT_EQ(Place::of(s(directory.path("link/new"))).path, s(directory.path("real/new")));
}

TEST(Place, NeedsTheDirectoryAboveIt)
{
    const TemporaryDirectory directory;
    const std::string path = s(directory.path("missing/new"));
    const std::string message = messageOf<IoError>([&] { Place::of(path); });
    EXPECT_NE(message.find(path), std::string::npos);
    EXPECT_NE(message.find("does not exist"), std::string::npos);
}

TEST(Place, BehindALinkToNothingOrItselfIsAnError)
{
    const TemporaryDirectory directory;
    const std::string loop = s(directory.path("loop"));
    ASSERT_EQ(::symlink("loop", loop.c_str()), 0);
    EXPECT_THROW(Place::of(loop), IoError);
    EXPECT_THROW(Place::of(loop + "/new"), IoError);
}

TEST(Place, IsNotTheTopOfTheFileSystem)
{
    EXPECT_THROW(Place::of("/"), InvalidPath);
    EXPECT_EQ(Place::of("/new-project").parent, "/");
    EXPECT_EQ(Place::of("/new-project").lockFile(), "/.new-project.kxlock");
}

TEST(Place, KeepsThingsBesideIt)
{
    const TemporaryDirectory directory;
    const Place place = Place::of(s(directory.path("p")));
    EXPECT_EQ(place.lockFile(), s(directory.path(".p.kxlock")));
    EXPECT_EQ(place.journal(), s(directory.path(".p.kxjournal")));
    EXPECT_EQ(place.fresh(), s(directory.path(".p.kxnew")));
}

TEST(Place, OfTheLongestNameHasNamesBesideIt)
{
    const TemporaryDirectory directory;
    const std::string name(255, 'n');
    const Place place = Place::of(s(directory.path(name)));
    const Place other = Place::of(s(directory.path(name.substr(1) + "m")));
    EXPECT_NE(place.lockFile(), other.lockFile());
    for (const std::string& path : {place.lockFile(), place.journal(), place.fresh()}) {
        EXPECT_LE(path.size() - place.parent.size() - 1, 255U) << path;
        EXPECT_FALSE(statOf(path));
    }
}

TEST(Place, ContainsWhatIsInsideIt)
{
    const TemporaryDirectory directory;
    putLocal(directory.path("a/b/c"), "");
    const Place a = Place::of(s(directory.path("a")));
    EXPECT_TRUE(a.contains(a));
    EXPECT_TRUE(a.contains(Place::of(s(directory.path("a/b/c")))));
    EXPECT_FALSE(a.contains(Place::of(s(directory.path("ab")))));
    EXPECT_FALSE(Place::of(s(directory.path("a/b"))).contains(a));
}

} // namespace pk::project::test
