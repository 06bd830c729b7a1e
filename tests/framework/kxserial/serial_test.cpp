#include <kx/serial.hpp>

#include <gtest/gtest.h>

#include <limits>
#include <string>

using KX::Serial;

namespace {

struct IntCase
{
    const char* text;
    bool good;
    int value;
};

class SerialInt : public ::testing::TestWithParam<IntCase>
{
};

TEST_P(SerialInt, TakesExactlyADecimalNumber)
{
    constexpr int a_before = 77;
    int value = a_before;
    EXPECT_EQ(Serial::load(std::string(GetParam().text), value), GetParam().good);
    EXPECT_EQ(value, GetParam().good ? GetParam().value : a_before);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SerialInt,
    ::testing::Values(IntCase{"0", true, 0}, IntCase{"3", true, 3}, IntCase{"-12", true, -12},
                      IntCase{"-0", true, 0}, IntCase{"007", true, 7},
                      IntCase{"2147483647", true, std::numeric_limits<int>::max()},
                      IntCase{"-2147483648", true, std::numeric_limits<int>::min()},
                      IntCase{"2147483648", false, 0}, IntCase{"-2147483649", false, 0},
                      IntCase{"99999999999999999999", false, 0}, IntCase{"", false, 0},
                      IntCase{"-", false, 0}, IntCase{"+5", false, 0}, IntCase{" 5", false, 0},
                      IntCase{"5 ", false, 0}, IntCase{"5x", false, 0}, IntCase{"0x5", false, 0},
                      IntCase{"1.0", false, 0}, IntCase{"1e2", false, 0}, IntCase{"abc", false, 0},
                      IntCase{"\xD9\xA3", false, 0}));

TEST(Serial, WritesIntsThatItReads)
{
    for (const int value :
         {0, 1, -1, 42, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        int read = value + (value > 0 ? -1 : 1);
        EXPECT_TRUE(Serial::load(Serial::save(value), read));
        EXPECT_EQ(read, value);
    }
    EXPECT_EQ(Serial::save(3), "3");
    EXPECT_EQ(Serial::save(-3), "-3");
}

TEST(Serial, RefusesAnIntWithAZeroByte)
{
    int value = 0;
    EXPECT_FALSE(Serial::load(std::string("5\0", 2), value));
}

struct BoolCase
{
    const char* text;
    bool good;
    bool value;
};

class SerialBool : public ::testing::TestWithParam<BoolCase>
{
};

TEST_P(SerialBool, TakesExactlyFourWords)
{
    for (const bool before : {false, true}) {
        bool value = before;
        EXPECT_EQ(Serial::load(std::string(GetParam().text), value), GetParam().good);
        EXPECT_EQ(value, GetParam().good ? GetParam().value : before);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SerialBool,
    ::testing::Values(BoolCase{"true", true, true}, BoolCase{"1", true, true},
                      BoolCase{"false", true, false}, BoolCase{"0", true, false},
                      BoolCase{"", false, false}, BoolCase{"True", false, false},
                      BoolCase{"yes", false, false}, BoolCase{"2", false, false},
                      BoolCase{"01", false, false}, BoolCase{" true", false, false},
                      BoolCase{"true\n", false, false}));

TEST(Serial, WritesBoolsAsWords)
{
    EXPECT_EQ(Serial::save(true), "true");
    EXPECT_EQ(Serial::save(false), "false");
}

TEST(Serial, TakesAStringAsItIs)
{
    const std::string text(" a\0\xFF", 4);
    std::string value = "before";
    EXPECT_TRUE(Serial::load(text, value));
    EXPECT_EQ(value, text);
}

TEST(Serial, KeepsEveryUnicodeCharacter)
{
    constexpr uint a_last = 0x10FFFF;
    for (uint code = 0; code <= a_last; ++code) {
        if (QChar::isSurrogate(code)) {
            continue;
        }
        const QString text = QString::fromUcs4(&code, 1);
        QString read;
        ASSERT_TRUE(Serial::load(Serial::save(text), read)) << code;
        ASSERT_EQ(read, text) << code;
    }
}

TEST(Serial, KeepsByteOrderMarksAndZeroCharacters)
{
    const QString mark{QChar(QChar::ByteOrderMark)};
    for (const QString& text : {mark, mark + mark, mark + QLatin1String("a") + mark,
                                QString(QChar(0)) + QLatin1Char('b'), QString()}) {
        QString read = QStringLiteral("before");
        EXPECT_TRUE(Serial::load(Serial::save(text), read));
        EXPECT_EQ(read, text);
    }
}

TEST(Serial, WritesALoneSurrogateAsReplacementCharacter)
{
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    EXPECT_EQ(Serial::save(QString(high) + QLatin1Char('a')), "\xEF\xBF\xBD"
                                                              "a");
    EXPECT_EQ(Serial::save(QString(low)), "\xEF\xBF\xBD");
    EXPECT_EQ(Serial::save(QString(high) + high + low), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
    EXPECT_EQ(Serial::save(QStringLiteral("?")), "?");
}

TEST(Serial, RefusesTextThatIsNotUtf8)
{
    for (const char* text : {"\xFF", "a\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        QString value = QStringLiteral("before");
        EXPECT_FALSE(Serial::load(std::string(text), value));
        EXPECT_EQ(value, QStringLiteral("before"));
    }
}

} // namespace
