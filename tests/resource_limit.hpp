#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

namespace temporary {

/// While it lives, the process has a soft limit of its own, and going beyond the size of files is
/// an error and no signal.
class ResourceLimit
{
public:
    ResourceLimit(__rlimit_resource_t resource, rlim_t most)
        : m_resource(resource), m_signalBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(::getrlimit(m_resource, &m_before), 0);
        struct rlimit limit = m_before;
        limit.rlim_cur = most;
        EXPECT_EQ(::setrlimit(m_resource, &limit), 0);
    }
    ~ResourceLimit()
    {
        EXPECT_EQ(::setrlimit(m_resource, &m_before), 0);
        static_cast<void>(std::signal(SIGXFSZ, m_signalBefore));
    }
    ResourceLimit(const ResourceLimit&) = delete;
    ResourceLimit& operator=(const ResourceLimit&) = delete;
    ResourceLimit(ResourceLimit&&) = delete;
    ResourceLimit& operator=(ResourceLimit&&) = delete;

private:
    __rlimit_resource_t m_resource;
    struct rlimit m_before = {};
    void (*m_signalBefore)(int);
};

/// No file can grow beyond a number of bytes.
class FileSizeLimit : public ResourceLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes) : ResourceLimit(RLIMIT_FSIZE, bytes) {}
};

} // namespace temporary
