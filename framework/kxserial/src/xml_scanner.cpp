#include "xml_scanner.hpp"

#include "byte_class.hpp"
#include "xml_text.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <endian.h>

namespace KX::xml {

namespace {

constexpr std::string_view a_byteOrderMark = "\xEF\xBB\xBF";

bool equalIgnoringCase(std::string_view text, std::string_view lower)
{
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a + ('a' - 'A')) : a) == b;
    });
}

bool isUtf16(std::string_view document)
{
    using namespace std::string_view_literals;
    constexpr std::array<std::string_view, 4> a_starts{"\xFE\xFF"sv, "\xFF\xFE"sv, "\0<"sv,
                                                       "<\0"sv};
    return std::any_of(a_starts.begin(), a_starts.end(), [document](std::string_view start) {
        return document.substr(0, start.size()) == start;
    });
}

std::string quoted(std::string_view name)
{
    return "\"" + std::string(name) + "\"";
}

bool isPublicIdByte(char c)
{
    constexpr std::string_view a_marks = " \r\n-'()+,./:=?;!*#@$_%";
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           a_marks.find(c) != std::string_view::npos;
}

/// Whether no two names have both the same length and the same first letter. May be wrong in saying
/// no.
bool differAtSight(const std::vector<std::string_view>& names)
{
    std::uint64_t seen = 0;
    for (const std::string_view name : names) {
        const std::uint64_t bit = std::uint64_t{1}
                                  << ((8 * name.size() + static_cast<unsigned char>(name[0])) % 64);
        if ((seen & bit) != 0) {
            return false;
        }
        seen |= bit;
    }
    return true;
}

/// Bytes that are looked at at once.
using Block [[gnu::vector_size(16)]] = signed char;

/// How many bytes of a block are plain before one that is not.
template <ByteClass plain>
std::ptrdiff_t plainBytes(const char* at)
{
    constexpr std::string_view marks = marksIn(plain);
    Block bytes;
    std::memcpy(&bytes, at, sizeof bytes);
    const auto special = ((bytes < ' ') & (bytes != '\t') & (bytes != '\n')) | // or from 0x80 on
                         (bytes == marks[0]) | (bytes == marks[1]) | (bytes == marks[2]) |
                         (bytes == marks.back());
    std::array<std::uint64_t, 2> halves{};
    std::memcpy(halves.data(), &special, sizeof special);
    if (halves[0] != 0) {
        return __builtin_ctzll(le64toh(halves[0])) / 8;
    }
    return 8 + (halves[1] != 0 ? __builtin_ctzll(le64toh(halves[1])) / 8 : 8);
}

} // namespace

ScanResult Scanner::scan(std::string_view document)
{
    Scanner scanner(document);
    scanner.scanProlog();
    scanner.scanRoot();
    scanner.scanMisc(false);
    if (scanner.m_at != scanner.m_end) {
        scanner.fail(*scanner.m_at == '<' ? "a second element outside the root"
                                          : "text outside the root element");
    }
    if (scanner.m_result.meaningfulBlanks) {
        scanner.count(scanner.m_blanks); // the parser keeps them all then
    }
    return scanner.m_result;
}

Scanner::Scanner(std::string_view document)
    : m_begin(document.data()), m_end(document.data() + document.size()), m_at(document.data())
{
    m_open.reserve(16);
    m_attributes.reserve(16);
}

void Scanner::scanProlog()
{
    if (isUtf16(rest())) {
        fail("not UTF-8 but another encoding");
    }
    skip(a_byteOrderMark);
    if (startsWith("<?xml") && is(m_at[5], Space)) {
        scanXmlDeclaration();
    }
    scanMisc(true);
}

void Scanner::scanXmlDeclaration()
{
    m_at += 5;
    skipSpaces();
    const char* const versionAt = m_at;
    if (scanPseudoAttribute("version") != "1.0") {
        failAt("the XML declaration does not begin with version 1.0", versionAt);
    }
    bool space = skipSpaces();
    if (space && startsWith("encoding")) {
        const char* const encodingAt = m_at;
        const std::string_view encoding = scanPseudoAttribute("encoding");
        m_ascii = equalIgnoringCase(encoding, "us-ascii");
        if (!m_ascii && !equalIgnoringCase(encoding, "utf-8")) {
            failAt("an encoding other than UTF-8", encodingAt);
        }
        space = skipSpaces();
    }
    if (space && startsWith("standalone")) {
        const char* const standaloneAt = m_at;
        const std::string_view standalone = scanPseudoAttribute("standalone");
        m_result.standalone = standalone == "yes";
        if (!m_result.standalone && standalone != "no") {
            failAt(R"(standalone is neither "yes" nor "no")", standaloneAt);
        }
        skipSpaces();
    }
    require("?>", "\"?>\" expected at the end of the XML declaration");
}

std::string_view Scanner::scanPseudoAttribute(std::string_view name)
{
    if (!skip(name)) {
        fail(quoted(name) + " expected in the XML declaration");
    }
    scanEquals();
    return scanLiteral();
}

void Scanner::scanMisc(bool doctypeAllowed)
{
    while (true) {
        skipSpaces();
        if (startsWith("<!--")) {
            scanComment();
        } else if (startsWith("<?")) {
            scanInstruction();
        } else if (startsWith("<!DOCTYPE")) {
            if (!doctypeAllowed) {
                fail("a document type here");
            }
            scanDoctype();
            doctypeAllowed = false;
        } else {
            return;
        }
    }
}

void Scanner::scanDoctype()
{
    m_at += std::string_view("<!DOCTYPE").size();
    if (!skipSpaces()) {
        fail("white space expected after \"<!DOCTYPE\"");
    }
    scanName("a document type");
    if (skipSpaces() && (startsWith("SYSTEM") || startsWith("PUBLIC"))) {
        scanExternalId();
        skipSpaces();
    }
    if (startsWith("[")) {
        fail("a document type with declarations of its own");
    }
    require(">", "\">\" expected at the end of the document type");
}

void Scanner::scanExternalId()
{
    const bool isPublic = *m_at == 'P';
    m_at += std::string_view("SYSTEM").size();
    if (!skipSpaces()) {
        fail("white space expected before an identifier");
    }
    if (isPublic) {
        const std::string_view id = scanLiteral();
        const auto* const bad = std::find_if_not(id.begin(), id.end(), isPublicIdByte);
        if (bad != id.end()) {
            failAt("a character that a public identifier cannot have", bad);
        }
        if (!skipSpaces()) {
            fail("white space expected between two identifiers");
        }
    }
    scanLiteral();
}

std::string_view Scanner::scanLiteral()
{
    const char quote = *m_at;
    if (quote != '"' && quote != '\'') {
        fail("a quoted text expected");
    }
    const char* const start = ++m_at;
    while (*m_at != quote) {
        if (m_at == m_end) {
            failInside("a quoted text");
        }
        if (is(*m_at, PlainValue) || *m_at == '<' || *m_at == '&' || *m_at == '"' ||
            *m_at == '\'') {
            ++m_at;
        } else {
            skipSpecial();
        }
    }
    return {start, static_cast<std::size_t>(m_at++ - start)};
}

void Scanner::scanRoot()
{
    if (m_at == m_end) {
        fail("no root element");
    }
    if (*m_at != '<') {
        fail("text outside the root element");
    }
    scanMarkup();
    scanContent();
}

void Scanner::scanContent()
{
    while (!m_open.empty()) {
        scanText();
        scanMarkup();
    }
}

void Scanner::scanText()
{
    const bool blank = skipSpaces();
    if (*m_at == '<') {
        m_open.back().blank = m_open.back().blank || blank;
        m_blanks += blank ? 1 : 0;
        return;
    }
    m_open.back().text = true;
    count(1);
    while (true) {
        skipPlain<PlainText>();
        if (*m_at == '<') {
            return;
        }
        if (*m_at == '&') {
            scanReference();
        } else if (*m_at == ']') {
            if (startsWith("]]>")) {
                fail("\"]]>\" in text");
            }
            ++m_at;
        } else if (m_at == m_end) {
            failInside("element " + quoted(m_open.back().name));
        } else {
            skipSpecial();
        }
    }
}

void Scanner::scanMarkup()
{
    switch (m_at[1]) {
    case '/':
        scanEndTag();
        break;
    case '?':
        scanInstruction();
        break;
    case '!':
        if (startsWith("<!--")) {
            scanComment();
        } else if (startsWith("<![CDATA[") && !m_open.empty()) {
            scanSection();
        } else {
            fail("markup that is not allowed here");
        }
        break;
    default:
        scanStartTag();
    }
}

void Scanner::scanStartTag()
{
    const char* const start = m_at++;
    const std::string_view name = scanName("an element");
    noteOther();
    if (m_open.size() == a_maxDepth) {
        failAt("elements nested deeper than " + std::to_string(a_maxDepth) + " levels", start);
    }
    m_attributes.clear();
    while (true) {
        const bool space = skipSpaces();
        if (*m_at == '>') {
            ++m_at;
            m_open.push_back({name});
            break;
        }
        if (*m_at == '/') {
            require("/>", "\"/>\" expected");
            break;
        }
        if (m_at == m_end) {
            failInside("the tag of element " + quoted(name));
        }
        if (!space) {
            fail(R"(white space, ">" or "/>" expected in the tag of element )" + quoted(name));
        }
        scanAttribute();
    }
    refuseRepeatedAttribute();
}

void Scanner::scanAttribute()
{
    m_attributes.push_back(scanName("an attribute"));
    count(1);
    m_result.meaningfulBlanks = m_result.meaningfulBlanks || m_attributes.back() == "xml:space";
    scanEquals();
    const char quote = *m_at;
    if (quote != '"' && quote != '\'') {
        fail("a quote expected before the value of attribute " + quoted(m_attributes.back()));
    }
    ++m_at;
    while (true) {
        skipPlain<PlainValue>();
        if (*m_at == quote) {
            ++m_at;
            return;
        }
        if (*m_at == '&') {
            scanReference();
        } else if (*m_at == '"' || *m_at == '\'') {
            ++m_at;
        } else if (*m_at == '<') {
            fail("\"<\" in the value of attribute " + quoted(m_attributes.back()));
        } else if (m_at == m_end) {
            failInside("the value of attribute " + quoted(m_attributes.back()));
        } else {
            skipSpecial();
        }
    }
}

void Scanner::refuseRepeatedAttribute()
{
    std::vector<std::string_view>& names = m_attributes;
    if (differAtSight(names)) {
        return;
    }
    // The names are views into the document, so of two equal ones the later has the higher address.
    std::sort(names.begin(), names.end(), [](std::string_view a, std::string_view b) {
        const int order = a.compare(b);
        return order != 0 ? order < 0 : a.data() < b.data();
    });
    const auto repeated = std::adjacent_find(names.begin(), names.end());
    if (repeated != names.end()) {
        const std::string_view name = *std::next(repeated);
        failAt("attribute " + quoted(name) + " repeated", name.data());
    }
}

void Scanner::scanEndTag()
{
    const char* const start = m_at;
    m_at += 2;
    const std::string_view name = scanName("an element");
    if (m_open.empty() || m_open.back().name != name) {
        failAt("end tag " + quoted(name) + " without its start tag", start);
    }
    skipSpaces();
    if (*m_at != '>') {
        fail("\">\" expected at the end of an end tag");
    }
    ++m_at;
    const Open& closed = m_open.back();
    m_result.meaningfulBlanks =
        m_result.meaningfulBlanks || (closed.text && (closed.blank || closed.other));
    if (closed.blank && !closed.text && !closed.other) {
        count(1); // blank text that is all of an element
    }
    m_open.pop_back();
}

// An element, a comment or a processing instruction begins.
void Scanner::noteOther()
{
    count(1);
    if (!m_open.empty()) {
        m_open.back().other = true;
    }
}

void Scanner::count(std::size_t nodes)
{
    m_nodes += nodes;
    if (m_nodes > a_maxNodes) {
        fail("more than " + std::to_string(a_maxNodes) +
             " elements, attributes, texts, comments and processing instructions");
    }
}

void Scanner::scanReference()
{
    constexpr std::array<std::string_view, 5> a_known{"&lt;", "&gt;", "&amp;", "&quot;", "&apos;"};
    if (m_at[1] == '#') {
        scanCharacterReference();
        return;
    }
    const bool known = std::any_of(a_known.begin(), a_known.end(),
                                   [this](std::string_view entity) { return skip(entity); });
    if (!known) {
        fail("an unknown entity or an \"&\" on its own");
    }
}

void Scanner::scanCharacterReference()
{
    constexpr char32_t a_tooLarge = 0x110000;
    const char* const start = m_at;
    m_at += 2;
    const bool hexadecimal = skip("x");
    const char* const digits = m_at;
    char32_t value = 0;
    for (;; ++m_at) {
        const char c = *m_at;
        char32_t digit = 0;
        if (c >= '0' && c <= '9') {
            digit = static_cast<char32_t>(c - '0');
        } else if (hexadecimal && ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))) {
            digit = static_cast<char32_t>((c | 0x20) - 'a' + 10);
        } else {
            break;
        }
        value = std::min<char32_t>(value * (hexadecimal ? 16 : 10) + digit, a_tooLarge);
    }
    if (m_at == digits || !skip(";")) {
        failAt("a character reference that is not complete", start);
    }
    if (!isXmlChar(value)) {
        failAt("a reference to a character that is not allowed", start);
    }
}

void Scanner::scanComment()
{
    noteOther();
    m_at += 4;
    scanUntil("--", "a comment");
    m_at -= 2;
    require("-->", "\"--\" in a comment");
}

void Scanner::scanSection()
{
    m_open.back().text = true;
    count(1);
    m_at += std::string_view("<![CDATA[").size();
    scanUntil("]]>", "a CDATA section");
}

void Scanner::scanInstruction()
{
    noteOther();
    const char* const start = m_at;
    m_at += 2;
    if (equalIgnoringCase(scanName("a processing instruction"), "xml")) {
        failAt("an XML declaration that is not at the start", start);
    }
    if (!skipSpaces() && !startsWith("?>")) {
        fail("white space expected after the name of a processing instruction");
    }
    scanUntil("?>", "a processing instruction");
}

void Scanner::scanUntil(std::string_view end, const char* what)
{
    while (true) {
        skipPlain<PlainSection>();
        if (skip(end)) {
            return;
        }
        if (*m_at == ']' || *m_at == '-' || *m_at == '?') {
            ++m_at;
        } else if (m_at == m_end) {
            failInside(what);
        } else {
            skipSpecial();
        }
    }
}

std::string_view Scanner::scanName(const char* what)
{
    const char* const start = m_at;
    if (is(*m_at, NameStart)) {
        do {
            ++m_at;
        } while (is(*m_at, NameByte));
    }
    if (static_cast<unsigned char>(*m_at) >= 0x80) {
        if (m_ascii) {
            skipSpecial();
        }
        m_at = start + nameLength({start, static_cast<std::size_t>(m_end - start)});
    }
    if (m_at == start) {
        fail(std::string("the name of ") + what + " expected");
    }
    return {start, static_cast<std::size_t>(m_at - start)};
}

void Scanner::scanEquals()
{
    skipSpaces();
    if (*m_at != '=') {
        fail("\"=\" expected");
    }
    ++m_at;
    skipSpaces();
}

template <ByteClass plain>
void Scanner::skipPlain()
{
    // Most of a document goes through here. A member would be stored again for every byte.
    const char* at = m_at;
    constexpr std::ptrdiff_t block = sizeof(Block);
    while (m_end - at >= block) {
        const std::ptrdiff_t skipped = plainBytes<plain>(at);
        at += skipped;
        if (skipped < block) {
            m_at = at;
            return;
        }
    }
    while (is(*at, plain)) { // the zero byte at the end is plain nowhere
        ++at;
    }
    m_at = at;
}

void Scanner::skipSpecial()
{
    if (*m_at == '\r') {
        m_result.carriageReturns = true;
        ++m_at;
        return;
    }
    const CodePoint c = decode(rest());
    if (c.length == 0) {
        fail("bytes that are not UTF-8");
    }
    if (!isXmlChar(c.value)) {
        fail("a character that is not allowed");
    }
    if (m_ascii && c.length > 1) {
        fail("a byte that is not US-ASCII, as the XML declaration promises");
    }
    m_at += c.length;
}

void Scanner::skipThisSpace()
{
    const char* at = m_at;
    bool returns = false;
    while (is(*at, Space)) {
        returns |= *at == '\r';
        ++at;
    }
    m_result.carriageReturns |= returns;
    m_at = at;
}

bool Scanner::skip(std::string_view expected)
{
    if (!startsWith(expected)) {
        return false;
    }
    m_at += expected.size();
    return true;
}

void Scanner::require(std::string_view expected, const char* reason)
{
    if (!skip(expected)) {
        fail(reason);
    }
}

bool Scanner::startsWith(std::string_view expected) const
{
    // Mostly decided by the first byte; never reads beyond the zero byte at the end.
    const char* at = m_at;
    for (const char c : expected) {
        if (*at++ != c) {
            return false;
        }
    }
    return true;
}

std::string_view Scanner::rest() const
{
    return {m_at, static_cast<std::size_t>(m_end - m_at)};
}

void Scanner::fail(const std::string& reason) const
{
    failAt(reason, m_at);
}

void Scanner::failAt(const std::string& reason, const char* where) const
{
    throw Fault(reason, static_cast<std::size_t>(where - m_begin));
}

void Scanner::failInside(const std::string& what) const
{
    fail("the file ends inside " + what);
}

} // namespace KX::xml
