#include "support.hpp"

#include <QPointer>

namespace KX::test {
namespace {

// A folder with a loaded child that has a loaded child, and an inserted child with a created one.
Library mixedLibrary()
{
    Library library = open(project({{"Loaded/Box/box.bhx", boxFile()}}));
    BoxLibraryNode* const inserted = library->boxRoot()->child(0)->clone();
    library->boxRoot()->appendChild(inserted);
    inserted->appendChild("Created");
    return library;
}

std::vector<QPointer<BoxLibraryNode>> allNodes(BoxLibraryNode* root)
{
    std::vector<QPointer<BoxLibraryNode>> nodes{root};
    for (BoxLibraryNode* const child : root->children()) {
        const auto below = allNodes(child);
        nodes.insert(nodes.end(), below.begin(), below.end());
    }
    return nodes;
}

std::size_t alive(const std::vector<QPointer<BoxLibraryNode>>& nodes)
{
    return static_cast<std::size_t>(
        std::count_if(nodes.begin(), nodes.end(), [](const auto& node) { return !node.isNull(); }));
}

TEST(TreeDeleter, DeletesALibraryWithEveryNode)
{
    Library library = mixedLibrary();
    const auto nodes = allNodes(library->boxRoot());
    ASSERT_EQ(alive(nodes), 6U);
    const QPointer<BoxLibrary> pointer(library.get());
    library.reset();
    EXPECT_EQ(alive(nodes), 0U);
    EXPECT_TRUE(pointer.isNull());
}

TEST(TreeDeleter, DeletesADetachedNodeWithEveryNodeBelow)
{
    const Library library = mixedLibrary();
    DetachedNode node(library->boxRoot()->child(1)->take());
    const auto nodes = allNodes(node.get());
    ASSERT_EQ(alive(nodes), 3U);
    node.reset();
    EXPECT_EQ(alive(nodes), 0U);
    EXPECT_EQ(alive(allNodes(library->boxRoot())), 3U);
}

TEST(RemoveChildTree, DeletesEveryNodeBelowTheChild)
{
    const Library library = mixedLibrary();
    const auto nodes = allNodes(library->boxRoot()->child(0));
    removeChildTree(*library->boxRoot(), 0);
    EXPECT_EQ(alive(nodes), 0U);
    EXPECT_EQ(childNames(*library->boxRoot()), Names{"Loaded (2)"});
    EXPECT_EQ(library->projectModel().getFileList(QString(), true, false, true),
              QStringList{q("Loaded (2)")});
}

TEST(RemoveChildTree, DoesNothingOutOfRange)
{
    const Library library = mixedLibrary();
    removeChildTree(*library->boxRoot(), 2);
    removeChildTree(*library->boxRoot(), -1);
    EXPECT_EQ(childNames(*library->boxRoot()), (Names{"Loaded", "Loaded (2)"}));
}

} // namespace
} // namespace KX::test
