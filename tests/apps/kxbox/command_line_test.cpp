#include "tool.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace kxbox::test {
namespace {

struct UsageCase
{
    std::vector<std::string> words;
    std::string error; ///< after "kxbox: "
};

class BadUsage : public ToolTest, public testing::WithParamInterface<UsageCase>
{
};

TEST_P(BadUsage, IsToldInOneLine)
{
    EXPECT_EQ(run(GetParam().words), (Ending{2, "", "kxbox: " + GetParam().error + "\n"}));
}

INSTANTIATE_TEST_SUITE_P(
    , BadUsage,
    testing::Values(
        UsageCase{{}, "a command is missing (see 'kxbox --help')"},
        UsageCase{{"frob"}, "no command 'frob' (see 'kxbox --help')"},
        UsageCase{{"fr\nob"}, "no command 'fr\\nob' (see 'kxbox --help')"},
        UsageCase{{""}, "no command '' (see 'kxbox --help')"},
        UsageCase{{"info"}, "LIB is required (see 'kxbox info --help')"},
        UsageCase{{"tree", "l", "--depth", "-1"},
                  "--depth: -1 is less than 0 (see 'kxbox tree --help')"},
        UsageCase{{"reorder", "l", "/", "0", "x", "1"},
                  "Could not convert: LAST = x (see 'kxbox reorder --help')"},
        UsageCase{{"add-folder", "l", "/"}, "NAME is required (see 'kxbox add-folder --help')"},
        UsageCase{{"add-folder", "l", "/", "a", "b"},
                  "The following argument was not expected: b (see 'kxbox add-folder --help')"},
        UsageCase{{"info", "l", "--dry-run"},
                  "The following argument was not expected: --dry-run (see 'kxbox info --help')"},
        UsageCase{{"convert", "l", "m"}, "--format is required (see 'kxbox convert --help')"},
        UsageCase{{"convert", "l", "m", "--format", "zip"},
                  "--format: zip not in {directory,archive} (see 'kxbox convert --help')"},
        UsageCase{{"set", "l", "n", "--expanded", "1"},
                  "--expanded: 1 not in {yes,no} (see 'kxbox set --help')"},
        UsageCase{{"find", "l", "t", "--in", "script"},
                  "--in: script not in {name,tooltip,io} (see 'kxbox find --help')"}));

class CommandLineWords : public ToolTest
{
};

TEST_F(CommandLineWords, AskForHelpAndVersion)
{
    const Ending version = run({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out.find("kxbox "), 0U);
    EXPECT_EQ(q(version.out).count(QLatin1Char('\n')), 1);
    const Ending help = run({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* const command :
         {"new", "info", "tree", "show", "find", "add-folder", "add-box", "set", "rename", "remove",
          "move", "reorder", "copy", "convert", "export", "recover", "batch"}) {
        EXPECT_NE(help.out.find("\n  " + std::string(command) + " "), std::string::npos) << command;
        const Ending ending = run({command, "--help"});
        EXPECT_EQ(ending.exitCode, 0);
        EXPECT_EQ(ending.error, "");
        EXPECT_NE(ending.out.find("Usage: kxbox " + std::string(command) + " [OPTIONS] "),
                  std::string::npos)
            << ending;
    }
}

/// A word that means something to a parser of command lines, but is a name here.
class OddNames : public ToolTest, public testing::WithParamInterface<std::string>
{
};

TEST_P(OddNames, AreNames)
{
    const std::string name = GetParam();
    const Words sameTwice = {"remove", "lib", "--", name};
    make("lib", Form::Directory, "add-folder / A\n");
    EXPECT_EQ(run({"add-folder", "lib", "--", "/", name}).exitCode, 0);
    EXPECT_EQ(tree("lib"), "lib/\n├── A/\n└── " + name + "/\n");
    EXPECT_EQ(run({"rename", "lib", "--", name, "B"}).exitCode, 0);
    EXPECT_EQ(run({"rename", "lib", "--", "B", name}).exitCode, 0);
    EXPECT_EQ(run({"move", "lib", "--to", "A", "--", name}).exitCode, 0);
    EXPECT_EQ(run({"remove", "lib", "--", "A/" + name}).exitCode, 0);
    EXPECT_EQ(tree("lib"), "lib/\n└── A/\n");
}

INSTANTIATE_TEST_SUITE_P(, OddNames,
                         testing::Values("-a", "--json", "--", "-", "[a,b]", "[]", "{}", "%%", "++",
                                         "tree", "a,b", "a b", "'", "\"", "a;b", "$x", "-1", "#",
                                         "=", "a=b", "@a", "~", "!", "Olé!", " x "));

/// The same without "--" in front, which takes most of these words' meaning away.
TEST_F(CommandLineWords, OfSomeKindsAreNamesAnyway)
{
    make("lib");
    std::string expected;
    for (const char* const name : {"[a,b]", "[]", "{}", "%%", "++", "tree", "a=b"}) {
        EXPECT_EQ(run({"add-folder", "lib", "/", name}).exitCode, 0) << name;
        expected += std::string(expected.empty() ? "" : ",") + name;
        EXPECT_EQ(run({"tree", "lib", name}).out, std::string(name) + "/\n");
        EXPECT_EQ(run({"remove", "lib", name}).exitCode, 0) << name;
    }
    EXPECT_EQ(tree("lib"), "lib/\n");
    expectRefused("lib",
                  {"add-folder", "lib", "/",
                   "\x1f"
                   "a"},
                  3, "kxbox: the name '\\x1fa' has control characters\n");
}

TEST_F(CommandLineWords, WithABackslashInFrontOfASlashAreOneName)
{
    make("lib");
    EXPECT_EQ(run({"add-folder", "lib", "/", R"(a/b"c'\d)"}),
              (Ending{0, "folder     a\\/b\"c'\\\\d\ndirectory  a%2fb%22c'\\d\n", ""}));
    EXPECT_EQ(run({"tree", "lib", R"(/a\/b"c'\\d/)"}), (Ending{0, "a/b\"c'\\d/\n", ""}));
    EXPECT_EQ(run({"tree", "lib", R"(a%2fb%22c'\\d)", "--file-names"}),
              (Ending{0, "a/b\"c'\\d/\n", ""}));
}

TEST_F(CommandLineWords, AreFollowedByAnErrorWhenNothingCanBePrinted)
{
    QProcess process;
    process.setStandardOutputFile(q("/dev/full"));
    process.start(q(KXBOX_PROGRAM), {q("info"), q(KXBOX_SAMPLE)});
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 3);
    EXPECT_EQ(process.readAllStandardError(),
              QByteArray("kxbox: standard output: No space left on device\n"));
}

TEST_F(CommandLineWords, AreFollowedByNothingWithoutAStandardOutput)
{
    copySample("lib");
    const Files before = filesOf(path("lib"));
    EXPECT_EQ(shell("kxbox rename lib Logic Reason >&-; echo $?"),
              "kxbox: standard output: Bad file descriptor\n3\n");
    EXPECT_EQ(filesOf(path("lib")), before);
}

TEST_F(CommandLineWords, AreUtf8)
{
    const std::string error = ": '\xef\xbf\xbd' is not UTF-8";
    EXPECT_EQ(shell("kxbox new \"$(printf '\\377')\"; kxbox new lib --title \"$(printf '\\377')\""),
              "kxbox" + error + "\nkxbox" + error + "\n");
    EXPECT_EQ(shell("kxbox new \"$(printf '\\357\\273\\277lib')\""),
              "kxbox: '\xef\xbb\xbflib' begins with a byte order mark\n");
    EXPECT_EQ(filesOf(path()), Files());
}

TEST_F(CommandLineWords, ThatAreBadNameTheHelpOfTheirCommand)
{
    EXPECT_EQ(run({"tr", "set", "lib"}).error,
              "kxbox: NODE is required (see 'kxbox tr set --help')\n");
    EXPECT_EQ(run({"--json"}).exitCode, 2);
    EXPECT_NE(run({"--json"}).error.find("(see 'kxbox --help')"), std::string::npos);
}

} // namespace
} // namespace kxbox::test
