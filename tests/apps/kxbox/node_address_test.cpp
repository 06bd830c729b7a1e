#include "failure.hpp"
#include "node_address.hpp"

#include <gtest/gtest.h>

namespace kxbox {
namespace {

using Names = std::vector<std::string>;

struct AddressCase
{
    std::string address;
    Names names;
    std::string canonical;
};

class Addresses : public testing::TestWithParam<AddressCase>
{
};

TEST_P(Addresses, AreTakenApartAndPutTogether)
{
    const AddressCase& expected = GetParam();
    EXPECT_EQ(node_address::parse(expected.address), expected.names);
    EXPECT_EQ(node_address::format(expected.names), expected.canonical);
    EXPECT_EQ(node_address::parse(expected.canonical), expected.names);
}

INSTANTIATE_TEST_SUITE_P(, Addresses,
                         testing::Values(AddressCase{"", {}, "/"}, AddressCase{"/", {}, "/"},
                                         AddressCase{"a", {"a"}, "a"},
                                         AddressCase{"a/b", {"a", "b"}, "a/b"},
                                         AddressCase{"/a/b/", {"a", "b"}, "a/b"},
                                         AddressCase{R"(a\/b)", {"a/b"}, R"(a\/b)"},
                                         AddressCase{R"(a\\/b)", {"a\\", "b"}, R"(a\\/b)"},
                                         AddressCase{R"(\a)", {"\\a"}, R"(\\a)"},
                                         AddressCase{R"(a\)", {"a\\"}, R"(a\\)"},
                                         AddressCase{R"(\/)", {"/"}, R"(\/)"},
                                         AddressCase{" ", {" "}, " "}));

TEST(NodeAddress, HasNoEmptyNames)
{
    for (const char* const address : {"//", "a//b", "//a", "a//"}) {
        EXPECT_THROW(node_address::parse(address), Failure) << address;
    }
}

} // namespace
} // namespace kxbox
