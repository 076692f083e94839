// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <functional>

/// Searches for the smallest bandwidth (bytes per second) at which a camera keeps its target frame
/// rate. Takes at most ten steps, each half as long as the one before: upwards until the camera
/// reaches the target, then downwards until it misses the target. Logs each step at debug level.
/// Made for one run; reentrant.
class BandwidthSearch {
public:
    /// \p tryOut sets a bandwidth and returns the frame rate that the camera then reports.
    /// \p target is in frames per second; 0 is never reached.
    BandwidthSearch(std::function<double(std::int64_t)> tryOut, double target);

    /// Searches between \p calculated, which is tried first, and \p maximum. The result may lie
    /// below the camera's minimum.
    std::int64_t run(std::int64_t calculated, std::int64_t maximum);

private:
    double deviationOf(double frameRate) const;
    /// Returns false when the search is over.
    bool iterate();
    void tryCandidate(std::int64_t candidate);

    const std::function<double(std::int64_t)> m_tryOut;
    const double m_target;
    std::int64_t m_step = 0;
    /// 1 upwards, -1 downwards.
    std::int64_t m_direction = 1;
    /// The bandwidth from which the next step starts.
    std::int64_t m_base = 0;
    /// Relative distances from the target frame rate: at the last bandwidth tried, and at m_base.
    double m_deviation = 0.0;
    double m_previousDeviation = 0.0;
    int m_iterations = 0;
    bool m_repeated = false;
};
