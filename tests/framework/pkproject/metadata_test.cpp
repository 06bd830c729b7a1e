#include "metadata.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

namespace pk::project::test {

TEST(Metadata, RoundTrips)
{
    const Metadata metadata{{q("name"), q("Walk \"quickly\"\n\\")},
                            {q(""), q("no key")},
                            {q("gr\xc3\xbc\xc3\x9f"), q("\xf0\x9f\xa4\x96")}};
    EXPECT_EQ(parseMetadata(formatMetadata(metadata), "x"), metadata);
}

TEST(Metadata, KeepsByteOrderMarks)
{
    const QString mark(QChar::ByteOrderMark);
    const Metadata metadata{{mark + q("a"), mark + mark + q("x") + mark}, {q("b"), mark}};
    EXPECT_EQ(parseMetadata(formatMetadata(metadata), "x"), metadata);
}

// A text in UTF-8 cannot have it: what would be read once the metadata were saved counts at once.
TEST(Metadata, HasAQuestionMarkForALoneSurrogate)
{
    const Metadata metadata = parseMetadata(R"({"title": "a\ud83e", "\udd16": "b"})", "x");
    EXPECT_EQ(metadata, (Metadata{{q("title"), q("a?")}, {q("?"), q("b")}}));
    EXPECT_EQ(parseMetadata(formatMetadata(metadata), "x"), metadata);
    Metadata set;
    EXPECT_TRUE(setMetadataValue(set, QString(QChar(0xdd16)), QString(QChar(0xd83e))));
    EXPECT_EQ(set, (Metadata{{q("?"), q("?")}}));
    EXPECT_FALSE(setMetadataValue(set, QString(QChar(0xdd16)), QString(QChar(0xd83e))));
}

TEST(Metadata, IsWrittenInTheOrderOfItsKeys)
{
    EXPECT_EQ(formatMetadata({{q("b"), q("2")}, {q("a"), q("1")}}),
              QByteArray("{\n    \"a\": \"1\",\n    \"b\": \"2\"\n}\n"));
}

TEST(Metadata, WithoutValuesHasNoBytes)
{
    EXPECT_TRUE(formatMetadata({}).isEmpty());
    EXPECT_TRUE(parseMetadata(QByteArray(), "x").isEmpty());
    EXPECT_TRUE(parseMetadata("{}", "x").isEmpty());
    EXPECT_TRUE(parseMetadata(R"({"a": ""})", "x").isEmpty());
}

TEST(Metadata, SaysWhetherSettingAValueChangedAnything)
{
    Metadata metadata;
    EXPECT_TRUE(setMetadataValue(metadata, q("a"), q("1")));
    EXPECT_FALSE(setMetadataValue(metadata, q("a"), q("1")));
    EXPECT_TRUE(setMetadataValue(metadata, q("a"), q("")));
    EXPECT_FALSE(setMetadataValue(metadata, q("a"), q("")));
    EXPECT_TRUE(metadata.isEmpty());
}

class DamagedMetadata : public testing::TestWithParam<const char*>
{
};

TEST_P(DamagedMetadata, IsRefusedWithThePath)
{
    const std::string message =
        messageOf<FormatError>([] { parseMetadata(GetParam(), "/p/.kxproject"); });
    EXPECT_EQ(message.find("/p/.kxproject: damaged project metadata: "), 0U) << message;
}

INSTANTIATE_TEST_SUITE_P(Texts, DamagedMetadata,
                         testing::Values("{", "[]", "null", R"("a")", R"({"a": 1})",
                                         R"({"a": null})", R"({"a": {}})", R"({"a": "b"} x)",
                                         R"({a: "b"})", "\xff\xfe",
                                         R"({"a": {"b": "c"}, "a": "d", "a": ["e"]})"));

TEST(Metadata, MayHaveBracketsInTexts)
{
    const Metadata metadata{{q("{["), q("[\"{}")}, {q("\\"), q("{\\")}};
    EXPECT_EQ(parseMetadata(formatMetadata(metadata), "x"), metadata);
}

TEST(Metadata, NestedBeyondReasonIsRefused)
{
    const QByteArray deep = QByteArray(R"({"a":)").repeated(100'000);
    EXPECT_THROW(parseMetadata(deep, "x"), FormatError);
}

} // namespace pk::project::test
