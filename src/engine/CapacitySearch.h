// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <optional>

/// Searches for what a link carries, in bytes per second: the highest load without a loss, to 2 %.
/// Takes at most eight steps. The first is the highest load that the cameras can send; a step with
/// a loss tells about what the link carries, so that the next ones lie close to it. A step with a
/// loss so small that a moment of a busy host may have caused it is repeated once. Made for one
/// search; reentrant.
class CapacitySearch {
public:
    static constexpr int mostSteps = 8;
    /// The search ends when the lowest load with a loss is at most so many times the highest
    /// without.
    static constexpr double resolution = 1.02;

    /// The lowest and the highest load that the cameras can send, above 0.
    CapacitySearch(double least, double most);

    /// The load to try; nothing when the search is over.
    std::optional<double> next() const;
    /// What was found with \p load, which may differ from the one that was asked for, where cameras
    /// take steps only. \p carriedShare is the share of it that arrived, 0 to 1; it matters where
    /// there was a loss.
    void note(double load, bool hasLoss, double carriedShare);

    /// The highest load without a loss, and the lowest with one.
    std::optional<double> lossless() const { return m_lossless; }
    std::optional<double> lossy() const { return m_lossy; }
    /// Whether the result of a load, which may have been rounded, follows from former ones.
    bool knows(double load) const;
    /// Whether the two are as close as they shall be.
    bool isPrecise() const;

private:
    double above() const;
    double below() const;

    const double m_least;
    const double m_most;
    int m_steps = 0;
    std::optional<double> m_lossless;
    std::optional<double> m_lossy;
    /// What the link carried in the last step with a loss.
    double m_carried = 0;
    /// Steps in one direction since the last one in the other, which make the next ones longer.
    std::size_t m_rises = 0;
    int m_falls = 0;
    /// A load with a small loss, to be tried again.
    std::optional<double> m_doubtful;
};
