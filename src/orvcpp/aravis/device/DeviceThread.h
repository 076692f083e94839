// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace orv::aravis {

class DetachableThreads;

/// Makes the library's calls to one device, one after the other as that device needs it, on a
/// thread of its own: who asks waits for the answer, but never longer than for a device that is
/// lost, although the library itself goes on waiting. Thread-safe.
class DeviceThread {
public:
    /// What is done on the thread. It may run after its caller has given up, so it owns all that
    /// it touches.
    using Work = std::function<OrvErrorType()>;

    /// \p patience is how long a piece of work may take that nobody waits for any more.
    static std::shared_ptr<DeviceThread>
    begin(DetachableThreads& threads,
          std::chrono::milliseconds patience = std::chrono::milliseconds(2500));

    explicit DeviceThread(std::chrono::milliseconds patience) : m_patience(patience) {}

    /// The work's result; OrvErrorNotFound once the device is lost, OrvErrorTimeout after
    /// \p limit, and at once while the device has had its time with what somebody gave up before:
    /// who asks for many things waits for one only.
    OrvErrorType call(Work work, std::chrono::milliseconds limit);
    /// Does the work later, and also for a device that is lost.
    void post(Work work);
    /// Lets every call end at once, now and from now on; true the first time.
    bool lose();
    bool isLost() const;
    /// Whether somebody waits for the device.
    bool isBusy() const;
    /// Ends the thread when all that was posted is done.
    void quit();

private:
    struct Job {
        Work work;
        OrvErrorType result = OrvErrorSuccess;
        std::chrono::steady_clock::time_point begun;
        bool isDone = false;
        /// Nobody waits for it any more: it need not begin.
        bool isAbandoned = false;
    };

    void run();
    /// With the mutex held.
    bool isStuck() const;

    const std::chrono::milliseconds m_patience;
    mutable std::mutex m_mutex;
    std::condition_variable m_posted;
    std::condition_variable m_finished;
    /// All below and every job guarded by the mutex.
    std::deque<std::shared_ptr<Job>> m_jobs;
    std::shared_ptr<Job> m_running;
    int m_waiting = 0;
    bool m_lost = false;
    bool m_quit = false;
};

} // namespace orv::aravis
