// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "observer/StreamFigures.h"
#include "observer/UsbCapture.h"
#include "observer/UsbMonitor.h"
#include "observer/UsbStream.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>
#include <vector>

namespace observer {

/// Bus, number of the device on it, and endpoint with the bit of the direction, 0x80.
using UsbStreamKey = std::tuple<std::uint16_t, std::uint8_t, std::uint8_t>;

/// One stream of a USB3 Vision camera at one moment.
struct UsbStreamReading {
    /// With what was seen under numbers that the camera had before.
    StreamFigures figures;
    /// Those of them that the reading before had, under whichever number.
    StreamFigures known;
    /// Of the frames since the reading before, and of all.
    FrameTiming timing;
    FrameTiming allTiming;
    /// Since data came last.
    std::chrono::duration<double> silence{0};
};

/// All that was seen on a bus.
struct UsbReading {
    std::map<UsbStreamKey, UsbStreamReading> streams;
    /// Events of transfers, of all devices, that the observer itself has missed.
    std::uint64_t missedEvents = 0;
};

/// Finds the streams on a USB bus by their leaders, and follows them. Sends nothing. receive() is
/// called on one thread; the others on any.
class UsbObserver {
public:
    explicit UsbObserver(std::unique_ptr<UsbMonitor> monitor);

    /// Waits up to \p longest for transfers and takes those that have ended. False after an error.
    bool receive(std::chrono::milliseconds longest);
    /// Ends a receive() that waits.
    void wake() { m_monitor->wake(); }
    UsbReading read();
    /// The streams that read() tells.
    std::vector<UsbStreamKey> streams();
    /// Ends a stream, whose camera was plugged in again: its figures go on in \p later. Does
    /// nothing where either is not there.
    void join(const UsbStreamKey& ended, const UsbStreamKey& later);

private:
    struct Entry {
        UsbStream stream;
        /// Of streams that have ended.
        StreamFigures before;
        /// What the last reading had, with that of these.
        StreamFigures known;
        /// That is not read yet, of these; and all that was read.
        FrameTiming timingBefore;
        FrameTiming allTiming;
    };

    void take(const UsbTransfer& transfer);
    void noteMissed(const UsbMiss& missed);
    /// Makes room for a new stream; false where all go on.
    bool forgetSilent(UsbStream::Time now);

    const std::unique_ptr<UsbMonitor> m_monitor;
    /// Used by receive() only.
    UsbCapture m_capture;
    std::mutex m_mutex;
    /// All below guarded by the mutex.
    std::map<UsbStreamKey, Entry> m_streams;
    std::uint64_t m_missedEvents = 0;
    /// For streams that are found behind it, with those shortly before.
    UsbMiss m_lastMiss;
};

} // namespace observer
