// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <optional>

namespace OrvCPP {
class Camera;
}

namespace viewer {

/// What arrived of a camera's stream since it began.
struct StreamCounters {
    std::uint64_t bytes = 0;
    /// Frames that were lost or came incomplete.
    std::uint64_t badFrames = 0;
};

/// Reads the counters that the camera SDK keeps of the first stream of a camera, which this program
/// may have opened elsewhere. Nothing while the camera is not open in this program, and where the
/// SDK does not count bytes. Asks nothing of the camera itself. Reentrant.
std::optional<StreamCounters> readStreamCounters(const OrvCPP::Camera& camera);

} // namespace viewer
