// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/discovery/CameraRecord.h"

#include <string>

namespace orv::aravis {

/// Whether packets of GigE cameras are taken from a packet ring instead of a UDP socket.
enum class PacketSocket {
    /// Where the operating system permits it.
    Automatic,
    Never
};

/// How the frames of a camera are received.
struct StreamTransport {
    bool usesPacketSocket = false;
    /// Whether the operating system does not permit it.
    bool isPacketSocketRefused = false;
    /// Bytes that the operating system grants a UDP socket as its receive buffer.
    int receiveBuffer = 0;

    /// For the log.
    std::string description() const;
    /// The commands that permit a faster transport, as sentences with a blank in front of each;
    /// empty where there is nothing to gain.
    std::string advice() const;
};

StreamTransport chooseStreamTransport(const CameraRecord& record, PacketSocket use);

} // namespace orv::aravis
