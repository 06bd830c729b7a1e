#include "linguist_tools.hpp"
#include "ts_reader.hpp"
#include "ts_writer.hpp"

#include <gtest/gtest.h>

using namespace KR::Localization;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

Message message(const char* context, const char* source, const char* translation,
                Message::State state = Message::State::Finished)
{
    Message result(text(context), text(source));
    result.setTranslation(text(translation));
    result.setState(state);
    return result;
}

/// Writes a translator, and checks that lconvert gives the same bytes back.
std::string write(const Translator& translator, bool withoutObsolete = false)
{
    const QByteArray bytes = writeTs(translator, withoutObsolete);
    EXPECT_EQ(linguist::lconvert(bytes).toStdString(), bytes.toStdString());
    return bytes.toStdString();
}

Translator with(const QList<Message>& messages)
{
    Translator translator(text("fr"));
    translator.append(messages);
    return translator;
}

int count(const std::string& in, const char* what)
{
    return QByteArray::fromStdString(in).count(what);
}

} // namespace

TEST(TsWriter, WritesATranslatorWithoutMessages)
{
    EXPECT_EQ(write(Translator(text("fr"))), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                             "<!DOCTYPE TS>\n"
                                             "<TS version=\"2.1\" language=\"fr\">\n"
                                             "</TS>\n");
    EXPECT_EQ(count(write(Translator()), "language"), 0);
    EXPECT_EQ(count(write(Translator(text("C"))), "language"), 0);
}

TEST(TsWriter, GroupsMessagesByContextInTheOrderOfFirstAppearance)
{
    const std::string file = write(with({message("b", "1", "x"), message("a", "2", "x"),
                                         message("b", "3", "x"), message("a", "4", "x")}));
    EXPECT_EQ(count(file, "<context>"), 2);
    EXPECT_LT(file.find("<source>3"), file.find("<source>2"));
    EXPECT_LT(file.find("<source>2"), file.find("<source>4"));
}

TEST(TsWriter, WritesAsManyPluralFormsAsTheLanguageHas)
{
    Message plural = message("c", "s", "");
    plural.setPlural(true);
    plural.setTranslations({text("1"), text("2"), text("3")});
    Translator translator = with({plural});
    EXPECT_EQ(count(write(translator), "<numerusform>"), 2);
    translator.setLanguageCode(text("ar"));
    EXPECT_EQ(count(write(translator), "<numerusform>"), 6);
    EXPECT_EQ(count(write(translator), "<numerusform></numerusform>"), 3);
    translator.setLanguageCode(text("ja"));
    EXPECT_EQ(count(write(translator), "<numerusform>"), 1);
}

TEST(TsWriter, LeavesOutGoneMessagesWithoutATranslationAndAllOnDemand)
{
    const Translator translator = with({message("c", "1", "x", Message::State::Obsolete),
                                        message("c", "2", "", Message::State::Obsolete),
                                        message("c", "3", "x", Message::State::Vanished),
                                        message("d", "4", "", Message::State::Vanished),
                                        message("c", "5", "", Message::State::Unfinished)});
    EXPECT_EQ(count(write(translator), "<message>"), 3);
    EXPECT_EQ(count(write(translator), "<context>"), 1);
    const std::string file = write(translator, true);
    EXPECT_EQ(count(file, "<message>"), 1);
    EXPECT_EQ(linguist::lconvert(writeTs(translator, false), {QStringLiteral("-no-obsolete")})
                  .toStdString(),
              file);
}

TEST(TsWriter, WritesLocationsInEachStyleAsLconvertDoes)
{
    Translator translator = readTs(linguist::data("relative.ts"));
    const QByteArray relative = writeTs(translator, false);
    const auto option = [](const char* style) {
        return QStringList{QStringLiteral("-locations"), text(style)};
    };
    translator.setLocationStyle(LocationStyle::Absolute);
    const std::string absolute = write(translator);
    EXPECT_EQ(absolute, linguist::lconvert(relative, option("absolute")).toStdString());
    translator.setLocationStyle(LocationStyle::Relative);
    EXPECT_EQ(
        write(translator),
        linguist::lconvert(QByteArray::fromStdString(absolute), option("relative")).toStdString());
    translator.setLocationStyle(LocationStyle::None);
    EXPECT_EQ(write(translator), linguist::lconvert(relative, option("none")).toStdString());
}

TEST(TsWriter, SortsExtraFieldsAsElements)
{
    Message m = message("c", "s", "t");
    for (const char* key : {"b", "a", "a-b", "a.b", "a_b", "A", "ab"}) {
        m.setExtra(text(key), text("x"));
    }
    const std::string file = write(with({m}));
    EXPECT_LT(file.find("<extra-a-b>"), file.find("<extra-a>"));
    EXPECT_LT(file.find("<extra-a>"), file.find("<extra-a_b>"));
}

TEST(TsWriter, WritesOneOfEachKindOfDuplicate)
{
    const std::string file = write(with({message("c", "s", ""), message("c", "s", "late")}));
    EXPECT_EQ(count(file, "<message>"), 1);
    EXPECT_EQ(count(file, "late"), 1);
}

TEST(TsWriter, CleansFileNamesAndKeepsAbsoluteOnes)
{
    Message m = message("c", "s", "t");
    m.setLocations(
        {{text("./a//b/../c.cpp"), 1}, {text("d\\..\\e.cpp"), 2}, {text("/f/g.cpp"), 3}});
    const QByteArray file = writeTs(with({m}), false);
    EXPECT_TRUE(file.contains("filename=\"a/c.cpp\" line=\"1\""));
    EXPECT_TRUE(file.contains("filename=\"e.cpp\" line=\"2\""));
    EXPECT_TRUE(file.contains("filename=\"/f/g.cpp\" line=\"3\""));
}

/// What lconvert would write as a file that can't be read, or reads as something else.
TEST(TsWriter, WritesWhatReadsBackTheSameWhateverTheTextIs)
{
    QString hostile;
    for (ushort c = 1; c < 0x100; ++c) {
        hostile += QChar(c);
    }
    hostile += QStringLiteral("<a>&b;]]>\"'--><![CDATA[") + QChar(0xFFFE) + QChar(0xFFFF) +
               QChar(0xFEFF) + QStringLiteral("\U0001F600 ");
    Message m(hostile, hostile, hostile);
    m.setTranslation(hostile);
    m.setState(Message::State::Finished);
    m.setOldSource(hostile);
    m.setOldComment(hostile);
    m.setExtraComment(hostile);
    m.setTranslatorComment(hostile);
    m.setUserData(hostile);
    m.setExtra(text("x"), hostile);
    m.setId(text("\"<&>'\n\t\r ]]>\u00e9"));
    m.setLocations({{text("a\"<&\n.cpp"), 7}});
    Translator translator(text("fr\"<&>"));
    translator.setSourceLanguageCode(text("\n\t&amp;"));
    translator.setDependencies({text("\"<&>"), QString()});
    translator.setExtra(text("y"), hostile);
    translator.append({m});
    EXPECT_EQ(readTs(writeTs(translator, false)), translator);
}

TEST(TsWriter, LeavesOutEmptyVariantsAtTheFront)
{
    const Translator translator = with({message("c", "s", "\u009c\u009ca\u009c"),
                                        message("c", "t", "\u009c", Message::State::Vanished)});
    const std::string file = write(translator);
    EXPECT_EQ(count(file, "<lengthvariant>"), 2);
    EXPECT_EQ(count(file, "<message>"), 1);
}
