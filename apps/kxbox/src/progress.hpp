#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace kxbox {

/// A progress bar on a terminal, for work that takes longer than a moment.
///
/// A thread of its own draws it, since opening and saving a library are single calls. Where the
/// file descriptor is no terminal nothing is drawn, and there is no thread.
class Progress
{
public:
    static constexpr std::chrono::milliseconds a_patience{500};

    /// Draws on the terminal `descriptor` once `patience` has passed.
    explicit Progress(int descriptor, std::chrono::milliseconds patience = a_patience);
    /// Removes the bar.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    Progress(Progress&&) = delete;
    Progress& operator=(Progress&&) = delete;

    /// Begins a piece of work: what it is called, and how many steps it has, 0 when nobody knows.
    void begin(const std::string& work, std::size_t steps = 0);
    /// One more step is done.
    void step() { ++m_done; }

private:
    void draw();
    /// The bar as it is now: "saving  [#####     ]  50 %", or, without steps, a mark that wanders.
    std::string line();

    int m_descriptor;
    std::chrono::milliseconds m_patience;
    std::mutex m_mutex; // of the four below
    std::condition_variable m_wake;
    std::string m_work;
    bool m_ended = false;
    std::size_t m_steps = 0;
    std::size_t m_drawn = 0;
    std::atomic<std::size_t> m_done{0};
    std::thread m_thread;
};

} // namespace kxbox
