// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/DivisionOptions.h"
#include "engine/LinkPlan.h"

#include <QString>

#include <chrono>
#include <memory>
#include <vector>

namespace cli {

class Arguments;
class Interruption;

/// One measurement after a plan was applied. All in bytes per second.
struct VerifiedRound {
    double usableBytes;
    /// What arrived in complete and incomplete frames.
    double carriedBytes;
    /// Lost and incomplete frames.
    double lostFrames;
};

/// A link with those of its interfaces that are to be planned together.
struct PlannedLink {
    ChosenInterfaces interfaces;
    Margins margins{};
    double bitsPerSecond = 0;
    /// Bytes per second that cameras of other interfaces may send over the link, and that cameras
    /// send to other applications, as far as that is known.
    double otherBytes = 0;
    /// Why it cannot be planned; empty when it can.
    QString error;
    std::unique_ptr<LinkPlan> plan;
    BandwidthPlan division;
    /// Bytes per second for the cameras of the plan.
    double usableBytes = 0;
    bool isApplied = false;
    std::vector<VerifiedRound> rounds;
    /// Why the plan was not applied or not verified to the end, although that was asked for; empty
    /// otherwise.
    QString failure;

    /// Whether frames were lost with the last plan, as far as that was measured.
    bool isLossy() const { return !rounds.empty() && rounds.back().lostFrames > 0; }
};

/// The camera of an ID; null for one that is not in the plan.
const PlannedCamera* findPlanned(const LinkPlan& plan, const QString& id);

/// The chosen interfaces by the link that they share.
std::vector<ChosenInterfaces> linksOf(const ChosenInterfaces& chosen);

/// The links of the chosen interfaces, each with a plan of its cameras where it can be planned.
std::vector<PlannedLink> plannedLinks(Cameras& cameras, const ChosenInterfaces& chosen,
                                      const Arguments& arguments);

/// Finds what the cameras of a plan need; streams for \p seconds from those that do not report it,
/// where it is above 0. Leaves the limits at the highest. Throws a Failure when the program is to
/// end.
void findNeeds(LinkPlan& plan, Cameras& cameras, std::chrono::duration<double> seconds,
               Interruption& interruption);

/// Finds what the cameras of a link need, and what Auto Set would give them; streams for \p seconds
/// from those that do not report their need, where it is above 0. Puts the limits back. Throws a
/// Failure, with the limits put back, when the program is to end.
void surveyLink(PlannedLink& link, Cameras& cameras, std::chrono::duration<double> seconds,
                Interruption& interruption);

} // namespace cli
