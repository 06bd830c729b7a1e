#include "tool.hpp"

#include <nlohmann/json.hpp>

#include <sys/stat.h>
#include <unistd.h>

namespace kxbox::test {
namespace {

class Converting : public ToolInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(, Converting, testing::Values(Form::Directory, Form::Archive), nameOf);

TEST_P(Converting, ThereAndBackChangesNoBit)
{
    copySample("first", GetParam());
    const bool toArchive = GetParam() == Form::Directory;
    EXPECT_EQ(run({"convert", "first", "second", "--format", toArchive ? "archive" : "directory"}),
              (Ending{0,
                      toArchive ? "archive  first -> second\nfiles    182\n"
                                : "directory  first -> second\nfiles      182\n",
                      ""}));
    convert("second", "third", GetParam());
    EXPECT_EQ(filesOf(path("third")), [this] {
        Files files = filesOf(path("first"));
        if (files.count("first") > 0) { // an archive
            files["third"] = files.at("first");
            files.erase("first");
        }
        return files;
    }());
    EXPECT_EQ(filesIn("second"), filesOf(q(KXBOX_SAMPLE)));
}

TEST_P(Converting, KeepsFilesThatAreNoPartOfTheTree)
{
    make("made");
    putLocal(path("made/A/notes"), QByteArray("\0\xff", 2));
    putLocal(path("made/A/bxlinfo"), "damaged");
    putLocal(path("made/translations/x.ts"), "no TS file");
    putLocal(path("made/readme"), "");
    convert("made", "lib", GetParam());
    EXPECT_EQ(filesIn("lib"), filesOf(path("made")));
}

TEST_P(Converting, CanBePlanned)
{
    copySample("lib", GetParam());
    EXPECT_EQ(run({"convert", "lib", "x", "--format", "directory", "--dry-run"}),
              (Ending{0,
                      "directory  lib -> x\n"
                      "files      182\n"
                      "Nothing was written (--dry-run).\n",
                      ""}));
    EXPECT_EQ(json({"convert", "lib", "x", "--format", "archive", "--dry-run"}),
              nlohmann::ordered_json::parse(R"(
        {"library": "lib", "dryRun": true, "changes": [
          {"change": "archive", "subject": "lib", "result": "x"},
          {"change": "files", "subject": "182"}]})"));
    EXPECT_FALSE(QFileInfo::exists(path("x")));
}

TEST_P(Converting, ReplacesNothing)
{
    make("lib", GetParam(), "add-folder / A\n");
    putLocal(path("file"), "mine");
    const std::string isThere = ": something is there already\n";
    expectRefused("file", {"convert", "lib", "file", "--format", "archive"}, 3,
                  "kxbox: file" + isThere);
    expectRefused("lib", {"convert", "lib", "lib", "--format", "directory"}, 3,
                  "kxbox: lib" + isThere);
    expectRefused("lib", {"convert", "x", "y", "--format", "directory"}, 3,
                  "kxbox: 'x': no such file or directory\n");
    const Ending ending = run({"convert", "lib", "no/where", "--format", "archive"});
    EXPECT_EQ(ending.exitCode, 3);
    EXPECT_EQ(ending.out, "");
    expectRefused("lib", {"convert", "lib", "lib/x", "--format", "directory"}, 3,
                  run({"convert", "lib", "lib/x", "--format", "directory"}).error);
}

class Exporting : public SampleInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(, Exporting, testing::Values(Form::Directory, Form::Archive), nameOf);

const char* const a_exported = "exported      Motion/Posture/Stand up\n"
                               "exported      Motion/Posture/Sit down\n"
                               "exported      Motion/Posture/Crouch\n"
                               "exported      Motion/Gestures/Wave\n"
                               "exported      Motion/Gestures/Nod\n"
                               "exported      Motion/Gestures/Shake head\n"
                               "exported      Motion/Gestures/Bow\n"
                               "exported      Motion/Dances/Olé!\n"
                               "exported      Motion/Dances/Slow waltz\n"
                               "exported      Motion/Dances/Left \\/ right\n"
                               "exported      Speech/Tell a story\n"
                               "exported      Lights & sounds/Blink\n"
                               "exported      Templates/Empty timeline\n";

TEST_P(Exporting, WritesEachBehaviourAlsoTwice)
{
    const std::string done = std::string(a_exported) + "13 behaviours exported to out\n";
    EXPECT_EQ(run({"export", "lib", "out"}), (Ending{0, done, ""}));
    const Files files = filesOf(path("out"));
    EXPECT_EQ(files.count("Motion/Dances/Left %2f right/behavior.bhx"), 1U);
    EXPECT_EQ(files.at("Lights & sounds/Blink/icon.png"),
              getLocal(q(KXBOX_SAMPLE "/Lights & sounds/Blink/icon.png")).toStdString());
    EXPECT_EQ(run({"export", "lib", "out"}), (Ending{0, done, ""}));
    EXPECT_EQ(filesOf(path("out")).size(), files.size());
}

TEST_P(Exporting, CanBePlanned)
{
    EXPECT_EQ(
        run({"export", "lib", "out", "--dry-run"}),
        (Ending{0, std::string(a_exported) + "13 behaviours would be exported to out\n", ""}));
    EXPECT_FALSE(QFileInfo::exists(path("out")));
    const auto plan = json({"export", "lib", "out", "--dry-run", "--file-names"});
    EXPECT_EQ(plan["dryRun"], true);
    EXPECT_EQ(plan["destination"], "out");
    EXPECT_EQ(plan["exported"].size(), 13U);
    EXPECT_EQ(plan["exported"][9], "Motion/Dances/Left %2f right");
    EXPECT_EQ(plan["notExported"], nlohmann::ordered_json::array());
}

TEST_P(Exporting, TellsWhatCouldNotBeExported)
{
    putLocal(path("out/Motion/Posture/Sit down"), "in the way");
    const std::string expected =
        q(a_exported)
            .replace(q("exported      Motion/Posture/Sit"), q("not exported  Motion/Posture/Sit"))
            .toStdString();
    const std::string error =
        "kxbox: out: 1 of 13 behaviours could not be exported, as Motion/Posture/Sit down\n";
    EXPECT_EQ(run({"export", "lib", "out"}),
              (Ending{3, expected + "12 behaviours exported to out\n", error}));
    EXPECT_EQ(getLocal(path("out/Motion/Posture/Sit down")), QByteArray("in the way"));
    EXPECT_EQ(run({"export", "lib", "out", "--dry-run"}),
              (Ending{3, expected + "12 behaviours would be exported to out\n", error}));
    EXPECT_TRUE(QFileInfo::exists(path("out/Motion/Posture/Crouch/behavior.bhx")));
    const Ending asJson = run({"export", "lib", "out", "--json"});
    EXPECT_EQ(asJson.exitCode, 3);
    EXPECT_EQ(asJson.error, error);
    const auto json = nlohmann::ordered_json::parse(asJson.out, nullptr, false);
    EXPECT_EQ(json["notExported"], nlohmann::ordered_json{"Motion/Posture/Sit down"});
    EXPECT_EQ(json["exported"].size(), 12U);
}

TEST_P(Exporting, NeedsADirectory)
{
    putLocal(path("file"), "mine");
    const std::string nowhere =
        "kxbox: no/where: the directory '" + path("no").toStdString() + "' does not exist\n";
    for (const char* const dryRun : {"", "--dry-run"}) {
        const auto failure = [&](const char* destination) {
            Words words = {"export", "lib", destination};
            if (*dryRun != '\0') {
                words.emplace_back(dryRun);
            }
            return run(words);
        };
        EXPECT_EQ(failure("file"), (Ending{3, "", "kxbox: file: not a directory\n"}));
        EXPECT_EQ(failure("no/where"), (Ending{3, "", nowhere}));
        EXPECT_EQ(failure(""), (Ending{3, "", "kxbox: '': no path\n"}));
    }
    EXPECT_EQ(getLocal(path("file")), QByteArray("mine"));
}

TEST_P(Exporting, DoesNotWriteIntoTheLibrary)
{
    if (GetParam() == Form::Directory) {
        ASSERT_EQ(::symlink("lib", path("link").toStdString().c_str()), 0);
        for (const char* const inside :
             {"lib", "lib/", "lib/new", "link", "link/Motion", "./lib/../lib/Motion/new"}) {
            expectRefused("lib", {"export", "lib", inside}, 3,
                          "kxbox: " + std::string(inside) + ": it lies in the library itself\n");
        }
        EXPECT_EQ(run({"export", "lib", "lib2", "--dry-run"}).exitCode, 0);
    } else {
        expectRefused("lib", {"export", "lib", "lib"}, 3, "kxbox: lib: not a directory\n");
    }
}

class Places : public ToolTest
{
};

TEST_F(Places, OfNewLibrariesAreFreeAndInNoOther)
{
    make("lib", Form::Directory, "add-folder / A\n");
    make("other");
    const Files before = filesOf(path());
    const std::string inside =
        ": it would lie in the library '" + path("lib").toStdString() + "'\n";
    for (const Words& words : {Words{"new"}, Words{"convert", "other"}}) {
        const auto error = [&](const std::string& place) {
            Words all = words;
            all.insert(all.end(), {place, "--format", "directory", "--dry-run"});
            const Ending planned = run(all);
            all.pop_back();
            EXPECT_EQ(run(all), planned);
            EXPECT_EQ(planned.exitCode, 3);
            return planned.error;
        };
        EXPECT_EQ(error("lib/A/new"), "kxbox: lib/A/new" + inside);
        EXPECT_EQ(error("no/new"), "kxbox: no/new: the directory '" + path("no").toStdString() +
                                       "' does not exist\n");
        EXPECT_EQ(error("lib"), "kxbox: lib: something is there already\n");
        EXPECT_EQ(error(""), "kxbox: '': no path\n");
    }
    EXPECT_EQ(filesOf(path()), before);
}

TEST_F(Places, OfExportsAreInNoLibrary)
{
    make("lib");
    copySample("other");
    expectRefused("lib", {"export", "other", "lib/out"}, 3,
                  "kxbox: lib/out: it would lie in the library '" + path("lib").toStdString() +
                      "'\n");
}

class ExportingMadeOnes : public ToolTest
{
};

TEST_F(ExportingMadeOnes, MayBeNothing)
{
    make("lib");
    EXPECT_EQ(run({"export", "lib", "out"}), (Ending{0, "0 behaviours exported to out\n", ""}));
    EXPECT_TRUE(QFileInfo(path("out")).isDir());
}

} // namespace
} // namespace kxbox::test
