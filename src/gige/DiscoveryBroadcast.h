// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/BroadcastSocket.h"
#include "gige/DiscoveredCamera.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

namespace gige {

/// Discovers the GigE Vision cameras on this host's networks. Bound to one thread.
class DiscoveryBroadcast {
public:
    /// Sends the discovery command through every adapter that is up.
    explicit DiscoveryBroadcast(Reach reach);

    /// Sends the command again, for cameras whose answer was lost.
    void sendAgain() const;
    /// Waits until an answer comes, at most \p limit.
    void wait(std::chrono::milliseconds limit) const;
    /// The cameras that have answered since the last call. One may be there twice. Does not wait.
    std::vector<DiscoveredCamera> answers() const;

private:
    const std::vector<std::uint8_t> m_question;
    std::vector<std::unique_ptr<BroadcastSocket>> m_sockets;
};

/// Broadcasts the discovery command on every adapter and gathers answers for \p wait; a camera may
/// take a second. Also finds cameras of other subnets. One entry for each camera, address and
/// adapter: two cameras with one address, and one camera on two adapters, give two. Ordered by
/// adapter and MAC address. Reentrant.
std::vector<DiscoveredCamera> discoverCameras(std::chrono::milliseconds wait);

} // namespace gige
