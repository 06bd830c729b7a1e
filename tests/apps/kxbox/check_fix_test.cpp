// What `check --fix` mends, and what it leaves alone.
#include "check_library.hpp"

#include <kxboxlibrary/box_constants.hpp>
#include <pk/project/project_model.hpp>

#include <nlohmann/json.hpp>

#include <unistd.h>

namespace kxbox::test {
namespace {

struct Mending
{
    std::string name;
    Edits edits;
    int exitCode;
    std::string report;    ///< what was done
    std::string remaining; ///< what `check` says then
    Edits changes;         ///< of the files
};

std::ostream& operator<<(std::ostream& stream, const Mending& mending)
{
    return stream << mending.name;
}

std::string caseName(const testing::TestParamInfo<std::tuple<Mending, Form>>& info)
{
    return std::get<0>(info.param).name + nameOf({std::get<1>(info.param), 0});
}

class Mendings : public CheckTest, public testing::WithParamInterface<std::tuple<Mending, Form>>
{
};

TEST_P(Mendings, LoseNothingAndAreDoneOnce)
{
    const auto& [mending, form] = GetParam();
    const Words words = makeLibrary(form, mending.edits, {"--fix"});
    const Files bytes = filesOf(path("lib.bxl"));
    Files files = libraryFiles();
    const std::string unwritten =
        mending.changes.empty() ? "" : "Nothing was written (--dry-run).\n";

    EXPECT_EQ(run({"check", "lib.bxl", "--fix", "--dry-run"}),
              (Ending{mending.exitCode, mending.report + unwritten + mending.remaining, ""}));
    EXPECT_EQ(filesOf(path("lib.bxl")), bytes);

    EXPECT_EQ(run(words), (Ending{mending.exitCode, mending.report + mending.remaining, ""}));
    for (const auto& [file, content] : mending.changes) {
        if (content) {
            files[file] = *content;
        } else {
            EXPECT_EQ(files.erase(file), 1U) << file;
        }
    }
    EXPECT_EQ(libraryFiles(), files);

    const Files mended = filesOf(path("lib.bxl"));
    EXPECT_EQ(run({"check", "lib.bxl"}), (Ending{mending.exitCode, mending.remaining, ""}));
    const Ending again = run(words);
    EXPECT_EQ(again.exitCode, mending.exitCode);
    EXPECT_EQ(again.out.find("fixed: ") == 0, false) << again;
    EXPECT_EQ(filesOf(path("lib.bxl")), mended);
}

const std::string a_walk = "Library:/Motion/Walk";
const std::string a_file = "translations/translation_fr.ts";
const std::string a_second = "translations/z.ts";

std::string french(const std::string& messages)
{
    return translationFile("fr", messages);
}

std::vector<Mending> orderMendings()
{
    return {
        {"Nothing", {}, 0, "", "No problems.\n", {}},
        {"OrderFiles",
         {{"bxlinfo", orderFile({"Say", "Gone", "Say"})}, {"Motion/bxlinfo", "<Folder"}},
         0,
         "fixed: Motion/bxlinfo: written anew\n"
         "fixed: bxlinfo: written anew\n",
         "No problems.\n",
         {{"bxlinfo", orderFile({"Say", "Motion"})},
          {"Motion/bxlinfo", orderFile({"Run", "Walk"})}}},
        {"OrderOfANameThatNoOrderFileHolds",
         {{"Motion/a\x01/box.bhx", boxFile()}, {"Motion/bxlinfo", orderFile({"Run", "No"})}},
         1,
         "fixed: Motion/bxlinfo: written anew\n",
         "warning: Motion/a\\x01: not listed in Motion/bxlinfo\n"
         "warning: Motion/a\\x01: the name has control characters\n"
         "2 warnings\n",
         {{"Motion/bxlinfo", orderFile({"Run", "Walk"})}}},
    };
}

std::vector<Mending> nameMendings()
{
    return {
        {"MisnamedDirectories",
         {{"bxlinfo", orderFile({"Motion", "50%", "Say"})},
          {"50%/bxlinfo", orderFile({"x", "A/B"})},
          {"50%/A%2FB/box.bhx", boxFile()},
          {"50%/A%2FB/a.png", "a"},
          {"50%/x/box.bhx", boxFile()},
          {a_file,
           french(message("Library:/50%", "a", "A") + message("Library:/50%/A%2FB", "b", "B") +
                  message("Library:/50%/x", "c", "C") + message("Library:/50%y", "d", "D"))},
          {a_second, translationFile("", message("Library:/50%/A%2FB", "b", "B"))}},
         1,
         "fixed: 50%: renamed to 50%25\n"
         "fixed: 50%/A%2FB: renamed to 50%25/A%2fB\n"
         "not fixed: translations/z.ts: its name says no language either\n",
         "error: translations/z.ts: it names no language, and is lost with the next change of "
         "messages\n"
         "warning: translations/translation_fr.ts: 1 message is of 'Library:/50%y', which is no "
         "node\n"
         "1 error, 1 warning\n",
         {{"bxlinfo", orderFile({"Motion", "Say", "50%"})},
          {"50%/bxlinfo", {}},
          {"50%/A%2FB/box.bhx", {}},
          {"50%/A%2FB/a.png", {}},
          {"50%/x/box.bhx", {}},
          {"50%25/bxlinfo", orderFile({"x", "A/B"})},
          {"50%25/A%2fB/box.bhx", boxFile()},
          {"50%25/A%2fB/a.png", "a"},
          {"50%25/x/box.bhx", boxFile()},
          {a_file,
           french(message("Library:/50%25", "a", "A") + message("Library:/50%25/A%2fB", "b", "B") +
                  message("Library:/50%25/x", "c", "C") + message("Library:/50%y", "d", "D"))},
          {a_second, translationFile("", message("Library:/50%25/A%2fB", "b", "B"))}}},
        {"NumberedDirectories",
         {{"Motion/bxlinfo", orderFile({"Walk", "Run", "A/B", "C/D (2)", "A/B (2)"})},
          {"Motion/A%2fB/box.bhx", boxFile()},
          {"Motion/A%2FB (2)/box.bhx", boxFile()},
          {"Motion/C%2FD (2)/box.bhx", boxFile()}},
         1,
         "fixed: Motion/A%2FB (2): renamed to Motion/A%2fB (2)\n"
         "not fixed: Motion/C%2FD (2): the library would give 'C/D (2)' another number\n",
         "warning: Motion/C%2FD (2): the directory of 'C/D (2)' should be called 'C%2fD (2)': it "
         "can't keep its place in the order, and its messages get lost when it is copied\n"
         "1 warning\n",
         {{"Motion/bxlinfo", orderFile({"Walk", "Run", "A/B", "A/B (2)", "C/D (2)"})},
          {"Motion/A%2FB (2)/box.bhx", {}},
          {"Motion/A%2fB (2)/box.bhx", boxFile()}}},
        {"DirectoriesThatCantHaveTheirNames",
         {{"Motion/A%2FB/box.bhx", boxFile()},
          {"Motion/A%2fB/box.bhx", boxFile()},
          {"Motion/C%2FD/box.bhx", boxFile()},
          {"Motion/C%2fD", "a file"},
          {"Motion/bxlinf%6f/box.bhx", boxFile()},
          {"Motion/%00/box.bhx", boxFile()},
          {"Motion/bxlinfo", orderFile({"Walk", "Run", "A/B", "", "A/B", "C/D", "bxlinfo"})}},
         1,
         "not fixed: Motion/%00: it stands for no name\n"
         "not fixed: Motion/A%2FB: another node is called 'A/B' too\n"
         "not fixed: Motion/C%2FD: there is something else at 'C%2fD'\n"
         "not fixed: Motion/bxlinf%6f: the name 'bxlinfo' is reserved: this is the name of a file "
         "of the library\n",
         "error: Motion/bxlinf%6f: the name 'bxlinfo' is reserved: this is the name of a file of "
         "the library\n"
         "warning: Motion/%00: this directory stands for a node without a name\n"
         "warning: Motion/A%2FB: the directory of 'A/B' should be called 'A%2fB': it can't keep "
         "its place in the order, and its messages get lost when it is copied\n"
         "warning: Motion/A%2fB: this node is called 'A/B', as the one in 'A%2FB' is\n"
         "warning: Motion/A%2fB: the name differs from 'A%2FB' only in upper and lower case\n"
         "warning: Motion/C%2FD: the directory of 'C/D' should be called 'C%2fD': it can't keep "
         "its place in the order, and its messages get lost when it is copied\n"
         "warning: Motion/C%2fD: the name differs from 'C%2FD' only in upper and lower case\n"
         "note: Motion/C%2fD: it belongs to no node\n"
         "1 error, 6 warnings, 1 note\n",
         {}},
        {"DirectoriesBesideADamagedTranslation",
         {{"Motion/bxlinfo", orderFile({"Walk", "Run", "A/B"})},
          {"Motion/A%2FB/box.bhx", boxFile()},
          {"translations/translation_de.ts", "<TS>"}},
         1,
         "not fixed: Motion/A%2FB: messages could get lost, as long as not every translation file "
         "is in order\n",
         "error: translations/translation_de.ts:1: Start-end tags mismatch\n"
         "warning: Motion/A%2FB: the directory of 'A/B' should be called 'A%2fB': it can't keep "
         "its place in the order, and its messages get lost when it is copied\n"
         "1 error, 1 warning\n",
         {}},
    };
}

std::vector<Mending> translationMendings()
{
    const std::string go = message(a_walk, "Go", "Va");
    return {
        {"LanguageInTheName",
         {{"translations/translation_pt_BR.ts", translationFile("", go)},
          {"translations/translation_x%2fy.ts", translationFile("", go)}},
         1,
         "fixed: translations/translation_pt_BR.ts: got the language 'pt_BR'\n"
         "not fixed: translations/translation_x%2fy.ts: its name says no language either\n",
         "error: translations/translation_x%2fy.ts: it names no language, and is lost with the "
         "next change of messages\n"
         "1 error\n",
         {{"translations/translation_pt_BR.ts", translationFile("pt_BR", go)}}},
        {"LanguageThatIsTaken",
         {{a_file, translationFile("", go)}, {a_second, french(go)}},
         1,
         "not fixed: translations/translation_fr.ts: the language in its name, 'fr', has another "
         "file\n",
         "error: translations/translation_fr.ts: it names no language, and is lost with the next "
         "change of messages\n"
         "1 error\n",
         {}},
        {"SecondFiles",
         {{a_file, french(go + message(a_walk, "Stop"))},
          {a_second, french(message(a_walk, "Stop", "Arr\u00eate") + go +
                            message("Library:/Say", "Hi", "Salut"))},
          {"translations/zz.ts", french(message("Library:/Say", "Hi"))}},
         0,
         "fixed: translations/z.ts: put into translations/translation_fr.ts\n"
         "fixed: translations/zz.ts: put into translations/translation_fr.ts\n",
         "No problems.\n",
         {{a_file,
           french("<context>\n    <name>Library:/Motion/Walk</name>\n    <message>\n"
                  "        <source>Go</source>\n        <translation>Va</translation>\n"
                  "    </message>\n    <message>\n        <source>Stop</source>\n"
                  "        <translation>Arr\u00eate</translation>\n    </message>\n</context>\n" +
                  message("Library:/Say", "Hi", "Salut"))},
          {a_second, {}},
          {"translations/zz.ts", {}}}},
        {"SecondFileThatContradicts",
         {{a_second, french(message(a_walk, "Go", "Allez") + message(a_walk, "New", "Neuf"))}},
         1,
         "not fixed: translations/z.ts: can't be put into translations/translation_fr.ts: 1 "
         "message says something else there, as 'Go' of 'Library:/Motion/Walk'\n",
         "error: translations/z.ts: its language, 'fr', has translations/translation_fr.ts "
         "already, and this file is lost with the next change of messages\n"
         "1 error\n",
         {}},
        {"MessagesOfNoNode",
         {{a_file, french(go + message("Library:/Gone", "a", "A") + message("Library:/Gone2", "b") +
                          message("Dialog", "c"))}},
         1,
         "fixed: translations/translation_fr.ts: removed 2 untranslated messages of no node\n",
         "warning: translations/translation_fr.ts: 1 message is of 'Library:/Gone', which is no "
         "node\n"
         "1 warning\n",
         {{a_file, french(go + message("Library:/Gone", "a", "A"))}}},
        {"FilesThatCantBeWrittenWhole",
         {{a_file, french(go + message(a_walk, "Go", "Allez") + message("Gone", "a"))}},
         1,
         "not fixed: translations/translation_fr.ts: 1 untranslated message of no node: writing "
         "the file anew could lose translations\n",
         "warning: translations/translation_fr.ts: 1 message is of 'Gone', which is no node\n"
         "warning: translations/translation_fr.ts: 1 message is there again with another "
         "translation, which is lost with the next change of messages\n"
         "2 warnings\n",
         {}},
        {"FilesBesideADamagedOne",
         {{"translations/translation_de.ts", "<TS>"},
          {"translations/translation_es.ts", translationFile("", go)},
          {"translations/old/x.ts", "x"}},
         1,
         "fixed: translations/translation_es.ts: got the language 'es'\n",
         "error: translations/translation_de.ts:1: Start-end tags mismatch\n"
         "warning: translations/old: it is lost with the next change of messages\n"
         "1 error, 1 warning\n",
         {{"translations/translation_es.ts", translationFile("es", go)}}},
    };
}

const auto a_forms = testing::Values(Form::Directory, Form::Archive);

INSTANTIATE_TEST_SUITE_P(Order, Mendings,
                         testing::Combine(testing::ValuesIn(orderMendings()), a_forms), caseName);
INSTANTIATE_TEST_SUITE_P(Names, Mendings,
                         testing::Combine(testing::ValuesIn(nameMendings()), a_forms), caseName);
INSTANTIATE_TEST_SUITE_P(Translations, Mendings,
                         testing::Combine(testing::ValuesIn(translationMendings()), a_forms),
                         caseName);

class CheckFix : public CheckTest
{
};

TEST_F(CheckFix, LeavesANameThatALinkHas)
{
    const Words words = makeLibrary(
        Form::Directory, {{"Motion/C%2FD/box.bhx", boxFile()}, {"Motion/E%2FF/box.bhx", boxFile()}},
        {"--fix"});
    ASSERT_EQ(::symlink("Walk", path("lib.bxl/Motion/C%2fD").toStdString().c_str()), 0);
    const std::string fixed = "fixed: Motion/E%2FF: renamed to Motion/E%2fF\n"
                              "not fixed: Motion/C%2FD: there is something else at 'C%2fD'\n";
    const Ending ending = run(words);
    EXPECT_EQ(ending.exitCode, 1) << ending.error;
    EXPECT_EQ(ending.out.substr(0, fixed.size()), fixed);
    EXPECT_TRUE(QFileInfo(path("lib.bxl/Motion/C%2fD")).isSymLink());
    EXPECT_TRUE(QFileInfo(path("lib.bxl/Motion/E%2fF")).isDir());
}

TEST_F(CheckFix, SetsMissingMetadataAndLeavesOthers)
{
    const Words words = makeLibrary(
        Form::Directory, {{".kxproject", R"({"Version": "9", "title": "T"})"}}, {"--fix"});
    EXPECT_EQ(run(words),
              (Ending{1,
                      "fixed: metadata: \"Type\" set to 'KinestraBoxLibrary'\n"
                      "warning: .kxproject: the metadata \"Version\" is '9', not '3.0'\n"
                      "1 warning\n",
                      ""}));
    const pk::project::ProjectModel model(path("lib.bxl"));
    EXPECT_EQ(model.getMetadata(q("Type")), q(KX::BoxConstants::a_boxLibraryProjectType));
    EXPECT_EQ(model.getMetadata(q("Version")), q("9"));
    EXPECT_EQ(model.getMetadata(q("title")), q("T"));
}

TEST_F(CheckFix, GivesJson)
{
    const Words words = makeLibrary(
        Form::Directory,
        {{"Motion/bxlinfo", {}}, {"Motion/A%2FB/box.bhx", ""}, {"translations/a.ts", french("")}},
        {"--fix", "--dry-run"});
    EXPECT_EQ(json(words, 1), nlohmann::ordered_json::parse(R"json({
        "library": "lib.bxl",
        "dryRun": true,
        "problems": [
            {"severity": "error", "kind": "box-file", "path": "Motion/A%2fB/box.bhx",
             "text": "the file is empty or can't be read", "fixed": false},
            {"severity": "error", "kind": "translation-twice",
             "path": "translations/translation_fr.ts",
             "text": "its language, 'fr', has translations/a.ts already, and this file is lost with the next change of messages",
             "fixed": true},
            {"severity": "warning", "kind": "directory-name", "path": "Motion/A%2fB",
             "text": "the directory of 'A/B' should be called 'A%2fB': it can't keep its place in the order, and its messages get lost when it is copied",
             "fixed": true},
            {"severity": "warning", "kind": "order-file", "path": "Motion/bxlinfo",
             "text": "the order file is missing", "fixed": true}
        ],
        "fixed": [
            "Motion/A%2FB: renamed to Motion/A%2fB",
            "translations/translation_fr.ts: put into translations/a.ts",
            "Motion/bxlinfo: written anew"
        ],
        "notFixed": []})json"));
}

TEST_F(CheckFix, IsPartOfABatch)
{
    makeLibrary(Form::Directory, {{"Motion/bxlinfo", {}}, {"Motion/A%2FB/box.bhx", boxFile()}});
    const Ending ending = run({"batch", "lib.bxl", "-"},
                              "add-folder Motion New\ncheck --fix\nrename Motion/A\\\\/B C\n");
    EXPECT_EQ(ending, (Ending{0,
                              "folder     Motion/New\n"
                              "directory  Motion/New\n"
                              "fixed: Motion/A%2FB: renamed to Motion/A%2fB\n"
                              "fixed: Motion/bxlinfo: written anew\n"
                              "No problems.\n"
                              "rename     Motion/A\\/B -> Motion/C\n"
                              "directory  Motion/A%2fB -> Motion/C\n",
                              ""}));
    EXPECT_EQ(run({"check", "lib.bxl"}), (Ending{0, "No problems.\n", ""}));
    EXPECT_EQ(tree("lib.bxl"), "lib/\n"
                               "├── Motion/\n"
                               "│   ├── C\n"
                               "│   ├── Run\n"
                               "│   ├── Walk\n"
                               "│   └── New/\n"
                               "└── Say\n");
}

} // namespace
} // namespace kxbox::test
