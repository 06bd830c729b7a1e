#pragma once

#include <kxboxlibrary/export.hpp>

namespace KX {

class BoxLibrary;
class BoxLibraryNode;

/// Deletes a library, or a detached node, together with every node of its tree:
/// `std::unique_ptr<BoxLibrary, TreeDeleter>`.
///
/// A library's and a node's own destructors leave nodes alive that were loaded or created in place
/// (box_library_node.hpp), since others may hold pointers to them. Who holds none uses this.
struct KXBOXLIBRARY_EXPORT TreeDeleter
{
    void operator()(BoxLibrary* library) const;
    /// The node must have no parent.
    void operator()(BoxLibraryNode* node) const;
};

/// Removes a child as BoxLibraryNode::removeChild() does, and deletes every node below it with it.
/// An index out of range does nothing. Throws as removeChild().
KXBOXLIBRARY_EXPORT void removeChildTree(BoxLibraryNode& parent, int index);

} // namespace KX
