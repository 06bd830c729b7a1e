// tr get and tr set.
#include "translations.hpp"

#include <nlohmann/json.hpp>

#include <utility>
#include <vector>

namespace kxbox::test {

namespace {

using namespace translations;

class SingleTranslations : public TranslationsInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(, SingleTranslations, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

TEST_P(SingleTranslations, CanBeReadOneByOne)
{
    copySample("lib", GetParam());
    const std::string box = "Motion/Posture/Stand up";
    EXPECT_EQ(run({"tr", "get", "lib", box, "ja", "tries"}), (Ending{0, "試行回数\n", ""}));
    EXPECT_EQ(json({"tr", "get", "lib", box, "ja", "tries"}), nlohmann::ordered_json::parse(R"({
        "library": "lib", "node": "Motion/Posture/Stand up", "language": "ja", "source": "tries",
        "translation": "試行回数", "state": "unfinished"})"));
    EXPECT_EQ(run({"tr", "get", "lib", box, "ja", "How often it tries before it gives up."}),
              (Ending{0, "\n", ""}));
}

TEST_P(SingleTranslations, AreReadFromTheMessageWithoutAComment)
{
    makeLibrary();
    putTs("fr",
          ts("fr", context("Library:/Motion/Walk",
                           message("Goes", "un", "", "c") + message("Goes", "deux\ntrois") +
                               message("start", "un", "", "c") + message("start", "deux", "", "d") +
                               message("done", "un", "", "c")) +
                       context("Library:/Motion", message("Motion", "Mouvement"))));
    EXPECT_EQ(run({"tr", "get", "lib", "Motion/Walk", "fr", "Goes"}),
              (Ending{0, "deux\\ntrois\n", ""}));
    EXPECT_EQ(run({"tr", "get", "lib", "Motion/Walk", "fr", "done"}), (Ending{0, "un\n", ""}));
    EXPECT_EQ(run({"tr", "get", "lib", "Motion", "fr", "Motion"}), (Ending{0, "Mouvement\n", ""}));
    const std::string reason =
        "lib: 'start' is ambiguous: 'Motion/Walk' has messages with different comments for it";
    expectFailure({"tr", "get", "lib", "Motion/Walk", "fr", "start"}, reason);
    expectFailure({"tr", "set", "lib", "Motion/Walk", "fr", "start", "x"}, reason);
}

TEST_P(SingleTranslations, AreSetOneByOne)
{
    makeLibrary();
    EXPECT_EQ(run({"tr", "add", "lib", "fr"}).exitCode, 0);
    const Words set{"tr", "set", "lib", "Motion/Walk", "fr", "Goes"};
    const auto to = [&set](const Words& more) {
        Words words = set;
        words.insert(words.end(), more.begin(), more.end());
        return words;
    };
    const std::string empty = message("Goes", "", "unfinished");
    const auto expectWritten = [&](const std::string& now) {
        std::string walk = a_untranslatedWalk;
        walk.replace(walk.find(empty), empty.size(), now);
        EXPECT_EQ(getTs("fr"), ts("fr", walk + a_untranslatedSay));
    };
    expectEdit(to({"Va"}), "translation  Motion/Walk (fr): Goes -> Va\n");
    expectWritten(message("Goes", "Va"));
    expectNothing(to({"Va"}));
    expectEdit(to({"Va", "--unfinished"}), "unfinished  Motion/Walk (fr): Goes -> Va\n");
    expectWritten(message("Goes", "Va", "unfinished"));
    expectNothing(to({"Va", "--unfinished"}));
    expectEdit(to({"Va"}), "translation  Motion/Walk (fr): Goes -> Va\n");
    expectEdit(to({""}), "unfinished  Motion/Walk (fr): Goes\n");
    expectWritten(empty);
    expectNothing(to({""}));
    expectEdit(to({"[a,b]\n<\"c\">"}), "translation  Motion/Walk (fr): Goes -> [a,b]\\n<\"c\">\n");
    expectWritten(message("Goes", "[a,b]\n&lt;&quot;c&quot;&gt;"));
}

TEST_P(SingleTranslations, AreMadeForTextsWithoutAMessage)
{
    makeLibrary();
    putTs("fr", ts("fr", ""));
    EXPECT_EQ(json({"tr", "set", "lib", "Say: it", "fr", "text", "texte"}),
              nlohmann::ordered_json::parse(R"json({
        "library": "lib", "dryRun": false, "changes": [
            {"change": "translation", "subject": "Say: it (fr): text", "result": "texte"}]})json"));
    EXPECT_EQ(getTs("fr"), ts("fr", context("Library:/Say%3a it", message("text", "texte"))));
    EXPECT_EQ(run({"tr", "set", "lib", "Say%3a it", "fr", "Speaks 'it'", "Parle", "--file-names"}),
              (Ending{0, "translation  Say%3a it (fr): Speaks 'it' -> Parle\n", ""}));
    EXPECT_EQ(getTs("fr"), ts("fr", context("Library:/Say%3a it",
                                            message("text", "texte") +
                                                message("Speaks &apos;it&apos;", "Parle"))));
}

TEST_P(SingleTranslations, OfKeysThatAFileHasTwiceAreSetInAll)
{
    makeLibrary();
    putTs("fr", ts("fr", context("Library:/Motion/Walk",
                                 message("Goes", "un") + message("Goes", "deux"))));
    EXPECT_EQ(run({"tr", "set", "lib", "Motion/Walk", "fr", "Goes", ""}).exitCode, 0);
    EXPECT_EQ(getTs("fr"),
              ts("fr", context("Library:/Motion/Walk", message("Goes", "", "unfinished"))));
}

TEST_P(SingleTranslations, OfTextsThatAreGoneAreNotSet)
{
    makeLibrary();
    putTs("fr", ts("fr", context("Library:/Motion/Walk", message("old", "vieux", "vanished") +
                                                             message("Goes", "Va", "obsolete"))));
    expectFailure({"tr", "set", "lib", "Motion/Walk", "fr", "old", "x"},
                  "lib: 'Motion/Walk' has no text 'old' any more");
    expectEdit({"tr", "set", "lib", "Motion/Walk", "fr", "Goes", "Va"},
               "translation  Motion/Walk (fr): Goes -> Va\n");
    EXPECT_EQ(getTs("fr"),
              ts("fr", context("Library:/Motion/Walk",
                               message("old", "vieux", "vanished") + message("Goes", "Va"))));
}

TEST_P(SingleTranslations, WithPluralFormsHaveOneALine)
{
    makeLibrary();
    const auto forms = [](const std::string& one, const std::string& many, const char* state) {
        return ts("fr", context("Library:/Motion/Walk",
                                std::string("    <message numerus=\"yes\">\n"
                                            "        <source>Goes</source>\n"
                                            "        <translation") +
                                    state + ">\n            <numerusform>" + one +
                                    "</numerusform>\n            <numerusform>" + many +
                                    "</numerusform>\n        </translation>\n    </message>\n"));
    };
    const Words get{"tr", "get", "lib", "Motion/Walk", "fr", "Goes"};
    putTs("fr", forms("va", "vont", ""));
    EXPECT_EQ(run(get), (Ending{0, "va\nvont\n", ""}));
    EXPECT_EQ(json(get)["translations"], nlohmann::ordered_json::parse(R"(["va", "vont"])"));
    EXPECT_FALSE(json(get).contains("translation"));

    const auto set = [](const std::string& text) {
        return Words{"tr", "set", "lib", "Motion/Walk", "fr", "Goes", text};
    };
    expectNothing(set("va\nvont"));
    expectFailure(set("va"), "lib: the message needs its 2 plural forms, each on a line, not 1");
    expectFailure(set("a\nb\nc"),
                  "lib: the message needs its 2 plural forms, each on a line, not 3");
    EXPECT_EQ(run(set("marche\nmarchent")).exitCode, 0);
    EXPECT_EQ(getTs("fr"), forms("marche", "marchent", ""));
    EXPECT_EQ(run(set("")).exitCode, 0);
    EXPECT_EQ(getTs("fr"), forms("", "", " type=\"unfinished\""));
    expectNothing(set(""));
}

TEST_P(SingleTranslations, AreNotFoundForWrongWords)
{
    makeLibrary();
    EXPECT_EQ(run({"tr", "add", "lib", "fr"}).exitCode, 0);
    expectFailure({"tr", "get", "lib", "Walk", "fr", "Goes"},
                  "lib: no node 'Walk': the library has no 'Walk'");
    expectFailure({"tr", "set", "lib", "Walk", "fr", "Goes", "x"},
                  "lib: no node 'Walk': the library has no 'Walk'");
    for (const char* const language : {"de", "FR", ""}) {
        const std::string reason = std::string("lib: no language '") + language + "'";
        expectFailure({"tr", "get", "lib", "Motion/Walk", language, "Goes"}, reason);
        expectFailure({"tr", "set", "lib", "Motion/Walk", language, "Goes", "x"}, reason);
    }
    expectFailure({"tr", "get", "lib", "Motion/Walk", "fr", "goes"},
                  "lib: 'Motion/Walk' has no message 'goes' in 'fr'");
    expectFailure({"tr", "get", "lib", "Motion", "fr", ""},
                  "lib: 'Motion' has no message '' in 'fr'");
    expectFailure({"tr", "set", "lib", "Motion/Walk", "fr", "goes", "x"},
                  "lib: 'Motion/Walk' has no text 'goes'");
    expectFailure({"tr", "set", "lib", "Motion/Walk", "fr", "", "x"},
                  "lib: 'Motion/Walk' has no text ''");
    expectFailure({"tr", "set", "lib", "Motion", "fr", "Motion", "x"},
                  "lib: 'Motion' is a folder, which has no texts to translate");
    expectFailure({"tr", "set", "lib", "/", "fr", "x", "x"},
                  "lib: '/' is a folder, which has no texts to translate");
}

TEST_P(SingleTranslations, HaveNoControlCharacters)
{
    makeLibrary();
    EXPECT_EQ(run({"tr", "add", "lib", "fr"}).exitCode, 0);
    const std::vector<std::pair<std::string, std::string>> texts{
        {"a\x01", "U+0001"},         {"\x1b[1m", "U+001B"},      {"\x7f", "U+007F"},
        {"long\xc2\x9cs", "U+009C"}, {"\xef\xbf\xbe", "U+FFFE"}, {"\xef\xbf\xbf", "U+FFFF"}};
    for (const auto& [text, character] : texts) {
        expectFailure({"tr", "set", "lib", "Motion/Walk", "fr", "Goes", text},
                      "lib: a translation can't have the character " + character);
    }
    // What the arguments of a test can't have, the lines of a batch can.
    const std::string set = "tr set Motion/Walk fr Goes ";
    const std::string place = "kxbox: standard input:1: lib: ";
    EXPECT_EQ(run({"batch", "lib", "-"}, set + "'a" + '\0' + "b'"),
              (Ending{3, "", place + "a translation can't have the character U+0000\n"}));
    EXPECT_EQ(run({"batch", "lib", "-"}, set + "caf\xe9"),
              (Ending{2, "", "kxbox: standard input:1: 'caf\xef\xbf\xbd' is not UTF-8\n"}));
}

} // namespace

} // namespace kxbox::test
