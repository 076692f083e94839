// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orv::aravis {

/// Owns threads that nobody waits for, but at the very end: the library returns only after many
/// seconds from a camera that has died. Thread-safe.
class DetachableThreads {
public:
    DetachableThreads() = default;
    ~DetachableThreads();
    DetachableThreads(const DetachableThreads&) = delete;
    DetachableThreads& operator=(const DetachableThreads&) = delete;

    /// \p body owns all that it touches.
    void start(std::function<void()> body);
    /// Waits for the threads, for \p limit in all. One that takes longer is left to itself: it
    /// touches nothing but its own. Not to be called on one of them.
    void join(std::chrono::milliseconds limit);

private:
    struct Flag {
        std::mutex mutex;
        std::condition_variable changed;
        /// Guarded by the mutex.
        bool isSet = false;

        bool wait(std::chrono::steady_clock::time_point end);
    };
    struct Parked {
        std::shared_ptr<Flag> finished;
        std::thread thread;
    };

    std::mutex m_mutex;
    /// Guarded by the mutex.
    std::vector<Parked> m_threads;
};

} // namespace orv::aravis
