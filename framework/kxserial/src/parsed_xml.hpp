#pragma once

#include "stream.hpp"

#include <boost/shared_ptr.hpp>
#include <pugixml.hpp>

#include <string>
#include <string_view>

namespace KX::xml {

/// A document as it was read: never changed once it is made, and shared by every element that is
/// still exactly what the file says.
///
/// The tree is the parser's own, in the file's own bytes, so that reading costs no allocation per
/// element. Blank text is in it only where it can be more than indentation.
class ParsedXml
{
public:
    /// Takes `bytes` over, their line ends normalised as XML 1.0, section 2.11, asks for. Throws
    /// `Fault` and leaves `bytes` where they are when the scanner refuses them.
    static boost::shared_ptr<const ParsedXml> parse(Bytes& bytes);

    pugi::xml_node root() const { return m_document.document_element(); }
    /// Everything outside the root, and the root, in order.
    pugi::xml_node top() const { return m_document.root(); }
    bool standalone() const { return m_standalone; }
    /// False: every element has either one piece of text and nothing else, or no text at all, not
    /// even indentation.
    bool mixed() const { return m_mixed; }

private:
    Bytes m_bytes;
    pugi::xml_document m_document;
    bool m_standalone = false;
    bool m_mixed = false;
};

/// "line L, column C" of a byte of `document`: both count from 1, columns in characters, and a
/// line ends with a line feed, a carriage return or the two together.
std::string position(std::string_view document, std::size_t offset);

} // namespace KX::xml
