#include "tool.hpp"

#include <nlohmann/json.hpp>

namespace kxbox::test {
namespace {

class ShowingTheSample : public SampleInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(, ShowingTheSample, testing::Values(Form::Directory, Form::Archive),
                         nameOf);

TEST_P(ShowingTheSample, SaysWhatItHolds)
{
    const bool isDirectory = GetParam() == Form::Directory;
    std::size_t bytes = 0;
    for (const auto& [name, content] : filesOf(path("lib"))) {
        bytes += name == ".kxproject" ? 0 : content.size();
    }
    const std::string form = isDirectory ? "directory" : "archive";
    EXPECT_EQ(run({"info", "lib"}), (Ending{0,
                                            "title       Standard\n"
                                            "form        " +
                                                form +
                                                "\n"
                                                "folders     17\n"
                                                "boxes       67\n"
                                                "behaviours  13\n"
                                                "resources   94\n"
                                                "languages   de, fr, ja\n"
                                                "size        " +
                                                std::to_string(bytes) +
                                                " bytes\n"
                                                "read-only   no\n",
                                            ""}));
    EXPECT_EQ(json({"info", "lib"}), (nlohmann::ordered_json{{"library", "lib"},
                                                             {"title", "Standard"},
                                                             {"form", form},
                                                             {"folders", 17},
                                                             {"boxes", 67},
                                                             {"behaviours", 13},
                                                             {"resources", 94},
                                                             {"languages", {"de", "fr", "ja"}},
                                                             {"bytes", bytes},
                                                             {"readOnly", false}}));
}

TEST_P(ShowingTheSample, DrawsFoldersAndBoxes)
{
    EXPECT_EQ(run({"tree", "lib", "Speech"}), (Ending{0,
                                                      "Speech/\n"
                                                      "├── Questions?/\n"
                                                      "│   ├── Yes or no?\n"
                                                      "│   ├── Ask: what is your name?\n"
                                                      "│   └── Listen for words\n"
                                                      "├── Say\n"
                                                      "├── Say ...\n"
                                                      "├── Tell a story  [behaviour]\n"
                                                      "├── Volume\n"
                                                      "└── Choose a language\n",
                                                      ""}));
    EXPECT_EQ(run({"tree", "lib", "Questions%3f", "--file-names"}).exitCode, 3);
    EXPECT_EQ(run({"tree", "lib", "Speech/Questions%3f", "--file-names", "--depth", "0"}),
              (Ending{0, "Questions?/\n", ""}));
    EXPECT_EQ(run({"tree", "lib", "Speech/Tell a story"}),
              (Ending{0, "Tell a story  [behaviour]\n", ""}));
}

TEST_P(ShowingTheSample, DrawsAsManyLevelsAsAskedFor)
{
    EXPECT_EQ(run({"tree", "lib", "--depth", "0"}), (Ending{0, "Standard/\n", ""}));
    EXPECT_EQ(run({"tree", "lib", "/", "--depth", "1"}), (Ending{0,
                                                                 "Standard/\n"
                                                                 "├── Motion/\n"
                                                                 "├── Speech/\n"
                                                                 "├── Vision/\n"
                                                                 "├── Sensing/\n"
                                                                 "├── Lights & sounds/\n"
                                                                 "├── Logic/\n"
                                                                 "├── Flow control/\n"
                                                                 "├── Data/\n"
                                                                 "└── Templates/\n",
                                                                 ""}));
    EXPECT_EQ(run({"tree", "lib", "--depth", "9"}), run({"tree", "lib"}));
    EXPECT_EQ(q(run({"tree", "lib"}).out).count(QLatin1Char('\n')), 1 + 17 + 67);
}

TEST_P(ShowingTheSample, ListsFoldersAndBoxes)
{
    EXPECT_EQ(json({"tree", "lib", "Data", "--depth", "1"}), nlohmann::ordered_json::parse(R"(
        {"library": "lib", "tree": {"name": "Data", "fileName": "Data", "kind": "folder",
          "children": [
            {"name": "Text", "fileName": "Text", "kind": "folder", "childCount": 3},
            {"name": "Numbers", "fileName": "Numbers", "kind": "folder", "childCount": 3},
            {"name": "Remember", "fileName": "Remember", "kind": "box", "behaviour": false},
            {"name": "Recall", "fileName": "Recall", "kind": "box", "behaviour": false},
            {"name": "Write to the log", "fileName": "Write to the log", "kind": "box",
             "behaviour": false}]}})"));
    EXPECT_EQ(json({"tree", "lib", "Motion/Dances/Left \\/ right"}),
              nlohmann::ordered_json::parse(R"(
        {"library": "lib", "tree": {"name": "Left / right", "fileName": "Left %2f right",
          "kind": "box", "behaviour": true}})"));
}

TEST_P(ShowingTheSample, ShowsAllOfABox)
{
    EXPECT_EQ(run({"show", "lib", "Logic/Not"}),
              (Ending{0,
                      "box         Logic/Not\n"
                      "directory   Logic/Not\n"
                      "tooltip     Turns true into false and false into true.\n"
                      "bitmaps     icon.png\n"
                      "expanded    no\n"
                      "resources   icon.png\n"
                      "inputs\n"
                      "  a  The first condition.\n"
                      "outputs\n"
                      "  result  The result, whenever an input changes.\n"
                      "messages in de\n"
                      "  Turns true into false and false into true.\n"
                      "    Macht aus wahr falsch und aus falsch wahr.\n"
                      "  a\n"
                      "    a\n"
                      "  The first condition.\n"
                      "    Die erste Bedingung.\n"
                      "  result\n"
                      "    Ergebnis\n"
                      "  The result, whenever an input changes.\n"
                      "    Das Ergebnis, sobald sich ein Eingang ändert.\n"
                      "messages in fr\n"
                      "  Turns true into false and false into true.\n"
                      "    Change le vrai en faux et le faux en vrai.\n"
                      "  a\n"
                      "    a\n"
                      "  The first condition.\n"
                      "    La première condition.\n"
                      "  result\n"
                      "    résultat\n"
                      "  The result, whenever an input changes.\n"
                      "    Le résultat, à chaque changement d’une entrée.\n"
                      "messages in ja\n"
                      "  Turns true into false and false into true.\n"
                      "    (unfinished)\n"
                      "  a\n"
                      "    (unfinished)\n"
                      "  The first condition.\n"
                      "    (unfinished)\n"
                      "  result\n"
                      "    (unfinished)\n"
                      "  The result, whenever an input changes.\n"
                      "    (unfinished)\n",
                      ""}));
    const auto box = json({"show", "lib", "Motion/Dances/Left %2f right", "--file-names"});
    EXPECT_EQ(box["node"], "Motion/Dances/Left %2f right");
    EXPECT_EQ(box["behaviour"], true);
    EXPECT_EQ(box["resources"], (nlohmann::ordered_json{"icon.png", "icons/small.png"}));
}

TEST_P(ShowingTheSample, ListsAllOfABox)
{
    const auto box = json({"show", "lib", "Motion/Walking/Walk"});
    EXPECT_EQ(box["library"], "lib");
    EXPECT_EQ(box["node"], "Motion/Walking/Walk");
    EXPECT_EQ(box["directory"], "Motion/Walking/Walk");
    EXPECT_EQ(box["behaviour"], false);
    EXPECT_EQ(box["bitmaps"], nlohmann::ordered_json{"icon.png"});
    EXPECT_EQ(box["expanded"], true);
    EXPECT_EQ(box["parameters"][1], nlohmann::ordered_json::parse(R"(
        {"id": 6, "name": "speed",
         "tooltip": "How fast it moves, in percent of the greatest speed.", "contentType": 1,
         "value": "60", "defaultValue": "60", "minimum": "5", "maximum": "100", "choices": [],
         "customChoice": false, "inheritsFromParent": false})"));
    const auto logic = json({"show", "lib", "Logic/Not"});
    EXPECT_EQ(logic["inputs"], nlohmann::ordered_json::parse(R"(
        [{"id": 1, "name": "a", "tooltip": "The first condition.", "type": 4, "typeSize": 1,
          "nature": 1, "inner": false}])"));
    EXPECT_EQ(logic["parameters"], nlohmann::ordered_json::array());
    EXPECT_EQ(logic["messages"]["fr"][3], nlohmann::ordered_json::parse(R"(
        {"source": "result", "translation": "résultat", "state": "finished"})"));
    EXPECT_EQ(logic["messages"]["ja"][0]["state"], "unfinished");
}

TEST_P(ShowingTheSample, PrintsTheBoxFile)
{
    const QByteArray file = getLocal(q(KXBOX_SAMPLE "/Logic/Not/box.bhx"));
    EXPECT_EQ(run({"show", "lib", "Logic/Not", "--xml"}), (Ending{0, file.toStdString(), ""}));
    EXPECT_EQ(json({"show", "lib", "Logic/Not", "--xml"}),
              (nlohmann::ordered_json{
                  {"library", "lib"}, {"node", "Logic/Not"}, {"xml", file.toStdString()}}));
}

class ShowingMadeOnes : public ToolTest
{
};

TEST_F(ShowingMadeOnes, SaysWhatAnEmptyOneHolds)
{
    make("lib.bxl");
    const auto info = json({"info", "lib.bxl"});
    EXPECT_EQ(info["title"], "lib");
    EXPECT_EQ(info["folders"], 0);
    EXPECT_EQ(info["languages"], nlohmann::ordered_json::array());
    EXPECT_NE(run({"info", "lib.bxl"}).out.find("languages   -\n"), std::string::npos);
    EXPECT_EQ(json({"tree", "lib.bxl"})["tree"], nlohmann::ordered_json::parse(R"(
        {"name": "lib", "fileName": "", "kind": "folder", "children": []})"));
}

TEST_F(ShowingMadeOnes, ControlsNoTerminalByNamesAndTexts)
{
    make("lib");
    putBoxFile("lib/a\x1b[2J/box.bhx",
               R"(<Box tooltip="t&#10;u"><Parameter name="p&#9;q" inherits_from_parent="0"
        content_type="0" value="v&#10;w" default_value="" custom_choice="0" tooltip="" id="1"/>
        </Box>)");
    putLocal(path("lib/a\x1b[2J/r\n"), "");
    const Ending ending = run({"show", "lib", "a\x1b[2J"});
    EXPECT_EQ(ending.out, "box         a\\x1b[2J\n"
                          "directory   a\\x1b[2J\n"
                          "tooltip     t\\nu\n"
                          "bitmaps     -\n"
                          "expanded    yes\n"
                          "resources   r\\n\n"
                          "parameters\n"
                          "  p\\tq  = v\\nw\n");
    EXPECT_EQ(ending.error.find('\x1b'), std::string::npos);
    EXPECT_EQ(run({"tree", "lib"}).out, "lib/\n└── a\\x1b[2J\n");
}

TEST_F(ShowingMadeOnes, WarnsOfFileNamesThatAreNotUtf8)
{
    make("lib");
    QDir().mkpath(path("lib/A"));
    const std::string good = path("lib/A").toStdString();
    const std::string bad = path("lib").toStdString() + "/A\xff";
    ASSERT_EQ(::rename(good.c_str(), bad.c_str()), 0);
    EXPECT_EQ(run({"tree", "lib"}),
              (Ending{0, "lib/\n",
                      "kxbox: warning: " + path("lib").toStdString() +
                          "/A\\xff: left out of the project, because its name is not UTF-8\n"}));
    EXPECT_EQ(::rename(bad.c_str(), good.c_str()), 0); // or Qt could not remove it
}

} // namespace
} // namespace kxbox::test
