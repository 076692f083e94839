// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/discovery/CameraRecord.h"
#include "platform/UdpSocket.h"

#include <memory>
#include <vector>

namespace orv::aravis {

/// Discovers the GigE Vision cameras on this host's networks. Needed beside the library's own
/// discovery, which lists only one of several cameras with the same maker, model and serial number.
class DiscoveryBroadcast {
public:
    /// Sends the discovery command through every adapter.
    DiscoveryBroadcast();

    /// The cameras that have answered since the last call, described by their answers only. Does
    /// not wait.
    std::vector<CameraRecord> answers() const;

private:
    std::vector<std::unique_ptr<platform::UdpSocket>> m_sockets;
};

} // namespace orv::aravis
