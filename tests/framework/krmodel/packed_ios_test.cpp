#include <kr/packed_ios.hpp>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

using KR::PackedIos;
using KX::XmlElement;

namespace {

using Attributes = std::vector<std::pair<std::string, std::string>>;

boost::shared_ptr<XmlElement> add(XmlElement& box, const std::string& tag,
                                  const Attributes& attributes)
{
    auto child = boost::make_shared<XmlElement>(tag);
    for (const auto& [name, value] : attributes) {
        child->setAttribute(name, value, false);
    }
    box.addChild(child);
    return child;
}

std::string textOf(const KR::IO& io)
{
    std::ostringstream text;
    text << io.id() << " " << io.name() << " '" << io.tooltip() << "'";
    return text.str();
}

std::string textOf(const KR::Port& port)
{
    std::ostringstream text;
    text << textOf(static_cast<const KR::IO&>(port)) << " " << port.type() << " " << port.typeSize()
         << " " << port.nature() << " " << port.inner();
    return text.str();
}

std::string textOf(const KR::Parameter& parameter)
{
    std::ostringstream text;
    text << textOf(static_cast<const KR::IO&>(parameter)) << " " << parameter.inheritsFromParent()
         << " " << parameter.contentType() << " '" << parameter.value() << "' '"
         << parameter.defaultValue() << "' '" << parameter.minimum() << "' '" << parameter.maximum()
         << "' " << parameter.customChoice();
    for (const std::string& choice : parameter.choices()) {
        text << " [" << choice << "]";
    }
    return text.str();
}

template <class Io>
std::vector<std::string> textsOf(const std::vector<boost::shared_ptr<Io>>& ios)
{
    std::vector<std::string> texts(ios.size());
    std::transform(ios.begin(), ios.end(), texts.begin(),
                   [](const auto& io) { return textOf(*io); });
    return texts;
}

using Texts = std::vector<std::string>;

TEST(PackedIos, OfAnEmptyBoxAreNone)
{
    for (const PackedIos& packed : {PackedIos(), PackedIos(XmlElement("Box"))}) {
        EXPECT_TRUE(packed.unpack().inputs.empty());
        EXPECT_TRUE(packed.unpack().outputs.empty());
        EXPECT_TRUE(packed.unpack().parameters.empty());
    }
}

TEST(PackedIos, KeepEveryAttributeAndTheOrder)
{
    XmlElement box("Box");
    add(box, "Output", {{"id", "3"}, {"name", "o"}, {"nature", "7"}});
    add(box, "Input",
        {{"id", "2"},
         {"name", "i \xc3\xa9\n"},
         {"tooltip", "What\tit takes"},
         {"type", "4"},
         {"type_size", "5"},
         {"nature", "6"},
         {"inner", "1"}});
    add(box, "Script", {{"name", "none of them"}});
    add(box, "Input", {{"id", "1"}, {"name", "later"}, {"tooltip", ""}});
    const auto parameter = add(box, "Parameter",
                               {{"id", "9"},
                                {"name", "p"},
                                {"tooltip", "t"},
                                {"inherits_from_parent", "1"},
                                {"content_type", "3"},
                                {"value", "v"},
                                {"default_value", "d"},
                                {"min", "-1"},
                                {"max", "1"},
                                {"custom_choice", "1"}});
    add(*parameter, "Choice", {{"value", "one"}});
    add(*parameter, "Choice", {});
    add(*parameter, "Choice", {{"value", ""}});
    add(box, "Parameter", {{"name", "after it"}});
    const PackedIos::Ios ios = PackedIos(box).unpack();
    EXPECT_EQ(textsOf(ios.inputs),
              (Texts{"2 i \xc3\xa9\n 'What\tit takes' 4 5 6 1", "1 later '' 0 1 0 0"}));
    EXPECT_EQ(textsOf(ios.outputs), Texts{"3 o '' 0 1 7 0"});
    EXPECT_EQ(textsOf(ios.parameters), (Texts{"9 p 't' 1 3 'v' 'd' '-1' '1' 1 [one] []",
                                              "10 after it '' 0 0 '' '' '' '' 0"}));
}

TEST(PackedIos, LeaveOutWhatCannotBeOne)
{
    XmlElement box("Box");
    add(box, "Input", {{"id", "1"}});
    add(box, "Input", {{"id", "x"}, {"name", "bad number"}});
    add(box, "Output", {{"id", "1"}, {"name", "taken by the input that comes later"}});
    add(box, "Input", {{"id", "1"}, {"name", "i"}, {"type", "bad"}});
    const PackedIos::Ios ios = PackedIos(box).unpack();
    EXPECT_EQ(textsOf(ios.inputs), Texts{"1 i '' 0 1 0 0"});
    EXPECT_EQ(textsOf(ios.outputs), Texts{});
}

TEST(PackedIos, ShowTheOtherChildren)
{
    XmlElement box("Box");
    for (const char* const tag : {"Bitmaps", "Input", "Timeline", "Output", "Parameter", "input"}) {
        add(box, tag, {{"id", "1"}, {"name", "n"}});
    }
    Texts others;
    const PackedIos packed(
        box, [&others](const XmlElement& child) { others.push_back(child.beacon()); });
    EXPECT_EQ(others, (Texts{"Bitmaps", "Timeline", "input"}));
    EXPECT_EQ(packed.unpack().inputs.size(), 1U);
}

TEST(PackedIos, DoNotChangeWithTheElement)
{
    XmlElement box("Box");
    const auto input = add(box, "Input", {{"id", "1"}, {"name", "before"}});
    const PackedIos packed(box);
    input->setAttribute("name", "after", false);
    EXPECT_EQ(textsOf(packed.unpack().inputs), Texts{"1 before '' 0 1 0 0"});
}

} // namespace
