#include "duplicates.hpp"

#include <gtest/gtest.h>

using namespace KR::Localization;

namespace {

Message message(const char* context, const char* source, const char* comment, const char* id,
                const char* translation)
{
    Message m(QString::fromUtf8(context), QString::fromUtf8(source), QString::fromUtf8(comment));
    m.setId(QString::fromUtf8(id));
    m.setTranslation(QString::fromUtf8(translation));
    return m;
}

} // namespace

TEST(Duplicates, KeepsMessagesThatDifferInAnyPartOfTheKey)
{
    const QList<Message> messages{message("c", "s", "k", "", "1"), message("d", "s", "k", "", "2"),
                                  message("c", "t", "k", "", "3"), message("c", "s", "l", "", "4")};
    EXPECT_EQ(withoutDuplicates(messages), messages);
}

TEST(Duplicates, KeepsTheFirstOfMessagesWithTheSameKey)
{
    const QList<Message> kept =
        withoutDuplicates({message("c", "s", "k", "", "1"), message("c", "s", "k", "", "2")});
    EXPECT_EQ(kept, QList<Message>{message("c", "s", "k", "", "1")});
}

TEST(Duplicates, FillsInTheTranslationOfALaterOne)
{
    const QList<Message> kept =
        withoutDuplicates({message("c", "s", "k", "", ""), message("c", "s", "k", "", "2")});
    EXPECT_EQ(kept, QList<Message>{message("c", "s", "k", "", "2")});
}

TEST(Duplicates, IgnoresTheCommentOfAnEmptySource)
{
    const QList<Message> kept =
        withoutDuplicates({message("c", "", "k", "", "1"), message("c", "", "l", "", "2")});
    EXPECT_EQ(kept.size(), 1);
}

TEST(Duplicates, FindsMessagesWithTheSameIdWhateverTheRest)
{
    const QList<Message> kept =
        withoutDuplicates({message("c", "s", "", "i", "1"), message("d", "t", "", "i", "2")});
    EXPECT_EQ(kept, QList<Message>{message("c", "s", "", "i", "1")});
}

TEST(Duplicates, KeepsMessagesWithTheSameKeyAndDifferentIds)
{
    const QList<Message> messages{message("c", "s", "", "i", "1"), message("c", "s", "", "j", "2")};
    EXPECT_EQ(withoutDuplicates(messages), messages);
}

TEST(Duplicates, GivesTheIdToTheOneThatHasNone)
{
    const QList<Message> kept =
        withoutDuplicates({message("c", "s", "", "", "1"), message("c", "s", "", "i", "2"),
                           message("d", "t", "", "i", "3")});
    EXPECT_EQ(kept, QList<Message>{message("c", "s", "", "i", "1")});
}

TEST(Duplicates, MergesAHundredThousandCopiesOfOneMessageAtOnce)
{
    QList<Message> messages;
    for (int i = 0; i < 100000; ++i) {
        messages.append(message("c", "s", "k", "", ""));
    }
    EXPECT_EQ(withoutDuplicates(messages).size(), 1);
}
