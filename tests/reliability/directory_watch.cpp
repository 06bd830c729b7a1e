#include "directory_watch.hpp"

#include <gtest/gtest.h>

#include <array>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace reliability {

namespace {

constexpr int a_patience = 60000; // ms

} // namespace

DirectoryWatch::DirectoryWatch(const std::string& path)
    : m_notify(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    EXPECT_GE(::inotify_add_watch(m_notify, path.c_str(),
                                  IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO),
              0);
}

DirectoryWatch::~DirectoryWatch()
{
    ::close(m_notify);
}

int DirectoryWatch::next(int milliseconds)
{
    struct pollfd waiting = {m_notify, POLLIN, 0};
    if (::poll(&waiting, 1, milliseconds) <= 0) {
        return 0;
    }
    alignas(struct inotify_event) std::array<char, 4096> buffer{};
    const ssize_t size = ::read(m_notify, buffer.data(), buffer.size());
    int count = 0;
    for (ssize_t at = 0; at < size; ++count) {
        const auto* const event = reinterpret_cast<const struct inotify_event*>(buffer.data() + at);
        at += static_cast<ssize_t>(sizeof *event + event->len);
    }
    return count;
}

void DirectoryWatch::forget()
{
    while (next(0) > 0) {
    }
}

void DirectoryWatch::await(int events)
{
    while (events > 0) {
        const int happened = next(a_patience);
        ASSERT_GT(happened, 0) << "nothing happens";
        events -= happened;
    }
}

} // namespace reliability
