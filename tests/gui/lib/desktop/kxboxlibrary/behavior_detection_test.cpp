#include "support.hpp"

namespace KX::test {
namespace {

const char* const a_onLoad = R"(<Input name="onLoad" type="1" type_size="1" nature="0"/>)";
const char* const a_onStart = R"(<Input name="onStart" type="1" type_size="1" nature="2"/>)";
const char* const a_onStop = R"(<Input name="onStop" type="1" type_size="1" nature="3"/>)";
const char* const a_completion = R"(<Output name="onStopped" type="1" type_size="1" nature="1"/>)";
const char* const a_timeline = "<Timeline/>";

using Parts = std::vector<const char*>;

/// The content of a box, and whether it makes the box a behaviour.
struct Content
{
    const char* name;
    Parts parts;
    bool isBehavior;
};

std::ostream& operator<<(std::ostream& stream, const Content& content)
{
    return stream << content.name;
}

boost::shared_ptr<const XmlElement> boxOf(const Parts& parts)
{
    std::string xml = "<Box>";
    for (const char* const part : parts) {
        xml += part;
    }
    return element(xml + "</Box>");
}

class BehaviorDetection : public testing::TestWithParam<Content>
{
};

TEST_P(BehaviorDetection, LooksAtTheInterfaceOfTheBox)
{
    EXPECT_EQ(BoxData::isBehavior(boxOf(GetParam().parts)), GetParam().isBehavior);
}

const auto a_name = [](const auto& content) { return content.param.name; };

INSTANTIATE_TEST_SUITE_P(
    Inputs, BehaviorDetection,
    testing::Values(
        Content{"Complete", {a_onLoad, a_onStart, a_onStop, a_completion, a_timeline}, true},
        Content{"InAnotherOrder", {a_timeline, a_completion, a_onStop, a_onStart, a_onLoad}, true},
        Content{
            "OneTwice", {a_onLoad, a_onLoad, a_onStart, a_onStop, a_completion, a_timeline}, true},
        Content{"AFourth",
                {a_onLoad, a_onStart, a_onStop,
                 R"(<Input name="more" type="4" type_size="2" nature="1"/>)", a_completion,
                 a_timeline},
                false},
        Content{"AFourthThatDiffersInTheTypeAlone",
                {a_onLoad, a_onStart, a_onStop,
                 R"(<Input name="onStop" type="2" type_size="1" nature="3"/>)", a_completion,
                 a_timeline},
                false},
        Content{"AFourthWithoutAttributes",
                {a_onLoad, a_onStart, a_onStop, "<Input/>", a_completion, a_timeline},
                false},
        Content{"NoOnLoad", {a_onStart, a_onStop, a_completion, a_timeline}, false},
        Content{"NoOnStart", {a_onLoad, a_onStop, a_completion, a_timeline}, false},
        Content{"NoOnStop", {a_onLoad, a_onStart, a_completion, a_timeline}, false},
        Content{"AnotherInPlaceOfOnStop",
                {a_onLoad, a_onStart, R"(<Input name="onHalt" type="1" type_size="1" nature="3"/>)",
                 a_completion, a_timeline},
                false},
        Content{"NameInOtherLetters",
                {R"(<Input name="onload" type="1" type_size="1" nature="0"/>)", a_onStart, a_onStop,
                 a_completion, a_timeline},
                false},
        Content{"NatureWithAZeroBefore",
                {a_onLoad, R"(<Input name="onStart" type="1" type_size="1" nature="02"/>)",
                 a_onStop, a_completion, a_timeline},
                false},
        Content{"TypeWithASpaceBefore",
                {a_onLoad, R"(<Input name="onStart" type=" 1" type_size="1" nature="2"/>)",
                 a_onStop, a_completion, a_timeline},
                false},
        Content{"AnotherTypeSize",
                {a_onLoad, R"(<Input name="onStart" type="1" type_size="2" nature="2"/>)", a_onStop,
                 a_completion, a_timeline},
                false},
        Content{"NatureMissing",
                {R"(<Input name="onLoad" type="1" type_size="1"/>)", a_onStart, a_onStop,
                 a_completion, a_timeline},
                false},
        Content{"AttributesInAnotherOrder",
                {R"(<Input nature="0" type_size="1" other="x" type="1" name="onLoad"/>)", a_onStart,
                 a_onStop, a_completion, a_timeline},
                true},
        Content{
            "InADiagramOnly",
            {"<Diagram>", a_onLoad, a_onStart, a_onStop, "</Diagram>", a_completion, a_timeline},
            false},
        Content{"MoreInADiagram",
                {a_onLoad, a_onStart, a_onStop, a_completion, a_timeline,
                 R"(<Diagram><Input name="x"/><Box><Input name="y"/></Box></Diagram>)"},
                true},
        Content{"MoreOfAnotherTag",
                {a_onLoad, a_onStart, a_onStop, a_completion, a_timeline,
                 R"(<input name="x"/><Inputs/><Parameter name="y"/>)"},
                true}),
    a_name);

INSTANTIATE_TEST_SUITE_P(
    Outputs, BehaviorDetection,
    testing::Values(
        Content{"None", {a_onLoad, a_onStart, a_onStop, a_timeline}, false},
        Content{"OfAnyName",
                {a_onLoad, a_onStart, a_onStop,
                 R"(<Output name="done" type="1" type_size="1" nature="1"/>)", a_timeline},
                true},
        Content{"OfNoName",
                {a_onLoad, a_onStart, a_onStop, R"(<Output type="1" type_size="1" nature="1"/>)",
                 a_timeline},
                true},
        Content{"OfAnotherNature",
                {a_onLoad, a_onStart, a_onStop,
                 R"(<Output name="onStopped" type="1" type_size="1" nature="2"/>)", a_timeline},
                false},
        Content{"OfAnotherType",
                {a_onLoad, a_onStart, a_onStop,
                 R"(<Output name="onStopped" type="2" type_size="1" nature="1"/>)", a_timeline},
                false},
        Content{"OfAnotherTypeSize",
                {a_onLoad, a_onStart, a_onStop,
                 R"(<Output name="onStopped" type="1" type_size="01" nature="1"/>)", a_timeline},
                false},
        Content{"OfAnotherNatureAndTheRightOne",
                {a_onLoad, a_onStart, a_onStop,
                 R"(<Output name="onStopped" type="1" type_size="1" nature="2"/>)", a_completion,
                 a_timeline},
                true},
        Content{"TheRightOneAndOthers",
                {a_onLoad, a_onStart, a_onStop, a_completion,
                 R"(<Output name="a" type="1" type_size="1" nature="2"/><Output/>)", a_timeline},
                true},
        Content{
            "InADiagramOnly",
            {a_onLoad, a_onStart, a_onStop, "<Diagram>", a_completion, "</Diagram>", a_timeline},
            false}),
    a_name);

INSTANTIATE_TEST_SUITE_P(
    Timelines, BehaviorDetection,
    testing::Values(
        Content{"None", {a_onLoad, a_onStart, a_onStop, a_completion}, false},
        Content{"WithContent",
                {a_onLoad, a_onStart, a_onStop, a_completion,
                 R"(<Timeline fps="25"><BehaviorLayer/></Timeline>)"},
                true},
        Content{"InADiagramOnly",
                {a_onLoad, a_onStart, a_onStop, a_completion, "<Diagram><Timeline/></Diagram>"},
                false},
        Content{
            "OfAnotherTag", {a_onLoad, a_onStart, a_onStop, a_completion, "<timeline/>"}, false},
        Content{"Alone", {a_timeline}, false}, Content{"AndNothingElse", {}, false}),
    a_name);

TEST(BehaviorDetectionArgument, MustNotBeNull)
{
    EXPECT_THROW(BoxData::isBehavior(nullptr), std::invalid_argument);
}

TEST(BehaviorDetectionArgument, IsLeftAsItWas)
{
    const auto box = element(std::string("<Box name=\"x\">") + behaviorContent() + "</Box>");
    EXPECT_TRUE(BoxData::isBehavior(box));
    EXPECT_TRUE(BoxData::isBehavior(box));
    EXPECT_EQ(box->attribute("name", std::string()), "x");
    EXPECT_EQ(box->mixedChildren().size(), 5U);
}

} // namespace
} // namespace KX::test
