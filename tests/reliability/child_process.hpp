#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace reliability {

/// Two ends of a pipe, closed on destruction; no started program inherits them.
class Pipe
{
public:
    Pipe();
    ~Pipe();
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    Pipe(Pipe&&) = delete;
    Pipe& operator=(Pipe&&) = delete;

    int readEnd() const { return m_ends[0]; }
    int writeEnd() const { return m_ends[1]; }
    /// Whoever reads from the pipe then comes to its end.
    void closeWriteEnd();

private:
    int m_ends[2] = {-1, -1};
};

/// A program that was started by the test and does not outlive it, however the test ends.
class ChildProcess
{
public:
    /// `words` are the program's path and its arguments, `input`, which stays the caller's, its
    /// standard input; its standard output, and its error output if so asked, is read here.
    explicit ChildProcess(const std::vector<std::string>& words, int input = -1,
                          bool withErrors = false);
    /// Kills the program when it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ChildProcess(ChildProcess&&) = delete;
    ChildProcess& operator=(ChildProcess&&) = delete;

    /// The next line that the program prints, without its end; nothing when it prints no more. One
    /// that hangs for a minute fails the test.
    std::optional<std::string> readLine();

    /// Reads until the given moment, or until the program prints no more, and gives the whole
    /// lines.
    std::vector<std::string> readLinesUntil(std::chrono::steady_clock::time_point moment);

    /// Everything that is still printed.
    std::string readAll();

    /// Ends the program with SIGKILL. Whether it was still running then.
    bool kill();

    /// Waits for the end of the program and gives its exit code; -1 when a signal ended it.
    int exitCode();

private:
    /// Reads what is there, waiting for it at most until then; false at the end or when nothing
    /// came.
    bool read(std::chrono::steady_clock::time_point until);
    std::optional<std::string> takeLine();
    int wait();

    Pipe m_output;
    std::string m_read;
    bool m_isAtEnd = false;
    pid_t m_process = 0;
};

} // namespace reliability
