#pragma once

#include "xml_tree.hpp"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace KX::xml {

/// A tree that no document can hold: the reason, as a caller can show it.
class Unwritable : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Writes trees in the one form that this library writes.
///
/// An element without text has each of its nodes on a line of its own, indented by two spaces a
/// level. An element with text, and everything below it, is written without any white space that is
/// not in the tree. Blank text that a reader would take for indentation becomes a CDATA section.
/// Carriage returns, and in attributes tabs and line feeds, become references, which alone survive
/// a reader's normalisation.
///
/// The parser's own writer does not do: it indents after an element even when text follows, leaves
/// carriage returns in text bare, and needs a tree of its own kind.
class Writer
{
public:
    /// The whole document: the XML declaration, what `file` (may be null) has outside its root, and
    /// `root` in its root's place. Throws `Unwritable` for a tree deeper than `a_maxDepth`.
    static std::string write(const XmlElement& root, const ParsedXml* file);

private:
    /// An element whose start tag is written and whose end tag is not: a place in its content.
    struct Level
    {
        std::string_view tag;
        const XmlElement::Content* content = nullptr; // null for an element of a file
        std::size_t index = 0;                        // of the next node of `content`
        FileElement view;
        pugi::xml_node next; // of `view`
        bool isInline = false;
        bool blankAsSection = false;
    };

    void writeTree(const XmlElement& root);
    void writeMisc(pugi::xml_node node);
    void open(const XmlElement& element);
    void openFileElement(const ParsedXml& file, pugi::xml_node node, bool keepsSpace);
    void startTag(std::string_view tag);
    void attribute(std::string_view name, std::string_view value);
    void enter(Level level, const Shape& shape, bool preserve);
    void writeNext(Level& level);
    void writeNextOfFile(Level& level);
    void beginNode(const Level& level);
    void close(const Level& level);
    void writeNode(NodeKind kind, std::string_view text, bool blankAsSection);
    void writeSection(std::string_view text);

    std::string m_out;
    std::vector<Level> m_levels;
};

} // namespace KX::xml
