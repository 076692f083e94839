// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/Clock.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace orv {

/// Runs events at their times, one after the other, on its own thread. Thread-safe.
class EventThread {
public:
    using Event = std::function<void()>;

    EventThread() = default;
    ~EventThread();

    EventThread(const EventThread&) = delete;
    EventThread& operator=(const EventThread&) = delete;

    /// Events of the same time keep their order.
    void post(Event event, Clock::time_point time = Clock::now());
    /// Drops pending events and waits for the running one. Not to be called on the thread itself.
    void stop();

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::thread m_thread;
    /// Guarded by the mutex.
    bool m_quit = false;
    std::multimap<Clock::time_point, Event> m_events;
};

} // namespace orv
