// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <optional>

/// The time from one frame to the next: the slope of the line of least squares through the times
/// at which frames were noticed. A busy host notices some of them late; the first and the last one
/// alone would give a period that is wrong by as much.
class FramePeriod {
public:
    /// Frames are numbered by the camera, those that are lost, too. \p seconds since a fixed time.
    void add(std::int64_t frameId, double seconds);
    /// Nothing before two different frames.
    std::optional<double> seconds() const;

private:
    std::int64_t m_firstId = 0;
    double m_firstSeconds = 0;
    /// Of all frames, counted from the first one.
    double m_count = 0;
    double m_frames = 0;
    double m_seconds = 0;
    double m_framesSquared = 0;
    double m_framesTimesSeconds = 0;
};
