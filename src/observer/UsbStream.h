// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "observer/StreamFigures.h"
#include "observer/UsbTransfer.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace observer {

/// The stream of a USB3 Vision camera that another program receives, seen from the transfers of one
/// endpoint: of each frame a leader, payload and a trailer. Any bytes may come. Not thread-safe.
class UsbStream {
public:
    using Time = std::chrono::nanoseconds;

    /// Bytes of a transfer that are looked at.
    static constexpr std::size_t headerSize = 28;

    /// Whether the transfer begins a frame.
    static bool isLeader(const UsbTransfer& transfer);

    void take(const UsbTransfer& transfer);
    /// The observer has missed transfers at some time between \p since and \p until: frames then
    /// that are not whole are not judged.
    void noteMissed(Time since, Time until);

    /// Whether a frame had leader and trailer, so that it is a stream.
    bool isKnown() const { return m_isKnown; }
    /// When the last transfer that brought data ended.
    Time latest() const { return m_latest; }
    /// "packets" are transfers that brought bytes, "dataBytes" the payload.
    const StreamFigures& figures() const { return m_figures; }
    /// Of the frames since the last call.
    FrameTiming takeTiming();

private:
    /// The frame whose transfers come now.
    struct Frame {
        std::uint64_t block = 0;
        Time begin{0};
        Time last{0};
        Time largestGap{0};
        std::uint64_t bytes = 0;
        /// The receiving program took back a request for data.
        bool hasCancelled = false;
    };
    struct Trailer {
        std::uint64_t block = 0;
        std::uint16_t status = 0;
        /// Bytes of the frame's payload that mean something.
        std::uint64_t payload = 0;
    };

    static std::optional<Trailer> readTrailer(const UsbTransfer& transfer);

    void begin(std::uint64_t block, Time now);
    void end(const Trailer& trailer, Time now);
    /// A frame without its leader.
    void endUnbegun(std::uint64_t block, Time now);
    /// Ends a frame whose trailer did not come before the frame \p next.
    void giveUp(std::uint64_t next, Time now);
    /// Counts the frames between the last one seen and \p block.
    void judgeGap(std::uint64_t block, Time now);
    void countBad(bool isUnjudged);
    void time(const Frame& frame, Time end);
    bool wasBlind(Time since, Time until) const;

    StreamFigures m_figures;
    FrameTiming m_timing;
    std::optional<Frame> m_frame;
    /// Number of the last frame of which anything was seen, and when the last one ended.
    std::optional<std::uint64_t> m_previous;
    Time m_previousEnd{0};
    Time m_latest{0};
    Time m_blindSince = Time::max();
    Time m_blindUntil = Time::min();
    bool m_isKnown = false;
};

} // namespace observer
