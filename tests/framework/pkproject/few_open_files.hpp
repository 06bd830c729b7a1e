#pragma once

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace pk::project::test {

/// Lets the process have few open files while it lives.
class FewOpenFiles
{
public:
    explicit FewOpenFiles(rlim_t number)
    {
        EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &m_before), 0);
        struct rlimit few = m_before;
        few.rlim_cur = number;
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    }
    ~FewOpenFiles() { EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &m_before), 0); }
    FewOpenFiles(const FewOpenFiles&) = delete;
    FewOpenFiles& operator=(const FewOpenFiles&) = delete;
    FewOpenFiles(FewOpenFiles&&) = delete;
    FewOpenFiles& operator=(FewOpenFiles&&) = delete;

private:
    struct rlimit m_before = {};
};

} // namespace pk::project::test
