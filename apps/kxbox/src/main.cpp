#include "command_line.hpp"
#include "failure.hpp"
#include "log_watch.hpp"

#include <QTextCodec>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace {

using namespace kxbox;

enum ExitCode
{
    Done = 0,
    Problems = 1,
    BadUsage = 2,
    Failed = 3
};

void complain(const std::string& text)
{
    // Where nothing can be complained to, the exit code is left to speak.
    static_cast<void>(std::fputs(("kxbox: " + printable(text) + "\n").c_str(), stderr));
}

void print(const std::string& text)
{
    const bool whole = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!whole || std::fflush(stdout) != 0) {
        throw Failure(std::string("standard output: ") + std::strerror(errno));
    }
}

ExitCode run(const std::vector<std::string>& words)
{
    // Before anything is done. What else keeps the output from being written comes too late.
    if (::fcntl(STDOUT_FILENO, F_GETFD) == -1) {
        throw Failure(std::string("standard output: ") + std::strerror(errno));
    }
    const LogWatch watch;
    CommandLine commandLine(CommandLine::Place::Shell);
    Outcome outcome;
    {
        Progress progress(STDERR_FILENO);
        Session session(progress);
        outcome = commandLine.run(words, session);
    }
    print(commandLine.json() ? jsonText(outcome.json) : outcome.text);
    if (!outcome.failure.empty()) {
        throw Failure(outcome.failure);
    }
    for (const pk::log::Record& record : watch.records()) {
        complain("warning: " + record.message);
    }
    return outcome.problems ? Problems : Done;
}

} // namespace

int main(int argc, char** argv)
{
    // File names are UTF-8 whatever the locale is, for Qt too.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    try {
        return run(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const UsageError& error) {
        complain(error.what());
        return BadUsage;
    } catch (const std::bad_alloc&) {
        complain("out of memory");
    } catch (const std::exception& error) {
        complain(error.what());
    }
    return Failed;
}
