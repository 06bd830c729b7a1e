// tr status, add and update, and what is the same for all commands of translations.
#include "translations.hpp"

#include <kr/localization/ts.hpp>

#include <nlohmann/json.hpp>

#include <unistd.h>
#include <utility>
#include <vector>

namespace kxbox::test {

namespace {

using namespace translations;

class Translations : public TranslationsInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(, Translations, testing::Values(Form::Directory, Form::Archive), nameOf);

// status

TEST_P(Translations, OfTheSampleAreCounted)
{
    copySample("lib", GetParam());
    EXPECT_EQ(run({"tr", "status", "lib"}),
              (Ending{0,
                      "folder                        de             fr             ja\n"
                      "Motion             182/182 100 %  182/182 100 %  168/182  92 %\n"
                      "Motion/Posture       44/44 100 %    44/44 100 %    40/44  90 %\n"
                      "Motion/Walking       44/44 100 %    44/44 100 %    39/44  88 %\n"
                      "Motion/Gestures      57/57 100 %    57/57 100 %    54/57  94 %\n"
                      "Motion/Dances        37/37 100 %    37/37 100 %    35/37  94 %\n"
                      "Speech               94/94 100 %    94/94 100 %    49/94  52 %\n"
                      "Speech/Questions?    41/41 100 %    41/41 100 %     0/41   0 %\n"
                      "Vision               61/61 100 %    61/61 100 %     0/61   0 %\n"
                      "Sensing              73/73 100 %    73/73 100 %     0/73   0 %\n"
                      "Sensing/Touch        20/20 100 %    20/20 100 %     0/20   0 %\n"
                      "Lights & sounds      33/33 100 %    33/33 100 %     0/33   0 %\n"
                      "Logic                54/54 100 %    54/54 100 %     0/54   0 %\n"
                      "Flow control         75/75 100 %    75/75 100 %     0/75   0 %\n"
                      "Data                 86/86 100 %    86/86 100 %     0/86   0 %\n"
                      "Data/Text            26/26 100 %    26/26 100 %     0/26   0 %\n"
                      "Data/Numbers         33/33 100 %    33/33 100 %     0/33   0 %\n"
                      "Templates            54/54 100 %    54/54 100 %     0/54   0 %\n"
                      "total              712/712 100 %  712/712 100 %  217/712  30 %\n"
                      "unfinished                     0              0             40\n"
                      "missing                        0              0            455\n"
                      "vanished                       0              0              0\n",
                      ""}));
}

TEST_P(Translations, AreCountedByLanguageAndFolder)
{
    makeLibrary();
    putTs("fr", ts("fr", context("Library:/Motion/Walk",
                                 message("Goes", "Va") + message("start", "", "unfinished") +
                                     message("start", "départ", "", "c") +
                                     message("Starts", "Démarre", "unfinished") +
                                     message("old", "vieux", "vanished") +
                                     message("older", "ancien", "obsolete") +
                                     message("done", "fini", "vanished")) +
                             context("Library:/Gone", message("x", "y")) +
                             context("Window", message("x", "y", "vanished"))));
    EXPECT_EQ(run({"tr", "status", "lib"}), (Ending{0,
                                                    "folder               fr\n"
                                                    "Motion        2/4  50 %\n"
                                                    "Motion/Empty          -\n"
                                                    "total         2/6  33 %\n"
                                                    "unfinished            2\n"
                                                    "missing               2\n"
                                                    "vanished              3\n",
                                                    ""}));
    EXPECT_EQ(json({"tr", "status", "lib"}), nlohmann::ordered_json::parse(R"({
        "library": "lib",
        "texts": 6,
        "languages": {"fr": {"finished": 2, "unfinished": 2, "missing": 2, "vanished": 3}},
        "folders": [
            {"node": "Motion", "texts": 4,
             "languages": {"fr": {"finished": 2, "unfinished": 2, "missing": 0}}},
            {"node": "Motion/Empty", "texts": 0,
             "languages": {"fr": {"finished": 0, "unfinished": 0, "missing": 0}}}]})"));
}

TEST_P(Translations, OfNoLanguageAreSaidToBeNone)
{
    makeLibrary();
    EXPECT_EQ(run({"tr", "status", "lib"}),
              (Ending{0, "No languages; 6 texts to translate.\n", ""}));
    EXPECT_EQ(json({"tr", "status", "lib"}), nlohmann::ordered_json::parse(R"({
        "library": "lib", "texts": 6, "languages": {}, "folders": [
            {"node": "Motion", "texts": 4, "languages": {}},
            {"node": "Motion/Empty", "texts": 0, "languages": {}}]})"));
}

TEST_P(Translations, AreCountedByFileNamesToo)
{
    make("lib", GetParam(), "add-folder / 'a: ü'\ntr add fr\n");
    EXPECT_EQ(run({"tr", "status", "lib"}).out.substr(0, 22), "folder      fr\na: ü  ");
    EXPECT_EQ(run({"tr", "status", "lib", "--file-names"}), (Ending{0,
                                                                    "folder      fr\n"
                                                                    "a%3a ü       -\n"
                                                                    "total        -\n"
                                                                    "unfinished   0\n"
                                                                    "missing      0\n"
                                                                    "vanished     0\n",
                                                                    ""}));
}

// add

TEST_P(Translations, CanBeBegunForANewLanguage)
{
    makeLibrary();
    expectEdit({"tr", "add", "lib", "pt_BR"}, "language  pt_BR\n"
                                              "messages  pt_BR -> 6 added\n");
    EXPECT_EQ(getTs("pt_BR"), ts("pt_BR", a_untranslatedWalk + a_untranslatedSay));
    expectNothing({"tr", "update", "lib"});
}

TEST_P(Translations, OfALibraryWithoutTextsCanBeBegun)
{
    make("lib", GetParam());
    expectEdit({"tr", "add", "lib", "fil-Latn-PH"}, "language  fil-Latn-PH\n");
    EXPECT_EQ(getTs("fil-Latn-PH"), ts("fil-Latn-PH", ""));
}

TEST_P(Translations, OfANewLanguageAreOfTheOthersSourceLanguage)
{
    make("lib", GetParam());
    putTs("de", ts("de", "", "ja"));
    putTs("it", ts("it", "", "ja"));
    EXPECT_EQ(run({"tr", "add", "lib", "fr"}).exitCode, 0);
    EXPECT_EQ(getTs("fr"), ts("fr", "", "ja"));
    putTs("it", ts("it", "", "en_GB"));
    EXPECT_EQ(run({"tr", "add", "lib", "es"}).exitCode, 0);
    EXPECT_EQ(getTs("es"), ts("es", "", "en"));
}

TEST_P(Translations, OfANewLanguageAreFromEnglishWhenTheOthersDoNotSay)
{
    make("lib", GetParam());
    putTs("de", ts("de", "", ""));
    EXPECT_EQ(run({"tr", "add", "lib", "fr"}).exitCode, 0);
    EXPECT_EQ(getTs("fr"), ts("fr", "", "en"));
    EXPECT_EQ(getTs("de"), ts("de", "", ""));
}

TEST_P(Translations, AreNotBegunForWhatIsNoLanguage)
{
    makeLibrary();
    for (const std::string code : {"", "f", "fren", "f1", "fr_", "_fr", "fr_B", "fr__BR", "fr BR",
                                   "fr_ABCDEFGHI", "fr/BR", "../fr", "fr\n", "fr_B\xc3\x9c"}) {
        const std::string shown = code == "fr\n" ? "fr\\n" : code;
        expectFailure({"tr", "add", "lib", code},
                      "lib: '" + shown + "' is no language code such as fr or pt_BR");
    }
    EXPECT_EQ(run({"tr", "add", "lib", "pt_BR"}).exitCode, 0);
    for (const char* const code : {"pt_BR", "PT_br", "pt-BR"}) {
        expectFailure({"tr", "add", "lib", code}, "lib: the language 'pt_BR' is there already");
    }
}

// update

TEST_P(Translations, OfTheSampleAreUpToDate)
{
    copySample("lib", GetParam());
    expectNothing({"tr", "update", "lib"});
}

TEST_P(Translations, OfNoLanguageAreUpToDate)
{
    makeLibrary();
    expectNothing({"tr", "update", "lib"});
}

TEST_P(Translations, FollowTheTexts)
{
    makeLibrary();
    const std::string window = context("Window", message("x", "", "unfinished"));
    putTs("de", ts("de", ""));
    putTs("fr",
          ts("fr",
             window +
                 context("Library:/Motion/Walk",
                         message("gone", "parti") + message("done", "fini", "vanished") +
                             message("lost", "", "unfinished") + message("Goes", "Va", "", "tip") +
                             message("Starts", "Démarre", "obsolete")) +
                 context("Library:/Gone", message("x", "y", "unfinished"))));
    expectEdit({"tr", "update", "lib"},
               "messages  de -> 6 added\n"
               "messages  fr -> 3 added, 2 vanished, 2 restored, 1 removed\n");
    EXPECT_EQ(getTs("de"), ts("de", a_untranslatedWalk + a_untranslatedSay));
    EXPECT_EQ(getTs("fr"),
              ts("fr", window +
                           context("Library:/Motion/Walk",
                                   message("gone", "parti", "vanished") + message("done", "fini") +
                                       message("Goes", "Va", "", "tip") +
                                       message("Starts", "Démarre", "unfinished") +
                                       message("start", "", "unfinished")) +
                           context("Library:/Gone", message("x", "y", "vanished")) +
                           a_untranslatedSay));
    expectNothing({"tr", "update", "lib"});
}

TEST_P(Translations, TellTheirChangesAsJson)
{
    makeLibrary();
    putTs("fr", ts("fr", ""));
    EXPECT_EQ(json({"tr", "update", "lib", "--dry-run"}), nlohmann::ordered_json::parse(R"({
        "library": "lib", "dryRun": true, "changes": [
            {"change": "messages", "subject": "fr", "result": "6 added"}]})"));
    EXPECT_EQ(getTs("fr"), ts("fr", ""));
}

TEST_P(Translations, VanishWithAnEditedTooltipAndComeBackWithIt)
{
    copySample("lib", GetParam());
    const std::string box = "Motion/Posture/Stand up";
    const std::string before = "Gets up from any posture and stands still.";
    const Files untouched = filesOf(path("lib"));
    const std::string french = getTs("fr");
    const std::string finished =
        message(before, "Se lève depuis n’importe quelle posture et reste debout, immobile.");
    ASSERT_NE(french.find(finished), std::string::npos);

    EXPECT_EQ(run({"set", "lib", box, "--tooltip", "Rises"}).exitCode, 0);
    expectEdit({"tr", "update", "lib"}, "messages  de -> 1 added, 1 vanished\n"
                                        "messages  fr -> 1 added, 1 vanished\n"
                                        "messages  ja -> 1 added, 1 vanished\n");
    std::string expected = french;
    expected.replace(expected.find(finished), finished.size(),
                     message(before,
                             "Se lève depuis n’importe quelle posture et reste debout, immobile.",
                             "vanished"));
    expected.insert(expected.find("</context>"), message("Rises", "", "unfinished"));
    EXPECT_EQ(getTs("fr"), expected);

    EXPECT_EQ(run({"set", "lib", box, "--tooltip", before}).exitCode, 0);
    expectEdit({"tr", "update", "lib"}, "messages  de -> 1 restored, 1 removed\n"
                                        "messages  fr -> 1 restored, 1 removed\n"
                                        "messages  ja -> 1 restored, 1 removed\n");
    if (GetParam() == Form::Directory) {
        EXPECT_EQ(filesOf(path("lib")), untouched);
    }
    EXPECT_EQ(getTs("fr"), french);
}

TEST_P(Translations, FollowARenamedBox)
{
    copySample("lib", GetParam());
    EXPECT_EQ(run({"rename", "lib", "Motion/Posture", "Poses: all"}).exitCode, 0);
    expectNothing({"tr", "update", "lib"});
    EXPECT_EQ(run({"tr", "get", "lib", "Motion/Poses: all/Stand up", "fr", "speed"}),
              (Ending{0, "vitesse\n", ""}));
}

TEST_P(Translations, OfTextsOfSeveralLinesAreUpToDate)
{
    putBoxFile("odd.bhx", R"(<Box name="root" tooltip="a&#xd;b&#xa;c &amp;&#x9;&#xa0; 'd'"/>)");
    make("lib", GetParam(), "add-box / Odd --from odd.bhx\ntr add fr\n");
    expectNothing({"tr", "update", "lib"});
    EXPECT_EQ(run({"tr", "set", "lib", "Odd", "fr", "a\rb\nc &\t\u00a0 'd'", "x"}).exitCode, 0);
    EXPECT_EQ(json({"tr", "status", "lib"})["languages"]["fr"]["finished"], 1);
}

TEST_P(Translations, AreWrittenAsLinguistWritesThem)
{
    copySample("lib", GetParam());
    const std::string lines = "tr add it\n"
                              "set Motion/Walking/Turn --tooltip 'Turns \"around\" <&>'\n"
                              "tr update\n"
                              "tr set Motion/Walking/Turn it 'Turns \"around\" <&>' 'Gira\t<è>'\n";
    EXPECT_EQ(run({"batch", "lib", "-"}, lines).error, "");
    for (const char* const language : {"de", "fr", "it", "ja"}) {
        const std::string bytes = getTs(language);
        const auto read = KR::Localization::TS::translatorFrom(QByteArray::fromStdString(bytes));
        EXPECT_EQ(read.languageCode(), q(language));
        EXPECT_EQ(KR::Localization::TS::translatorTo(read, false).toStdString(), bytes);
    }
    EXPECT_EQ(run({"tr", "get", "lib", "Motion/Walking/Turn", "it", "Turns \"around\" <&>"}),
              (Ending{0, "Gira\\t<è>\n", ""}));
}

TEST_P(Translations, OfAFileThatCantBeReadAreNotLost)
{
    makeLibrary();
    putTs("fr", "no XML");
    putTs("de", ts("de", ""));
    const std::string reason =
        "lib: 1 of 2 translation files would be lost: 'kxbox check' says which and why";
    expectFailure({"tr", "update", "lib"}, reason);
    expectFailure({"tr", "add", "lib", "it"}, reason);
    expectFailure({"tr", "set", "lib", "Say: it", "de", "text", "Text"}, reason);
}

TEST_P(Translations, OfBoxesThatCannotBeReadStay)
{
    makeLibrary();
    ASSERT_EQ(run({"tr", "add", "lib", "de"}).exitCode, 0);
    const std::string before = getTs("de");
    pk::project::ProjectModel model(path("lib"));
    for (const QString& file : model.getFileList(QString(), false, true, false)) {
        if (file.endsWith(q("/box.bhx"))) {
            model.writeFile(file, "no XML");
        }
    }
    model.save(QString(), pk::project::ArchiveFormat::Source, true);
    expectNothing({"tr", "update", "lib"});
    EXPECT_EQ(getTs("de"), before);
}

TEST_P(Translations, OfWhatIsLeftOutOfADirectoryStay)
{
    makeLibrary();
    ASSERT_EQ(run({"tr", "add", "lib", "de"}).exitCode, 0);
    const std::string before = getTs("de");
    if (!QFileInfo(path("lib")).isDir()) {
        return; // an archive has nothing of the kind
    }
    ASSERT_TRUE(QDir().rename(path("lib/Motion"), path("elsewhere")));
    ASSERT_EQ(::symlink("../elsewhere", path("lib/Motion").toStdString().c_str()), 0);
    EXPECT_EQ(run({"tr", "update", "lib"}).out, "Nothing to change.\n");
    EXPECT_EQ(getTs("de"), before);
    run({"check", "lib", "--fix"});
    EXPECT_EQ(getTs("de"), before);
    ASSERT_TRUE(QFile::remove(path("lib/Motion")));
    EXPECT_NE(run({"tr", "update", "lib"}).out, "Nothing to change.\n");
    EXPECT_NE(getTs("de"), before);
}

TEST_P(Translations, OfWhatIsLeftOutStayWhereItsFolderGoes)
{
    makeLibrary();
    ASSERT_EQ(run({"tr", "add", "lib", "de"}).exitCode, 0);
    ASSERT_EQ(run({"tr", "set", "lib", "Motion/Walk", "de", "Goes", "Geht"}).exitCode, 0);
    if (!QFileInfo(path("lib")).isDir()) {
        return; // an archive has nothing of the kind
    }
    ASSERT_TRUE(QFile::rename(path("lib/Motion/Walk/box.bhx"), path("elsewhere")));
    ASSERT_EQ(
        ::symlink("../../../elsewhere", path("lib/Motion/Walk/box.bhx").toStdString().c_str()), 0);
    const std::string before = getTs("de");
    EXPECT_EQ(run({"batch", "lib", "-"}, "rename Motion Moved\ntr update\n").exitCode, 0);
    EXPECT_EQ(q(getTs("de")).replace(q("/Moved"), q("/Motion")).toStdString(), before);
}

TEST_P(Translations, NeedAllTheirWords)
{
    makeLibrary();
    EXPECT_EQ(run({"tr"}), (Ending{2, "", "kxbox: a command is missing (see 'kxbox --help')\n"}));
    EXPECT_EQ(run({"tr", "lib"}),
              (Ending{2, "", "kxbox: no command 'lib' (see 'kxbox --help')\n"}));
    const std::vector<std::pair<Words, std::string>> cases{
        {{"status"}, "LIB"},
        {{"update"}, "LIB"},
        {{"add", "lib"}, "LANG"},
        {{"get", "lib", "Motion/Walk", "fr"}, "SOURCE"},
        {{"set", "lib", "Motion/Walk", "fr", "Goes"}, "TEXT"}};
    for (const auto& [words, missing] : cases) {
        Words all{"tr"};
        all.insert(all.end(), words.begin(), words.end());
        EXPECT_EQ(run(all), (Ending{2, "",
                                    "kxbox: " + missing + " is required (see 'kxbox tr " +
                                        words.front() + " --help')\n"}));
    }
    EXPECT_EQ(run({"tr", "status", "none"}).exitCode, 3);
}

// batch

TEST_P(Translations, AreEditedInABatch)
{
    makeLibrary();
    EXPECT_EQ(run({"batch", "lib", "-"}, "tr add fr\n"
                                         "tr set Motion/Walk fr Goes Va\n"
                                         "set Motion/Walk --tooltip Walks\n"
                                         "tr update\n"
                                         "tr get Motion/Walk fr Goes\n"
                                         "tr status\n"),
              (Ending{0,
                      "language  fr\n"
                      "messages  fr -> 6 added\n"
                      "translation  Motion/Walk (fr): Goes -> Va\n"
                      "tooltip  Motion/Walk -> Walks\n"
                      "messages  fr -> 1 added, 1 vanished\n"
                      "Va\n"
                      "folder               fr\n"
                      "Motion        0/4   0 %\n"
                      "Motion/Empty          -\n"
                      "total         0/6   0 %\n"
                      "unfinished            0\n"
                      "missing               6\n"
                      "vanished              1\n",
                      ""}));
    EXPECT_EQ(getTs("fr"),
              ts("fr", context("Library:/Motion/Walk", message("Goes", "Va", "vanished") +
                                                           message("start", "", "unfinished") +
                                                           message("Starts", "", "unfinished") +
                                                           message("done", "", "unfinished") +
                                                           message("Walks", "", "unfinished")) +
                           a_untranslatedSay));
}

TEST_P(Translations, AreAsBeforeWhenABatchFails)
{
    makeLibrary();
    const Files before = filesOf(path("lib"));
    EXPECT_EQ(run({"batch", "lib", "-"}, "tr add fr\ntr set Motion/Walk de Goes Geht\n"),
              (Ending{3, "", "kxbox: standard input:2: lib: no language 'de'\n"}));
    EXPECT_EQ(filesOf(path("lib")), before);
}

} // namespace

} // namespace kxbox::test
