#include <kr/xml_beacons.hpp>

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(XmlBeacons, NamesTheElements)
{
    EXPECT_EQ(std::string(KR::XmlBeacons::a_inputBeacon), "Input");
    EXPECT_EQ(std::string(KR::XmlBeacons::a_outputBeacon), "Output");
    EXPECT_EQ(std::string(KR::XmlBeacons::a_parameterBeacon), "Parameter");
}

} // namespace
