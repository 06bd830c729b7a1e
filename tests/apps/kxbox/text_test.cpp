#include "text.hpp"

#include <gtest/gtest.h>

namespace kxbox {
namespace {

struct PrintableCase
{
    std::string text;
    std::string printed;
};

class PrintableText : public testing::TestWithParam<PrintableCase>
{
};

TEST_P(PrintableText, IsOnOneLineAndControlsNoTerminal)
{
    EXPECT_EQ(printable(GetParam().text), GetParam().printed);
    EXPECT_EQ(printable(QString::fromStdString(GetParam().text)), GetParam().printed);
}

INSTANTIATE_TEST_SUITE_P(
    , PrintableText,
    testing::Values(PrintableCase{"", ""}, PrintableCase{"Olé!", "Olé!"},
                    PrintableCase{"a\nb\r\tc", "a\\nb\\r\\tc"},
                    PrintableCase{"\x1b[31m", "\\x1b[31m"}, PrintableCase{"\x7f", "\\x7f"},
                    PrintableCase{std::string("a\0b", 3), "a\\x00b"},
                    PrintableCase{"\xc2\x9b", "\\x9b"}, // CSI in one character
                    // Writing backwards and isolating, with their ends.
                    PrintableCase{"\xe2\x80\xae"
                                  "txt\xe2\x80\xac",
                                  "\\x202etxt\\x202c"},
                    PrintableCase{"\xe2\x81\xa6\xe2\x81\xa9", "\\x2066\\x2069"},
                    PrintableCase{"\xe2\x80\xa8", "\\x2028"},
                    PrintableCase{"\xf0\x9f\xa4\x96", "\xf0\x9f\xa4\x96"}, // beyond 16 bits
                    PrintableCase{"a\xff"
                                  "b",
                                  "a\xef\xbf\xbd"
                                  "b"},
                    PrintableCase{"\\n", "\\n"}));

TEST(Counted, HasTheNounInTheRightNumber)
{
    EXPECT_EQ(counted(0, "box", "boxes"), "0 boxes");
    EXPECT_EQ(counted(1, "box", "boxes"), "1 box");
    EXPECT_EQ(counted(2, "box", "boxes"), "2 boxes");
}

} // namespace
} // namespace kxbox
