#pragma once

#include "byte_class.hpp"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace KX::xml {

/// Why a document is refused, and at which byte of it.
class Fault : public std::runtime_error
{
public:
    Fault(const std::string& reason, std::size_t offset)
        : std::runtime_error(reason), m_offset(offset)
    {
    }
    /// Bytes from the start of the document.
    std::size_t offset() const { return m_offset; }

private:
    std::size_t m_offset;
};

/// What a scan learns of a document beside that it is good.
struct ScanResult
{
    bool standalone = false;      ///< the XML declaration says standalone="yes"
    bool carriageReturns = false; ///< some line ends are not line feeds
    /// Some blank text that is not all that is in its element may be more than indentation: an
    /// element has text and other nodes, or text in several pieces, or xml:space.
    bool meaningfulBlanks = false;
};

/// The strict half of reading: decides whether a document is one that this library reads, which
/// the parser behind it, being lenient, does not.
///
/// Accepted is a well-formed document of XML 1.0, fifth edition (https://www.w3.org/TR/xml/), in
/// UTF-8, without namespaces being looked at, except that
/// - a document type may name its external part, but have no internal subset: what that declares
///   (entities, default attributes) would change what the elements mean;
/// - elements nest at most `a_maxDepth` deep;
/// - it has at most `a_maxNodes` nodes: elements, attributes, texts, comments, instructions;
/// - the XML declaration says version 1.0, and the encoding UTF-8 or US-ASCII if it says one.
///
/// One pass, no recursion, no allocation in proportion to the document; the cost of many attributes
/// in one tag is n log n.
class Scanner
{
public:
    /// Throws `Fault`. `document` is followed by a zero byte, which stops every inner loop.
    static ScanResult scan(std::string_view document);

private:
    /// An element whose end tag is still to come.
    struct Open
    {
        std::string_view name;
        bool text = false;  // not blank, or a CDATA section
        bool blank = false; // text
        bool other = false;
    };

    explicit Scanner(std::string_view document);

    void scanProlog();
    void scanXmlDeclaration();
    std::string_view scanPseudoAttribute(std::string_view name);
    void scanDoctype();
    void scanExternalId();
    std::string_view scanLiteral();
    void scanMisc(bool doctypeAllowed);
    void scanRoot();
    void scanContent();
    void scanText();
    void scanMarkup();
    void scanStartTag();
    void scanAttribute();
    void scanEndTag();
    void scanReference();
    void scanCharacterReference();
    void scanComment();
    void scanSection();
    void scanInstruction();
    void scanUntil(std::string_view end, const char* what);
    void refuseRepeatedAttribute();
    void noteOther();
    void count(std::size_t nodes);

    std::string_view scanName(const char* what);
    void scanEquals();
    template <ByteClass plain>
    void skipPlain();
    void skipSpecial();
    bool skipSpaces()
    {
        const bool isThere = is(*m_at, Space); // which it mostly is not
        if (isThere) {
            skipThisSpace();
        }
        return isThere;
    }
    void skipThisSpace();
    bool skip(std::string_view expected);
    void require(std::string_view expected, const char* reason);
    bool startsWith(std::string_view expected) const;
    std::string_view rest() const;
    [[noreturn]] void fail(const std::string& reason) const;
    [[noreturn]] void failAt(const std::string& reason, const char* where) const;
    [[noreturn]] void failInside(const std::string& what) const;

    const char* const m_begin;
    const char* const m_end;
    const char* m_at;
    bool m_ascii = false;
    ScanResult m_result;
    std::size_t m_nodes = 0;  // that the parser will make
    std::size_t m_blanks = 0; // that it will make as well, if blank text has a meaning
    std::vector<Open> m_open; // the elements around m_at
    std::vector<std::string_view> m_attributes; // the names in the tag around m_at
};

} // namespace KX::xml
