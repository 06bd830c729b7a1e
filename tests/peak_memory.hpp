#pragma once

#include <gtest/gtest.h>

#include <array>
#include <exception>
#include <functional>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// How much memory hostile input takes.
namespace peak {

#if defined(__SANITIZE_ADDRESS__)
constexpr long a_sanitizerFactor = 16; // freed memory is kept for a while
#else
constexpr long a_sanitizerFactor = 1;
#endif
/// What nothing that somebody else made may take.
constexpr long a_kilobytes = (256L << 10) * a_sanitizerFactor;

inline long soFar()
{
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

/// How many kilobytes of memory an action takes at most beside what there is already, in a process
/// of its own, which is ended when the action takes more than so many seconds of the processor, or
/// ten times that altogether; with the sanitizers some times that. What it throws is not looked at.
inline long kilobytesOf(const std::function<void()>& action, rlim_t seconds = 60)
{
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(::pipe(ends.data()), 0);
    ::malloc_trim(0); // or the action could have what was freed for nothing
    const pid_t child = ::fork();
    if (child == 0) {
        const rlim_t most = seconds * rlim_t{a_sanitizerFactor};
        const rlimit limit = {most, most};
        ::setrlimit(RLIMIT_CPU, &limit);
        ::alarm(static_cast<unsigned>(10 * most)); // when it waits for something
        const long before = soFar();
        try {
            action();
        } catch (const std::exception&) {
            // What is thrown is looked at elsewhere.
        }
        const long taken = soFar() - before;
        const bool told = ::write(ends[1], &taken, sizeof taken) == sizeof taken;
        ::_exit(told ? 0 : 1);
    }
    ::close(ends[1]);
    long taken = -1;
    EXPECT_EQ(::read(ends[0], &taken, sizeof taken), static_cast<ssize_t>(sizeof taken));
    ::close(ends[0]);
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
    return taken;
}

} // namespace peak
