#include <kr/localization/message.hpp>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

using namespace KR::Localization;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

using Change = void (*)(Message&);

/// One change of each field.
const std::vector<Change>& changes()
{
    static const std::vector<Change> all{
        [](Message& m) { m.setContext(text("x")); },
        [](Message& m) { m.setSource(text("x")); },
        [](Message& m) { m.setComment(text("x")); },
        [](Message& m) { m.setId(text("x")); },
        [](Message& m) { m.setState(Message::State::Vanished); },
        [](Message& m) { m.setPlural(true); },
        [](Message& m) { m.setTranslation(QString()); },
        [](Message& m) { m.setTranslation(text("x")); },
        [](Message& m) {
            m.setTranslations({text("x"), QString()});
        },
        [](Message& m) { m.setOldSource(text("x")); },
        [](Message& m) { m.setOldComment(text("x")); },
        [](Message& m) { m.setExtraComment(text("x")); },
        [](Message& m) { m.setTranslatorComment(text("x")); },
        [](Message& m) { m.setUserData(text("x")); },
        [](Message& m) {
            m.setLocations({{text("x"), 1}});
        },
        [](Message& m) { m.setExtra(text("x"), text("y")); },
    };
    return all;
}

} // namespace

TEST(Message, IsEmptyAndUnfinishedAtFirst)
{
    const Message message;
    EXPECT_TRUE(message.context().isEmpty());
    EXPECT_TRUE(message.translations().isEmpty());
    EXPECT_TRUE(message.locations().isEmpty());
    EXPECT_FALSE(message.isPlural());
    EXPECT_FALSE(message.isTranslated());
    EXPECT_EQ(message.state(), Message::State::Unfinished);
}

TEST(Message, KeepsItsKey)
{
    const Message message(text("c"), text("s"), text("k"));
    EXPECT_EQ(message.context(), text("c"));
    EXPECT_EQ(message.source(), text("s"));
    EXPECT_EQ(message.comment(), text("k"));
}

TEST(Message, DiffersAfterAChangeOfAnyFieldAndLeavesItsCopyAlone)
{
    for (const Change change : changes()) {
        const Message before;
        Message after = before;
        EXPECT_TRUE(after.isSharedWith(before));
        change(after);
        EXPECT_NE(after, before);
        EXPECT_EQ(before, Message());
        Message same;
        change(same);
        EXPECT_EQ(after, same);
    }
}

TEST(Message, GivesTheFormsThatWereSet)
{
    Message message;
    message.setTranslations({text("a"), QString(), text("c")});
    EXPECT_EQ(message.translations(), (QStringList{text("a"), QString(), text("c")}));
    EXPECT_EQ(message.translation(), text("a"));
    message.setTranslation(text("b"));
    EXPECT_EQ(message.translations(), QStringList{text("b")});
    message.setTranslations({});
    EXPECT_TRUE(message.translations().isEmpty());
    EXPECT_TRUE(message.translation().isEmpty());
}

TEST(Message, IsTranslatedWhenAnyFormIsNotEmpty)
{
    Message message;
    message.setTranslation(QString());
    EXPECT_FALSE(message.isTranslated());
    message.setTranslations({QString(), text("b")});
    EXPECT_TRUE(message.isTranslated());
}

TEST(Message, RefusesAnExtraFieldThatCanNotBeAnElement)
{
    Message message;
    for (const char* key : {"", "a b", "a:b", "<", "a/", "\u00d7"}) {
        EXPECT_THROW(message.setExtra(text(key), text("x")), std::invalid_argument) << key;
    }
    message.setExtra(text("po-flags_1.\u00e9"), text("x"));
    EXPECT_EQ(message.extras().size(), 1);
    message.removeExtra(text("po-flags_1.\u00e9"));
    EXPECT_TRUE(message.extras().isEmpty());
}
