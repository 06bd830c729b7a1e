#include <pk/project/error.hpp>

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>

namespace pk::project::test {

template <class E>
class Errors : public testing::Test
{
};

using AllErrors = testing::Types<PathNotFound, InvalidPath, AlreadyExists, FormatError,
                                 ConflictError, LockError, LimitError, IoError>;
TYPED_TEST_SUITE(Errors, AllErrors);

TYPED_TEST(Errors, AreCaughtAsErrorWithTheirText)
{
    try {
        throw TypeParam("/place: reason");
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(), "/place: reason");
        EXPECT_NE(dynamic_cast<const TypeParam*>(&error), nullptr);
    }
    EXPECT_THROW(throw TypeParam("x"), std::runtime_error);
}

TYPED_TEST(Errors, AreNoOtherError)
{
    EXPECT_FALSE((std::is_base_of_v<IoError, TypeParam>)&&!(std::is_same_v<IoError, TypeParam>));
    EXPECT_FALSE(
        (std::is_base_of_v<FormatError, TypeParam>)&&!(std::is_same_v<FormatError, TypeParam>));
}

} // namespace pk::project::test
