// What `check` finds.
#include "check_library.hpp"

#include <pk/project/project_model.hpp>

#include <nlohmann/json.hpp>

#include <unistd.h>

namespace kxbox::test {
namespace {

struct BrokenLibrary
{
    std::string name;
    Edits edits;
    int exitCode;
    std::string out;
};

std::ostream& operator<<(std::ostream& stream, const BrokenLibrary& library)
{
    return stream << library.name;
}

std::string caseName(const testing::TestParamInfo<std::tuple<BrokenLibrary, Form>>& info)
{
    return std::get<0>(info.param).name + nameOf({std::get<1>(info.param), 0});
}

class BrokenLibraries : public CheckTest,
                        public testing::WithParamInterface<std::tuple<BrokenLibrary, Form>>
{
};

TEST_P(BrokenLibraries, AreDescribedAndLeftAlone)
{
    const auto& [library, form] = GetParam();
    const Words words = makeLibrary(form, library.edits);
    const Files before = filesOf(path("lib.bxl"));
    EXPECT_EQ(run(words), (Ending{library.exitCode, library.out, ""}));
    EXPECT_EQ(filesOf(path("lib.bxl")), before);
}

const std::string a_walk = "Library:/Motion/Walk";
const char* const a_metadata = R"({"Type": "KinestraBoxLibrary", "Version": "3.0"})";

const std::vector<BrokenLibrary>& brokenLibraries()
{
    static const std::vector<BrokenLibrary> libraries{
        {"Good", {}, 0, "No problems.\n"},
        // Box files
        {"DamagedBox",
         {{"Motion/Walk/box.bhx", "<KinestraBox>\n  <Box></KinestraBox>"}},
         1,
         "error: Motion/Walk/box.bhx:2:8: end tag \"KinestraBox\" without its start tag\n"
         "1 error\n"},
        {"EmptyBox",
         {{"Say/behavior.bhx", ""}, {"Say/box.bhx", {}}, {"Say/images/a.png", ""}},
         1,
         "error: Say/behavior.bhx: the file is empty or can't be read\n"
         "1 error\n"},
        {"OldBox",
         {{"Say/box.bhx", R"(<KinestraBox bhx_version="2"><Box/></KinestraBox>)"}},
         1,
         "error: Say/box.bhx: the version (bhx_version) is 2, not 3\n"
         "1 error\n"},
        {"TwoBoxFiles",
         {{"Say/behavior.bhx", boxFile()}},
         1,
         "warning: Say/box.bhx: 'behavior.bhx' beside it counts, and the next edit of the box "
         "overwrites this file\n"
         "1 warning\n"},
        {"BoxAtTop",
         {{"box.bhx", boxFile()}},
         1,
         "error: /: the library is one box, and every directory in it a resource of that box\n"
         "warning: translations/translation_fr.ts: 1 message is of 'Library:/Motion/Walk', which "
         "is no node\n"
         "1 error, 1 warning\n"},
        {"RefusedBoxAtTop",
         {{"box.bhx", "<a/>"}},
         1,
         "error: box.bhx: the element is <a>, not <KinestraBox> or <KinestraProject>\n"
         "1 error\n"},
        {"MissingBitmaps",
         {{"Motion/Walk/box.bhx",
           boxFile("<Bitmaps><bitmap>no.png</bitmap><bitmap>no.png</bitmap>"
                   "<bitmap>../Run/box.bhx</bitmap><bitmap>./images/there.png</bitmap>"
                   "<bitmap>box.bhx</bitmap></Bitmaps>")},
          {"Motion/Walk/images/there.png", ""}},
         1,
         "warning: Motion/Walk: the bitmap 'no.png' is no resource of the box\n"
         "warning: Motion/Walk: the bitmap '../Run/box.bhx' is no resource of the box\n"
         "warning: Motion/Walk: the bitmap 'box.bhx' is no resource of the box\n"
         "3 warnings\n"},
        {"UnusablePorts",
         {{"Motion/Walk/box.bhx", boxFile(R"(<Input name="a" id="1"/><Output name="b" id="1"/>)"
                                          R"(<Parameter name=""/><Parameter name="c" id="x"/>)")},
          {"Motion/Run/box.bhx", boxFile(R"(<Input/>)")}},
         1,
         "warning: Motion/Run: 1 input, output or parameter has no name, or a number (id) that is "
         "bad or taken, and can't be used\n"
         "warning: Motion/Walk: 3 inputs, outputs or parameters have no name, or a number (id) "
         "that is bad or taken, and can't be used\n"
         "2 warnings\n"},
        // Order files
        {"MissingOrder",
         {{"Motion/bxlinfo", {}}},
         1,
         "warning: Motion/bxlinfo: the order file is missing\n"
         "1 warning\n"},
        {"DamagedOrder",
         {{"Motion/bxlinfo", "<Folder>\n  <Node name=\"Walk\"/>\n<<<<<<< ours\n</Folder>"}},
         1,
         "warning: Motion/bxlinfo:3:2: the name of an element expected\n"
         "1 warning\n"},
        {"OtherRoot",
         {{"Motion/bxlinfo", "<Order/>"}},
         1,
         "warning: Motion/bxlinfo: the element is <Order>, not <Folder>\n"
         "1 warning\n"},
        {"OrderAndDirectories",
         {{"Motion/bxlinfo",
           "<Folder><Node name='Gone'/><Node name='Walk'/><Node/><Node name='Walk'/>"
           "<Node name='Gone'/><Node name='Walk'/></Folder>"}},
         1,
         "warning: Motion/Run: not listed in Motion/bxlinfo\n"
         "warning: Motion/bxlinfo: 'Gone' has no directory\n"
         "warning: Motion/bxlinfo: 'Walk' is listed twice\n"
         "warning: Motion/bxlinfo: 1 entry has no name\n"
         "4 warnings\n"},
        {"PassedOver",
         {{"Motion/translations/x/box.bhx", boxFile()}},
         1,
         "warning: Motion/translations: not listed in Motion/bxlinfo, and the library passes over "
         "an unlisted directory of this name\n"
         "1 warning\n"},
        // Names
        {"MisnamedDirectories",
         {{"Motion/bxlinfo", orderFile({"Walk", "A/B", "50%", "Run"})},
          {"Motion/A%2FB/box.bhx", boxFile()},
          {"Motion/50%/bxlinfo", orderFile({})},
          {"Motion/%00/bxlinfo", orderFile({})}},
         1,
         "warning: Motion/%00: this directory stands for a node without a name\n"
         "warning: Motion/50%: the directory of '50%' should be called '50%25': it can't keep its "
         "place in the order, and its messages get lost when it is copied\n"
         "warning: Motion/A%2FB: the directory of 'A/B' should be called 'A%2fB': it can't keep "
         "its place in the order, and its messages get lost when it is copied\n"
         "3 warnings\n"},
        {"SameName",
         {{"Motion/bxlinfo", orderFile({"Walk", "A/B", "Run"})},
          {"Motion/A%2FB/box.bhx", boxFile()},
          {"Motion/A%2fB/box.bhx", boxFile()}},
         1,
         "warning: Motion/A%2FB: the directory of 'A/B' should be called 'A%2fB': it can't keep "
         "its place in the order, and its messages get lost when it is copied\n"
         "warning: Motion/A%2fB: this node is called 'A/B', as the one in 'A%2FB' is\n"
         "warning: Motion/A%2fB: the name differs from 'A%2FB' only in upper and lower case\n"
         "3 warnings\n"},
        {"ReservedNames",
         {{"bxlinfo", orderFile({"Motion", "Say", "translations", "Translations"})},
          {"translations/bxlinfo", orderFile({})},
          {"Translations/box.bhx", boxFile()},
          {"Motion/bxlinfo", orderFile({"Walk", "Run", ".git", "x"})},
          {"Motion/.git/box.bhx", boxFile()},
          {"Motion/x/bxlinfo/box.bhx", boxFile()}},
         1,
         "error: Motion/.git: the name '.git' is reserved: this is the directory of a "
         "version-control system\n"
         "error: Motion/x/bxlinfo: the name 'bxlinfo' is reserved: this is the name of a file of "
         "the library\n"
         "error: Translations: the name 'Translations' is reserved: at the top of a library this "
         "is the place of the translations\n"
         "error: translations: the name 'translations' is reserved: at the top of a library this "
         "is the place of the translations\n"
         "error: translations/bxlinfo:2: the root element is not <TS>\n"
         "warning: translations: the name differs from 'Translations' only in upper and lower "
         "case\n"
         "note: translations/translation_fr.ts: it belongs to no node\n"
         "5 errors, 1 warning, 1 note\n"},
        {"NamesOfOtherSystems",
         {{"Motion/Walk/CON", ""},
          {"Motion/Walk/com7.tar.gz", ""},
          {"Motion/Walk/lpt0", ""},
          {"Motion/Walk/a:b\\c?", ""},
          {"Motion/Walk/dot.", ""},
          {"Motion/Walk/space ", ""},
          {"Motion/Walk/tab\t", ""},
          {"Motion/Walk/nul ./x", ""},
          {"Motion/Walk/Image", ""},
          {"Motion/Walk/image", ""},
          {"Motion/Walk/\u00c9cole", ""},
          {"Motion/Walk/\u00e9cole", ""},
          {"Motion/Walk/\u00e9", ""},
          {"Motion/Walk/e\u0301", ""}},
         1,
         "warning: Motion/Walk/CON: the name is that of a device on other systems\n"
         "warning: Motion/Walk/a:b\\c?: the name has characters that other systems can't have: "
         ":\\?\n"
         "warning: Motion/Walk/com7.tar.gz: the name is that of a device on other systems\n"
         "warning: Motion/Walk/dot.: the name ends with a dot\n"
         "warning: Motion/Walk/image: the name differs from 'Image' only in upper and lower case\n"
         "warning: Motion/Walk/nul .: the name ends with a dot\n"
         "warning: Motion/Walk/nul .: the name is that of a device on other systems\n"
         "warning: Motion/Walk/space : the name ends with a space\n"
         "warning: Motion/Walk/tab\\t: the name has control characters\n"
         "warning: Motion/Walk/\u00e9: the name differs from 'e\u0301' only in the way in which "
         "accents are written\n"
         "warning: Motion/Walk/\u00e9cole: the name differs from '\u00c9cole' only in upper and "
         "lower case\n"
         "11 warnings\n"},
        {"NameThatNoOrderFileHolds",
         {{"Motion/a\x01/box.bhx", boxFile()}},
         1,
         "warning: Motion/a\\x01: not listed in Motion/bxlinfo\n"
         "warning: Motion/a\\x01: the name has control characters\n"
         "2 warnings\n"},
        // Translations
        {"DamagedTranslations",
         {{"translations/translation_fr.ts", "<TS>\n<context>\n</TS>"},
          {"translations/README", "Hello\n"},
          {"translations/empty.ts", ""}},
         1,
         "error: translations/README:2: the file ends early\n"
         "error: translations/empty.ts: the file is empty or can't be read\n"
         "error: translations/translation_fr.ts:3: Start-end tags mismatch\n"
         "3 errors\n"},
        {"LanguagesOfTranslations",
         {{"translations/a.ts", translationFile("fr", {})},
          {"translations/translation_de.ts", translationFile("it", {})},
          {"translations/translation_es.ts", translationFile("", message("Library:/No", "a"))},
          {"translations/old/translation_fr.ts", ""}},
         1,
         "error: translations/translation_es.ts: it names no language, and is lost with the next "
         "change of messages\n"
         "error: translations/translation_fr.ts: its language, 'fr', has translations/a.ts "
         "already, and this file is lost with the next change of messages\n"
         "warning: translations/old: it is lost with the next change of messages\n"
         "warning: translations/translation_de.ts: its language is 'it', not 'de'\n"
         "warning: translations/translation_es.ts: 1 message is of 'Library:/No', which is no "
         "node\n"
         "2 errors, 3 warnings\n"},
        {"Contexts",
         {{"translations/translation_fr.ts",
           translationFile("fr", message("Library:/", "root") +
                                     message("Library:/Motion", "folder") + message(a_walk, "a") +
                                     message(a_walk + "/x", "b", "B") +
                                     message(a_walk + "/x", "c") + message("Dialog", "d") +
                                     message("library:/Say", "e") + message("", "f") +
                                     "<context><name>Old</name><message><source>g</source>"
                                     "<translation type=\"vanished\">G</translation></message>"
                                     "</context>")}},
         1,
         "warning: translations/translation_fr.ts: 1 message is of '', which is no node\n"
         "warning: translations/translation_fr.ts: 1 message is of 'Dialog', which is no node\n"
         "warning: translations/translation_fr.ts: 2 messages are of 'Library:/Motion/Walk/x', "
         "which is no node\n"
         "warning: translations/translation_fr.ts: 1 message is of 'library:/Say', which is no "
         "node\n"
         "4 warnings\n"},
        {"ContradictingMessages",
         {{"translations/translation_fr.ts",
           translationFile("fr", message(a_walk, "Go", "Va") + message(a_walk, "Go", "Allez") +
                                     message(a_walk, "Go", "Va") + message(a_walk, "Go"))}},
         1,
         "warning: translations/translation_fr.ts: 1 message is there again with another "
         "translation, which is lost with the next change of messages\n"
         "1 warning\n"},
        // The project
        {"NoMetadata",
         {{".kxproject", {}}},
         1,
         "warning: .kxproject: the metadata \"Type\" is missing\n"
         "warning: .kxproject: the metadata \"Version\" is missing\n"
         "2 warnings\n"},
        {"OtherVersion",
         {{".kxproject", R"({"Type": "KinestraBoxLibrary", "Version": "4\n"})"}},
         1,
         "warning: .kxproject: the metadata \"Version\" is '4\\n', not '3.0'\n"
         "1 warning\n"},
        {"Strays",
         {{"README.md", ""}, {"Motion/notes.txt", ""}, {"Say/data/list.txt", ""}},
         0,
         "note: Motion/notes.txt: it belongs to no node\n"
         "note: README.md: it belongs to no node\n"
         "No problems, 2 notes\n"}};
    return libraries;
}

INSTANTIATE_TEST_SUITE_P(, BrokenLibraries,
                         testing::Combine(testing::ValuesIn(brokenLibraries()),
                                          testing::Values(Form::Directory, Form::Archive)),
                         caseName);

class Check : public CheckTest
{
};

TEST_F(Check, FindsNothingWrongWithTheSample)
{
    EXPECT_EQ(run({"check", KXBOX_SAMPLE}), (Ending{0, "No problems.\n", ""}));
}

TEST_F(Check, GivesJson)
{
    const Words words = makeLibrary(
        Form::Directory,
        {{"Say/box.bhx", "<a>"}, {"Motion/bxlinfo", {}}, {"translations/x.ts", "\n<a/>"}});
    EXPECT_EQ(json(words, 1), nlohmann::ordered_json::parse(R"json({
        "library": "lib.bxl",
        "dryRun": false,
        "problems": [
            {"severity": "error", "kind": "box-file", "path": "Say/box.bhx", "line": 1,
             "column": 4, "text": "the file ends inside element \"a\"", "fixed": false},
            {"severity": "error", "kind": "translation-file", "path": "translations/x.ts",
             "line": 2, "text": "the root element is not <TS>", "fixed": false},
            {"severity": "warning", "kind": "order-file", "path": "Motion/bxlinfo",
             "text": "the order file is missing", "fixed": false}
        ],
        "fixed": [],
        "notFixed": []})json"));
}

TEST_F(Check, SaysOnceWhatIsLeftOut)
{
    const Words words = makeLibrary(Form::Directory, {});
    const std::string link = path("lib.bxl/link").toStdString();
    ASSERT_EQ(::symlink("nowhere", link.c_str()), 0);
    EXPECT_EQ(run(words),
              (Ending{0, "No problems.\n",
                      "kxbox: warning: " + link +
                          ": left out of the project, because it is a symbolic link\n"}));
}

TEST_F(Check, KnowsNamesThatOnlyArchivesCanHave)
{
    makeLibrary(Form::Archive, {});
    pk::project::ProjectModel model(path("lib.bxl"));
    const std::string name(300, 'x');
    model.writeFile(q("Say/" + name), "");
    model.save({}, pk::project::ArchiveFormat::Source, true);
    EXPECT_EQ(run({"check", "lib.bxl"}), (Ending{1,
                                                 "warning: Say/" + name +
                                                     ": the name has 300 bytes, more than 255\n"
                                                     "1 warning\n",
                                                 ""}));
}

TEST_F(Check, OnALineOfABatchLooksAtTheOrderOnDiskAndTheRestAsItIsThen)
{
    makeLibrary(Form::Directory, {{"Motion/bxlinfo", {}}});
    EXPECT_EQ(run({"batch", "lib.bxl", "-"}, "rename Motion/Walk CON\ncheck\n").out,
              "rename     Motion/Walk -> Motion/CON\n"
              "directory  Motion/Walk -> Motion/CON\n"
              "messages   Library:/Motion/Walk -> Library:/Motion/CON (fr 1)\n"
              "warning: Motion/CON: the name is that of a device on other systems\n"
              "warning: Motion/bxlinfo: the order file is missing\n"
              "2 warnings\n");
}

TEST_F(Check, SaysWhyALibraryCantBeOpened)
{
    putLocal(path("file"), "no library");
    const Ending ending = run({"check", "file"});
    EXPECT_EQ(ending.exitCode, 3);
    EXPECT_EQ(ending.out, "");
    EXPECT_NE(ending.error.find("file"), std::string::npos);
}

} // namespace
} // namespace kxbox::test
