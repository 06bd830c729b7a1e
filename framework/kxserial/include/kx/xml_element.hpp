#pragma once

#include <kx/serial.hpp>
#include <kxserial/export.hpp>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace KX {

namespace xml {
class ParsedXml;
class Writer;
} // namespace xml

/// An element of an XML tree: a tag, ordered attributes, and ordered content of child elements,
/// text, CDATA sections, comments and processing instructions. Always held by `boost::shared_ptr`.
///
/// Ownership and identity: an element owns its children together with whoever else holds them. The
/// element handed to `addChild` is the child, so a later change of it shows in the tree, and a
/// child lives on when its parent dies. An element can be the child of several elements at once; it
/// is then written in each place. It can never be below itself.
///
/// Everything is UTF-8. What XML cannot hold (bytes that are not UTF-8, control characters other
/// than tab, line feed and carriage return, U+FFFE, U+FFFF, a name that is no XML name) is refused
/// with `std::invalid_argument` by the call that would put it in, and changes nothing; what is left
/// to fail when a document is written is the depth of its nesting and its size. Names with a colon
/// are names like any other; namespaces are the caller's business.
///
/// White space: a text of spaces, tabs and line feeds among child elements, in an element that has
/// no other text, is the indentation of a file and is dropped on reading. Everywhere else (the only
/// content of an element, mixed content and everything inside it, under xml:space="preserve") it is
/// text and stays.
///
/// Cost: an element read from a file is a view of the file until it is changed or asked for a
/// child; `clone` of it is a constant effort. Any such element keeps all of the file's bytes in
/// memory. Looking up a name is linear in the number of attributes or children. Because of the
/// views, reading a `const` element is not free of writes: use the elements of one document, and
/// clones of them, from one thread at a time.
class KXSERIAL_EXPORT XmlElement
{
    struct FileView;

public:
    /// Throws `std::invalid_argument` when `tag` is not an XML name.
    explicit XmlElement(const std::string& tag);
    /// For readers of files, which alone can name the argument's type.
    explicit XmlElement(FileView view);
    ~XmlElement();
    XmlElement(const XmlElement&) = delete;
    XmlElement& operator=(const XmlElement&) = delete;
    XmlElement(XmlElement&&) = delete;
    XmlElement& operator=(XmlElement&&) = delete;

    /// The tag.
    const std::string& beacon() const { return m_tag; }

    /// The value of an attribute, through `Serial::load`. False when there is no such attribute or
    /// its text is bad for the type; `value` is then as it was. T: `std::string`, `int`, `bool`,
    /// `QString`.
    template <class T>
    bool getAttribute(const std::string& name, T& value) const;

    /// Sets an attribute to the text that `Serial::save` gives; a `std::string` is taken as it is.
    /// An attribute that exists keeps its place; a new one becomes the first or the last one.
    /// Throws `std::invalid_argument`.
    template <class T>
    void setAttribute(const std::string& name, const T& value, bool first);

    /// The value of an attribute, or `defaultValue` where `getAttribute` is false.
    template <class T>
    T attribute(const std::string& name, const T& defaultValue) const;

    using AttributeVisitor = std::function<void(std::string_view name, std::string_view value)>;
    /// Shows every attribute, in order, without making anything of it. `visit` must not change the
    /// element; the views end with the call.
    void visitAttributes(const AttributeVisitor& visit) const;

    /// The text and CDATA sections directly in this element, joined in document order; null when
    /// there are none. `<a></a>` has none, `<a><![CDATA[]]></a>` has an empty one.
    boost::shared_ptr<std::string> text() const;

    /// Puts one text, or with `cdata` one CDATA section, in the place of the first text there is
    /// (before all children when there is none) and removes all other texts. Children, comments
    /// and processing instructions stay. An empty text without `cdata` is no text.
    /// Throws `std::invalid_argument`.
    void setText(const std::string& text, bool cdata);

    /// The first child called `tag`, or null.
    boost::shared_ptr<XmlElement> firstChild(const std::string& tag);
    boost::shared_ptr<const XmlElement> firstChild(const std::string& tag) const;

    /// The children called `tag` in document order: this element's own when `container` is empty,
    /// else those of the first child called `container`.
    std::list<boost::shared_ptr<const XmlElement>> children(const std::string& tag,
                                                            const std::string& container) const;

    /// All child elements in document order.
    std::list<boost::shared_ptr<const XmlElement>> mixedChildren() const;

    using ChildVisitor = std::function<void(const XmlElement& child)>;
    /// Shows every child element, in document order. `visit` must not change this element. In one
    /// that is still what its file says no child is made, which spares time and memory where most
    /// are of no interest: then the child ends with the call.
    void visitChildren(const ChildVisitor& visit) const;

    /// Appends a child. Throws `std::invalid_argument` for null and for an element that is this one
    /// or has it below.
    void addChild(boost::shared_ptr<XmlElement> child);

    /// Appends children to this element, or to its first child called `container`, which is made
    /// when it is missing. Throws as `addChild` does, and then adds none.
    void addChildren(const std::list<boost::shared_ptr<XmlElement>>& children,
                     const std::string& container);

    /// Removes the children that `children` finds. An emptied container stays.
    void removeChildren(const std::string& tag, const std::string& container);

    /// A copy of this element and all below, of which nothing is shared with the original as far as
    /// any call can tell.
    boost::shared_ptr<XmlElement> clone() const;

private:
    friend class XmlDocument;
    friend class xml::Writer;
    struct Content;

    template <class T>
    static constexpr bool isSerial();

    bool getText(const std::string& name, std::string& value) const;
    void putText(const std::string& name, const std::string& value, bool first);
    Content& content() const;
    void unfold() const;
    void append(boost::shared_ptr<XmlElement> child);
    void refuseAsChild(const boost::shared_ptr<XmlElement>& child) const;
    bool hasBelow(const XmlElement* element) const;
    boost::shared_ptr<XmlElement> findChild(const std::string& tag) const;
    /// A copy that, where it is no view of a file, has the original's children.
    boost::shared_ptr<XmlElement> cloneShallow() const;

    const std::string m_tag;
    // Exactly one of m_file and m_content is set. m_place is the element's node in m_file.
    mutable boost::shared_ptr<const xml::ParsedXml> m_file;
    mutable std::unique_ptr<Content> m_content;
    mutable void* m_place = nullptr;
    std::uint32_t m_parents = 0; // in how many elements' content this one is
    bool m_keepsSpace = false;   // the file's elements around m_place make every text count
};

template <class T>
constexpr bool XmlElement::isSerial()
{
    return std::is_same_v<T, std::string> || std::is_same_v<T, int> || std::is_same_v<T, bool> ||
           std::is_same_v<T, QString>;
}

template <class T>
bool XmlElement::getAttribute(const std::string& name, T& value) const
{
    static_assert(isSerial<T>(), "Serial has no text form for this type");
    if constexpr (std::is_same_v<T, std::string>) {
        return getText(name, value);
    } else {
        std::string text;
        return getText(name, text) && Serial::load(text, value);
    }
}

template <class T>
void XmlElement::setAttribute(const std::string& name, const T& value, bool first)
{
    if constexpr (std::is_convertible_v<const T&, std::string>) {
        putText(name, value, first);
    } else {
        static_assert(isSerial<T>(), "Serial has no text form for this type");
        putText(name, Serial::save(value), first);
    }
}

template <class T>
T XmlElement::attribute(const std::string& name, const T& defaultValue) const
{
    T value{};
    return getAttribute(name, value) ? value : defaultValue;
}

} // namespace KX
