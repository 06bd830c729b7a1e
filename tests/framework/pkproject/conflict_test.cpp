#include "conflict.hpp"
#include "support.hpp"

#include <pk/project/error.hpp>

namespace pk::project::test {
namespace {

std::string conflictOf(const std::vector<std::string>& changes)
{
    return messageOf<ConflictError>([&] { throwConflict("/p", "since then", changes); });
}

TEST(AConflict, ListsChanges)
{
    EXPECT_EQ(conflictOf({}), "/p: changed by someone else since then");
    EXPECT_EQ(conflictOf({"'a' was added"}),
              "/p: changed by someone else since then: 'a' was added");
    EXPECT_EQ(conflictOf({"x", "y"}), "/p: changed by someone else since then: x, y");
}

TEST(AConflict, ListsTheFirstOfManyChanges)
{
    const std::string twenty = conflictOf(std::vector<std::string>(20, "x"));
    EXPECT_EQ(twenty.substr(twenty.size() - 6), ", x, x");
    EXPECT_EQ(conflictOf(std::vector<std::string>(23, "x")), twenty + ", and 3 more");
}

} // namespace
} // namespace pk::project::test
