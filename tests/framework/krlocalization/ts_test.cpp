#include "linguist_tools.hpp"

#include <kr/localization/ts.hpp>
#include <pk/log.hpp>

#include <QLoggingCategory>
#include <QTranslator>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace KR::Localization;

namespace {

/// The log's records while it lives, which are not printed.
class Records
{
public:
    Records()
        : m_handler(pk::log::addHandler([this](const pk::log::Record& r) { all.push_back(r); }))
    {
    }
    Records(const Records&) = delete;
    Records(Records&&) = delete;
    Records& operator=(Records&&) = delete;
    Records& operator=(const Records&) = delete;
    ~Records()
    {
        QLoggingCategory::setFilterRules(QString());
        pk::log::removeHandler(m_handler);
    }

    std::vector<pk::log::Record> all;

private:
    std::uint64_t m_handler;
};

void expectDamaged(const QByteArray& bytes)
{
    const Records records;
    EXPECT_EQ(TS::translatorFrom(bytes), Translator());
    ASSERT_EQ(records.all.size(), 1U);
    EXPECT_EQ(records.all[0].level, pk::log::Warning);
    EXPECT_EQ(records.all[0].category, "krlocalization");
    EXPECT_NE(records.all[0].message.find("line "), std::string::npos);
}

QString translated(const QTranslator& translator, const char* context, const char* source,
                   const char* comment = nullptr, int n = -1)
{
    return translator.translate(context, source, comment, n);
}

} // namespace

class TsCorpus : public testing::TestWithParam<const char*>
{
};

TEST_P(TsCorpus, IsWrittenAsLconvertWritesIt)
{
    const Records records;
    const QByteArray file = linguist::data(GetParam());
    const QByteArray written = TS::translatorTo(TS::translatorFrom(file), false);
    EXPECT_EQ(written.toStdString(), linguist::lconvert(file).toStdString());
    EXPECT_EQ(linguist::lconvert(written).toStdString(), written.toStdString());
    EXPECT_TRUE(records.all.empty());
}

INSTANTIATE_TEST_SUITE_P(Files, TsCorpus,
                         testing::Values("canonical.ts", "relative.ts", "old_version.ts",
                                         "untidy.ts", "empty.ts", "no_language.ts"));

class TsCanonical : public testing::TestWithParam<const char*>
{
};

TEST_P(TsCanonical, IsNotChanged)
{
    const QByteArray file = linguist::data(GetParam());
    EXPECT_EQ(TS::translatorTo(TS::translatorFrom(file), false).toStdString(), file.toStdString());
}

INSTANTIATE_TEST_SUITE_P(Files, TsCanonical,
                         testing::Values("canonical.ts", "relative.ts", "no_language.ts"));

TEST(TsDamaged, IsAFileThatIsCutOffAnywhere)
{
    const QByteArray file = linguist::data("canonical.ts").trimmed();
    for (int length = 0; length < file.size(); ++length) {
        expectDamaged(file.left(length));
        if (testing::Test::HasFailure()) {
            FAIL() << "cut off after " << length << " bytes";
        }
    }
}

class TsDamagedFile : public testing::TestWithParam<std::string>
{
};

TEST_P(TsDamagedFile, GivesAnEmptyTranslatorAndOneWarning)
{
    expectDamaged(QByteArray::fromStdString(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Files, TsDamagedFile,
    testing::Values(
        "", "\n", "text", std::string(1000, '\0'), "\x89PNG\r\n\x1a\n", "<xliff/>", "{\"a\": 1}",
        "<TS language=\"\xE9\"/>", "<TS language=\"fr\"><context><name>\xC3</name></context></TS>",
        std::string("\xFF\xFE<\0T\0S\0/\0>\0", 12),
        "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><TS language=\"fr\"/>",
        "<TS language=\"fr\"><unknown/></TS>", "<TS language=\"fr\"/>text",
        "<TS language=\"fr\"/><TS language=\"de\"/>", "<TS language=\"fr\" language=\"de\"/>",
        "<TS language=\"fr\">&nbsp;</TS>",
        "<!DOCTYPE TS [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\"><!ENTITY c "
        "\"&b;&b;&b;&b;\">]><TS language=\"fr\"><context><name>&c;</name></context></TS>",
        "<!DOCTYPE TS [<!ENTITY a SYSTEM \"file:///etc/passwd\">]><TS language=\"&a;\"/>"));

TEST(TsDamaged, IsAFileNestedDeeply)
{
    const QByteArray head = "<TS language=\"fr\"><context><message><source>";
    expectDamaged(head + QByteArray("<source>").repeated(500000) +
                  QByteArray("</source>").repeated(500000) + "</source></message></context></TS>");
    expectDamaged(QByteArray("<TS>").repeated(500000));
}

TEST(Ts, GoesThroughLreleaseIntoAQTranslator)
{
    QTemporaryDir directory;
    ASSERT_TRUE(directory.isValid());
    const QString source = directory.filePath(QStringLiteral("library.ts"));
    const QString compiled = directory.filePath(QStringLiteral("library.qm"));
    QFile file(source);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    Translator messages = TS::translatorFrom(linguist::data("canonical.ts"));
    messages.setDependencies({}); // QTranslator would look for them
    file.write(TS::translatorTo(messages, false));
    file.close();
    ASSERT_EQ(linguist::run(KX_LRELEASE, {source, QStringLiteral("-qm"), compiled}).exitCode, 0);

    QTranslator translator;
    ASSERT_TRUE(translator.load(compiled));
    const char* const context = "Library:/Motions/Walk & turn";
    EXPECT_EQ(translated(translator, context, "Walk <b>fast</b>", "tooltip"),
              QString::fromUtf8("Marcher <b>vite</b>\u00a0!"));
    EXPECT_EQ(translated(translator, context, "%n step(s)", nullptr, 1), QStringLiteral("%n pas"));
    EXPECT_EQ(translated(translator, context, "%n step(s)", nullptr, 2),
              QString::fromUtf8("%n pas en tout\u009c%n pas"));
    EXPECT_TRUE(translated(translator, context, "Not yet").isEmpty());
    EXPECT_TRUE(translated(translator, context, "Old").isEmpty());
}
