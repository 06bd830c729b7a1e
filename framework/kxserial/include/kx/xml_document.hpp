#pragma once

#include <kx/xml_element.hpp>
#include <kxserial/export.hpp>

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>

namespace KX {

namespace xml {
struct Bytes;
} // namespace xml

/// An XML document: a root element, and the comments, processing instructions, document type and
/// standalone declaration that a file had outside of it, which stay with the document.
///
/// Reading is strict. Accepted are well-formed documents of XML 1.0, fifth edition, in UTF-8 (with
/// or without byte order mark), of at most 32 MiB and at most 600,000 elements, attributes, texts,
/// comments and processing instructions together, whose elements nest at most 256 deep and whose
/// document type, if any, has no declarations of its own: entities or default attributes declared
/// there would be lost. Everything accepted is written back with the same meaning.
///
/// No document takes more than 256 MB to be read and looked at; what has too much in it is refused
/// before a tree is made.
///
/// Writing is canonical. The same tree gives the same bytes: UTF-8 without byte order mark, an XML
/// declaration, two spaces of indentation a level, attributes in double quotes and in their order,
/// one line feed at the end. Reading and writing these again gives the same bytes.
class KXSERIAL_EXPORT XmlDocument
{
public:
    /// A document without root.
    XmlDocument();

    /// Reads from the position of `stream` to its end; the stream need not be seekable and stays
    /// open. Null when it cannot be read or does not hold an accepted document. `error`, when not
    /// null, is then "line L, column C: reason", where both count from 1 and columns count
    /// characters, or the reason alone when reading itself failed; it is empty on success.
    /// `warning`, when not null, is emptied: nothing that is accepted deserves one.
    static boost::shared_ptr<XmlDocument> loadFromXmlFile(FILE* stream, std::string* error,
                                                          std::string* warning);

    /// The same, of bytes in memory, which are copied.
    static boost::shared_ptr<XmlDocument>
    loadFromXmlBytes(const char* bytes, std::size_t size, std::string* error, std::string* warning);

    /// The root element, or null.
    boost::shared_ptr<XmlElement> root() const { return m_root; }
    /// Replaces the root element; null leaves the document without one.
    void setRoot(boost::shared_ptr<XmlElement> root);

    /// Writes to `stream` and flushes it; the stream stays open. False, with the reason in `error`
    /// when that is not null, when the document has no root, is nested deeper than 256 levels or
    /// has more in it than is read again (nothing is written then), or when the stream takes not
    /// all of it. `warning` as above.
    bool saveToXmlFile(FILE* stream, std::string* error, std::string* warning) const;

private:
    static boost::shared_ptr<XmlDocument> load(const std::function<xml::Bytes()>& read,
                                               std::string* error, std::string* warning);

    boost::shared_ptr<XmlElement> m_root;
    boost::shared_ptr<const xml::ParsedXml> m_file; // null for a document that was not read
};

} // namespace KX
