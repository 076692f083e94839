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

/// What a streaming camera asks of its link.
struct Demand {
    /// Frames per second that come by themselves; 0: only on a trigger.
    double framesPerSecond = 0;
    /// Fastest rate at which the camera can send; triggers that come faster are ignored.
    double maximumRate = 0;
    std::uint32_t payload = 0;
    /// Share of the carried frames that arrive damaged, as a part of the share that is lost.
    double overloadDamage = 0;
};

/// The cable that the cameras of an adapter or a controller share: one thread sends the frames of
/// all of them at their times. It carries no more than its bytes per second: when the cameras ask
/// for more, each of them loses the same share of its frames. Thread-safe.
class Link {
public:
    explicit Link(std::uint64_t bytesPerSecond);
    ~Link();

    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    void attach(const std::shared_ptr<FrameSource>& source, const Demand& demand);
    void change(const FrameSource& source, const Demand& demand);
    /// Lets the source send one frame as soon as the camera can.
    void trigger(const FrameSource& source);
    /// Sends nothing more; a callback that runs is not waited for.
    void drop(const FrameSource& source);
    /// The same, and no callback of the source runs any more when it returns. Not to be called on
    /// a thread of a link.
    void detach(const FrameSource& source);
    /// Ends the thread for good. Every source must be detached, and none is attached any more.
    void stop();

private:
    struct Entry {
        std::shared_ptr<FrameSource> source;
        Demand demand;
        /// Time of the next frame; max() when there is none to come.
        Clock::time_point due = Clock::time_point::max();
        /// Time of the last frame.
        Clock::time_point last = Clock::time_point::min();
        /// Parts of a frame that may be carried, or must be damaged, so far.
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
    /// Share of the frames that the link can carry, 0 to 1.
    double m_carriedShare = 1;
    /// Bytes that may be sent at m_filled, and the most that may be saved up: what triggered
    /// cameras add on top of the free-running ones is taken from here.
    double m_allowance = 0;
    double m_allowanceLimit = 0;
    Clock::time_point m_filled = m_start;
};

} // namespace orv::simulated
