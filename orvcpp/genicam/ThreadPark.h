// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orv::genicam {

/// Owns threads that nobody waits for, but at the very end: the library returns only after seconds
/// from a camera that has died. Thread-safe.
class ThreadPark {
public:
    ThreadPark() = default;
    ~ThreadPark() { join(); }
    ThreadPark(const ThreadPark&) = delete;
    ThreadPark& operator=(const ThreadPark&) = delete;

    void start(std::function<void()> body);
    /// Waits for every thread. Not to be called on one of them.
    void join();

private:
    struct Parked {
        std::shared_ptr<std::atomic<bool>> finished;
        std::thread thread;
    };

    std::mutex m_mutex;
    /// Guarded by the mutex.
    std::vector<Parked> m_threads;
};

} // namespace orv::genicam
