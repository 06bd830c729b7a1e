#include "progress.hpp"
#include "tool.hpp"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace kxbox::test {
namespace {

constexpr int a_progressTimeout = 60000; // ms; a frame takes a tenth of a second

/// A pseudo-terminal: what is written to one end can be read from the other.
class Terminal
{
public:
    Terminal() : m_reader(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        EXPECT_EQ(::grantpt(m_reader), 0);
        EXPECT_EQ(::unlockpt(m_reader), 0);
        m_writer = ::open(::ptsname(m_reader), O_RDWR | O_NOCTTY | O_CLOEXEC);
        EXPECT_GE(m_writer, 0);
    }
    ~Terminal()
    {
        ::close(m_writer);
        ::close(m_reader);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    Terminal(Terminal&&) = delete;
    Terminal& operator=(Terminal&&) = delete;

    int descriptor() const { return m_writer; }

    /// Reads on until `text` has come; what has come since the last call.
    std::string readUntil(const std::string& text)
    {
        std::string read;
        while (read.find(text) == std::string::npos) {
            struct pollfd waiting = {m_reader, POLLIN, 0};
            if (::poll(&waiting, 1, a_progressTimeout) != 1) {
                ADD_FAILURE() << "'" << text << "' does not come, but " << read;
                return read;
            }
            read += readSome();
        }
        return read;
    }
    /// What is there to be read.
    std::string readRest()
    {
        std::string read;
        struct pollfd waiting = {m_reader, POLLIN, 0};
        while (::poll(&waiting, 1, 0) == 1) {
            read += readSome();
        }
        return read;
    }

private:
    std::string readSome() const
    {
        std::array<char, 256> buffer{};
        const auto size = ::read(m_reader, buffer.data(), buffer.size());
        return {buffer.data(), size > 0 ? static_cast<std::size_t>(size) : 0};
    }

    int m_reader;
    int m_writer = -1;
};

TEST(ProgressBar, ShowsWorkAndShareAndGoesAtTheEnd)
{
    Terminal terminal;
    std::string rest;
    {
        Progress progress(terminal.descriptor(), std::chrono::milliseconds(0));
        progress.begin("saving", 2);
        terminal.readUntil("\r\x1b[Ksaving [                              ] 0 %");
        progress.step();
        terminal.readUntil("\r\x1b[Ksaving [###############               ] 50 %");
        progress.step();
        terminal.readUntil("\r\x1b[Ksaving [##############################] 100 %");
        progress.step(); // more than there are
        progress.begin("opening");
        terminal.readUntil("\r\x1b[Kopening [");
        const std::string bar = terminal.readUntil("]");
        EXPECT_NE(bar.find('#'), std::string::npos);
        EXPECT_EQ(bar.find('%'), std::string::npos);
        rest = terminal.readRest();
    }
    rest += terminal.readUntil("\r\x1b[K");
    rest += terminal.readRest();
    EXPECT_EQ(rest.substr(rest.size() - 4), "\r\x1b[K");
}

TEST(ProgressBar, IsNotDrawnForWorkOfAMoment)
{
    Terminal terminal;
    {
        Progress progress(terminal.descriptor(), std::chrono::hours(1));
        progress.begin("saving", 2);
        progress.step();
    }
    EXPECT_EQ(terminal.readRest(), "");
}

TEST(ProgressBar, IsNotDrawnWhereThereIsNoTerminal)
{
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe2(pipe.data(), O_CLOEXEC | O_NONBLOCK), 0);
    {
        Progress progress(pipe[1], std::chrono::milliseconds(0));
        progress.begin("saving", 2);
        progress.step();
    }
    char byte = 0;
    EXPECT_EQ(::read(pipe[0], &byte, 1), -1); // nothing there
    ::close(pipe[0]);
    ::close(pipe[1]);
}

class ProgressOfTheProgram : public ToolTest
{
};

TEST_F(ProgressOfTheProgram, IsNotPrintedToAFile)
{
    QProcess process;
    process.setWorkingDirectory(path());
    process.setStandardErrorFile(path("errors"));
    process.start(q(KXBOX_PROGRAM), {q("info"), q(KXBOX_SAMPLE)});
    ASSERT_TRUE(process.waitForFinished(a_progressTimeout));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(getLocal(path("errors")), QByteArray());
}

} // namespace
} // namespace kxbox::test
