#include <kr/localization/context_patchers.hpp>
#include <kr/localization/translators.hpp>

#include <QMap>
#include <gtest/gtest.h>

using namespace KR::Localization;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

Translator translator(const char* language, const QStringList& contexts)
{
    Translator result(text(language));
    for (const QString& context : contexts) {
        result.messages().append(Message(context, text("source")));
    }
    return result;
}

QStringList contexts(const QHash<QString, Translator>& set, const char* language)
{
    QStringList result;
    const Translator one = set.value(text(language));
    for (const Message& message : one.messages()) {
        result.append(message.context());
    }
    return result;
}

} // namespace

TEST(Translators, InsertingAppendsRewrittenAndOtherMessagesAndAddsLanguages)
{
    QHash<QString, Translator> target{{text("fr"), translator("fr", {text("Library:/Say")})}};
    const QHash<QString, Translator> source{
        {text("fr"), translator("fr", {text("Any:/Walk"), text("Any:/x"), text("Library:/Say")})},
        {text("de"), translator("de", {text("Any:/Walk/a")})}};
    ContextBoxNamePatcher patcher(text("Library:/M"), {{text("Walk"), text("Walk (2)")}});
    insertMessages(target, source, patcher);
    EXPECT_EQ(contexts(target, "fr"),
              (QStringList{text("Library:/Say"), text("Library:/M/Walk (2)"), text("Any:/x"),
                           text("Library:/Say")}));
    EXPECT_EQ(contexts(target, "de"), QStringList{text("Library:/M/Walk (2)/a")});
    EXPECT_EQ(target.value(text("de")).languageCode(), text("de"));
    EXPECT_EQ(contexts(source, "de"), QStringList{text("Any:/Walk/a")});
}

TEST(Translators, InsertingIntoItselfDoublesTheMessages)
{
    QHash<QString, Translator> set{{text("fr"), translator("fr", {text("Library:/a")})}};
    ContextBoxNamePatcher patcher(text("Library:"), {{text("a"), text("b")}});
    const QHash<QString, Translator> before = set;
    insertMessages(set, before, patcher);
    EXPECT_EQ(contexts(set, "fr"), (QStringList{text("Library:/a"), text("Library:/b")}));
}

TEST(Translators, RemovingKeepsEmptyLanguages)
{
    QHash<QString, Translator> set{
        {text("fr"),
         translator("fr", {text("Library:/a"), text("Library:/b"), text("Library:/a/c")})},
        {text("de"), translator("de", {text("Library:/a")})}};
    removeMessages(set, ContextRecursiveFinder(text("Library:/a")));
    EXPECT_EQ(contexts(set, "fr"), QStringList{text("Library:/b")});
    EXPECT_TRUE(set.contains(text("de")));
    EXPECT_TRUE(contexts(set, "de").isEmpty());
}

TEST(Translators, RewritingReachesEveryLanguage)
{
    QHash<QString, Translator> set{
        {text("fr"), translator("fr", {text("Library:/a"), text("Library:/ab")})},
        {text("de"), translator("de", {text("Library:/a/x")})}};
    ContextMatchPatcher patcher({{text("Library:/a"), text("Library:/z")}});
    rewriteContexts(set, patcher);
    EXPECT_EQ(contexts(set, "fr"), (QStringList{text("Library:/z"), text("Library:/ab")}));
    EXPECT_EQ(contexts(set, "de"), QStringList{text("Library:/z/x")});
}

TEST(Translators, FilesAreInsertedUnderTheSetsKeys)
{
    const QHash<QString, Translator> set{{text("key"), translator("fr", {text("Library:/a")})},
                                         {text("de"), translator("de", {})}};
    QMap<QString, QByteArray> files;
    translatorsTo(set, files);
    EXPECT_EQ(files.keys(), (QStringList{text("de"), text("key")}));
    EXPECT_EQ(files.value(text("key")), TS::translatorTo(set.value(text("key")), false));
    EXPECT_EQ(TS::translatorFrom(files.value(text("key"))).languageCode(), text("fr"));
}
