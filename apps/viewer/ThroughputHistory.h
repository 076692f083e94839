// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "viewer/StreamCounters.h"

#include <QString>

#include <deque>
#include <optional>
#include <vector>

namespace viewer {

/// A camera whose stream is counted.
struct CountedCamera {
    /// Unique among all cameras.
    QString id;
    QString name;
    QString interfaceName;
    StreamCounters counters;
};

/// What cameras sent in the last minute, by samples of their counters. Bound to one thread.
class ThroughputHistory {
public:
    static constexpr double windowSeconds = 60.0;

    /// One camera, with a value for each of seconds().
    struct Series {
        QString name;
        /// 10^6 bytes per second, an average of the last two intervals: a frame at either end of
        /// one interval changes the rate of few frames much.
        std::vector<double> megabytesPerSecond;
        /// Frames that were lost or came incomplete since the sample before.
        std::vector<std::uint64_t> badFrames;

        /// Whether anything came or was lost in this time.
        bool isActive() const;
    };

    /// Adds a sample at a time that is later than the one before, in seconds. A camera that is not
    /// in \p cameras brings nothing; one that was not in the sample before, or that counts anew,
    /// begins here.
    void add(double seconds, const std::vector<CountedCamera>& cameras);

    /// When the samples of the last minute were added, the oldest first.
    std::vector<double> seconds() const;
    /// All cameras that were ever counted, in the order in which they were first, so that the place
    /// of a camera stays its own.
    std::vector<Series> series() const;
    /// For each of seconds(), the interface whose cameras brought something then, or last; empty
    /// when those of several did, and before the first.
    std::vector<QString> interfaceNames() const;

private:
    struct Camera {
        QString id;
        QString name;
        /// Of the last sample; nothing when the camera was not in it.
        std::optional<StreamCounters> counters;
        /// Sums of what the counters moved.
        StreamCounters total;
    };
    struct Sample {
        double seconds = 0.0;
        /// Of the cameras that were known then.
        std::vector<StreamCounters> totals;
        QString interfaceName;
    };

    Camera& known(const CountedCamera& camera);
    std::size_t firstInWindow() const;
    StreamCounters totalOf(std::size_t sample, std::size_t camera) const;
    Series seriesOf(std::size_t camera) const;

    std::vector<Camera> m_cameras;
    std::deque<Sample> m_samples;
};

} // namespace viewer
