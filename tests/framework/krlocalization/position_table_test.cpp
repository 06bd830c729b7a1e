#include "position_table.hpp"

#include <gtest/gtest.h>

#include <vector>

using KR::Localization::PositionTable;

TEST(PositionTable, FindsEveryKeyThoughAllHaveOneHash)
{
    const std::vector<int> keys{7, 3, 9, 1};
    PositionTable table;
    for (int i = 0; i < 4; ++i) {
        int& position = table.at(5, [&](int p) {
            return keys.at(static_cast<std::size_t>(p)) == keys.at(static_cast<std::size_t>(i));
        });
        EXPECT_EQ(position, PositionTable::a_none);
        position = i;
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(table.find(5, [&](int p) { return p == i; }), i);
    }
    EXPECT_EQ(table.find(5, [](int) { return false; }), PositionTable::a_none);
    EXPECT_EQ(table.find(6, [](int) { return true; }), PositionTable::a_none);
}

TEST(PositionTable, GrowsWithoutLosingAnEntry)
{
    PositionTable table;
    for (int i = 0; i < 10000; ++i) {
        table.at(static_cast<std::size_t>(i % 5000), [&](int p) { return p == i; }) = i;
    }
    for (int i = 0; i < 10000; ++i) {
        EXPECT_EQ(table.find(static_cast<std::size_t>(i % 5000), [&](int p) { return p == i; }), i);
    }
}

TEST(PositionTable, FindsWhatLiesBehindARemovedEntry)
{
    PositionTable table;
    table.at(1, [](int p) { return p == 0; }) = 0;
    table.at(1, [](int p) { return p == 1; }) = 1;
    table.at(1, [](int p) { return p == 0; }) = PositionTable::a_removed;
    EXPECT_EQ(table.find(1, [](int p) { return p == 1; }), 1);
    EXPECT_EQ(table.find(1, [](int p) { return p == 0; }), PositionTable::a_none);
}
