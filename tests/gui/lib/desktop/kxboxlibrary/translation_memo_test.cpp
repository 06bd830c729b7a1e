#include "support.hpp"
#include "translation_memo.hpp"

#include <kr/localization/ts.hpp>

namespace KX::test {
namespace {

using KR::Localization::Translator;
namespace TS = KR::Localization::TS;

BoxLibrary::Translators twoLanguages()
{
    return translators({translator("fr", {"Library:/A", "Library:/B"}), translator("de", {})});
}

void expectFilesOf(const BoxLibrary::Translators& set, const QMap<QString, QByteArray>& files)
{
    ASSERT_EQ(files.size(), set.size());
    for (auto it = set.cbegin(); it != set.cend(); ++it) {
        EXPECT_EQ(files.value(it.key()), TS::translatorTo(it.value(), false));
    }
}

TEST(TranslationMemo, WritesWhatTheFormatWrites)
{
    TranslationMemo memo;
    expectFilesOf(twoLanguages(), memo.write(twoLanguages()));
}

TEST(TranslationMemo, ReadsWhatTheFormatReads)
{
    TranslationMemo memo;
    const QByteArray foreign = translationFile(
        "fr", "<context><name>c</name><message><source>s</source></message></context>");
    EXPECT_EQ(memo.read(foreign), TS::translatorFrom(foreign));
    for (const QByteArray& bytes : memo.write(twoLanguages())) {
        EXPECT_EQ(memo.read(bytes), TS::translatorFrom(bytes));
        EXPECT_EQ(memo.read(bytes), TS::translatorFrom(bytes));
    }
}

TEST(TranslationMemo, WritesAndReadsUnchangedLanguagesAsBefore)
{
    TranslationMemo memo;
    const QByteArray bytes = memo.write(twoLanguages()).value(q("fr"));
    const Translator first = memo.read(bytes);
    const auto again = memo.write({{q("fr"), first}}).value(q("fr"));
    EXPECT_EQ(again, bytes);
    EXPECT_TRUE(again.isSharedWith(bytes)); // and not made once more
    EXPECT_TRUE(memo.read(again).messages().at(0).isSharedWith(first.messages().at(0)));
}

TEST(TranslationMemo, WritesAChangedLanguageAnew)
{
    TranslationMemo memo;
    Translator changed = memo.read(memo.write(twoLanguages()).value(q("fr")));
    changed.messages()[1].setContext(q("Library:/C"));
    const BoxLibrary::Translators set = translators({changed, translator("de", {"Library:/D"})});
    const auto files = memo.write(set);
    expectFilesOf(set, files);
    EXPECT_EQ(memo.read(files.value(q("fr"))), changed);
}

TEST(TranslationMemo, KnowsWhatRenamedContextsAreReadAs)
{
    TranslationMemo memo;
    Translator renamed = memo.read(memo.write(twoLanguages()).value(q("fr")));
    renamed.messages()[1].setContext(q("Library:/C"));
    const QByteArray bytes = memo.write(translators({renamed})).value(q("fr"));
    EXPECT_EQ(memo.read(bytes), TS::translatorFrom(bytes));
    // It was not read: that would have made other messages.
    EXPECT_TRUE(memo.read(bytes).messages().at(1).isSharedWith(renamed.messages().at(1)));
}

// What is written need not be what was given: messages with the same key are merged, for one.
TEST(TranslationMemo, GivesWhatAFileSaysAndNotWhatItWasMadeOf)
{
    TranslationMemo memo;
    const Translator given = translator("fr", {"Library:/A", "Library:/B", "Library:/A"});
    const QByteArray bytes = memo.write(translators({given})).value(q("fr"));
    EXPECT_EQ(memo.read(bytes).messages().size(), 2);
    expectFilesOf(translators({given}), memo.write(translators({given})));
}

TEST(TranslationMemo, TellsLanguagesApart)
{
    TranslationMemo memo;
    const Translator french = translator("fr", {"Library:/A"});
    const auto files = memo.write({{q("fr"), french}, {q("de"), french}});
    EXPECT_EQ(files.value(q("fr")), files.value(q("de")));
    EXPECT_EQ(memo.read(files.value(q("de"))).languageCode(), q("fr"));
    Translator other = french;
    other.setLanguageCode(q("de"));
    expectFilesOf({{q("de"), other}}, memo.write({{q("de"), other}}));
}

} // namespace
} // namespace KX::test
