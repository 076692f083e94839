// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace viewer {

/// Ends the process when an unattended step takes too long, even one that blocks the GUI thread.
/// Thread-safe.
class Watchdog {
public:
    /// Code with which the process ends.
    static constexpr int exitCode = 3;

    Watchdog();
    /// Ends the watch.
    ~Watchdog();

    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    /// Begins a step, which ends with the next call or the destructor and must not take longer than
    /// \p limit. \p step names it in the message on the standard error stream.
    void expect(const std::string& step, std::chrono::seconds limit);

private:
    void watch();

    /// Guards m_step, m_deadline and m_isOver.
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_step;
    std::chrono::steady_clock::time_point m_deadline;
    bool m_isOver = false;
    std::thread m_thread;
};

} // namespace viewer
