#include "support.hpp"

#include <cstdint>
#include <ostream>
#include <random>

namespace KX::test {
namespace {

struct Conversion
{
    std::string from;
    std::string to;
};

std::ostream& operator<<(std::ostream& stream, const Conversion& conversion)
{
    return stream << "'" << conversion.from << "' to '" << conversion.to << "'";
}

const std::string a_replacement = "\xef\xbf\xbd"; // U+FFFD

class EscapeFileName : public testing::TestWithParam<Conversion>
{
};

TEST_P(EscapeFileName, GivesTheFileName)
{
    EXPECT_EQ(BoxLibraryNode::escapeFileName(GetParam().from), GetParam().to);
}

TEST_P(EscapeFileName, IsUndoneByUnescaping)
{
    EXPECT_EQ(BoxLibraryNode::unEscapeFileName(GetParam().to), GetParam().from);
}

INSTANTIATE_TEST_SUITE_P(
    Names, EscapeFileName,
    testing::Values(Conversion{"Say Hello", "Say Hello"},
                    Conversion{"A/B: test?", "A%2fB%3a test%3f"}, Conversion{"50%", "50%25"},
                    Conversion{"a\\b", "a\\b"}, Conversion{"Wait...", "Wait..%2e"},
                    Conversion{" Walk ", "%20Walk%20"}, Conversion{"  two", "%20 two"},
                    Conversion{"two  ", "two %20"}, Conversion{" ", "%20"}, Conversion{".", "%2e"},
                    Conversion{". ", ".%20"}, Conversion{" .", "%20%2e"},
                    Conversion{".hidden", ".hidden"}));

INSTANTIATE_TEST_SUITE_P(
    SingleCharacters, EscapeFileName,
    testing::Values(Conversion{"%", "%25"}, Conversion{"<", "%3c"}, Conversion{">", "%3e"},
                    Conversion{":", "%3a"}, Conversion{"\"", "%22"}, Conversion{"/", "%2f"},
                    Conversion{"|", "%7c"}, Conversion{"?", "%3f"}, Conversion{"*", "%2a"},
                    Conversion{"\\", "\\"}, Conversion{"[", "["}, Conversion{"]", "]"},
                    Conversion{"\x01", "\x01"}, Conversion{"\x7f", "\x7f"}, Conversion{"", ""}));

INSTANTIATE_TEST_SUITE_P(Others, EscapeFileName,
                         testing::Values(Conversion{"%2f", "%252f"}, Conversion{"%%", "%25%25"},
                                         Conversion{"..", ".%2e"}, Conversion{"  ", "%20%20"},
                                         Conversion{"   ", "%20 %20"},
                                         Conversion{"\tTab\t", "\tTab\t"},
                                         Conversion{"a. b.c", "a. b.c"},
                                         Conversion{"Gr\xc3\xbc\xc3\x9f", "Gr\xc3\xbc\xc3\x9f"},
                                         Conversion{"\xc2\xa0wide\xc2\xa0", "\xc2\xa0wide\xc2\xa0"},
                                         Conversion{"\xf0\x9f\x98\x80/", "\xf0\x9f\x98\x80%2f"}));

// Only the very end and the very beginning count, whatever line feeds there are.
INSTANTIATE_TEST_SUITE_P(LineFeeds, EscapeFileName,
                         testing::Values(Conversion{"Wait.\n", "Wait.\n"},
                                         Conversion{"Walk \n", "Walk \n"},
                                         Conversion{"\n Walk", "\n Walk"},
                                         Conversion{"a\n.", "a\n%2e"}, Conversion{"a\n ", "a\n%20"},
                                         Conversion{"a.\nb", "a.\nb"},
                                         Conversion{"a \n b", "a \n b"}));

class UnEscapeFileName : public testing::TestWithParam<Conversion>
{
};

TEST_P(UnEscapeFileName, GivesTheName)
{
    EXPECT_EQ(BoxLibraryNode::unEscapeFileName(GetParam().from), GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(FileNames, UnEscapeFileName,
                         testing::Values(Conversion{"A%2fB%3a test%3f", "A/B: test?"},
                                         Conversion{"A%2FB", "A/B"},
                                         Conversion{"100%2525", "100%25"},
                                         Conversion{"%20Walk%20", " Walk "},
                                         Conversion{"50%", "50%"}, Conversion{"%zz%4", "%zz%4"},
                                         Conversion{"ab%00cd", "ab"}));

INSTANTIATE_TEST_SUITE_P(
    Others, UnEscapeFileName,
    testing::Values(Conversion{"%41", "A"}, Conversion{"%e9", "\xc3\xa9"},
                    Conversion{"%E9", "\xc3\xa9"}, Conversion{"%80", "\xc2\x80"},
                    Conversion{"%fF", "\xc3\xbf"}, Conversion{"%7f", "\x7f"},
                    Conversion{"%01", "\x01"}, Conversion{"%0a%41", "\nA"}, Conversion{"", ""},
                    Conversion{"%", "%"}, Conversion{"%4", "%4"}, Conversion{"%4g", "%4g"},
                    Conversion{"%g4", "%g4"}, Conversion{"%/4%:4%@4%`4", "%/4%:4%@4%`4"},
                    Conversion{"%%41", "%A"}, Conversion{"%4%41", "%4A"},
                    Conversion{"%2541", "%41"}, Conversion{"%25%34%31", "%41"},
                    Conversion{"a\\b", "a\\b"}, Conversion{"%00", ""},
                    // Digits of another script are none.
                    Conversion{"%\xd9\xa4\xd9\xa1", "%\xd9\xa4\xd9\xa1"}));

class UnNumberName : public testing::TestWithParam<Conversion>
{
};

TEST_P(UnNumberName, TakesOneNumberOffTheEnd)
{
    EXPECT_EQ(BoxLibraryNode::unNumberName(GetParam().from), GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(Names, UnNumberName,
                         testing::Values(Conversion{"Box (2)", "Box"},
                                         Conversion{"Box (12)", "Box"}, Conversion{"Box ()", "Box"},
                                         Conversion{"Box (2) (3)", "Box (2)"},
                                         Conversion{"Box(2)", "Box(2)"},
                                         Conversion{"Box (2) ", "Box (2) "},
                                         Conversion{"Box (x)", "Box (x)"}, Conversion{" (5)", ""}));

INSTANTIATE_TEST_SUITE_P(
    Others, UnNumberName,
    testing::Values(Conversion{"", ""}, Conversion{")", ")"}, Conversion{"()", "()"},
                    Conversion{" ()", ""}, Conversion{"2)", "2)"}, Conversion{"(2)", "(2)"},
                    Conversion{"Box (-2)", "Box (-2)"}, Conversion{"Box (2 )", "Box (2 )"},
                    Conversion{"Box  (2)", "Box "}, Conversion{"Box ((2))", "Box ((2))"},
                    Conversion{"Box (2))", "Box (2))"}, Conversion{"Box\t(2)", "Box\t(2)"},
                    Conversion{"Box (00)", "Box"}, Conversion{"Box (99999999999999999999)", "Box"},
                    Conversion{"Box (\xd9\xa4)", "Box (\xd9\xa4)"},
                    Conversion{"Box (2)\n", "Box (2)\n"}, Conversion{"Box\n (2)", "Box\n"},
                    Conversion{"Box (2)\nBox", "Box (2)\nBox"}));

struct Numbering
{
    std::string name;
    int number;
    std::string numbered;
};

class NumberName : public testing::TestWithParam<Numbering>
{
};

TEST_P(NumberName, PutsTheNumberBehindTheName)
{
    EXPECT_EQ(BoxLibraryNode::numberName(GetParam().name, GetParam().number), GetParam().numbered);
}

INSTANTIATE_TEST_SUITE_P(Names, NumberName,
                         testing::Values(Numbering{"Box", 2, "Box (2)"}, Numbering{"", 3, " (3)"},
                                         Numbering{"A", -1, "A (-1)"},
                                         Numbering{"Box (2)", 2, "Box (2) (2)"},
                                         Numbering{"A", 0, "A (0)"},
                                         Numbering{"A", INT32_MAX, "A (2147483647)"},
                                         Numbering{"A", INT32_MIN, "A (-2147483648)"}));

// What ends at its NUL, or holds bytes that are no UTF-8, before anything else is done with it.
const std::string a_withNul("Box (2)\0/. (3)", 14);

TEST(FileNames, EndAtTheFirstNul)
{
    EXPECT_EQ(BoxLibraryNode::escapeFileName(std::string("a/\0b", 4)), "a%2f");
    EXPECT_EQ(BoxLibraryNode::escapeFileName(std::string("a.\0b", 4)), "a%2e");
    EXPECT_EQ(BoxLibraryNode::unEscapeFileName(std::string("%41\0%42", 7)), "A");
    EXPECT_EQ(BoxLibraryNode::unNumberName(a_withNul), "Box");
    EXPECT_EQ(BoxLibraryNode::numberName(a_withNul, 4), "Box (2) (4)");
}

TEST(FileNames, HaveAReplacementForWhatIsNoUtf8)
{
    EXPECT_EQ(BoxLibraryNode::escapeFileName("a\xff/"), "a" + a_replacement + "%2f");
    EXPECT_EQ(BoxLibraryNode::unEscapeFileName("\xff%41"), a_replacement + "A");
    EXPECT_EQ(BoxLibraryNode::unNumberName("\xff (2)"), a_replacement);
    EXPECT_EQ(BoxLibraryNode::unNumberName("\xff"), a_replacement);
    EXPECT_EQ(BoxLibraryNode::numberName("\xff", 2), a_replacement + " (2)");
}

TEST(FileNames, ReadDamagedUtf8AsQtDoes)
{
    for (const std::string name : {"\xc3", "\xc3(", "\xe2\x82", "\xed\xa0\x80", "\xc0\xaf",
                                   "a\x80z", "\xf4\x90\x80\x80", "\xef\xbb\xbf"}) {
        const std::string read = QString::fromUtf8(name.c_str()).toUtf8().toStdString();
        EXPECT_EQ(BoxLibraryNode::escapeFileName(name), read);
        EXPECT_EQ(BoxLibraryNode::unEscapeFileName(name), read);
        EXPECT_EQ(BoxLibraryNode::unNumberName(name), read);
        EXPECT_EQ(BoxLibraryNode::numberName(name, 1), read + " (1)");
    }
}

TEST(FileNames, GiveBackEveryNameWithoutNul)
{
    const Names pieces{"%",
                       "<",
                       ">",
                       ":",
                       "\"",
                       "/",
                       "|",
                       "?",
                       "*",
                       "\\",
                       ".",
                       " ",
                       "2",
                       "25",
                       "f",
                       "\n",
                       "a",
                       "\xc3\xbc",
                       "\xf0\x9f\x98\x80",
                       "\x01"};
    std::mt19937 random(5); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same names in every run
    for (int i = 0; i < 20000; ++i) {
        std::string name;
        for (auto length = random() % 8; length > 0; --length) {
            name += pieces[random() % pieces.size()];
        }
        const std::string fileName = BoxLibraryNode::escapeFileName(name);
        ASSERT_EQ(BoxLibraryNode::unEscapeFileName(fileName), name);
        ASSERT_EQ(fileName.find_first_of("<>:\"/|?*"), std::string::npos) << fileName;
    }
}

} // namespace
} // namespace KX::test
