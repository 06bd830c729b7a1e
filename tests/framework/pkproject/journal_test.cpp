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
    journal.collects = {{{-1, "motions"}, 0, {}}, {{0, "old/x"}, 1, {1, 2, 3}}};
    journal.puts = {
        {"a", -1, 0750, false, {}}, {"a/moved", 0, 0, false, {}}, {"file", 2, 0, true, {4, 5, 6}}};
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
    EXPECT_EQ(read.puts[2].before, (Stamp{4, 5, 6}));
    EXPECT_EQ(read.collects[1].before, (Stamp{1, 2, 3}));
    EXPECT_FALSE(read.isEmpty());
    EXPECT_TRUE(Journal::fromBytes(Journal().toBytes(), "x").isEmpty());
}

Journal collecting(int from, const char* path, int item)
{
    return {{{{from, path}, item, {}}}, {}};
}

Journal putting(const std::string& path, int item)
{
    return {{}, {{path, item, 0, false, {}}}};
}

TEST(Journal, IsRefusedWhenItLeavesTheProjectOrMakesNoSense)
{
    for (const Journal& journal :
         {collecting(-2, "a", 0), collecting(-1, "a", -1), collecting(-1, "../a", 0),
          collecting(-1, "/a", 0), collecting(-1, "", 0), collecting(-1, ".git/a", 0),
          collecting(-1, "\xff", 0), putting("a/../../b", 0), putting("a", -2), putting("a//b", 0),
          putting(".hg", 0), putting(std::string("a\0b", 3), 0)}) {
        EXPECT_EQ(
            messageOf<FormatError>([&] { Journal::fromBytes(journal.toBytes(), "/j/collect"); }),
            "/j/collect: damaged journal");
    }
    EXPECT_FALSE(Journal::fromBytes(collecting(0, ".git/a", 1).toBytes(), "x").isEmpty());
    EXPECT_FALSE(Journal::fromBytes(putting(".kxproject", 0).toBytes(), "x").isEmpty());
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
