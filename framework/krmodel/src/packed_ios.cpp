#include <kr/packed_ios.hpp>
#include <kr/xml_beacons.hpp>
#include <kr/xml_manager.hpp>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <functional>
#include <iterator>

namespace KR {

namespace {

using KX::XmlElement;
using Element = boost::shared_ptr<const XmlElement>;

// A record is the number of a kind, then for each attribute and each of a parameter's choices a
// code and the text with a zero byte behind it, and another zero byte. No text has one.
constexpr char a_end = '\0';
constexpr char a_choice = '\1';
constexpr char a_firstAttribute = '\2';

enum
{
    InputKind,
    OutputKind,
    ParameterKind
};

// What XmlManager reads of each kind. As strings, which XmlElement wants.
struct Kind
{
    std::string tag;
    std::vector<std::string> attributes;
};

const std::vector<Kind>& kinds()
{
    static const std::vector<std::string> port{"name",   "id",    "type",   "type_size",
                                               "nature", "inner", "tooltip"};
    static const std::vector<Kind> all{
        {XmlBeacons::a_inputBeacon, port},
        {XmlBeacons::a_outputBeacon, port},
        {XmlBeacons::a_parameterBeacon,
         {"name", "id", "tooltip", "inherits_from_parent", "content_type", "value", "default_value",
          "min", "max", "custom_choice"}}};
    return all;
}

const std::string& choiceTag()
{
    static const std::string tag = "Choice";
    return tag;
}

const std::string& choiceValue()
{
    static const std::string name = "value";
    return name;
}

void packText(char code, std::string_view text, std::string& packed)
{
    packed += code;
    packed.append(text) += a_end;
}

void packChoices(const XmlElement& parameter, std::string& packed)
{
    std::string text;
    parameter.visitChildren([&](const XmlElement& child) {
        if (child.beacon() == choiceTag() && child.getAttribute(choiceValue(), text)) {
            packText(a_choice, text, packed);
        }
    });
}

void pack(const XmlElement& io, char kind, std::string& packed)
{
    packed += kind;
    const auto& names = kinds()[static_cast<std::size_t>(kind)].attributes;
    auto expected = names.begin(); // they mostly come in this order
    const auto packOne = [&](std::string_view name, std::string_view value) {
        const auto found = expected != names.end() && *expected == name
                               ? expected
                               : std::find(names.begin(), names.end(), name);
        if (found != names.end()) {
            packText(static_cast<char>(a_firstAttribute + (found - names.begin())), value, packed);
            expected = std::next(found);
        }
    };
    io.visitAttributes(std::cref(packOne)); // a copy would be put on the heap
    if (kind == ParameterKind) {
        packChoices(io, packed);
    }
    packed += a_end;
}

// `at` comes behind the record.
boost::shared_ptr<XmlElement> unpackElement(const Kind& kind, const char*& at)
{
    auto element = boost::make_shared<XmlElement>(kind.tag);
    while (*at != a_end) {
        const char code = *at++;
        const std::string text = at;
        at += text.size() + 1;
        if (code == a_choice) {
            const auto choice = boost::make_shared<XmlElement>(choiceTag());
            choice->setAttribute(choiceValue(), text, false);
            element->addChild(choice);
        } else {
            const auto number = static_cast<std::size_t>(code - a_firstAttribute);
            element->setAttribute(kind.attributes[number], text, false);
        }
    }
    ++at;
    return element;
}

template <class Io>
std::vector<boost::shared_ptr<Io>>
makeAll(const std::vector<Element>& elements, XmlManager::IoById& ioById,
        boost::shared_ptr<Io> (*create)(Element, XmlManager::IoById&))
{
    std::vector<boost::shared_ptr<Io>> ios;
    for (const Element& element : elements) {
        if (auto io = create(element, ioById)) {
            ios.push_back(std::move(io));
        }
    }
    return ios;
}

} // namespace

PackedIos::PackedIos(const XmlElement& box, const XmlElement::ChildVisitor& visitOther)
{
    const std::vector<Kind>& all = kinds();
    std::string packed;
    packed.reserve(std::size_t{1} << 12); // more than most need
    box.visitChildren([&](const XmlElement& child) {
        const auto kind = std::find_if(
            all.begin(), all.end(), [&](const Kind& each) { return each.tag == child.beacon(); });
        if (kind != all.end()) {
            pack(child, static_cast<char>(kind - all.begin()), packed);
        } else if (visitOther) {
            visitOther(child);
        }
    });
    m_texts = packed; // which takes no more memory than it needs
}

PackedIos::Ios PackedIos::unpack() const
{
    std::vector<std::vector<Element>> elements(kinds().size());
    const char* at = m_texts.data();
    while (at != m_texts.data() + m_texts.size()) {
        const auto kind = static_cast<unsigned char>(*at++);
        elements[kind].push_back(unpackElement(kinds()[kind], at));
    }
    XmlManager::IoById ioById;
    Ios ios;
    ios.inputs = makeAll(elements[InputKind], ioById, &XmlManager::createInput);
    ios.outputs = makeAll(elements[OutputKind], ioById, &XmlManager::createOutput);
    ios.parameters = makeAll(elements[ParameterKind], ioById, &XmlManager::createParameter);
    return ios;
}

} // namespace KR
