#include "child_process.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace reliability {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::minutes a_patience{1};

// In the new process, after which nothing but exec() or _exit() may come.
[[noreturn]] void become(std::vector<char*>& words, pid_t parent, int input, int output,
                         bool withErrors)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const bool ready = ::getppid() == parent && ::dup2(input, STDIN_FILENO) >= 0 &&
                       ::dup2(output, STDOUT_FILENO) >= 0 &&
                       (!withErrors || ::dup2(output, STDERR_FILENO) >= 0);
    if (ready) {
        ::execv(words.front(), words.data());
    }
    ::_exit(127);
}

struct timespec timeUntil(Clock::time_point moment)
{
    const auto left =
        std::max(std::chrono::nanoseconds(moment - Clock::now()), std::chrono::nanoseconds(0));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    struct timespec time = {};
    time.tv_sec = seconds.count();
    time.tv_nsec = (left - seconds).count();
    return time;
}

} // namespace

Pipe::Pipe()
{
    EXPECT_EQ(::pipe2(m_ends, O_CLOEXEC), 0);
}

Pipe::~Pipe()
{
    closeWriteEnd();
    ::close(m_ends[0]);
}

void Pipe::closeWriteEnd()
{
    if (m_ends[1] >= 0) {
        ::close(m_ends[1]);
        m_ends[1] = -1;
    }
}

ChildProcess::ChildProcess(const std::vector<std::string>& words, int input, bool withErrors)
{
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    const pid_t parent = ::getpid();
    m_process = ::fork();
    if (m_process == 0) {
        become(arguments, parent, input < 0 ? nothing : input, m_output.writeEnd(), withErrors);
    }
    EXPECT_GT(m_process, 0);
    ::close(nothing);
    m_output.closeWriteEnd();
}

ChildProcess::~ChildProcess()
{
    kill();
}

bool ChildProcess::read(Clock::time_point until)
{
    struct pollfd waiting = {m_output.readEnd(), POLLIN, 0};
    const struct timespec time = timeUntil(until);
    if (m_isAtEnd || ::ppoll(&waiting, 1, &time, nullptr) <= 0) {
        return false;
    }
    std::array<char, 4096>
        buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): read() fills it
    const ssize_t got = ::read(m_output.readEnd(), buffer.data(), buffer.size());
    if (got > 0) {
        m_read.append(buffer.data(), static_cast<std::size_t>(got));
        return true;
    }
    m_isAtEnd = got == 0 || errno != EINTR;
    return !m_isAtEnd;
}

std::optional<std::string> ChildProcess::takeLine()
{
    const std::size_t end = m_read.find('\n');
    if (end == std::string::npos) {
        return std::nullopt;
    }
    std::string line = m_read.substr(0, end);
    m_read.erase(0, end + 1);
    return line;
}

std::optional<std::string> ChildProcess::readLine()
{
    const auto deadline = Clock::now() + a_patience;
    auto line = takeLine();
    while (!line && read(deadline)) {
        line = takeLine();
    }
    EXPECT_TRUE(line || m_isAtEnd) << "the program hangs";
    return line;
}

std::vector<std::string> ChildProcess::readLinesUntil(Clock::time_point moment)
{
    while (read(moment)) {
    }
    std::vector<std::string> lines;
    while (auto line = takeLine()) {
        lines.push_back(*line);
    }
    return lines;
}

std::string ChildProcess::readAll()
{
    const auto deadline = Clock::now() + a_patience;
    while (read(deadline)) {
    }
    EXPECT_TRUE(m_isAtEnd) << "the program hangs";
    return std::exchange(m_read, {});
}

int ChildProcess::wait()
{
    int status = 0;
    while (::waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
    }
    m_process = 0;
    return status;
}

bool ChildProcess::kill()
{
    if (m_process <= 0) {
        return false;
    }
    ::kill(m_process, SIGKILL);
    const int status = wait();
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

int ChildProcess::exitCode()
{
    const int status = wait();
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace reliability
