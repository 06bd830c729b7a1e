#include <kxboxlibrary/box_library.hpp>
#include <kxboxlibrary/box_library_node.hpp>
#include <kxboxlibrary/tree_deleter.hpp>

#include <QPointer>

#include <vector>

namespace KX {

namespace {

/// A node and all below it, parents first.
std::vector<QPointer<BoxLibraryNode>> treeOf(BoxLibraryNode* node)
{
    std::vector<QPointer<BoxLibraryNode>> nodes{node};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const QList<BoxLibraryNode*> children = nodes[i]->children();
        nodes.insert(nodes.end(), children.begin(), children.end());
    }
    return nodes;
}

/// Deletes those of nodes, given parents first, that are left. Those that are QObject children go
/// with their parents, which takes constant time for each; to delete them first would not.
void deleteAll(const std::vector<QPointer<BoxLibraryNode>>& nodes)
{
    for (const auto& node : nodes) {
        delete node.data();
    }
}

} // namespace

void TreeDeleter::operator()(BoxLibrary* library) const
{
    const auto nodes = treeOf(library->boxRoot());
    delete library;
    deleteAll(nodes);
}

void TreeDeleter::operator()(BoxLibraryNode* node) const
{
    deleteAll(treeOf(node));
}

void removeChildTree(BoxLibraryNode& parent, int index)
{
    if (BoxLibraryNode* const child = parent.child(index)) {
        const auto nodes = treeOf(child);
        parent.removeChild(index);
        deleteAll(nodes);
    }
}

} // namespace KX
