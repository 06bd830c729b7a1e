#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace dying {

/// Runs `action` in a process of its own, which is then killed in the middle of everything, so that
/// nothing is closed. An action that throws or has a failed check is a failure here.
inline void runAndKill(const std::function<void()>& action)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        try {
            action();
        } catch (const std::exception& error) {
            ::dprintf(2, "%s\n", error.what());
            ::_exit(1);
        }
        if (!testing::Test::HasFailure()) {
            ::kill(::getpid(), SIGKILL);
        }
        ::_exit(1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << status;
    ASSERT_EQ(WTERMSIG(status), SIGKILL);
}

} // namespace dying
