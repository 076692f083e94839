// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/StepGrid.h"

#include <cstdint>
#include <string>
#include <vector>

/// What one camera claims of a link that cameras share. All in bytes per second.
struct BandwidthClaim {
    /// Unique; decides between cameras that are equal otherwise.
    std::string id;
    /// The limits that the camera takes; must be known.
    StepGrid range;
    /// The camera gets no more, except its lowest limit and its wish.
    std::int64_t wanted = 0;
    /// What the camera gets before anything is divided; 0 for none. Rounded up to a step.
    std::int64_t wished = 0;
    /// A camera of weight 2 gets twice as much as one of weight 1. Above 0.
    double weight = 1;
};

/// A division of a link. All in bytes per second.
struct BandwidthPlan {
    enum class Outcome {
        Divided,
        /// The lowest limits fit, the wishes do not: every camera gets its lowest limit.
        WishesDoNotFit,
        /// The lowest limits do not fit. Every camera gets it: no division sends less.
        MinimaDoNotFit
    };

    Outcome outcome = Outcome::Divided;
    /// In the order of the claims.
    std::vector<std::int64_t> limits;
    /// Sum of the lowest limits, and the same with a wish in place of each limit below it.
    double minima = 0;
    double floors = 0;
};

/// Divides \p available among cameras by max-min fairness, in the steps that they take. It may be
/// negative, where others take more than there is: then the minima do not fit.
///
/// Every camera first gets its lowest limit or its wish. Then a level rises from 0. A camera takes
/// its next step when the level reaches the quotient of its new limit and its weight. It stops at
/// what it wants, and when the step does not fit any more; the others go on. So no camera could
/// get a step more even if all that have more than it then would went down to its new level. The
/// result does not depend on the order of the claims. Reentrant.
BandwidthPlan divideBandwidth(std::int64_t available, const std::vector<BandwidthClaim>& claims);
