#pragma once

#include "library_state.hpp"

#include <kxboxlibrary/box_library_node.hpp>

#include <random>
#include <string>
#include <vector>

namespace reliability {

/// Edits a library by chance, as somebody with an editor does: every kind of edit, never one after
/// which a check of the library would find anything. The library keeps a size of some dozens of
/// nodes.
class LibraryEditor
{
public:
    /// `library` must outlive the editor. The same seed on the same library does the same.
    LibraryEditor(KX::BoxLibrary& library, std::mt19937& random);

    /// One edit.
    void edit();

private:
    using Nodes = std::vector<KX::BoxLibraryNode*>;

    unsigned below(unsigned end) { return static_cast<unsigned>(m_random() % end); }
    template <class List>
    const auto& oneOf(const List& list)
    {
        return list[below(static_cast<unsigned>(list.size()))];
    }
    std::string name();
    QByteArray bytes();
    Nodes nodes() const;
    Nodes folders() const;
    Nodes boxes() const;

    void makeFolder();
    void makeBox();
    void copy();
    void rename();
    void move();
    void remove();
    void reorder();
    void editData();
    void editResource();
    void translate();
    void retitle();

    KX::BoxLibrary& m_library;
    std::mt19937& m_random;
};

} // namespace reliability
