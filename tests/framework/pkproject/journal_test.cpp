#include "journal.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

#include <string>
#include <utility>

namespace pk::project::test {

namespace {

Journal sample()
{
    Journal journal;
    journal.collects = {{{-1, "motions"}, 0}, {{0, "old/x"}, 1}};
    journal.puts = {{"a", -1, 0750, false}, {"a/moved", 0, 0, false}, {"file", 2, 0, true}};
    return journal;
}

} // namespace

TEST(Journal, RoundTrips)
{
    const QByteArray bytes = sample().toBytes();
    const Journal read = Journal::fromBytes(bytes, "x");
    EXPECT_EQ(read.toBytes(), bytes);
    ASSERT_EQ(read.collects.size(), 2U);
    EXPECT_EQ(read.collects[1].from.item, 0);
    EXPECT_EQ(read.collects[1].from.path, "old/x");
    ASSERT_EQ(read.puts.size(), 3U);
    EXPECT_EQ(read.puts[0].mode, 0750);
    EXPECT_TRUE(read.puts[2].replace);
    EXPECT_FALSE(read.isEmpty());
    EXPECT_TRUE(Journal::fromBytes(Journal().toBytes(), "x").isEmpty());
}

Journal collecting(Journal::Collect step)
{
    return {{std::move(step)}, {}};
}

Journal putting(Journal::Put step)
{
    return {{}, {std::move(step)}};
}

TEST(Journal, IsRefusedWhenItLeavesTheProjectOrMakesNoSense)
{
    for (const Journal& journal :
         {collecting({{-2, "a"}, 0}), collecting({{-1, "a"}, -1}), collecting({{-1, "../a"}, 0}),
          collecting({{-1, "/a"}, 0}), collecting({{-1, ""}, 0}), collecting({{-1, ".git/a"}, 0}),
          collecting({{-1, "\xff"}, 0}), putting({"a/../../b", 0, 0, false}),
          putting({"a", -2, 0, false}), putting({"a//b", 0, 0, false}),
          putting({".hg", 0, 0, true}), putting({std::string("a\0b", 3), 0, 0, false})}) {
        EXPECT_EQ(
            messageOf<FormatError>([&] { Journal::fromBytes(journal.toBytes(), "/j/collect"); }),
            "/j/collect: damaged journal");
    }
    EXPECT_FALSE(Journal::fromBytes(collecting({{0, ".git/a"}, 1}).toBytes(), "x").isEmpty());
    EXPECT_FALSE(Journal::fromBytes(putting({".kxproject", 0, 0, true}).toBytes(), "x").isEmpty());
}

TEST(Journal, IsRefusedWhenItIsNotWhole)
{
    const QByteArray bytes = sample().toBytes();
    for (int size = 0; size < bytes.size(); ++size) {
        EXPECT_THROW(Journal::fromBytes(bytes.left(size), "x"), FormatError) << size;
    }
    EXPECT_THROW(Journal::fromBytes(bytes + '\0', "x"), FormatError);
    EXPECT_THROW(Journal::fromBytes('\x1' + bytes.mid(1), "x"), FormatError);
    EXPECT_THROW(Journal::fromBytes("{}", "x"), FormatError);
    EXPECT_THROW(Journal::fromBytes("\2\xff\xff\xff\xff", "x"), FormatError);
}

} // namespace pk::project::test
