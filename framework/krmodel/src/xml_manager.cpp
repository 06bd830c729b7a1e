#include <kr/xml_manager.hpp>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

namespace KR {

namespace {

using KX::XmlElement;

constexpr const char* a_idAttribute = "id";
constexpr const char* a_choiceBeacon = "Choice";
constexpr const char* a_valueAttribute = "value";

std::string textAttribute(const XmlElement& element, const char* name)
{
    return element.attribute(name, std::string());
}

int nextFreeId(const XmlManager::IoById& ioById)
{
    if (ioById.empty()) {
        return 1;
    }
    const int largest = ioById.rbegin()->first;
    if (largest < std::numeric_limits<int>::max()) {
        return std::max(largest + 1, 1);
    }
    int free = 1;
    for (auto taken = ioById.lower_bound(free); taken != ioById.end() && taken->first == free;
         ++taken) {
        ++free;
    }
    return free;
}

// The number of the element, or nothing when it has a bad one or one that is taken.
std::optional<int> idFor(const XmlElement& element, const XmlManager::IoById& ioById)
{
    std::string text;
    if (!element.getAttribute(a_idAttribute, text)) {
        return nextFreeId(ioById);
    }
    int id = 0;
    if (!KX::Serial::load(text, id) || ioById.count(id) != 0) {
        return std::nullopt;
    }
    return id;
}

template <class Made, class Properties>
boost::shared_ptr<Made> create(const boost::shared_ptr<const XmlElement>& element,
                               XmlManager::IoById& ioById, Properties (*read)(const XmlElement&))
{
    if (!element) {
        return nullptr;
    }
    std::string name = textAttribute(*element, "name");
    const std::optional<int> id = name.empty() ? std::nullopt : idFor(*element, ioById);
    if (!id) {
        return nullptr;
    }
    auto made = boost::make_shared<Made>(*id, std::move(name), textAttribute(*element, "tooltip"),
                                         read(*element));
    ioById.emplace(*id, made);
    return made;
}

Port::Properties readPort(const XmlElement& element)
{
    Port::Properties read;
    read.type = element.attribute("type", read.type);
    read.typeSize = element.attribute("type_size", read.typeSize);
    read.nature = element.attribute("nature", read.nature);
    read.inner = element.attribute("inner", read.inner);
    return read;
}

Parameter::Properties readParameter(const XmlElement& element)
{
    Parameter::Properties read;
    read.inheritsFromParent = element.attribute("inherits_from_parent", read.inheritsFromParent);
    read.contentType = element.attribute("content_type", read.contentType);
    read.value = textAttribute(element, a_valueAttribute);
    read.defaultValue = textAttribute(element, "default_value");
    read.minimum = textAttribute(element, "min");
    read.maximum = textAttribute(element, "max");
    read.customChoice = element.attribute("custom_choice", read.customChoice);
    for (const auto& choice : element.children(a_choiceBeacon, std::string())) {
        std::string value;
        if (choice->getAttribute(a_valueAttribute, value)) {
            read.choices.push_back(std::move(value));
        }
    }
    return read;
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature callers are built against
boost::shared_ptr<Input> XmlManager::createInput(boost::shared_ptr<const XmlElement> element,
                                                 IoById& ioById)
{
    return create<Input>(element, ioById, readPort);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature callers are built against
boost::shared_ptr<Output> XmlManager::createOutput(boost::shared_ptr<const XmlElement> element,
                                                   IoById& ioById)
{
    return create<Output>(element, ioById, readPort);
}

boost::shared_ptr<Parameter>
// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature callers are built against
XmlManager::createParameter(boost::shared_ptr<const XmlElement> element, IoById& ioById)
{
    return create<Parameter>(element, ioById, readParameter);
}

} // namespace KR
