// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/ControlSession.h"
#include "platform/UdpSocket.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace gige {

enum class PathResult {
    Measured,
    /// Another program controls the camera.
    Controlled,
    NoAnswer,
    /// The camera refused to read or write a register of its stream.
    Refused,
    /// The camera did not take its packet size back.
    NotRestored,
};

/// Sizes are bytes of a packet with its IP and UDP headers.
struct PathMeasurement {
    PathResult result = PathResult::NoAnswer;
    /// What the camera is set to.
    std::uint32_t packetSize = 0;
    /// The largest test packet that arrived, at most the MTU; 0 when none did.
    std::uint32_t largestArrived = 0;
};

/// Measures which packets of a camera arrive at this host, by its test packets (GigE Vision 2.2,
/// 15.4), which no switch may split: the size that the camera is set to, then the largest one up to
/// the MTU of this host's adapter, to 4 bytes or the camera's step. Controls the camera meanwhile,
/// and puts all its registers back. Takes a few milliseconds, or a second where some sizes do not
/// arrive; longer only when the camera does not answer. After that second, the largest size so far
/// is the result. Bound to one thread.
class PathProbe {
public:
    /// \p camera in host byte order; \p mtu of the adapter towards it, in bytes.
    PathProbe(std::uint32_t camera, std::uint32_t mtu);

    PathMeasurement run();

private:
    /// Registers of the camera's stream as they were found.
    struct Settings {
        std::uint32_t port;
        std::uint32_t address;
        std::uint32_t packetSize;
    };

    std::optional<Settings> readSettings();
    bool directStream(const Settings& settings);
    bool restore(const Settings& settings);
    std::uint32_t measure(std::uint32_t packetSize);
    /// The largest size between one that arrives and one that does not.
    std::uint32_t bisect(std::uint32_t arriving, std::uint32_t tooLarge);
    /// The size of the test packet that arrived, which a camera may round; 0 when none came in so
    /// many tries, or the camera refused the size.
    std::uint32_t fire(std::uint32_t size, int tries);

    const std::uint32_t m_address;
    const std::uint32_t m_mtu;
    ControlSession m_camera;
    const platform::UdpSocket m_socket;
    std::chrono::steady_clock::time_point m_end;
};

} // namespace gige
