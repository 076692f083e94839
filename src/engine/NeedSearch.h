// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/StepGrid.h"

#include <cstdint>
#include <functional>
#include <optional>

/// Searches for the smallest limit (bytes per second) at which a camera keeps its target frame
/// rate, to half a percent of the limit or to one step, however wide the range is. The rate of a
/// camera is about proportional to a limit that is too low, so one or two such limits tell the
/// need; it is tried, and then limits below it, at growing distances until one is too low. Takes at
/// most ten tries, usually two. Made for one run; reentrant.
class NeedSearch {
public:
    /// \p tryOut sets a limit and returns the frame rate that the camera then reports, in frames
    /// per second. \p target is the rate at the highest limit of \p range, above 0.
    NeedSearch(std::function<double(std::int64_t)> tryOut, double target, const StepGrid& range);

    /// \p estimated is tried first. The result is a limit that the camera takes.
    std::int64_t run(std::int64_t estimated);

private:
    /// A limit that is too low, and the frame rate there.
    struct Missed {
        std::int64_t limit;
        double rate;
    };

    bool isFound() const;
    /// Tries a limit and narrows the interval. Returns whether the camera kept its rate.
    bool tryOut(std::int64_t limit);
    std::int64_t belowReached() const;
    std::int64_t estimateFromMissed() const;
    std::int64_t middle() const;

    const std::function<double(std::int64_t)> m_tryOut;
    const double m_target;
    const StepGrid m_range;
    /// The lowest limit known to keep the rate, and the highest known not to.
    std::int64_t m_reached;
    std::optional<Missed> m_missed;
    std::optional<Missed> m_missedBefore;
    /// Distance of the next limit below the one reached, as a fraction of it.
    double m_distance;
};
