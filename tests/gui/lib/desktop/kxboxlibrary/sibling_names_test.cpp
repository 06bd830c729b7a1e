#include "sibling_names.hpp"
#include "support.hpp"

namespace KX::test {
namespace {

SiblingNames siblings(const Names& names)
{
    SiblingNames result;
    for (const std::string& name : names) {
        result.add(name);
    }
    return result;
}

TEST(SiblingNames, GiveTheBaseWhereItIsFree)
{
    EXPECT_EQ(siblings({}).firstFree("Box"), "Box");
    EXPECT_EQ(siblings({"box", "Box (2)"}).firstFree("Box"), "Box");
}

TEST(SiblingNames, NumberFromTwo)
{
    EXPECT_EQ(siblings({"Box"}).firstFree("Box"), "Box (2)");
    EXPECT_EQ(siblings({"Box", "Box (1)", "Box (0)", "Box ()", "Box (02)"}).firstFree("Box"),
              "Box (2)");
}

TEST(SiblingNames, FillTheFirstGap)
{
    EXPECT_EQ(siblings({"Box", "Box (2)", "Box (4)"}).firstFree("Box"), "Box (3)");
}

TEST(SiblingNames, TakeNothingByAsking)
{
    SiblingNames names = siblings({"Box"});
    EXPECT_EQ(names.firstFree("Box"), "Box (2)");
    EXPECT_EQ(names.firstFree("Box"), "Box (2)");
}

TEST(SiblingNames, SeeWhatWasAddedSinceTheyLooked)
{
    SiblingNames names = siblings({"Box"});
    EXPECT_EQ(names.firstFree("Box"), "Box (2)");
    names.add("Box (2)");
    names.add("Box (3)");
    EXPECT_EQ(names.firstFree("Box"), "Box (4)");
}

TEST(SiblingNames, GiveANumberAgainThatBecameFree)
{
    SiblingNames names = siblings({"Box", "Box (2)", "Box (3)", "Box (4)"});
    EXPECT_EQ(names.firstFree("Box"), "Box (5)");
    names.remove("Box (3)");
    EXPECT_EQ(names.firstFree("Box"), "Box (3)");
    names.remove("Box (2)");
    EXPECT_EQ(names.firstFree("Box"), "Box (2)");
    names.remove("Box (4)");
    EXPECT_EQ(names.firstFree("Box"), "Box (2)");
}

TEST(SiblingNames, GiveTheBaseAgainThatBecameFree)
{
    SiblingNames names = siblings({"Box", "Box (2)"});
    EXPECT_EQ(names.firstFree("Box"), "Box (3)");
    names.remove("Box");
    EXPECT_EQ(names.firstFree("Box"), "Box");
    names.add("Box");
    EXPECT_EQ(names.firstFree("Box"), "Box (3)");
}

TEST(SiblingNames, CountANameThatIsThereTwice)
{
    SiblingNames names = siblings({"Box", "Box"});
    names.remove("Box");
    EXPECT_EQ(names.firstFree("Box"), "Box (2)");
    names.remove("Box");
    EXPECT_EQ(names.firstFree("Box"), "Box");
}

TEST(SiblingNames, KeepTheBasesApart)
{
    SiblingNames names = siblings({"Box", "Box (2)", "Box (2) (2)"});
    EXPECT_EQ(names.firstFree("Box"), "Box (3)");
    EXPECT_EQ(names.firstFree("Box (2)"), "Box (2) (3)");
    names.remove("Box (2)");
    EXPECT_EQ(names.firstFree("Box (2)"), "Box (2)");
    EXPECT_EQ(names.firstFree("Box"), "Box (2)");
}

// Names that have a number which firstFree() would never write, also one that no int can hold.
TEST(SiblingNames, AreRightAfterOddNumbersWentAway)
{
    for (const std::string odd :
         {"Box ()", "Box (0)", "Box (1)", "Box (003)", "Box (99999999999999999999)"}) {
        SiblingNames names = siblings({"Box", "Box (2)", "Box (3)", odd});
        EXPECT_EQ(names.firstFree("Box"), "Box (4)");
        names.remove(odd);
        EXPECT_EQ(names.firstFree("Box"), "Box (4)") << odd;
        names.remove("Box");
        EXPECT_EQ(names.firstFree("Box"), "Box") << odd;
    }
}

} // namespace
} // namespace KX::test
