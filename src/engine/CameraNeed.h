// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/StepGrid.h"

#include <cstdint>
#include <optional>

/// What a camera needs for its highest frame rate, by what it reports.
struct CameraNeed {
    /// The limits that the camera takes; nothing for a camera without one that can be written.
    std::optional<StepGrid> range;
    /// Smallest limit at which the camera keeps the rate below. For a camera without a limit, what
    /// it sends at that rate. 0 when unknown.
    std::int64_t bytesPerSecond = 0;
    /// 0 when unknown.
    double framesPerSecond = 0;
    /// Bytes of a frame; 0 when unknown.
    std::int64_t payloadBytes = 0;
};
