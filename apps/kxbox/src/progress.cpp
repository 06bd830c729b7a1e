#include "progress.hpp"

#include <algorithm>
#include <unistd.h>

namespace kxbox {

namespace {

constexpr std::chrono::milliseconds a_frame{100};
constexpr std::size_t a_width = 30;
const char* const a_clearLine = "\r\x1b[K";

void print(int descriptor, const std::string& text)
{
    // A terminal that takes no bar is no reason to fail.
    const auto written = ::write(descriptor, text.data(), text.size());
    static_cast<void>(written);
}

} // namespace

Progress::Progress(int descriptor, std::chrono::milliseconds patience)
    : m_descriptor(descriptor), m_patience(patience)
{
    if (::isatty(descriptor) == 1) {
        m_thread = std::thread([this] { draw(); });
    }
}

Progress::~Progress()
{
    if (m_thread.joinable()) {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_ended = true;
        }
        m_wake.notify_one();
        m_thread.join();
    }
}

void Progress::begin(const std::string& work, std::size_t steps)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_work = work;
    m_steps = steps;
    m_done = 0;
}

void Progress::draw()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto ended = [this] { return m_ended; };
    if (m_wake.wait_for(lock, m_patience, ended)) {
        return;
    }
    do {
        print(m_descriptor, a_clearLine + line());
        ++m_drawn;
    } while (!m_wake.wait_for(lock, a_frame, ended));
    print(m_descriptor, a_clearLine);
}

std::string Progress::line()
{
    std::string bar(a_width, ' ');
    std::string percent;
    if (m_steps == 0) {
        bar[m_drawn % a_width] = '#';
    } else {
        const std::size_t done = std::min<std::size_t>(m_done, m_steps);
        std::fill_n(bar.begin(), done * a_width / m_steps, '#');
        percent = " " + std::to_string(done * 100 / m_steps) + " %";
    }
    return m_work + " [" + bar + "]" + percent;
}

} // namespace kxbox
