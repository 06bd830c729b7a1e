#include "xml_tree.hpp"

#include <kx/xml_element.hpp>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <stdexcept>
#include <unordered_set>

namespace KX {

using xml::FileElement;
using xml::NodeKind;

namespace {

void requireName(const std::string& name, const char* what)
{
    if (!xml::isName(name)) {
        throw std::invalid_argument(std::string("not a name that XML can hold for an ") + what +
                                    ": \"" + name + "\"");
    }
}

[[noreturn]] void failToHold(const std::string& where, const std::string& tag)
{
    throw std::invalid_argument("characters that XML cannot hold in the " + where +
                                " of element \"" + tag + "\"");
}

} // namespace

XmlElement::XmlElement(const std::string& tag) : m_tag(tag), m_content(new Content)
{
    requireName(tag, "element");
}

XmlElement::XmlElement(FileView view)
    : m_tag(view.node.name()),
      m_file(std::move(view.file)),
      m_place(view.node.internal_object()),
      m_keepsSpace(view.keepsSpace)
{
}

XmlElement::~XmlElement()
{
    if (!m_content) {
        return;
    }
    // A child's destructor would destroy its own children, one stack frame per level.
    std::vector<Content::Node> pending = std::move(m_content->nodes);
    while (!pending.empty()) {
        const boost::shared_ptr<XmlElement> element = std::move(pending.back().element);
        pending.pop_back();
        if (!element) {
            continue;
        }
        --element->m_parents;
        if (element.use_count() == 1 && element->m_content) {
            std::vector<Content::Node>& below = element->m_content->nodes;
            std::move(below.begin(), below.end(), std::back_inserter(pending));
            below.clear();
        }
    }
}

XmlElement::Content& XmlElement::content() const
{
    if (!m_content) {
        unfold();
    }
    return *m_content;
}

void XmlElement::unfold() const
{
    auto content = std::make_unique<Content>();
    for (const pugi::xml_attribute attribute : xml::nodeAt(m_place).attributes()) {
        content->attributes.push_back({attribute.name(), attribute.value()});
    }
    const FileElement view(*m_file, xml::nodeAt(m_place), m_keepsSpace);
    for (pugi::xml_node node = view.firstNode(); node; node = view.nextNode(node)) {
        const NodeKind kind = FileElement::kindOf(node);
        if (kind == NodeKind::Element) {
            auto child = boost::make_shared<XmlElement>(FileView{m_file, node, view.keepsSpace()});
            child->m_parents = 1;
            content->nodes.push_back({kind, std::string(), std::move(child)});
        } else {
            content->nodes.push_back({kind, FileElement::textOf(node), nullptr});
        }
    }
    m_content = std::move(content);
    m_place = nullptr;
    m_file.reset();
}

bool XmlElement::getText(const std::string& name, std::string& value) const
{
    if (!m_content) {
        const pugi::xml_attribute attribute = xml::nodeAt(m_place).attribute(name.c_str());
        if (attribute) {
            value = attribute.value();
        }
        return !attribute.empty();
    }
    const auto& attributes = m_content->attributes;
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&name](const auto& each) { return each.name == name; });
    if (found != attributes.end()) {
        value = found->value;
    }
    return found != attributes.end();
}

void XmlElement::visitAttributes(const AttributeVisitor& visit) const
{
    if (m_content) {
        for (const Content::Attribute& attribute : m_content->attributes) {
            visit(attribute.name, attribute.value);
        }
        return;
    }
    pugi::xml_attribute attribute = xml::nodeAt(m_place).first_attribute();
    for (; attribute; attribute = attribute.next_attribute()) {
        visit(attribute.name(), attribute.value());
    }
}

void XmlElement::putText(const std::string& name, const std::string& value, bool first)
{
    requireName(name, "attribute");
    if (!xml::isHoldable(value)) {
        failToHold("attribute \"" + name + "\"", m_tag);
    }
    auto& attributes = content().attributes;
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&name](const auto& each) { return each.name == name; });
    if (found != attributes.end()) {
        found->value = value;
    } else {
        attributes.insert(first ? attributes.begin() : attributes.end(), {name, value});
    }
}

boost::shared_ptr<std::string> XmlElement::text() const
{
    boost::shared_ptr<std::string> joined;
    const auto add = [&joined](NodeKind kind, const auto& text) {
        if (kind == NodeKind::Text || kind == NodeKind::Section) {
            if (!joined) {
                joined = boost::make_shared<std::string>();
            }
            *joined += text;
        }
    };
    if (m_content) {
        for (const Content::Node& node : m_content->nodes) {
            add(node.kind, node.text);
        }
    } else {
        const FileElement view(*m_file, xml::nodeAt(m_place), m_keepsSpace);
        for (pugi::xml_node node = view.firstNode(); node; node = view.nextNode(node)) {
            add(FileElement::kindOf(node), node.value());
        }
    }
    return joined;
}

void XmlElement::setText(const std::string& text, bool cdata)
{
    if (!xml::isHoldable(text)) {
        failToHold("text", m_tag);
    }
    std::vector<Content::Node>& nodes = content().nodes;
    const auto isText = [](const Content::Node& node) {
        return node.kind == NodeKind::Text || node.kind == NodeKind::Section;
    };
    const auto firstText = std::find_if(nodes.begin(), nodes.end(), isText);
    const auto place = firstText == nodes.end() ? 0 : firstText - nodes.begin();
    nodes.erase(std::remove_if(nodes.begin(), nodes.end(), isText), nodes.end());
    if (cdata || !text.empty()) {
        nodes.insert(nodes.begin() + place,
                     {cdata ? NodeKind::Section : NodeKind::Text, text, nullptr});
    }
}

boost::shared_ptr<XmlElement> XmlElement::findChild(const std::string& tag) const
{
    for (const Content::Node& node : content().nodes) {
        if (node.element && node.element->m_tag == tag) {
            return node.element;
        }
    }
    return nullptr;
}

boost::shared_ptr<XmlElement> XmlElement::firstChild(const std::string& tag)
{
    return findChild(tag);
}

boost::shared_ptr<const XmlElement> XmlElement::firstChild(const std::string& tag) const
{
    return findChild(tag);
}

std::list<boost::shared_ptr<const XmlElement>>
XmlElement::children(const std::string& tag, const std::string& container) const
{
    std::list<boost::shared_ptr<const XmlElement>> found;
    if (!container.empty()) {
        const boost::shared_ptr<XmlElement> inner = findChild(container);
        return inner ? inner->children(tag, std::string()) : found;
    }
    for (const Content::Node& node : content().nodes) {
        if (node.element && node.element->m_tag == tag) {
            found.emplace_back(node.element);
        }
    }
    return found;
}

std::list<boost::shared_ptr<const XmlElement>> XmlElement::mixedChildren() const
{
    std::list<boost::shared_ptr<const XmlElement>> found;
    for (const Content::Node& node : content().nodes) {
        if (node.element) {
            found.emplace_back(node.element);
        }
    }
    return found;
}

void XmlElement::visitChildren(const ChildVisitor& visit) const
{
    if (m_content) {
        for (const Content::Node& node : m_content->nodes) {
            if (node.element) {
                visit(*node.element);
            }
        }
        return;
    }
    const boost::shared_ptr<const xml::ParsedXml> file = m_file; // whatever is asked meanwhile
    const FileElement view(*file, xml::nodeAt(m_place), m_keepsSpace);
    for (pugi::xml_node node = view.firstNode(); node; node = view.nextNode(node)) {
        if (FileElement::kindOf(node) == NodeKind::Element) {
            visit(XmlElement(FileView{file, node, view.keepsSpace()}));
        }
    }
}

bool XmlElement::hasBelow(const XmlElement* element) const
{
    std::vector<const XmlElement*> pending{this};
    std::unordered_set<const XmlElement*> seen;
    while (!pending.empty()) {
        const XmlElement* const next = pending.back();
        pending.pop_back();
        if (next == element) {
            return true;
        }
        // What is still a view of a file has no elements below it that anybody holds.
        if (!next->m_content || (next->m_parents > 1 && !seen.insert(next).second)) {
            continue;
        }
        for (const Content::Node& node : next->m_content->nodes) {
            if (node.element) {
                pending.push_back(node.element.get());
            }
        }
    }
    return false;
}

void XmlElement::refuseAsChild(const boost::shared_ptr<XmlElement>& child) const
{
    if (!child) {
        throw std::invalid_argument("a null child for element \"" + m_tag + "\"");
    }
    // An element without a parent is below none, which spares a tree that is built from its leaves
    // or from its root a walk for each element.
    if (child.get() == this || (m_parents > 0 && child->hasBelow(this))) {
        throw std::invalid_argument("element \"" + child->m_tag + "\" added below itself");
    }
}

void XmlElement::append(boost::shared_ptr<XmlElement> child)
{
    XmlElement& added = *child;
    content().nodes.push_back({NodeKind::Element, std::string(), std::move(child)});
    ++added.m_parents;
}

void XmlElement::addChild(boost::shared_ptr<XmlElement> child)
{
    refuseAsChild(child);
    append(std::move(child));
}

void XmlElement::addChildren(const std::list<boost::shared_ptr<XmlElement>>& children,
                             const std::string& container)
{
    boost::shared_ptr<XmlElement> inner = container.empty() ? nullptr : findChild(container);
    for (const boost::shared_ptr<XmlElement>& child : children) {
        (inner ? *inner : *this).refuseAsChild(child);
    }
    if (!inner && !container.empty()) {
        inner = boost::make_shared<XmlElement>(container);
        append(inner);
    }
    for (const boost::shared_ptr<XmlElement>& child : children) {
        (inner ? *inner : *this).append(child);
    }
}

void XmlElement::removeChildren(const std::string& tag, const std::string& container)
{
    if (!container.empty()) {
        if (const boost::shared_ptr<XmlElement> inner = findChild(container)) {
            inner->removeChildren(tag, std::string());
        }
        return;
    }
    std::vector<Content::Node>& nodes = content().nodes;
    const auto removed = std::remove_if(nodes.begin(), nodes.end(), [&tag](Content::Node& node) {
        const bool match = node.element && node.element->m_tag == tag;
        if (match) {
            --node.element->m_parents;
        }
        return match;
    });
    nodes.erase(removed, nodes.end());
}

boost::shared_ptr<XmlElement> XmlElement::cloneShallow() const
{
    if (!m_content) {
        return boost::make_shared<XmlElement>(FileView{m_file, xml::nodeAt(m_place), m_keepsSpace});
    }
    auto copy = boost::make_shared<XmlElement>(m_tag);
    *copy->m_content = *m_content;
    for (const Content::Node& node : m_content->nodes) {
        if (node.element) {
            ++node.element->m_parents;
        }
    }
    return copy;
}

boost::shared_ptr<XmlElement> XmlElement::clone() const
{
    boost::shared_ptr<XmlElement> top = cloneShallow();
    std::vector<XmlElement*> pending{top.get()};
    while (!pending.empty()) {
        XmlElement* const next = pending.back();
        pending.pop_back();
        if (!next->m_content) {
            continue;
        }
        for (Content::Node& node : next->m_content->nodes) {
            if (node.element) {
                const boost::shared_ptr<XmlElement> original = node.element;
                node.element = original->cloneShallow();
                node.element->m_parents = 1;
                --original->m_parents;
                pending.push_back(node.element.get());
            }
        }
    }
    return top;
}

} // namespace KX
