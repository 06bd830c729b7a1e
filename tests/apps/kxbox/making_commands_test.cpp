#include "tool.hpp"

#include <nlohmann/json.hpp>

#include <unistd.h>

namespace kxbox::test {
namespace {

class Making : public ToolInBothForms
{
protected:
    std::string format() const { return GetParam() == Form::Directory ? "directory" : "archive"; }
};

INSTANTIATE_TEST_SUITE_P(, Making, testing::Values(Form::Directory, Form::Archive), nameOf);

// new

TEST_P(Making, MakesAnEmptyLibrary)
{
    const Words words = {"new", "My.BXL", "--format", format()};
    Words planning = words;
    planning.emplace_back("--dry-run");
    EXPECT_EQ(run(planning), (Ending{0,
                                     "library  My -> My.BXL\n"
                                     "Nothing was written (--dry-run).\n",
                                     ""}));
    EXPECT_FALSE(QFileInfo::exists(path("My.BXL")));
    EXPECT_EQ(json(planning), nlohmann::ordered_json::parse(R"(
        {"library": "My.BXL", "dryRun": true,
         "changes": [{"change": "library", "subject": "My", "result": "My.BXL"}]})"));
    EXPECT_EQ(run(words), (Ending{0, "library  My -> My.BXL\n", ""}));
    EXPECT_EQ(tree("My.BXL"), "My/\n");
    EXPECT_EQ(json({"info", "My.BXL"})["form"], format());
}

TEST_P(Making, GivesATitle)
{
    EXPECT_EQ(run({"new", "lib", "--format", format(), "--title", "[A] \"title\" é"}),
              (Ending{0, "library  [A] \"title\" é -> lib\n", ""}));
    EXPECT_EQ(tree("lib"), "[A] \"title\" é/\n");
    EXPECT_EQ(run({"new", "a.kbl", "--title", ""}), (Ending{0, "library  a -> a.kbl\n", ""}));
    EXPECT_EQ(tree("a.kbl"), "a/\n");
}

TEST_P(Making, DoesNotTouchWhatIsThere)
{
    make("lib", GetParam(), "add-folder / A\n");
    expectRefused("lib", {"new", "lib", "--format", format()}, 3,
                  "kxbox: lib: something is there already\n");
    expectRefused("lib", {"new", "lib", "--dry-run"}, 3,
                  "kxbox: lib: something is there already\n");
    ASSERT_EQ(::symlink("nowhere", path("link").toStdString().c_str()), 0);
    EXPECT_EQ(run({"new", "link"}), (Ending{3, "", "kxbox: link: something is there already\n"}));
    EXPECT_EQ(run({"new", "a/b"}).exitCode, 3);
    EXPECT_FALSE(QFileInfo::exists(path("a")));
}

class MakingInADirectory : public ToolTest
{
};

TEST_F(MakingInADirectory, TakesTheTitleFromAPathWithASlashAtTheEnd)
{
    EXPECT_EQ(run({"new", "lib.bxl/"}), (Ending{0, "library  lib -> lib.bxl/\n", ""}));
    EXPECT_EQ(tree("lib.bxl"), "lib/\n");
}

// add-folder

TEST_P(Making, MakesFolders)
{
    make("lib", GetParam());
    EXPECT_EQ(runPlanned("lib", {"add-folder", "lib", "/", "A/B?"}),
              "folder     A\\/B?\ndirectory  A%2fB%3f\n");
    EXPECT_EQ(run({"add-folder", "lib", "A%2fB%3f", "C", "--file-names"}),
              (Ending{0, "folder     A%2fB%3f/C\ndirectory  A%2fB%3f/C\n", ""}));
    EXPECT_EQ(run({"add-folder", "lib", "/A\\/B?/", "C"}), (Ending{0,
                                                                   "renumber   C -> C (2)\n"
                                                                   "folder     A\\/B?/C (2)\n"
                                                                   "directory  A%2fB%3f/C (2)\n",
                                                                   ""}));
    EXPECT_EQ(run({"add-folder", "lib", "/", "D (7)"}),
              (Ending{0, "renumber   D (7) -> D\nfolder     D\ndirectory  D\n", ""}));
    EXPECT_EQ(tree("lib"), "lib/\n├── A/B?/\n│   ├── C/\n│   └── C (2)/\n└── D/\n");
}

struct BadNameCase
{
    std::string parent;
    std::string name;
    std::string error;
};

class BadNames : public ToolTest, public testing::WithParamInterface<BadNameCase>
{
};

TEST_P(BadNames, AreRefused)
{
    putBoxFile("box.bhx");
    make("lib", Form::Directory, "add-folder / A\nadd-folder A B\nadd-box / Box --from box.bhx\n");
    const auto& [parent, name, error] = GetParam();
    const std::string line = "kxbox: " + error + "\n";
    expectRefused("lib", {"add-folder", "lib", parent, name}, 3, line);
    expectRefused("lib", {"add-box", "lib", parent, name, "--from", "box.bhx"}, 3, line);
    const std::string node = parent == "/" ? "A" : "A/B";
    expectRefused("lib", {"rename", "lib", node, name}, 3, line);
}

INSTANTIATE_TEST_SUITE_P(
    , BadNames,
    testing::Values(
        BadNameCase{"A", "", "a name cannot be empty"},
        BadNameCase{"A", "a\tb", "the name 'a\\tb' has control characters"},
        BadNameCase{"A", std::string(300, 'n'),
                    "the name '" + std::string(300, 'n') +
                        "' is too long: its directory would have a name of 300 bytes, and file "
                        "systems take 255"},
        BadNameCase{"/", "Translations",
                    "the name 'Translations' is reserved: at the top of a library this is the "
                    "place of the translations"},
        BadNameCase{"A", "box.bhx (2)",
                    "the name 'box.bhx (2)' is reserved: this is the name of a file of the "
                    "library"},
        BadNameCase{"/", ".git",
                    "the name '.git' is reserved: this is the directory of a version-control "
                    "system"},
        BadNameCase{"A", ".lib.kxlock",
                    "the name '.lib.kxlock' is reserved: this is the name of a file of the "
                    "project store"}));

TEST_F(MakingInADirectory, RefusesABoxAsAFolder)
{
    putBoxFile("box.bhx");
    make("lib", Form::Directory, "add-box / Box --from box.bhx\n");
    expectRefused("lib", {"add-folder", "lib", "Box", "A"}, 3,
                  "kxbox: lib: 'Box' is a box, not a folder\n");
    expectRefused("lib", {"add-box", "lib", "Box", "A", "--from", "box.bhx"}, 3,
                  "kxbox: lib: 'Box' is a box, not a folder\n");
}

TEST_F(MakingInADirectory, LeavesFilesThatTheTreeDoesNotKnow)
{
    putBoxFile("box.bhx");
    make("lib", Form::Directory, "add-folder / A\n");
    putLocal(path("lib/A/notes"), "mine");
    const std::string error = "kxbox: 'A/notes': a file is in the way\n";
    expectRefused("lib", {"add-folder", "lib", "A", "notes"}, 3, error);
    expectRefused("lib", {"add-box", "lib", "A", "notes", "--from", "box.bhx"}, 3, error);
}

// add-box

TEST_P(Making, MakesBoxesWithResources)
{
    putBoxFile("box.bhx", R"(<Box name="x" tooltip="T"><Other/></Box>)");
    putLocal(path("icon.png"), "png");
    putLocal(path("data/a"), "1");
    putLocal(path("data/sub/[b]"), "2");
    make("lib", GetParam(), "add-folder / A\n");
    EXPECT_EQ(runPlanned("lib", {"add-box", "lib", "A", "Box", "--from", "box.bhx", "--resource",
                                 "icon.png", "data"}),
              "box        A/Box\n"
              "directory  A/Box\n"
              "resource   data/a\n"
              "resource   data/sub/[b]\n"
              "resource   icon.png\n");
    const Files files = filesIn("lib");
    EXPECT_EQ(files.at("A/Box/icon.png"), "png");
    EXPECT_EQ(files.at("A/Box/data/a"), "1");
    EXPECT_EQ(files.at("A/Box/data/sub/[b]"), "2");
    EXPECT_EQ(files.at("A/Box/box.bhx"), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                         "<KinestraBox bhx_version=\"3\">\n"
                                         "  <Box name=\"root\" tooltip=\"T\">\n"
                                         "    <Other />\n"
                                         "  </Box>\n"
                                         "</KinestraBox>\n");
    EXPECT_EQ(run({"add-box", "lib", "A", "Box", "--from", "box.bhx", "--resource", "data/"}).out,
              "renumber   Box -> Box (2)\n"
              "box        A/Box (2)\n"
              "directory  A/Box (2)\n"
              "resource   data/a\n"
              "resource   data/sub/[b]\n");
    EXPECT_EQ(tree("lib"), "lib/\n└── A/\n    ├── Box\n    └── Box (2)\n");
}

TEST_F(MakingInADirectory, TakesABehaviourProjectsFileForABox)
{
    make("lib");
    const std::string file = std::string(KXBOX_SAMPLE) + "/Lights & sounds/Blink/box.bhx";
    EXPECT_EQ(run({"add-box", "lib", "/", "Blink", "--from", file}).exitCode, 0);
    EXPECT_EQ(tree("lib"), "lib/\n└── Blink  [behaviour]\n");
}

struct BadFileCase
{
    std::string bytes;
    std::string error; ///< after "not a box file: "
};

class BadBoxFiles : public ToolTest, public testing::WithParamInterface<BadFileCase>
{
};

TEST_P(BadBoxFiles, AreRefusedWithPlaceAndReason)
{
    make("lib");
    putLocal(path("bad"), QByteArray::fromStdString(GetParam().bytes));
    const Ending ending = run({"add-box", "lib", "/", "A", "--from", "bad"});
    EXPECT_EQ(ending.exitCode, 3);
    EXPECT_EQ(ending.error.find("kxbox: bad: not a box file: " + GetParam().error), 0U) << ending;
    EXPECT_EQ(q(ending.error).count(QLatin1Char('\n')), 1) << ending;
    EXPECT_EQ(tree("lib"), "lib/\n");
}

INSTANTIATE_TEST_SUITE_P(
    , BadBoxFiles,
    testing::Values(
        BadFileCase{"", "the file is empty or can't be read\n"},
        BadFileCase{"no XML", "line 1, column 1: "}, BadFileCase{"<a>\n  <b></a>", "line 2, "},
        BadFileCase{"<Box/>", "the element is <Box>, not <KinestraBox> or <KinestraProject>\n"},
        BadFileCase{"<KinestraBox/>", "the version (bhx_version) is "},
        BadFileCase{"<KinestraBox bhx_version='4'><Box/></KinestraBox>",
                    "the version (bhx_version) is 4, not 3\n"},
        BadFileCase{"<KinestraBox bhx_version='3'><Bax/></KinestraBox>",
                    "there is no <Box> in it\n"},
        BadFileCase{"<KinestraProject bhx_version='3' xmlns='x'><Box/></KinestraProject>",
                    "the namespace 'x' is not '"}));

TEST_F(MakingInADirectory, RefusesResourcesThatItCannotTake)
{
    putBoxFile("box.bhx");
    putLocal(path("a/icon.png"), "1");
    putLocal(path("b/icon.png"), "2");
    make("lib");
    const auto resources = [](const Words& files) {
        Words words = {"add-box", "lib", "/", "A", "--from", "box.bhx", "--resource"};
        words.insert(words.end(), files.begin(), files.end());
        return words;
    };
    expectRefused("lib", resources({"x"}), 3, "kxbox: x: No such file or directory\n");
    expectRefused("lib", resources({"box.bhx"}), 3,
                  "kxbox: box.bhx: can't be a resource: this is the name of a file of the "
                  "library\n");
    expectRefused("lib", resources({"a/icon.png", "b/icon.png"}), 3,
                  "kxbox: b/icon.png: another resource has the same name\n");
    expectRefused("lib", {"add-box", "lib", "/", "A", "--from", "x"}, 3,
                  "kxbox: x: No such file or directory\n");
}

// set

TEST_P(Making, EditsBoxes)
{
    putBoxFile("box.bhx", R"(<Box tooltip="old"><Other/></Box>)");
    putLocal(path("1.png"), "");
    putLocal(path("[2,3]"), "");
    make("lib", GetParam(), "add-box / B? --from box.bhx --resource 1.png '[2,3]'\n");
    EXPECT_EQ(runPlanned("lib", {"set", "lib", "B?", "--tooltip", "two\nlines [a,b]", "--bitmap",
                                 "1.png", "[2,3]", "--expanded", "no"}),
              "tooltip   B? -> two\\nlines [a,b]\n"
              "bitmaps   B? -> 1.png, [2,3]\n"
              "expanded  B? -> no\n");
    const auto box = json({"show", "lib", "B?"});
    EXPECT_EQ(box["tooltip"], "two\nlines [a,b]");
    EXPECT_EQ(box["bitmaps"], (nlohmann::ordered_json{"1.png", "[2,3]"}));
    EXPECT_EQ(box["expanded"], false);
    EXPECT_NE(filesIn("lib").at("B%3f/box.bhx").find("<Other />"), std::string::npos);
    EXPECT_EQ(runPlanned("lib", {"set", "lib", "--file-names", "B%3f", "--tooltip", ""}),
              "tooltip  B%3f\n");
    EXPECT_EQ(runPlanned("lib", {"set", "lib", "B?", "--bitmap", ""}), "bitmaps  B?\n");
    EXPECT_EQ(json({"show", "lib", "B?"})["bitmaps"], nlohmann::ordered_json::array());
    EXPECT_EQ(json({"show", "lib", "B?"})["tooltip"], "");
}

TEST_P(Making, DoesNotWriteABoxThatStaysAsItIs)
{
    putBoxFile("box.bhx", R"(<Box tooltip="T" bitmap_expanded="true"/>)");
    make("lib", GetParam(), "add-box / B --from box.bhx\n");
    const Files before = filesOf(path("lib"));
    EXPECT_EQ(run({"set", "lib", "B", "--tooltip", "T", "--expanded", "yes", "--bitmap", ""}),
              (Ending{0, "Nothing to change.\n", ""}));
    EXPECT_EQ(json({"set", "lib", "B", "--tooltip", "T"})["changes"],
              nlohmann::ordered_json::array());
    EXPECT_EQ(filesOf(path("lib")), before);
}

TEST_F(MakingInADirectory, RefusesWhatABoxCannotHave)
{
    putBoxFile("box.bhx");
    make("lib", Form::Directory, "add-folder / A\nadd-box / B --from box.bhx\n");
    expectRefused("lib", {"set", "lib", "B", "--tooltip", "new", "--bitmap", "x"}, 3,
                  "kxbox: lib: the box 'B' has no resource 'x' for a bitmap\n");
    expectRefused("lib", {"set", "lib", "B", "--tooltip", "a\x1b"}, 3,
                  "kxbox: lib: the box 'B' can't have this tooltip: characters that XML cannot "
                  "hold in the attribute \"tooltip\" of element \"Box\"\n");
    expectRefused("lib", {"set", "lib", "A", "--tooltip", "T"}, 3,
                  "kxbox: lib: 'A' is a folder, not a box\n");
    expectRefused("lib", {"set", "lib", "B"}, 2,
                  "kxbox: set: one of --tooltip, --bitmap and --expanded is required\n");
}

} // namespace
} // namespace kxbox::test
