#include "catalogue.hpp"

#include <gtest/gtest.h>

#include <utility>

namespace kxbox::test {

namespace {

using KR::Localization::Message;
using KR::Localization::Translator;
using State = Message::State;

QString u(const char* text)
{
    return QString::fromUtf8(text);
}

/// A message in a line: "context|source|comment|translation|state".
std::string lineOf(const Message& message)
{
    return QStringList{message.context(), message.source(), message.comment(),
                       message.translations().join(u("+")), u(nameOf(message.state()))}
        .join(u("|"))
        .toStdString();
}

std::vector<std::string> linesOf(const Translator& translator)
{
    std::vector<std::string> lines;
    for (const Message& message : translator.messages()) {
        lines.push_back(lineOf(message));
    }
    return lines;
}

Message message(const char* context, const char* source, const char* translation, State state,
                const char* comment = "")
{
    Message made(u(context), u(source), u(comment));
    made.setTranslation(u(translation));
    made.setState(state);
    return made;
}

Translator translator(const QList<Message>& messages)
{
    Translator made(u("fr"));
    made.append(messages);
    return made;
}

const Catalogue& catalogue()
{
    static const Catalogue a_catalogue(
        u("L:"), {{u("L:/a"), {u("one"), u("two")}}, {u("L:/b"), {u("one")}}, {u("L:/c"), {}}});
    return a_catalogue;
}

struct UpdateCase
{
    const char* name;
    QList<Message> before;
    std::vector<std::string> after; // of the message alone, without those that were added
    std::string counts;             // the same
};

class UpdateOfAMessage : public testing::TestWithParam<UpdateCase>
{
};

/// What there is beside the message of the case, so that nothing is added.
QList<Message> rest()
{
    return {message("L:/a", "one", "un", State::Finished),
            message("L:/a", "two", "", State::Unfinished),
            message("L:/b", "one", "ein", State::Finished)};
}

TEST_P(UpdateOfAMessage, DependsOnItsTextAndItsTranslation)
{
    Translator updated = translator(GetParam().before + rest());
    EXPECT_EQ(catalogue().update(updated).text(), GetParam().counts);
    std::vector<std::string> expected = GetParam().after;
    for (const std::string& line : linesOf(translator(rest()))) {
        expected.push_back(line);
    }
    EXPECT_EQ(linesOf(updated), expected);

    const Translator once = updated;
    EXPECT_TRUE(catalogue().update(updated).isEmpty());
    EXPECT_EQ(updated, once);
}

INSTANTIATE_TEST_SUITE_P(
    , UpdateOfAMessage,
    testing::Values(UpdateCase{"Finished",
                               {message("L:/a", "one", "1", State::Finished, "c")},
                               {"L:/a|one|c|1|finished"},
                               ""},
                    UpdateCase{"Unfinished",
                               {message("L:/a", "one", "1", State::Unfinished, "c")},
                               {"L:/a|one|c|1|unfinished"},
                               ""},
                    UpdateCase{"Vanished",
                               {message("L:/a", "one", "1", State::Vanished, "c")},
                               {"L:/a|one|c|1|finished"},
                               "1 restored"},
                    UpdateCase{"Obsolete",
                               {message("L:/a", "one", "1", State::Obsolete, "c")},
                               {"L:/a|one|c|1|unfinished"},
                               "1 restored"},
                    UpdateCase{"VanishedWithoutTranslation",
                               {message("L:/a", "one", "", State::Vanished, "c")},
                               {"L:/a|one|c||unfinished"},
                               "1 restored"},
                    UpdateCase{"GoneFinished",
                               {message("L:/a", "three", "3", State::Finished)},
                               {"L:/a|three||3|vanished"},
                               "1 vanished"},
                    UpdateCase{"GoneUnfinished",
                               {message("L:/a", "three", "3", State::Unfinished)},
                               {"L:/a|three||3|vanished"},
                               "1 vanished"},
                    UpdateCase{"GoneUntranslated",
                               {message("L:/a", "three", "", State::Unfinished)},
                               {},
                               "1 removed"},
                    UpdateCase{"GoneWithEmptyVariants",
                               {message("L:/a", "three", "\xc2\x9c\xc2\x9c", State::Finished)},
                               {},
                               "1 removed"},
                    UpdateCase{"GoneAndVanished",
                               {message("L:/a", "three", "3", State::Vanished)},
                               {"L:/a|three||3|vanished"},
                               ""},
                    UpdateCase{"GoneAndObsolete",
                               {message("L:/a", "three", "3", State::Obsolete)},
                               {"L:/a|three||3|obsolete"},
                               ""},
                    UpdateCase{"TextOfAnotherBox",
                               {message("L:/b", "two", "2", State::Finished)},
                               {"L:/b|two||2|vanished"},
                               "1 vanished"},
                    UpdateCase{"BoxThatIsGone",
                               {message("L:/gone", "one", "1", State::Finished)},
                               {"L:/gone|one||1|vanished"},
                               "1 vanished"},
                    UpdateCase{"AnotherProgramsContext",
                               {message("Window", "three", "", State::Unfinished)},
                               {"Window|three|||unfinished"},
                               ""},
                    UpdateCase{"CommentOnAContext",
                               {message("L:/a", "", "", State::Unfinished, "about a")},
                               {"L:/a||about a||unfinished"},
                               ""}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Catalogue, PutsNewMessagesBehindThoseOfTheirBoxAndNewBoxesAtTheEnd)
{
    Translator updated = translator({message("L:/b", "one", "ein", State::Finished),
                                     message("L:/a", "three", "", State::Unfinished),
                                     message("Window", "x", "y", State::Finished)});
    const Catalogue boxes(u("L:"), {{u("L:/new"), {u("z"), u("y")}},
                                    {u("L:/a"), {u("one"), u("two")}},
                                    {u("L:/b"), {u("one"), u("two")}},
                                    {u("L:/last"), {u("one")}}});
    EXPECT_EQ(boxes.update(updated).text(), "6 added, 1 removed");
    EXPECT_EQ(linesOf(updated),
              (std::vector<std::string>{"L:/b|one||ein|finished", "L:/b|two|||unfinished",
                                        "L:/a|one|||unfinished", "L:/a|two|||unfinished",
                                        "Window|x||y|finished", "L:/new|z|||unfinished",
                                        "L:/new|y|||unfinished", "L:/last|one|||unfinished"}));
}

TEST(Catalogue, CountsEverythingInOneText)
{
    EXPECT_EQ((UpdateCounts{1, 2, 3, 4}).text(), "1 added, 2 vanished, 3 restored, 4 removed");
    EXPECT_EQ((UpdateCounts{0, 2, 0, 4}).text(), "2 vanished, 4 removed");
    EXPECT_EQ(UpdateCounts().text(), "");
}

TEST(Catalogue, LeavesMessagesOfBoxesThatCannotBeReadAlone)
{
    const Catalogue partly(u("L:"), {},
                           [](const QString& context) { return context == u("L:/a"); });
    Translator french = translator({message("L:/a", "one", "un", State::Finished),
                                    message("L:/a", "two", "", State::Unfinished),
                                    message("L:/b", "one", "un", State::Finished),
                                    message("L:/b", "two", "", State::Unfinished)});
    EXPECT_EQ(partly.update(french).text(), "1 vanished, 1 removed");
    EXPECT_EQ(linesOf(french),
              (std::vector<std::string>{"L:/a|one||un|finished", "L:/a|two|||unfinished",
                                        "L:/b|one||un|vanished"}));
}

TEST(Catalogue, LeavesATranslatorThatIsUpToDateShared)
{
    const Translator before = translator(rest());
    Translator updated = before;
    EXPECT_TRUE(catalogue().update(updated).isEmpty());
    EXPECT_TRUE(std::as_const(updated).messages().isSharedWith(before.messages()));
}

} // namespace

} // namespace kxbox::test
