#include "table.hpp"

#include <gtest/gtest.h>

namespace kxbox::test {

namespace {

TEST(Table, AlignsColumnsByCharacters)
{
    EXPECT_EQ(table({{"name", "a", "längst"}, {"Olé!", "100", "b"}, {"笑う😀", "1", "日本"}}),
              "name    a  längst\n"
              "Olé!  100       b\n"
              "笑う😀     1      日本\n");
}

TEST(Table, MayBeEmpty)
{
    EXPECT_EQ(table({}), "");
}

} // namespace

} // namespace kxbox::test
