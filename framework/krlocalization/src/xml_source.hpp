#pragma once

#include "xml_text.hpp"

#include <QByteArray>
#include <QString>
#include <pugixml.hpp>

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>

namespace KR::Localization {

/// Why a file can't be read. The text says what is wrong and in which line.
class DamagedFile : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

inline bool isElement(pugi::xml_node node, const char* name)
{
    return node.type() == pugi::node_element && std::strcmp(node.name(), name) == 0;
}

/// An XML file whose reader says of each element what may be in it, and gets the rest refused.
///
/// pugixml parses it, which takes many files that are not well-formed. The functions here check
/// what they give out, so a file is as strictly checked as it is completely read: the caller must
/// ask for the attributes of every element, and for its text or its children.
///
/// Nothing here is recursive, whatever the nesting. All functions throw DamagedFile.
class XmlSource
{
public:
    /// Parses `bytes`, which must outlive the source and be UTF-8 of 128 MiB at most.
    explicit XmlSource(const QByteArray& bytes);

    pugi::xml_node root() const { return m_root; }

    [[noreturn]] void fail(const std::string& reason, pugi::xml_node at) const;
    [[noreturn]] void failUnexpected(pugi::xml_node at) const;

    /// Calls `use(const char*, const QString&)` with the name and value of each attribute.
    template <class Use>
    void readAttributes(pugi::xml_node element, const Use& use) const
    {
        readAttributes(element, use, element);
    }

    /// Checks the attributes of an element, none of which has a meaning.
    void readNoAttributes(pugi::xml_node element) const;

    /// Calls `use(xml_node)` with each child element of an element that has no text.
    template <class Use>
    void readChildren(pugi::xml_node element, bool allowComments, const Use& use) const;

    /// The text of an element that may hold elements <byte value="..."/>, each of which stands for
    /// one UTF-16 unit, and comments if `allowComments` says so.
    QString readText(pugi::xml_node element, bool allowComments = false) const;

    /// Appends to `text` what the bytes `raw` of a node say.
    void append(QString& text, const char* raw, XmlTextKind kind, pugi::xml_node at) const;

private:
    template <class Use>
    void readAttributes(pugi::xml_node element, const Use& use, pugi::xml_node at) const;

    [[noreturn]] void fail(const std::string& reason, std::ptrdiff_t offset) const;
    void checkBytes(const char* begin, const char* end) const;
    void readDocument();
    void readDeclaration(pugi::xml_node declaration) const;
    QString readMixed(pugi::xml_node element, bool allowComments) const;
    pugi::xml_node parseWithSpace(pugi::xml_node element, pugi::xml_document& document) const;
    void readByte(pugi::xml_node element, QString& text, pugi::xml_node at) const;
    void checkAttribute(pugi::xml_node element, pugi::xml_attribute attribute,
                        pugi::xml_node at) const;
    void checkComment(pugi::xml_node comment, pugi::xml_node at) const;
    void checkDoctype(pugi::xml_node doctype) const;
    void checkSpace(pugi::xml_node node) const;

    const QByteArray& m_bytes;
    pugi::xml_document m_document;
    pugi::xml_node m_root;
};

template <class Use>
void XmlSource::readAttributes(pugi::xml_node element, const Use& use, pugi::xml_node at) const
{
    for (auto given = element.first_attribute(); given; given = given.next_attribute()) {
        checkAttribute(element, given, at);
        QString value;
        append(value, given.value(), XmlTextKind::Attribute, at);
        use(given.name(), value);
    }
}

template <class Use>
void XmlSource::readChildren(pugi::xml_node element, bool allowComments, const Use& use) const
{
    checkSpace(element);
    for (pugi::xml_node child = element.first_child(); child; child = child.next_sibling()) {
        if (child.type() == pugi::node_element) {
            use(child);
        } else if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            checkSpace(child);
        } else if (child.type() == pugi::node_comment && allowComments) {
            checkComment(child, child);
        } else {
            failUnexpected(child);
        }
    }
}

} // namespace KR::Localization
