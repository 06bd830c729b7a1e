#include "changes.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace kxbox {
namespace {

TEST(Changes, AreLinesInColumns)
{
    Changes changes;
    EXPECT_TRUE(changes.isEmpty());
    EXPECT_EQ(changes.text(), "");
    EXPECT_EQ(changes.json(), Json::array());
    changes.add("box", "A\nB");
    changes.add("directory", "a", "b\x1b");
    changes.addMessages(QStringLiteral("x"), QStringLiteral("y"),
                        {{QStringLiteral("fr"), 2}, {QStringLiteral("de"), 1}});
    changes.addMessages(QStringLiteral("x"), QString(), {{QStringLiteral("ja"), 3}});
    EXPECT_FALSE(changes.isEmpty());
    EXPECT_EQ(changes.text(), "box        A\\nB\n"
                              "directory  a -> b\\x1b\n"
                              "messages   x -> y (de 1, fr 2)\n"
                              "messages   x (ja 3)\n");
    EXPECT_EQ(changes.json(), Json::parse(R"([
        {"change": "box", "subject": "A\nB"},
        {"change": "directory", "subject": "a", "result": "b\u001b"},
        {"change": "messages", "subject": "x", "result": "y", "messages": {"de": 1, "fr": 2}},
        {"change": "messages", "subject": "x", "messages": {"ja": 3}}])"));
}

TEST(Changes, DoNotTellOfNoMessages)
{
    Changes changes;
    changes.addMessages(QStringLiteral("x"), QStringLiteral("y"), {});
    EXPECT_TRUE(changes.isEmpty());
}

} // namespace
} // namespace kxbox
