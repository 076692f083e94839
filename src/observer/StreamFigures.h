// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace observer {

/// When the packets of frames arrived at this host.
struct FrameTiming {
    /// Frames that were timed.
    std::uint64_t frames = 0;
    /// From the first to the last packet: the sum of all frames, and the longest.
    std::chrono::nanoseconds total{0};
    std::chrono::nanoseconds longest{0};
    /// Longest pause between two packets of a frame.
    std::chrono::nanoseconds largestGap{0};
    /// Bytes of data per second within a frame, of the fastest frame.
    double burstBytesPerSecond = 0;

    void add(const FrameTiming& other) {
        frames += other.frames;
        total += other.total;
        longest = std::max(longest, other.longest);
        largestGap = std::max(largestGap, other.largestGap);
        burstBytesPerSecond = std::max(burstBytesPerSecond, other.burstBytesPerSecond);
    }
};

/// What was seen of a stream since it was found.
struct StreamFigures {
    std::uint64_t framesComplete = 0;
    std::uint64_t framesIncomplete = 0;
    /// Frames of which nothing was seen.
    std::uint64_t framesLost = 0;
    /// Frames and numbers of frames that are in none of these counts: the observer itself had
    /// missed packets, the size of the frames had just changed, or the stream ended in a frame.
    std::uint64_t framesUnjudged = 0;
    /// Incomplete ones of which leader and trailer came, and no full packet of data.
    std::uint64_t framesHollow = 0;
    /// How often one or more frames in a row were lost, judged or not.
    std::uint64_t gaps = 0;
    std::uint64_t packets = 0;
    /// Of the images and what comes with them, without headers.
    std::uint64_t dataBytes = 0;
    /// Never seen, of frames of which others were.
    std::uint64_t packetsMissing = 0;
    /// Came late, after a gap: sent again.
    std::uint64_t packetsResent = 0;
    std::uint64_t packetsDuplicate = 0;

    void add(const StreamFigures& other) {
        framesComplete += other.framesComplete;
        framesIncomplete += other.framesIncomplete;
        framesLost += other.framesLost;
        framesUnjudged += other.framesUnjudged;
        framesHollow += other.framesHollow;
        gaps += other.gaps;
        packets += other.packets;
        dataBytes += other.dataBytes;
        packetsMissing += other.packetsMissing;
        packetsResent += other.packetsResent;
        packetsDuplicate += other.packetsDuplicate;
    }
};

} // namespace observer
