// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CommandCompletion.h"

#include "sdk/OrvFeatureWrapper.h"

OrvErrorType waitForCommand(const OrvFeatureWrapper& command, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    bool done = false;
    while (command.IsCommandDone(done) == OrvErrorSuccess && !done) {
        if (std::chrono::steady_clock::now() >= end)
            return OrvErrorTimeout;
    }
    return OrvErrorSuccess;
}
