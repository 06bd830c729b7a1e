#include "tool.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace kxbox::test {
namespace {

/// A library "lib" whose folders A, B and C have a box "Box" each, with a resource and messages in
/// two languages that are all different.
class Reorganising : public ToolInBothForms
{
protected:
    using Json = nlohmann::ordered_json;

    void SetUp() override
    {
        putBoxFile("box.bhx", R"(<Box tooltip="T"/>)");
        make("made", Form::Directory);
        for (const char* const folder : {"A", "B", "C"}) {
            const std::string box = std::string("made/") + folder + "/Box";
            putBoxFile(box + "/box.bhx", R"(<Box tooltip="T"/>)");
            putLocal(path(box + "/data/r"), folder);
        }
        m_french = {{"A/Box", "T", "a"}, {"B/Box", "T", "b"}, {"C/Box", "T", "c"}};
        m_german = {{"A/Box", "T", "A"}, {"C/Box", "T", "C"}};
        finishSetUp();
    }

    void finishSetUp() const
    {
        putMessages("made", "fr", m_french);
        putMessages("made", "de", m_german);
        QDir(path("lib")).removeRecursively();
        QFile::remove(path("lib"));
        convert("made", "lib", GetParam());
    }

    /// What is left over from nodes that were there once, before all others.
    void addLeftOver(const std::string& path)
    {
        m_french.insert(m_french.begin(), {path, "T", "left over"});
        m_french.insert(m_french.begin(), {path, "U", "left over"});
        finishSetUp();
    }

    /// The translations of a box's messages into French and German, and its resource.
    std::vector<std::string> belongings(const std::string& box) const
    {
        std::vector<std::string> found;
        const Json json = this->json({"show", "lib", box});
        for (const char* const language : {"fr", "de"}) {
            for (const Json& message : json["messages"][language]) {
                found.push_back(message["translation"].get<std::string>());
            }
        }
        const std::string directory = json["directory"].get<std::string>();
        found.push_back(filesIn("lib").at(directory + "/data/r"));
        return found;
    }

    using Texts = std::vector<std::string>;

private:
    std::vector<Message> m_french;
    std::vector<Message> m_german;
};

INSTANTIATE_TEST_SUITE_P(, Reorganising, testing::Values(Form::Directory, Form::Archive), nameOf);

// rename

TEST_P(Reorganising, RenamingCarriesFilesAndMessages)
{
    EXPECT_EQ(runPlanned("lib", {"rename", "lib", "A", "X/Y"}),
              "rename     A -> X\\/Y\n"
              "directory  A -> X%2fY\n"
              "messages   Library:/A -> Library:/X%2fY (de 1, fr 1)\n");
    EXPECT_EQ(belongings("X\\/Y/Box"), (Texts{"a", "A", "A"}));
    EXPECT_EQ(runPlanned("lib", {"rename", "lib", "X%2fY/Box", "Büchse", "--file-names"}),
              "rename     X%2fY/Box -> X%2fY/Büchse\n"
              "directory  X%2fY/Box -> X%2fY/Büchse\n"
              "messages   Library:/X%2fY/Box -> Library:/X%2fY/Büchse (de 1, fr 1)\n");
    EXPECT_EQ(belongings("X\\/Y/Büchse"), (Texts{"a", "A", "A"}));
    EXPECT_EQ(tree("lib"), "made/\n├── X/Y/\n│   └── Büchse\n├── B/\n│   └── Box\n"
                           "└── C/\n    └── Box\n");
}

TEST_P(Reorganising, RenamingToATakenNameNumbers)
{
    EXPECT_EQ(run({"rename", "lib", "B", "A"}),
              (Ending{0,
                      "renumber   A -> A (2)\n"
                      "rename     B -> A (2)\n"
                      "directory  B -> A (2)\n"
                      "messages   Library:/B -> Library:/A (2) (fr 1)\n",
                      ""}));
    EXPECT_EQ(belongings("A (2)/Box"), (Texts{"b", "B"}));
    EXPECT_EQ(belongings("A/Box"), (Texts{"a", "A", "A"}));
}

TEST_P(Reorganising, RenamingToTheSameNameChangesNothing)
{
    const Files before = filesOf(path("lib"));
    EXPECT_EQ(run({"rename", "lib", "A", "A"}), (Ending{0, "Nothing to change.\n", ""}));
    EXPECT_EQ(run({"rename", "lib", "A", "A (5)"}), (Ending{0, "Nothing to change.\n", ""}));
    EXPECT_EQ(run({"rename", "lib", "A", "A", "--dry-run"}),
              (Ending{0, "Nothing to change.\n", ""}));
    EXPECT_EQ(filesOf(path("lib")), before);
}

TEST_P(Reorganising, RenamingKeepsMessagesWhereOthersAreLeftOver)
{
    addLeftOver("X/Box");
    EXPECT_EQ(runPlanned("lib", {"rename", "lib", "A", "X"}),
              "messages   Library:/X (fr 2)\n"
              "rename     A -> X\n"
              "directory  A -> X\n"
              "messages   Library:/A -> Library:/X (de 1, fr 1)\n");
    EXPECT_EQ(belongings("X/Box"), (Texts{"a", "A", "A"}));
}

TEST_P(Reorganising, RenamingDoesNotReplaceWhatTheTreeDoesNotKnow)
{
    putLocal(path("made/A/notes"), "mine");
    finishSetUp();
    expectRefused("lib", {"rename", "lib", "A/Box", "notes"}, 3,
                  "kxbox: lib: Could not move 'A/Box' to 'A/notes', reason: 'A/notes': it exists "
                  "already\n");
}

TEST_P(Reorganising, TheRootStays)
{
    const std::string error = "kxbox: lib: '/' is the library's root, which stays as it is\n";
    expectRefused("lib", {"rename", "lib", "/", "X"}, 3, error);
    expectRefused("lib", {"remove", "lib", "/"}, 3, error);
    expectRefused("lib", {"move", "lib", "/", "--to", "A"}, 3, error);
}

// remove

TEST_P(Reorganising, RemovingTakesFilesAndMessagesAlong)
{
    EXPECT_EQ(runPlanned("lib", {"remove", "lib", "C", "A/Box"}),
              "remove     C\n"
              "directory  C\n"
              "messages   Library:/C (de 1, fr 1)\n"
              "remove     A/Box\n"
              "directory  A/Box\n"
              "messages   Library:/A/Box (de 1, fr 1)\n");
    EXPECT_EQ(tree("lib"), "made/\n├── A/\n└── B/\n    └── Box\n");
    for (const auto& [name, bytes] : filesIn("lib")) {
        EXPECT_EQ(name.find("C/"), std::string::npos) << name;
        EXPECT_EQ(name.find("A/Box"), std::string::npos) << name;
        EXPECT_EQ(bytes.find("Library:/A"), std::string::npos) << name;
    }
    EXPECT_EQ(belongings("B/Box"), (Texts{"b", "B"}));
}

TEST_P(Reorganising, NodesAreTakenOnce)
{
    const std::string twice = "kxbox: lib: '/A/' is given twice\n";
    const std::string below = "kxbox: lib: 'A/Box' is below 'A', which is given too\n";
    for (const auto& [nodes, error] :
         {std::pair(Words{"A", "/A/"}, twice), std::pair(Words{"A", "A/Box"}, below),
          std::pair(Words{"A/Box", "A"}, below)}) {
        Words remove = {"remove", "lib"};
        remove.insert(remove.end(), nodes.begin(), nodes.end());
        expectRefused("lib", remove, 3, error);
        Words move = {"move", "lib", "--to", "B", "--"};
        move.insert(move.end(), nodes.begin(), nodes.end());
        expectRefused("lib", move, 3, error);
        Words copy = {"copy", "lib", "--into", "lib", "--"};
        copy.insert(copy.end(), nodes.begin(), nodes.end());
        expectRefused("lib", copy, 3, error);
    }
    expectRefused("lib", {"remove", "lib", "A/Box", "A/X"}, 3,
                  "kxbox: lib: no node 'A/X': 'A' has no 'X'\n");
}

// move

TEST_P(Reorganising, MovingCarriesFilesAndMessages)
{
    EXPECT_EQ(runPlanned("lib", {"move", "lib", "A", "--to", "B"}),
              "move       A -> B/A\n"
              "directory  A -> B/A\n"
              "messages   Library:/A -> Library:/B/A (de 1, fr 1)\n"
              "position   B/A -> 1\n");
    EXPECT_EQ(belongings("B/A/Box"), (Texts{"a", "A", "A"}));
    EXPECT_EQ(tree("lib"), "made/\n├── B/\n│   ├── Box\n│   └── A/\n│       └── Box\n"
                           "└── C/\n    └── Box\n");
    EXPECT_EQ(filesIn("lib").count("A/Box/box.bhx"), 0U);
    EXPECT_EQ(run({"move", "lib", "B/A/Box", "--to", "/", "--at", "0"}).exitCode, 0);
    EXPECT_EQ(belongings("Box"), (Texts{"a", "A", "A"}));
    EXPECT_EQ(tree("lib"), "made/\n├── Box\n├── B/\n│   ├── Box\n│   └── A/\n"
                           "└── C/\n    └── Box\n");
}

TEST_P(Reorganising, MovingNumbersEqualNamesAndMixesNothing)
{
    EXPECT_EQ(runPlanned("lib", {"move", "lib", "C/Box", "A/Box", "--to", "B", "--at", "0"}),
              "renumber   Box -> Box (2)\n"
              "move       C/Box -> B/Box (2)\n"
              "directory  C/Box -> B/Box (2)\n"
              "messages   Library:/C/Box -> Library:/B/Box (2) (de 1, fr 1)\n"
              "renumber   Box -> Box (3)\n"
              "move       A/Box -> B/Box (3)\n"
              "directory  A/Box -> B/Box (3)\n"
              "messages   Library:/A/Box -> Library:/B/Box (3) (de 1, fr 1)\n"
              "position   B/Box (2) -> 0\n"
              "position   B/Box (3) -> 1\n");
    EXPECT_EQ(belongings("B/Box"), (Texts{"b", "B"}));
    EXPECT_EQ(belongings("B/Box (2)"), (Texts{"c", "C", "C"}));
    EXPECT_EQ(belongings("B/Box (3)"), (Texts{"a", "A", "A"}));
    EXPECT_EQ(tree("lib"), "made/\n├── A/\n├── B/\n│   ├── Box (2)\n│   ├── Box (3)\n"
                           "│   └── Box\n└── C/\n");
}

TEST_P(Reorganising, MovingKeepsMessagesWhereOthersAreLeftOver)
{
    addLeftOver("B/Box (2)");
    EXPECT_EQ(runPlanned("lib", {"move", "lib", "A/Box", "--to", "B"}),
              "messages   Library:/B/Box (2) (fr 2)\n"
              "renumber   Box -> Box (2)\n"
              "move       A/Box -> B/Box (2)\n"
              "directory  A/Box -> B/Box (2)\n"
              "messages   Library:/A/Box -> Library:/B/Box (2) (de 1, fr 1)\n"
              "position   B/Box (2) -> 1\n");
    EXPECT_EQ(belongings("B/Box (2)"), (Texts{"a", "A", "A"}));
    EXPECT_EQ(belongings("B/Box"), (Texts{"b", "B"}));
}

TEST_P(Reorganising, FoldersDoNotGoIntoThemselves)
{
    ASSERT_EQ(run({"add-folder", "lib", "A", "Sub"}).exitCode, 0);
    const std::string error = "kxbox: lib: 'A' can't be moved into itself\n";
    expectRefused("lib", {"move", "lib", "A", "--to", "A"}, 3, error);
    expectRefused("lib", {"move", "lib", "B", "A", "--to", "A/Sub"}, 3, error);
    expectRefused("lib", {"move", "lib", "A", "--to", "B/Box"}, 3,
                  "kxbox: lib: 'B/Box' is a box, not a folder\n");
    expectRefused("lib", {"move", "lib", "A", "--to", "X"}, 3,
                  "kxbox: lib: no node 'X': the library has no 'X'\n");
    ASSERT_EQ(run({"add-folder", "lib", "A", "Translations"}).exitCode, 0);
    expectRefused("lib", {"move", "lib", "A/Translations", "--to", "/"}, 3,
                  "kxbox: the name 'Translations' is reserved: at the top of a library this is "
                  "the place of the translations\n");
}

TEST_P(Reorganising, MovingBackAndForthInOneBatchEndsWhereItBegan)
{
    const std::string before = tree("lib");
    EXPECT_EQ(run({"batch", "lib", "-"}, "move A/Box --to C\n"
                                         "move 'C/Box (2)' --to A\n"
                                         "rename A/Box X\n"
                                         "rename A/X Box\n")
                  .exitCode,
              0);
    EXPECT_EQ(tree("lib"), before);
    EXPECT_EQ(belongings("A/Box"), (Texts{"a", "A", "A"}));
    EXPECT_EQ(belongings("C/Box"), (Texts{"c", "C", "C"}));
    EXPECT_EQ(filesIn("lib").count("C/Box (2)/data/r"), 0U);
}

// positions, in a folder of five

class Positions : public ToolTest
{
protected:
    static constexpr int a_count = 5;

    void SetUp() override
    {
        make("lib", Form::Directory,
             "add-folder / F\nadd-folder F a\nadd-folder F b\nadd-folder F c\nadd-folder F d\n"
             "add-folder F e\n");
    }

    Words order() const
    {
        Words names;
        const auto json = this->json({"tree", "lib", "F", "--depth", "1"});
        for (const auto& child : json["tree"]["children"]) {
            names.push_back(child["name"].get<std::string>());
        }
        return names;
    }

    /// What a command reports and does to the order must be this.
    void expectOrder(const Words& words, const Words& before, const Words& after) const
    {
        const Ending ending = run(words);
        EXPECT_EQ(ending.exitCode, 0) << ending;
        EXPECT_EQ(order(), after) << testing::PrintToString(words);
        EXPECT_EQ(ending.out == "Nothing to change.\n", before == after) << ending;
    }
};

TEST_F(Positions, OfMovedNodesAreThoseAskedFor)
{
    for (const Words& moved :
         {Words{"a"}, Words{"c"}, Words{"e"}, Words{"b", "d"}, Words{"d", "b"},
          Words{"e", "a", "c"}, Words{"a", "b", "c", "d", "e"}, Words{"e", "d", "c", "b", "a"}}) {
        for (int at = 0; at <= a_count; ++at) {
            const Words before = order();
            const auto isMoved = [&moved](const std::string& name) {
                return std::find(moved.begin(), moved.end(), name) != moved.end();
            };
            Words after;
            std::remove_copy_if(before.begin(), before.begin() + at, std::back_inserter(after),
                                isMoved);
            after.insert(after.end(), moved.begin(), moved.end());
            std::remove_copy_if(before.begin() + at, before.end(), std::back_inserter(after),
                                isMoved);
            Words words = {"move", "lib", "--to", "F", "--at", std::to_string(at), "--"};
            for (const std::string& name : moved) {
                words.push_back("F/" + name);
            }
            expectOrder(words, before, after);
        }
    }
}

TEST_F(Positions, WithoutOneAreAtTheEnd)
{
    expectOrder({"move", "lib", "F/d", "F/a", "--to", "F"}, {}, {"b", "c", "e", "d", "a"});
}

TEST_F(Positions, OfAReorderedRunAreThoseAskedFor)
{
    for (int first = 0; first < a_count; ++first) {
        for (int last = first; last < a_count; ++last) {
            for (int destination = 0; destination <= a_count; ++destination) {
                const Words before = order();
                Words after = before;
                if (destination < first) {
                    std::rotate(after.begin() + destination, after.begin() + first,
                                after.begin() + last + 1);
                } else if (destination > last) {
                    std::rotate(after.begin() + first, after.begin() + last + 1,
                                after.begin() + destination);
                }
                expectOrder({"reorder", "lib", "F", std::to_string(first), std::to_string(last),
                             std::to_string(destination)},
                            before, after);
            }
        }
    }
}

TEST_F(Positions, AreReported)
{
    EXPECT_EQ(runPlanned("lib", {"reorder", "lib", "F", "0", "1", "3"}), "position  F/c -> 0\n"
                                                                         "position  F/a -> 1\n"
                                                                         "position  F/b -> 2\n");
    EXPECT_EQ(runPlanned("lib", {"move", "lib", "F/c", "F/e", "--to", "F", "--at", "1"}),
              "position  F/c -> 0\nposition  F/e -> 1\n");
    EXPECT_EQ(order(), (Words{"c", "e", "a", "b", "d"}));
}

TEST_F(Positions, AreOfNodesByFileNamesToo)
{
    ASSERT_EQ(run({"rename", "lib", "F", "F?"}).exitCode, 0);
    EXPECT_EQ(runPlanned("lib", {"reorder", "--file-names", "lib", "F%3f", "4", "4", "0"}),
              "position  F%3f/e -> 0\nposition  F%3f/a -> 1\nposition  F%3f/b -> 2\n"
              "position  F%3f/c -> 3\nposition  F%3f/d -> 4\n");
    EXPECT_EQ(runPlanned("lib", {"move", "--file-names", "lib", "F%3f/a", "--to", "/"}),
              "move       F%3f/a -> a\ndirectory  F%3f/a -> a\nposition   a -> 1\n");
    EXPECT_EQ(runPlanned("lib", {"remove", "--file-names", "lib", "F%3f/b"}),
              "remove     F%3f/b\ndirectory  F%3f/b\n");
}

struct RangeCase
{
    std::vector<std::string> words;
    std::string error;
};

class BadPositions : public Positions, public testing::WithParamInterface<RangeCase>
{
};

TEST_P(BadPositions, AreRefused)
{
    expectRefused("lib", GetParam().words, 3, "kxbox: lib: " + GetParam().error + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    , BadPositions,
    testing::Values(RangeCase{{"reorder", "lib", "F", "-1", "0", "0"},
                              "FIRST -1 is out of range: 'F' has 5 nodes, counted from 0"},
                    RangeCase{{"reorder", "lib", "F", "5", "5", "0"},
                              "FIRST 5 is out of range: 'F' has 5 nodes, counted from 0"},
                    RangeCase{{"reorder", "lib", "F", "0", "5", "0"},
                              "LAST 5 is out of range: 'F' has 5 nodes, counted from 0"},
                    RangeCase{{"reorder", "lib", "F", "0", "1", "6"},
                              "DEST 6 is out of range: 'F' has 5 nodes, counted from 0"},
                    RangeCase{{"reorder", "lib", "F", "2", "1", "0"},
                              "LAST 1 is less than FIRST 2"},
                    RangeCase{{"reorder", "lib", "/", "0", "1", "0"},
                              "LAST 1 is out of range: '/' has 1 node, counted from 0"},
                    RangeCase{{"reorder", "lib", "F/a", "0", "0", "0"},
                              "FIRST 0 is out of range: 'F/a' has 0 nodes, counted from 0"},
                    RangeCase{{"move", "lib", "F/a", "--to", "F", "--at", "6"},
                              "--at 6 is out of range: 'F' has 5 nodes, counted from 0"},
                    RangeCase{{"move", "lib", "F/a", "--to", "/", "--at", "-1"},
                              "--at -1 is out of range: '/' has 1 node, counted from 0"}));

class MovingDirectories : public ToolTest
{
};

TEST_F(MovingDirectories, KeepsWhatVersionControlHasInThem)
{
    make("lib", Form::Directory, "add-folder / A\nadd-folder / B\nadd-folder A Sub\n");
    putLocal(path("lib/A/Sub/.git"), "gitdir: elsewhere");
    EXPECT_EQ(run({"move", "lib", "A/Sub", "--to", "B"}), (Ending{0,
                                                                  "move       A/Sub -> B/Sub\n"
                                                                  "directory  A/Sub -> B/Sub\n"
                                                                  "position   B/Sub -> 0\n",
                                                                  ""}));
    EXPECT_EQ(getLocal(path("lib/B/Sub/.git")), QByteArray("gitdir: elsewhere"));
    EXPECT_FALSE(QFileInfo::exists(path("lib/A/Sub")));
}

} // namespace
} // namespace kxbox::test
