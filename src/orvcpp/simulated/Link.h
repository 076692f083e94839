// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/Clock.h"
#include "orvcpp/simulated/FrameSource.h"

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orv::simulated {

/// What a streaming camera sends over its link.
struct Demand {
    /// Untriggered frames per second; 0: on triggers only.
    double framesPerSecond = 0;
    /// Fastest rate at which the camera can send; triggers that come faster are ignored.
    double maximumRate = 0;
    std::uint32_t payload = 0;
    /// Damaged share of the carried frames, as a fraction of the lost share.
    double overloadDamage = 0;
};

/// The link that the cameras of an adapter or controller share. One thread sends all their frames
/// when they are due. When the cameras send more than the link's bytes per second, each loses the
/// same share of its frames. Thread-safe.
class Link {
public:
    explicit Link(std::uint64_t bytesPerSecond);
    ~Link();

    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// Adds to, or takes from, the bytes per second that cameras send to other applications. They
    /// take their share of the link like the frames.
    void addTraffic(double bytesPerSecond);
    void attach(const std::shared_ptr<FrameSource>& source, const Demand& demand);
    void change(const FrameSource& source, const Demand& demand);
    /// Sends one frame as soon as the maximum rate allows.
    void trigger(const FrameSource& source);
    /// Stops sending; does not wait for a running callback.
    void drop(const FrameSource& source);
    /// drop(), and waits for a running callback. Not to be called on a link's thread.
    void detach(const FrameSource& source);
    /// Ends the thread for good. Requires that every source is detached.
    void stop();

private:
    struct Entry {
        std::shared_ptr<FrameSource> source;
        Demand demand;
        /// Time of the next frame; max() when there is none to come.
        Clock::time_point due = Clock::time_point::max();
        /// Time of the last frame.
        Clock::time_point last = Clock::time_point::min();
        /// Accumulated fractions of a frame to carry, and to damage.
        double credit = 0;
        double damage = 0;
    };

    void run();
    Entry* next();
    Entry* find(const FrameSource& source);
    void removeEntry(const FrameSource& source);
    void sendFrame(Entry& entry, std::unique_lock<std::mutex>& lock);
    std::int64_t skipMissed(Entry& entry, Clock::time_point now);
    Transmission carry(Entry& entry);
    void share();

    const double m_bytesPerSecond;
    const Clock::time_point m_start = Clock::now();
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::thread m_thread;
    /// All below guarded by the mutex.
    bool m_quit = false;
    std::vector<Entry> m_entries;
    /// The source that is being served without the lock.
    const FrameSource* m_serving = nullptr;
    /// Bytes per second of other applications: those that are sent.
    double m_traffic = 0;
    /// Bytes per second that the link has left for frames.
    double m_available;
    /// Share of the frames that the link can carry, 0 to 1.
    double m_carriedShare = 1;
    /// Bytes that may be sent at m_filled, and their upper limit. Limits triggered cameras, which
    /// m_carriedShare does not.
    double m_allowance = 0;
    double m_allowanceLimit = 0;
    Clock::time_point m_filled = m_start;
};

} // namespace orv::simulated
