// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <vector>

namespace cli {

/// Rates and losses of cameras over the time of a benchmark, made from its intervals.
class RateHistory {
public:
    /// Takes a document of "type" "interval" or, last, "result"; see runBenchmark(). An interval
    /// without time is left out; a short rest at the end joins the interval before.
    void add(const QJsonObject& benchmark);

    /// For each interface "interface", "bitsPerSecond" (absent where unknown), "seconds" (the
    /// middle of each interval) and "cameras" with "id", "name", "bytesPerSecond" and "lostFrames":
    /// for each interval the rate, and how many frames were lost or incomplete.
    QJsonArray document() const;

private:
    struct Camera {
        QString id;
        QString name;
        /// Since the start; of lost and incomplete frames the most that were counted.
        double bytes = 0;
        double badFrames = 0;
        std::vector<double> bytesPerSecond;
        std::vector<double> lostFrames;

        /// Adds an interval.
        void add(const QJsonValue& figures, double seconds);
        /// Makes the last two intervals one; \p rest is the length of the last one.
        void joinRest(double seconds, double rest);
    };
    struct Interface {
        QString name;
        double bitsPerSecond = 0;
        std::vector<Camera> cameras;
    };

    static Interface emptyHistory(const QJsonObject& interface);

    /// A rate of few frames would be far from the mean: a last interval that is shorter than half
    /// the one before becomes a part of it.
    void joinShortRest();

    /// Of the intervals.
    std::vector<double> m_ends;
    std::vector<Interface> m_interfaces;
};

} // namespace cli
