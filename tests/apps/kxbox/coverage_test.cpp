#include "coverage.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace kxbox::test {

namespace {

TEST(Coverage, RoundsDownSoThatAllMeansAll)
{
    EXPECT_EQ((Coverage{12, 20, 8}).text(), "12/40  30 %");
    EXPECT_EQ((Coverage{2, 1, 0}).text(), "2/3  66 %");
    EXPECT_EQ((Coverage{999, 0, 1}).text(), "999/1000  99 %");
    EXPECT_EQ((Coverage{7, 0, 0}).text(), "7/7 100 %");
    EXPECT_EQ((Coverage{0, 1, 1}).text(), "0/2   0 %");
    EXPECT_EQ(Coverage().text(), "-");
    constexpr int a_most = std::numeric_limits<int>::max();
    EXPECT_EQ((Coverage{a_most, 0, 0}).text(), "2147483647/2147483647 100 %");
}

TEST(Coverage, AddsUp)
{
    Coverage sum{1, 2, 3};
    sum += Coverage{10, 20, 30};
    EXPECT_EQ(sum.finished, 11);
    EXPECT_EQ(sum.unfinished, 22);
    EXPECT_EQ(sum.missing, 33);
    EXPECT_EQ(sum.texts(), 66);
}

} // namespace

} // namespace kxbox::test
