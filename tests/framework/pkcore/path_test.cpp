#include <pk/path.hpp>

#include <QByteArray>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

namespace fs = std::filesystem;

/// Sets an environment variable for the length of a scope.
class ScopedVariable
{
public:
    ScopedVariable(const char* name, const std::string& value) : m_name(name)
    {
        if (qEnvironmentVariableIsSet(name)) {
            m_previous = qgetenv(name);
        }
        qputenv(name, QByteArray::fromStdString(value));
    }
    ~ScopedVariable()
    {
        if (m_previous) {
            qputenv(m_name, *m_previous);
        } else {
            qunsetenv(m_name);
        }
    }
    Q_DISABLE_COPY_MOVE(ScopedVariable)

private:
    const char* const m_name;
    std::optional<QByteArray> m_previous;
};

/// Takes the right to read everything from a test that root runs, for the length of a scope.
class ScopedOrdinaryUser
{
public:
    ScopedOrdinaryUser() : m_user(::geteuid())
    {
        constexpr uid_t a_nobody = 65534;
        EXPECT_TRUE(m_user != 0 || ::seteuid(a_nobody) == 0);
    }
    ~ScopedOrdinaryUser() { EXPECT_TRUE(m_user != 0 || ::seteuid(m_user) == 0); }
    Q_DISABLE_COPY_MOVE(ScopedOrdinaryUser)

private:
    const uid_t m_user;
};

/// A user's data directory and two of the system, all empty at first.
class ListData : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_directory.isValid());
        // The directory is made for its owner alone, see ScopedOrdinaryUser.
        constexpr auto a_readableByAll = static_cast<fs::perms>(0755);
        fs::permissions(top(), a_readableByAll);
    }

    std::string top() const { return m_directory.path().toStdString(); }
    std::string user() const { return top() + "/user"; }
    std::string system() const { return top() + "/system"; }
    std::string second() const { return top() + "/second"; }

    static void addFile(const std::string& path)
    {
        fs::create_directories(fs::path(path).parent_path());
        ASSERT_TRUE(std::ofstream(path)) << path;
    }

private:
    const QTemporaryDir m_directory;
    const ScopedVariable m_home{"XDG_DATA_HOME", user()};
    const ScopedVariable m_others{"XDG_DATA_DIRS", system() + ":" + second()};
};

} // namespace

TEST_F(ListData, GivesTheUsersFilesThenTheSystemsInTheOrderOfTheirDirectories)
{
    addFile(second() + "/app/a.ts");
    addFile(system() + "/app/b.ts");
    addFile(user() + "/app/c.ts");

    EXPECT_THAT(pk::path::listData("app", "*.ts", false),
                ElementsAre(user() + "/app/c.ts", system() + "/app/b.ts", second() + "/app/a.ts"));
}

TEST_F(ListData, HidesFilesOfTheSameRelativePathInLaterDirectories)
{
    addFile(user() + "/app/one/x.ts");
    addFile(system() + "/app/one/x.ts");
    addFile(system() + "/app/two/x.ts");
    addFile(second() + "/app/two/x.ts");

    EXPECT_THAT(pk::path::listData("app", "*/x.ts", false),
                ElementsAre(user() + "/app/one/x.ts", system() + "/app/two/x.ts"));
    EXPECT_THAT(pk::path::listData("app", "*/x.ts", true),
                ElementsAre(user() + "/app/one/x.ts", system() + "/app/one/x.ts",
                            system() + "/app/two/x.ts", second() + "/app/two/x.ts"));
}

TEST_F(ListData, DoesNotLetADirectoryHideAFile)
{
    fs::create_directories(user() + "/app/x.ts");
    addFile(system() + "/app/x.ts");

    EXPECT_THAT(pk::path::listData("app", "x.ts", false), ElementsAre(system() + "/app/x.ts"));
}

TEST_F(ListData, SortsByTheBytesOfTheRelativePath)
{
    for (const char* name : {"b", "\xc3\xa4", "B", "a/x", "a.x", "a0"}) {
        addFile(user() + "/app/d/" + name);
    }

    EXPECT_THAT(pk::path::listData("app", "d/*", false),
                ElementsAre(user() + "/app/d/B", user() + "/app/d/a.x", user() + "/app/d/a0",
                            user() + "/app/d/b", user() + "/app/d/\xc3\xa4"));
}

TEST_F(ListData, TakesAnApplicationOfSeveralComponents)
{
    addFile(user() + "/maker/app/x.ts");

    EXPECT_THAT(pk::path::listData("maker/app", "x.ts", false),
                ElementsAre(user() + "/maker/app/x.ts"));
}

TEST_F(ListData, TakesAnApplicationNameLiterally)
{
    addFile(user() + "/app/x.ts");
    addFile(user() + "/a*/x.ts");

    EXPECT_THAT(pk::path::listData("a*", "x.ts", false), ElementsAre(user() + "/a*/x.ts"));
    EXPECT_THAT(pk::path::listData("a?p", "x.ts", false), IsEmpty());
}

TEST_F(ListData, TakesAComponentThatNamesAFileAsThatFile)
{
    addFile(user() + "/app/My [1]/a.ts");
    addFile(user() + "/app/My 1/a.ts");

    EXPECT_THAT(pk::path::listData("app", "My [1]/*.ts", false),
                ElementsAre(user() + "/app/My [1]/a.ts"));
}

TEST_F(ListData, LooksInDirectoriesWhoseNamesAreNotAscii)
{
    const ScopedVariable home("XDG_DATA_HOME", top() + "/donn\xc3\xa9"
                                                       "es");
    addFile(top() + "/donn\xc3\xa9"
                    "es/app/x.ts");

    EXPECT_THAT(pk::path::listData("app", "x.ts", false), ElementsAre(top() + "/donn\xc3\xa9"
                                                                              "es/app/x.ts"));
}

TEST_F(ListData, PassesOverDirectoriesThatItCannotRead)
{
    addFile(user() + "/app/locked/x.ts");
    addFile(user() + "/app/open/x.ts");
    addFile(system() + "/app/locked/x.ts");
    fs::permissions(user() + "/app/locked", fs::perms::none);
    std::vector<std::string> found;
    {
        const ScopedOrdinaryUser ordinary;
        found = pk::path::listData("app", "*/*.ts", true);
    }
    fs::permissions(user() + "/app/locked", fs::perms::owner_all);

    EXPECT_THAT(found, ElementsAre(user() + "/app/open/x.ts", system() + "/app/locked/x.ts"));
}

TEST_F(ListData, PassesOverWhatIsNoDirectory)
{
    addFile(user());
    addFile(system() + "/app");
    addFile(second() + "/app/x.ts");
    addFile(second() + "/app/file");
    fs::create_symlink("loop", second() + "/app/loop");
    fs::create_symlink("missing", second() + "/app/dangling.ts");

    EXPECT_THAT(pk::path::listData("app", "*.ts", false), ElementsAre(second() + "/app/x.ts"));
    EXPECT_THAT(pk::path::listData("app", "*/*", false), IsEmpty());
}

struct PatternCase
{
    const char* name;
    std::string pattern;
    std::vector<std::string> found;
};

class ListDataPattern : public ListData, public testing::WithParamInterface<PatternCase>
{
};

TEST_P(ListDataPattern, FindsItsFiles)
{
    for (const char* file :
         {"a.ts", "b.ts", "bb.ts", "\xc3\xa9.ts", "c[1].ts", "d\\e.ts", ".dot.ts", ".hidden/a.ts",
          "sub/a.ts", "sub/b.qm", "sub/deep/a.ts", "tab/a.ts"}) {
        addFile(user() + "/app/" + file);
    }
    std::vector<std::string> expected;
    for (const std::string& file : GetParam().found) {
        expected.push_back(user() + "/app/" + file);
    }

    EXPECT_THAT(pk::path::listData("app", GetParam().pattern, false), ElementsAreArray(expected));
}

INSTANTIATE_TEST_SUITE_P(
    Each, ListDataPattern,
    testing::Values(
        PatternCase{"PlainName", "a.ts", {"a.ts"}},
        PatternCase{"PlainPath", "sub/a.ts", {"sub/a.ts"}}, PatternCase{"MissingName", "z.ts", {}},
        PatternCase{"CaseMatters", "A.ts", {}},
        PatternCase{"Star", "*.ts", {"a.ts", "b.ts", "bb.ts", "c[1].ts", "d\\e.ts", "\xc3\xa9.ts"}},
        PatternCase{"StarStopsAtASlash", "*a.ts", {"a.ts"}},
        PatternCase{"QuestionMarkIsOneCharacter", "?.ts", {"a.ts", "b.ts", "\xc3\xa9.ts"}},
        PatternCase{"Set", "[ab].ts", {"a.ts", "b.ts"}},
        PatternCase{"NegatedSet", "[!a].ts", {"b.ts", "\xc3\xa9.ts"}},
        PatternCase{"Range", "[a-c].ts", {"a.ts", "b.ts"}},
        PatternCase{"SetOfMoreThanAscii", "[\xc3\xa8-\xc3\xaa].ts", {"\xc3\xa9.ts"}},
        PatternCase{"RangeIsNotOfALanguage", "[A-Z].ts", {}},
        PatternCase{"UnclosedBracketIsItself", "c[*.ts", {"c[1].ts"}},
        PatternCase{"BackslashIsItself", "d\\*.ts", {"d\\e.ts"}},
        PatternCase{"StarInDirectories", "*/a.ts", {"sub/a.ts", "tab/a.ts"}},
        PatternCase{"TwoStars", "*b/*", {"sub/a.ts", "sub/b.qm", "tab/a.ts"}},
        PatternCase{"DirectoriesAreNotListed", "sub/*", {"sub/a.ts", "sub/b.qm"}},
        PatternCase{"DirectoryByName", "sub", {}},
        PatternCase{"DotIsWrittenOut", ".*.ts", {".dot.ts"}},
        PatternCase{"DotDirectoryIsWrittenOut", ".h*/*", {".hidden/a.ts"}},
        PatternCase{"QuestionMarkIsNoDot", "?dot.ts", {}},
        PatternCase{"SetIsNoDot", "[.]dot.ts", {}}),
    [](const auto& each) { return each.param.name; });

struct RefusedCase
{
    const char* name;
    std::string application;
    std::string pattern;
};

class ListDataRefuses : public ListData, public testing::WithParamInterface<RefusedCase>
{
};

TEST_P(ListDataRefuses, AndFindsNothing)
{
    addFile(user() + "/app/sub/x.ts");
    addFile(user() + "/x.ts");

    EXPECT_THAT(pk::path::listData(GetParam().application, GetParam().pattern, true), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, ListDataRefuses,
                         testing::Values(RefusedCase{"EmptyPattern", "app", ""},
                                         RefusedCase{"Absolute", "app", "/sub/x.ts"},
                                         RefusedCase{"Parent", "app", "../x.ts"},
                                         RefusedCase{"ParentInside", "app", "sub/../sub/x.ts"},
                                         RefusedCase{"Dot", "app", "./sub/x.ts"},
                                         RefusedCase{"EmptyComponent", "app", "sub//x.ts"},
                                         RefusedCase{"TrailingSlash", "app", "sub/x.ts/"},
                                         RefusedCase{"Nul", "app", std::string("sub/x.ts\0y", 10)},
                                         RefusedCase{"EmptyApplication", "", "x.ts"},
                                         RefusedCase{"ApplicationAboveItsPlace", "app/..", "x.ts"},
                                         RefusedCase{"ParentAsApplication", "..", "user/x.ts"},
                                         RefusedCase{"NulInApplication", std::string("app\0y", 5),
                                                     "sub/x.ts"}),
                         [](const auto& each) { return each.param.name; });

TEST_F(ListData, AnswersSoonForAPatternOfManyStars)
{
    const std::string manyAs(250, 'a');
    addFile(user() + "/app/" + manyAs);
    std::string pattern;
    for (int i = 0; i < 100; ++i) {
        pattern += "*a";
    }

    EXPECT_THAT(pk::path::listData("app", pattern + "b", false), IsEmpty());
    EXPECT_THAT(pk::path::listData("app", pattern, false), ElementsAre(user() + "/app/" + manyAs));
}
