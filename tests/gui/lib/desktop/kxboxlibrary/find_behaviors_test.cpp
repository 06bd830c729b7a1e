#include "support.hpp"

namespace KX::test {
namespace {

QStringList behaviorsOf(BoxLibrary& library, BoxLibraryNode* node)
{
    QStringList paths;
    library.xFindBehaviors(node, paths);
    return paths;
}

Library libraryOfBehaviors()
{
    return open(project({{"bxlinfo", orderFile({"Z", "A"})},
                         {"A/box.bhx", behaviorBox("A")},
                         {"Z/bxlinfo", orderFile({"Two", "Plain", "One"})},
                         {"Z/One/box.bhx", behaviorBox("One")},
                         {"Z/Plain/box.bhx", boxFile()},
                         {"Z/Two/Three/box.bhx", behaviorBox("Three")}}));
}

TEST(FindBehaviors, GoesThroughTheTreeInItsOrder)
{
    const Library library = libraryOfBehaviors();
    EXPECT_EQ(behaviorsOf(*library, library->boxRoot()),
              (QStringList{q("Z/Two/Three"), q("Z/One"), q("A")}));
}

TEST(FindBehaviors, BeginsAtTheNode)
{
    const Library library = libraryOfBehaviors();
    EXPECT_EQ(behaviorsOf(*library, library->node({0})),
              (QStringList{q("Z/Two/Three"), q("Z/One")}));
    EXPECT_EQ(behaviorsOf(*library, library->node({1})), QStringList{q("A")});
    EXPECT_EQ(behaviorsOf(*library, library->node({0, 1})), QStringList());
}

TEST(FindBehaviors, KeepsWhatIsInTheList)
{
    const Library library = libraryOfBehaviors();
    QStringList paths{q("before")};
    library->xFindBehaviors(library->node({1}), paths);
    EXPECT_EQ(paths, (QStringList{q("before"), q("A")}));
}

TEST(FindBehaviors, FindsNothingInNull)
{
    const Library library = libraryOfBehaviors();
    EXPECT_EQ(behaviorsOf(*library, nullptr), QStringList());
}

TEST(FindBehaviors, GivesTheEmptyPathForTheRoot)
{
    const Library library = open(project({{"box.bhx", behaviorBox("Walk")}}));
    EXPECT_EQ(behaviorsOf(*library, library->boxRoot()), QStringList{QString()});
}

TEST(FindBehaviors, DoesNotLookIntoBoxes)
{
    const Library library = libraryOfBehaviors();
    BoxLibraryNode* const plain = library->node({0, 1});
    plain->appendChild(library->node({1})->clone());
    ASSERT_EQ(plain->children().size(), 1);
    EXPECT_EQ(behaviorsOf(*library, plain), QStringList());
}

TEST(FindBehaviors, GoesByTheFlagThatTheBoxWasLoadedWith)
{
    const Library library = libraryOfBehaviors();
    library->projectModel().writeFile(q("A/box.bhx"), boxFile());
    EXPECT_EQ(behaviorsOf(*library, library->node({1})), QStringList{q("A")});
}

} // namespace
} // namespace KX::test
