#include "failure.hpp"
#include "reserved_names.hpp"

#include <gtest/gtest.h>

namespace kxbox {
namespace {

struct NameCase
{
    std::string name;
    bool free;    ///< below a folder
    bool freeTop; ///< at a library's top
};

class NodeNames : public testing::TestWithParam<NameCase>
{
};

bool isFree(const std::string& name, bool topLevel)
{
    try {
        checkName(name, topLevel);
        return true;
    } catch (const Failure&) {
        return false;
    }
}

TEST_P(NodeNames, AreReservedWhereTheyMeetFilesOfOthers)
{
    EXPECT_EQ(isFree(GetParam().name, false), GetParam().free) << GetParam().name;
    EXPECT_EQ(isFree(GetParam().name, true), GetParam().freeTop) << GetParam().name;
}

const std::string a_long(255, 'n');

INSTANTIATE_TEST_SUITE_P(
    , NodeNames,
    testing::Values(NameCase{"Walk", true, true}, NameCase{"Walk (2)", true, true},
                    NameCase{" ", true, true}, NameCase{"..", true, true},
                    NameCase{"a/b", true, true}, NameCase{"Olé!", true, true},
                    NameCase{"translations", true, false}, NameCase{"Translations", true, false},
                    NameCase{"Translations (2)", true, false}, NameCase{"translation", true, true},
                    NameCase{"bxlinfo", false, false}, NameCase{"BXLINFO", false, false},
                    NameCase{"box.bhx", false, false}, NameCase{"box.bhx (2)", false, false},
                    NameCase{"behavior.bhx", false, false}, NameCase{".metadata", false, false},
                    NameCase{".git", false, false}, NameCase{".hg", false, false},
                    NameCase{".svn", false, false}, NameCase{"git", true, true},
                    NameCase{".kxproject", false, false}, NameCase{".a.kxlock", false, false},
                    NameCase{".a.kxjournal", false, false}, NameCase{".a.kxnew", false, false},
                    NameCase{".a.kxexport", false, false}, NameCase{"a.kxlock", true, true},
                    NameCase{"", false, false}, NameCase{"a\nb", false, false},
                    NameCase{"a\x1f", false, false}, NameCase{std::string("a\0", 2), false, false},
                    NameCase{"a\xc2\x85", false, false}, NameCase{"\xe2\x80\xa8", false, false},
                    NameCase{a_long, true, true}, NameCase{a_long + "n", false, false},
                    NameCase{std::string(85, '?'), true, true},
                    NameCase{std::string(86, '?'), false, false}));

TEST(ReservedNames, SayWhy)
{
    EXPECT_EQ(reservedReason("Walk", true), "");
    EXPECT_EQ(reservedReason("translations", true),
              "at the top of a library this is the place of the translations");
    EXPECT_EQ(reservedReason("translations", false), "");
    EXPECT_EQ(reservedReason("Box.bhx", false), "this is the name of a file of the library");
    EXPECT_EQ(reservedReason(".GIT", false), "this is the directory of a version-control system");
    EXPECT_EQ(reservedReason(".kxproject", false),
              "this is the name of a file of the project store");
}

TEST(ReservedNames, AreNamedWhole)
{
    try {
        checkName(std::string("a\0b", 3), false);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "the name 'a\\x00b' has control characters");
    }
}

} // namespace
} // namespace kxbox
