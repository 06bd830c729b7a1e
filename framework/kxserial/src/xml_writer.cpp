#include "xml_writer.hpp"

#include "byte_class.hpp"
#include "xml_text.hpp"

#include <kx/xml_value.hpp>

#include <algorithm>

namespace KX::xml {

namespace {

constexpr std::string_view a_sectionStart = "<![CDATA[";
constexpr std::string_view a_sectionEnd = "]]>";

std::string_view referenceTo(char c)
{
    switch (c) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    default:
        return "&#13;";
    }
}

void appendEscaped(std::string& out, std::string_view text, ByteClass escaped)
{
    std::size_t plain = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (is(text[i], escaped)) {
            out.append(text, plain, i - plain);
            out += referenceTo(text[i]);
            plain = i + 1;
        }
    }
    out += text.substr(plain);
}

} // namespace

std::string Writer::write(const XmlElement& root, const ParsedXml* file)
{
    constexpr std::size_t a_usualSize = 8192;
    Writer writer;
    writer.m_out.reserve(a_usualSize);
    writer.m_out += R"(<?xml version="1.0" encoding="UTF-8")";
    writer.m_out += file && file->standalone() ? " standalone=\"yes\"?>\n" : "?>\n";
    if (!file) {
        writer.writeTree(root);
        return std::move(writer.m_out);
    }
    for (const pugi::xml_node node : file->top()) {
        if (node.type() == pugi::node_element) {
            writer.writeTree(root);
        } else {
            writer.writeMisc(node);
        }
    }
    return std::move(writer.m_out);
}

void Writer::writeMisc(pugi::xml_node node)
{
    if (node.type() == pugi::node_doctype) {
        ((m_out += "<!DOCTYPE ") += node.value()) += '>';
    } else {
        writeNode(FileElement::kindOf(node), FileElement::textOf(node), false);
    }
    m_out += '\n';
}

void Writer::writeTree(const XmlElement& root)
{
    open(root);
    while (!m_levels.empty()) {
        Level& level = m_levels.back();
        if (level.content != nullptr) {
            writeNext(level);
        } else {
            writeNextOfFile(level);
        }
    }
    m_out += '\n';
}

void Writer::open(const XmlElement& element)
{
    if (!element.m_content) {
        openFileElement(*element.m_file, nodeAt(element.m_place), element.m_keepsSpace);
        return;
    }
    startTag(element.m_tag);
    bool preserve = false;
    for (const XmlElement::Content::Attribute& each : element.m_content->attributes) {
        attribute(each.name, each.value);
        preserve = preserve || isPreserve(each.name, each.value);
    }
    Shape shape;
    for (const XmlElement::Content::Node& node : element.m_content->nodes) {
        shape.add(node.kind, node.text);
    }
    Level level;
    level.tag = element.m_tag;
    level.content = element.m_content.get();
    enter(level, shape, preserve);
}

void Writer::openFileElement(const ParsedXml& file, pugi::xml_node node, bool keepsSpace)
{
    Level level;
    level.tag = node.name();
    startTag(level.tag);
    for (pugi::xml_attribute each = node.first_attribute(); each; each = each.next_attribute()) {
        attribute(each.name(), each.value());
    }
    if (node.first_child().empty()) {
        m_out += " />";
        return;
    }
    level.view = FileElement(file, node, keepsSpace);
    level.next = level.view.firstNode();
    enter(level, level.view.shape(), level.view.preserves());
}

void Writer::startTag(std::string_view tag)
{
    if (m_levels.size() == a_maxDepth) {
        throw Unwritable("element \"" + std::string(tag) + "\" is nested deeper than " +
                         std::to_string(a_maxDepth) + " levels");
    }
    (m_out += '<') += tag;
}

void Writer::attribute(std::string_view name, std::string_view value)
{
    ((m_out += ' ') += name) += "=\"";
    appendEscaped(m_out, value, EscapedValue);
    m_out += '"';
}

void Writer::enter(Level level, const Shape& shape, bool preserve)
{
    if (!shape.text && !shape.blank && !shape.other) {
        m_out += " />";
        return;
    }
    const bool kept = preserve || (!m_levels.empty() && m_levels.back().isInline);
    level.isInline = kept || shape.text || shape.blank;
    level.blankAsSection = shape.blank && shape.other && !kept && !shape.text;
    m_out += '>';
    m_levels.push_back(level);
}

void Writer::writeNext(Level& level)
{
    if (level.index == level.content->nodes.size()) {
        close(level);
        return;
    }
    beginNode(level);
    const XmlElement::Content::Node& node = level.content->nodes[level.index++];
    if (node.element) {
        open(*node.element);
    } else {
        writeNode(node.kind, node.text, level.blankAsSection);
    }
}

void Writer::writeNextOfFile(Level& level)
{
    if (level.next.empty()) {
        close(level);
        return;
    }
    beginNode(level);
    const pugi::xml_node node = level.next;
    level.next = level.view.nextNode(node);
    const NodeKind kind = FileElement::kindOf(node);
    if (kind == NodeKind::Element) {
        openFileElement(level.view.file(), node, level.view.keepsSpace());
    } else if (kind == NodeKind::Instruction) {
        writeNode(kind, FileElement::textOf(node), level.blankAsSection);
    } else {
        writeNode(kind, node.value(), level.blankAsSection);
    }
}

void Writer::beginNode(const Level& level)
{
    if (!level.isInline) {
        m_out += '\n';
        m_out.append(2 * m_levels.size(), ' ');
    }
}

void Writer::close(const Level& level)
{
    if (!level.isInline) {
        m_out += '\n';
        m_out.append(2 * (m_levels.size() - 1), ' ');
    }
    ((m_out += "</") += level.tag) += '>';
    m_levels.pop_back();
}

void Writer::writeNode(NodeKind kind, std::string_view text, bool blankAsSection)
{
    switch (kind) {
    case NodeKind::Text:
        if (blankAsSection && isBlank(text)) {
            writeSection(text);
        } else {
            appendEscaped(m_out, text, EscapedText);
        }
        break;
    case NodeKind::Section:
        writeSection(text);
        break;
    case NodeKind::Comment:
        ((m_out += "<!--") += text) += "-->";
        break;
    case NodeKind::Instruction:
        ((m_out += "<?") += text) += "?>";
        break;
    case NodeKind::Element:
        break;
    }
}

void Writer::writeSection(std::string_view text)
{
    m_out += a_sectionStart;
    std::size_t start = 0; // of what is not written yet
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r') {
            m_out.append(text, start, i - start);
            ((m_out += a_sectionEnd) += referenceTo('\r')) += a_sectionStart;
            start = i + 1;
        } else if (text[i] == '>' && i - start >= 2 && text[i - 1] == ']' && text[i - 2] == ']') {
            m_out.append(text, start, i - start);
            (m_out += a_sectionEnd) += a_sectionStart;
            start = i;
        }
    }
    m_out += text.substr(start);
    m_out += a_sectionEnd;
}

} // namespace KX::xml

bool KX::appendXmlValue(std::string& text, std::string_view value)
{
    using namespace xml;
    if (std::all_of(value.begin(), value.end(),
                    [](char c) { return classOf(c, PlainValue | EscapedValue) == PlainValue; })) {
        text += value; // most are so
        return true;
    }
    if (!isHoldable(value)) {
        return false;
    }
    appendEscaped(text, value, EscapedValue);
    return true;
}
