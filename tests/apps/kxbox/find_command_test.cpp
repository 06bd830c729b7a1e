#include "tool.hpp"

#include <nlohmann/json.hpp>

namespace kxbox::test {
namespace {

class Finding : public SampleInBothForms
{
};

INSTANTIATE_TEST_SUITE_P(, Finding, testing::Values(Form::Directory, Form::Archive), nameOf);

TEST_P(Finding, LooksAtNamesTextsAndTranslations)
{
    EXPECT_EQ(run({"find", "lib", "TRUE"}),
              (Ending{0,
                      "Logic/Both\n"
                      "  tooltip: True when both conditions are true.\n"
                      "Logic/Either | or\n"
                      "  tooltip: True when at least one condition is true.\n"
                      "  io: False when both are true.\n"
                      "Logic/Not\n"
                      "  tooltip: Turns true into false and false into true.\n"
                      "Flow control/If \\/ else\n"
                      "  io: The value, when the condition is true.\n",
                      ""}));
    EXPECT_EQ(run({"find", "lib", "vrai", "--in", "tooltip"}),
              (Ending{0,
                      "Logic/Both\n"
                      "  tooltip (fr): Vrai lorsque les deux conditions sont vraies.\n"
                      "Logic/Either | or\n"
                      "  tooltip (fr): Vrai lorsqu’au moins une condition est vraie.\n"
                      "Logic/Not\n"
                      "  tooltip (fr): Change le vrai en faux et le faux en vrai.\n",
                      ""}));
    EXPECT_EQ(run({"find", "lib", "OLÉ!"}).out, "Motion/Dances/Olé!\n  name: Olé!\n");
}

TEST_P(Finding, LooksWhereAskedTo)
{
    EXPECT_EQ(run({"find", "lib", "limp", "--in", "name"}),
              (Ending{0, "Motion/Posture/Go limp\n  name: Go limp\n", ""}));
    EXPECT_EQ(run({"find", "lib", "limp", "--in", "tooltip,io"}), (Ending{0, "", ""}));
    EXPECT_EQ(run({"find", "lib", "true", "--in", "name,io"}).out,
              "Logic/Either | or\n"
              "  io: False when both are true.\n"
              "Flow control/If \\/ else\n"
              "  io: The value, when the condition is true.\n");
    EXPECT_EQ(run({"find", "lib", "vrai", "--lang", "de"}), (Ending{0, "", ""}));
    EXPECT_EQ(run({"find", "lib", "niemals"}).out, "");
    EXPECT_EQ(run({"find", "lib", "%2f", "--file-names"}), (Ending{0, "", ""}));
    EXPECT_EQ(run({"find", "lib", "left /", "--file-names", "--in", "name"}).out,
              "Motion/Dances/Left %2f right\n  name: Left / right\n");
}

TEST_P(Finding, ListsWhatItFinds)
{
    EXPECT_EQ(json({"find", "lib", "vrai en", "--lang", "fr"}), nlohmann::ordered_json::parse(R"(
        {"library": "lib", "nodes": [{"node": "Logic/Not", "matches": [
          {"in": "tooltip", "language": "fr",
           "text": "Change le vrai en faux et le faux en vrai."}]}]})"));
    EXPECT_EQ(json({"find", "lib", "Not", "--in", "name"})["nodes"],
              nlohmann::ordered_json::parse(R"(
        [{"node": "Logic/Not", "matches": [{"in": "name", "text": "Not"}]}])"));
    EXPECT_EQ(json({"find", "lib", "niemals"})["nodes"], nlohmann::ordered_json::array());
}

TEST_P(Finding, KnowsWhichLanguagesThereAre)
{
    expectRefused("lib", {"find", "lib", "x", "--lang", "xx"}, 3, "kxbox: lib: no language 'xx'\n");
}

class FindingInMadeOnes : public ToolTest
{
};

TEST_F(FindingInMadeOnes, KeepsTextsOfBoxesApart)
{
    putBoxFile("box.bhx", R"(<Box tooltip="T"/>)");
    make("lib", Form::Directory,
         "add-folder / A\nadd-folder / B\nadd-box A Box --from box.bhx\n"
         "add-box B Box --from box.bhx\n");
    putMessages("lib", "de", {{"A/Box", "T", "eins"}, {"B/Box", "T", "zwei"}});
    putMessages("lib", "fr", {{"A/Box", "T", "eins fr"}, {"A/Box", "U", "eins"}});
    EXPECT_EQ(run({"find", "lib", "eins"}),
              (Ending{0, "A/Box\n  tooltip (de): eins\n  tooltip (fr): eins fr\n", ""}));
    EXPECT_EQ(run({"find", "lib", "zwei"}), (Ending{0, "B/Box\n  tooltip (de): zwei\n", ""}));
}

} // namespace
} // namespace kxbox::test
