#include <kr/input.hpp>
#include <kr/output.hpp>
#include <kr/parameter.hpp>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

TEST(IO, HasANumberANameAndATooltip)
{
    const KR::Input input(-3, "onStart", "Starts.", {});
    const KR::IO& io = input;
    EXPECT_EQ(io.id(), -3);
    EXPECT_EQ(io.name(), "onStart");
    EXPECT_EQ(io.tooltip(), "Starts.");
}

TEST(IO, IsWhatEveryKindHasInCommonAndNothingByItself)
{
    EXPECT_TRUE((std::is_base_of_v<KR::IO, KR::Input>));
    EXPECT_TRUE((std::is_base_of_v<KR::IO, KR::Output>));
    EXPECT_TRUE((std::is_base_of_v<KR::IO, KR::Parameter>));
    EXPECT_TRUE(std::has_virtual_destructor_v<KR::IO>);
    EXPECT_FALSE(std::is_copy_constructible_v<KR::IO>);
}

} // namespace
