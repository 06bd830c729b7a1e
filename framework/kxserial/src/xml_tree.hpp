#pragma once

#include "parsed_xml.hpp"
#include "xml_text.hpp"

#include <kx/xml_element.hpp>

#include <string>
#include <vector>

namespace KX {

namespace xml {

enum class NodeKind
{
    Element,
    Text,
    Section,
    Comment,
    Instruction
};

/// What of an element's content decides how its white space is read and written.
struct Shape
{
    bool text = false;  ///< text that is not blank, or a CDATA section
    bool blank = false; ///< text that is blank
    bool other = false; ///< elements, comments, processing instructions

    void add(NodeKind kind, std::string_view textOfNode)
    {
        if (kind == NodeKind::Section || (kind == NodeKind::Text && !isBlank(textOfNode))) {
            text = true;
        } else if (kind == NodeKind::Text) {
            blank = true;
        } else {
            other = true;
        }
    }
};

/// Whether an element asks for its white space to be left alone, in itself and all below it.
inline bool isPreserve(std::string_view attribute, std::string_view value)
{
    return attribute == "xml:space" && value == "preserve";
}

/// An element that is still exactly what the file says, seen through the rule for white space: a
/// blank text among other content, in an element without any other text, is indentation and not
/// there. Inside mixed content and under xml:space="preserve" every text counts.
class FileElement
{
public:
    FileElement() = default;
    /// `keepsSpace`: an element around this one says that every text counts.
    FileElement(const ParsedXml& file, pugi::xml_node node, bool keepsSpace)
        : m_file(&file), m_node(node)
    {
        for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
            m_shape.add(kindOf(child), child.value());
            if (!file.mixed()) {
                return; // the others are of the same sort
            }
        }
        if (!file.mixed()) {
            return;
        }
        m_preserves = isPreserve("xml:space", node.attribute("xml:space").value());
        m_keepsSpace = keepsSpace || m_shape.text || m_preserves;
        if (!m_keepsSpace && m_shape.other) {
            m_shape.blank = false;
        }
    }

    const ParsedXml& file() const { return *m_file; }
    const Shape& shape() const { return m_shape; }
    /// The element itself has xml:space="preserve".
    bool preserves() const { return m_preserves; }
    /// What `keepsSpace` is for the elements in it.
    bool keepsSpace() const { return m_keepsSpace; }
    pugi::xml_node firstNode() const { return skipIndentation(m_node.first_child()); }
    pugi::xml_node nextNode(pugi::xml_node node) const
    {
        return skipIndentation(node.next_sibling());
    }

    static NodeKind kindOf(pugi::xml_node node)
    {
        switch (node.type()) {
        case pugi::node_element:
            return NodeKind::Element;
        case pugi::node_cdata:
            return NodeKind::Section;
        case pugi::node_comment:
            return NodeKind::Comment;
        case pugi::node_pi:
            return NodeKind::Instruction;
        default:
            return NodeKind::Text;
        }
    }

    /// What `XmlElement::Content::Node::text` is for a node that is no element.
    static std::string textOf(pugi::xml_node node)
    {
        if (node.type() != pugi::node_pi) {
            return node.value();
        }
        const std::string data = node.value();
        return data.empty() ? node.name() : node.name() + (" " + data);
    }

private:
    pugi::xml_node skipIndentation(pugi::xml_node node) const
    {
        // What is left of an element without text is blank text and other nodes.
        while (!m_shape.blank && !m_shape.text && node.type() == pugi::node_pcdata) {
            node = node.next_sibling();
        }
        return node;
    }

    const ParsedXml* m_file = nullptr;
    pugi::xml_node m_node;
    Shape m_shape;
    bool m_preserves = false;
    bool m_keepsSpace = false;
};

} // namespace xml

namespace xml {

/// The node that an element remembers; public headers know no parser, so they hold it untyped.
inline pugi::xml_node nodeAt(void* place)
{
    return pugi::xml_node(static_cast<pugi::xml_node_struct*>(place));
}

} // namespace xml

/// Where in a file an element is that nobody has changed or looked into.
struct XmlElement::FileView
{
    boost::shared_ptr<const xml::ParsedXml> file;
    pugi::xml_node node;
    bool keepsSpace; ///< the file's elements around it make every text count
};

/// What an element that was made, changed or looked into by the program holds.
struct XmlElement::Content
{
    struct Attribute
    {
        std::string name;
        std::string value;
    };
    struct Node
    {
        xml::NodeKind kind;
        std::string text; ///< of an instruction: its target, a space, its data
        boost::shared_ptr<XmlElement> element;
    };

    std::vector<Attribute> attributes;
    std::vector<Node> nodes;
};

} // namespace KX
