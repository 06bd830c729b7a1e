#include "xml_source.hpp"

#include <algorithm>
#include <string_view>

namespace KR::Localization {

namespace {

using pugi::xml_node;

constexpr int a_largestFile = 128 * 1024 * 1024;
constexpr int a_mostAttributes = 32;
// Entities, line ends and attribute values are left as they are, for appendXmlText() to check and
// resolve. The first text of an element is kept in the element itself, and white space only where
// nothing else is in an element, which saves most nodes; see parseWithSpace().
constexpr unsigned a_parseFlags = pugi::parse_pi | pugi::parse_comments | pugi::parse_cdata |
                                  pugi::parse_declaration | pugi::parse_doctype |
                                  pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata |
                                  pugi::parse_fragment;
constexpr unsigned a_parseFlagsWithSpace =
    (a_parseFlags & ~pugi::parse_ws_pcdata_single) | pugi::parse_ws_pcdata;

bool isBlank(const char* text)
{
    while (*text == ' ' || *text == '\n' || *text == '\t' || *text == '\r') {
        ++text;
    }
    return *text == '\0';
}

/// The text that <byte value="..."/> stands for: one UTF-16 unit, in hexadecimal after an "x".
QString byteText(QString value)
{
    const bool hex = value.startsWith(QLatin1Char('x'));
    if (hex) {
        value.remove(0, 1);
    }
    const uint unit = value.toUInt(nullptr, hex ? 16 : 10);
    return unit != 0 ? QString(QChar(static_cast<ushort>(unit))) : QString();
}

/// Makes "?" of half characters, which <byte> elements can leave behind, as writing would do it:
/// messages that differ in them alone are the same in a file.
void replaceLoneSurrogates(QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSurrogate()) {
            continue;
        }
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() &&
            text.at(i + 1).isLowSurrogate()) {
            ++i;
        } else {
            text[i] = QLatin1Char('?');
        }
    }
}

} // namespace

XmlSource::XmlSource(const QByteArray& bytes) : m_bytes(bytes)
{
    readDocument();
}

void XmlSource::fail(const std::string& reason, std::ptrdiff_t offset) const
{
    const auto* const end = m_bytes.begin() + std::clamp<std::ptrdiff_t>(offset, 0, m_bytes.size());
    const auto line = 1 + std::count(m_bytes.begin(), end, '\n');
    throw DamagedFile("line " + std::to_string(line) + ": " + reason);
}

void XmlSource::fail(const std::string& reason, xml_node at) const
{
    fail(reason, at.offset_debug());
}

void XmlSource::failUnexpected(xml_node at) const
{
    switch (at.type()) {
    case pugi::node_element:
        fail("unexpected element <" + std::string(at.name()).substr(0, 40) + ">", at);
    case pugi::node_pcdata:
    case pugi::node_cdata:
        fail("unexpected text", at);
    case pugi::node_comment:
        fail("a comment inside a text", at);
    default:
        fail("an unexpected declaration or processing instruction", at);
    }
}

/// What has to be known before parsing: pugixml stops at a null, and takes no note of what follows
/// the last element.
void XmlSource::checkBytes(const char* begin, const char* end) const
{
    if (m_bytes.size() > a_largestFile) {
        fail("longer than 128 MiB", 0);
    }
    const char* last = end;
    while (last != begin && std::strchr(" \t\r\n", last[-1]) != nullptr && last[-1] != '\0') {
        --last;
    }
    if (last == begin) {
        fail("no content", 0);
    }
    if (const void* null = std::memchr(begin, 0, static_cast<std::size_t>(end - begin))) {
        fail("a control character", static_cast<const char*>(null) - m_bytes.constData());
    }
    if (last[-1] != '>') {
        fail("the file ends early", end - m_bytes.constData());
    }
}

void XmlSource::readDocument()
{
    const char* const begin = m_bytes.constData();
    checkBytes(begin, begin + m_bytes.size());
    const pugi::xml_parse_result result = m_document.load_buffer(
        begin, static_cast<std::size_t>(m_bytes.size()), a_parseFlags, pugi::encoding_utf8);
    if (!result) {
        fail(result.description(), result.offset);
    }
    xml_node root;
    bool doctype = false;
    for (const xml_node node : m_document.children()) {
        if (node.type() == pugi::node_element && !root) {
            root = node;
        } else if (node.type() == pugi::node_declaration) {
            readDeclaration(node);
        } else if (node.type() == pugi::node_doctype && !doctype && !root) {
            doctype = true;
            checkDoctype(node);
        } else if (node.type() == pugi::node_comment) {
            checkComment(node, node);
        } else if (node.type() != pugi::node_pcdata || !isBlank(node.value())) {
            failUnexpected(node);
        }
    }
    if (!root) {
        fail("no element", 0);
    }
    m_root = root;
}

void XmlSource::readDeclaration(xml_node declaration) const
{
    const int start = m_bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    if (declaration.offset_debug() != start + 2) {
        failUnexpected(declaration);
    }
    readAttributes(declaration, [&](const char* name, const QString& value) {
        if (std::strcmp(name, "version") == 0 && value != QLatin1String("1.0")) {
            fail("another version of XML than 1.0", declaration);
        }
        if (std::strcmp(name, "encoding") == 0 &&
            value.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) != 0) {
            fail("another encoding than UTF-8", declaration);
        }
    });
}

void XmlSource::readNoAttributes(xml_node element) const
{
    readAttributes(element, [](const char*, const QString&) {});
}

QString XmlSource::readText(xml_node element, bool allowComments) const
{
    if (element.first_child()) {
        return readMixed(element, allowComments);
    }
    QString text;
    append(text, element.value(), XmlTextKind::Content, element);
    return text;
}

QString XmlSource::readMixed(xml_node element, bool allowComments) const
{
    for (const xml_node child : element.children()) {
        // Before anything is made of it again.
        if (child.type() == pugi::node_element &&
            (!isElement(child, "byte") || child.first_child())) {
            fail("an unexpected element in a text", element);
        }
    }
    QString text;
    pugi::xml_document document;
    const xml_node whole = parseWithSpace(element, document);
    append(text, whole.value(), XmlTextKind::Content, element);
    for (xml_node child = whole.first_child(); child; child = child.next_sibling()) {
        if (child.type() == pugi::node_pcdata) {
            append(text, child.value(), XmlTextKind::Content, element);
        } else if (child.type() == pugi::node_cdata) {
            append(text, child.value(), XmlTextKind::Cdata, element);
        } else if (isElement(child, "byte")) {
            readByte(child, text, element);
        } else if (child.type() == pugi::node_comment && allowComments) {
            checkComment(child, element);
        } else {
            fail("an unexpected element or comment in a text", element);
        }
    }
    replaceLoneSurrogates(text);
    return text;
}

/// An element with all white space, from a parse of its own into `document`: few elements need it,
/// and the nodes for it would be half of those of a file.
xml_node XmlSource::parseWithSpace(xml_node element, pugi::xml_document& document) const
{
    xml_node last = element;
    while (last && !last.next_sibling()) {
        last = last.parent();
    }
    const std::ptrdiff_t begin = element.offset_debug() - 1;
    const std::ptrdiff_t end = last ? last.next_sibling().offset_debug() : m_bytes.size();
    // Fails at what follows the element's end, which leaves the element in the document.
    document.load_buffer(m_bytes.constData() + begin, static_cast<std::size_t>(end - begin),
                         a_parseFlagsWithSpace, pugi::encoding_utf8);
    return document.first_child();
}

void XmlSource::readByte(xml_node element, QString& text, xml_node at) const
{
    if (element.first_child() || *element.value() != '\0') {
        fail("<byte> with a content", at);
    }
    readAttributes(
        element,
        [&text](const char* name, const QString& value) {
            if (std::strcmp(name, "value") == 0) {
                text += byteText(value);
            }
        },
        at);
}

void XmlSource::append(QString& text, const char* raw, XmlTextKind kind, xml_node at) const
{
    if (const char* reason = appendXmlText(text, raw, kind)) {
        fail(reason, at);
    }
}

void XmlSource::checkAttribute(xml_node element, pugi::xml_attribute attribute, xml_node at) const
{
    int count = 0;
    for (auto other = element.first_attribute(); other != attribute;
         other = other.next_attribute()) {
        if (std::strcmp(other.name(), attribute.name()) == 0) {
            fail("an attribute given twice", at);
        }
        if (++count == a_mostAttributes) {
            fail("too many attributes", at);
        }
    }
    // pugixml has looked at the name as bytes, of which those of ASCII are a name's.
    const std::string_view name = attribute.name();
    if (std::any_of(name.begin(), name.end(), [](char c) { return (c & 0x80) != 0; })) {
        QString text;
        append(text, attribute.name(), XmlTextKind::Cdata, at);
    }
}

void XmlSource::checkComment(xml_node comment, xml_node at) const
{
    QString text;
    append(text, comment.value(), XmlTextKind::Cdata, at);
    if (text.contains(QLatin1String("--")) || text.endsWith(QLatin1Char('-'))) {
        fail("\"--\" in a comment", at);
    }
}

void XmlSource::checkDoctype(xml_node doctype) const
{
    QString text;
    append(text, doctype.value(), XmlTextKind::Cdata, doctype);
    if (text.contains(QLatin1String("<!ENTITY"))) {
        fail("a document type that defines entities", doctype);
    }
}

/// Checks that a text, or an element's first text, is white space.
void XmlSource::checkSpace(xml_node node) const
{
    if (isBlank(node.value())) {
        return;
    }
    QString text;
    const bool cdata = node.type() == pugi::node_cdata;
    append(text, node.value(), cdata ? XmlTextKind::Cdata : XmlTextKind::Content, node);
    if (!text.trimmed().isEmpty()) {
        fail("unexpected text", node);
    }
}

} // namespace KR::Localization
