// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace orv::aravis {

class DetachableThreads;

/// Runs library calls of one device on its own thread, one after the other. A call waits at most
/// its limit and ends when the device is lost; after a timeout, later calls fail at once while the
/// stuck one runs. Thread-safe.
class DeviceThread {
public:
    /// Runs on the thread. Must own all data it uses, as it may run after its caller has timed out.
    using Work = std::function<OrvErrorType()>;

    /// \p patience is how long work may run after its caller has timed out before later calls fail
    /// at once.
    static std::shared_ptr<DeviceThread>
    begin(DetachableThreads& threads,
          std::chrono::milliseconds patience = std::chrono::milliseconds(2500));

    explicit DeviceThread(std::chrono::milliseconds patience) : m_patience(patience) {}

    /// The work's result. OrvErrorNotFound once the device is lost. OrvErrorTimeout after \p limit,
    /// and at once while timed-out work exceeds the patience, so that a series of calls waits only
    /// once.
    OrvErrorType call(Work work, std::chrono::milliseconds limit);
    /// Runs the work later, even for a lost device.
    void post(Work work);
    /// Lets the waiting calls end with OrvErrorTimeout.
    void interrupt();
    /// Marks the device as lost: waiting and later calls end at once. True the first time.
    bool lose();
    bool isLost() const;
    /// Whether a call is waiting.
    bool isBusy() const;
    /// Ends the thread after all posted work.
    void quit();

private:
    struct Job {
        Work work;
        OrvErrorType result = OrvErrorSuccess;
        std::chrono::steady_clock::time_point begun;
        bool isDone = false;
        /// Its caller has timed out: skipped if it has not begun.
        bool isAbandoned = false;
        /// Its caller shall not wait any longer.
        bool isInterrupted = false;
    };

    void run();
    /// Requires m_mutex.
    bool isStuck() const;

    const std::chrono::milliseconds m_patience;
    mutable std::mutex m_mutex;
    std::condition_variable m_posted;
    std::condition_variable m_finished;
    /// All below and every job guarded by the mutex.
    std::deque<std::shared_ptr<Job>> m_jobs;
    std::shared_ptr<Job> m_running;
    /// Those whose callers wait.
    std::vector<std::shared_ptr<Job>> m_awaited;
    bool m_lost = false;
    bool m_quit = false;
};

} // namespace orv::aravis
