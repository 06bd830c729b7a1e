#include "linguist_tools.hpp"
#include "ts_reader.hpp"
#include "xml_source.hpp"

#include <gtest/gtest.h>

#include <ctime>
#include <vector>

using namespace KR::Localization;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

Message firstMessage(const QByteArray& inside)
{
    const Translator read = readTs("<TS language=\"fr\"><context><name>c</name><message" + inside +
                                   "</message></context></TS>");
    return read.messages().value(0);
}

} // namespace

TEST(TsReader, ReadsEveryField)
{
    const Translator read = readTs(linguist::data("canonical.ts"));
    EXPECT_EQ(read.languageCode(), text("fr"));
    EXPECT_EQ(read.sourceLanguageCode(), text("en"));
    EXPECT_EQ(read.dependencies(), (QStringList{text("qtbase_fr"), text("qtsystems_fr")}));
    EXPECT_EQ(read.extras().value(text("po-headers")), text("a,b"));
    EXPECT_EQ(read.locationStyle(), LocationStyle::Absolute);
    ASSERT_EQ(read.messages().size(), 6);
    const Message& walk = read.messages().at(0);
    EXPECT_EQ(walk.context(), text("Library:/Motions/Walk & turn"));
    EXPECT_EQ(walk.source(), text("Walk <b>fast</b>"));
    EXPECT_EQ(walk.oldSource(), text("Walk"));
    EXPECT_EQ(walk.comment(), text("tooltip"));
    EXPECT_EQ(walk.oldComment(), text("name"));
    EXPECT_EQ(walk.extraComment(), text("shown in the panel"));
    EXPECT_EQ(walk.translatorComment(), text("to be checked with the team"));
    EXPECT_EQ(walk.translation(), text("Marcher <b>vite</b>\u00a0!"));
    EXPECT_EQ(walk.state(), Message::State::Finished);
    EXPECT_EQ(walk.userData(), text("kept \"as\" it's"));
    EXPECT_EQ(walk.extras().value(text("po-flags")), text("fuzzy"));
    const QString file = text("../Motions/Walk/box.xar");
    EXPECT_EQ(walk.locations(), (QVector<Location>{{file, 12}, {file, -1}}));
}

TEST(TsReader, ReadsIdsPluralsVariantsAndStates)
{
    const Translator read = readTs(linguist::data("canonical.ts"));
    const Message& steps = read.messages().at(1);
    EXPECT_EQ(steps.id(), text("walk.steps"));
    EXPECT_TRUE(steps.isPlural());
    EXPECT_EQ(steps.translations(),
              (QStringList{text("%n pas"), text("%n pas en tout\u009c%n pas")}));
    EXPECT_EQ(read.messages().at(2).state(), Message::State::Unfinished);
    EXPECT_EQ(read.messages().at(3).state(), Message::State::Vanished);
    EXPECT_EQ(read.messages().at(3).source(), text("Bell\a\ttab\nand line\r"));
    EXPECT_EQ(read.messages().at(4).state(), Message::State::Obsolete);
    EXPECT_EQ(read.messages().at(5).translation(), text("long\u009c\u009cl"));
}

TEST(TsReader, ResolvesRelativeLocations)
{
    const Translator read = readTs(linguist::data("relative.ts"));
    EXPECT_EQ(read.locationStyle(), LocationStyle::Relative);
    const QString box = text("../Say/box.xar");
    EXPECT_EQ(read.messages().at(0).locations(),
              (QVector<Location>{{box, 12}, {box, 17}, {text("../Say/other.xar"), 1}, {box, 14}}));
    EXPECT_EQ(read.messages().at(1).locations(), (QVector<Location>{{box, 14}, {box, -1}}));
}

TEST(TsReader, WrapsLineNumbersThatAreTooLarge)
{
    const Message message = firstMessage("><location filename='f' line='+2147483647'/>"
                                         "<location line='+2147483647'/><location line='x'/>"
                                         "<location line='99999999999'/>");
    EXPECT_EQ(message.locations(), (QVector<Location>{{text("f"), 2147483647}, {text("f"), -2}}));
}

TEST(TsReader, ReadsAllMessagesWithTheSameKey)
{
    EXPECT_EQ(readTs(linguist::data("untidy.ts")).messages().size(), 7);
}

TEST(TsReader, ReadsAByteInAContextsNameAsLinguistWritesIt)
{
    const Translator read =
        readTs("<TS><context><name>a<byte value=\"xd\"/></name><message/></context></TS>");
    EXPECT_EQ(read.messages().at(0).context(), text("a\r"));
}

// Which anybody can make: with two such letters in the place of one, a hash without a secret that
// is linear changes by as much whatever the others are.
TEST(TsReader, TakesNoLongerForFileNamesThatQtHashesAlike)
{
    constexpr int letters = 64;
    constexpr uint seed = 1; // with 0 it is another hash
    const QString plain(letters, QLatin1Char('a'));
    struct Change
    {
        uint hash;
        quint64 letters;
    };
    std::vector<Change> independent;
    std::vector<quint64> alike;
    for (int i = 0; i < letters; ++i) {
        QString other = plain;
        other[i] = QLatin1Char('c');
        Change change{qHash(other, seed) ^ qHash(plain, seed), quint64{1} << i};
        for (const Change& known : independent) {
            if ((change.hash ^ known.hash) < change.hash) {
                change = {change.hash ^ known.hash, change.letters ^ known.letters};
            }
        }
        if (change.hash == 0) {
            alike.push_back(change.letters);
        } else {
            independent.push_back(change);
        }
    }
    ASSERT_GE(alike.size(), 16U);
    QByteArray file = "<TS><context><name>c</name>";
    for (unsigned i = 0; i < 30'000; ++i) {
        quint64 changed = 0;
        for (unsigned bit = 0; bit < 16; ++bit) {
            changed ^= (i >> bit & 1U) != 0 ? alike[bit] : 0;
        }
        file += "<message><location filename=\"";
        for (int at = 0; at < letters; ++at) {
            file += (changed >> at & 1U) != 0 ? 'c' : 'a';
        }
        file += R"(" line="+1"/></message>)";
    }
    file += "</context></TS>";
    const std::clock_t begin = std::clock();
    const Translator read = readTs(file);
    EXPECT_EQ(read.messages().size(), 30'000);
    // It took 3 s when each name was compared with all before, and takes a tenth of one.
    EXPECT_LT((std::clock() - begin) / CLOCKS_PER_SEC, 2);
}

class RefusedTs : public testing::TestWithParam<const char*>
{
};

TEST_P(RefusedTs, IsRefusedByLinguistToo)
{
    EXPECT_THROW(readTs(GetParam()), DamagedFile);
    EXPECT_TRUE(linguist::isRefused(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Files, RefusedTs,
    testing::Values(
        "<a/>", "<ts/>", "<QPH><TS/></QPH>", "<TS>text</TS>", "<TS><foo/></TS>",
        "<TS><message/></TS>", "<TS><context>text</context></TS>",
        "<TS><context><comment>a</comment></context></TS>",
        "<TS><context><name><b/></name></context></TS>",
        "<TS><context><message>text</message></context></TS>",
        "<TS><context><message><foo/></message></context></TS>",
        "<TS><context><message><source>a<b/></source></message></context></TS>",
        "<TS><context><message><source>a<!-- b -->c</source></message></context></TS>",
        "<TS><context><message><translation><numerusform/></translation></message></context></TS>",
        "<TS><context><message numerus='yes'><translation>a</translation></message></context></TS>",
        "<TS><context><message numerus='yes'><translation><lengthvariant/></translation></message>"
        "</context></TS>",
        "<TS><context><message><translation "
        "variants='yes'>a</translation></message></context></TS>",
        "<TS><context><message><translation><lengthvariant/></translation></message></context></"
        "TS>",
        "<TS><context><message><location>&foo;</location></message></context></TS>",
        "<TS><?pi?></TS>", "<TS><extra-a><b/></extra-a></TS>", "<TS>", "<TS></TS><TS></TS>"));
