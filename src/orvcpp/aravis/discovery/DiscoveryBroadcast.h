// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/discovery/CameraRecord.h"
#include "orvcpp/aravis/discovery/DatagramSocket.h"

#include <memory>
#include <vector>

namespace orv::aravis {

/// Asks all GigE Vision cameras on the networks of this host who they are. The library does so,
/// too, but its list has one camera only of those whose maker, model and serial number are the
/// same.
class DiscoveryBroadcast {
public:
    /// Sends the question through every adapter.
    DiscoveryBroadcast();

    /// The cameras that have answered since the last call, told of with what they say themselves.
    /// Does not wait.
    std::vector<CameraRecord> answers() const;

private:
    std::vector<std::unique_ptr<DatagramSocket>> m_sockets;
};

} // namespace orv::aravis
