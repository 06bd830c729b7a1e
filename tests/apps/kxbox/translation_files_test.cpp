#include "temporary_files.hpp"
#include "translation_files.hpp"

#include <gtest/gtest.h>

#include <ostream>

namespace kxbox::test {
namespace {

using KR::Localization::Message;
using KR::Localization::Translator;
using temporary::q;
using State = Message::State;

Message messageOf(const std::string& translation, State state = State::Finished)
{
    Message message(q("Library:/Say"), q("Hi"), q("greeting"));
    message.setTranslation(q(translation));
    message.setState(state);
    return message;
}

Translator translatorOf(const QList<Message>& messages)
{
    Translator translator(q("fr"));
    translator.append(messages);
    return translator;
}

struct Pair
{
    Message first;
    Message second;
    Message merged;
};

class Pairs : public testing::TestWithParam<Pair>
{
};

TEST_P(Pairs, AreMergedWhereOneSaysMore)
{
    Merger merger(translatorOf({GetParam().first}));
    EXPECT_EQ(merger.add(translatorOf({GetParam().second})), "");
    const auto& messages = merger.result().messages();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages.first().translation(), GetParam().merged.translation());
    EXPECT_EQ(messages.first().state(), GetParam().merged.state());
}

INSTANTIATE_TEST_SUITE_P(
    , Pairs,
    testing::Values(Pair{messageOf("A"), messageOf("A"), messageOf("A")},
                    Pair{messageOf("A", State::Unfinished), messageOf("A"), messageOf("A")},
                    Pair{messageOf("A"), messageOf("A", State::Unfinished), messageOf("A")},
                    Pair{messageOf("A", State::Vanished), messageOf("A", State::Unfinished),
                         messageOf("A", State::Unfinished)},
                    Pair{messageOf("A"), messageOf("A", State::Vanished), messageOf("A")},
                    Pair{messageOf("", State::Unfinished), messageOf("A"), messageOf("A")},
                    Pair{messageOf("", State::Unfinished), messageOf("A", State::Obsolete),
                         messageOf("A", State::Unfinished)},
                    Pair{messageOf("", State::Vanished), messageOf("A", State::Obsolete),
                         messageOf("A", State::Vanished)},
                    Pair{messageOf("A"), messageOf("", State::Unfinished), messageOf("A")},
                    Pair{messageOf("A", State::Vanished), messageOf("", State::Unfinished),
                         messageOf("A", State::Unfinished)},
                    Pair{messageOf("", State::Vanished), messageOf("", State::Unfinished),
                         messageOf("", State::Unfinished)}));

/// One field after the other.
template <class Value>
std::string contradiction(void (Message::*set)(Value), const Value& one, const Value& other)
{
    Message first = messageOf("A");
    (first.*set)(one);
    Message second = messageOf("A");
    (second.*set)(other);
    Merger merger(translatorOf({first}));
    std::string reason = merger.add(translatorOf({messageOf("A"), second}));
    EXPECT_EQ(merger.result(), translatorOf({first}));
    return reason;
}

TEST(Merger, TakesNothingThatContradicts)
{
    const std::string reason = "1 message says something else there, as 'Hi' of 'Library:/Say'";
    const QString a = q("a");
    const QString b = q("b");
    EXPECT_EQ(contradiction(&Message::setTranslation, a, b), "2 messages say something else there, "
                                                             "as 'Hi' of 'Library:/Say'");
    EXPECT_EQ(contradiction(&Message::setTranslatorComment, a, b), reason);
    EXPECT_EQ(contradiction(&Message::setExtraComment, a, b), reason);
    EXPECT_EQ(contradiction(&Message::setOldSource, a, b), reason);
    EXPECT_EQ(contradiction(&Message::setOldComment, a, b), reason);
    EXPECT_EQ(contradiction(&Message::setUserData, a, b), reason);
    EXPECT_EQ(contradiction(&Message::setId, a, b), reason);
    EXPECT_EQ(contradiction(&Message::setPlural, false, true), reason);
}

TEST(Merger, TakesNotesAndExtras)
{
    Message first = messageOf("A");
    first.setExtra(q("x"), q("1"));
    Message second = messageOf("A");
    second.setTranslatorComment(q("note"));
    second.setLocations({{q("file"), 3}});
    second.setExtra(q("y"), q("2"));
    Message merged = second;
    merged.setExtra(q("x"), q("1"));
    Merger merger(translatorOf({first}));
    EXPECT_EQ(merger.add(translatorOf({second})), "");
    EXPECT_EQ(merger.result(), translatorOf({merged}));

    Message third = messageOf("A");
    third.setExtra(q("x"), q("2"));
    EXPECT_NE(merger.add(translatorOf({third})), "");
    EXPECT_EQ(merger.result(), translatorOf({merged}));
}

TEST(Merger, TakesWhatFilesSayOfThemselves)
{
    Translator translator = translatorOf({});
    translator.setSourceLanguageCode(q("en"));
    translator.setDependencies({q("other")});
    translator.setExtra(q("x"), q("1"));
    Merger merger(translatorOf({}));
    EXPECT_EQ(merger.add(translator), "");
    EXPECT_EQ(merger.result(), translator);
    EXPECT_EQ(merger.add(translatorOf({})), "");

    const std::string reason = "the files contradict each other in what they say of themselves";
    Translator other = translatorOf({messageOf("A")});
    other.setSourceLanguageCode(q("de"));
    EXPECT_EQ(merger.add(other), reason);
    other.setSourceLanguageCode(q("en"));
    other.setDependencies({q("third")});
    EXPECT_EQ(merger.add(other), reason);
    other.setDependencies({});
    other.setExtra(q("x"), q("2"));
    EXPECT_EQ(merger.add(other), reason);
    EXPECT_EQ(merger.result(), translator);
}

TEST(TranslationFiles, AreNotWrittenWhenSomethingWouldBeMissing)
{
    Message plural(q("c"), q("s"));
    plural.setPlural(true);
    plural.setTranslations({q("1"), q("2"), q("3")}); // French has two forms
    Message note = messageOf("A");
    note.setTranslatorComment(q("note"));
    EXPECT_TRUE(writeWhole(translatorOf({messageOf("A"), messageOf("A"), messageOf("")})));
    EXPECT_TRUE(writeWhole(translatorOf({note, messageOf("A")})));
    EXPECT_FALSE(writeWhole(translatorOf({messageOf("A"), messageOf("B")})));
    EXPECT_FALSE(writeWhole(translatorOf({messageOf("A"), note})));
    EXPECT_FALSE(writeWhole(translatorOf({plural})));
}

} // namespace
} // namespace kxbox::test
