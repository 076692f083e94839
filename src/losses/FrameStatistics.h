// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>

/// What was counted of the frames of one camera. Fields of one block may belong to two consecutive
/// frames.
struct FrameStatistics {
    std::uint64_t receivedFrames = 0;
    std::uint64_t completeFrames = 0;
    std::uint64_t incompleteFrames = 0;
    std::uint64_t invalidFrames = 0;
    std::uint64_t tooSmallFrames = 0;
    /// ID of the last frame, counted so that the first frame of an acquisition has 1.
    std::int64_t lastFrameId = 0;
    std::int64_t lostFrames = 0;
    /// Sum of the sizes of the received frames' buffers.
    std::uint64_t payloadBytes = 0;
    /// Rate of the last interval between two frames, no average.
    double framesPerSecond = 0.0;
    /// Stays 0.
    std::uint64_t reserved = 0;
};
