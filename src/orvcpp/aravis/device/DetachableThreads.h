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

/// Threads that may have to be left running at the shutdown: a library call to a lost camera
/// returns after many seconds. Thread-safe.
class DetachableThreads {
public:
    DetachableThreads() = default;
    ~DetachableThreads();
    DetachableThreads(const DetachableThreads&) = delete;
    DetachableThreads& operator=(const DetachableThreads&) = delete;

    /// \p body must own all data it uses.
    void start(std::function<void()> body);
    /// Joins the threads that end within \p limit in all and detaches the others. Not to be called
    /// on one of them.
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
