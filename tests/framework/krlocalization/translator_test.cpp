#include <kr/localization/context_patchers.hpp>
#include <kr/localization/translator.hpp>

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

using namespace KR::Localization;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

Message message(const char* context, const char* source, const char* translation = "")
{
    Message result(text(context), text(source));
    result.setTranslation(text(translation));
    return result;
}

/// The first message with the key, by looking at all of them.
const Message* search(const Translator& translator, const QString& context, const QString& source,
                      const QString& comment)
{
    for (const Message& candidate : translator.messages()) {
        if (candidate.context() == context && candidate.source() == source &&
            candidate.comment() == comment) {
            return &candidate;
        }
    }
    return nullptr;
}

QString context(int i)
{
    return QStringLiteral("Library:/%1/%2").arg(i / 3).arg(i % 3);
}

constexpr int a_contexts = 12;
constexpr int a_sources = 3;
constexpr int a_comments = 2;

void expectAgreement(const Translator& translator)
{
    for (int c = 0; c < a_contexts; ++c) {
        for (int s = 0; s < a_sources; ++s) {
            for (int k = 0; k < a_comments; ++k) {
                const QString source = QString::number(s);
                const QString comment = QString::number(k);
                ASSERT_EQ(translator.find(context(c), source, comment),
                          search(translator, context(c), source, comment));
            }
        }
    }
}

/// Does one thing after another to a translator, by chance.
class RandomEdits
{
public:
    void step(Translator& translator)
    {
        switch (below(8)) {
        case 0:
        case 1:
            translator.append({randomMessage(), randomMessage()});
            break;
        case 2:
            translator.remove(ContextRecursiveFinder(randomPath()));
            break;
        case 3: {
            ContextMatchPatcher patcher({{randomPath(), randomPath()}});
            translator.rewriteContexts(patcher);
            break;
        }
        case 4: {
            ContextBoxNamePatcher patcher(text("Library:/1"),
                                          {{QString::number(below(3)), QString::number(below(3))}});
            translator.rewriteContexts(patcher);
            break;
        }
        case 5:
            changeOne(translator.messages());
            break;
        case 6:
            changeOne(*m_list);
            break;
        default:
            dropFirst(translator);
        }
    }

    /// A list that is changed later through this reference.
    void keep(QList<Message>& list) { m_list = &list; }

private:
    int below(int n) { return static_cast<int>(m_random() % static_cast<unsigned>(n)); }

    Message randomMessage()
    {
        return {context(below(a_contexts)), QString::number(below(a_sources)),
                QString::number(below(a_comments))};
    }

    QString randomPath()
    {
        return below(2) == 0 ? context(below(a_contexts))
                             : QStringLiteral("Library:/%1").arg(below(4));
    }

    void changeOne(QList<Message>& list)
    {
        if (list.isEmpty()) {
            return;
        }
        const int at = below(list.size());
        if (below(2) == 0) {
            list.removeAt(at);
        } else {
            list[at].setSource(QString::number(below(a_sources)));
        }
    }

    /// As one removes messages by hand.
    static void dropFirst(Translator& translator)
    {
        translator.ensuredIndexed();
        if (!translator.messages().isEmpty()) {
            translator.delIndex(translator.messages().constFirst());
            translator.messages().removeFirst();
        }
    }

    // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp): every run makes the same edits
    std::mt19937 m_random{20261121};
    QList<Message>* m_list = nullptr;
};

} // namespace

TEST(Translator, HasALanguageAndNoMessages)
{
    EXPECT_TRUE(Translator().languageCode().isEmpty());
    const Translator french(text("fr"));
    EXPECT_EQ(french.languageCode(), text("fr"));
    EXPECT_TRUE(french.messages().isEmpty());
}

TEST(Translator, FindsTheFirstMessageWithAKey)
{
    Translator translator;
    translator.append({message("c", "s", "1"), message("c", "s", "2"), message("d", "s", "3")});
    ASSERT_NE(translator.find(text("c"), text("s")), nullptr);
    EXPECT_EQ(translator.find(text("c"), text("s"))->translation(), text("1"));
    EXPECT_EQ(translator.find(text("d"), text("s"))->translation(), text("3"));
    EXPECT_EQ(translator.find(text("c"), text("s"), text("k")), nullptr);
}

TEST(Translator, FindsWhatTheListHasAfterEveryOperation)
{
    Translator translator(text("fr"));
    RandomEdits edits;
    edits.keep(translator.messages());
    for (int i = 0; i < 3000; ++i) {
        edits.step(translator);
        expectAgreement(translator);
        if (HasFatalFailure()) {
            FAIL() << "after step " << i;
        }
    }
}

TEST(Translator, ACopyIsNotAffectedByChangesOfTheOriginal)
{
    Translator translator(text("fr"));
    RandomEdits edits;
    edits.keep(translator.messages());
    for (int i = 0; i < 300; ++i) {
        translator.ensuredIndexed();
        const Translator copy = translator;
        QList<Message> before = copy.messages();
        before.detach();
        edits.step(translator);
        ASSERT_EQ(copy.messages(), before);
        expectAgreement(copy);
        expectAgreement(translator);
    }
}

TEST(Translator, DelIndexHidesAMessageUntilTheIndexIsBuiltAnew)
{
    Translator translator;
    translator.append({message("c", "s", "1"), message("c", "s", "2"), message("c", "s", "3")});
    translator.delIndex(message("unknown", "s"));
    translator.delIndex(translator.messages().at(1));
    EXPECT_EQ(translator.find(text("c"), text("s"))->translation(), text("1"));
    translator.delIndex(message("c", "s"));
    EXPECT_EQ(translator.find(text("c"), text("s"))->translation(), text("3"));
    translator.delIndex(message("c", "s"));
    EXPECT_EQ(translator.find(text("c"), text("s")), nullptr);
    translator.messages().removeLast();
    EXPECT_EQ(translator.find(text("c"), text("s"))->translation(), text("1"));
}

TEST(Translator, AppendsItsOwnMessages)
{
    Translator translator;
    translator.append({message("c", "s"), message("d", "s")});
    translator.append(translator.messages());
    EXPECT_EQ(translator.messages().size(), 4);
    translator.ensuredIndexed();
    translator.append(translator.messages());
    EXPECT_EQ(translator.messages().size(), 8);
    EXPECT_NE(translator.find(text("d"), text("s")), nullptr);
}

TEST(Translator, CallsThePatcherOncePerMessageInListOrder)
{
    Translator translator;
    translator.append({message("a", "1"), message("b", "2"), message("a", "3")});
    QStringList seen;
    auto patcher = [&seen](QString& context) {
        seen.append(context);
        context += QLatin1Char('x');
        return seen.size() != 2;
    };
    translator.rewriteContexts(patcher);
    EXPECT_EQ(seen, (QStringList{text("a"), text("b"), text("a")}));
    EXPECT_EQ(translator.messages().at(0).context(), text("ax"));
    EXPECT_EQ(translator.messages().at(1).context(), text("b"));
    EXPECT_EQ(translator.messages().at(2).context(), text("ax"));
}

TEST(Translator, RemovesEveryMessageThatIsFoundAndKeepsTheOrder)
{
    Translator translator;
    translator.append({message("a", "1"), message("b", "2"), message("a/x", "3"), message("c", "4"),
                       message("a", "5")});
    translator.remove(ContextRecursiveFinder(text("a")));
    EXPECT_EQ(translator.messages(), (QList<Message>{message("b", "2"), message("c", "4")}));
}

TEST(Translator, RemovingNothingSharesTheListWithItsCopy)
{
    Translator translator;
    translator.append({message("a", "1")});
    const Translator copy = translator;
    translator.remove(ContextRecursiveFinder(text("b")));
    EXPECT_TRUE(copy.messages().isSharedWith(translator.messages()));
}

TEST(Translator, AHundredThousandEqualMessagesAreIndexedAndDroppedAtOnce)
{
    Translator translator;
    for (int i = 0; i < 100000; ++i) {
        translator.append({message("c", "s")});
    }
    translator.ensuredIndexed();
    const QList<Message> all = translator.messages();
    for (const Message& one : all) {
        translator.delIndex(one);
    }
    EXPECT_EQ(translator.find(text("c"), text("s")), nullptr);
}

TEST(Translator, DiffersWhenAnythingOfItsFileDoes)
{
    const Translator plain(text("fr"));
    Translator other = plain;
    EXPECT_EQ(other, plain);
    other.setSourceLanguageCode(text("en"));
    EXPECT_NE(other, plain);
    other = plain;
    other.setDependencies({text("qt_fr")});
    EXPECT_NE(other, plain);
    other = plain;
    other.setExtra(text("a"), text("b"));
    EXPECT_NE(other, plain);
    other = plain;
    other.setLocationStyle(LocationStyle::Relative);
    EXPECT_NE(other, plain);
    other = plain;
    other.append({message("c", "s")});
    EXPECT_NE(other, plain);
    EXPECT_THROW(other.setExtra(text("a b"), QString()), std::invalid_argument);
}
