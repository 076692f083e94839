// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "losses/LossAnalysis.h"

#include <cstdint>
#include <string>
#include <vector>

/// A loss at a place that the cameras of an interface share, and how many packets it accounts for.
struct SharedLoss {
    LossFinding finding;
    std::uint64_t packets = 0;
};

/// The places in the adapter and the operating system whose counters moved. These count the packets
/// of other programs, too: a place is named when it accounts for at least a tenth of \p missing
/// packets. None when nothing is missing. Pure, reentrant.
std::vector<SharedLoss> sharedLosses(const InterfaceEvidence& evidence, std::uint64_t missing);

/// Names of the counters of drops that could not be read, separated by commas. Without them, no
/// place before the adapter can be named.
std::string unreadCounters(const platform::NetworkCounters& network);

/// Whether no camera lost a frame, and each brought some.
bool isAllRepaired(const InterfaceEvidence& evidence);
