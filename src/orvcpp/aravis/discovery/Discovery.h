// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/discovery/CameraRecord.h"

#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace orv::aravis {

/// Looks for cameras again and again, on one thread of its own: a look takes a second, and what
/// the library remembers of it is not safe to share.
class Discovery {
public:
    using Clock = std::chrono::steady_clock;
    /// Gets the cameras that answered a look, and when that look began. Called on the thread.
    using Found = std::function<void(std::vector<CameraRecord> cameras, Clock::time_point begun)>;

    Discovery(std::filesystem::path sysfs, Found found);
    ~Discovery();
    Discovery(const Discovery&) = delete;
    Discovery& operator=(const Discovery&) = delete;

    /// Begins, and returns when the first look is over.
    void start();
    /// Lets the look that is under way be the last one, without waiting for it.
    void askToStop();
    /// No call of \p found is made after this has returned. Waits for a look that is under way.
    void stop();

private:
    void run();
    std::vector<CameraRecord> look() const;

    const std::filesystem::path m_sysfs;
    const Found m_found;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    /// Guarded by the mutex.
    bool m_quit = false;
    bool m_hasLooked = false;
    std::thread m_thread;
};

} // namespace orv::aravis
