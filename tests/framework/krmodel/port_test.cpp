#include <kr/input.hpp>
#include <kr/output.hpp>

#include <gtest/gtest.h>

namespace {

TEST(Port, KeepsItsProperties)
{
    KR::Port::Properties properties;
    properties.type = 2;
    properties.typeSize = 3;
    properties.nature = 4;
    properties.inner = true;
    const KR::Output output(1, "o", "", properties);
    EXPECT_EQ(output.type(), 2);
    EXPECT_EQ(output.typeSize(), 3);
    EXPECT_EQ(output.nature(), 4);
    EXPECT_TRUE(output.inner());
}

TEST(Port, IsOuterAndCarriesOneValueByDefault)
{
    const KR::Input input(1, "i", "", {});
    EXPECT_EQ(input.type(), 0);
    EXPECT_EQ(input.typeSize(), 1);
    EXPECT_EQ(input.nature(), 0);
    EXPECT_FALSE(input.inner());
}

} // namespace
