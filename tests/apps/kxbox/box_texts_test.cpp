#include "box_reader.hpp"
#include "box_texts.hpp"

#include <gtest/gtest.h>

namespace kxbox {
namespace {

KX::BoxData dataOf(const QByteArray& box)
{
    return {nullptr, readBox("<KinestraBox bhx_version=\"3\">" + box + "</KinestraBox>")};
}

QStringList list(const char* texts)
{
    return QString::fromUtf8(texts).split(QLatin1Char('|'));
}

const char* const a_box = R"(<Box name="root" tooltip="out">
    <Output name="out" type="1" type_size="1" nature="1" inner="0" tooltip="O" id="2"/>
    <Input name="in" type="1" type_size="1" nature="2" inner="0" tooltip="I" id="1"/>
    <Input name="again" type="1" type_size="1" nature="2" inner="0" tooltip="" id="4"/>
    <Parameter name="p" inherits_from_parent="0" content_type="0" value="v" default_value="d"
      custom_choice="0" tooltip="I" id="3"/></Box>)";

TEST(BoxTexts, AreThoseOfInputsOutputsAndParametersInThisOrder)
{
    const KX::BoxData data = dataOf(a_box);
    EXPECT_EQ(ioTexts(data), list("in|I|again|out|O|p|I"));
}

TEST(BoxTexts, ToTranslateAreTheTooltipAndTheseEachOnce)
{
    const KX::BoxData data = dataOf(a_box);
    EXPECT_EQ(translatableTexts(data), list("out|in|I|again|O|p"));
    const KX::BoxData empty = dataOf("<Box/>");
    EXPECT_EQ(translatableTexts(empty), QStringList());
    const KX::BoxData tooltip = dataOf("<Box tooltip='T'/>");
    EXPECT_EQ(ioTexts(tooltip), QStringList());
    EXPECT_EQ(translatableTexts(tooltip), list("T"));
}

} // namespace
} // namespace kxbox
