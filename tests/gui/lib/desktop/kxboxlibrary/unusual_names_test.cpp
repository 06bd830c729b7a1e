#include "support.hpp"

namespace KX::test {
namespace {

struct ReservedName
{
    const char* name;
    bool atTheTopOnly;
};

class ReservedNames : public testing::TestWithParam<ReservedName>
{
};

INSTANTIATE_TEST_SUITE_P(All, ReservedNames,
                         testing::Values(ReservedName{"bxlinfo", false},
                                         ReservedName{"translations", true},
                                         ReservedName{".git", false}, ReservedName{".hg", false},
                                         ReservedName{".svn", false},
                                         ReservedName{".kxproject", false}));

TEST_P(ReservedNames, CountAsTaken)
{
    const Library library =
        open(project({{"Box/box.bhx", boxFile()}, {"Folder/Inner/box.bhx", boxFile()}}));
    library->setTranslations(translators({translator("fr", {"Library:/Box"})}));
    const std::string name = GetParam().name;
    BoxLibraryNode* const box = library->boxRoot()->child("Box");
    BoxLibraryNode* const inner = library->boxRoot()->child("Folder")->child("Inner");
    box->setName(name);
    inner->setName(name);
    EXPECT_EQ(box->name(), name + " (2)");
    EXPECT_EQ(library->boxRoot()->appendChild(name)->name(), name + " (3)");
    EXPECT_EQ(inner->name(), GetParam().atTheTopOnly ? name : name + " (2)");
    EXPECT_TRUE(library->projectModel().hasFile(box->path() + q("/box.bhx")));
    EXPECT_TRUE(library->projectModel().hasFile(inner->path() + q("/box.bhx")));
    EXPECT_EQ(contextsOf(*library, "fr"), Names{"Library:/" + name + " (2)"});
}

// Whatever a node is called, its files come along.
TEST_P(ReservedNames, StayWithAFolderThatIsTakenOrCopied)
{
    const Library library = newLibrary();
    BoxLibraryNode* const folder = library->boxRoot()->appendChild("Folder");
    folder->appendChild(description(GetParam().name));
    BoxLibraryNode* const copy = library->boxRoot()->appendChild(folder->clone());
    DetachedNode taken(folder->take());
    EXPECT_TRUE(taken->project()->hasFile(taken->child(0)->path() + q("/box.bhx")));
    EXPECT_TRUE(library->projectModel().hasFile(copy->child(0)->path() + q("/box.bhx")));
}

// QString::fromUtf8() takes off one byte order mark, so a name with two would change each time.
TEST(NodeSetName, LeavesOutByteOrderMarks)
{
    const std::string mark = "\xef\xbb\xbf";
    const Library library =
        open(project({{"A/box.bhx", boxFile()}, {"B/box.bhx", boxFile("tooltip=\"b\"")}}));
    BoxLibraryNode* const box = library->boxRoot()->child("B");
    std::string name;
    for (int marks = 1; marks <= 3; ++marks) {
        name += mark;
        box->setName(name);
        EXPECT_EQ(box->name(), " (2)");
    }
    box->setName(mark + mark + "A");
    EXPECT_EQ(box->name(), "A (2)");
    EXPECT_EQ(box->loadBox()->attribute("tooltip", std::string()), "b");
}

// A node without parent can have any bytes as its name.
TEST(NodeInitName, TakesBytesThatAreNoUtf8)
{
    const Library library = newLibrary();
    const std::string bytes(20, '\xff');
    library->boxRoot()->appendChild(bytes);
    const std::string first = library->boxRoot()->child(0)->name();
    library->boxRoot()->appendChild(bytes);
    BoxLibraryNode* const node = BoxLibraryNode::fromDescription(description("x"));
    node->setName(bytes);
    library->boxRoot()->appendChild(node);
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{first, first + " (2)", first + " (3)"}));
}

} // namespace
} // namespace KX::test
