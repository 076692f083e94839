// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

/// The SDK running with the one camera of a provider: 320 x 200 pixels, Mono8, 100 frames per
/// second or more.
struct ProvidedCamera {
    /// Pulls the camera's cable, or plugs it in.
    std::function<void(bool plugged)> plug;
    /// Shuts the SDK down when it is reset.
    std::shared_ptr<void> running;
};

/// A provider and a technology for which the shared suite runs.
struct ProviderCase {
    const char* name;
    std::uint64_t firstFrameId;
    /// StreamUnderrunFrameCount after a few lost frames; Aravis counts their packets.
    std::int64_t underruns;
    std::function<ProvidedCamera()> start;
};

/// The cases of this test program.
std::vector<ProviderCase> providerCases();
