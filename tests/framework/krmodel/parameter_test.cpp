#include <kr/parameter.hpp>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(Parameter, KeepsItsProperties)
{
    KR::Parameter::Properties properties;
    properties.inheritsFromParent = true;
    properties.contentType = 3;
    properties.value = "slow";
    properties.defaultValue = "fast";
    properties.minimum = "0";
    properties.maximum = "9";
    properties.customChoice = true;
    properties.choices = {"slow", "fast"};
    const KR::Parameter parameter(5, "Speed", "In percent.", properties);
    EXPECT_EQ(parameter.id(), 5);
    EXPECT_EQ(parameter.name(), "Speed");
    EXPECT_EQ(parameter.tooltip(), "In percent.");
    EXPECT_TRUE(parameter.inheritsFromParent());
    EXPECT_EQ(parameter.contentType(), 3);
    EXPECT_EQ(parameter.value(), "slow");
    EXPECT_EQ(parameter.defaultValue(), "fast");
    EXPECT_EQ(parameter.minimum(), "0");
    EXPECT_EQ(parameter.maximum(), "9");
    EXPECT_TRUE(parameter.customChoice());
    EXPECT_EQ(parameter.choices(), (std::vector<std::string>{"slow", "fast"}));
}

} // namespace
