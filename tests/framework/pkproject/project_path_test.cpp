#include "project_path.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <ostream>

namespace pk::project::test {

namespace {

struct Case
{
    const char* text;
    ProjectPath names;
};

std::ostream& operator<<(std::ostream& stream, const Case& one)
{
    return stream << "'" << one.text << "'";
}

} // namespace

class NormalisedPath : public testing::TestWithParam<Case>
{
};

TEST_P(NormalisedPath, IsTheNamesFromTheTop)
{
    EXPECT_EQ(parsePath(q(GetParam().text)), GetParam().names);
}

INSTANTIATE_TEST_SUITE_P(Paths, NormalisedPath,
                         testing::Values(Case{"", {}}, Case{".", {}}, Case{"./", {}},
                                         Case{"a", {"a"}}, Case{"./a", {"a"}}, Case{"a/", {"a"}},
                                         Case{"a//b", {"a", "b"}}, Case{"a/./b/.", {"a", "b"}},
                                         Case{"...", {"..."}}, Case{"..a/b..", {"..a", "b.."}},
                                         Case{" /a b", {" ", "a b"}}, Case{"a\\b", {"a\\b"}},
                                         Case{"gr\xc3\xbc\xc3\x9f", {"gr\xc3\xbc\xc3\x9f"}}));

class RefusedPath : public testing::TestWithParam<const char*>
{
};

TEST_P(RefusedPath, IsInvalidAndNamed)
{
    const QString path = q(GetParam());
    const std::string message = messageOf<InvalidPath>([&] { parsePath(path); });
    EXPECT_NE(message.find("'" + path.toStdString() + "'"), std::string::npos) << message;
}

INSTANTIATE_TEST_SUITE_P(Paths, RefusedPath,
                         testing::Values("/", "/a", "//a", "..", "../a", "a/..", "a/../b", "./..",
                                         "a/../"));

TEST(ProjectPath, WithAByteOrderMarkInFrontIsInvalidAndSaysSo)
{
    const QString mark(QChar(0xfeff));
    for (const QString& path : {mark, mark + q("a"), q("./") + mark + q("a"), q("a/") + mark}) {
        EXPECT_EQ(messageOf<InvalidPath>([&] { parsePath(path); }),
                  "'" + path.toStdString() +
                      "': a name in a project has no byte order mark in front");
    }
    EXPECT_EQ(parsePath(q("a") + mark), ProjectPath{"a\xef\xbb\xbf"});
}

TEST(ProjectPath, WithNulIsInvalid)
{
    const QString path = QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    EXPECT_THROW(parsePath(path), InvalidPath);
}

TEST(ProjectPath, HasAtMost256NamesAnd4096Bytes)
{
    const QString name = q("a/");
    EXPECT_EQ(parsePath(name.repeated(256)).size(), 256U);
    EXPECT_THROW(parsePath(name.repeated(257)), InvalidPath);
    EXPECT_EQ(parsePath(q("n").repeated(4096)).size(), 1U);
    EXPECT_THROW(parsePath(q("n").repeated(4097)), InvalidPath);
}

TEST(ProjectPath, IsJoinedWithSlashes)
{
    EXPECT_EQ(joinPath(ProjectPath{}), "");
    EXPECT_EQ(joinPath(ProjectPath{"a", "b c"}), "a/b c");
    EXPECT_EQ(joinPath("", "a"), "a");
    EXPECT_EQ(joinPath("a/b", "c"), "a/b/c");
}

TEST(ProjectPath, IsReservedBelowReservedNamesOfTheTopOnly)
{
    for (const char* const name : {".git", ".hg", ".svn", ".kxproject"}) {
        EXPECT_TRUE(isReservedName(name));
        EXPECT_TRUE(isReserved({name}));
        EXPECT_TRUE(isReserved({name, "config"}));
        EXPECT_FALSE(isReserved({"a", name}));
    }
    EXPECT_FALSE(isReserved({}));
    EXPECT_FALSE(isReserved({".gitignore"}));
    EXPECT_FALSE(isReserved({".GIT"}));
}

} // namespace pk::project::test
