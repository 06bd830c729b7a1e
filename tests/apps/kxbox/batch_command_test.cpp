#include "tool.hpp"

#include <nlohmann/json.hpp>

namespace kxbox::test {
namespace {

class Batches : public ToolInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(, Batches, testing::Values(Form::Directory, Form::Archive), nameOf);

const char* const a_commands = "# makes two folders\n"
                               "add-folder / \"A B\"   # with a blank\n"
                               "\n"
                               " \t\r\n"
                               "  add-folder 'A B' C\\ D\r\n"
                               "tree\n"
                               "rename 'A B' \"A/B\"";

TEST_P(Batches, DoWhatTheirLinesSay)
{
    make("lib", GetParam());
    putLocal(path("commands"), a_commands);
    const std::string done = "folder     A B\n"
                             "directory  A B\n"
                             "folder     A B/C D\n"
                             "directory  A B/C D\n"
                             "lib/\n"
                             "└── A B/\n"
                             "    └── C D/\n"
                             "rename     A B -> A\\/B\n"
                             "directory  A B -> A%2fB\n";
    const Files before = filesOf(path("lib"));
    EXPECT_EQ(run({"batch", "lib", "commands", "--dry-run"}),
              (Ending{0, done + "Nothing was written (--dry-run).\n", ""}));
    EXPECT_EQ(filesOf(path("lib")), before);
    EXPECT_EQ(run({"batch", "lib", "commands"}), (Ending{0, done, ""}));
    EXPECT_EQ(tree("lib"), "lib/\n└── A/B/\n    └── C D/\n");
}

TEST_P(Batches, ListWhatTheirLinesSay)
{
    make("lib", GetParam());
    putLocal(path("commands"), a_commands);
    EXPECT_EQ(json({"batch", "lib", "commands", "--dry-run"}), nlohmann::ordered_json::parse(R"(
        {"library": "lib", "dryRun": true, "results": [
          {"changes": [{"change": "folder", "subject": "A B"},
                       {"change": "directory", "subject": "A B"}], "line": 2},
          {"changes": [{"change": "folder", "subject": "A B/C D"},
                       {"change": "directory", "subject": "A B/C D"}], "line": 5},
          {"tree": {"name": "lib", "fileName": "", "kind": "folder", "children": [
             {"name": "A B", "fileName": "A B", "kind": "folder", "children": [
               {"name": "C D", "fileName": "C D", "kind": "folder", "children": []}]}]},
           "line": 6},
          {"changes": [{"change": "rename", "subject": "A B", "result": "A\\/B"},
                       {"change": "directory", "subject": "A B", "result": "A%2fB"}],
           "line": 7}]})"));
}

TEST_P(Batches, ComeFromTheStandardInput)
{
    make("lib", GetParam());
    EXPECT_EQ(run({"batch", "lib", "-"}, "add-folder / A\n"),
              (Ending{0, "folder     A\ndirectory  A\n", ""}));
    const Files before = filesOf(path("lib"));
    EXPECT_EQ(run({"batch", "lib", "-"}, ""), (Ending{0, "", ""}));
    EXPECT_EQ(run({"batch", "lib", "-", "--dry-run"}, "tree\n"), (Ending{0, "lib/\n└── A/\n", ""}));
    EXPECT_EQ(run({"batch", "lib", "-"}, "rename A A\n"), (Ending{0, "Nothing to change.\n", ""}));
    EXPECT_EQ(filesOf(path("lib")), before);
}

TEST_P(Batches, NameNodesByFileNamesLineByLine)
{
    make("lib", GetParam(), "add-folder / A/B\nadd-folder 'A\\/B' C/D\n");
    EXPECT_EQ(run({"batch", "lib", "-"}, "rename A%2fB/C%2fD X --file-names\n"
                                         "rename 'A\\/B/X' Y\n"),
              (Ending{0,
                      "rename     A%2fB/C%2fD -> A%2fB/X\n"
                      "directory  A%2fB/C%2fD -> A%2fB/X\n"
                      "rename     A\\/B/X -> A\\/B/Y\n"
                      "directory  A%2fB/X -> A%2fB/Y\n",
                      ""}));
}

struct BadLineCase
{
    std::string line;
    int exitCode;
    std::string error;
};

class BadLines : public ToolTest, public testing::WithParamInterface<BadLineCase>
{
};

TEST_P(BadLines, LeaveTheLibraryAsItWas)
{
    putBoxFile("box.bhx");
    make("lib", Form::Directory, "add-folder / A\nadd-box A Box --from box.bhx\n");
    putLocal(path("commands"),
             QByteArray::fromStdString("rename A B\n\n" + GetParam().line + "\nadd-folder / C\n"));
    const std::string error = "kxbox: commands:3: " + GetParam().error + "\n";
    expectRefused("lib", {"batch", "lib", "commands"}, GetParam().exitCode, error);
    expectRefused("lib", {"batch", "lib", "commands", "--dry-run"}, GetParam().exitCode, error);
    expectRefused("lib", {"batch", "lib", "commands", "--json"}, GetParam().exitCode, error);
}

INSTANTIATE_TEST_SUITE_P(
    , BadLines,
    testing::Values(
        BadLineCase{"remove A", 3, "lib: no node 'A': the library has no 'A'"},
        BadLineCase{"remove B/Box B/X", 3, "lib: no node 'B/X': 'B' has no 'X'"},
        BadLineCase{"add-folder / ''", 3, "a name cannot be empty"},
        BadLineCase{std::string("add-folder / a\0b", 16), 3,
                    "the name 'a\\x00b' has control characters"},
        BadLineCase{"add-folder / a\xff", 2, "'a\xef\xbf\xbd' is not UTF-8"},
        BadLineCase{"add-box / A --from x", 3, "x: No such file or directory"},
        BadLineCase{"frob", 2, "no command 'frob'"}, BadLineCase{"''", 2, "no command ''"},
        BadLineCase{"--help", 2, "no command '--help'"},
        BadLineCase{"tree --help", 2, "The following argument was not expected: --help"},
        BadLineCase{"tree --json", 2, "The following argument was not expected: --json"},
        BadLineCase{"rename B C --dry-run", 2,
                    "The following argument was not expected: --dry-run"},
        BadLineCase{"rename lib B C", 2, "The following argument was not expected: C"},
        BadLineCase{"rename B", 2, "NAME is required"},
        BadLineCase{"set B/Box", 2, "set: one of --tooltip, --bitmap and --expanded is required"},
        BadLineCase{"new x", 2, "'new' can't be part of a batch"},
        BadLineCase{"copy B --into x", 2, "'copy' can't be part of a batch"},
        BadLineCase{"convert x", 2, "'convert' can't be part of a batch"},
        BadLineCase{"export x", 2, "'export' can't be part of a batch"},
        BadLineCase{"batch x", 2, "'batch' can't be part of a batch"},
        BadLineCase{"rename 'B", 2, "a quotation that begins with ' has no end"},
        BadLineCase{"rename B \\", 2, "nothing follows the last backslash"}));

class BatchFiles : public ToolTest
{
};

TEST_F(BatchFiles, MustBeThere)
{
    make("lib");
    expectRefused("lib", {"batch", "lib", "x"}, 3, "kxbox: x: No such file or directory\n");
    expectRefused("lib", {"batch", "lib", "."}, 3, "kxbox: .: Is a directory\n");
    EXPECT_EQ(run({"batch", "x", "-"}, "tree\n"),
              (Ending{3, "", "kxbox: 'x': no such file or directory\n"}));
    EXPECT_EQ(
        run({"batch", "lib", "-"}, "tree X\n"),
        (Ending{3, "", "kxbox: standard input:1: lib: no node 'X': the library has no 'X'\n"}));
}

TEST_F(BatchFiles, MayBeLong)
{
    std::string commands;
    for (int i = 0; i < 300; ++i) {
        commands += "add-folder / F\n";
    }
    make("lib", Form::Directory, commands);
    EXPECT_EQ(json({"info", "lib"})["folders"], 300);
    EXPECT_TRUE(QFileInfo::exists(path("lib/F (300)")));
}

} // namespace
} // namespace kxbox::test
