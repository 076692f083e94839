// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// The mean time from one frame to the next, from the first eighth of the frames to the last one.
/// A busy host notices some frames late; the first and the last one alone would give a period that
/// is wrong by as much. A line through all frames would not be the mean of frames that come in
/// bursts.
class FramePeriod {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// Frames are numbered by the camera, those that are lost, too. IDs and times ascend.
    void add(std::int64_t frameId, Time noticed) { m_frames.push_back({frameId, noticed}); }
    /// Nothing before the second frame.
    std::optional<double> seconds() const;

private:
    struct Frame {
        std::int64_t id;
        Time noticed;
    };
    /// Since the first frame.
    struct Distance {
        double frames = 0;
        double seconds = 0;
    };

    Distance meanOf(std::size_t begin, std::size_t count) const;

    std::vector<Frame> m_frames;
};
