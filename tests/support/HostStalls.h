// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>
#include <vector>

namespace fakecamera {

/// Counts the times at which a processor let a waiting program wait for too long, since other
/// programs or the host of a virtual machine used it. Cameras, switch and receiver of a test may
/// have stood still then, so that each camera may have a damaged frame.
class HostStalls {
public:
    /// Counts waits that are longer than \p tooLong. By default, as long as the queue of the switch
    /// in tools/congested-network needs to fill up.
    explicit HostStalls(std::chrono::milliseconds tooLong = std::chrono::milliseconds(6))
        : m_tooLong(tooLong) {
        const int processors = static_cast<int>(std::thread::hardware_concurrency());
        for (int i = 0; i < processors; ++i)
            m_threads.emplace_back([this, i] { watch(i); });
    }
    HostStalls(const HostStalls&) = delete;
    HostStalls& operator=(const HostStalls&) = delete;
    ~HostStalls() {
        m_ends = true;
        for (std::thread& thread : m_threads)
            thread.join();
    }

    std::uint64_t count() const { return m_count; }

    /// Of the time of all processors since construction, 0 to 1.
    double share() const {
        const auto all = (Clock::now() - m_begun) * m_threads.size();
        return static_cast<double>(m_stoodStill) /
               static_cast<double>(std::chrono::nanoseconds(all).count());
    }

private:
    using Clock = std::chrono::steady_clock;

    void watch(int processor) {
        cpu_set_t only;
        CPU_ZERO(&only);
        CPU_SET(processor, &only);
        pthread_setaffinity_np(pthread_self(), sizeof only, &only);
        while (!m_ends) {
            const auto before = Clock::now();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            const std::chrono::nanoseconds waited = Clock::now() - before;
            if (waited <= m_tooLong)
                continue;
            ++m_count;
            m_stoodStill += waited.count();
        }
    }

    const std::chrono::milliseconds m_tooLong;
    const Clock::time_point m_begun = Clock::now();
    std::atomic<bool> m_ends{false};
    std::atomic<std::uint64_t> m_count{0};
    /// In nanoseconds.
    std::atomic<std::int64_t> m_stoodStill{0};
    std::vector<std::thread> m_threads;
};

} // namespace fakecamera
