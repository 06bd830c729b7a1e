#include "failure.hpp"
#include "shell_words.hpp"

#include <gtest/gtest.h>

namespace kxbox {
namespace {

struct WordsCase
{
    std::string line;
    std::vector<std::string> words;
};

class ShellWords : public testing::TestWithParam<WordsCase>
{
};

TEST_P(ShellWords, AreTakenApartAsAShellDoes)
{
    EXPECT_EQ(shellWords(GetParam().line), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    , ShellWords,
    testing::Values(WordsCase{"", {}}, WordsCase{" \t\r", {}}, WordsCase{"# all", {}},
                    WordsCase{"a  b\tc\r", {"a", "b", "c"}}, WordsCase{"a #b", {"a"}},
                    WordsCase{"a#b", {"a#b"}}, WordsCase{"'#' \"#\" \\#", {"#", "#", "#"}},
                    WordsCase{"'a b' \"c d\"", {"a b", "c d"}}, WordsCase{"'' \"\"", {"", ""}},
                    WordsCase{"a'b'\"c\"d", {"abcd"}}, WordsCase{"'\"' \"'\"", {"\"", "'"}},
                    WordsCase{R"('\' "\"" "\\" "\/" \/ \\ a\ b)",
                              {"\\", "\"", "\\", "\\/", "/", "\\", "a b"}},
                    WordsCase{std::string("a\0b", 3), {std::string("a\0b", 3)}},
                    WordsCase{std::string("\0", 1), {std::string("\0", 1)}}));

class BadShellWords : public testing::TestWithParam<std::pair<std::string, std::string>>
{
};

TEST_P(BadShellWords, AreRefused)
{
    try {
        shellWords(GetParam().first);
        FAIL() << GetParam().first;
    } catch (const UsageError& error) {
        EXPECT_EQ(error.what(), GetParam().second);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , BadShellWords,
    testing::Values(std::pair("a 'b c", "a quotation that begins with ' has no end"),
                    std::pair("\"a\\\"", "a quotation that begins with \" has no end"),
                    std::pair("a \\", "nothing follows the last backslash")));

} // namespace
} // namespace kxbox
