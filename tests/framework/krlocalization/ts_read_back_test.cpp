#include <kr/localization/ts.hpp>

#include <gtest/gtest.h>

#include <functional>

namespace TS = KR::Localization::TS;
using KR::Localization::Message;
using KR::Localization::Translator;

namespace {

Translator readBack(const Translator& translator)
{
    return TS::translatorFrom(TS::translatorTo(translator, false));
}

/// What a file says: two messages of A, one of B.
Translator known()
{
    Translator translator(QStringLiteral("fr"));
    for (const auto& context : {QStringLiteral("A"), QStringLiteral("A"), QStringLiteral("B")}) {
        const int number = translator.messages().size();
        translator.messages().append(Message(context, QString::number(number)));
    }
    return readBack(translator);
}

/// isReadBack() of known() after a change, which must not say more than reading does.
bool isReadBackAfter(const std::function<void(Translator&)>& change)
{
    Translator changed = known();
    change(changed);
    const bool is = TS::isReadBack(TS::translatorTo(changed, false), changed, known());
    EXPECT_TRUE(!is || readBack(changed) == changed);
    return is;
}

bool isReadBackAs(const QString& first, const QString& second, const QString& third)
{
    return isReadBackAfter([&](Translator& changed) {
        changed.messages()[0].setContext(first);
        changed.messages()[1].setContext(second);
        changed.messages()[2].setContext(third);
    });
}

QString q(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

TEST(TsReadBack, KnowsWhatIsAsBefore)
{
    EXPECT_TRUE(isReadBackAfter([](Translator&) {}));
}

TEST(TsReadBack, KnowsOtherContexts)
{
    EXPECT_TRUE(isReadBackAs(q("B"), q("B"), q("A")));
    EXPECT_TRUE(isReadBackAs(q("A"), q("A"), q("Library:/A & <B> \"C\" ]]>'/Größe 大")));
}

TEST(TsReadBack, DoubtsContextsThatMeetOrPart)
{
    EXPECT_FALSE(isReadBackAs(q("B"), q("B"), q("B")));
    EXPECT_FALSE(isReadBackAs(q("A"), q("C"), q("B")));
    EXPECT_FALSE(isReadBackAs(q("B"), q("A"), q("B")));
}

TEST(TsReadBack, DoubtsUnusualNames)
{
    const QChar lone(0xD800);
    for (const QString& name :
         {QString(), q(" "), q(" a"), q("a\nb"), q("a\rb"), q("a\x01"), q("a\x7f"), q("a\xc2\x85"),
          q("a\xc2\xa0"), q("a\xe3\x80\x80"), q("a\xef\xbf\xbf"), QString(q("a") + lone),
          QString(q("a") + QChar(0) + q("b"))}) {
        EXPECT_FALSE(isReadBackAs(q("A"), q("A"), name)) << name.toStdString();
    }
}

TEST(TsReadBack, DoubtsEveryOtherChange)
{
    const std::function<void(Translator&)> changes[] = {
        [](Translator& t) { t.setLanguageCode(q("de")); },
        [](Translator& t) { t.setSourceLanguageCode(q("de")); },
        [](Translator& t) { t.setDependencies({q("qt_fr")}); },
        [](Translator& t) { t.setExtra(q("key"), q("value")); },
        [](Translator& t) { t.setLocationStyle(KR::Localization::LocationStyle::None); },
        [](Translator& t) { t.messages().removeLast(); },
        [](Translator& t) { t.append({Message(q("C"), q("new"))}); },
        [](Translator& t) { t.messages()[1].setSource(q("other")); },
        [](Translator& t) { t.messages()[1].setTranslation(q("other")); },
        [](Translator& t) { t.messages()[1].setState(Message::State::Vanished); },
    };
    for (const auto& change : changes) {
        EXPECT_FALSE(isReadBackAfter(change));
    }
}

// Here half of the file's bytes are the names of its contexts: a file whose size is nothing unusual
// is refused, as reading it would take too much memory.
TEST(TsReadBack, DoubtsWhatTakesTooMuchMemory)
{
    Translator translator(QStringLiteral("fr"));
    for (int i = 0; i < 1000; ++i) {
        translator.messages().append(Message(QString::number(i), q("source")));
    }
    const Translator small = readBack(translator);
    Translator large = small;
    for (Message& message : large.messages()) {
        message.setContext(message.context() + QString(75'000, QLatin1Char('x')));
    }
    const QByteArray bytes = TS::translatorTo(large, false);
    EXPECT_TRUE(TS::translatorFrom(bytes).messages().isEmpty());
    EXPECT_FALSE(TS::isReadBack(bytes, large, small));
}
