// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CapacitySearch.h"
#include "engine/LinkPlan.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Measures what a link carries, with the cameras on it: raises and lowers the sum of their limits,
/// divided as LinkPlan does, until it knows with which frames are lost. run() puts all limits back;
/// the destructor of the plan does where the function that is given throws, which nothing else
/// does. The cameras must not stream otherwise meanwhile. Bound to the GUI thread.
class LinkCalibration {
public:
    /// What arrived with the limits of a step.
    struct Measurement {
        bool hasLoss = false;
        /// Share of what was sent, 0 to 1.
        double carriedShare = 1;
    };
    /// Streams from the cameras; nothing to end the calibration. May throw.
    using Measure = std::function<std::optional<Measurement>()>;
    struct Step {
        /// Bytes per second that the cameras may send: limits, and what those without one send.
        double load = 0;
        Measurement measurement;
    };
    enum class Outcome {
        /// There are loads with a loss and without.
        Measured,
        /// No load has a loss: the link carries the highest at least.
        NotFilled,
        /// Every load has a loss, down to the lowest limits.
        AlwaysLossy,
        /// Every load has a loss; lower ones were not tried.
        StepsUsedUp,
        /// A camera did not take its limit, or not its former one at the end.
        Refused,
        Cancelled
    };

    /// \p plan knows the needs of its cameras, at least one of which must get a limit, and was made
    /// without a margin.
    explicit LinkCalibration(LinkPlan& plan) : m_plan(plan) {}

    /// Why the cameras of a plan cannot be used; empty when they can.
    static std::string obstacle(const LinkPlan& plan);

    Outcome run(const Measure& measure);

    const std::vector<Step>& steps() const { return m_steps; }
    /// The highest load without a loss and the lowest with one, in bytes per second.
    std::optional<double> lossless() const { return m_lossless; }
    std::optional<double> lossy() const { return m_lossy; }
    /// Whether the link's capacity is known to 2 %.
    bool isPrecise() const { return m_isPrecise; }

private:
    /// The load with the limits that the plan has now.
    double plannedLoad() const;
    std::optional<Outcome> search(CapacitySearch& search, const Measure& measure);

    LinkPlan& m_plan;
    std::vector<Step> m_steps;
    std::optional<double> m_lossless;
    std::optional<double> m_lossy;
    bool m_isPrecise = false;
};
