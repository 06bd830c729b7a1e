#include "message_index.hpp"

#include <gtest/gtest.h>

using namespace KR::Localization;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

Message message(const char* context, const char* source)
{
    return {text(context), text(source)};
}

} // namespace

TEST(MessageIndex, FindsTheFirstMessageWithAKey)
{
    const QList<Message> list{message("a", "s"), message("b", "s"), message("a", "s")};
    const MessageIndex index(list);
    EXPECT_EQ(index.find(text("a"), text("s"), {}), 0);
    EXPECT_EQ(index.find(text("b"), text("s"), {}), 1);
    EXPECT_EQ(index.find(text("b"), text("s"), text("k")), -1);
    EXPECT_EQ(index.find(text("s"), text("b"), {}), -1);
}

TEST(MessageIndex, FindsTheNextOneWhenTheFirstIsRemoved)
{
    const QList<Message> list{message("a", "s"), message("a", "s"), message("a", "s")};
    MessageIndex index(list);
    index.remove(list.at(1));
    EXPECT_EQ(index.find(text("a"), text("s"), {}), 0);
    index.remove(list.at(0));
    EXPECT_EQ(index.find(text("a"), text("s"), {}), 2);
    index.remove(list.at(2));
    EXPECT_EQ(index.find(text("a"), text("s"), {}), -1);
    index.remove(list.at(2));
    EXPECT_EQ(index.find(text("a"), text("s"), {}), -1);
}

TEST(MessageIndex, FindsWhatIsAppendedAfterARemoval)
{
    QList<Message> list{message("a", "s"), message("a", "s")};
    MessageIndex index(list);
    index.remove(list.at(1));
    index.append(list, {message("a", "s")});
    index.remove(list.at(0));
    EXPECT_EQ(index.find(text("a"), text("s"), {}), 2);
    index.remove(list.at(2));
    index.append(list, {message("a", "s")});
    EXPECT_EQ(index.find(text("a"), text("s"), {}), 3);
}

TEST(MessageIndex, IsCurrentUntilTheListChanges)
{
    QList<Message> list{message("a", "s")};
    MessageIndex index(list);
    EXPECT_TRUE(index.isCurrent(list));
    index.append(list, {message("b", "s")});
    EXPECT_TRUE(index.isCurrent(list));
    list[0].setContext(text("c"));
    EXPECT_FALSE(index.isCurrent(list));
}
