#include "xml_text.hpp"

#include <gtest/gtest.h>

#include <string>

using namespace KR::Localization;

namespace {

struct Piece
{
    std::string raw;
    XmlTextKind kind;
    std::string text;
};

class ReadableText : public testing::TestWithParam<Piece>
{
};
class RefusedText : public testing::TestWithParam<Piece>
{
};

constexpr auto a_content = XmlTextKind::Content;
constexpr auto a_cdata = XmlTextKind::Cdata;
constexpr auto a_attribute = XmlTextKind::Attribute;

template <class Append>
std::string written(const Append& append, const QString& text)
{
    QByteArray bytes("<");
    append(bytes, text);
    return bytes.toStdString();
}

} // namespace

TEST_P(ReadableText, IsAppended)
{
    QString text = QStringLiteral("before ");
    ASSERT_EQ(appendXmlText(text, GetParam().raw.c_str(), GetParam().kind), nullptr);
    EXPECT_EQ(text.toStdString(), "before " + GetParam().text);
    QString alone;
    ASSERT_EQ(appendXmlText(alone, GetParam().raw.c_str(), GetParam().kind), nullptr);
    EXPECT_EQ(alone.toStdString(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Pieces, ReadableText,
    testing::Values(Piece{"", a_content, ""},
                    Piece{"plain text, long enough", a_content, "plain text, long enough"},
                    Piece{"a&amp;&lt;&gt;&quot;&apos;b", a_content, "a&<>\"'b"},
                    Piece{"&#65;&#x42;&#x1F600;&#10;&#13;", a_content, "AB\U0001F600\n\r"},
                    Piece{"a\r\nb\rc\nd\te", a_content, "a\nb\nc\nd\te"},
                    Piece{"a\r\nb\rc\nd\te&#10;", a_attribute, "a b c d e\n"},
                    Piece{"]] > \"'", a_content, "]] > \"'"}, Piece{"]]>", a_attribute, "]]>"},
                    Piece{"a&amp;<b", a_cdata, "a&amp;<b"},
                    Piece{"\u007f\u0080\u07ff\u0800\ufffd\U00010000\U0010FFFF", a_content,
                          "\u007f\u0080\u07ff\u0800\ufffd\U00010000\U0010FFFF"},
                    Piece{"12345678\u00e91234567812345678&gt;1", a_content,
                          "12345678\u00e91234567812345678>1"}));

TEST_P(RefusedText, HasAReasonAndChangesNothing)
{
    QString text = QStringLiteral("before");
    EXPECT_NE(appendXmlText(text, GetParam().raw.c_str(), GetParam().kind), nullptr);
    EXPECT_EQ(text, QStringLiteral("before"));
}

INSTANTIATE_TEST_SUITE_P(
    Pieces, RefusedText,
    testing::Values(Piece{"a&b", a_content, ""}, Piece{"&unknown;", a_content, ""},
                    Piece{"&;", a_content, ""}, Piece{"&#;", a_content, ""},
                    Piece{"&#x;", a_content, ""}, Piece{"&#0;", a_content, ""},
                    Piece{"&#1;", a_content, ""}, Piece{"&#xD800;", a_content, ""},
                    Piece{"&#xFFFF;", a_content, ""}, Piece{"&#x110000;", a_content, ""},
                    Piece{"&#99999999999999999999;", a_content, ""},
                    Piece{"&#4294967361;", a_content, ""}, Piece{"&#X41;", a_content, ""},
                    Piece{"&#4A;", a_content, ""}, Piece{"a]]>", a_content, ""},
                    Piece{"a<b", a_attribute, ""}, Piece{"12345678\x01", a_content, ""},
                    Piece{"\x1f", a_cdata, ""}, Piece{"\x80", a_content, ""},
                    Piece{"\xC3", a_content, ""}, Piece{"\xC3(", a_content, ""},
                    Piece{"\xC0\xAF", a_content, ""}, Piece{"\xE0\x80\xAF", a_content, ""},
                    Piece{"\xF0\x80\x80\xAF", a_content, ""}, Piece{"\xED\xA0\x80", a_content, ""},
                    Piece{"\xEF\xBF\xBE", a_content, ""}, Piece{"\xF4\x90\x80\x80", a_content, ""},
                    Piece{"\xFF", a_cdata, ""}, Piece{"\xE2\x82", a_attribute, ""}));

TEST(XmlText, ContentEscapesMarkupControlsAndSpaces)
{
    EXPECT_EQ(written(appendContent, QStringLiteral("a\"&><'b\t\n\r\u00a0\u2028\u0085\u009c")),
              "<a&quot;&amp;&gt;&lt;&apos;b\t\n<byte value=\"xd\"/>&#xa0;&#x2028;&#x85;\u009c");
    EXPECT_EQ(written(appendContent, QString(QChar(0xFFFF)) + QChar(1)),
              "<<byte value=\"xffff\"/><byte value=\"x1\"/>");
}

TEST(XmlText, WritesEveryPlaneAndAQuestionMarkForHalfACharacter)
{
    const QString halves = QString(QChar(0xD83D)) + QLatin1Char('a') + QChar(0xDE00);
    EXPECT_EQ(written(appendContent, halves), "<?a?");
    EXPECT_EQ(written(appendContent, QStringLiteral("\u00e9\u20ac\U0001F600")),
              "<\u00e9\u20ac\U0001F600");
}

TEST(XmlText, PlainContentEscapesOnlyWhatItMust)
{
    EXPECT_EQ(written(appendPlainContent, QStringLiteral("\"'>&<]]>\u00a0\r\n")),
              "<\"'>&amp;&lt;]]&gt;\u00a0<byte value=\"xd\"/>\n");
}

TEST(XmlText, AttributesKeepTheirWhiteSpace)
{
    EXPECT_EQ(written(appendAttributeValue, QStringLiteral("a'>\"&<\n\t\r") + QChar(1)),
              "<a'>&quot;&amp;&lt;&#xa;&#x9;&#xd;?");
}

TEST(XmlText, IsWrittenAlikeWhereverACharacterStands)
{
    for (const auto append : {appendContent, appendPlainContent, appendAttributeValue}) {
        for (ushort c = 0; c < 0x180; ++c) {
            const std::string alone = written(append, QChar(c)).substr(1);
            for (int before = 0; before < 20; ++before) {
                const QString text =
                    QString(before, QLatin1Char('x')) + QChar(c) + QString(20, QLatin1Char('y'));
                EXPECT_EQ(written(append, text),
                          "<" + std::string(static_cast<unsigned>(before), 'x') + alone +
                              std::string(20, 'y'))
                    << c << " at " << before;
            }
        }
    }
}
