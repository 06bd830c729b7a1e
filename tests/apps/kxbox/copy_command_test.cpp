#include "tool.hpp"

#include <nlohmann/json.hpp>

namespace kxbox::test {
namespace {

/// A library "from" in the directory form with a folder F, in it the boxes "Box" and "Box (2)",
/// and in its folder G a box "Box"; all with messages of their own.
class Copying : public ToolInBothForms
{
protected:
    using Texts = std::vector<std::string>;

    void SetUp() override
    {
        make("from");
        for (const char* const box : {"F/Box", "F/Box (2)", "F/G/Box"}) {
            putBoxFile(std::string("from/") + box + "/box.bhx", R"(<Box tooltip="T"/>)");
            putLocal(path(std::string("from/") + box + "/r"), box);
        }
        putMessages("from", "fr",
                    {{"F/Box", "T", "one"}, {"F/Box (2)", "T", "two"}, {"F/G/Box", "T", "three"}});
        putMessages("from", "ja", {{"F/Box (2)", "T", "zwei"}});
        m_from = filesOf(path("from"));
    }
    void TearDown() override { EXPECT_EQ(filesOf(path("from")), m_from); }

    /// The translations of a box of "lib", and its resource.
    Texts belongings(const std::string& box) const
    {
        Texts found;
        const auto json = this->json({"show", "lib", box});
        for (const auto& language : json["messages"]) {
            for (const auto& message : language) {
                found.push_back(message["translation"].get<std::string>());
            }
        }
        found.push_back(filesIn("lib").at(json["directory"].get<std::string>() + "/r"));
        return found;
    }

private:
    Files m_from;
};

INSTANTIATE_TEST_SUITE_P(, Copying, testing::Values(Form::Directory, Form::Archive), nameOf);

TEST_P(Copying, TakesFilesAndMessagesOfAFolderAlong)
{
    make("lib", GetParam(), "add-folder / Top\n");
    EXPECT_EQ(runPlanned("lib", {"copy", "from", "F", "--into", "lib", "--to", "Top"}),
              "copy       F -> Top/F\n"
              "directory  F -> Top/F\n"
              "messages   Library:/F -> Library:/Top/F (fr 3, ja 1)\n"
              "language   fr\n"
              "language   ja\n");
    EXPECT_EQ(tree("lib"), "lib/\n└── Top/\n    └── F/\n        ├── Box\n        ├── Box (2)\n"
                           "        └── G/\n            └── Box\n");
    EXPECT_EQ(belongings("Top/F/Box"), (Texts{"one", "F/Box"}));
    EXPECT_EQ(belongings("Top/F/Box (2)"), (Texts{"two", "zwei", "F/Box (2)"}));
    EXPECT_EQ(belongings("Top/F/G/Box"), (Texts{"three", "F/G/Box"}));
}

TEST_P(Copying, NumbersEqualNamesAndMixesNothing)
{
    putBoxFile("box.bhx");
    make("lib", GetParam(), "add-box / Box --from box.bhx\n");
    EXPECT_EQ(runPlanned("lib", {"copy", "from", "F/Box (2)", "F/Box", "F/G/Box", "--into", "lib"}),
              "copy       F/Box (2) -> Box (2)\n"
              "directory  F/Box (2) -> Box (2)\n"
              "messages   Library:/F/Box (2) -> Library:/Box (2) (fr 1, ja 1)\n"
              "renumber   Box -> Box (3)\n"
              "copy       F/Box -> Box (3)\n"
              "directory  F/Box -> Box (3)\n"
              "messages   Library:/F/Box -> Library:/Box (3) (fr 1)\n"
              "renumber   Box -> Box (4)\n"
              "copy       F/G/Box -> Box (4)\n"
              "directory  F/G/Box -> Box (4)\n"
              "messages   Library:/F/G/Box -> Library:/Box (4) (fr 1)\n"
              "language   fr\n"
              "language   ja\n");
    EXPECT_EQ(belongings("Box (2)"), (Texts{"two", "zwei", "F/Box (2)"}));
    EXPECT_EQ(belongings("Box (3)"), (Texts{"one", "F/Box"}));
    EXPECT_EQ(belongings("Box (4)"), (Texts{"three", "F/G/Box"}));
    EXPECT_EQ(tree("lib"), "lib/\n├── Box\n├── Box (2)\n├── Box (3)\n└── Box (4)\n");
}

TEST_P(Copying, TakesTheNumberOffWhereTheNameIsFree)
{
    make("lib", GetParam());
    EXPECT_EQ(run({"copy", "from", "F/Box (2)", "F/Box", "--into", "lib"}).exitCode, 0);
    EXPECT_EQ(belongings("Box"), (Texts{"two", "zwei", "F/Box (2)"}));
    EXPECT_EQ(belongings("Box (2)"), (Texts{"one", "F/Box"}));
}

TEST_P(Copying, ReplacesMessagesThatAreLeftOverAtThePlace)
{
    make("made", Form::Directory, "add-folder / A\n");
    putMessages("made", "fr",
                {{"F/Box", "T", "left over"}, {"F/X", "T", "left over"}, {"A", "T", "mine"}});
    convert("made", "lib", GetParam());
    EXPECT_EQ(runPlanned("lib", {"copy", "from", "F", "--into", "lib"}),
              "messages   Library:/F (fr 2)\n"
              "copy       F -> F\n"
              "directory  F -> F\n"
              "messages   Library:/F -> Library:/F (fr 3, ja 1)\n"
              "language   ja\n");
    EXPECT_EQ(belongings("F/Box"), (Texts{"one", "F/Box"}));
    const std::string french = filesIn("lib").at("translations/translation_fr.ts");
    EXPECT_EQ(french.find("left over"), std::string::npos);
    EXPECT_NE(french.find("mine"), std::string::npos);
}

TEST_P(Copying, IntoTheSameLibraryWorksAlsoBelowTheNodeItself)
{
    convert("from", "lib", GetParam());
    EXPECT_EQ(run({"copy", "lib", "F", "--into", "lib", "--to", "F/G"}),
              (Ending{0,
                      "copy       F -> F/G/F\n"
                      "directory  F -> F/G/F\n"
                      "messages   Library:/F -> Library:/F/G/F (fr 3, ja 1)\n",
                      ""}));
    EXPECT_EQ(tree("lib"), "from/\n└── F/\n    ├── Box\n    ├── Box (2)\n    └── G/\n"
                           "        ├── Box\n        └── F/\n            ├── Box\n"
                           "            ├── Box (2)\n            └── G/\n"
                           "                └── Box\n");
    EXPECT_EQ(belongings("F/G/F/Box (2)"), (Texts{"two", "zwei", "F/Box (2)"}));
    EXPECT_EQ(belongings("F/Box (2)"), (Texts{"two", "zwei", "F/Box (2)"}));
}

TEST_P(Copying, ListsWhatItDoes)
{
    make("lib", GetParam());
    EXPECT_EQ(json({"copy", "from", "F/G", "--into", "lib", "--file-names"}),
              nlohmann::ordered_json::parse(R"(
        {"library": "lib", "dryRun": false, "changes": [
          {"change": "copy", "subject": "F/G", "result": "G"},
          {"change": "directory", "subject": "F/G", "result": "G"},
          {"change": "messages", "subject": "Library:/F/G", "result": "Library:/G",
           "messages": {"fr": 1}},
          {"change": "language", "subject": "fr"}]})"));
}

TEST_P(Copying, RefusesWhatItCannotDo)
{
    make("lib", GetParam(), "add-folder / A\n");
    expectRefused("lib", {"copy", "from", "/", "--into", "lib"}, 3,
                  "kxbox: from: '/' is the library's root, which stays as it is\n");
    expectRefused("lib", {"copy", "from", "X", "--into", "lib"}, 3,
                  "kxbox: from: no node 'X': the library has no 'X'\n");
    expectRefused("lib", {"copy", "from", "F", "--into", "lib", "--to", "X"}, 3,
                  "kxbox: lib: no node 'X': the library has no 'X'\n");
    expectRefused("lib", {"copy", "from", "F", "--into", "x"}, 3,
                  "kxbox: 'x': no such file or directory\n");
    make("bad", Form::Directory, "add-folder / A\nadd-folder A TRANSLATIONS\n");
    expectRefused("lib", {"copy", "bad", "A/TRANSLATIONS", "--into", "lib"}, 3,
                  "kxbox: the name 'TRANSLATIONS' is reserved: at the top of a library this is "
                  "the place of the translations\n");
    putBoxFile("bad/A/box.bhx/box.bhx");
    expectRefused("lib", {"copy", "bad", "A", "--into", "lib"}, 3,
                  "kxbox: the name 'box.bhx' is reserved: this is the name of a file of the "
                  "library\n");
    copySample("half");
    putLocal(path("half/translations/translation_xx.ts"), "<TS/>");
    expectRefused("lib", {"copy", "half", "Logic", "--into", "lib"}, 3,
                  "kxbox: half: 1 of 4 translation files would be lost: 'kxbox check' says which "
                  "and why\n");
}

} // namespace
} // namespace kxbox::test
