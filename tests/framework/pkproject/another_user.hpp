#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

namespace pk::project::test {

/// Another user than root while it lives; without root there is none to become, and the test shows
/// what it shows.
class AnotherUser
{
public:
    AnotherUser() { EXPECT_TRUE(::geteuid() != 0 || ::seteuid(65534) == 0); }
    ~AnotherUser() { EXPECT_TRUE(::getuid() != 0 || ::seteuid(0) == 0); }
    AnotherUser(const AnotherUser&) = delete;
    AnotherUser& operator=(const AnotherUser&) = delete;
    AnotherUser(AnotherUser&&) = delete;
    AnotherUser& operator=(AnotherUser&&) = delete;
};

} // namespace pk::project::test
