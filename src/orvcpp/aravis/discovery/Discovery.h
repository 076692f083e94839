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

/// Searches for cameras repeatedly on its own thread: a search takes a second, and the library's
/// list is not thread-safe.
class Discovery {
public:
    using Clock = std::chrono::steady_clock;
    /// Gets the cameras that answered a search, and when the search began. Called on the thread.
    using Found = std::function<void(std::vector<CameraRecord> cameras, Clock::time_point begun)>;

    Discovery(std::filesystem::path sysfs, Found found);
    ~Discovery();
    Discovery(const Discovery&) = delete;
    Discovery& operator=(const Discovery&) = delete;

    /// Starts the thread and returns after the first search.
    void start();
    /// Makes the running search the last one, without waiting.
    void askToStop();
    /// Waits for the running search; \p found is not called afterwards.
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
